// What is taken over and what is dropped.
#include "server/library/librarystore.h"

#include "server/store/store.h"

namespace velmora::server {

namespace {

constexpr int64_t missingSeconds = int64_t(90) * 24 * 3600;
constexpr int filesUnderLock = 50;

} // namespace

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

int64_t LibraryStore::dropOldMissing()
{
    return dropMissing(m_clock() - missingSeconds, false);
}

int64_t LibraryStore::dropAllMissing()
{
    return dropMissing(INT64_MAX, true);
}

int64_t LibraryStore::dropMissing(int64_t before, bool isKeptToo)
{
    int64_t dropped = 0;
    for (bool isMore = true; isMore;) {
        const Store::Lock db = m_store.lock();
        Transaction change(*db);
        std::vector<std::pair<int64_t, int64_t>> files; // with their tracks
        {
            // Nobody knows what has become of the files of a folder that is away.
            Statement row = db->prepare(
                "SELECT f.id, COALESCE(f.track_id, 0) FROM files f JOIN roots r ON r.id = f.root_id WHERE "
                "f.missing_since <= ?1 AND (?2 OR (f.is_kept = 0 AND r.is_present AND r.is_configured)) LIMIT ?3");
            row.with(before, isKeptToo, filesUnderLock);
            while (row.step())
                files.emplace_back(row.integer(0), row.integer(1));
        }
        for (const auto &[file, track] : files) {
            db->run("DELETE FROM files WHERE id = ?1", file);
            Statement other = db->prepare("SELECT 1 FROM files WHERE track_id = ?1 LIMIT 1");
            other.with(track);
            const bool isLast = track != 0 && !other.step();
            other.reset();
            if (isLast)
                drop(*db, track);
        }
        dropped += static_cast<int64_t>(files.size());
        isMore = files.size() == filesUnderLock;
        if (!isMore && dropped > 0)
            dropUnused(*db);
        change.commit();
    }
    if (dropped > 0)
        m_catalogue.noteChange();
    return dropped;
}

std::unordered_map<std::string, FileStamp> LibraryStore::coverFiles(int64_t rootId)
{
    std::unordered_map<std::string, FileStamp> covers;
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT path, size, mtime_ns, inode FROM cover_files WHERE root_id = ?1");
    row.with(rootId);
    while (row.step())
        covers[row.blob(0)] = {row.integer(1), row.integer(2), row.integer(3)};
    return covers;
}

void LibraryStore::noteCoverFile(int64_t rootId, const std::string &path, const std::optional<FileStamp> &stamp)
{
    const Store::Lock db = m_store.lock();
    Transaction change(*db);
    if (stamp)
        db->run("INSERT INTO cover_files (root_id, path, size, mtime_ns, inode) VALUES (?1, ?2, ?3, ?4, ?5) ON "
                "CONFLICT (root_id, path) DO UPDATE SET size = ?3, mtime_ns = ?4, inode = ?5",
                rootId, Blob{path}, stamp->size, stamp->mtimeNs, stamp->inode);
    else
        db->run("DELETE FROM cover_files WHERE root_id = ?1 AND path = ?2", rootId, Blob{path});
    // All paths in the folder: '0' comes after '/'.
    const std::string folder = path.substr(0, path.rfind('/') == std::string::npos ? 0 : path.rfind('/'));
    const std::string first = folder.empty() ? std::string() : folder + "/";
    const std::string end = folder.empty() ? std::string(256, '\xff') : folder + "0";
    db->run("UPDATE albums SET is_cover_looked_for = 0 WHERE id IN (SELECT t.album_id FROM files f JOIN tracks t ON "
            "t.id = f.track_id WHERE f.root_id = ?1 AND f.path >= ?2 AND f.path < ?3 AND "
            "instr(substr(f.path, ?4), x'2f') = 0)",
            rootId, Blob{first}, Blob{end}, static_cast<int64_t>(first.size()) + 1);
    change.commit();
}

void LibraryStore::inherit(Connection &db, int64_t trackId)
{
    int64_t heir = 0;
    {
        Statement row = db.prepare("SELECT other.id FROM tracks own JOIN tracks other ON other.recording_id = "
                                   "own.recording_id AND other.id <> own.id WHERE own.id = ?1 ORDER BY "
                                   "other.is_playable DESC, other.id LIMIT 1");
        row.with(trackId);
        if (!row.step())
            return;
        heir = row.integer(0);
    }
    // What was said of both stays as it was said of the heir.
    for (const char *table : {"feedback", "sleeps", "plays", "plays_under_way"})
        db.run(std::string("UPDATE OR IGNORE ") + table + " SET track_id = ?2 WHERE track_id = ?1", trackId, heir);
    // As Plays writes it.
    db.run("UPDATE remembered_plays SET plays = replace(plays, '[' || ?1 || ',', '[' || ?2 || ',') WHERE "
           "instr(plays, '[' || ?1 || ',') > 0",
           trackId, heir);
    for (const char *table : {"seeds", "bookmarks"})
        db.run(std::string("UPDATE OR IGNORE ") + table +
                   " SET target = CAST(?2 AS TEXT) WHERE kind = 'track' AND target = CAST(?1 AS TEXT)",
               trackId, heir);
}

void LibraryStore::drop(Connection &db, int64_t trackId)
{
    inherit(db, trackId);
    // A recording goes by the id of one of its tracks.
    db.run("UPDATE tracks SET recording_id = (SELECT MIN(id) FROM tracks WHERE recording_id = ?1 AND id <> ?1) WHERE "
           "recording_id = ?1",
           trackId);
    db.run("DELETE FROM track_search WHERE rowid = ?1", trackId);
    db.run("UPDATE styles SET tracks = tracks - 1 WHERE id IN (SELECT style_id FROM track_styles WHERE track_id = ?1)",
           trackId);
    // Nothing else takes away what names a track by a text.
    for (const char *table : {"seeds", "bookmarks"})
        db.run(std::string("DELETE FROM ") + table + " WHERE kind = 'track' AND target = CAST(?1 AS TEXT)", trackId);
    db.run("DELETE FROM tracks WHERE id = ?1", trackId);
}

void LibraryStore::dropUnused(Connection &db)
{
    db.run("DELETE FROM albums WHERE id NOT IN (SELECT album_id FROM tracks)");
    // An artist that a station was made from comes back with the next file.
    const std::string idle =
        "(SELECT id FROM artists WHERE id NOT IN (SELECT artist_id FROM tracks UNION SELECT artist_id FROM albums "
        "UNION "
        "SELECT CAST(target AS INTEGER) FROM seeds WHERE kind = 'artist' UNION SELECT CAST(target AS INTEGER) FROM "
        "bookmarks WHERE kind = 'artist'))";
    db.run("DELETE FROM artist_search WHERE rowid IN " + idle);
    db.run("DELETE FROM artists WHERE id IN " + idle);
}

} // namespace velmora::server
