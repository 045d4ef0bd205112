#include "server/stations/playlists.h"

#include "server/accounts/houserules.h"
#include "server/catalogue/textfolding.h"
#include "server/library/transcodes.h"
#include "server/stations/listening.h"
#include "server/store/store.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace velmora::server {

namespace {

using nlohmann::json;

// The terms of a pick and their means over the shortlist, by name. They are stored, to explain the pick later.
std::string termsText(const engine::EngineIndex &index, const engine::Pick &pick)
{
    constexpr std::array names = {"style", "artist", "sound", "beat", "harmony", "unlike", "fresh"};
    constexpr std::array attributes = {"energy", "brightness", "tempo", "minor", "busyness"};
    const auto nameOf = [&](size_t term) -> std::string {
        if (term < names.size())
            return names[term];
        const size_t trait = term - names.size();
        if (trait < attributes.size())
            return attributes[trait];
        return "style:" + index.styles()[static_cast<size_t>(index.commonStyles()[trait - attributes.size()])].name;
    };
    json terms = json::object();
    for (size_t term = 0; term < engine::termCount; ++term) {
        float mean = 0;
        for (const engine::Candidate &candidate : pick.shortlist)
            mean += candidate.terms[term] / static_cast<float>(pick.shortlist.size());
        const float value = pick.candidate().terms[term];
        if (value != 0 || mean != 0)
            terms[nameOf(term)] = {value, mean};
    }
    const json all = {{"noise", pick.candidate().noise}, {"terms", std::move(terms)}};
    return all.dump(-1, ' ', true, json::error_handler_t::replace);
}

std::string reasonsText(const std::vector<engine::ReasonText> &reasons)
{
    json all = json::array();
    for (const engine::ReasonText &reason : reasons)
        all.push_back({reason.id, reason.text});
    return all.dump();
}

// No reasons if the text has another form, as an older version may have stored it.
std::vector<engine::ReasonText> reasonsOf(const std::string &text)
{
    std::vector<engine::ReasonText> reasons;
    const json all = json::parse(text, nullptr, false);
    if (!all.is_array())
        return reasons;
    for (const json &reason : all) {
        if (reason.is_array() && reason.size() == 2 && reason[0].is_string() && reason[1].is_string())
            reasons.push_back({reason[0], reason[1]});
    }
    return reasons;
}

// The station's name in ASCII letters, for the explanation on the Tapestry station.
engine::ReasonText stationReason(const Station &station)
{
    const std::string &name = station.name;
    const bool isPlain = std::all_of(name.begin(), name.end(), [](char c) { return c >= ' ' && c < 0x7f; });
    if (isPlain)
        return {"station", "music of your station " + name};
    const std::string folded = foldedText(name);
    const bool isFolded = std::all_of(folded.begin(), folded.end(), [](char c) { return c >= ' ' && c < 0x7f; });
    return {"station", isFolded && !folded.empty() ? "music of your station " + folded : "music of your stations"};
}

bool isSame(const engine::StationTaste &a, const engine::StationTaste &b)
{
    const auto isSameEvent = [](const engine::TasteEvent &left, const engine::TasteEvent &right) {
        return left.track == right.track && left.isLiked == right.isLiked && left.weight == right.weight;
    };
    return a.seeds == b.seeds && a.liked == b.liked && a.disliked == b.disliked &&
           std::equal(a.events.begin(), a.events.end(), b.events.begin(), b.events.end(), isSameEvent);
}

} // namespace

Playlists::Playlists(Store &store, Catalogue &catalogue, Stations &stations, Clock clock, Random random)
    : m_store(store)
    , m_catalogue(catalogue)
    , m_stations(stations)
    , m_clock(std::move(clock))
    , m_random(std::move(random))
    , m_keeper(store, catalogue)
{
}

std::shared_ptr<Playlists::Kept> Playlists::kept(int64_t stationId)
{
    const std::lock_guard guard(m_mutex);
    const auto found =
        std::find_if(m_kept.begin(), m_kept.end(), [&](const auto &entry) { return entry.first == stationId; });
    if (found != m_kept.end()) {
        m_kept.splice(m_kept.begin(), m_kept, found);
    } else {
        m_kept.emplace_front(stationId, std::make_shared<Kept>());
        if (m_kept.size() > mostKept)
            m_kept.pop_back();
    }
    return m_kept.front().second;
}

