#pragma once

#include "server/accounts/accounts.h"

namespace velmora::server {

enum class MediaKind { Audio, Picture };
const char *mediaKindName(MediaKind kind); // as it stands in addresses: "audio", "art"
std::optional<MediaKind> mediaKindOf(const std::string &name);

enum class MediaCheck { Valid, BadSignature, Expired };

// Absolute addresses of audio and pictures, each signed for one file, one account and twelve hours. Any thread, once
// the base address is set.
class MediaAddresses {
public:
    static constexpr int64_t lifeSeconds = 12 * 3600;

    MediaAddresses(std::string signingKey, Clock clock);

    // Scheme, host and port that the radio reaches, without a slash at the end. Set before the server answers.
    void setBase(const std::string &base) { m_base = base; }
    const std::string &base() const { return m_base; }

    // `file` is a public id with an extension. `issueId` tells which handed-out track the address is for.
    std::string address(MediaKind kind, const std::string &file, AccountId account,
                        std::optional<int64_t> issueId = std::nullopt) const;
    MediaCheck check(MediaKind kind, const std::string &file, const std::string &account, const std::string &expiry,
                     const std::string &signature, const std::string &issue = {}) const;

private:
    std::string sign(MediaKind kind, const std::string &file, const std::string &account, const std::string &expiry,
                     const std::string &issue) const;

    std::string m_signingKey;
    Clock m_clock;
    std::string m_base;
};

} // namespace velmora::server
