#include "server/stations/playlists.h"

#include "server/accounts/houserules.h"
#include "server/catalogue/textfolding.h"
#include "server/library/transcodes.h"
#include "server/store/store.h"

#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>

namespace velmora::server {

namespace {

using nlohmann::json;

constexpr const char *trackTokens = "track", *adTokens = "ad";
constexpr int issuesOfList = 4; // numbers: at least as many as entries
constexpr size_t trackMarkLength = 8;

// Tells a track from another one that was given its id later.
std::string markOf(const Track &track)
{
    return track.publicId.substr(0, trackMarkLength);
}

json reasonsJson(const std::vector<engine::ReasonText> &reasons)
{
    json all = json::array();
    for (const engine::ReasonText &reason : reasons)
        all.push_back({reason.id, reason.text});
    return all;
}

// No reasons if they have another form, as another version may write them.
std::vector<engine::ReasonText> reasonsOf(const json &all)
{
    std::vector<engine::ReasonText> reasons;
    for (const json &reason : all.is_array() ? all : json::array()) {
        if (reason.is_array() && reason.size() == 2 && reason[0].is_string() && reason[1].is_string())
            reasons.push_back({reason[0], reason[1]});
    }
    return reasons;
}

int numberIn(const std::string &text)
{
    int number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
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

Playlists::Playlists(Store &store, Catalogue &catalogue, SealedTokens &tokens, Clock clock, Random random)
    : m_store(store)
    , m_catalogue(catalogue)
    , m_tokens(tokens)
    , m_clock(std::move(clock))
    , m_random(std::move(random))
    , m_keeper(catalogue.store(), catalogue)
{
}

std::shared_ptr<Playlists::Kept> Playlists::kept(const KeptKey &key)
{
    const std::lock_guard guard(m_mutex);
    const auto found =
        std::find_if(m_kept.begin(), m_kept.end(), [&](const auto &entry) { return entry.first == key; });
    if (found != m_kept.end()) {
        m_kept.splice(m_kept.begin(), m_kept, found);
    } else {
        m_kept.emplace_front(key, std::make_shared<Kept>());
        if (m_kept.size() > mostKept)
            m_kept.pop_back();
    }
    return m_kept.front().second;
}

std::shared_ptr<const engine::StationScores> Playlists::scoresOf(const Listening &listening, const Station &station,
                                                                 Kept &kept)
{
    const EngineKeeper::Index index = m_keeper.current();
    engine::StationTaste taste = listening.taste(station);
    if (!kept.scores || kept.scores->sharedIndex() != index || !isSame(kept.taste, taste)) {
        kept.scores = std::make_shared<engine::StationScores>(index, taste, kept.scores.get(),
                                                              static_cast<uint64_t>(station.listsIssued));
        kept.taste = std::move(taste);
    }
    return kept.scores;
}

std::set<std::string> Playlists::styles(const Listening &listening)
{
    const engine::StationTaste taste = listening.taste(*listening.station());
    std::set<std::string> result;
    for (const engine::Seed &seed : taste.seeds) {
        if (seed.kind == engine::Seed::Kind::Style)
            result.insert(seed.style);
    }
    // Tracks that have no file yet are not in the index.
    for (const engine::Seed &seed : taste.seeds) {
        const Store::Lock db = m_catalogue.store().lock();
        Statement row = db->prepare(seed.kind == engine::Seed::Kind::Artist
                                        ? "SELECT DISTINCT style FROM tracks WHERE artist_id = ?1"
                                        : "SELECT style FROM tracks WHERE id = ?1");
        row.with(seed.id);
        while (row.step())
            result.insert(row.text(0));
    }
    return result;
}

bool Playlists::hasOwnMusic(const Listening &listening)
{
    const Station &station = *listening.station();
    const std::shared_ptr<Kept> own = kept({station.id, station.isTapestry});
    const std::lock_guard guard(own->mutex);
    const auto scores = scoresOf(listening, station, *own);
    const engine::EngineIndex &index = scores->index();
    engine::Circumstances now = listening.circumstances(index);
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

const Station &Playlists::chooser(const Listening &listening)
{
    if (!listening.station()->isTapestry)
        return *listening.station();
    const std::vector<Station> &stations = listening.stations(); // the Tapestry station is one of them
    const std::unordered_map<int64_t, int> plays = listening.playsByStation();
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

std::optional<Playlists::Choice> Playlists::choose(Kept &own, Moment &moment, bool mustBeReady)
{
    engine::Circumstances &now = moment.now;
    const Station &station = *moment.listening.station();
    const bool isLimited = m_transcodes && (mustBeReady || m_transcodes->isHeldUp());
    now.transcoded = isLimited ? m_transcodes->ready() : nullptr;
    const Station &drawn = chooser(moment.listening);
    auto &[scores, known] = moment.drawn[drawn.id];
    if (!scores && drawn.id == station.id) {
        scores = scoresOf(moment.listening, station, own);
    } else if (!scores) {
        const std::shared_ptr<Kept> other = kept({drawn.id, true});
        const std::lock_guard guard(other->mutex);
        scores = scoresOf(moment.listening, drawn, *other);
    }
    engine::Noise noise((static_cast<uint64_t>(m_random(UINT32_MAX)) << 32) + m_random(UINT32_MAX));
    constexpr int manyGone = 4;
    for (int gone = 0;; ++gone) {
        // One after the other would take long where a folder is away.
        if (gone % manyGone == manyGone - 1)
            now.absent = m_keeper.findAbsent();
        std::optional<engine::Pick> pick = engine::choose(*scores, now, noise, &known);
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
        Choice choice{*std::move(track), engine::explain(*scores, *pick)};
        if (drawn.id != station.id)
            choice.reasons.insert(choice.reasons.begin(), stationReason(drawn));
        return choice;
    }
}

std::vector<PlaylistEntry> Playlists::next(const Listening &listening)
{
    const Station &station = *listening.station();
    const std::shared_ptr<Kept> own = kept({station.id, station.isTapestry});
    const std::lock_guard guard(own->mutex);
    Moment moment{listening, listening.circumstances(*m_keeper.current()), {}};
    moment.now.absent = m_keeper.absent();
    std::vector<PlaylistEntry> entries;
    std::vector<Choice> choices; // one for each track entry, in the same order
    const int adPlace = adPosition(m_random);
    const int listsPerAd = std::clamp(numberIn(listening.listsPerAd()), 0, HouseRules::mostListsPerAd);
    const bool hasAdInOwnMusic = listsPerAd > 0 && station.listsIssued % listsPerAd == listsPerAd - 1;
    const bool isGrowing = m_catalogue.isGrowing();
    std::set<int64_t> inList;
    while (entries.size() < entriesInList) {
        // The owner decides whether advertisements follow their own music.
        if (static_cast<int>(entries.size()) == adPlace && (choices.back().track.isDemo || hasAdInOwnMusic)) {
            if (std::optional<IssuedAd> ad = nextAd(listening, choices.back().track.isDemo ? 1 : listsPerAd)) {
                entries.push_back({std::nullopt, std::move(ad)});
                continue;
            }
        }
        std::optional<Choice> choice = choose(*own, moment, entries.empty());
        if (!choice || (!inList.insert(choice->track.id).second && isGrowing))
            break;
        moment.now.recent.insert(moment.now.recent.begin(), choice->track.id);
        choices.push_back(*std::move(choice));
        entries.emplace_back();
    }
    const std::optional<int64_t> list = keep(station, moment.now.recent);
    if (!list)
        return {};
    int64_t number = *list * issuesOfList;
    auto choice = choices.begin();
    for (PlaylistEntry &entry : entries) {
        if (!entry.ad)
            entry.track = sealTrack(station, *choice++, number++);
    }
    prepare(*own, std::move(moment), entries);
    return entries;
}

const char *Playlists::keepStatement()
{
    return "UPDATE stations SET recent = ?3, lists_issued = lists_issued + 1 WHERE account_id = ?1 AND id = ?2 "
           "RETURNING lists_issued";
}

std::optional<int64_t> Playlists::keep(const Station &station, const std::vector<int64_t> &recent)
{
    const Store::Lock db = m_store.lock();
    Transaction change(*db, Durability::Later);
    std::optional<int64_t> list;
    {
        Statement row = db->prepare(keepStatement());
        row.with(station.accountId, station.id, Listening::recentText(recent));
        while (row.step())
            list = row.integer(0);
    }
    change.commit();
    return list;
}

void Playlists::prepare(Kept &own, Moment moment, const std::vector<PlaylistEntry> &entries)
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
        const std::optional<Choice> choice = choose(own, moment, false);
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

IssuedTrack Playlists::sealTrack(const Station &station, const Choice &choice, int64_t number)
{
    IssuedTrack issued{{}, station.accountId, station.id, choice.track, choice.reasons, number};
    // A token has a longest length. The words are few and short, but the rule does not rest on them.
    for (;;) {
        issued.token = m_tokens.seal(station.accountId, trackTokens,
                                     json::array({station.id, choice.track.id, markOf(choice.track), number, m_clock(),
                                                  reasonsJson(issued.reasons)}));
        if (issued.token.size() <= SealedTokens::longest || issued.reasons.empty())
            return issued;
        issued.reasons.pop_back();
    }
}

std::optional<IssuedAd> Playlists::nextAd(const Listening &listening, int listsPerAd)
{
    const std::vector<int64_t> ads = m_catalogue.playableAds();
    if (ads.empty())
        return std::nullopt;
    const auto turn = static_cast<size_t>(listening.listsOfAccount() / listsPerAd);
    const Station &station = *listening.station();
    const int64_t ad = ads[turn % ads.size()];
    return IssuedAd{
        m_tokens.seal(station.accountId, adTokens, json::array({station.id, ad, station.listsIssued, m_clock()})),
        station.id, ad};
}

std::optional<IssuedTrack> Playlists::findTrack(AccountId account, const std::string &token)
{
    const std::optional<json> content = m_tokens.open(account, trackTokens, token);
    if (!content)
        return std::nullopt;
    try {
        const json &all = *content;
        std::optional<Track> track = m_catalogue.track(all.at(1).get<int64_t>());
        if (!track || markOf(*track) != all.at(2) || all.at(4).get<int64_t>() + tokenSeconds < m_clock())
            return std::nullopt;
        return IssuedTrack{token, account, all.at(0), *std::move(track), reasonsOf(all.at(5)), all.at(3)};
    } catch (const json::exception &) { // of another version
        return std::nullopt;
    }
}

std::optional<IssuedAd> Playlists::findAd(AccountId account, const std::string &token)
{
    const std::optional<json> content = m_tokens.open(account, adTokens, token);
    if (!content)
        return std::nullopt;
    try {
        if (content->at(3).get<int64_t>() + tokenSeconds < m_clock())
            return std::nullopt;
        return IssuedAd{token, content->at(0), content->at(1)};
    } catch (const json::exception &) {
        return std::nullopt;
    }
}

} // namespace velmora::server