std::shared_ptr<const engine::StationScores> Playlists::scoresOf(const Station &station, Kept &kept)
{
    const EngineKeeper::Index index = m_keeper.current();
    engine::StationTaste taste;
    {
        const Store::Lock db = m_store.lock();
        taste = Listening(*db, m_stations, m_clock()).taste(station);
    }
    if (!kept.scores || kept.scores->sharedIndex() != index || !isSame(kept.taste, taste)) {
        kept.scores = std::make_shared<engine::StationScores>(index, taste, kept.scores.get());
        kept.taste = std::move(taste);
    }
    return kept.scores;
}

std::set<std::string> Playlists::styles(const Station &station)
{
    const std::shared_ptr<Kept> own = kept(station.id);
    const std::lock_guard guard(own->mutex);
    const auto scores = scoresOf(station, *own);
    std::set<std::string> result;
    for (const engine::Seed &seed : own->taste.seeds) {
        if (seed.kind == engine::Seed::Kind::Style)
            result.insert(seed.style);
    }
    // Tracks that have no file yet are not in the index.
    for (const engine::Seed &seed : own->taste.seeds) {
        const Store::Lock db = m_store.lock();
        Statement row = db->prepare(seed.kind == engine::Seed::Kind::Artist
                                        ? "SELECT DISTINCT style FROM tracks WHERE artist_id = ?1"
                                        : "SELECT style FROM tracks WHERE id = ?1");
        row.with(seed.id);
        while (row.step())
            result.insert(row.text(0));
    }
    return result;
}

bool Playlists::hasOwnMusic(const Station &station)
{
    const std::shared_ptr<Kept> own = kept(station.id);
    const std::lock_guard guard(own->mutex);
    const auto scores = scoresOf(station, *own);
    const engine::EngineIndex &index = scores->index();
    engine::Circumstances now;
    {
        const Store::Lock db = m_store.lock();
        now = Listening(*db, m_stations, m_clock()).circumstances(station);
    }
    now.absent = m_keeper.absent();
    std::unordered_set<int64_t> excluded; // recordings
    for (const int64_t id : now.excludedTracks) {
        if (const std::optional<engine::Position> track = index.find(id))
            excluded.insert(index.facts(*track).recording);
    }
    for (engine::Position track = 0; track < index.size(); ++track) {
        const engine::TrackFacts &facts = index.facts(track);
        const bool isAllowed = !excluded.contains(facts.recording) && !now.excludedArtists.contains(facts.artist) &&
                               (now.allowsExplicit || !facts.isExplicit) &&
                               !(now.absent && now.absent->contains(facts.id));
        if (isAllowed && scores->isRelated(track))
            return true;
    }
    return false;
}

Station Playlists::chooser(const Station &station)
{
    if (!station.isTapestry)
        return station;
    std::vector<Station> stations = m_stations.list(station.accountId); // the Tapestry station is one of them
    const Store::Lock db = m_store.lock();
    const std::unordered_map<int64_t, int> plays =
        Listening(*db, m_stations, m_clock()).playsByStation(station.accountId);
    uint32_t sum = 0;
    std::vector<uint32_t> upTo;
    for (const Station &other : stations) {
        const auto found = plays.find(other.id);
        sum += 1 + (found == plays.end() || other.isTapestry ? 0 : static_cast<uint32_t>(found->second));
        upTo.push_back(sum);
    }
    const auto drawn = std::upper_bound(upTo.begin(), upTo.end(), m_random(sum));
    return stations[static_cast<size_t>(drawn - upTo.begin())];
}

