// The functions of the interface that concern playlists, ads, and what the listener says of a track.

#include "server/api/answers.h"

namespace velmora::server::functions {

namespace {

constexpr int64_t mostSeconds = 24 * 3600;

IssuedTrack trackThatTakesFeedback(Call &call)
{
    IssuedTrack issued = requiredTrack(call);
    const std::optional<Station> station = call.service.stations.find(call.account(), issued.stationId);
    if (!station)
        throw ApiError(Code::NoSuchMusic, "no such track");
    if (!station->allowFeedback)
        throw ApiError(Code::NotAuthorised, "this station takes no feedback");
    return issued;
}

} // namespace

json getPlaylist(Call &call)
{
    call.count(call.limits.playlistsOfNetwork, call.network);
    call.count(call.limits.playlistsOfSession, call.session.tokenHash);
    const std::string token = call.parameters.text("stationToken");
    if (!call.listening || !call.listening->station())
        throw ApiError(Code::NoSuchStation, "no such station");
    StationService &service = call.service;
    if (service.catalogue.isGrowing()) {
        service.catalogue.want(service.playlists.styles(*call.listening));
        service.catalogue.waitUntil(
            [&] { return service.playlists.hasOwnMusic(*call.listening) || !service.catalogue.isGrowing(); },
            service.patience);
        call.listening = Listening::ofAccount(service.store, call.account(), token, service.clock());
        if (!call.listening->station())
            throw ApiError(Code::NoSuchStation, "no such station");
    }
    const Listening &listening = *call.listening;
    const std::vector<PlaylistEntry> list = service.playlists.next(listening);
    if (list.empty() && (service.catalogue.isGrowing() || service.playlists.isPreparing()))
        throw ApiError(Code::Internal, "no track is ready to be played yet");
    if (list.empty())
        throw ApiError(Code::NoSuchMusic, "nothing is left to play on this station");
    json entries = json::array();
    for (const PlaylistEntry &entry : list) {
        if (entry.ad) {
            entries.push_back({{"type", "ad"}, {"ad", {{"adToken", entry.ad->token}}}});
            continue;
        }
        const bool isThumbedUp = listening.isThumbedUp(entry.track->track.id);
        entries.push_back(
            {{"type", "track"}, {"track", trackAnswer(call, *listening.station(), *entry.track, isThumbedUp)}});
    }
    return {{"entries", std::move(entries)}};
}

json getAdMetadata(Call &call)
{
    const Ad ad = requiredAd(call).second;
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
    if (requiredAd(call).first.stationId != station.id)
        throw ApiError(Code::NoSuchMusic, "no such ad");
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
    call.service.plays.reported(issued.issue(), Devices::radioMark(call.session.keyHash), type, seconds,
                                issued.track.durationSeconds);
    return json::object();
}

} // namespace velmora::server::functions
