#pragma once

#include <string>

namespace velmora::ws {

// Whether `text` is a complete http or https address with a host, as libcurl reads it. Loads libcurl. Any thread.
bool isWebAddress(const std::string &text);

// The address of a service, to which "/v1/..." is appended: a web address, perhaps with a path, without user, query and
// fragment, returned without trailing slashes. Empty for anything else. Loads libcurl. Any thread.
std::string serviceAddress(std::string text);

} // namespace velmora::ws
