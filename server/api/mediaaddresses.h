#pragma once

#include "server/accounts/accounts.h"

namespace velmora::server {

enum class MediaKind { Audio, Picture };
const char *mediaKindName(MediaKind kind); // as it stands in addresses: "audio", "art"
std::optional<MediaKind> mediaKindOf(const std::string &name);

enum class MediaCheck { Valid, BadSignature, Expired };

// What a media address says, as it stands there.
struct MediaQuery {
    MediaKind kind = MediaKind::Audio;
    std::string file;    // a public id with an extension
    std::string account; // its number
    std::string expiry;  // Unix seconds
    std::string issue;   // Issue::text() of the handed-out track that it is for; empty: none
    std::string radio;   // Devices::radioMark() of the radio that asked; empty: none
    std::string signature;
};

// Addresses of audio and pictures, each signed for one file, one account, one radio and twelve hours. Whether the
// account and the radio are still there is not asked here: see Devices::mayListen(). Any thread, once the base address
// is set.
class MediaAddresses {
public:
    static constexpr int64_t lifeSeconds = 12 * 3600;

    MediaAddresses(std::string signingKey, Clock clock);

    // Scheme, host and port that the radio reaches, without a slash at the end. Set before the server answers.
    void setBase(const std::string &base) { m_base = base; }
    const std::string &base() const { return m_base; }

    // What follows the base in an address. `file`, `radio` and the issue as in MediaQuery.
    std::string path(MediaKind kind, const std::string &file, AccountId account, const std::string &radio = {},
                     const std::string &issue = {}) const;
    MediaCheck check(const MediaQuery &query) const;

private:
    std::string sign(const MediaQuery &query) const;

    std::string m_signingKey;
    Clock m_clock;
    std::string m_base;
};

} // namespace velmora::server
