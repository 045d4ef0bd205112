#pragma once

#include <string>
#include <vector>

namespace velmora::server {

// This machine's addresses as another machine in the house reaches it: of interfaces that are up, are not the loopback
// and do not connect virtual machines or containers. IPv4 first; of IPv6 those that stay, without link-local ones,
// which mean nothing on another machine.
std::vector<std::string> houseAddresses();
// The first of them; "127.0.0.1" when there is none.
std::string houseAddress();

// Whether this system speaks IPv6 at all.
bool hasIpv6();

// Whether an address belongs to the house: a private or link-local one, the loopback, or one in the network of an
// interface of this machine. False for a text that is no address.
bool isInHouse(const std::string &address);

} // namespace velmora::server
