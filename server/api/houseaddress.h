#pragma once

#include <string>

namespace velmora::server {

// This machine's address as another machine in the house reaches it: the first IPv4 address of an interface that is up
// and not the loopback. "127.0.0.1" when there is none.
std::string houseAddress();

} // namespace velmora::server
