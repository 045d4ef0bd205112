#include "server/api/houseaddress.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <cstring>
#include <fstream>
#include <ifaddrs.h>
#include <memory>
#include <net/if.h>
#include <string_view>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace velmora::server {

namespace {

using Bytes = std::vector<unsigned char>; // four or sixteen, in network order

Bytes bytesOf(const std::string &address)
{
    Bytes bytes(sizeof(in6_addr));
    if (::inet_pton(AF_INET6, address.c_str(), bytes.data()) == 1)
        return bytes;
    bytes.resize(sizeof(in_addr));
    return ::inet_pton(AF_INET, address.c_str(), bytes.data()) == 1 ? bytes : Bytes();
}

Bytes bytesOf(const sockaddr *address)
{
    Bytes bytes;
    if (address && address->sa_family == AF_INET) {
        bytes.resize(sizeof(in_addr));
        std::memcpy(bytes.data(), &reinterpret_cast<const sockaddr_in *>(address)->sin_addr, bytes.size());
    } else if (address && address->sa_family == AF_INET6) {
        bytes.resize(sizeof(in6_addr));
        std::memcpy(bytes.data(), &reinterpret_cast<const sockaddr_in6 *>(address)->sin6_addr, bytes.size());
    }
    return bytes;
}

bool isPrivate(const Bytes &a)
{
    if (a.size() == sizeof(in_addr))
        return a[0] == 127 || a[0] == 10 || (a[0] == 172 && (a[1] & 0xf0) == 16) || (a[0] == 192 && a[1] == 168) ||
               (a[0] == 169 && a[1] == 254);
    const bool isLoopback = std::all_of(a.begin(), a.end() - 1, [](unsigned char byte) { return byte == 0; });
    return (isLoopback && a.back() == 1) || (a[0] & 0xfe) == 0xfc || (a[0] == 0xfe && (a[1] & 0xc0) == 0x80);
}

using Interfaces = std::unique_ptr<ifaddrs, decltype(&::freeifaddrs)>;

Interfaces interfaces()
{
    ifaddrs *first = nullptr;
    if (::getifaddrs(&first) != 0)
        first = nullptr;
    return {first, ::freeifaddrs};
}

// Interfaces of virtual machines and containers: nobody in the house reaches them.
bool isVirtual(std::string_view name)
{
    constexpr std::array beginnings = {"docker", "veth", "virbr", "br-", "lxc", "podman"};
    return std::any_of(beginnings.begin(), beginnings.end(), [&](const char *with) { return name.starts_with(with); });
}

// From the kernel's table, because getifaddrs() does not tell a temporary address from one that stays.
std::vector<std::string> stableIpv6Addresses()
{
    constexpr unsigned globalScope = 0;
    constexpr unsigned unusable = 0x01 | 0x08 | 0x20 | 0x40; // temporary, a duplicate, deprecated, tentative
    std::vector<std::string> found;
    std::ifstream table("/proc/net/if_inet6");
    std::string digits, interface;
    unsigned index = 0, prefix = 0, scope = 0, flags = 0;
    while (table >> digits >> std::hex >> index >> prefix >> scope >> flags >> interface) {
        if (scope != globalScope || (flags & unusable) != 0 || isVirtual(interface))
            continue;
        std::string grouped;
        for (size_t at = 0; at < digits.size(); at += 4)
            grouped += (at == 0 ? "" : ":") + digits.substr(at, 4);
        in6_addr address{};
        std::array<char, INET6_ADDRSTRLEN> text{};
        if (::inet_pton(AF_INET6, grouped.c_str(), &address) == 1 &&
            ::inet_ntop(AF_INET6, &address, text.data(), text.size()))
            found.emplace_back(text.data());
    }
    return found;
}

} // namespace

std::vector<std::string> houseAddresses()
{
    std::vector<std::string> found;
    const Interfaces owner = interfaces();
    for (const ifaddrs *entry = owner.get(); entry; entry = entry->ifa_next) {
        const bool isUsable = entry->ifa_addr && entry->ifa_addr->sa_family == AF_INET &&
                              (entry->ifa_flags & IFF_UP) != 0 && (entry->ifa_flags & IFF_LOOPBACK) == 0 &&
                              !isVirtual(entry->ifa_name);
        if (!isUsable)
            continue;
        std::array<char, INET_ADDRSTRLEN> text{};
        const auto *address = reinterpret_cast<const sockaddr_in *>(entry->ifa_addr);
        if (::inet_ntop(AF_INET, &address->sin_addr, text.data(), text.size()))
            found.emplace_back(text.data());
    }
    const std::vector<std::string> ipv6 = stableIpv6Addresses();
    found.insert(found.end(), ipv6.begin(), ipv6.end());
    return found;
}

std::string houseAddress()
{
    const std::vector<std::string> addresses = houseAddresses();
    return addresses.empty() ? "127.0.0.1" : addresses.front();
}

bool hasIpv6()
{
    const int socket = ::socket(AF_INET6, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (socket >= 0)
        ::close(socket);
    return socket >= 0;
}

bool isInHouse(const std::string &address)
{
    const Bytes caller = bytesOf(address);
    if (caller.empty())
        return false;
    if (isPrivate(caller))
        return true;
    const Interfaces owner = interfaces();
    for (const ifaddrs *entry = owner.get(); entry; entry = entry->ifa_next) {
        const Bytes own = bytesOf(entry->ifa_addr);
        const Bytes mask = bytesOf(entry->ifa_netmask);
        const bool isPointToPoint = (entry->ifa_flags & IFF_POINTOPOINT) != 0;
        if (own.size() != caller.size() || mask.size() != caller.size() || isPointToPoint)
            continue;
        bool isSame = true;
        for (size_t i = 0; i < caller.size(); ++i)
            isSame = isSame && (caller[i] & mask[i]) == (own[i] & mask[i]);
        if (isSame)
            return true;
    }
    return false;
}

} // namespace velmora::server
