#include "server/stations/stations.h"

#include "server/catalogue/catalogue.h"
#include "server/catalogue/textfolding.h"
#include "server/store/store.h"

#include <algorithm>

namespace velmora::server {

namespace {

constexpr const char *columns =
    "SELECT id, account_id, token, name, is_tapestry, is_shared, allow_rename, allow_delete, "
    "allow_add_music, allow_feedback, created_at, lists_issued FROM stations ";

Station readStation(const Statement &row)
{
    Station station;
    station.id = row.integer(0);
    station.accountId = row.integer(1);
    station.token = row.text(2);
    station.name = row.text(3);
    station.isTapestry = row.integer(4) != 0;
    station.isShared = row.integer(5) != 0;
    station.allowRename = row.integer(6) != 0;
    station.allowDelete = row.integer(7) != 0;
    station.allowAddMusic = row.integer(8) != 0;
    station.allowFeedback = row.integer(9) != 0;
    station.createdAt = row.integer(10);
    station.listsIssued = static_cast<int>(row.integer(11));
    return station;
}

std::string capitalised(std::string text)
{
    if (!text.empty() && text[0] >= 'a' && text[0] <= 'z')
        text[0] = static_cast<char>(text[0] - 32);
    return text;
}

} // namespace

Stations::Stations(Store &store, Catalogue &catalogue, Clock clock)
    : m_store(store)
    , m_catalogue(catalogue)
    , m_clock(std::move(clock))
{
}

std::vector<Station> Stations::list(AccountId account, Order order, bool isDescending)
{
    std::vector<Station> stations;
    {
        const Store::Lock db = m_store.lock();
        Statement row =
            db->prepare(std::string(columns) + "WHERE account_id = ?1 ORDER BY is_tapestry DESC, created_at, id");
        row.with(account);
        while (row.step())
            stations.push_back(readStation(row));
    }
    const auto own = std::find_if(stations.begin(), stations.end(), [](const Station &s) { return !s.isTapestry; });
    if (order == Order::ByName)
        std::stable_sort(own, stations.end(),
                         [](const Station &a, const Station &b) { return foldedText(a.name) < foldedText(b.name); });
    if (isDescending)
        std::reverse(own, stations.end());
    return stations;
}

std::optional<Station> Stations::find(AccountId account, const std::string &token)
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare(std::string(columns) + "WHERE token = ?1 AND account_id = ?2");
    row.with(token, account);
    return row.step() ? std::optional<Station>(readStation(row)) : std::nullopt;
}

std::optional<Station> Stations::find(AccountId account, int64_t id)
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare(std::string(columns) + "WHERE account_id = ?1 AND id = ?2");
    row.with(account, id);
    return row.step() ? std::optional<Station>(readStation(row)) : std::nullopt;
}

int Stations::count(AccountId account)
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT COUNT(*) FROM stations WHERE account_id = ?1");
    row.with(account);
    row.step();
    return static_cast<int>(row.integer(0));
}

std::string Stations::checksum(AccountId account)
{
    std::string all;
    for (const Station &station : list(account)) {
        all += station.token + '\n' + station.name + '\n';
        for (const bool flag : {station.isShared, station.allowRename, station.allowDelete, station.allowAddMusic})
            all += flag ? '1' : '0';
        all += '\n';
    }
    return tokenHash(all).substr(0, 16);
}

Station Stations::insert(AccountId account, const std::string &name, const std::optional<Music> &seed, bool isTapestry)
{
    const Store::Lock db = m_store.lock();
    Transaction change(*db);
    const int64_t id = db->number(
        "INSERT INTO stations (account_id, token, name, is_tapestry, allow_rename, allow_delete, allow_add_music, "
        "created_at) VALUES (?1, ?2, ?3, ?4, ?5, ?5, ?5, ?6) RETURNING id",
        account, randomToken(15), std::string(firstCharacters(name, longestName)), isTapestry, !isTapestry, m_clock());
    if (seed)
        db->run("INSERT INTO seeds (account_id, station_id, kind, target) VALUES (?1, ?2, ?3, ?4)", account, id,
                musicKindName(seed->kind), seed->target);
    change.commit();
    return *find(account, id);
}

Station Stations::createTapestry(AccountId account)
{
    return insert(account, "Tapestry", std::nullopt, true);
}

void Stations::createStarters(AccountId account)
{
    const Store::Lock db = m_store.lock();
    Transaction change(*db);
    const std::vector<std::string> styles = m_catalogue.largestStyles(mostStarters);
    // A list by date shows the newest first, so making them in reverse gives alphabetical order.
    Station station;
    for (auto style = styles.rbegin(); style != styles.rend(); ++style)
        create(account, {MusicKind::Style, *style}, &station);
    change.commit();
}

StationResult Stations::create(AccountId account, const Music &music, Station *station)
{
    const Store::Lock db = m_store.lock();
    Transaction change(*db);
    const std::optional<std::string> name = nameOf(music);
    if (!name)
        return StationResult::NoSuchMusic;
    if (const std::optional<Station> existing = withOnlySeed(account, music)) {
        *station = *existing;
        return StationResult::Done;
    }
    if (count(account) >= mostStations)
        return StationResult::TooMany;
    *station = insert(account, *name, music, false);
    change.commit();
    return StationResult::Done;
}

