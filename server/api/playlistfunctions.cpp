// The functions of the interface that concern playlists, ads, and what the listener says of a track.

#include "server/api/answers.h"

namespace velmora::server::functions {

namespace {

constexpr int64_t mostSeconds = 24 * 3600;

IssuedTrack trackThatTakesFeedback(Call &call)
{
    IssuedTrack issued = requiredTrack(call);
    const std::optional<Station> station = call.service.stations.find(issued.stationId);
    if (!station || !station->allowFeedback)
        throw ApiError(Code::NotAuthorised, "this station takes no feedback");
    return issued;
}

} // namespace

json getPlaylist(Call &call)
{
    call.count(call.limits.playlistsOfNetwork, call.network);
    call.count(call.limits.playlistsOfSession, call.session.tokenHash);
    const Station station = requiredStation(call);
    StationService &service = call.service;
    if (service.catalogue.isGrowing()) {
        service.catalogue.want(service.playlists.styles(station));
        service.catalogue.waitUntil(
            [&] { return service.playlists.hasOwnMusic(station) || !service.catalogue.isGrowing(); }, service.patience);
    }
    const std::vector<PlaylistEntry> list = service.playlists.next(station, call.session.keyHash);
    if (list.empty() && (service.catalogue.isGrowing() || service.playlists.isPreparing()))
        throw ApiError(Code::Internal, "no track is ready to be played yet");
    if (list.empty())
        throw ApiError(Code::NoSuchMusic, "nothing is left to play on this station");
    json entries = json::array();
    const Store::Lock db = call.service.store.lock();
    Transaction change(*db, Durability::Later);
    for (const PlaylistEntry &entry : list) {
        if (entry.track)
            entries.push_back({{"type", "track"}, {"track", trackAnswer(call, station, *entry.track)}});
        else
            entries.push_back({{"type", "ad"}, {"ad", {{"adToken", entry.ad->token}}}});
    }
    change.commit();
    return {{"entries", std::move(entries)}};
}

json getAdMetadata(Call &call)
{
    const Ad ad = requiredAd(call).ad;
    return {{"title", ad.title},
            {"adLine2", ad.line2},
            {"audioUrl", audioAddress(call, ad.publicId, ad.audioType, ad.isPlayable)},
            {"audioType", ad.audioType},
            {"imageUrl", ad.pictureFile.empty() ? std::string() : pictureAddress(call, pictureName(ad))},
            {"durationSeconds", ad.durationSeconds}};
}

json registerAd(Call &call)
{
    const Station station = requiredStation(call);
    const IssuedAd issued = requiredAd(call);
    if (issued.stationId != station.id)
        throw ApiError(Code::NoSuchMusic, "no such ad");
    call.service.playlists.registerAd(call.account(), issued.token);
    return json::object();
}

json addFeedback(Call &call)
{
    const bool isPositive = call.parameters.flag("isPositive");
    call.service.feedback.rate(trackThatTakesFeedback(call), isPositive);
    return json::object();
}

json sleepSong(Call &call)
{
    call.service.feedback.sleep(requiredTrack(call));
    return json::object();
}

json addSongBookmark(Call &call)
{
    call.service.feedback.bookmarkTrack(requiredTrack(call));
    return json::object();
}

json addArtistBookmark(Call &call)
{
    call.service.feedback.bookmarkArtist(requiredTrack(call));
    return json::object();
}

json explainTrack(Call &call)
{
    const IssuedTrack issued = requiredTrack(call);
    json traits = json::array();
    for (const engine::ReasonText &reason : issued.reasons)
        traits.push_back({{"traitId", reason.id}, {"traitText", reason.text}});
    return {{"traits", std::move(traits)}};
}

json trackEvent(Call &call)
{
    const std::string type = call.parameters.text("eventType");
    if (type != "start" && type != "end" && type != "skip")
        throw ApiError(Code::Malformed, "no such event");
    const int64_t seconds = call.parameters.optionalInteger("seconds").value_or(0);
    if (seconds < 0 || seconds > mostSeconds)
        throw ApiError(Code::Malformed, "not a position in a track");
    const IssuedTrack issued = requiredTrack(call);
    call.service.feedback.event(issued, type, seconds);
    call.service.plays.reported(issued, type, seconds);
    return json::object();
}

} // namespace velmora::server::functions
