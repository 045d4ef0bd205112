#include "serverfixture.h"

#include <fstream>

namespace velmora::server {

ServerTest::ServerTest()
{
    start();
    fillCatalogue();
}

void ServerTest::start()
{
    m_dispatcher.reset();
    m_service.reset();
    ServiceSettings settings;
    settings.dataDirectory = m_directory.path() / "data";
    settings.database = m_database.address();
    settings.passwordCost = {1, 8192};
    settings.patience = std::chrono::milliseconds(600);
    settings.clock = [now = m_now] { return now->load(); };
    m_service = std::make_unique<StationService>(settings);
    m_service->addresses.setBase("http://127.0.0.1:7480");
    m_service->mailer = &m_mailer;
    m_dispatcher = std::make_unique<Dispatcher>(*m_service);
}

ServerTest::~ServerTest() = default;

std::vector<Track> ServerTest::smallCatalogue(const std::filesystem::path &mediaDirectory)
{
    const std::array<std::string, 4> styles = {"ambient", "folk", "rock", "swing"};
    const std::array moods = {"calm", "warm", "restless", "bright"};
    std::vector<Track> tracks;
    for (size_t style = 0; style < styles.size(); ++style) {
        for (int artist = 0; artist < 3; ++artist) {
            for (int song = 0; song < 2; ++song) {
                const std::string name = styles[style] + "-" + std::to_string(artist) + std::to_string(song);
                Track track;
                track.publicId = name;
                track.song = "Song " + name;
                track.artist = "Artist " + styles[style] + " " + std::to_string(artist);
                track.album = "Album " + std::to_string(artist);
                track.style = styles[style];
                track.mood = moods[(style + static_cast<size_t>(song)) % moods.size()];
                track.tempo = 60 + 25 * static_cast<int>(style) + artist;
                track.year = 2000 + artist;
                track.durationSeconds = 90;
                track.audioFile = mediaDirectory / (name + ".flac");
                track.audioType = "audio/flac";
                track.bitrate = 600000;
                track.pictureFile = mediaDirectory / (name + ".png");
                track.isPlayable = true;
                tracks.push_back(track);
            }
        }
    }
    return tracks;
}

void ServerTest::fillCatalogue()
{
    const std::filesystem::path media = m_directory.path() / "media";
    std::filesystem::create_directory(media);
    const std::vector<Track> tracks = smallCatalogue(media);
    std::vector<Ad> ads;
    for (const char *id : {"ad-1", "ad-2"})
        ads.push_back(Ad{0, id, "Fresh bread at seven", "Corner Mill Bakery", 8, media / (std::string(id) + ".flac"),
                         "audio/flac", media / (std::string(id) + ".png"), true});
    const auto write = [](const auto &entry) {
        for (const std::filesystem::path &file : {entry.audioFile, entry.pictureFile}) {
            std::ofstream stream(file, std::ios::binary);
            for (int i = 0; i < 1000; ++i)
                stream << entry.publicId << ' ' << i << '\n';
        }
    };
    std::for_each(tracks.begin(), tracks.end(), write);
    std::for_each(ads.begin(), ads.end(), write);
    m_service->catalogue.put(tracks);
    m_service->catalogue.replaceAds(ads);
}

void ServerTest::clearCatalogue()
{
    for (const char *rows : {"track_search", "tracks", "albums", "artist_search", "artists", "ads"})
        m_service->catalogueStore.lock()->run(std::string("DELETE FROM ") + rows);
    m_service->catalogue.noteChange();
}

void ServerTest::setPlayable(const std::string &publicId, bool isPlayable)
{
    m_service->catalogueStore.lock()->run("UPDATE tracks SET is_playable = ?2 WHERE public_id = ?1", publicId,
                                          isPlayable);
    m_service->catalogue.noteChange();
}

Reply ServerTest::call(const std::string &function, const json &parameters, const std::string &token)
{
    const Answer answer =
        m_dispatcher->answer({"v1", function, parameters.dump(), "Bearer " + token, m_requestKey, "192.168.2.7"});
    return {answer.httpStatus, answer.body.at("code").get<int>(), answer.body.value("data", json::object())};
}

json ServerTest::data(const std::string &function, const json &parameters, const std::string &token)
{
    const Reply reply = call(function, parameters, token);
    EXPECT_EQ(reply.code, 0) << function;
    return reply.data;
}

AccountId ServerTest::addAccount(const std::string &userName)
{
    AccountId id = 0;
    EXPECT_EQ(m_service->createAccount(userName, password, {}, &id), CreateResult::Done);
    for (const Station &station : m_service->stations.list(id)) {
        if (!station.isTapestry)
            m_service->stations.remove(id, station.token);
    }
    return id;
}

TestDevice ServerTest::addDevice(const std::string &digits)
{
    TestDevice device;
    device.digits = digits;
    device.partnerToken = data("partnerLogin", {{"deviceKey", device.key}}).value("partnerToken", "");
    return device;
}

Reply ServerTest::tryLogIn(const std::string &userName, const std::string &secret, const TestDevice &device)
{
    return call("userLogin", {{"loginType", "user"}, {"userName", userName}, {"password", secret}},
                device.partnerToken);
}

std::string ServerTest::logIn(const std::string &userName, const TestDevice &device)
{
    return tryLogIn(userName, password, device).data.value("userToken", "");
}

std::string ServerTest::newListener(const std::string &userName)
{
    addAccount(userName);
    return logIn(userName, addDevice());
}

std::string ServerTest::addStation(const std::string &token, const std::string &style)
{
    for (const json &station : list("getGenreStations", json::object(), token, "stations")) {
        if (station.at("stationId") == "style-" + style)
            return data("createStation", {{"musicToken", station.at("stationToken")}}, token)
                .at("station")
                .at("stationToken");
    }
    ADD_FAILURE() << "no such style: " << style;
    return {};
}

json ServerTest::firstTrack(const std::string &userToken, const std::string &stationToken)
{
    for (const json &entry : list("getPlaylist", {{"stationToken", stationToken}}, userToken, "entries")) {
        if (entry.at("type") == "track")
            return entry.at("track");
    }
    ADD_FAILURE() << "no track in the list";
    return {};
}

std::string ServerTest::tapestryToken(const std::string &userToken)
{
    return data("getStationList", json::object(), userToken).at("stations").at(0).at("stationToken");
}

ApiServer &ServerTest::listen(ListenSettings settings)
{
    settings.port = 0;
    settings.logsRequests = false;
    m_server = std::make_unique<ApiServer>(*m_service, std::move(settings));
    m_server->start();
    return *m_server;
}

} // namespace velmora::server
