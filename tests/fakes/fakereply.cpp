#include "fakes/fakereply.h"

#include <cstdlib>
#include <cstring>

FakeArena::~FakeArena()
{
    for (void *block : m_blocks)
        std::free(block);
}

char *FakeArena::text(const QByteArray &text)
{
    if (text.isNull())
        return nullptr;
    char *copy = static_cast<char *>(allocate(static_cast<size_t>(text.size()) + 1));
    std::memcpy(copy, text.constData(), static_cast<size_t>(text.size()));
    return copy;
}

void *FakeArena::allocate(size_t size)
{
    if (size == 0)
        return nullptr;
    void *block = std::calloc(1, size);
    if (!block)
        std::abort();
    m_blocks.push_back(block);
    return block;
}

FakeEntry FakeEntry::track(const FakeTrack &track)
{
    FakeEntry entry;
    entry.music = track;
    return entry;
}

FakeEntry FakeEntry::ad(const QByteArray &adToken)
{
    FakeEntry entry;
    entry.isTrack = false;
    entry.adToken = adToken;
    return entry;
}

FakeEntry FakeEntry::withoutMap(bool isTrack)
{
    FakeEntry entry;
    entry.isTrack = isTrack;
    entry.hasMap = false;
    return entry;
}

namespace {

void fill(VLM_STATION_MAP_T *to, const FakeStation &from, FakeArena &arena)
{
    to->fgFlag0 = from.isTapestry;
    to->allowRename = from.allowRename;
    to->stationId = arena.text(from.id);
    to->stationToken = arena.text(from.token);
    to->allowDelete = from.allowDelete;
    to->fgFlag20 = from.allowAddMusic;
    to->isShared = from.isShared;
    to->stationStr24 = arena.text("2026-01-01T00:00:00Z");
    to->stationName = arena.text(from.name);
}

VLM_TRACK_MAP_T *makeTrack(const FakeTrack &from, FakeArena &arena)
{
    auto *to = arena.make<VLM_TRACK_MAP_T>();
    to->albumArtUrl = arena.text(from.albumArtUrl);
    to->albumName = arena.text(from.albumName);
    to->allowFeedback = from.allowFeedback;
    to->durationSeconds = from.durationSeconds;
    to->artistName = arena.text(from.artistName);
    to->audioUrl = arena.text(from.audioUrl);
    to->audioType = arena.text("audio/flac");
    to->songRating = from.songRating;
    to->stationToken = arena.text(from.stationToken);
    to->songName = arena.text(from.songName);
    to->trackToken = arena.text(from.trackToken);
    to->expiresIn = 43200;
    return to;
}

} // namespace

FakeReply::FakeReply(Build build)
    : m_build(std::move(build))
{
}

void *FakeReply::build(FakeArena &arena) const
{
    return m_build ? m_build(arena) : nullptr;
}

FakeReply FakeReply::stationList(const QList<FakeStation> &stations)
{
    return FakeReply([stations](FakeArena &arena) {
        auto *list = arena.make<VLM_WS_STATION_LIST_T>();
        list->count = static_cast<int32_t>(stations.size());
        list->stations = arena.make<VLM_STATION_MAP_T>(list->count);
        for (int i = 0; i < list->count; ++i)
            fill(&list->stations[i], stations.at(i), arena);
        return static_cast<void *>(list);
    });
}

FakeReply FakeReply::stationListOf(const QList<QByteArray> &tokens)
{
    QList<FakeStation> stations;
    FakeStation tapestry;
    tapestry.token = "tapestry";
    tapestry.name = "Tapestry";
    tapestry.isTapestry = true;
    tapestry.allowRename = tapestry.allowDelete = false;
    stations.append(tapestry);
    for (const QByteArray &token : tokens) {
        FakeStation station;
        station.token = station.name = token;
        stations.append(station);
    }
    return stationList(stations);
}

FakeReply FakeReply::station(const FakeStation &station)
{
    return FakeReply([station](FakeArena &arena) {
        auto *record = arena.make<VLM_STATION_MAP_T>();
        fill(record, station, arena);
        return static_cast<void *>(record);
    });
}

