// How many connections the service bears: slow streams and idle connections at once, while one radio asks for
// playlists; callers who send or read too slowly. The server is a process of its own, on its usual limits.
#include "bench/figures.h"
#include "tests/server/httpclient.h"

#include <algorithm>
#include <arpa/inet.h>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace velmora::server;
using nlohmann::json;
using SteadyClock = std::chrono::steady_clock;
using namespace std::chrono_literals;

namespace {

constexpr size_t streamCount = 2000;
constexpr size_t idleCount = 10'000;
constexpr size_t connectionsOfAddress = 200; // the server allows a few more
constexpr int playlistCount = 400;
constexpr size_t bytesOfTurn = 4096; // a stream reads them four times a second: 128 kbit/s
constexpr auto turn = 250ms;

double since(SteadyClock::time_point begin)
{
    return std::chrono::duration<double>(SteadyClock::now() - begin).count();
}

// The server with a small demo catalogue; ends with this program.
class Server {
public:
    explicit Server(const std::filesystem::path &data)
    {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
        m_pid = ::fork();
        if (m_pid == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            ::dup2(ends[1], STDOUT_FILENO);
            ::dup2(::open("/dev/null", O_WRONLY), STDERR_FILENO); // a line a request
            ::execl(BENCH_SERVER, BENCH_SERVER, "--listen", "127.0.0.1:0", "--data", data.c_str(), "--demo-tracks", "1",
                    nullptr);
            ::_exit(127);
        }
        ::close(ends[1]);
        m_output = ::fdopen(ends[0], "r");
        const std::string line = lineWith("listening on ");
        port = std::stoi(line.substr(line.rfind(':') + 1));
    }
    ~Server()
    {
        ::kill(m_pid, SIGTERM);
        ::waitpid(m_pid, nullptr, 0);
        std::fclose(m_output);
    }
    Server(const Server &) = delete;
    Server &operator=(const Server &) = delete;

    // Waits for a line of its output.
    std::string lineWith(const std::string &text)
    {
        char line[512];
        while (std::fgets(line, sizeof line, m_output)) {
            if (std::strstr(line, text.c_str()))
                return line;
        }
        throw std::runtime_error("the server did not say: " + text);
    }
    void untilMusicIsMade()
    {
        int made = 0;
        int total = 1;
        while (made < total)
            std::sscanf(lineWith("demo catalogue: ").c_str(), "demo catalogue: %d of %d", &made, &total);
    }
    double megabytes() const
    {
        std::ifstream file("/proc/" + std::to_string(m_pid) + "/status");
        for (std::string line; std::getline(file, line);) {
            if (line.starts_with("VmRSS:"))
                return std::stod(line.substr(6)) / 1024;
        }
        return 0;
    }
    double cpuSeconds() const
    {
        std::ifstream file("/proc/" + std::to_string(m_pid) + "/stat");
        std::string word;
        double ticks = 0;
        for (int i = 1; i <= 15 && file >> word; ++i)
            ticks += i >= 14 ? std::stod(word) : 0;
        return ticks / static_cast<double>(::sysconf(_SC_CLK_TCK));
    }
    size_t sockets() const
    {
        std::error_code error;
        size_t count = 0;
        for (const auto &entry : std::filesystem::directory_iterator("/proc/" + std::to_string(m_pid) + "/fd", error))
            count += std::filesystem::read_symlink(entry, error).native().starts_with("socket:");
        return count;
    }

    int port = 0;

private:
    pid_t m_pid = -1;
    FILE *m_output = nullptr;
};

// Radios come from many addresses: one alone may not have so many connections.
std::string addressOf(size_t number)
{
    const size_t address = number / connectionsOfAddress;
    return "127.0." + std::to_string(1 + address / 200) + "." + std::to_string(1 + address % 200);
}

json call(HttpClient &client, const std::string &function, const json &parameters, const std::string &token)
{
    const std::string body = parameters.dump();
    client.send("POST /v1/" + function + " HTTP/1.1\r\nHost: radio\r\nAuthorization: Bearer " + token +
                "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body);
    const json answer = json::parse(client.receive().body, nullptr, false);
    if (answer.value("code", -1) != 0)
        throw std::runtime_error(function + ": " + answer.dump());
    return answer.value("data", json::object());
}

// Sends a byte every tenth of a second until the connection ends; how many seconds it took. -1: did not end in time.
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
    return -1;
}

// Reads a byte a second of a stream.
double secondsOfSlowReading(int port, const std::string &request, double most)
{
    HttpClient client(port, "127.0.9.2");
    client.send(request);
    const auto start = SteadyClock::now();
    while (since(start) < most && client.read(1) == 1)
        std::this_thread::sleep_for(1s);
    return since(start) < most ? since(start) : -1;
}

std::vector<std::unique_ptr<HttpClient>> connected(int port, size_t first, size_t count)
{
    std::vector<std::unique_ptr<HttpClient>> clients;
    for (size_t i = first; i < first + count; ++i)
        clients.push_back(std::make_unique<HttpClient>(port, addressOf(i)));
    return clients;
}

void measure(bool isLong)
{
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &limit);
    if (limit.rlim_cur < streamCount + idleCount + 100)
        throw std::runtime_error("this system allows a program too few connections");

    std::string name = (std::filesystem::temp_directory_path() / "velmora-connections-XXXXXX").string();
    const std::filesystem::path data = ::mkdtemp(name.data());
    const std::unique_ptr<const std::filesystem::path, void (*)(const std::filesystem::path *)> owner(
        &data, [](const std::filesystem::path *path) { std::filesystem::remove_all(*path); });
    Server server(data);
    server.untilMusicIsMade();
    const double before = server.megabytes();

    HttpClient radio(server.port, "127.0.9.3");
    std::ifstream account(data / "demo-account.txt");
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
    playlists("alone", 0);

    auto begin = SteadyClock::now();
    const auto idle = connected(server.port, 0, idleCount);
    for (const auto &client : idle) {
        client->send("GET /style.css HTTP/1.1\r\nHost: radio\r\n\r\n");
        if (client->receive().status != 200)
            throw std::runtime_error("an idle connection got no answer");
    }
    figures::note("idle connections made and answered once", static_cast<double>(idleCount) / since(begin), "/s");
    figures::note("memory of the server with idle connections", server.megabytes(), "MB");
    const auto streams = connected(server.port, idleCount, streamCount);
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
    figures::print("headers sent byte by byte: end after", secondsOfDrip(server.port, post + "X: ", 60), "s", 11);
    figures::print("a body sent byte by byte: end after",
                   secondsOfDrip(server.port, post + "Content-Length: 60000\r\n\r\n", 60), "s", 21);
    if (isLong)
        figures::print("a stream read byte by byte: end after", secondsOfSlowReading(server.port, get, 1900), "s",
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
