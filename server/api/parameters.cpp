#include "server/api/parameters.h"

#include "server/api/apierror.h"

#include <limits>

namespace velmora::server {

namespace {

// The depth of the brackets outside strings. Checked first, so that the parser never builds a deep tree.
int deepestLevel(std::string_view text)
{
    int level = 0;
    int deepest = 0;
    bool isInString = false;
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (isInString) {
            if (c == '\\')
                ++i;
            else if (c == '"')
                isInString = false;
        } else if (c == '"') {
            isInString = true;
        } else if (c == '{' || c == '[') {
            deepest = std::max(deepest, ++level);
        } else if (c == '}' || c == ']') {
            --level;
        }
    }
    return deepest;
}

[[noreturn]] void malformed(const char *name)
{
    throw ApiError(Code::Malformed, std::string("missing or of the wrong type: ") + name);
}

} // namespace

Parameters Parameters::parse(std::string_view text)
{
    if (text.size() > mostBytes)
        throw ApiError(Code::Malformed, "the body is too large");
    if (deepestLevel(text) > mostLevels)
        throw ApiError(Code::Malformed, "the body is too deep");
    Parameters parameters;
    parameters.m_object = nlohmann::json::parse(text, nullptr, false);
    if (!parameters.m_object.is_object())
        throw ApiError(Code::Malformed, "the body is not a JSON object");
    return parameters;
}

const nlohmann::json *Parameters::find(const char *name) const
{
    const auto found = m_object.find(name);
    return found == m_object.end() ? nullptr : &*found;
}

std::string Parameters::text(const char *name) const
{
    std::optional<std::string> value = optionalText(name);
    if (!value)
        malformed(name);
    return *std::move(value);
}

bool Parameters::flag(const char *name) const
{
    const std::optional<bool> value = optionalFlag(name);
    if (!value)
        malformed(name);
    return *value;
}

std::optional<std::string> Parameters::optionalText(const char *name) const
{
    const nlohmann::json *value = find(name);
    return value && value->is_string() ? std::optional(value->get<std::string>()) : std::nullopt;
}

std::optional<bool> Parameters::optionalFlag(const char *name) const
{
    const nlohmann::json *value = find(name);
    return value && value->is_boolean() ? std::optional(value->get<bool>()) : std::nullopt;
}

std::optional<int64_t> Parameters::optionalInteger(const char *name) const
{
    const nlohmann::json *value = find(name);
    if (!value || !value->is_number_integer())
        return std::nullopt;
    if (value->is_number_unsigned() &&
        value->get<uint64_t>() > static_cast<uint64_t>(std::numeric_limits<int64_t>::max()))
        return std::nullopt;
    return value->get<int64_t>();
}

} // namespace velmora::server