FakeReply FakeReply::playlist(const QList<FakeEntry> &entries)
{
    return FakeReply([entries](FakeArena &arena) {
        auto *list = arena.make<VLM_WS_PLAYLIST_T>();
        list->count = static_cast<int32_t>(entries.size());
        list->entries = arena.make<VLM_PLAYLIST_ENTRY_T>(list->count);
        for (int i = 0; i < list->count; ++i) {
            const FakeEntry &from = entries.at(i);
            list->entries[i].isTrack = from.isTrack;
            if (!from.hasMap)
                continue;
            if (from.isTrack) {
                list->entries[i].map.p_trackMap = makeTrack(from.music, arena);
            } else {
                list->entries[i].map.p_adMap = arena.make<VLM_AD_MAP_T>();
                list->entries[i].map.p_adMap->adToken = arena.text(from.adToken);
            }
        }
        return static_cast<void *>(list);
    });
}

FakeReply FakeReply::adMetadata(const FakeAd &ad)
{
    return FakeReply([ad](FakeArena &arena) {
        auto *record = arena.make<VLM_AD_METADATA_T>();
        record->audioUrl = arena.text(ad.audioUrl);
        record->audioType = arena.text("audio/flac");
        record->adLine2 = arena.text(ad.line2);
        record->durationSeconds = ad.durationSeconds;
        record->imageUrl = arena.text(ad.imageUrl);
        record->title = arena.text(ad.title);
        return static_cast<void *>(record);
    });
}

FakeReply FakeReply::partnerLogin()
{
    return FakeReply([](FakeArena &arena) {
        auto *record = arena.make<VLM_WS_PARTNER_LOGIN_T>();
        record->expiresIn = 3600;
        return static_cast<void *>(record);
    });
}

FakeReply FakeReply::userLogin(const QByteArray &userName)
{
    return FakeReply([userName](FakeArena &arena) {
        auto *record = arena.make<VLM_WS_USER_LOGIN_T>();
        record->userName = arena.text(userName);
        record->userId = arena.text("user-1");
        record->expiresIn = 3600;
        return static_cast<void *>(record);
    });
}

FakeReply FakeReply::activationCode(const QByteArray &code, const QByteArray &url)
{
    return FakeReply([code, url](FakeArena &arena) {
        auto *record = arena.make<VLM_WS_ACTIVATION_CODE_T>();
        record->activationCode = arena.text(code);
        record->activationUrl = arena.text(url);
        record->expiresIn = 600;
        return static_cast<void *>(record);
    });
}

FakeReply FakeReply::search(const QList<FakeSearchTrack> &tracks, const QList<FakeSearchArtist> &artists)
{
    return FakeReply([tracks, artists](FakeArena &arena) {
        auto *record = arena.make<VLM_WS_SEARCH_T>();
        record->trackCount = static_cast<int32_t>(tracks.size());
        record->tracks = arena.make<VLM_WS_SEARCH_TRACK_T>(record->trackCount);
        for (int i = 0; i < record->trackCount; ++i)
            record->tracks[i] = {arena.text(tracks.at(i).musicToken), arena.text(tracks.at(i).songName),
                                 arena.text(tracks.at(i).artistName)};
        record->artistCount = static_cast<int32_t>(artists.size());
        record->artists = arena.make<VLM_WS_SEARCH_ARTIST_T>(record->artistCount);
        for (int i = 0; i < record->artistCount; ++i)
            record->artists[i] = {arena.text(artists.at(i).musicToken), arena.text(artists.at(i).artistName)};
        return static_cast<void *>(record);
    });
}

FakeReply FakeReply::explanation(const QList<QByteArray> &traits)
{
    return FakeReply([traits](FakeArena &arena) {
        auto *record = arena.make<VLM_WS_EXPLANATION_T>();
        record->count = static_cast<int32_t>(traits.size());
        record->traits = arena.make<VLM_WS_TRAIT_T>(record->count);
        for (int i = 0; i < record->count; ++i)
            record->traits[i] = {arena.text("trait"), arena.text(traits.at(i))};
        return static_cast<void *>(record);
    });
}
