#pragma once

#include "server/stations/sealedtokens.h"

namespace velmora::server {

class Catalogue;

enum class MusicKind { Artist, Track, Album, Style };
const char *musicKindName(MusicKind kind);
MusicKind musicKindOf(const std::string &name); // of a seed; a style unless it says otherwise

// What a station can be made from: an artist, a track or an album by id, or a style by name.
struct Music {
    MusicKind kind = MusicKind::Track;
    std::string target;
};
int64_t idOf(const std::string &target); // 0: not a number

// Tokens that name music for one account only. The same music keeps its token as long as the key of tokens is the same.
// Any thread.
class MusicTokens {
public:
    MusicTokens(SealedTokens &tokens, Catalogue &catalogue)
        : m_tokens(tokens)
        , m_catalogue(catalogue)
    {
    }
    // `name`: of the artist or the song. An id that was given to other music since is told by it.
    std::string tokenFor(AccountId account, MusicKind kind, int64_t id, const std::string &name);
    std::string tokenForStyle(AccountId account, const std::string &style);
    // Nothing when the token is not one of this account, or its artist or track is gone.
    std::optional<Music> find(AccountId account, const std::string &token);

private:
    SealedTokens &m_tokens;
    Catalogue &m_catalogue;
};

} // namespace velmora::server
