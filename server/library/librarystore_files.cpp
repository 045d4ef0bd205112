// A file that was read becomes a track, or stays the one that it was.
#include "server/library/librarystore.h"

#include "server/catalogue/owners.h"
#include "server/catalogue/searchtext.h"
#include "server/library/playrules.h"
#include "server/store/store.h"

#include <cmath>
#include <set>

namespace velmora::server {

namespace {

std::string folderOf(const std::string &path)
{
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

} // namespace

int LibraryStore::put(int64_t rootId, const std::vector<ReadFile> &files,
                      const std::function<bool(const Root &, const std::string &, const FileStamp &)> &isGone)
{
    // Asked without the lock: a call into a folder may take long.
    std::set<int64_t> gone;
    for (const SoundHolder &holder : holdersOfSounds(files)) {
        if (holder.root.isPresent && isGone(holder.root, holder.path, holder.stamp))
            gone.insert(holder.fileId);
    }
    int made = 0;
    {
        const Store::Lock db = m_store.lock();
        Transaction change(*db, Durability::Later);
        for (const ReadFile &file : files) {
            int64_t trackId = 0;
            int64_t fileId = file.knownId;
            if (file.hasTags) {
                trackId = takeOver(*db, rootId, file, gone);
                if (trackId == 0 && fileId != 0)
                    keepReplaced(*db, fileId);
            }
            const int64_t known = trackId;
            const std::string leftOut = ruleFor(file, m_hasFormats);
            if (file.hasTags)
                trackId = putTrack(*db, rootId, file, trackId);
            made += known == 0 && trackId != 0;
            // What cannot be read keeps the track that it had: it may only be damaged for now.
            Statement row = db->prepare(
                "INSERT INTO files (root_id, path, size, mtime_ns, inode, track_id, sound_print, quality, "
                "worker_version, "
                "tries, left_out, problem, noted_at) VALUES (?1, ?2, ?3, ?4, ?5, NULLIF(?6, 0), NULLIF(?7, x''), ?8, "
                "?9, 1, ?10, ?11, ?12) ON CONFLICT (root_id, path) DO UPDATE SET size = ?3, mtime_ns = ?4, inode = ?5, "
                "track_id = CASE WHEN ?6 THEN ?6 ELSE track_id END, "
                // What was heard of a sound stays true while the sound is the same.
                "analysis_version = CASE WHEN sound_print = ?7 THEN analysis_version ELSE 0 END, "
                "left_out = CASE WHEN sound_print = ?7 AND analysis_version <> 0 AND ?10 = '' AND left_out IN "
                "('speech', 'short') THEN left_out ELSE ?10 END, "
                "sound_print = COALESCE(NULLIF(?7, x''), sound_print), quality = ?8, worker_version = ?9, "
                "tries = tries + 1, problem = ?11, noted_at = ?12, missing_since = NULL RETURNING id");
            row.with(rootId, Blob{file.path}, file.stamp.size, file.stamp.mtimeNs, file.stamp.inode, trackId,
                     Blob{file.tags.soundPrint}, qualityOf(file.tags), media::workerVersion, leftOut, file.problem,
                     m_clock());
            row.step();
            fileId = row.integer(0);
            row.reset();
            if (trackId == 0) {
                Statement kept = db->prepare("SELECT COALESCE(track_id, 0) FROM files WHERE id = ?1");
                kept.with(fileId);
                kept.step();
                trackId = kept.integer(0);
            }
            if (trackId == 0)
                continue;
            // The same coded sound at another place: one recording.
            if (!file.tags.soundPrint.empty()) {
                int64_t other = 0;
                {
                    Statement twin = db->prepare("SELECT track_id FROM files WHERE sound_print = ?1 AND id <> ?2 AND "
                                                 "track_id IS NOT NULL AND track_id <> ?3 LIMIT 1");
                    twin.with(Blob{file.tags.soundPrint}, fileId, trackId);
                    if (twin.step())
                        other = twin.integer(0);
                }
                if (other != 0)
                    joinRecordings(*db, trackId, other);
            }
            settleRecording(*db, trackId);
        }
        change.commit();
    }
    m_catalogue.noteChange();
    return made;
}

std::vector<LibraryStore::SoundHolder> LibraryStore::holdersOfSounds(const std::vector<ReadFile> &files)
{
    std::vector<SoundHolder> holders;
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare(
        "SELECT f.id, f.path, f.size, f.mtime_ns, f.inode, r.id, r.path, r.is_present AND r.is_configured FROM files f "
        "JOIN roots r ON r.id = f.root_id WHERE f.sound_print = ?1 AND f.track_id IS NOT NULL AND f.id <> ?2 AND "
        "f.missing_since IS NULL LIMIT 8");
    for (const ReadFile &file : files) {
        if (file.tags.soundPrint.empty())
            continue;
        row.reset();
        row.with(Blob{file.tags.soundPrint}, file.knownId);
        while (row.step())
            holders.push_back({row.integer(0),
                               {row.integer(5), row.blob(6), {}, row.integer(7) != 0, 0, {}, 0},
                               row.blob(1),
                               {row.integer(2), row.integer(3), row.integer(4)}});
    }
    return holders;
}

int64_t LibraryStore::takeOver(Connection &db, int64_t rootId, const ReadFile &file, const std::set<int64_t> &gone)
{
    int64_t ownTrack = 0;
    std::string ownPrint;
    if (file.knownId != 0) {
        Statement row = db.prepare("SELECT COALESCE(track_id, 0), sound_print FROM files WHERE id = ?1");
        row.with(file.knownId);
        if (row.step()) {
            ownTrack = row.integer(0);
            ownPrint = row.blob(1);
        }
        if (ownTrack != 0 && (ownPrint.empty() || ownPrint == file.tags.soundPrint))
            return ownTrack;
    }
    if (file.tags.soundPrint.empty())
        return ownTrack;
    // The sound is known from a file that is there no longer, or is another by now.
    struct Other {
        int64_t id = 0;
        int64_t trackId = 0;
    } other;
    {
        Statement row = db.prepare("SELECT id, track_id, missing_since IS NOT NULL FROM files WHERE sound_print = ?1 "
                                   "AND track_id IS NOT NULL AND id <> ?2 LIMIT 8");
        row.with(Blob{file.tags.soundPrint}, file.knownId);
        while (other.id == 0 && row.step()) {
            if (row.integer(2) != 0 || gone.contains(row.integer(0)))
                other = {row.integer(0), row.integer(1)};
        }
    }
    if (other.id != 0) {
        // Whatever this file was goes to where that one was: two files may have changed places.
        const auto putRow = [&](int64_t fileId, int64_t trackId, const std::string &print) {
            // What was heard goes with the track. The stamp does not: it is of the file that was there before.
            db.run("UPDATE files SET track_id = ?2, sound_print = ?3, analysis_version = COALESCE((SELECT version FROM "
                   "descriptors WHERE track_id = ?2), 0), size = 0, mtime_ns = 0, inode = 0 WHERE id = ?1",
                   fileId, trackId, Blob{print});
        };
        if (ownTrack != 0)
            putRow(other.id, ownTrack, ownPrint);
        else
            db.run("DELETE FROM files WHERE id = ?1", other.id);
        int64_t fileId = file.knownId;
        if (fileId == 0) {
            fileId = db.number("INSERT INTO files (root_id, path, size, mtime_ns, inode) VALUES (?1, ?2, 0, 0, 0) "
                               "RETURNING id",
                               rootId, Blob{file.path});
        }
        putRow(fileId, other.trackId, file.tags.soundPrint);
        // Nothing may be left of it but a file that is missing.
        if (ownTrack != 0)
            settleRecording(db, ownTrack);
        return other.trackId;
    }
    if (ownTrack == 0)
        return 0;
    // New sound under an old name: a better file of the same song keeps its track, another song gets one of its own.
    Statement row =
        db.prepare("SELECT t.folded, a.folded FROM tracks t JOIN artists a ON a.id = t.artist_id WHERE t.id "
                   "= ?1");
    row.with(ownTrack);
    const bool isSameSong =
        row.step() && row.text(0) == foldedText(file.facts.song) && row.text(1) == foldedText(file.facts.artist);
    return isSameSong ? ownTrack : 0;
}

void LibraryStore::keepReplaced(Connection &db, int64_t fileId)
{
    // A row of its own, missing, under a name that no file in a folder has: should the sound appear elsewhere, the
    // track goes there.
    int64_t track = 0;
    {
        Statement row = db.prepare(
            "INSERT INTO files (root_id, path, size, mtime_ns, inode, track_id, sound_print, missing_since) SELECT "
            "root_id, CAST('/' || hex(randomblob(8)) AS BLOB), size, mtime_ns, inode, track_id, sound_print, ?2 FROM "
            "files WHERE "
            "id = ?1 AND track_id IS NOT NULL RETURNING track_id");
        row.with(fileId, m_clock());
        if (row.step())
            track = row.integer(0);
    }
    if (track == 0)
        return;
    db.run("UPDATE files SET track_id = NULL WHERE id = ?1", fileId);
    settleRecording(db, track);
}

int64_t LibraryStore::putTrack(Connection &db, int64_t rootId, const ReadFile &file, int64_t trackId)
{
    const TrackFacts &facts = file.facts;
    std::string rootPath;
    std::string source;
    {
        Statement row = db.prepare("SELECT path, source FROM roots WHERE id = ?1");
        row.with(rootId);
        row.step();
        rootPath = row.blob(0);
        source = row.text(1);
    }
    const std::string folder = folderOf(file.path);
    const std::string place = std::to_string(rootId) + ":" + folder;
    Owners owners(db);
    const int64_t artist =
        facts.isUnknownArtist ? owners.unknownArtist(facts.artist, place) : owners.artist(facts.artist);
    const std::string &byWhom = facts.albumArtist;
    const int64_t albumArtist = facts.isCompilation || byWhom.empty() ? artist : owners.artist(byWhom);
    const int64_t album =
        facts.isCompilation
            ? owners.album({owners.artist("Various Artists"), facts.album, place, facts.year})
            : owners.album({albumArtist, facts.album, facts.album.empty() ? place : std::string(), facts.year});
    const std::string audioPath = rootPath + "/" + file.path;
    const std::string style = facts.styles.empty() ? std::string() : owners.style(facts.styles.front());
    const auto duration = static_cast<int>(std::lround(file.tags.seconds));
    Statement row = db.prepare(
        trackId == 0
            ? "INSERT INTO tracks (public_id, artist_id, album_id, song, folded, style, mood, tempo, year, duration, "
              "audio_path, audio_type, bitrate, picture_path, is_explicit, is_playable, source, album_artist, "
              "composer, "
              "work, movement, disc, number, seconds, kind, gain_db) VALUES (?1, ?3, ?4, ?5, ?6, ?7, ?24, ?25, ?8, ?9, "
              "?10, ?11, ?12, '', ?13, 0, ?14, ?15, ?16, ?17, ?18, ?19, ?20, ?21, ?22, ?23) RETURNING id"
            : "UPDATE tracks SET artist_id = ?3, album_id = ?4, song = ?5, folded = ?6, style = ?7, year = ?8, "
              "duration "
              "= ?9, audio_path = ?10, audio_type = ?11, bitrate = ?12, is_explicit = ?13, source = ?14, album_artist "
              "= "
              "?15, composer = ?16, work = ?17, movement = ?18, disc = ?19, number = ?20, seconds = ?21, kind = ?22, "
              "gain_db = COALESCE(gain_db, ?23), mood = ?24, tempo = CASE WHEN tempo = 0 THEN ?25 ELSE tempo END WHERE "
              "id = ?2 AND ?1 <> '' RETURNING id");
    row.with(randomToken(9), trackId, artist, album, facts.song, foldedText(facts.song), style, facts.year, duration,
             Blob{audioPath}, mediaTypeOf(file.tags.container), file.tags.bitrate, facts.isExplicit, source, byWhom,
             facts.composer, facts.work, facts.movement, facts.disc, facts.number, file.tags.seconds,
             kindFor(ruleFor(file, m_hasFormats)), taggedGain(file.tags), facts.mood, facts.tempo);
    row.step();
    const int64_t id = row.integer(0);
    row.reset();
    db.run(
        "UPDATE tracks SET picture_path = COALESCE((SELECT picture_path FROM tracks WHERE album_id = ?2 AND id <> ?1 "
        "AND picture_path <> '' LIMIT 1), picture_path) WHERE id = ?1",
        id, album);
    db.run("UPDATE tracks SET picture_path = ?2 WHERE id = ?1 AND picture_path = ''", id, file.picture.string());
    db.run("UPDATE albums SET is_cover_looked_for = 0 WHERE id = ?1", album);
    db.run("DELETE FROM track_search WHERE rowid = ?1", id);
    db.run("INSERT INTO track_search (rowid, song, artist) VALUES (?1, ?2, ?3)", id, indexedText(facts.song),
           indexedText(facts.isUnknownArtist ? std::string() : facts.artist));
    owners.setStyles(id, facts.styles);
    return id;
}

} // namespace velmora::server
