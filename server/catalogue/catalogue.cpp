#include "server/catalogue/catalogue.h"

#include "server/catalogue/mediatypes.h"
#include "server/catalogue/owners.h"
#include "server/catalogue/searchtext.h"
#include "server/store/store.h"

#include <algorithm>
#include <set>

namespace velmora::server {

namespace {

constexpr int mostStyles = 30;
// A style with less music than this makes a station that soon repeats itself, or that is one artist's.
constexpr int64_t leastTracks = 20;
constexpr int64_t leastArtists = 3;
constexpr int stylesOfSmallLibrary = 5; // where no style has as much
constexpr int mostCandidates = 200;

constexpr const char *trackColumns =
    "SELECT t.id, t.public_id, t.artist_id, t.album_id, t.song, a.name, b.title, t.style, t.mood, t.tempo, t.year, "
    "t.duration, t.audio_path, t.audio_type, t.bitrate, t.picture_path, t.is_explicit, t.is_playable, t.gain_db, "
    "t.peak, t.source = 'demo' FROM tracks t JOIN artists a ON a.id = t.artist_id JOIN albums b ON b.id = t.album_id "
    "WHERE ";

Track readTrack(const Statement &row)
{
    Track track;
    track.id = row.integer(0);
    track.publicId = row.text(1);
    track.artistId = row.integer(2);
    track.albumId = row.integer(3);
    track.song = row.text(4);
    track.artist = row.text(5);
    track.album = row.text(6);
    track.style = row.text(7);
    track.mood = row.text(8);
    track.tempo = static_cast<int>(row.integer(9));
    track.year = static_cast<int>(row.integer(10));
    track.durationSeconds = static_cast<int>(row.integer(11));
    track.audioFile = row.text(12);
    track.audioType = row.text(13);
    track.needsTranscoding = !isPlayedByRadios(track.audioType);
    if (track.needsTranscoding)
        track.audioType = transcodedMediaType;
    track.bitrate = static_cast<int>(row.integer(14));
    track.pictureFile = row.text(15);
    track.isExplicit = row.integer(16) != 0;
    track.isPlayable = row.integer(17) != 0;
    if (!row.isNull(18))
        track.gainDb = row.real(18);
    if (!row.isNull(19))
        track.peak = row.real(19);
    track.isDemo = row.integer(20) != 0;
    return track;
}

// How many rows of playing tracks of the style there are; counting ends at `most`.
int64_t countUpTo(Connection &db, const char *columns, const std::string &style, int64_t most)
{
    Statement row = db.prepare(std::string("SELECT COUNT(*) FROM (SELECT ") + columns +
                               " FROM tracks WHERE is_playable = 1 AND style = ?1 LIMIT ?2)");
    row.with(style, most);
    row.step();
    return row.integer(0);
}

} // namespace

std::string pictureName(const std::string &publicId, const std::filesystem::path &file)
{
    return publicId + (file.extension() == ".jpg" ? ".jpg" : ".png");
}

Catalogue::Catalogue(Store &store)
    : m_store(store)
{
}

void Catalogue::put(const std::vector<Track> &tracks)
{
    {
        const Store::Lock db = m_store.lock();
        Transaction change(*db);
        Owners owners(*db);
        Statement insert = db->prepare(
            "INSERT INTO tracks (public_id, artist_id, album_id, song, folded, style, mood, tempo, year, duration, "
            "audio_path, audio_type, bitrate, picture_path, is_explicit, is_playable) VALUES (?1, ?2, ?3, ?4, ?5, ?6, "
            "?7, "
            "?8, ?9, ?10, ?11, ?12, ?13, ?14, ?15, ?16) ON CONFLICT (public_id) DO UPDATE SET artist_id = ?2, album_id "
            "= ?3, "
            "song = ?4, folded = ?5, style = ?6, mood = ?7, tempo = ?8, year = ?9, duration = ?10, audio_path = ?11, "
            "audio_type = ?12, bitrate = ?13, picture_path = ?14, is_explicit = ?15, is_playable = ?16 RETURNING id");
        Statement unindex = db->prepare("DELETE FROM track_search WHERE rowid = ?1");
        Statement index = db->prepare("INSERT INTO track_search (rowid, song, artist) VALUES (?1, ?2, ?3)");
        for (const Track &track : tracks) {
            const int64_t artist = owners.artist(track.artist);
            const int64_t album = owners.album({artist, track.album, {}, track.year});
            insert.with(track.publicId, artist, album, track.song, foldedText(track.song), track.style, track.mood,
                        track.tempo, track.year, track.durationSeconds, track.audioFile.string(), track.audioType,
                        track.bitrate, track.pictureFile.string(), track.isExplicit, track.isPlayable);
            insert.step();
            const int64_t id = insert.integer(0);
            insert.reset();
            unindex.with(id).step();
            unindex.reset();
            index.with(id, indexedText(track.song), indexedText(track.artist)).step();
            index.reset();
            owners.setStyles(id, {track.style});
        }
        change.commit();
    }
    noteChange();
}

void Catalogue::replaceAds(const std::vector<Ad> &ads)
{
    const Store::Lock db = m_store.lock();
    Transaction change(*db);
    std::set<std::string> kept;
    for (const Ad &ad : ads) {
        kept.insert(ad.publicId);
        db->run(
            "INSERT INTO ads (public_id, title, line2, duration, audio_path, audio_type, picture_path, is_playable) "
            "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8) ON CONFLICT (public_id) DO UPDATE SET title = ?2, line2 = ?3, "
            "duration = ?4, audio_path = ?5, audio_type = ?6, picture_path = ?7, is_playable = ?8",
            ad.publicId, ad.title, ad.line2, ad.durationSeconds, ad.audioFile.string(), ad.audioType,
            ad.pictureFile.string(), ad.isPlayable);
    }
    std::vector<int64_t> gone;
    {
        Statement row = db->prepare("SELECT id, public_id FROM ads");
        while (row.step()) {
            if (!kept.contains(row.text(1)))
                gone.push_back(row.integer(0));
        }
    }
    for (const int64_t id : gone)
        db->run("DELETE FROM ads WHERE id = ?1", id);
    change.commit();
    const std::lock_guard guard(m_mutex);
    m_playableAds.reset();
}

void Catalogue::setAdPlayable(const std::string &publicId, bool isPlayable)
{
    const Store::Lock db = m_store.lock();
    db->run("UPDATE ads SET is_playable = ?2 WHERE public_id = ?1", publicId, isPlayable);
    const std::lock_guard guard(m_mutex);
    m_playableAds.reset();
}

std::vector<int64_t> Catalogue::playableAds()
{
    {
        const std::lock_guard guard(m_mutex);
        if (m_playableAds)
            return *m_playableAds;
    }
    const Store::Lock db = m_store.lock(); // nobody changes the ads meanwhile
    std::vector<int64_t> ads;
    Statement row = db->prepare("SELECT id FROM ads WHERE is_playable = 1 ORDER BY id");
    while (row.step())
        ads.push_back(row.integer(0));
    const std::lock_guard guard(m_mutex);
    m_playableAds = ads;
    return ads;
}

template <typename Value>
std::optional<Track> Catalogue::trackWhere(const char *condition, const Value &value)
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare(std::string(trackColumns) + condition);
    row.with(value);
    if (!row.step())
        return std::nullopt;
    Track track = readTrack(row);
    if (!m_loudness)
        track.gainDb.reset();
    else if (track.gainDb)
        *track.gainDb += *m_loudness - storedLoudness;
    return track;
}