std::optional<Playlists::Choice> Playlists::choose(const Station &station, Kept &own, Moment &moment, bool mustBeReady)
{
    engine::Circumstances &now = moment.now;
    const bool isLimited = m_transcodes && (mustBeReady || m_transcodes->isHeldUp());
    now.transcoded = isLimited ? m_transcodes->ready() : nullptr;
    const Station drawn = chooser(station);
    std::shared_ptr<const engine::StationScores> &scores = moment.scores[drawn.id];
    if (!scores && drawn.id == station.id) {
        scores = scoresOf(station, own);
    } else if (!scores) {
        const std::shared_ptr<Kept> other = kept(drawn.id);
        const std::lock_guard guard(other->mutex);
        scores = scoresOf(drawn, *other);
    }
    engine::Noise noise((static_cast<uint64_t>(m_random(UINT32_MAX)) << 32) + m_random(UINT32_MAX));
    constexpr int manyGone = 4;
    for (int gone = 0;; ++gone) {
        // One after the other would take long where a folder is away.
        if (gone % manyGone == manyGone - 1)
            now.absent = m_keeper.findAbsent();
        std::optional<engine::Pick> pick = engine::choose(*scores, now, noise);
        if (!pick)
            return std::nullopt;
        const int64_t id = scores->index().facts(pick->candidate().track).id;
        std::optional<Track> track = m_catalogue.track(id);
        // The track was removed after the index was built, its transcode is out of date, or it cannot be transcoded for
        // now.
        if (!track || !track->isPlayable ||
            (track->needsTranscoding && m_transcodes &&
             (m_transcodes->hasFailed(id) || (isLimited && !m_transcodes->file(id))))) {
            now.excludedTracks.insert(id);
            continue;
        }
        Choice choice{*std::move(track), engine::explain(*scores, *pick), termsText(scores->index(), *pick)};
        if (drawn.id != station.id)
            choice.reasons.insert(choice.reasons.begin(), stationReason(drawn));
        return choice;
    }
}

std::vector<PlaylistEntry> Playlists::next(const Station &station, const std::string &deviceKeyHash)
{
    const std::shared_ptr<Kept> own = kept(station.id);
    const std::lock_guard guard(own->mutex);
    Moment moment;
    {
        const Store::Lock db = m_store.lock();
        forgetOld(*db);
        moment.now = Listening(*db, m_stations, m_clock()).circumstances(station);
    }
    moment.now.absent = m_keeper.absent();
    std::vector<PlaylistEntry> entries;
    std::vector<Choice> choices; // one for each track entry, in the same order
    const int adPlace = adPosition(m_random);
    const int listsPerAd = HouseRules(m_store, m_clock).listsPerAd();
    const bool hasAdInOwnMusic = listsPerAd > 0 && station.listsIssued % listsPerAd == listsPerAd - 1;
    const bool isGrowing = m_catalogue.isGrowing();
    std::set<int64_t> inList;
    while (entries.size() < entriesInList) {
        // The owner decides whether advertisements follow their own music.
        if (static_cast<int>(entries.size()) == adPlace && (choices.back().track.isDemo || hasAdInOwnMusic)) {
            const Store::Lock db = m_store.lock();
            if (std::optional<IssuedAd> ad = issueAd(*db, station)) {
                entries.push_back({std::nullopt, std::move(ad)});
                continue;
            }
        }
        std::optional<Choice> choice = choose(station, *own, moment, entries.empty());
        if (!choice || (!inList.insert(choice->track.id).second && isGrowing))
            break;
        moment.now.recent.insert(moment.now.recent.begin(), choice->track.id);
        choices.push_back(*std::move(choice));
        entries.emplace_back();
    }
    {
        const Store::Lock db = m_store.lock();
        if (!m_stations.find(station.id)) // it was deleted in the meantime
            return {};
        Transaction change(*db, Durability::Later);
        auto choice = choices.begin();
        for (PlaylistEntry &entry : entries) {
            if (!entry.ad)
                entry.track = issueTrack(*db, station, *choice++, deviceKeyHash);
        }
        db->run("UPDATE stations SET lists_issued = lists_issued + 1 WHERE id = ?1", station.id);
        change.commit();
    }
    prepare(station, *own, std::move(moment), entries);
    return entries;
}

void Playlists::prepare(const Station &station, Kept &own, Moment moment, const std::vector<PlaylistEntry> &entries)
{
    constexpr int ahead = 2; // the next list begins with one of them, unless another track fits better then
    std::vector<int64_t> tracks;
    for (const PlaylistEntry &entry : entries) {
        if (entry.track && entry.track->track.needsTranscoding)
            tracks.push_back(entry.track->track.id);
    }
    if (!m_transcodes || (tracks.empty() && !entries.empty()))
        return;
    for (int i = 0; i < ahead; ++i) {
        const std::optional<Choice> choice = choose(station, own, moment, false);
        if (!choice)
            break;
        if (choice->track.needsTranscoding)
            tracks.push_back(choice->track.id);
        moment.now.recent.insert(moment.now.recent.begin(), choice->track.id);
    }
    m_transcodes->prepare(tracks);
}

