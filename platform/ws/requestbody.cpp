#include "requestbody.h"

#include <cstdio>
#include <cstring>

namespace velmora::ws {

namespace {

constexpr std::size_t rawAddressSize = 7; // what velmora_ws_utility_get_mac fills in, its NUL included

const char *textAt(const void *params, const Field &field)
{
    return *reinterpret_cast<char *const *>(static_cast<const char *>(params) + field.offset);
}

int32_t numberAt(const void *params, const Field &field)
{
    return *reinterpret_cast<const int32_t *>(static_cast<const char *>(params) + field.offset);
}

bool isRawAddress(const void *params, const Field &field)
{
    return field.kind == FieldKind::LoginDevice &&
           std::strcmp(static_cast<const VLM_WS_USER_LOGIN_PARAMS_T *>(params)->loginType, "user") == 0;
}

bool isText(const Field &field)
{
    return field.kind == FieldKind::Text || field.kind == FieldKind::LoginDevice;
}

bool isUtf8(const char *text)
{
    const auto *at = reinterpret_cast<const unsigned char *>(text);
    while (*at) {
        const unsigned char lead = *at++;
        if (lead < 0x80)
            continue;
        int more = 0;
        unsigned point = 0;
        if (lead >= 0xc2 && lead <= 0xdf) {
            more = 1;
            point = lead & 0x1fu;
        } else if (lead >= 0xe0 && lead <= 0xef) {
            more = 2;
            point = lead & 0x0fu;
        } else if (lead >= 0xf0 && lead <= 0xf4) {
            more = 3;
            point = lead & 0x07u;
        } else {
            return false;
        }
        const int length = more;
        for (; more > 0; --more, ++at) {
            if ((*at & 0xc0) != 0x80)
                return false;
            point = point << 6 | (*at & 0x3fu);
        }
        const bool isOverlong = (length == 2 && point < 0x800) || (length == 3 && point < 0x10000);
        if (isOverlong || point > 0x10ffff || (point >= 0xd800 && point <= 0xdfff))
            return false;
    }
    return true;
}

// Writes into memory that is wiped afterwards. The strings of a JSON library would not be.
class Writer {
public:
    Writer() { m_body.reserve(512); }

    void text(const char *key, const char *text)
    {
        name(key);
        quoted(text);
    }
    void literal(const char *key, const char *literal)
    {
        name(key);
        m_body += literal;
    }
    SecretText take()
    {
        m_body += m_isFirst ? "{}" : "}";
        return std::move(m_body);
    }

private:
    void name(const char *key)
    {
        m_body += m_isFirst ? '{' : ',';
        m_isFirst = false;
        quoted(key);
        m_body += ':';
    }
    void quoted(const char *text)
    {
        m_body += '"';
        for (; *text; ++text) {
            const char c = *text;
            if (c == '"' || c == '\\') {
                m_body += '\\';
                m_body += c;
            } else if (static_cast<unsigned char>(c) < 0x20) {
                char escape[8];
                std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
                m_body += escape;
            } else {
                m_body += c;
            }
        }
        m_body += '"';
    }

    SecretText m_body;
    bool m_isFirst = true;
};

} // namespace

void *copyParams(const Command &command, const void *params, Arena &memory)
{
    if (command.paramsSize == 0)
        return nullptr;
    char *copy = memory.copy(static_cast<const char *>(params), command.paramsSize);
    for (const Field &field : command.fields) {
        if (!isText(field))
            continue;
        const char *text = textAt(params, field);
        char *copied = nullptr;
        if (text)
            copied = isRawAddress(params, field) ? memory.copy(text, rawAddressSize) : memory.text(text);
        std::memcpy(copy + field.offset, &copied, sizeof copied);
    }
    return copy;
}

bool hasValidText(const Command &command, const void *params)
{
    for (const Field &field : command.fields) {
        if (isText(field) && !isRawAddress(params, field) && textAt(params, field) && !isUtf8(textAt(params, field)))
            return false;
    }
    return true;
}

SecretText requestBody(const Command &command, const void *params, const SecretText &deviceKey)
{
    Writer writer;
    if (command.id == VLM_WS_MSGID_PARTNER_LOGIN)
        writer.text("deviceKey", deviceKey.c_str());
    for (const Field &field : command.fields) {
        switch (field.kind) {
        case FieldKind::Flag:
            writer.literal(field.key, numberAt(params, field) ? "true" : "false");
            break;
        case FieldKind::OptionalNumber:
            if (numberAt(params, field) == 0)
                break;
            [[fallthrough]];
        case FieldKind::Number:
            writer.literal(field.key, std::to_string(numberAt(params, field)).c_str());
            break;
        case FieldKind::Unsent:
            break;
        case FieldKind::Text:
        case FieldKind::LoginDevice:
            if (const char *text = textAt(params, field); text && isRawAddress(params, field)) {
                char digits[13];
                for (int i = 0; i < 6; ++i)
                    std::snprintf(digits + 2 * i, 3, "%02X", static_cast<unsigned char>(text[i]));
                writer.text("mac", digits);
            } else if (text) {
                writer.text(field.key, text);
            }
            break;
        }
    }
    return writer.take();
}

} // namespace velmora::ws