std::optional<Track> Catalogue::track(int64_t id)
{
    return trackWhere("t.id = ?1", id);
}

std::optional<Track> Catalogue::track(const std::string &publicId)
{
    return trackWhere("t.public_id = ?1", publicId);
}

template <typename Value>
std::optional<Ad> Catalogue::adWhere(const char *condition, const Value &value)
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare(std::string("SELECT id, public_id, title, line2, duration, audio_path, audio_type, "
                                            "picture_path, is_playable FROM ads WHERE ") +
                                condition);
    row.with(value);
    if (!row.step())
        return std::nullopt;
    return Ad{row.integer(0), row.text(1), row.text(2), row.text(3),        static_cast<int>(row.integer(4)),
              row.text(5),    row.text(6), row.text(7), row.integer(8) != 0};
}

std::optional<Ad> Catalogue::ad(int64_t id)
{
    return adWhere("id = ?1", id);
}

std::optional<Ad> Catalogue::ad(const std::string &publicId)
{
    return adWhere("public_id = ?1", publicId);
}

std::string Catalogue::artistName(int64_t id)
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT name FROM artists WHERE id = ?1");
    row.with(id);
    return row.step() ? row.text(0) : std::string();
}

std::vector<std::string> Catalogue::styles()
{
    return largestStyles(mostStyles);
}

