// The functions of the interface that concern stations and the search for music.

#include "server/api/answers.h"
#include "server/catalogue/textfolding.h"

#include <algorithm>

namespace velmora::server::functions {

namespace {

// Spaces alone are a name too: the radio lets a listener type them.
bool isStationName(const std::string &text)
{
    const size_t length = characterCount(text);
    const bool hasControls =
        std::any_of(text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c == 0x7f; });
    return length >= 1 && length <= Stations::longestName && !hasControls;
}

} // namespace

json getStationList(Call &call)
{
    const auto order = call.parameters.optionalText("sortField").value_or("dateCreated") == "name"
                           ? Stations::Order::ByName
                           : Stations::Order::ByDate;
    const bool isDescending = call.parameters.optionalText("sortOrder").value_or("desc") != "asc";
    json stations = json::array();
    for (const Station &station : call.service.stations.list(call.account(), order, isDescending))
        stations.push_back(stationAnswer(call, station));
    return {{"stations", std::move(stations)}};
}

json getStationListChecksum(Call &call)
{
    return {{"checksum", call.service.stations.checksum(call.account())}};
}

json getStation(Call &call)
{
    return {{"station", stationAnswer(call, requiredStation(call))}};
}

json getGenreStations(Call &call)
{
    json stations = json::array();
    for (const std::string &style : call.service.catalogue.styles()) {
        const std::optional<std::string> picture = call.service.stations.pictureId(Music{MusicKind::Style, style});
        std::string name = style;
        if (name[0] >= 'a' && name[0] <= 'z')
            name[0] = static_cast<char>(name[0] - 32);
        stations.push_back({{"stationToken", call.service.musicTokens.tokenForStyle(call.account(), style)},
                            {"stationId", "style-" + style},
                            {"stationName", name},
                            {"isTapestry", false},
                            {"isShared", false},
                            {"allowRename", false},
                            {"allowDelete", false},
                            {"allowAddMusic", false},
                            {"artUrl", picture ? pictureAddress(call, *picture) : std::string()},
                            {"dateCreated", isoTime(0)}});
    }
    return {{"stations", std::move(stations)}};
}

json search(Call &call)
{
    const SearchResult found = call.service.search.find(call.parameters.text("text"));
    json tracks = json::array();
    json artists = json::array();
    for (const FoundTrack &track : found.tracks)
        tracks.push_back(
            {{"musicToken", call.service.musicTokens.tokenFor(call.account(), MusicKind::Track, track.id, track.song)},
             {"songName", track.song},
             {"artistName", track.artist}});
    for (const FoundArtist &artist : found.artists)
        artists.push_back({{"musicToken", call.service.musicTokens.tokenFor(call.account(), MusicKind::Artist,
                                                                            artist.id, artist.name)},
                           {"artistName", artist.name}});
    return {{"tracks", std::move(tracks)}, {"artists", std::move(artists)}};
}

json createStation(Call &call)
{
    Music music;
    if (const std::optional<std::string> musicToken = call.parameters.optionalText("musicToken")) {
        music = requiredMusic(call, *musicToken);
        if (music.kind == MusicKind::Album)
            throw ApiError(Code::NoSuchMusic, "a station is made from an artist, a song or a style");
    } else {
        const std::string type = call.parameters.text("musicType");
        if (type != "artist" && type != "song")
            throw ApiError(Code::Malformed, "no such music type");
        const IssuedTrack issued = requiredTrack(call);
        music = type == "artist" ? Music{MusicKind::Artist, std::to_string(issued.track.artistId)}
                                 : Music{MusicKind::Track, std::to_string(issued.track.id)};
    }
    Station station;
    throwUnlessDone(call.service.stations.create(call.account(), music, &station));
    return {{"station", stationAnswer(call, station)}};
}

json deleteStation(Call &call)
{
    throwUnlessDone(call.service.stations.remove(call.account(), call.parameters.text("stationToken")));
    return json::object();
}

json renameStation(Call &call)
{
    const std::string name = call.parameters.text("newName");
    const std::string token = call.parameters.text("stationToken");
    if (!isStationName(name))
        throw ApiError(Code::Malformed, "not a station's name: 1 to 64 characters");
    Station station;
    throwUnlessDone(call.service.stations.rename(call.account(), token, name, &station));
    return {{"station", stationAnswer(call, station)}};
}

json addMusic(Call &call)
{
    const std::string token = call.parameters.text("stationToken");
    const std::string musicToken = call.parameters.text("musicToken");
    requiredStation(call);
    throwUnlessDone(call.service.stations.addMusic(call.account(), token, requiredMusic(call, musicToken)));
    return json::object();
}

json transformSharedStation(Call &call)
{
    Station station;
    throwUnlessDone(call.service.stations.makeOwn(call.account(), call.parameters.text("stationToken"), &station));
    return {{"station", stationAnswer(call, station)}};
}

} // namespace velmora::server::functions
