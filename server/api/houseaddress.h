#pragma once

#include <string>
#include <vector>

namespace velmora::server {

// This machine's IPv4 addresses as another machine in the house reaches it: of interfaces that are up, are not the
// loopback and do not connect virtual machines or containers.
std::vector<std::string> houseAddresses();
// The first of them; "127.0.0.1" when there is none.
std::string houseAddress();

// Whether an address belongs to the house: a private or link-local one, the loopback, or one in the network of an
// interface of this machine. False for a text that is no address.
bool isInHouse(const std::string &address);

} // namespace velmora::server
