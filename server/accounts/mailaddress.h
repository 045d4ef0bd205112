#pragma once

#include <string_view>

namespace velmora::server {

// Whether mails can be sent to this address: name@host, ASCII, without quotes, comments or brackets, of a length that
// mail servers take. The user names of accounts are such addresses.
bool isMailAddress(std::string_view text);

} // namespace velmora::server
