#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::server::http {

// An IP address in its usual spelling; an IPv4 address inside IPv6 as IPv4. Nothing when the text is none.
std::optional<std::string> normalAddress(std::string_view text);
// What counts as one caller: an IPv4 address, or the /64 that an IPv6 address belongs to.
std::string networkOf(const std::string &address);

// The reverse proxies whose word about their callers is taken.
class TrustedProxies {
public:
    // Addresses in any spelling; others are ignored.
    explicit TrustedProxies(const std::vector<std::string> &addresses);

    bool contains(const std::string &address) const { return m_addresses.contains(address); }
    // The caller behind `peer`: the last address in X-Forwarded-For that is no trusted proxy. Only what trusted proxies
    // wrote counts, so nobody can choose an address; from an unreadable entry on the list is ignored.
    std::string callerBehind(const std::string &peer, std::string_view forwardedFor) const;

private:
    std::set<std::string> m_addresses;
};

} // namespace velmora::server::http
