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

FakeStation FakeStation::tapestry()
{
    FakeStation station{"tapestry", "Tapestry"};
    station.isTapestry = true;
    station.allowRename = station.allowDelete = false;
    return station;
}

FakeReply FakeReply::stationList(const QList<FakeStation> &stations)
{
    return of<VLM_WS_STATION_LIST_T>([stations](VLM_WS_STATION_LIST_T &list, FakeArena &arena) {
        list.count = static_cast<int32_t>(stations.size());
        list.stations = arena.make<VLM_STATION_MAP_T>(list.count);
        for (int i = 0; i < list.count; ++i)
            fill(&list.stations[i], stations.at(i), arena);
    });
}

FakeReply FakeReply::stationListOf(const QList<QByteArray> &tokens)
{
    QList<FakeStation> stations{FakeStation::tapestry()};
    for (const QByteArray &token : tokens)
        stations.append(FakeStation{token, token});
    return stationList(stations);
}

FakeReply FakeReply::station(const FakeStation &station)
{
    return of<VLM_STATION_MAP_T>(
        [station](VLM_STATION_MAP_T &record, FakeArena &arena) { fill(&record, station, arena); });
}

FakeReply FakeReply::playlist(const QList<FakeEntry> &entries)
{
    return of<VLM_WS_PLAYLIST_T>([entries](VLM_WS_PLAYLIST_T &list, FakeArena &arena) {
        list.count = static_cast<int32_t>(entries.size());
        list.entries = arena.make<VLM_PLAYLIST_ENTRY_T>(list.count);
        for (int i = 0; i < list.count; ++i) {
            const FakeEntry &from = entries.at(i);
            list.entries[i].isTrack = from.isTrack;
            if (from.hasMap && from.isTrack) {
                list.entries[i].map.p_trackMap = makeTrack(from.music, arena);
            } else if (from.hasMap) {
                list.entries[i].map.p_adMap = arena.make<VLM_AD_MAP_T>();
                list.entries[i].map.p_adMap->adToken = arena.text(from.adToken);
            }
        }
    });
}

FakeReply FakeReply::adMetadata(const FakeAd &ad)
{
    return of<VLM_AD_METADATA_T>([ad](VLM_AD_METADATA_T &record, FakeArena &arena) {
        record.audioUrl = arena.text(ad.audioUrl);
        record.audioType = arena.text("audio/flac");
        record.adLine2 = arena.text(ad.line2);
        record.durationSeconds = ad.durationSeconds;
        record.imageUrl = arena.text(ad.imageUrl);
        record.title = arena.text(ad.title);
    });
}

FakeReply FakeReply::partnerLogin()
{
    return of<VLM_WS_PARTNER_LOGIN_T>([](VLM_WS_PARTNER_LOGIN_T &record, FakeArena &) { record.expiresIn = 3600; });
}

FakeReply FakeReply::userLogin(const QByteArray &userName)
{
    return of<VLM_WS_USER_LOGIN_T>([userName](VLM_WS_USER_LOGIN_T &record, FakeArena &arena) {
        record.userName = arena.text(userName);
        record.userId = arena.text("user-1");
        record.expiresIn = 3600;
    });
}

FakeReply FakeReply::activationCode(const QByteArray &code, const QByteArray &url)
{
    return of<VLM_WS_ACTIVATION_CODE_T>([code, url](VLM_WS_ACTIVATION_CODE_T &record, FakeArena &arena) {
        record.activationCode = arena.text(code);
        record.activationUrl = arena.text(url);
        record.expiresIn = 600;
    });
}

FakeReply FakeReply::search(const QList<FakeSearchTrack> &tracks, const QList<FakeSearchArtist> &artists)
{
    return of<VLM_WS_SEARCH_T>([tracks, artists](VLM_WS_SEARCH_T &record, FakeArena &arena) {
        record.trackCount = static_cast<int32_t>(tracks.size());
        record.tracks = arena.make<VLM_WS_SEARCH_TRACK_T>(record.trackCount);
        for (int i = 0; i < record.trackCount; ++i)
            record.tracks[i] = {arena.text(tracks.at(i).musicToken), arena.text(tracks.at(i).songName),
                                arena.text(tracks.at(i).artistName)};
        record.artistCount = static_cast<int32_t>(artists.size());
        record.artists = arena.make<VLM_WS_SEARCH_ARTIST_T>(record.artistCount);
        for (int i = 0; i < record.artistCount; ++i)
            record.artists[i] = {arena.text(artists.at(i).musicToken), arena.text(artists.at(i).artistName)};
    });
}

FakeReply FakeReply::explanation(const QList<QByteArray> &traits)
{
    return of<VLM_WS_EXPLANATION_T>([traits](VLM_WS_EXPLANATION_T &record, FakeArena &arena) {
        record.count = static_cast<int32_t>(traits.size());
        record.traits = arena.make<VLM_WS_TRAIT_T>(record.count);
        for (int i = 0; i < record.count; ++i)
            record.traits[i] = {arena.text("trait"), arena.text(traits.at(i))};
    });
}
