// No listener reads or changes another's data: every token of one account is tried in a session of another account.

#include "serverfixture.h"

namespace velmora::server {
namespace {

class IsolationTest : public ServerTest {
protected:
    const std::string mira = newListener();
    const std::string tomas = newListener("tomas@example.org");
};

TEST_F(IsolationTest, TokensOfOneAccountAreUnknownToAnother)
{
    const std::string station = addStation(mira, "folk");
    const std::string ownStation = addStation(tomas, "folk");
    json track;
    json ad;
    for (const json &entry : list("getPlaylist", {{"stationToken", station}}, mira, "entries"))
        (entry.at("type") == "track" ? track : ad) = entry.at(entry.at("type"));
    const json ownTrack = firstTrack(tomas, ownStation);
    const json trackOnly = {{"trackToken", track["trackToken"]}};
    const json stationOnly = {{"stationToken", station}};

    struct Case {
        const char *function;
        json parameters; // as Mira sends them
        int code;        // the code that Tomas gets
    };
    const Case cases[] = {
        {"getStation", stationOnly, 5102},
        {"getPlaylist", stationOnly, 5102},
        {"deleteStation", stationOnly, 5102},
        {"renameStation", {{"stationToken", station}, {"newName", "Taken"}}, 5102},
        {"transformSharedStation", stationOnly, 5102},
        {"addMusic", {{"stationToken", station}, {"musicToken", ownTrack["songToken"]}}, 5102},
        {"addMusic", {{"stationToken", ownStation}, {"musicToken", track["songToken"]}}, 5002},
        {"createStation", {{"musicToken", track["songToken"]}}, 5002},
        {"createStation", {{"musicToken", track["artistToken"]}}, 5002},
        {"createStation", {{"trackToken", track["trackToken"]}, {"musicType", "song"}}, 5002},
        {"addFeedback", {{"trackToken", track["trackToken"]}, {"isPositive", false}}, 5002},
        {"sleepSong", trackOnly, 5002},
        {"addSongBookmark", trackOnly, 5002},
        {"addArtistBookmark", trackOnly, 5002},
        {"explainTrack", trackOnly, 5002},
        {"trackEvent", {{"trackToken", track["trackToken"]}, {"eventType", "skip"}}, 5002},
        {"getAdMetadata", {{"adToken", ad["adToken"]}}, 5002},
        {"registerAd", {{"stationToken", ownStation}, {"adToken", ad["adToken"]}}, 5002},
        {"registerAd", {{"stationToken", station}, {"adToken", ad["adToken"]}}, 5102},
    };
    for (const Case &c : cases)
        EXPECT_EQ(call(c.function, c.parameters, tomas).code, c.code) << c.function << c.parameters;
    // Mira's data is unchanged: the same calls, except deletions, still work for her.
    for (const Case &c : cases) {
        if (std::string_view(c.function) == "deleteStation" || std::string_view(c.function) == "transformSharedStation")
            continue;
        json parameters = c.parameters;
        if (parameters.value("stationToken", "") == ownStation)
            parameters["stationToken"] = station;
        if (parameters.contains("musicToken"))
            parameters["musicToken"] = track["songToken"];
        EXPECT_EQ(call(c.function, parameters, mira).code, 0) << c.function;
    }
}

TEST_F(IsolationTest, ThumbsAndSleepsOfOneListenerDoNotChangeWhatAnotherHears)
{
    const std::string miras = addStation(mira, "folk");
    const std::string his = addStation(tomas, "folk");
    std::set<std::string> banned;
    for (int i = 0; i < 3; ++i) {
        const json track = firstTrack(mira, miras);
        data("addFeedback", {{"trackToken", track["trackToken"]}, {"isPositive", false}}, mira);
        data("sleepSong", {{"trackToken", track["trackToken"]}}, mira);
        banned.insert(track.at("songName"));
    }
    std::set<std::string> heard;
    for (int i = 0; i < 40; ++i)
        heard.insert(firstTrack(tomas, his).at("songName"));
    for (const std::string &song : banned)
        EXPECT_TRUE(heard.contains(song)) << song;
}

} // namespace
} // namespace velmora::server
