#include "server/api/houseaddress.h"

#include <arpa/inet.h>
#include <array>
#include <ifaddrs.h>
#include <memory>
#include <net/if.h>

namespace velmora::server {

std::string houseAddress()
{
    ifaddrs *first = nullptr;
    if (::getifaddrs(&first) != 0)
        return "127.0.0.1";
    const std::unique_ptr<ifaddrs, decltype(&::freeifaddrs)> owner(first, ::freeifaddrs);
    for (const ifaddrs *entry = first; entry; entry = entry->ifa_next) {
        const bool isUsable = entry->ifa_addr && entry->ifa_addr->sa_family == AF_INET &&
                              (entry->ifa_flags & IFF_UP) != 0 && (entry->ifa_flags & IFF_LOOPBACK) == 0;
        if (!isUsable)
            continue;
        std::array<char, INET_ADDRSTRLEN> text{};
        const auto *address = reinterpret_cast<const sockaddr_in *>(entry->ifa_addr);
        if (::inet_ntop(AF_INET, &address->sin_addr, text.data(), text.size()))
            return text.data();
    }
    return "127.0.0.1";
}

} // namespace velmora::server
