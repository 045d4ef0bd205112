#include "server/accounts/mailaddress.h"

#include <algorithm>

namespace velmora::server {

namespace {

// Lengths in bytes.
constexpr size_t longestAddress = 254;
constexpr size_t longestLocalPart = 64;
constexpr size_t longestLabel = 63;

bool isAlphanumeric(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

// One or more parts with single dots between them.
template <typename IsPart>
bool isDotted(std::string_view text, IsPart isPart)
{
    while (true) {
        const size_t dot = std::min(text.find('.'), text.size());
        if (dot == 0 || !isPart(text.substr(0, dot)))
            return false;
        if (dot == text.size())
            return true;
        text.remove_prefix(dot + 1);
    }
}

bool isNamePart(std::string_view part)
{
    return std::all_of(part.begin(), part.end(), [](char c) {
        return isAlphanumeric(c) || std::string_view("!#$%&'*+-/=?^_`{|}~").find(c) != std::string_view::npos;
    });
}

bool isHostLabel(std::string_view label)
{
    return label.size() <= longestLabel && label.front() != '-' && label.back() != '-' &&
           std::all_of(label.begin(), label.end(), [](char c) { return isAlphanumeric(c) || c == '-'; });
}

} // namespace

bool isMailAddress(std::string_view text)
{
    const size_t at = text.find('@');
    return text.size() <= longestAddress && at != std::string_view::npos && at <= longestLocalPart &&
           isDotted(text.substr(0, at), isNamePart) && isDotted(text.substr(at + 1), isHostLabel);
}

} // namespace velmora::server
