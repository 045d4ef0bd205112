// How many connections the service bears: slow streams and idle connections at once, while one radio asks for
// playlists; callers who send or read too slowly. The server is a process of its own, on its usual limits.
#include "bench/figures.h"
#include "bench/serviceprogram.h"

#include <atomic>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <sys/resource.h>
#include <thread>

using namespace bench;
using nlohmann::json;
using velmora::server::HttpClient;
using SteadyClock = std::chrono::steady_clock;
using namespace std::chrono_literals;

namespace {

constexpr size_t streamCount = 2000;
constexpr size_t idleCount = 10'000;
constexpr size_t connectionsOfAddress = 200; // the server allows a few more
constexpr int playlistCount = 400;
constexpr size_t bytesOfTurn = 4096; // a stream reads them four times a second: 128 kbit/s
constexpr auto turn = 250ms;

// Radios come from many addresses: one alone may not have so many connections.
std::string addressOf(size_t number)
{
    const size_t address = number / connectionsOfAddress;
    return "127.0." + std::to_string(1 + address / 200) + "." + std::to_string(1 + address % 200);
}

// Sends a byte every tenth of a second until the connection ends; how many seconds it took. Throws when it has not
// ended after `most`.
double secondsOfDrip(int port, const std::string &begin, double most)
{
    HttpClient client(port, "127.0.9.1");
    client.send(begin);
    const auto start = SteadyClock::now();
    while (since(start) < most) {
        if (!client.send("a") || client.isOver())
            return since(start);
        std::this_thread::sleep_for(100ms);
    }
    throw std::runtime_error("a request sent byte by byte was not ended");
}

// Whether the server still has a connection with this address, as /proc/net/tcp writes it. The caller cannot tell: what
// the kernels hold of the stream can be read long after the server has ended it. A socket that its process has closed
// has no inode.
bool isHeld(const std::string &addressInHex)
{
    std::ifstream sockets("/proc/net/tcp");
    for (std::string line; std::getline(sockets, line);) {
        std::istringstream fields(line);
        std::string slot, local, remote, state, queues, timer, retransmits, user, timeout;
        uint64_t inode = 0;
        if (fields >> slot >> local >> remote >> state >> queues >> timer >> retransmits >> user >> timeout >> inode &&
            remote.starts_with(addressInHex + ":") && inode != 0)
            return true;
    }
    return false;
}

// A stream of which a byte is read each second: after how long the server ends it. Throws when it has not after `most`.
double secondsOfSlowReading(int port, const std::string &request, double most)
{
    HttpClient client(port, "127.0.9.2");
    client.send(request);
    const auto start = SteadyClock::now();
    while (since(start) < most && client.read(1) == 1 && isHeld("0209007F"))
        std::this_thread::sleep_for(1s);
    if (since(start) >= most)
        throw std::runtime_error("a stream read byte by byte was not ended");
    return since(start);
}

std::vector<std::unique_ptr<HttpClient>> connected(int port, size_t first, size_t count)
{
    std::vector<std::unique_ptr<HttpClient>> clients;
    for (size_t i = first; i < first + count; ++i)
        clients.push_back(std::make_unique<HttpClient>(port, addressOf(i)));
    return clients;
}

// Requests that are made to be costly, beside those that limits refuse at their first bytes.
void measureHostileRequests(const Server &server, const std::string &partner)
{
    const auto repeated = [](std::string_view piece, size_t bytes) {
        std::string all;
        while (all.size() < bytes)
            all += piece;
        return all;
    };
    const auto post = [&](const std::string &path, const std::string &more, const std::string &body) {
        return "POST " + path + " HTTP/1.1\r\nHost: radio\r\nConnection: close\r\n" + more +
               "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
    };
    const std::string asRadio = "Authorization: Bearer " + partner + "\r\n";
    const auto call = [&](const std::string &body) { return post("/v1/getPlaylist", asRadio, body); };
    const std::string chunked = "POST /v1/getPlaylist HTTP/1.1\r\nHost: radio\r\nTransfer-Encoding: chunked\r\n\r\n";
    const std::pair<const char *, std::string> requests[] = {
        {"", call("{}")}, // what the first request of all takes is no matter of it
        {"small objects", call(R"({"a":[)" + repeated("{},", 65'000) + "{}]}")},
        {"small numbers", call(R"({"a":[)" + repeated("1,", 65'000) + "1]}")},
        {"deep lists", call(repeated("[", 65'000))},
        {"a long text", call(R"({"stationToken":")" + repeated("\\u0041", 65'000) + "\"}")},
        {"a report of lists", post("/v1/remoteReport", asRadio, R"({"a":[)" + repeated("[],", 65'000) + "[]]}")},
        {"a form of many fields", post("/account/signin", "", repeated("a=b&", 16'000))},
        {"a form in percent", post("/account/signin", "", "email=" + repeated("%61", 16'000))},
        {"endless chunks", chunked + repeated("1\r\na\r\n", 2'000'000)},
        {"an endless chunk header", chunked + "1;" + repeated("a", 2'000'000)},
        {"an endless header", "GET / HTTP/1.1\r\nX: " + repeated("a", 2'000'000)},
        {"a packed body", post("/account/signin", "Content-Encoding: br\r\n", repeated("\x8b", 1579))},
        {"many ranges", "GET /style.css HTTP/1.1\r\nHost: radio\r\nConnection: close\r\nRange: bytes=" +
                            repeated("0-,", 8000) + "0-\r\n\r\n"},
    };
    double most = 0;
    std::string which;
    for (const auto &[name, bytes] : requests) {
        const double megabytes = server.megabytesFor([&bytes = bytes, &server] {
            HttpClient client(server.port(), "127.0.9.4");
            client.send(bytes);
            client.receive();
        });
        if (*name != '\0' && megabytes > most) {
            most = megabytes;
            which = name;
        }
    }
    figures::print("memory that one hostile request takes at most", most, "MB", 1, which);
}

void measure(bool isLong)
{
    allowManyConnections();
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    if (limit.rlim_cur < streamCount + idleCount + 100)
        throw std::runtime_error("this system allows a program too few connections");

    const ScratchFolder data;
    Server server(data.path);
    server.untilMusicIsMade();
    const double before = server.megabytes();

    HttpClient radio(server.port(), "127.0.9.3");
    std::ifstream account(data.path / "demo-account.txt");
    std::string userName;
    std::string password;
    std::getline(account, userName);
    std::getline(account, password);
    const std::string partner =
        call(radio, "partnerLogin", {{"deviceKey", std::string(43, 'k')}}, "").at("partnerToken");
    const std::string user =
        call(radio, "userLogin", {{"loginType", "user"}, {"userName", userName}, {"password", password}}, partner)
            .at("userToken");
    const json station = call(radio, "getStationList", json::object(), user).at("stations").at(0).at("stationToken");
    std::string address;
    const json list = call(radio, "getPlaylist", {{"stationToken", station}}, user);
    for (const json &entry : list.at("entries")) {
        if (entry.contains("track") && entry["track"]["audioUrl"].is_string())
            address = entry["track"]["audioUrl"];
    }
    const std::string get = "GET " + address.substr(address.find("/media")) + " HTTP/1.1\r\nHost: radio\r\n\r\n";

    const auto playlists = [&](const std::string &what, double bound) {
        std::vector<double> times;
        for (int i = 0; i < playlistCount; ++i) {
            const auto begin = SteadyClock::now();
            call(radio, "getPlaylist", {{"stationToken", station}}, user);
            times.push_back(1000 * since(begin));
            std::this_thread::sleep_for(25ms);
        }
        figures::note("playlist, median, " + what, figures::percentile(times, 0.5), "ms");
        if (bound > 0)
            figures::print("playlist, 99th percentile, " + what, figures::percentile(times, 0.99), "ms", bound);
        else
            figures::note("playlist, 99th percentile, " + what, figures::percentile(times, 0.99), "ms");
    };
    measureHostileRequests(server, partner);
    playlists("alone", 0);

    auto begin = SteadyClock::now();
    const auto idle = connected(server.port(), 0, idleCount);
    for (const auto &client : idle) {
        client->send("GET /style.css HTTP/1.1\r\nHost: radio\r\n\r\n");
        if (client->receive().status != 200)
            throw std::runtime_error("an idle connection got no answer");
    }
    figures::note("idle connections made and answered once", static_cast<double>(idleCount) / since(begin), "/s");
    figures::note("memory of the server with idle connections", server.megabytes(), "MB");
    const auto streams = connected(server.port(), idleCount, streamCount);
    for (const auto &client : streams)
        client->send(get);
    std::atomic<bool> isEnding{false};
    std::atomic<uint64_t> received{0};
    std::thread listeners([&] {
        while (!isEnding) {
            const auto next = SteadyClock::now() + turn;
            for (const auto &client : streams)
                received += client->readSome(bytesOfTurn);
            std::this_thread::sleep_until(next);
        }
    });
    std::this_thread::sleep_for(2s);
    const double cpu = server.cpuSeconds();
    const uint64_t bytes = received;
    begin = SteadyClock::now();
    playlists("beside 2,000 streams and 10,000 idle connections", 20);
    const double seconds = since(begin);
    figures::note("bytes that a stream got", static_cast<double>(received - bytes) / seconds / streamCount / 1024,
                  "kB/s");
    figures::note("processor time of the server", 100 * (server.cpuSeconds() - cpu) / seconds, "% of a core");
    figures::note("sockets of the server", static_cast<double>(server.sockets()), "");
    figures::print("memory of the server", server.megabytes(), "MB", 200);
    figures::note("memory of the server without connections", before, "MB");
    const std::string post = "POST /v1/partnerLogin HTTP/1.1\r\nHost: radio\r\n";
    figures::print("headers sent byte by byte: end after", secondsOfDrip(server.port(), post + "X: ", 60), "s", 11);
    figures::print("a body sent byte by byte: end after",
                   secondsOfDrip(server.port(), post + "Content-Length: 60000\r\n\r\n", 60), "s", 21);
    if (isLong)
        figures::print("a stream read byte by byte: end after", secondsOfSlowReading(server.port(), get, 1900), "s",
                       1300);
    isEnding = true;
    listeners.join();
}

} // namespace

int main(int argc, char *argv[])
{
    try {
        measure(argc > 1 && std::string(argv[1]) == "--long");
    } catch (const std::exception &error) {
        std::fprintf(stderr, "bench-connections: %s\n", error.what());
        return 1;
    }
    return 0;
}
