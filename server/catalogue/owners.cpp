#include "server/catalogue/owners.h"

#include "server/accounts/secrets.h"
#include "server/catalogue/searchtext.h"
#include "server/store/connection.h"

namespace velmora::server {

int64_t Owners::artist(const std::string &name)
{
    const auto known = m_artists.find(name);
    if (known != m_artists.end())
        return known->second;
    const std::string folded = foldedText(name);
    int64_t id = 0;
    // A name of punctuation alone folds to nothing and is compared as it is.
    Statement row = m_db.prepare("SELECT id FROM artists WHERE folded = ?1 AND (?1 <> '' OR name = ?2) ORDER BY id");
    row.with(folded, name);
    if (row.step()) {
        id = row.integer(0);
    } else {
        id = m_db.number("INSERT INTO artists (public_id, name, folded) VALUES (?1, ?2, ?3) RETURNING id",
                         randomToken(9), name, folded);
        m_db.run("INSERT INTO artist_search (rowid, name) VALUES (?1, ?2)", id, indexedText(name));
    }
    return m_artists[name] = id;
}

int64_t Owners::unknownArtist(const std::string &name, const std::string &place)
{
    // No name folds to text with such a sign in front, so nothing typed or tagged is ever equal to it.
    const std::string key = "?" + tokenHash(place);
    const auto known = m_artists.find(key);
    if (known != m_artists.end())
        return known->second;
    Statement row = m_db.prepare("SELECT id FROM artists WHERE folded = ?1");
    row.with(key);
    if (row.step())
        return m_artists[key] = row.integer(0);
    return m_artists[key] =
               m_db.number("INSERT INTO artists (public_id, name, folded) VALUES (?1, ?2, ?3) RETURNING id",
                           randomToken(9), name, key);
}

int64_t Owners::album(const AlbumKey &key)
{
    const auto remembered = std::make_tuple(key.artistId, key.title, key.folder);
    const auto known = m_albums.find(remembered);
    if (known != m_albums.end())
        return known->second;
    int64_t id = 0;
    Statement row = m_db.prepare("SELECT id FROM albums WHERE artist_id = ?1 AND title = ?2 AND "
                                 "COALESCE(folder, x'') = ?3");
    row.with(key.artistId, key.title, Blob{key.folder});
    if (row.step()) {
        id = row.integer(0);
    } else {
        id = m_db.number("INSERT INTO albums (public_id, artist_id, title, year, folder) VALUES (?1, ?2, ?3, ?4, ?5) "
                         "RETURNING id",
                         randomToken(9), key.artistId, key.title, key.year, Blob{key.folder});
    }
    return m_albums[remembered] = id;
}

std::string Owners::style(const std::string &name)
{
    const std::string folded = foldedText(name);
    if (folded.empty())
        return name;
    m_db.run("INSERT INTO styles (name, folded) VALUES (?1, ?2) ON CONFLICT (folded) DO NOTHING", name, folded);
    Statement row = m_db.prepare("SELECT name FROM styles WHERE folded = ?1");
    row.with(folded);
    row.step();
    return row.text(0);
}

void Owners::setStyles(int64_t trackId, const std::vector<std::string> &styles)
{
    m_db.run("UPDATE styles SET tracks = tracks - 1 WHERE id IN (SELECT style_id FROM track_styles WHERE track_id = "
             "?1)",
             trackId);
    m_db.run("DELETE FROM track_styles WHERE track_id = ?1", trackId);
    for (const std::string &name : styles)
        m_db.run("INSERT OR IGNORE INTO track_styles (track_id, style_id, weight) SELECT ?1, id, ?3 FROM styles WHERE "
                 "folded = ?2",
                 trackId, foldedText(style(name)), 1.0 / static_cast<double>(styles.size()));
    m_db.run("UPDATE styles SET tracks = tracks + 1 WHERE id IN (SELECT style_id FROM track_styles WHERE track_id = "
             "?1)",
             trackId);
}

} // namespace velmora::server
