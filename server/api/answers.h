#pragma once

#include "server/api/routes.h"

namespace velmora::server {

// The records of the interface, as docs/server-api.md describes them.
nlohmann::json stationAnswer(Call &call, const Station &station);
nlohmann::json trackAnswer(Call &call, const Station &station, const IssuedTrack &issued, bool isThumbedUp);
// Empty when there is no picture.
// Of a picture by its name, as pictureName() makes it.
std::string pictureAddress(const Call &call, const std::string &name);
// Null when there is no usable file. With an issue, the first request for the address counts as its start.
nlohmann::json audioAddress(const Call &call, const std::string &publicId, const std::string &mediaType,
                            bool isPlayable, const std::string &issue = {});

// Throw ApiError when there is no such thing for this account.
Station requiredStation(Call &call);            // the parameter `stationToken`
IssuedTrack requiredTrack(Call &call);          // `trackToken`
std::pair<IssuedAd, Ad> requiredAd(Call &call); // `adToken`
Music requiredMusic(Call &call, const std::string &token);
void throwUnlessDone(StationResult result);

} // namespace velmora::server
