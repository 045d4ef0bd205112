#include "server/api/answers.h"

#include "server/api/mediafiles.h"

namespace velmora::server {

using nlohmann::json;

std::string pictureAddress(const Call &call, const std::string &name)
{
    return call.mediaBase + call.service.addresses.path(MediaKind::Picture, name, call.account(),
                                                        Devices::radioMark(call.session.keyHash));
}

json audioAddress(const Call &call, const std::string &publicId, const std::string &mediaType, bool isPlayable,
                  const std::string &issue)
{
    if (!isPlayable)
        return nullptr;
    return call.mediaBase + call.service.addresses.path(MediaKind::Audio, publicId + audioExtension(mediaType),
                                                        call.account(), Devices::radioMark(call.session.keyHash),
                                                        issue);
}

json stationAnswer(Call &call, const Station &station)
{
    const std::optional<std::string> picture = call.service.stations.pictureId(station);
    return {{"stationToken", station.token},
            {"stationId", std::to_string(station.id)},
            {"stationName", station.name},
            {"isTapestry", station.isTapestry},
            {"isShared", station.isShared},
            {"allowRename", station.allowRename},
            {"allowDelete", station.allowDelete},
            {"allowAddMusic", station.allowAddMusic},
            {"artUrl", picture ? pictureAddress(call, *picture) : std::string()},
            {"dateCreated", isoTime(station.createdAt)}};
}

json trackAnswer(Call &call, const Station &station, const IssuedTrack &issued, bool isThumbedUp)
{
    const Track &track = issued.track;
    MusicTokens &tokens = call.service.musicTokens;
    return {{"trackToken", issued.token},
            {"songName", track.song},
            {"artistName", track.artist},
            {"albumName", track.album},
            {"albumYear", track.year},
            {"durationSeconds", track.durationSeconds},
            {"style", track.style},
            {"mood", track.mood},
            {"tempo", track.tempo},
            {"artistToken", tokens.tokenFor(call.account(), MusicKind::Artist, track.artistId, track.artist)},
            {"albumToken", tokens.tokenFor(call.account(), MusicKind::Album, track.albumId, track.album)},
            {"songToken", tokens.tokenFor(call.account(), MusicKind::Track, track.id, track.song)},
            {"stationToken", station.token},
            {"albumArtUrl", track.pictureFile.empty() ? std::string() : pictureAddress(call, pictureName(track))},
            {"audioUrl", audioAddress(call, track.publicId, track.audioType, track.isPlayable, issued.issue().text())},
            {"audioType", track.audioType},
            {"bitrate", track.bitrate},
            {"allowFeedback", station.allowFeedback},
            {"songRating", isThumbedUp ? 1 : 0},
            {"expiresIn", MediaAddresses::lifeSeconds}};
}

Station requiredStation(Call &call)
{
    const std::optional<Station> station =
        call.service.stations.find(call.account(), call.parameters.text("stationToken"));
    if (!station)
        throw ApiError(Code::NoSuchStation, "no such station");
    return *station;
}

IssuedTrack requiredTrack(Call &call)
{
    std::optional<IssuedTrack> track =
        call.service.playlists.findTrack(call.account(), call.parameters.text("trackToken"));
    if (!track)
        throw ApiError(Code::NoSuchMusic, "no such track");
    return *std::move(track);
}

std::pair<IssuedAd, Ad> requiredAd(Call &call)
{
    std::optional<IssuedAd> issued = call.service.playlists.findAd(call.account(), call.parameters.text("adToken"));
    std::optional<Ad> ad = issued ? call.service.catalogue.ad(issued->adId) : std::nullopt;
    if (!ad)
        throw ApiError(Code::NoSuchMusic, "no such ad");
    return {*std::move(issued), *std::move(ad)};
}

Music requiredMusic(Call &call, const std::string &token)
{
    const std::optional<Music> music = call.service.musicTokens.find(call.account(), token);
    if (!music)
        throw ApiError(Code::NoSuchMusic, "no such music");
    return *music;
}

void throwUnlessDone(StationResult result)
{
    switch (result) {
    case StationResult::Done:
        return;
    case StationResult::TooMany:
        throw ApiError(Code::TooManyStations, "the account has 100 stations");
    case StationResult::NoSuchStation:
        throw ApiError(Code::NoSuchStation, "no such station");
    case StationResult::NoSuchMusic:
        throw ApiError(Code::NoSuchMusic, "no such music");
    case StationResult::NotAllowed:
        break;
    }
    throw ApiError(Code::NotAuthorised, "this station does not allow it");
}

} // namespace velmora::server
