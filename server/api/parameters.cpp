#include "server/api/parameters.h"

#include "server/api/apierror.h"

#include <limits>

namespace velmora::server {

namespace {

using Json = nlohmann::json;

// Keeps what stands directly in the object. No parameter is a list or an object: those are read past, so that a body of
// a hundred thousand small values takes no more memory than its text.
class Reader : public nlohmann::json_sax<Json> {
public:
    Json members = Json::object();
    bool isObject = false;
    bool isTooMuch = false; // too deep, too many members

    bool null() override { return keep(nullptr); }
    bool boolean(bool value) override { return keep(value); }
    bool number_integer(number_integer_t value) override { return keep(value); }
    bool number_unsigned(number_unsigned_t value) override { return keep(value); }
    bool number_float(number_float_t value, const string_t &) override { return keep(value); }
    bool string(string_t &value) override { return keep(std::move(value)); }
    bool binary(binary_t &) override { return false; }
    bool key(string_t &name) override
    {
        if (m_level == 1)
            m_name = std::move(name);
        return true;
    }
    bool start_object(std::size_t) override
    {
        isObject = isObject || m_level == 0;
        return open();
    }
    bool start_array(std::size_t) override { return open(); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }
    bool parse_error(std::size_t, const std::string &, const nlohmann::detail::exception &) override { return false; }

private:
    template <class Value>
    bool keep(Value &&value)
    {
        if (m_level != 1 || !isObject)
            return true;
        members[m_name] = std::forward<Value>(value);
        isTooMuch = members.size() > Parameters::mostMembers;
        return !isTooMuch;
    }
    bool open()
    {
        if (m_level == 1)
            members.erase(m_name); // the last one of a name counts
        isTooMuch = ++m_level > Parameters::mostLevels;
        return !isTooMuch;
    }
    bool close()
    {
        --m_level;
        return true;
    }

    int m_level = 0;
    std::string m_name;
};

[[noreturn]] void malformed(const char *name)
{
    throw ApiError(Code::Malformed, std::string("missing or of the wrong type: ") + name);
}

} // namespace

Parameters Parameters::parse(std::string_view text)
{
    if (text.size() > mostBytes)
        throw ApiError(Code::Malformed, "the body is too large");
    Reader reader;
    const bool isWhole = Json::sax_parse(text, &reader);
    if (reader.isTooMuch)
        throw ApiError(Code::Malformed, "the body is too deep or has too many members");
    if (!isWhole || !reader.isObject)
        throw ApiError(Code::Malformed, "the body is not a JSON object");
    Parameters parameters;
    parameters.m_object = std::move(reader.members);
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