std::vector<std::string> Catalogue::largestStyles(int most)
{
    std::set<std::string> expected;
    {
        const std::lock_guard guard(m_mutex);
        expected = m_expected;
    }
    std::vector<std::string> large; // enough of it for a station
    std::vector<std::string> small;
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT name FROM styles WHERE tracks > 0 ORDER BY tracks DESC, name LIMIT ?1");
    row.with(mostCandidates);
    while (row.step() && static_cast<int>(large.size()) < most) {
        const std::string name = row.text(0);
        const int64_t tracks = countUpTo(*db, "1", name, leastTracks);
        const bool isLarge =
            tracks == leastTracks && countUpTo(*db, "DISTINCT artist_id", name, leastArtists) == leastArtists;
        if (isLarge || (tracks > 0 && expected.contains(name)))
            large.push_back(name);
        else if (tracks > 0 && static_cast<int>(small.size()) < std::min(most, stylesOfSmallLibrary))
            small.push_back(name);
    }
    for (const std::string &style : expected) {
        if (static_cast<int>(large.size()) < most && std::find(large.begin(), large.end(), style) == large.end())
            large.push_back(style);
    }
    std::vector<std::string> &styles = large.empty() ? small : large;
    std::sort(styles.begin(), styles.end());
    return styles;
}

bool Catalogue::hasStyle(const std::string &style)
{
    {
        const Store::Lock db = m_store.lock();
        Statement row = db->prepare("SELECT 1 FROM styles WHERE name = ?1 AND tracks > 0");
        row.with(style);
        if (row.step())
            return true;
    }
    const std::lock_guard guard(m_mutex);
    return m_expected.contains(style);
}

void Catalogue::expectStyles(const std::vector<std::string> &names)
{
    std::set<std::string> expected;
    {
        const Store::Lock db = m_store.lock();
        Transaction change(*db);
        Owners owners(*db);
        for (const std::string &name : names)
            expected.insert(owners.style(name));
        change.commit();
    }
    const std::lock_guard guard(m_mutex);
    m_expected = std::move(expected);
}

std::optional<std::string> Catalogue::pictureOfStyle(const std::string &style)
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT public_id, picture_path FROM tracks WHERE is_playable IN (0, 1) AND style = ?1 "
                                "AND picture_path <> '' LIMIT 1");
    row.with(style);
    return row.step() ? std::optional(pictureName(row.text(0), row.text(1))) : std::nullopt;
}

std::optional<std::string> Catalogue::pictureOfArtist(int64_t artistId)
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT public_id, picture_path FROM tracks WHERE artist_id = ?1 AND picture_path <> "
                                "'' LIMIT 1");
    row.with(artistId);
    return row.step() ? std::optional(pictureName(row.text(0), row.text(1))) : std::nullopt;
}

Counts Catalogue::counts()
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT COALESCE(SUM(is_playable), 0), COUNT(*) FROM tracks");
    row.step();
    return {row.integer(0), row.integer(1)};
}

bool Catalogue::isGrowing()
{
    const std::lock_guard guard(m_mutex);
    return !m_growing.empty();
}

void Catalogue::setGrowing(const std::string &source, bool isGrowing)
{
    {
        const std::lock_guard guard(m_mutex);
        if (isGrowing)
            m_growing.insert(source);
        else
            m_growing.erase(source);
    }
    m_becamePlayable.notify_all();
}

void Catalogue::noteChange()
{
    ++m_revision;
    m_becamePlayable.notify_all();
}

void Catalogue::notePresence(int64_t tracks)
{
    m_presenceChanges += static_cast<uint64_t>(tracks);
    noteChange();
}

void Catalogue::want(const std::set<std::string> &styles)
{
    const std::lock_guard guard(m_mutex);
    if (m_tellWanted)
        m_tellWanted(styles);
}

void Catalogue::whenWanted(std::function<void(const std::set<std::string> &)> tell)
{
    const std::lock_guard guard(m_mutex);
    m_tellWanted = std::move(tell);
}

bool Catalogue::waitUntil(const std::function<bool()> &isEnough, std::chrono::milliseconds longest)
{
    if (isEnough())
        return true;
    // Notified without the mutex, so a notice may be missed: it looks again every fifth of a second.
    const auto end = std::chrono::steady_clock::now() + longest;
    while (std::chrono::steady_clock::now() < end) {
        {
            std::unique_lock guard(m_mutex);
            m_becamePlayable.wait_for(guard, std::chrono::milliseconds(200));
        }
        if (isEnough())
            return true;
    }
    return false;
}

} // namespace velmora::server
