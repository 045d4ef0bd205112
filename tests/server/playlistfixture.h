#pragma once

#include "serverfixture.h"

namespace velmora::server {

// Lists as a radio asks for them.
class PlaylistTest : public ServerTest {
protected:
    // The track names of so many lists, in order.
    std::vector<json> tracks(const std::string &user, const std::string &station, int lists)
    {
        std::vector<json> all;
        for (int i = 0; i < lists; ++i) {
            for (const json &entry : list("getPlaylist", {{"stationToken", station}}, user, "entries")) {
                if (entry.at("type") == "track")
                    all.push_back(entry.at("track"));
            }
        }
        return all;
    }
    // Whether the song occurs in forty lists.
    bool isHeard(const std::string &user, const std::string &station, const json &song)
    {
        const std::vector<json> heard = tracks(user, station, 40);
        return std::any_of(heard.begin(), heard.end(),
                           [&](const json &t) { return t["songName"] == song["songName"]; });
    }
};

} // namespace velmora::server
