#include "server/stations/musictokens.h"

#include "server/store/store.h"

namespace velmora::server {

const char *musicKindName(MusicKind kind)
{
    switch (kind) {
    case MusicKind::Artist:
        return "artist";
    case MusicKind::Track:
        return "track";
    case MusicKind::Album:
        return "album";
    case MusicKind::Style:
        break;
    }
    return "style";
}

std::string MusicTokens::tokenFor(AccountId account, MusicKind kind, const std::string &target)
{
    const Store::Lock db = m_store.lock();
    const auto existing = [&]() -> std::string {
        Statement row =
            db->prepare("SELECT token FROM music_tokens WHERE account_id = ?1 AND kind = ?2 AND target = ?3");
        row.with(account, musicKindName(kind), target);
        return row.step() ? row.text(0) : std::string();
    };
    std::string token = existing();
    if (token.empty()) {
        token = randomToken(15);
        db->run("INSERT INTO music_tokens (token, account_id, kind, target) VALUES (?1, ?2, ?3, ?4)", token, account,
                musicKindName(kind), target);
    }
    return token;
}

std::optional<Music> MusicTokens::find(AccountId account, const std::string &token)
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT kind, target FROM music_tokens WHERE token = ?1 AND account_id = ?2");
    row.with(token, account);
    if (!row.step())
        return std::nullopt;
    for (const MusicKind kind : {MusicKind::Artist, MusicKind::Track, MusicKind::Album, MusicKind::Style}) {
        if (row.text(0) == musicKindName(kind))
            return Music{kind, row.text(1)};
    }
    return std::nullopt;
}

} // namespace velmora::server
