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

std::string MediaAddresses::path(MediaKind kind, const std::string &file, AccountId account, const std::string &radio,
                                 const std::string &issue) const
{
    MediaQuery query;
    query.kind = kind;
    query.file = file;
    query.account = std::to_string(account);
    query.expiry = std::to_string(m_clock() + lifeSeconds);
    query.radio = radio;
    query.issue = issue;
    return std::string("/media/") + mediaKindName(kind) + "/" + file + "?a=" + query.account + "&e=" + query.expiry +
           (query.issue.empty() ? "" : "&i=" + query.issue) + (radio.empty() ? "" : "&r=" + radio) +
           "&s=" + sign(query);
}

MediaCheck MediaAddresses::check(const MediaQuery &query) const
{
    // The signature is checked first: an unsigned address does not reveal whether its time is over.
    if (!equalSecrets(sign(query), query.signature))
        return MediaCheck::BadSignature;
    int64_t until = 0;
    std::from_chars(query.expiry.data(), query.expiry.data() + query.expiry.size(), until);
    return until > m_clock() ? MediaCheck::Valid : MediaCheck::Expired;
}

std::string MediaAddresses::sign(const MediaQuery &query) const
{
    std::string message = std::string("media\n") + mediaKindName(query.kind) + "\n" + query.file + "\n" +
                          query.account + "\n" + query.expiry;
    // Named, so that none of the optional ones can stand for another; an issue alone is signed as it always was.
    if (!query.issue.empty())
        message += "\n" + query.issue;
    if (!query.radio.empty())
        message += "\nradio " + query.radio;
    return keyedHash(m_signingKey, message);
}

} // namespace velmora::server
