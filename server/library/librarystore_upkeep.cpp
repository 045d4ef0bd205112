// What is taken over and what is dropped.
#include "server/library/librarystore.h"

#include "server/store/store.h"

namespace velmora::server {

std::optional<KnownFile> LibraryStore::file(int64_t rootId, const std::string &path)
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT id, size, mtime_ns, inode, COALESCE(track_id, 0), missing_since IS NOT NULL, "
                                "worker_version, noted_at FROM files WHERE root_id = ?1 AND path = ?2");
    row.with(rootId, Blob{path});
    if (!row.step())
        return std::nullopt;
    return KnownFile{row.integer(0),
                     {row.integer(1), row.integer(2), row.integer(3)},
                     row.integer(4),
                     row.integer(5) != 0,
                     static_cast<int>(row.integer(6)),
                     row.integer(7)};
}

void LibraryStore::adoptTracks(const std::filesystem::path &root)
{
    const std::string inside = root.native() + "/";
    const Store::Lock db = m_store.lock();
    Transaction change(*db);
    struct Found {
        int64_t id = 0;
        std::string path;
        bool isPlayable = false;
    };
    std::vector<Found> tracks;
    {
        Statement row = db->prepare("SELECT id, CAST(audio_path AS BLOB), is_playable FROM tracks WHERE source = "
                                    "'demo' AND NOT EXISTS (SELECT 1 FROM files WHERE track_id = tracks.id)");
        while (row.step())
            tracks.push_back({row.integer(0), row.blob(1), row.integer(2) != 0});
    }
    bool hasDropped = false;
    for (const Found &track : tracks) {
        if (!track.path.starts_with(inside))
            continue;
        hasDropped = hasDropped || !track.isPlayable;
        if (track.isPlayable)
            db->run("INSERT OR IGNORE INTO files (root_id, path, size, mtime_ns, inode, track_id) SELECT id, ?2, 0, 0, "
                    "0, ?3 FROM roots WHERE path = ?1",
                    Blob{root.native()}, Blob{track.path.substr(inside.size())}, track.id);
        else
            drop(*db, track.id);
    }
    if (hasDropped)
        dropUnused(*db);
    change.commit();
}

void LibraryStore::drop(Database &db, int64_t trackId)
{
    db.run("DELETE FROM track_search WHERE rowid = ?1", trackId);
    db.run("UPDATE styles SET tracks = tracks - 1 WHERE id IN (SELECT style_id FROM track_styles WHERE track_id = ?1)",
           trackId);
    // Ids of rows that are gone may be given again.
    for (const char *table : {"seeds", "music_tokens", "bookmarks"})
        db.run(std::string("DELETE FROM ") + table + " WHERE kind = 'track' AND target = CAST(?1 AS TEXT)", trackId);
    db.run("DELETE FROM tracks WHERE id = ?1", trackId);
}

void LibraryStore::dropUnused(Database &db)
{
    db.run("DELETE FROM music_tokens WHERE kind = 'album' AND CAST(target AS INTEGER) NOT IN (SELECT album_id FROM "
           "tracks)");
    db.run("DELETE FROM albums WHERE id NOT IN (SELECT album_id FROM tracks)");
    // An artist that a station was made from comes back with the next file.
    const std::string idle =
        "(SELECT id FROM artists WHERE id NOT IN (SELECT artist_id FROM tracks UNION SELECT artist_id FROM albums "
        "UNION "
        "SELECT CAST(target AS INTEGER) FROM seeds WHERE kind = 'artist' UNION SELECT CAST(target AS INTEGER) FROM "
        "bookmarks WHERE kind = 'artist'))";
    db.run("DELETE FROM music_tokens WHERE kind = 'artist' AND CAST(target AS INTEGER) IN " + idle);
    db.run("DELETE FROM artist_search WHERE rowid IN " + idle);
    db.run("DELETE FROM artists WHERE id IN " + idle);
}

} // namespace velmora::server
