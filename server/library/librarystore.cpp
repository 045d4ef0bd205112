#include "server/library/librarystore.h"

#include "server/catalogue/owners.h"
#include "server/catalogue/searchtext.h"
#include "server/library/halffloat.h"
#include "server/store/store.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velmora::server {

namespace {

constexpr double targetLoudness = -18; // LUFS
constexpr double leastGain = -15;      // dB
constexpr double mostGain = 9;
// Two encodings of one recording are nearer to each other than this; other music is not.
constexpr double sameRecording = 0.4;
constexpr double sameRecordingByName = 0.6;
constexpr double sameDuration = 1.5; // seconds
constexpr int64_t scaleTracks = 50;  // fewer say nothing about how much numbers differ
constexpr size_t rowsUnderLock = 50;
// A lossless file is better than any other, then the bit rate decides.
constexpr int64_t losslessQuality = 1'000'000'000;

struct PlayedKind {
    const char *container;
    const char *mediaType;
};
constexpr std::array playedKinds = {
    PlayedKind{"mpeg", "audio/mpeg"},    PlayedKind{"flac", "audio/flac"},    PlayedKind{"ogg-vorbis", "audio/ogg"},
    PlayedKind{"ogg-opus", "audio/ogg"}, PlayedKind{"ogg-flac", "audio/ogg"}, PlayedKind{"wav", "audio/wav"},
};

const char *mediaTypeOf(const std::string &container)
{
    for (const PlayedKind &kind : playedKinds) {
        if (container == kind.container)
            return kind.mediaType;
    }
    return "";
}

// Why a file with these facts does not play; empty when it does.
std::string ruleFor(const ReadFile &file)
{
    constexpr double shortest = 20;
    constexpr double longest = 15 * 60;
    constexpr double longestClassical = 30 * 60;
    if (!file.leftOut.empty())
        return file.leftOut;
    if (mediaTypeOf(file.tags.container)[0] == '\0')
        return leftout::kind;
    if (file.facts.isSpeech)
        return leftout::speech;
    // An unknown duration is settled by listening.
    if (file.tags.seconds > 0 && file.tags.seconds < shortest)
        return leftout::shortPiece;
    if (file.tags.seconds > (file.facts.isClassical ? longestClassical : longest))
        return leftout::longPiece;
    return {};
}

const char *kindFor(const std::string &leftOut)
{
    for (const char *kind : {leftout::speech, leftout::shortPiece, leftout::longPiece}) {
        if (leftOut == kind)
            return kind;
    }
    return "music";
}

std::string folderOf(const std::string &path)
{
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

// The gain that the file's own tags ask for, in dB to our target; nothing when there is none to be believed.
std::optional<double> taggedGain(const media::MediaTags &tags)
{
    const auto number = [](const std::string &text) -> std::optional<double> {
        char *end = nullptr;
        const double value = std::strtod(text.c_str(), &end);
        return end != text.c_str() && std::isfinite(value) && std::abs(value) < 40'000 ? std::optional(value)
                                                                                       : std::nullopt;
    };
    std::optional<double> gain;
    if (const auto replay = number(tags.first("REPLAYGAIN_TRACK_GAIN")))
        gain = *replay; // its reference is -18 LUFS too
    else if (const auto r128 = number(tags.first("R128_TRACK_GAIN")))
        gain = *r128 / 256 + 5; // 1/256 dB to -23 LUFS
    return gain ? std::optional(std::clamp(*gain, leastGain, mostGain)) : std::nullopt;
}

int64_t qualityOf(const media::MediaTags &tags)
{
    return tags.isLossless ? losslessQuality + tags.rate : tags.bitrate;
}

} // namespace

LibraryStore::LibraryStore(Store &store, Catalogue &catalogue, Clock clock)
    : m_store(store)
    , m_catalogue(catalogue)
    , m_clock(std::move(clock))
{
}

void LibraryStore::setRoots(const std::vector<std::pair<std::filesystem::path, std::string>> &pathsAndSources)
{
    {
        const Store::Lock db = m_store.lock();
        Transaction change(*db);
        db->run("UPDATE roots SET is_configured = 0");
        for (const auto &[path, source] : pathsAndSources)
            db->run("INSERT INTO roots (path, source) VALUES (?1, ?2) ON CONFLICT (path) DO UPDATE SET source = ?2, "
                    "is_configured = 1",
                    Blob{path.native()}, source);
        change.commit();
    }
    std::vector<Root> gone;
    {
        const Store::Lock db = m_store.lock();
        Statement row = db->prepare("SELECT id FROM roots WHERE is_configured = 0 AND is_present = 1");
        while (row.step())
            gone.push_back({row.integer(0), {}, {}, false, 0, {}, 0});
    }
    for (const Root &root : gone)
        setPresent(root, false, "it is no longer in the configuration");
}

std::vector<Root> LibraryStore::roots()
{
    std::vector<Root> roots;
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT id, path, source, is_present, COALESCE(away_since, 0), problem, "
                                "COALESCE(scanned_at, 0) FROM roots WHERE is_configured = 1 ORDER BY path");
    while (row.step())
        roots.push_back({row.integer(0), row.blob(1), row.text(2), row.integer(3) != 0, row.integer(4), row.text(5),
                         row.integer(6)});
    return roots;
}

