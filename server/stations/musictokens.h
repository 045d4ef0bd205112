#pragma once

#include "server/accounts/accounts.h"

namespace velmora::server {

enum class MusicKind { Artist, Track, Album, Style };
const char *musicKindName(MusicKind kind);

// What a station can be made from: an artist, a track or an album by id, or a style by name.
struct Music {
    MusicKind kind = MusicKind::Track;
    std::string target;
};

// Tokens that name music for one account only. The same music keeps its token. Any thread.
class MusicTokens {
public:
    explicit MusicTokens(Store &store)
        : m_store(store)
    {
    }
    std::string tokenFor(AccountId account, MusicKind kind, const std::string &target);
    std::string tokenFor(AccountId account, MusicKind kind, int64_t id)
    {
        return tokenFor(account, kind, std::to_string(id));
    }
    std::optional<Music> find(AccountId account, const std::string &token);

private:
    Store &m_store;
};

} // namespace velmora::server
