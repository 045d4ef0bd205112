// The HTTP server alone, byte by byte: malformed requests, limits, time limits, pipelining, ranges, TLS, shutdown.

#include "httpclient.h"
#include "server/http/conditions.h"
#include "server/http/peers.h"
#include "server/http/requestparser.h"
#include "server/http/server.h"
#include "server/http/workerpool.h"
#include "temporarydirectory.h"

#include <fcntl.h>
#include <fstream>
#include <future>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace velmora::server {
namespace {

using namespace http;

using namespace std::chrono_literals;

class HttpTest : public testing::Test {
protected:
    HttpTest()
    {
        m_settings.refusal = [](int status, const Request &) {
            Response response;
            response.status = status;
            response.setContent("refused " + std::to_string(status), "text/plain");
            return response;
        };
        std::string numbers;
        for (int i = 0; numbers.size() < 300'000; ++i)
            numbers += std::to_string(i) + " ";
        std::ofstream(m_file, std::ios::binary) << numbers;
        m_content = numbers;
    }

    void start()
    {
        Router router;
        router.get("/text", [](const Request &) { return textResponse("hello"); });
        router.get(
            "/file", [this](const Request &) { return fileResponse(); }, Lane::Files);
        router.get("/address", [](const Request &request) { return textResponse(request.address); });
        router.get("/wait", [this](const Request &) {
            ++m_waiting;
            m_release.wait();
            return textResponse("waited");
        });
        router.get("/news", [this](const Request &request) {
            const std::lock_guard guard(m_newsMutex);
            if (m_hasNews || request.isWaitOver)
                return textResponse(m_hasNews ? "news" : "none");
            const auto wait = std::make_shared<Wait>();
            m_waits.push_back(wait);
            return Response::answeredAfter(wait, m_newsTime);
        });
        router.get("/broken", [](const Request &) -> Response { throw std::runtime_error("on purpose"); });
        router.post("/echo/*", 1000, [](const Request &request) {
            return textResponse(request.pieces[0] + ":" + request.parameter("a b") + ":" + request.body +
                                std::string(request.header("Late")));
        });
        m_server = std::make_unique<Server>(m_settings, std::move(router));
        m_port = m_server->bind();
        m_server->start();
    }
    static Response textResponse(std::string text)
    {
        Response response;
        response.setContent(std::move(text), "text/plain");
        return response;
    }
    Response fileResponse() const
    {
        Response response;
        response.setFile(File::open(m_file), "audio/flac");
        return response;
    }
    // Waits until the handler of /wait holds so many requests.
    void untilWaiting(int count) const
    {
        while (m_waiting < count)
            std::this_thread::yield();
    }
    void makeCertificate()
    {
        m_settings.tlsCertificate = m_directory.path() / "cert.pem";
        m_settings.tlsKey = m_directory.path() / "key.pem";
        const std::string command = "openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj /CN=radio -keyout " +
                                    m_settings.tlsKey.string() + " -out " + m_settings.tlsCertificate.string() +
                                    " 2>/dev/null";
        ASSERT_EQ(std::system(command.c_str()), 0);
    }

    static constexpr const char *get = "GET /text HTTP/1.1\r\nHost: radio\r\n\r\n";

    const TemporaryDirectory m_directory;
    const std::filesystem::path m_file = m_directory.path() / "file";
    std::string m_content; // of the file
    ServerSettings m_settings;
    std::promise<void> m_mayGoOn;
    std::shared_future<void> m_release = m_mayGoOn.get_future().share();
    std::atomic<int> m_waiting{0};
    std::mutex m_newsMutex; // guards the three below
    bool m_hasNews = false;
    std::vector<std::weak_ptr<Wait>> m_waits; // of /news, in the order of the requests
    std::chrono::milliseconds m_newsTime = 60s;
    std::unique_ptr<Server> m_server;
    int m_port = 0;
};

TEST_F(HttpTest, AMalformedRequestGetsItsStatusAndEndsTheConnection)
{
    start();
    const std::string host = "Host: radio\r\n";
    const std::string manyHeaders = [] {
        std::string lines;
        for (int i = 0; i < 70; ++i)
            lines += "X-" + std::to_string(i) + ": 1\r\n";
        return lines;
    }();
    const std::string post = "POST /echo/x HTTP/1.1\r\n" + host;
    const std::pair<std::string, int> cases[] = {
        {"GET /text\r\n\r\n", 400},
        {"nonsense\r\n\r\n", 400},
        {std::string("\x16\x03\x01\x02\x00\x01\xfc", 7) + "\r\n\r\n", 400},
        {"GET /text HTTP/1.1\r\n\r\n", 400}, // no host
        {"GET /text HTTP/1.1\r\n" + host + host + "\r\n", 400},
        {"GET /te%00xt HTTP/1.1\r\n" + host + "\r\n", 400},
        {"GET text HTTP/1.1\r\n" + host + "\r\n", 400},
        {"GET /text HTTP/1.1\r\nno colon\r\n\r\n", 400},
        {"GET /text HTTP/1.1\r\n" + host + "Name : x\r\n\r\n", 400},
        {"GET /text HTTP/3.0\r\n" + host + "\r\n", 505},
        {"BREW /text HTTP/1.1\r\n" + host + "\r\n", 501},
        {"GET /" + std::string(5000, 'a') + " HTTP/1.1\r\n" + host + "\r\n", 414},
        {"GET /" + std::string(100'000, 'a'), 414},
        {"GET /text HTTP/1.1\r\n" + host + "X: " + std::string(100'000, 'a'), 431},
        {"GET /text HTTP/1.1\r\n" + host + manyHeaders + "\r\n", 431},
        {post + "Content-Length: 1001\r\n\r\n", 413},
        {post + "Content-Length: 99999999999999999999\r\n\r\n", 400},
        {post + "Content-Length: -1\r\n\r\n", 400},
        {post + "Content-Length: 1\r\nContent-Length: 1\r\n\r\nx", 400},
        {post + "Content-Length: 1\r\nTransfer-Encoding: chunked\r\n\r\n1\r\nx\r\n0\r\n\r\n", 400},
        {post + "Transfer-Encoding: gzip\r\n\r\n", 501},
        {post + "Transfer-Encoding: gzip, chunked\r\n\r\n0\r\n\r\n", 501},
        {post + "Transfer-Encoding: chunked\r\n\r\n3E9\r\n", 413},
        {post + "Transfer-Encoding: chunked\r\n\r\n3E0\r\n" + std::string(992, 'x') + "\r\n3E0\r\n" +
             std::string(992, 'x'),
         413},
        {post + "Transfer-Encoding: chunked\r\n\r\nx\r\n", 400},
        {post + "Transfer-Encoding: chunked\r\n\r\n1;" + std::string(100'000, 'a'), 400},
        {post + "Content-Encoding: br\r\nContent-Length: 1\r\n\r\nx", 415},
        {post + "Expect: miracles\r\nContent-Length: 1\r\n\r\nx", 417},
        {"GET /text HTTP/1.1\r\n" + host + "Content-Length: 5\r\n\r\n12345", 413},
        // An unread body is never parsed as the next request.
        {"POST /nothing HTTP/1.1\r\n" + host + "Transfer-Encoding: chunked\r\n\r\n" + get, 404},
        {"POST /nothing HTTP/1.1\r\n" + host + "Content-Length: 50\r\n\r\n" + get, 404},
        {"GET /text HTTP/1.1\r\n" + host + "Connection: close\r\n\r\n" + get, 200},
        {"GET /text HTTP/1.0\r\n\r\n" + std::string(get), 200},
    };
    for (const auto &[bytes, status] : cases) {
        HttpClient client(m_port);
        client.send(bytes);
        const HttpAnswer answer = client.receive();
        EXPECT_EQ(answer.status, status) << bytes.substr(0, 80);
        EXPECT_EQ(answer.header("Connection"), "close") << bytes.substr(0, 80);
        EXPECT_EQ(client.rest(), "") << bytes.substr(0, 80);
    }
}

TEST_F(HttpTest, ATrailerMayArriveByteByByte)
{
    const Limits limits;
    RequestParser parser(limits);
    const std::string request =
        "POST / HTTP/1.1\r\nHost: radio\r\nTransfer-Encoding: chunked\r\n\r\n0\r\nLate: x\r\n\r\n";
    std::string input;
    auto state = RequestParser::State::NeedsMore;
    for (const char byte : request) {
        EXPECT_NE(state, RequestParser::State::Done);
        input += byte;
        state = parser.take(input);
    }
    EXPECT_EQ(state, RequestParser::State::Done);
    EXPECT_EQ(parser.request().body, "");
}

TEST_F(HttpTest, RequestsThatArriveTogetherOrByteByByteAreAnsweredInTheirOrder)
{
    start();
    const std::string requests =
        std::string(get) + "\r\n" + // an empty line between requests is tolerated
        "HEAD /text HTTP/1.1\r\nhOST: radio\r\n\r\n" + "GET /nothing HTTP/1.1\r\nHost: radio\r\n\r\n" +
        "GET /broken HTTP/1.1\r\nHost: radio\r\n\r\n" +
        "POST /echo/%41 HTTP/1.1\r\nHost: radio\r\nContent-Length: 12\r\n\r\na+b=%31&c=%2" +
        "POST http://radio/echo/x?a+b=query HTTP/1.1\r\nHost: radio\r\nTransfer-Encoding: "
        "chunked\r\n\r\n4;x=y\r\na+b=\r\n1\r\n7\r\n0\r\nLate: x\r\n\r\n" +
        "GET /file HTTP/1.1\r\nHost: radio\r\n\r\n" + "GET /text HTTP/1.0\r\nConnection: keep-alive\r\n\r\n" + get;
    for (const size_t atOnce : {requests.size(), size_t(1)}) {
        HttpClient client(m_port);
        for (size_t at = 0; at < requests.size(); at += atOnce)
            ASSERT_TRUE(client.send(std::string_view(requests).substr(at, atOnce)));
        EXPECT_EQ(client.receive().body, "hello");
        const HttpAnswer head = client.receive(true);
        EXPECT_EQ(head.header("Content-Length"), "5");
        EXPECT_EQ(client.receive().status, 404);
        EXPECT_EQ(client.receive().status, 500);
        EXPECT_EQ(client.receive().body, "A:1:a+b=%31&c=%2");
        EXPECT_EQ(client.receive().body, "x:7:a+b=7");
        EXPECT_EQ(client.receive().body, m_content);
        EXPECT_EQ(client.receive().body, "hello");
        EXPECT_EQ(client.receive().body, "hello");
        client.finishSending();
        EXPECT_EQ(client.rest(), "");
    }
}

TEST_F(HttpTest, TheServerSays100ContinueOnlyWhenItWillReadTheBody)
{
    start();
    const std::string post = "POST /echo/x HTTP/1.1\r\nHost: radio\r\nExpect: 100-continue\r\nContent-Length: ";
    HttpClient client(m_port);
    client.send(post + "3\r\n\r\n");
    EXPECT_EQ(client.receive().status, 100);
    client.send("a=1" + post + "1001\r\n\r\n");
    EXPECT_EQ(client.receive().body, "x::a=1");
    EXPECT_EQ(client.receive().status, 413);
    EXPECT_EQ(client.rest(), "");
}

TEST_F(HttpTest, RangesAndConditionsFollowTheStandard)
{
    start();
    // Not in memory: a worker reads ahead before anything is sent.
    const int fd = ::open(m_file.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_TRUE(::fsync(fd) == 0 && ::posix_fadvise(fd, 0, 0, POSIX_FADV_DONTNEED) == 0 && ::close(fd) == 0);
    const HttpAnswer whole = httpGet(m_port, "/file");
    EXPECT_EQ(whole.body, m_content);
    EXPECT_EQ(whole.header("Accept-Ranges"), "bytes");
    const std::string etag = whole.header("ETag");
    const std::string modified = whole.header("Last-Modified");
    const std::string size = std::to_string(m_content.size());
    const size_t bytes = m_content.size();
    const std::string old = "Sun, 06 Nov 1994 08:49:37 GMT";
    const auto range = [](const char *text) { return Headers{{"Range", text}}; };
    const std::tuple<Headers, int, size_t, size_t> cases[] = {
        {{}, 200, 0, bytes},
        {range("bytes=0-0"), 206, 0, 1},
        {range("bytes=100-199"), 206, 100, 100},
        {range("bytes=500-"), 206, 500, bytes - 500},
        {range("bytes=500-99999999"), 206, 500, bytes - 500},
        {range("bytes=-10"), 206, bytes - 10, 10},
        {range("bytes=-99999999"), 206, 0, bytes},
        {{{"Range", "bytes=" + size + "-"}}, 416, 0, 0},
        {range("bytes=-0"), 416, 0, 0},
        {range("bytes=0-1,5-6"), 200, 0, bytes},
        {range("bytes=9-5"), 200, 0, bytes},
        {range("bytes=a-b"), 200, 0, bytes},
        {range("bytes= 1-2"), 200, 0, bytes},
        {range("bytes=99999999999999999999-"), 200, 0, bytes},
        {range("lines=1-2"), 200, 0, bytes},
        {{{"If-Range", etag}, {"Range", "bytes=1-1"}}, 206, 1, 1},
        {{{"If-Range", modified}, {"Range", "bytes=1-1"}}, 206, 1, 1},
        {{{"If-Range", "\"an older tag\""}, {"Range", "bytes=1-1"}}, 200, 0, bytes},
        {{{"If-None-Match", "\"x\", W/" + etag}}, 304, 0, 0},
        {{{"If-None-Match", "*"}, {"Range", "bytes=1-1"}}, 304, 0, 0},
        {{{"If-None-Match", "\"x\""}, {"If-Modified-Since", modified}}, 200, 0, bytes},
        {{{"If-Modified-Since", modified}}, 304, 0, 0},
        {{{"If-Modified-Since", old}}, 200, 0, bytes},
        {{{"If-Modified-Since", "yesterday"}}, 200, 0, bytes},
    };
    for (const auto &[headers, status, first, count] : cases) {
        const std::string name = headers.empty() ? "" : headers.back().first + ": " + headers.back().second;
        const HttpAnswer answer = httpGet(m_port, "/file", headers);
        EXPECT_EQ(answer.status, status) << name;
        EXPECT_EQ(answer.body, m_content.substr(first, count)) << name;
        const std::string part = std::to_string(first) + "-" + std::to_string(first + count - 1);
        EXPECT_EQ(answer.header("Content-Range"), status == 206   ? "bytes " + part + "/" + size
                                                  : status == 416 ? "bytes */" + size
                                                                  : "")
            << name;
    }
    std::ofstream(m_file, std::ios::binary) << "new content";
    EXPECT_EQ(httpGet(m_port, "/file", {{"If-None-Match", etag}}).body, "new content");
}

TEST_F(HttpTest, WhoeverIsTooSlowIsCutOff)
{
    m_settings.limits.headerTime = m_settings.limits.bodyTime = m_settings.limits.idleTime = 300ms;
    m_settings.limits.streamTime = m_settings.limits.lingerTime = 300ms;
    std::filesystem::resize_file(m_file, 64 * 1024 * 1024);
    start();
    const std::string begin = "POST /echo/x HTTP/1.1\r\nHost: radio\r\n";
    // Sent at first; then sent repeatedly; the status of the answer, 0 for none.
    const std::tuple<std::string, std::string, int> cases[] = {
        {"", "", 0},
        {begin + "X: ", "a", 408},
        {begin + "Content-Length: 900\r\n\r\n", "a", 408},
        {begin + "Transfer-Encoding: chunked\r\n\r\n", "1\r\na\r\n", 408},
        {begin + "Content-Length: 9000\r\n\r\n", "a", 413},
        {std::string(get), "", 200},
    };
    for (const auto &[first, drip, status] : cases) {
        HttpClient client(m_port);
        client.send(first);
        while (!drip.empty() && client.send(drip))
            std::this_thread::sleep_for(10ms);
        EXPECT_EQ(client.receive().status, status) << first;
        EXPECT_TRUE(client.rest()) << first;
    }
    // A stream that is read slowly: once the socket's buffers are full, the server ends it.
    HttpClient reader(m_port);
    reader.send("GET /file HTTP/1.1\r\nHost: radio\r\n\r\n");
    size_t got = 0;
    for (size_t part = reader.read(400); part > 0; part = reader.read(400)) {
        got += part;
        std::this_thread::sleep_for(5ms);
    }
    EXPECT_LT(got, 64u * 1024 * 1024);
}

TEST_F(HttpTest, ConnectionsAreCountedByAddressAndTheLongestSilentOneMakesRoom)
{
    m_settings.limits.connections = 4;
    m_settings.limits.connectionsOfAddress = 2;
    m_settings.trustedProxies = {"127.0.0.9"};
    start();
    const auto works = [](HttpClient &client) { return client.send(get) && client.receive().status == 200; };
    HttpClient first(m_port, "127.0.0.1");
    HttpClient second(m_port, "127.0.0.1");
    EXPECT_TRUE(works(first) && works(second));
    HttpClient third(m_port, "127.0.0.1");
    EXPECT_FALSE(works(third)) << "the third of one address";
    HttpClient other(m_port, "127.0.0.2");
    EXPECT_TRUE(works(other) && works(first));
    std::vector<std::unique_ptr<HttpClient>> proxied;
    for (int i = 0; i < 3; ++i) {
        proxied.push_back(std::make_unique<HttpClient>(m_port, "127.0.0.9"));
        EXPECT_TRUE(works(*proxied.back())) << "a trusted proxy has as many as it likes";
    }
    EXPECT_FALSE(works(second)) << "it had waited longest";
    EXPECT_FALSE(works(other)) << "then this one";
    EXPECT_TRUE(works(first));
}

TEST_F(HttpTest, ProgramsThatTheServerStartsInheritNoSocket)
{
    start();
    HttpClient client(m_port);
    client.send(get);
    EXPECT_EQ(client.receive().status, 200);
    int sockets = 0;
    for (int fd = 3; fd < 100; ++fd) {
        int type = 0;
        socklen_t size = sizeof type;
        if (::getsockopt(fd, SOL_SOCKET, SO_TYPE, &type, &size) != 0)
            continue;
        ++sockets;
        EXPECT_EQ(::fcntl(fd, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC) << fd;
    }
    EXPECT_GE(sockets, 3) << "the listener and both ends of the connection";
}

TEST_F(HttpTest, TheCallerIsTheLastAddressThatATrustedProxyAdded)
{
    const TrustedProxies proxies({"10.0.0.1", "2001:DB8:0::1"});
    const std::tuple<const char *, const char *, const char *> cases[] = {
        {"192.0.2.7", "198.51.100.1", "192.0.2.7"}, // an untrusted peer's header is ignored
        {"10.0.0.1", "", "10.0.0.1"},
        {"10.0.0.1", "198.51.100.1", "198.51.100.1"},
        {"10.0.0.1", "1.1.1.1, 198.51.100.1", "198.51.100.1"},
        {"10.0.0.1", "198.51.100.1 , 2001:db8::1", "198.51.100.1"},
        {"10.0.0.1", "198.51.100.1:4711", "198.51.100.1"},
        {"2001:db8::1", "[2001:DB8::0:2]:80", "2001:db8::2"},
        {"10.0.0.1", "::ffff:198.51.100.1", "198.51.100.1"},
        {"10.0.0.1", "198.51.100.1, unknown", "10.0.0.1"},
        {"10.0.0.1", ",,", "10.0.0.1"},
        {"10.0.0.1", "10.0.0.1", "10.0.0.1"},
    };
    for (const auto &[peer, forwarded, caller] : cases)
        EXPECT_EQ(proxies.callerBehind(peer, forwarded), caller) << peer << " " << forwarded;
    EXPECT_EQ(networkOf("2001:db8:1:2:3::4"), "2001:db8:1:2::");
    m_settings.trustedProxies = {"127.0.0.1"};
    start();
    const Headers forwarded = {{"X-Forwarded-For", "1.1.1.1"}, {"x-forwarded-for", "198.51.100.1"}};
    EXPECT_EQ(httpGet(m_port, "/address", forwarded).body, "198.51.100.1");
}

TEST(WorkerPoolTest, CallersTakeTurnsAndOnesQueueIsBounded)
{
    std::promise<void> mayGoOn;
    std::string order; // written by the pool's only thread
    std::atomic<bool> isDone{false};
    {
        WorkerPool pool(1, 6, 3);
        std::promise<void> hasBegun;
        using enum WorkerPool::Added;
        ASSERT_EQ(pool.add("x",
                           [&] {
                               hasBegun.set_value();
                               mayGoOn.get_future().wait();
                           }),
                  Yes);
        hasBegun.get_future().wait();
        const auto add = [&](const char *caller) {
            return pool.add(caller, [&, caller] {
                order += caller;
                isDone = order.size() == 6;
            });
        };
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(add("a"), Yes);
        EXPECT_EQ(add("a"), OfCallerTooMany);
        EXPECT_EQ(add("b"), Yes);
        EXPECT_EQ(add("b"), Yes);
        EXPECT_EQ(add("c"), Yes);
        EXPECT_EQ(add("d"), TooMany);
        mayGoOn.set_value();
        while (!isDone)
            std::this_thread::yield();
    }
    EXPECT_EQ(order, "abcaba");
}

TEST_F(HttpTest, AFullQueueRefusesRequestsAndAnEndWaitsOnlyForAnswers)
{
    m_settings.limits.workers = m_settings.limits.queued = 1;
    std::filesystem::resize_file(m_file, 64 * 1024 * 1024);
    start();
    const std::string wait = "GET /wait HTTP/1.1\r\nHost: radio\r\n\r\n";
    HttpClient answered(m_port);
    answered.send(wait);
    untilWaiting(1);
    HttpClient queued(m_port);
    queued.send(wait);
    HttpClient refused(m_port);
    while (refused.send(get) && refused.receive().status != 503) {
    }
    HttpClient stream(m_port);
    stream.send("GET /file HTTP/1.1\r\nHost: radio\r\n\r\n");
    EXPECT_GT(stream.read(1), 0u);
    std::thread end([this] { m_server->stop(); });
    EXPECT_EQ(refused.rest(), "") << "idle";
    EXPECT_LT(stream.rest()->size(), 64u * 1024 * 1024) << "it cannot be mistaken for the whole file";
    m_mayGoOn.set_value();
    EXPECT_EQ(answered.receive().body, "waited");
    EXPECT_EQ(queued.receive().header("Connection"), "close");
    EXPECT_EQ(answered.rest(), "");
    end.join();
    EXPECT_THROW(HttpClient{m_port}, std::runtime_error);
}

TEST_F(HttpTest, AnswersThatAwaitNewsTakeNoThreadAndEndWithTheirCallersAndTheServer)
{
    m_settings.limits.workers = 1;
    start();
    const std::string ask = "GET /news HTTP/1.1\r\nHost: a\r\n\r\n";
    const auto untilAsked = [this](size_t count) {
        for (size_t asked = 0; asked < count;) {
            const std::lock_guard guard(m_newsMutex);
            asked = m_waits.size();
        }
    };
    std::vector<std::unique_ptr<HttpClient>> clients;
    for (int i = 0; i < 20; ++i) {
        clients.push_back(std::make_unique<HttpClient>(m_port));
        clients.back()->send(ask + (i == 0 ? "GET /text HTTP/1.1\r\nHost: a\r\n\r\n" : ""));
    }
    untilAsked(20);
    EXPECT_EQ(httpGet(m_port, "/text").body, "hello") << "the only thread is free";
    clients[1].reset();
    const auto isKept = [](const std::weak_ptr<Wait> &wait) { return !wait.expired(); };
    while (std::count_if(m_waits.begin(), m_waits.end(), isKept) > 19) // a caller that has gone is noticed
        std::this_thread::yield();
    {
        const std::lock_guard guard(m_newsMutex);
        m_hasNews = true;
    }
    for (const auto &kept : m_waits) {
        if (const auto wait = kept.lock()) {
            wait->wake();
            wait->wake();
        }
    }
    for (const auto &client : clients) {
        if (client) {
            EXPECT_EQ(client->receive().body, "news");
        }
    }
    EXPECT_EQ(clients[0]->receive().body, "hello") << "what came behind it";
    m_hasNews = false;
    m_waits.clear();
    m_newsTime = 50ms;
    EXPECT_EQ(httpGet(m_port, "/news").body, "none") << "the time was up";
    m_newsTime = 60s;
    m_waits.clear();
    HttpClient last(m_port);
    last.send(ask);
    untilAsked(1);
    const auto late = m_waits[0].lock();
    m_server.reset();
    EXPECT_EQ(last.receive().status, 0);
    if (late)
        late->wake(); // to nobody
}

TEST_F(HttpTest, AnAnswerThatIsNotReadyInTimeIsNotWaitedForAtTheEnd)
{
    m_settings.limits.endTime = 50ms;
    start();
    HttpClient client(m_port);
    client.send("GET /wait HTTP/1.1\r\nHost: radio\r\n\r\n");
    untilWaiting(1);
    std::thread end([this] { m_server->stop(); });
    EXPECT_EQ(client.receive().status, 0);
    m_mayGoOn.set_value();
    end.join();
}

TEST_F(HttpTest, OnlyTlsWithForwardSecrecyIsSpoken)
{
    makeCertificate();
    m_settings.sendsHsts = true;
    m_settings.unencrypted = {"127.0.0.2"};
    start();
    for (const auto &[tls, version] :
         {std::pair(HttpClient::Tls::Newest, "TLSv1.3"), std::pair(HttpClient::Tls::Version12, "TLSv1.2")}) {
        HttpClient client(m_port, {}, tls);
        ASSERT_TRUE(client.isEncrypted()) << version;
        EXPECT_EQ(client.tlsVersion(), version);
        EXPECT_TRUE(client.cipher().starts_with("TLS_") || client.cipher().starts_with("ECDHE-")) << client.cipher();
        client.send(get + std::string("GET /file HTTP/1.1\r\nHost: radio\r\nRange: bytes=7-\r\n\r\n"));
        EXPECT_TRUE(client.receive().header("Strict-Transport-Security").starts_with("max-age="));
        EXPECT_EQ(client.receive().body, m_content.substr(7));
    }
    for (const HttpClient::Tls tls : {HttpClient::Tls::Version11, HttpClient::Tls::WithoutForwardSecrecy})
        EXPECT_FALSE(HttpClient(m_port, {}, tls).isEncrypted());
    for (const auto &[caller, status] : {std::pair("127.0.0.2", 200), std::pair("127.0.0.3", 0)}) {
        HttpClient plain(m_port, caller);
        plain.send(get);
        const HttpAnswer answer = plain.receive();
        EXPECT_EQ(answer.status, status) << caller;
        EXPECT_EQ(answer.header("Strict-Transport-Security"), "");
        EXPECT_TRUE(HttpClient(m_port, caller, HttpClient::Tls::Newest).isEncrypted()) << caller;
    }
    m_settings.tlsKey = m_settings.tlsCertificate;
    EXPECT_THROW(start(), std::runtime_error);
}

} // namespace
} // namespace velmora::server
