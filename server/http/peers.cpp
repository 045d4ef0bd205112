#include "server/http/peers.h"

#include <arpa/inet.h>
#include <array>
#include <cstring>
#include <netinet/in.h>

namespace velmora::server::http {

std::optional<std::string> normalAddress(std::string_view text)
{
    const std::string address(text);
    std::array<char, INET6_ADDRSTRLEN> normal{};
    in_addr four{};
    in6_addr six{};
    if (::inet_pton(AF_INET, address.c_str(), &four) == 1)
        return ::inet_ntop(AF_INET, &four, normal.data(), normal.size());
    if (::inet_pton(AF_INET6, address.c_str(), &six) != 1)
        return std::nullopt;
    if (IN6_IS_ADDR_V4MAPPED(&six))
        return ::inet_ntop(AF_INET, &six.s6_addr[12], normal.data(), normal.size());
    return ::inet_ntop(AF_INET6, &six, normal.data(), normal.size());
}

std::string networkOf(const std::string &address)
{
    in6_addr six{};
    if (::inet_pton(AF_INET6, address.c_str(), &six) != 1)
        return address;
    std::memset(&six.s6_addr[8], 0, 8);
    std::array<char, INET6_ADDRSTRLEN> network{};
    return ::inet_ntop(AF_INET6, &six, network.data(), network.size());
}

TrustedProxies::TrustedProxies(const std::vector<std::string> &addresses)
{
    for (const std::string &address : addresses) {
        if (const auto normal = normalAddress(address))
            m_addresses.insert(*normal);
    }
}

std::string TrustedProxies::callerBehind(const std::string &peer, std::string_view forwardedFor) const
{
    std::string caller = peer;
    while (contains(caller) && !forwardedFor.empty()) {
        const size_t comma = forwardedFor.rfind(',');
        std::string_view hop = comma == std::string_view::npos ? forwardedFor : forwardedFor.substr(comma + 1);
        forwardedFor = comma == std::string_view::npos ? std::string_view() : forwardedFor.substr(0, comma);
        hop.remove_prefix(std::min(hop.find_first_not_of(" \t"), hop.size()));
        hop = hop.substr(0, hop.find_last_not_of(" \t") + 1);
        // Some proxies add the port: "192.0.2.1:4711", "[2001:db8::1]:4711".
        if (hop.starts_with('['))
            hop = hop.substr(1, hop.find(']') - 1);
        else if (hop.find(':') == hop.rfind(':'))
            hop = hop.substr(0, hop.find(':'));
        const auto address = normalAddress(hop);
        if (!address)
            break;
        caller = *address;
    }
    return caller;
}

} // namespace velmora::server::http
