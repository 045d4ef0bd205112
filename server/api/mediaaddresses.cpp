#include "server/api/mediaaddresses.h"

#include <charconv>

namespace velmora::server {

const char *mediaKindName(MediaKind kind)
{
    return kind == MediaKind::Audio ? "audio" : "art";
}

std::optional<MediaKind> mediaKindOf(const std::string &name)
{
    for (const MediaKind kind : {MediaKind::Audio, MediaKind::Picture}) {
        if (name == mediaKindName(kind))
            return kind;
    }
    return std::nullopt;
}

MediaAddresses::MediaAddresses(std::string signingKey, Clock clock)
    : m_signingKey(std::move(signingKey))
    , m_clock(std::move(clock))
{
}

std::string MediaAddresses::address(MediaKind kind, const std::string &file, AccountId account,
                                    std::optional<int64_t> issueId) const
{
    const std::string accountText = std::to_string(account);
    const std::string expiry = std::to_string(m_clock() + lifeSeconds);
    const std::string issue = issueId ? std::to_string(*issueId) : std::string();
    return m_base + "/media/" + mediaKindName(kind) + "/" + file + "?a=" + accountText + "&e=" + expiry +
           (issue.empty() ? issue : "&i=" + issue) + "&s=" + sign(kind, file, accountText, expiry, issue);
}

MediaCheck MediaAddresses::check(MediaKind kind, const std::string &file, const std::string &account,
                                 const std::string &expiry, const std::string &signature,
                                 const std::string &issue) const
{
    // The signature is checked first: an unsigned address does not reveal whether its time is over.
    if (!equalSecrets(sign(kind, file, account, expiry, issue), signature))
        return MediaCheck::BadSignature;
    int64_t until = 0;
    std::from_chars(expiry.data(), expiry.data() + expiry.size(), until);
    return until > m_clock() ? MediaCheck::Valid : MediaCheck::Expired;
}

std::string MediaAddresses::sign(MediaKind kind, const std::string &file, const std::string &account,
                                 const std::string &expiry, const std::string &issue) const
{
    std::string message = std::string("media\n") + mediaKindName(kind) + "\n" + file + "\n" + account + "\n" + expiry;
    if (!issue.empty())
        message += "\n" + issue;
    return keyedHash(m_signingKey, message);
}

} // namespace velmora::server