void LibraryStore::setPresent(const Root &root, bool isPresent, const std::string &problem)
{
    {
        const Store::Lock db = m_store.lock();
        db->run("UPDATE roots SET is_present = ?2, problem = ?3, away_since = CASE WHEN ?2 THEN NULL ELSE "
                "COALESCE(away_since, ?4) END WHERE id = ?1",
                root.id, isPresent, problem, m_clock());
    }
    for (int64_t after = 0;;) {
        std::vector<int64_t> tracks;
        {
            const Store::Lock db = m_store.lock();
            Transaction change(*db);
            {
                Statement row =
                    db->prepare("SELECT id, track_id FROM files WHERE root_id = ?1 AND id > ?2 AND track_id "
                                "IS NOT NULL ORDER BY id LIMIT ?3");
                row.with(root.id, after, static_cast<int64_t>(rowsUnderLock));
                while (row.step()) {
                    after = row.integer(0);
                    tracks.push_back(row.integer(1));
                }
            }
            for (const int64_t track : tracks)
                settleRecording(*db, track);
            change.commit();
        }
        if (tracks.size() < rowsUnderLock)
            break;
    }
    m_catalogue.noteChange();
}

void LibraryStore::setScanned(int64_t rootId)
{
    m_store.lock()->run("UPDATE roots SET scanned_at = ?2 WHERE id = ?1", rootId, m_clock());
}

bool LibraryStore::hasFiles(int64_t rootId)
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT 1 FROM files WHERE root_id = ?1 AND missing_since IS NULL LIMIT 1");
    row.with(rootId);
    return row.step();
}

std::unordered_map<std::string, KnownFile> LibraryStore::files(int64_t rootId)
{
    std::unordered_map<std::string, KnownFile> files;
    // In pieces: requests get the lock between them.
    for (int64_t after = 0;;) {
        const Store::Lock db = m_store.lock();
        Statement row =
            db->prepare("SELECT id, path, size, mtime_ns, inode, COALESCE(track_id, 0), missing_since IS NOT "
                        "NULL, worker_version, noted_at FROM files WHERE root_id = ?1 AND id > ?2 ORDER BY "
                        "id LIMIT 5000");
        row.with(rootId, after);
        const int64_t before = after;
        while (row.step()) {
            after = row.integer(0);
            files[row.blob(1)] = {after,
                                  {row.integer(2), row.integer(3), row.integer(4)},
                                  row.integer(5),
                                  row.integer(6) != 0,
                                  static_cast<int>(row.integer(7)),
                                  row.integer(8)};
        }
        if (after == before)
            return files;
    }
}

bool LibraryStore::isArtist(const std::string &name)
{
    const std::string folded = foldedText(name);
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT 1 FROM artists WHERE folded = ?1 LIMIT 1");
    row.with(folded);
    return !folded.empty() && row.step();
}