StationResult Stations::createShared(AccountId account, const Music &music, const std::string &name, Station *station)
{
    const Store::Lock db = m_store.lock();
    Transaction change(*db);
    if (!nameOf(music))
        return StationResult::NoSuchMusic;
    if (count(account) >= mostStations)
        return StationResult::TooMany;
    const Station made = insert(account, name, music, false);
    db->run("UPDATE stations SET is_shared = 1, allow_rename = 0, allow_add_music = 0, allow_feedback = 0 WHERE "
            "account_id = ?1 AND id = ?2",
            account, made.id);
    change.commit();
    *station = *find(account, made.id);
    return StationResult::Done;
}

StationResult Stations::rename(AccountId account, const std::string &token, const std::string &name, Station *station)
{
    const Store::Lock db = m_store.lock();
    const std::optional<Station> found = find(account, token);
    if (!found)
        return StationResult::NoSuchStation;
    if (!found->allowRename)
        return StationResult::NotAllowed;
    db->run("UPDATE stations SET name = ?3 WHERE account_id = ?1 AND id = ?2", account, found->id, name);
    *station = *find(account, found->id);
    return StationResult::Done;
}

StationResult Stations::remove(AccountId account, const std::string &token)
{
    const Store::Lock db = m_store.lock();
    const std::optional<Station> found = find(account, token);
    if (!found)
        return StationResult::NoSuchStation;
    if (!found->allowDelete)
        return StationResult::NotAllowed;
    db->run("DELETE FROM stations WHERE account_id = ?1 AND id = ?2", account, found->id);
    return StationResult::Done;
}

StationResult Stations::addMusic(AccountId account, const std::string &token, const Music &music)
{
    const Store::Lock db = m_store.lock();
    const std::optional<Station> found = find(account, token);
    if (!found)
        return StationResult::NoSuchStation;
    if (!found->allowAddMusic)
        return StationResult::NotAllowed;
    if (music.kind == MusicKind::Album || !nameOf(music))
        return StationResult::NoSuchMusic;
    db->run("INSERT INTO seeds (account_id, station_id, kind, target) VALUES (?1, ?2, ?3, ?4) ON CONFLICT DO NOTHING",
            account, found->id, musicKindName(music.kind), music.target);
    return StationResult::Done;
}

StationResult Stations::makeOwn(AccountId account, const std::string &token, Station *station)
{
    const Store::Lock db = m_store.lock();
    const std::optional<Station> found = find(account, token);
    if (!found)
        return StationResult::NoSuchStation;
    if (!found->isShared)
        return StationResult::NotAllowed;
    db->run("UPDATE stations SET is_shared = 0, allow_rename = 1, allow_add_music = 1, allow_feedback = 1 WHERE "
            "account_id = ?1 AND id = ?2",
            account, found->id);
    *station = *find(account, found->id);
    return StationResult::Done;
}

std::vector<Music> Stations::seeds(const Station &station)
{
    std::vector<Music> seeds;
    const Store::Lock db = m_store.lock();
    Statement row =
        db->prepare("SELECT kind, target FROM seeds WHERE account_id = ?1 AND station_id = ?2 ORDER BY kind, target");
    row.with(station.accountId, station.id);
    while (row.step()) {
        seeds.push_back({musicKindOf(row.text(0)), row.text(1)});
    }
    return seeds;
}

std::optional<std::string> Stations::pictureId(const Music &music)
{
    if (music.kind == MusicKind::Style)
        return m_catalogue.pictureOfStyle(music.target);
    if (music.kind == MusicKind::Artist)
        return m_catalogue.pictureOfArtist(idOf(music.target));
    const std::optional<Track> track = m_catalogue.track(idOf(music.target));
    return track && !track->pictureFile.empty() ? std::optional(pictureName(*track)) : std::nullopt;
}

std::optional<std::string> Stations::pictureId(const Station &station)
{
    for (const Music &music : seeds(station)) {
        if (std::optional<std::string> id = pictureId(music))
            return id;
    }
    return std::nullopt;
}

std::optional<std::string> Stations::nameOf(const Music &music)
{
    std::string name;
    switch (music.kind) {
    case MusicKind::Artist:
        name = m_catalogue.artistName(idOf(music.target));
        break;
    case MusicKind::Track:
        if (const std::optional<Track> track = m_catalogue.track(idOf(music.target)))
            name = track->song;
        break;
    case MusicKind::Style:
        if (m_catalogue.hasStyle(music.target))
            name = capitalised(music.target);
        break;
    case MusicKind::Album:
        break;
    }
    return name.empty() ? std::nullopt : std::optional(name);
}

std::optional<Station> Stations::withOnlySeed(AccountId account, const Music &music)
{
    const Store::Lock db = m_store.lock();
    Statement row =
        db->prepare(std::string(columns) +
                    "WHERE account_id = ?1 AND is_shared = 0 AND "
                    "EXISTS (SELECT 1 FROM seeds WHERE account_id = ?1 AND station_id = stations.id AND kind = ?2 AND "
                    "target = ?3) "
                    "AND (SELECT COUNT(*) FROM seeds WHERE account_id = ?1 AND station_id = stations.id) = 1");
    row.with(account, musicKindName(music.kind), music.target);
    return row.step() ? std::optional<Station>(readStation(row)) : std::nullopt;
}

} // namespace velmora::server