bool Playlists::isPreparing()
{
    return m_transcodes && m_transcodes->isPreparing();
}

void Playlists::forgetOld(Database &db)
{
    db.run("DELETE FROM sleeps WHERE until <= ?1", m_clock());
    // These scan whole tables. Rows that are a little too old do no harm.
    const int64_t now = m_clock();
    if (now >= m_forgottenAt && now < m_forgottenAt + forgetSeconds)
        return;
    m_forgottenAt = now;
    const int64_t before = now - tokenSeconds;
    db.run("DELETE FROM issued_tracks WHERE issued_at < ?1", before);
    db.run("DELETE FROM issued_ads WHERE issued_at < ?1", before);
    db.run("DELETE FROM track_events WHERE happened_at < ?1", now - sleepSeconds);
    db.run("DELETE FROM plays WHERE started_at < ?1", now - playSeconds);
}

IssuedTrack Playlists::issueTrack(Database &db, const Station &station, const Choice &choice,
                                  const std::string &deviceKeyHash)
{
    IssuedTrack issued{randomToken(15), station.accountId, station.id, choice.track, choice.reasons, 0};
    db.run("INSERT INTO issued_tracks (token, account_id, station_id, track_id, reasons, issued_at, device_key_hash, "
           "terms) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)",
           issued.token, station.accountId, station.id, choice.track.id, reasonsText(choice.reasons), m_clock(),
           deviceKeyHash, choice.terms);
    issued.issueId = db.lastRowId();
    return issued;
}

std::optional<IssuedAd> Playlists::issueAd(Database &db, const Station &station)
{
    int64_t id = 0;
    {
        // The advertisement that this listener heard least recently.
        Statement row =
            db.prepare("SELECT a.id FROM ads a WHERE a.is_playable = 1 ORDER BY COALESCE((SELECT MAX(i.id) FROM "
                       "issued_ads i WHERE i.account_id = ?1 AND i.ad_id = a.id), 0), a.id LIMIT 1");
        row.with(station.accountId);
        if (!row.step())
            return std::nullopt;
        id = row.integer(0);
    }
    IssuedAd issued{randomToken(15), station.id, *m_catalogue.ad(id)};
    db.run("INSERT INTO issued_ads (token, account_id, station_id, ad_id, issued_at) VALUES (?1, ?2, ?3, ?4, ?5)",
           issued.token, station.accountId, station.id, id, m_clock());
    return issued;
}

std::optional<IssuedTrack> Playlists::findTrack(AccountId account, const std::string &token)
{
    const Store::Lock db = m_store.lock();
    Statement row =
        db->prepare("SELECT station_id, track_id, reasons, id FROM issued_tracks WHERE token = ?1 AND account_id = ?2");
    row.with(token, account);
    if (!row.step())
        return std::nullopt;
    const std::optional<Track> track = m_catalogue.track(row.integer(1));
    if (!track)
        return std::nullopt;
    return IssuedTrack{token, account, row.integer(0), *track, reasonsOf(row.text(2)), row.integer(3)};
}

std::optional<IssuedAd> Playlists::findAd(AccountId account, const std::string &token)
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT station_id, ad_id FROM issued_ads WHERE token = ?1 AND account_id = ?2");
    row.with(token, account);
    if (!row.step())
        return std::nullopt;
    const std::optional<Ad> ad = m_catalogue.ad(row.integer(1));
    return ad ? std::optional(IssuedAd{token, row.integer(0), *ad}) : std::nullopt;
}

void Playlists::registerAd(AccountId account, const std::string &token)
{
    m_store.lock()->run(
        "UPDATE issued_ads SET registered_at = ?3 WHERE token = ?1 AND account_id = ?2 AND registered_at IS "
        "NULL",
        token, account, m_clock());
}

} // namespace velmora::server