int LibraryStore::put(int64_t rootId, const std::vector<ReadFile> &files,
                      const std::function<bool(const Root &, const std::string &, const FileStamp &)> &isGone)
{
    int made = 0;
    {
        const Store::Lock db = m_store.lock();
        Transaction change(*db);
        for (const ReadFile &file : files) {
            int64_t trackId = 0;
            int64_t fileId = file.knownId;
            if (file.hasTags) {
                trackId = takeOver(*db, rootId, file, isGone);
                if (trackId == 0 && fileId != 0)
                    keepReplaced(*db, fileId);
            }
            const int64_t known = trackId;
            const std::string leftOut = ruleFor(file);
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

int64_t LibraryStore::takeOver(Database &db, int64_t rootId, const ReadFile &file,
                               const std::function<bool(const Root &, const std::string &, const FileStamp &)> &isGone)
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
        Statement row = db.prepare(
            "SELECT f.id, f.track_id, f.path, f.size, f.mtime_ns, f.inode, f.missing_since IS NOT NULL, r.id, r.path, "
            "r.is_present AND r.is_configured FROM files f JOIN roots r ON r.id = f.root_id WHERE f.sound_print = ?1 "
            "AND f.track_id IS NOT NULL AND f.id <> ?2 LIMIT 8");
        row.with(Blob{file.tags.soundPrint}, file.knownId);
        while (other.id == 0 && row.step()) {
            const Root root{row.integer(7), row.blob(8), {}, row.integer(9) != 0, 0, {}, 0};
            const FileStamp stamp{row.integer(3), row.integer(4), row.integer(5)};
            if (row.integer(6) != 0 || (root.isPresent && isGone(root, row.blob(2), stamp)))
                other = {row.integer(0), row.integer(1)};
        }
    }
    if (other.id != 0) {
        // Whatever this file was goes to where that one was: two files may have changed places.
        if (ownTrack != 0)
            db.run("UPDATE files SET track_id = ?2, sound_print = ?3 WHERE id = ?1", other.id, ownTrack,
                   Blob{ownPrint});
        else
            db.run("DELETE FROM files WHERE id = ?1", other.id);
        if (file.knownId == 0) {
            // The row is made here, so that what was heard of the sound stays with it.
            db.run(
                "INSERT INTO files (root_id, path, size, mtime_ns, inode, track_id, sound_print, analysis_version) "
                "VALUES (?1, ?2, 0, 0, 0, ?3, ?4, COALESCE((SELECT version FROM descriptors WHERE track_id = ?3), 0))",
                rootId, Blob{file.path}, other.trackId, Blob{file.tags.soundPrint});
        }
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

void LibraryStore::keepReplaced(Database &db, int64_t fileId)
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

int64_t LibraryStore::putTrack(Database &db, int64_t rootId, const ReadFile &file, int64_t trackId)
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
    const std::string style = facts.styles.empty() ? std::string() : facts.styles.front();
    const auto duration = static_cast<int>(std::lround(file.tags.seconds));
    Statement row = db.prepare(
        trackId == 0
            ? "INSERT INTO tracks (public_id, artist_id, album_id, song, folded, style, mood, tempo, year, duration, "
              "audio_path, audio_type, bitrate, picture_path, is_explicit, is_playable, source, album_artist, "
              "composer, "
              "work, movement, disc, number, seconds, kind, gain_db) VALUES (?1, ?3, ?4, ?5, ?6, ?7, '', 0, ?8, ?9, "
              "?10, ?11, ?12, '', ?13, 0, ?14, ?15, ?16, ?17, ?18, ?19, ?20, ?21, ?22, ?23) RETURNING id"
            : "UPDATE tracks SET artist_id = ?3, album_id = ?4, song = ?5, folded = ?6, style = ?7, year = ?8, "
              "duration "
              "= ?9, audio_path = ?10, audio_type = ?11, bitrate = ?12, is_explicit = ?13, source = ?14, album_artist "
              "= "
              "?15, composer = ?16, work = ?17, movement = ?18, disc = ?19, number = ?20, seconds = ?21, kind = ?22, "
              "gain_db = COALESCE(gain_db, ?23) WHERE id = ?2 AND ?1 <> '' RETURNING id");
    row.with(randomToken(9), trackId, artist, album, facts.song, foldedText(facts.song), style, facts.year, duration,
             Blob{audioPath}, mediaTypeOf(file.tags.container), file.tags.bitrate, facts.isExplicit, source, byWhom,
             facts.composer, facts.work, facts.movement, facts.disc, facts.number, file.tags.seconds,
             kindFor(ruleFor(file)), taggedGain(file.tags));
    row.step();
    const int64_t id = row.integer(0);
    row.reset();
    db.run(
        "UPDATE tracks SET picture_path = COALESCE((SELECT picture_path FROM tracks WHERE album_id = ?2 AND id <> ?1 "
        "AND picture_path <> '' LIMIT 1), picture_path) WHERE id = ?1",
        id, album);
    db.run("UPDATE albums SET is_cover_looked_for = 0 WHERE id = ?1", album);
    db.run("DELETE FROM track_search WHERE rowid = ?1", id);
    db.run("INSERT INTO track_search (rowid, song, artist) VALUES (?1, ?2, ?3)", id, indexedText(facts.song),
           indexedText(facts.isUnknownArtist ? std::string() : facts.artist));
    putStyles(db, id, facts.styles);
    return id;
}

void LibraryStore::putStyles(Database &db, int64_t trackId, const std::vector<std::string> &styles)
{
    db.run("UPDATE styles SET tracks = tracks - 1 WHERE id IN (SELECT style_id FROM track_styles WHERE track_id = ?1)",
           trackId);
    db.run("DELETE FROM track_styles WHERE track_id = ?1", trackId);
    for (const std::string &style : styles) {
        db.run("INSERT INTO styles (name, folded) VALUES (?1, ?2) ON CONFLICT (folded) DO NOTHING", style,
               foldedText(style));
        db.run("INSERT OR IGNORE INTO track_styles (track_id, style_id, weight) SELECT ?1, id, ?3 FROM styles WHERE "
               "folded = ?2",
               trackId, foldedText(style), 1.0 / static_cast<double>(styles.size()));
    }
    db.run("UPDATE styles SET tracks = tracks + 1 WHERE id IN (SELECT style_id FROM track_styles WHERE track_id = ?1)",
           trackId);
}

void LibraryStore::refresh(Database &db, int64_t trackId)
{
    db.run("UPDATE tracks SET is_playable = EXISTS (SELECT 1 FROM files f JOIN roots r ON r.id = f.root_id WHERE "
           "f.track_id = ?1 AND f.missing_since IS NULL AND f.left_out = '' AND r.is_present AND r.is_configured) "
           "WHERE id = ?1",
           trackId);
}

void LibraryStore::settleRecording(Database &db, int64_t trackId)
{
    int64_t recording = 0;
    {
        Statement row = db.prepare("SELECT COALESCE(recording_id, 0) FROM tracks WHERE id = ?1");
        row.with(trackId);
        if (row.step())
            recording = row.integer(0);
    }
    if (recording != 0) {
        // Of the files that are there the best one plays.
        struct Copy {
            int64_t fileId = 0;
            int64_t trackId = 0;
        };
        std::vector<Copy> copies;
        {
            Statement row = db.prepare(
                "SELECT f.id, f.track_id FROM tracks t JOIN files f ON f.track_id = t.id JOIN roots r ON r.id = "
                "f.root_id "
                "WHERE t.recording_id = ?1 AND f.missing_since IS NULL AND f.left_out IN ('', 'duplicate') AND "
                "r.is_present AND r.is_configured ORDER BY f.quality DESC, f.id");
            row.with(recording);
            while (row.step())
                copies.push_back({row.integer(0), row.integer(1)});
        }
        for (size_t i = 0; i < copies.size(); ++i) {
            const char *reason = i == 0 ? "" : leftout::duplicate;
            db.run(
                "UPDATE files SET left_out = ?2, problem = '', noted_at = CASE WHEN left_out = ?2 THEN noted_at ELSE "
                "?3 END WHERE id = ?1",
                copies[i].fileId, reason, m_clock());
        }
        std::vector<int64_t> tracks;
        {
            Statement row = db.prepare("SELECT id FROM tracks WHERE recording_id = ?1");
            row.with(recording);
            while (row.step())
                tracks.push_back(row.integer(0));
        }
        for (const int64_t track : tracks)
            refresh(db, track);
    }
    refresh(db, trackId);
}

void LibraryStore::joinRecordings(Database &db, int64_t trackId, int64_t otherId)
{
    Statement row =
        db.prepare("SELECT COALESCE((SELECT recording_id FROM tracks WHERE id = ?2), (SELECT recording_id "
                   "FROM tracks WHERE id = ?1), MIN(?1, ?2)), (SELECT recording_id FROM tracks WHERE id = ?1)");
    row.with(trackId, otherId);
    row.step();
    const int64_t recording = row.integer(0);
    const int64_t old = row.isNull(1) ? -1 : row.integer(1);
    row.reset();
    db.run("UPDATE tracks SET recording_id = ?1 WHERE id IN (?2, ?3) OR recording_id = ?4", recording, trackId, otherId,
           old);
}

void LibraryStore::setMissing(const std::vector<int64_t> &fileIds, bool isMissing)
{
    for (size_t begin = 0; begin < fileIds.size(); begin += rowsUnderLock) {
        const Store::Lock db = m_store.lock();
        Transaction change(*db);
        for (size_t i = begin; i < std::min(begin + rowsUnderLock, fileIds.size()); ++i) {
            Statement row =
                db->prepare("UPDATE files SET missing_since = CASE WHEN ?2 THEN COALESCE(missing_since, ?3) "
                            "ELSE NULL END WHERE id = ?1 RETURNING COALESCE(track_id, 0)");
            row.with(fileIds[i], isMissing, m_clock());
            const int64_t track = row.step() ? row.integer(0) : 0;
            row.reset();
            if (track != 0)
                settleRecording(*db, track);
        }
        change.commit();
    }
    if (!fileIds.empty())
        m_catalogue.noteChange();
}

std::vector<ToAnalyse> LibraryStore::nextToAnalyse(size_t most, uint32_t randomStart)
{
    std::vector<ToAnalyse> result;
    const Store::Lock db = m_store.lock();
    const std::string select = "SELECT f.id, f.track_id, r.path, f.path, COALESCE(t.seconds, 0) FROM files f ";
    const std::string rest = " f.analysis_version = 0 AND f.track_id IS NOT NULL AND f.missing_since IS NULL AND "
                             "f.left_out IN ('', 'duplicate') AND r.is_present AND r.is_configured LIMIT ?2";
    const std::string joins = "JOIN roots r ON r.id = f.root_id JOIN tracks t ON t.id = f.track_id WHERE ";
    const auto take = [&](const std::string &query, int64_t value) {
        Statement row = db->prepare(query);
        row.with(value, static_cast<int64_t>(most - result.size()));
        while (row.step())
            result.push_back({row.integer(0), row.integer(1), row.blob(2), row.blob(3), row.real(4)});
    };
    // What a listener named, rated or is about to hear.
    take(
        select + joins +
            "f.track_id IN (SELECT track_id FROM feedback UNION SELECT CAST(target AS INTEGER) FROM seeds WHERE kind = "
            "'track' UNION SELECT track_id FROM issued_tracks) AND ?1 = ?1 AND" +
            rest,
        0);
    if (!result.empty())
        return result;
    // Any place in the table is as good as another, and near each other stand files of one artist.
    int64_t highest = 0;
    {
        Statement row = db->prepare("SELECT COALESCE(MAX(id), 0) FROM files");
        row.step();
        highest = row.integer(0);
    }
    if (highest == 0)
        return result;
    take(select + joins + "f.id > ?1 AND" + rest, static_cast<int64_t>(randomStart) % highest);
    if (result.empty())
        take(select + joins + "f.id > ?1 AND" + rest, 0);
    return result;
}

void LibraryStore::putAnalysis(const ToAnalyse &file, const media::MediaAnalysis &analysis, const std::string &leftOut)
{
    std::optional<double> gain;
    if (analysis.loudness)
        gain = std::clamp(targetLoudness - *analysis.loudness, leastGain, mostGain);
    {
        const Store::Lock db = m_store.lock();
        Transaction change(*db);
        db->run(
            "UPDATE files SET analysis_version = ?2, left_out = CASE WHEN ?3 = '' THEN left_out ELSE ?3 END, noted_at "
            "= CASE WHEN ?3 = '' THEN noted_at ELSE ?4 END WHERE id = ?1",
            file.fileId, media::descriptorVersion, leftOut, m_clock());
        db->run("UPDATE tracks SET gain_db = COALESCE(?2, gain_db), peak = ?3, seconds = ?4, duration = ?5, kind = ?6, "
                "tempo = ?7 WHERE id = ?1",
                file.trackId, gain, analysis.peak, analysis.seconds,
                static_cast<int64_t>(std::lround(analysis.seconds)), kindFor(leftOut), analysis.tempo);
        if (analysis.numbers) {
            const std::string numbers = halves(*analysis.numbers);
            db->run(
                "INSERT INTO descriptors (track_id, version, numbers) VALUES (?1, ?2, ?3) ON CONFLICT (track_id) DO "
                "UPDATE SET version = ?2, numbers = ?3",
                file.trackId, media::descriptorVersion, Blob{numbers});
            if (leftOut.empty())
                findDuplicates(*db, file, analysis);
        }
        settleRecording(*db, file.trackId);
        change.commit();
    }
    m_catalogue.noteChange();
}

void LibraryStore::findDuplicates(Database &db, const ToAnalyse &file, const media::MediaAnalysis &analysis)
{
    // How much each number differs within the library, from a sample.
    media::Descriptor mean{};
    media::Descriptor spread{};
    int64_t sampled = 0;
    {
        Statement row = db.prepare("SELECT numbers FROM descriptors WHERE version = ?1 LIMIT 256");
        row.with(media::descriptorVersion);
        media::Descriptor numbers{};
        while (row.step()) {
            if (!readHalves(row.blob(0), numbers))
                continue;
            ++sampled;
            for (size_t i = 0; i < numbers.size(); ++i) {
                mean[i] += numbers[i];
                spread[i] += numbers[i] * numbers[i];
            }
        }
    }
    for (size_t i = 0; i < mean.size() && sampled > 0; ++i) {
        mean[i] /= static_cast<float>(sampled);
        spread[i] = std::sqrt(std::max(1e-6f, spread[i] / static_cast<float>(sampled) - mean[i] * mean[i]));
    }
    int64_t same = 0;
    {
        Statement row = db.prepare("SELECT t.id, d.numbers, t.folded = own.folded AND t.artist_id = own.artist_id FROM "
                                   "tracks own JOIN tracks t "
                                   "ON t.seconds BETWEEN ?2 AND ?3 AND t.id <> own.id JOIN descriptors d ON d.track_id "
                                   "= t.id WHERE own.id = ?1 "
                                   "AND t.kind = 'music' AND d.version = ?4");
        row.with(file.trackId, analysis.seconds - sameDuration, analysis.seconds + sameDuration,
                 media::descriptorVersion);
        media::Descriptor numbers{};
        while (same == 0 && row.step()) {
            if (!readHalves(row.blob(1), numbers))
                continue;
            double sum = 0;
            for (size_t i = 0; i < numbers.size(); ++i) {
                const double apart = ((*analysis.numbers)[i] - numbers[i]) / spread[i];
                sum += apart * apart;
            }
            const bool hasSameName = row.integer(2) != 0;
            const double distance = std::sqrt(sum / static_cast<double>(numbers.size()));
            // In a small library every difference looks large or small; then the names must say it too.
            if (sampled < scaleTracks ? hasSameName : distance < (hasSameName ? sameRecordingByName : sameRecording))
                same = row.integer(0);
        }
    }
    if (same != 0)
        joinRecordings(db, file.trackId, same);
}

void LibraryStore::putAnalysisFailure(const ToAnalyse &file, const std::string &leftOut, const std::string &problem)
{
    {
        const Store::Lock db = m_store.lock();
        Transaction change(*db);
        db->run("UPDATE files SET analysis_version = ?2, left_out = ?3, problem = ?4, noted_at = ?5 WHERE id = ?1",
                file.fileId, media::descriptorVersion, leftOut, problem, m_clock());
        settleRecording(*db, file.trackId);
        change.commit();
    }
    m_catalogue.noteChange();
}

void LibraryStore::forgetOldAnalyses()
{
    m_store.lock()->run("UPDATE files SET analysis_version = 0 WHERE analysis_version NOT IN (0, ?1)",
                        media::descriptorVersion);
}

std::vector<LibraryStore::AlbumToPicture> LibraryStore::albumsWithoutCover(size_t most)
{
    std::vector<AlbumToPicture> albums;
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare(
        "SELECT a.id, a.public_id, r.path, f.path FROM albums a JOIN tracks t ON t.album_id = a.id JOIN files f ON "
        "f.track_id = t.id JOIN roots r ON r.id = f.root_id WHERE a.is_cover_looked_for = 0 AND f.missing_since IS "
        "NULL "
        "AND r.is_present AND r.is_configured AND f.left_out IN ('', 'duplicate') GROUP BY a.id LIMIT ?1");
    row.with(static_cast<int64_t>(most));
    while (row.step())
        albums.push_back({row.integer(0), row.text(1), row.blob(2), row.blob(3)});
    return albums;
}

void LibraryStore::setCover(int64_t albumId, const std::filesystem::path &picture)
{
    const Store::Lock db = m_store.lock();
    Transaction change(*db);
    db->run("UPDATE albums SET is_cover_looked_for = 1 WHERE id = ?1", albumId);
    db->run("UPDATE tracks SET picture_path = ?2 WHERE album_id = ?1", albumId, picture.string());
    change.commit();
}

LibraryCounts LibraryStore::counts()
{
    LibraryCounts counts;
    // In pieces: requests get the lock between them.
    for (int64_t after = 0;;) {
        const Store::Lock db = m_store.lock();
        Statement row = db->prepare("SELECT f.id, f.left_out, f.missing_since IS NOT NULL, f.analysis_version, "
                                    "COALESCE(t.seconds, 0), COALESCE(t.is_playable, 0), f.track_id IS NOT NULL FROM "
                                    "files f JOIN roots r ON r.id = f.root_id LEFT JOIN tracks t ON t.id = f.track_id "
                                    "WHERE f.id > ?1 AND r.is_configured ORDER BY f.id LIMIT 2000");
        row.with(after);
        const int64_t before = after;
        while (row.step()) {
            after = row.integer(0);
            const std::string leftOut = row.text(1);
            const bool isMissing = row.integer(2) != 0;
            ++counts.files;
            counts.missing += isMissing;
            counts.playing += row.integer(5);
            if (!leftOut.empty()) {
                ++counts.leftOut;
                ++counts.byReason[leftOut];
            }
            if (row.integer(3) != 0) {
                ++counts.analysed;
            } else if (!isMissing && row.integer(6) != 0 && (leftOut.empty() || leftOut == leftout::duplicate)) {
                ++counts.toAnalyse;
                counts.secondsToAnalyse += row.real(4);
            }
        }
        if (after == before)
            return counts;
    }
}

std::vector<LeftOutFile> LibraryStore::leftOutFiles(const std::string &reason, int64_t first, int most)
{
    std::vector<LeftOutFile> files;
    const Store::Lock db = m_store.lock();
    Statement row =
        db->prepare("SELECT r.path, f.path, f.left_out, f.problem, f.noted_at FROM files f JOIN roots r ON "
                    "r.id = f.root_id WHERE f.left_out <> '' AND r.is_configured AND (?1 = '' OR f.left_out = "
                    "?1) ORDER BY f.left_out, f.id DESC LIMIT ?3 OFFSET ?2");
    row.with(reason, first, most);
    while (row.step())
        files.push_back({row.blob(0), row.blob(1), row.text(2), row.text(3), row.integer(4)});
    return files;
}

void LibraryStore::keepPaused(bool isPaused)
{
    m_store.setSetting("library paused", isPaused ? "1" : "0");
}

void LibraryStore::retryFailures()
{
    m_store.lock()->run("UPDATE files SET worker_version = 0, analysis_version = 0 WHERE left_out IN ('damaged', "
                        "'crash', 'slow')");
    m_store.lock()->run("UPDATE albums SET is_cover_looked_for = 0 WHERE id IN (SELECT album_id FROM tracks WHERE "
                        "picture_path = '' AND source <> 'demo')");
}

} // namespace velmora::server
