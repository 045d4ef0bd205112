// Audio and pictures over HTTP: signatures, expiry, ranges, throttling, requests that are too large, stopping in the
// middle.

#include "server/api/mediafiles.h"
#include "serverfixture.h"

#include <fstream>
#include <future>

namespace velmora::server {
namespace {

using namespace std::chrono_literals;

class MediaTest : public ServerTest {
protected:
    httplib::Client client()
    {
        httplib::Client client("127.0.0.1", m_server->port());
        client.set_read_timeout(20s);
        return client;
    }
    httplib::Result get(const std::string &address, const httplib::Headers &headers = {})
    {
        return client().Get(address.c_str(), headers);
    }
    // Path and query of the signed address of a file.
    std::string path(MediaKind kind, const std::string &file)
    {
        return m_service->addresses.address(kind, file, 1).substr(m_service->addresses.base().size());
    }
    std::string content(const std::string &id)
    {
        std::ifstream file(m_directory.path() / "media" / id, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void makeLarge(const std::string &id, size_t bytes)
    {
        std::ofstream(m_directory.path() / "media" / id, std::ios::binary) << std::string(bytes, 'x');
    }
};

TEST_F(MediaTest, AFileComesWholeWithItsLengthTypeAndTag)
{
    listen();
    const auto answer = get(path(MediaKind::Audio, "folk-00.flac"));
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 200);
    EXPECT_EQ(answer->body, content("folk-00.flac"));
    EXPECT_EQ(answer->get_header_value("Content-Length"), std::to_string(answer->body.size()));
    EXPECT_EQ(answer->get_header_value("Content-Type"), "audio/flac");
    EXPECT_EQ(answer->get_header_value("Accept-Ranges"), "bytes");
    const std::string tag = answer->get_header_value("ETag");
    EXPECT_FALSE(tag.empty());
    EXPECT_EQ(get(path(MediaKind::Audio, "folk-00.flac"), {{"If-None-Match", tag}})->status, 304);
    EXPECT_EQ(get(path(MediaKind::Picture, "ad-1.png"))->get_header_value("Content-Type"), "image/png");
}

TEST_F(MediaTest, RangesAreServedByteForByte)
{
    listen();
    const std::string whole = content("folk-00.flac");
    const std::string size = std::to_string(whole.size());
    const std::tuple<std::string, int, size_t, size_t> cases[] = {
        {"bytes=0-0", 206, 0, 1},
        {"bytes=100-199", 206, 100, 100},
        {"bytes=500-", 206, 500, whole.size() - 500},
        {"bytes=500-99999999", 206, 500, whole.size() - 500},
        {"bytes=-10", 206, whole.size() - 10, 10},
        {"bytes=-99999999", 206, 0, whole.size()},
        {"bytes=" + size + "-", 416, 0, 0},
        {"bytes=99999999-", 416, 0, 0},
        {"bytes=-0", 416, 0, 0},
        {"bytes=0-1,5-6", 200, 0, whole.size()},
    };
    for (const auto &[range, status, first, count] : cases) {
        const auto answer = get(path(MediaKind::Audio, "folk-00.flac"), {{"Range", range}});
        ASSERT_TRUE(answer) << range;
        EXPECT_EQ(answer->status, status) << range;
        EXPECT_EQ(answer->body, status == 416 ? "" : whole.substr(first, count)) << range;
        const std::string part = std::to_string(first) + "-" + std::to_string(first + count - 1);
        EXPECT_EQ(answer->get_header_value("Content-Range"),
                  status == 200 ? "" : "bytes " + (status == 206 ? part : "*") + "/" + size);
    }
}

TEST_F(MediaTest, ARangeOfAFileThatHasChangedGivesTheNewFile)
{
    listen();
    const httplib::Headers headers = {{"Range", "bytes=5-"}, {"If-Range", "\"an older tag\""}};
    const auto answer = get(path(MediaKind::Audio, "folk-00.flac"), headers);
    EXPECT_EQ(answer->status, 200);
    EXPECT_EQ(answer->body, content("folk-00.flac"));
}

TEST(RangeTest, OddHeadersGiveTheWholeFile)
{
    for (const char *header : {"", "bytes", "bytes=", "bytes=-", "bytes=a-b", "bytes=9-5", "bytes=1--2", "lines=1-2",
                               "bytes= 1-2", "bytes=99999999999999999999-"}) {
        ByteRange range;
        EXPECT_EQ(parseRange(header, 100, &range), RangeResult::Whole) << header;
    }
}

TEST_F(MediaTest, OnlySignedAddressesInTheirTimeAreServed)
{
    listen();
    const std::string good = path(MediaKind::Audio, "folk-00.flac");
    const auto status = [&](const std::string &address) { return get(address)->status; };
    const auto replaced = [&](const std::string &from, const std::string &to) {
        std::string text = good;
        return text.replace(text.find(from), from.size(), to);
    };
    EXPECT_EQ(status(good), 200);
    EXPECT_EQ(status(replaced("folk-00", "folk-01")), 403);
    EXPECT_EQ(status(replaced("a=1", "a=2")), 403);
    EXPECT_EQ(status(replaced("/audio/", "/art/")), 403);
    EXPECT_EQ(status(replaced("e=1", "e=9")), 403);
    EXPECT_EQ(status("/media/audio/folk-00.flac"), 403);
    EXPECT_EQ(status(good.substr(0, good.size() - 1)), 403);
    EXPECT_EQ(status("/media/video/folk-00.flac"), 404);
    EXPECT_EQ(status(path(MediaKind::Audio, "nothing.flac")), 404);
    std::filesystem::remove(m_directory.path() / "media" / "folk-00.flac");
    EXPECT_EQ(status(good), 404);
    *m_now += MediaAddresses::lifeSeconds - 1;
    EXPECT_EQ(status(replaced("folk-00", "folk-00")), 404) << "still in time";
    *m_now += 1;
    EXPECT_EQ(status(good), 410);
}

TEST_F(MediaTest, NothingOutsideTheCatalogueIsReachedEvenWithASignature)
{
    listen();
    for (const char *file :
         {"..", "../data/velmora.db", "%2e%2e%2fdata%2fvelmora.db", "velmora.db", ".flac", "folk-00%00.flac"})
        EXPECT_EQ(get(path(MediaKind::Audio, file))->status / 100, 4) << file;
    for (const char *file : {"../x.flac", "a/b.flac", "a b.flac", "a%00.flac", "\xc3\xa4.flac", ".flac", "flac"})
        EXPECT_FALSE(publicIdOf(file)) << file;
    EXPECT_EQ(publicIdOf("track-1_b.flac"), "track-1_b");
}

TEST_F(MediaTest, TheHostOfAddressesIsTheServersOwnOrTheConfiguredNeverTheRequests)
{
    listen();
    const std::string user = newListener();
    EXPECT_TRUE(firstTrack(user, tapestryToken(user))
                    .at("audioUrl")
                    .get<std::string>()
                    .starts_with("http://127.0.0.1:" + std::to_string(m_server->port()) + "/media/audio/"));
    ListenSettings settings;
    settings.publicUrl = "https://radio.example.org";
    listen(settings);
    httplib::Headers headers = {{"Authorization", "Bearer " + user}, {"Host", "evil.example.org"}};
    const auto answer = client().Post("/v1/getPlaylist", headers, json{{"stationToken", tapestryToken(user)}}.dump(),
                                      "application/json");
    EXPECT_NE(answer->body.find("https://radio.example.org/media/audio/"), std::string::npos);
    EXPECT_EQ(answer->body.find("evil"), std::string::npos);
}

TEST_F(MediaTest, HealthCountsWhatCanBePlayed)
{
    setPlayable("folk-00", false);
    listen();
    EXPECT_EQ(json::parse(get("/health")->body),
              (json{{"code", 0}, {"data", {{"status", "ready"}, {"tracks", 23}, {"total", 24}}}}));
}

TEST_F(MediaTest, RequestsThatAreTooLargeOrOddAreRefusedAndTheConnectionGoesOn)
{
    listen();
    httplib::Client connection = client();
    connection.set_keep_alive(true);
    const auto code = [](const httplib::Result &answer) { return json::parse(answer->body).at("code").get<int>(); };
    for (const size_t bytes : {size_t(65 * 1024), size_t(3 * 1024 * 1024), size_t(8 * 1024 * 1024)}) {
        const auto answer = connection.Post("/v1/partnerLogin", std::string(bytes, 'x'), "application/json");
        ASSERT_TRUE(answer) << bytes;
        EXPECT_EQ(answer->status, 413) << bytes;
        EXPECT_EQ(code(answer), 5001);
    }
    EXPECT_EQ(code(connection.Post("/v1/partnerLogin", "{", "application/json")), 5001);
    EXPECT_EQ(code(connection.Post("/v7/partnerLogin", "{}", "application/json")), 5003);
    EXPECT_EQ(code(connection.Post("/v1/nothing", "{}", "application/json")), 5005);
    EXPECT_EQ(connection.Get("/v1/partnerLogin")->status, 404);
    EXPECT_EQ(connection.Get(("/" + std::string(5000, 'a')).c_str())->status, 404);
    const json key = {{"deviceKey", randomToken()}};
    EXPECT_EQ(code(connection.Post("/v1/partnerLogin", key.dump(), "application/json")), 0);
}

TEST_F(MediaTest, AThrottledStreamTakesItsTime)
{
    makeLarge("folk-00.flac", 50'000);
    ListenSettings settings;
    settings.throttleBytesPerSecond = 50'000;
    listen(settings);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(get(path(MediaKind::Audio, "folk-00.flac"))->body.size(), 50'000u);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 850ms);
}

TEST_F(MediaTest, StoppingEndsAStreamThatNobodyReadsAndIdleConnections)
{
    makeLarge("folk-00.flac", 64 * 1024 * 1024);
    listen();
    httplib::Client idle = client();
    idle.set_keep_alive(true);
    ASSERT_TRUE(idle.Get("/health"));
    std::promise<void> begun;
    std::promise<void> mayGoOn;
    std::thread listener([&] {
        bool isFirst = true;
        client().Get(path(MediaKind::Audio, "folk-00.flac").c_str(), [&](const char *, size_t) {
            if (std::exchange(isFirst, false)) {
                begun.set_value();
                mayGoOn.get_future().wait(); // as a paused radio does
            }
            return true;
        });
    });
    begun.get_future().wait();
    const auto start = std::chrono::steady_clock::now();
    m_server->stop();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 1s);
    mayGoOn.set_value();
    listener.join();
}

} // namespace
} // namespace velmora::server
