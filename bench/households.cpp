// How many listening radios the service carries on one core, and how fast each function answers at that load and at
// half of it. Radios are simulated: each asks, on average, for what a real one asks for while somebody listens to
// tracks of three and a half minutes. Requests are sent when they are due, whether earlier ones were answered or not,
// so that a slow answer is not hidden by a slow caller.
#include "bench/figures.h"
#include "bench/serviceprogram.h"

#include <algorithm>
#include <atomic>
#include <fstream>
#include <map>
#include <mutex>
#include <random>
#include <sched.h>
#include <stdexcept>
#include <thread>

using namespace bench;
using nlohmann::json;
using velmora::server::HttpClient;
using SteadyClock = std::chrono::steady_clock;

namespace {

constexpr size_t accountCount = 40;
constexpr int callerCount = 24;          // threads, each with its own connection
constexpr double window = 12;            // seconds that a number of radios is tried
constexpr double mostPlaylistMs = 50;    // 99th percentile: a service that takes longer carries no more
constexpr double mostLateSeconds = 0.25; // 99th percentile: callers themselves are too slow
constexpr double trackSeconds = 210;

// Once in so many seconds of listening.
struct Habit {
    const char *function;
    double every;
};
constexpr Habit habits[] = {
    {"audio", trackSeconds},
    {"picture", trackSeconds},
    {"getPlaylist", 4 * trackSeconds},
    {"addFeedback", 10 * trackSeconds},
    {"explainTrack", 50 * trackSeconds},
    {"getStationList", 3600},
    {"search", 4 * 3600},
    {"userLogin", 4 * 3600},
};

struct Account {
    std::string name;
    std::string address; // of the household
    std::string partner;
    std::string user;
    std::string station;
    // Of the latest playlist.
    std::mutex mutex;
    std::vector<std::string> tracks;
    std::vector<std::string> audio;
    std::vector<std::string> pictures;
};

struct Figures {
    std::map<std::string, std::vector<double>> milliseconds;
    std::vector<double> late; // seconds
    uint64_t bytes = 0;
    size_t failures = 0;
    std::string firstFailure;
};

const std::string password = "seven small lamps";

std::string pathOf(const json &address)
{
    const std::string text = address.is_string() ? address.get<std::string>() : std::string();
    const size_t at = text.find("/media");
    return at == std::string::npos ? std::string() : text.substr(at);
}

void remember(Account &account, const json &list)
{
    const std::scoped_lock lock(account.mutex);
    account.tracks.clear();
    account.audio.clear();
    for (const json &entry : list.at("entries")) {
        if (!entry.contains("track"))
            continue;
        const json &track = entry["track"];
        account.tracks.push_back(track.at("trackToken"));
        account.audio.push_back(pathOf(track["audioUrl"]));
        if (const std::string picture = pathOf(track.value("albumArtUrl", json())); !picture.empty())
            account.pictures.push_back(picture);
    }
}

std::string oneOf(Account &account, std::vector<std::string> Account::*list, std::mt19937 &random)
{
    const std::scoped_lock lock(account.mutex);
    const auto &texts = account.*list;
    return texts.empty() ? std::string() : texts[random() % texts.size()];
}

uint64_t fetch(HttpClient &client, const std::string &path)
{
    client.send("GET " + path + " HTTP/1.1\r\nHost: radio\r\n\r\n");
    const auto answer = client.receive(true); // the body is counted, not kept
    if (answer.status != 200)
        throw std::runtime_error("media: status " + std::to_string(answer.status));
    const uint64_t size = std::stoull(answer.header("Content-Length"));
    for (uint64_t read = 0; read < size;) {
        const size_t count = client.read(1 << 20);
        if (count == 0)
            throw std::runtime_error("media: cut off");
        read += count;
    }
    return size;
}

uint64_t act(const std::string &what, HttpClient &client, Account &account, std::mt19937 &random)
{
    if (what == "audio")
        return fetch(client, oneOf(account, &Account::audio, random));
    if (what == "picture") {
        const std::string path = oneOf(account, &Account::pictures, random);
        return path.empty() ? 0 : fetch(client, path);
    }
    if (what == "getPlaylist")
        remember(account, call(client, what, {{"stationToken", account.station}}, account.user));
    else if (what == "addFeedback")
        call(client, what, {{"isPositive", true}, {"trackToken", oneOf(account, &Account::tracks, random)}},
             account.user);
    else if (what == "explainTrack")
        call(client, what, {{"trackToken", oneOf(account, &Account::tracks, random)}}, account.user);
    else if (what == "getStationList")
        call(client, what, json::object(), account.user);
    else if (what == "search")
        call(client, what, {{"text", random() % 2 == 0 ? "the" : "slow"}}, account.user);
    else
        call(client, what, {{"loginType", "user"}, {"userName", account.name}, {"password", password}},
             account.partner);
    return 0;
}

// One try: so many radios for `window` seconds.
Figures listen(int port, std::vector<std::unique_ptr<Account>> &accounts, double radios)
{
    Figures all;
    std::mutex mutex;
    const auto begin = SteadyClock::now();
    std::vector<std::thread> callers;
    for (int caller = 0; caller < callerCount; ++caller) {
        callers.emplace_back([&, caller] {
            std::mt19937 random(unsigned(caller) * 7919 + unsigned(radios));
            Figures mine;
            double perSecond = 0;
            std::vector<double> weights;
            for (const Habit &habit : habits) {
                weights.push_back(1 / habit.every);
                perSecond += radios / callerCount / habit.every;
            }
            std::discrete_distribution<size_t> choose(weights.begin(), weights.end());
            std::exponential_distribution<double> pause(perSecond);
            std::map<size_t, std::unique_ptr<HttpClient>> clients; // a household's requests come from its address
            for (double due = pause(random); due < window; due += pause(random)) {
                const size_t household = random() % accounts.size();
                auto &client = clients[household];
                if (!client)
                    client = std::make_unique<HttpClient>(port, accounts[household]->address);
                const std::string what = habits[choose(random)].function;
                const double early = due - since(begin);
                if (early > 0)
                    std::this_thread::sleep_for(std::chrono::duration<double>(early));
                mine.late.push_back(std::max(0.0, since(begin) - due));
                const auto start = SteadyClock::now();
                try {
                    mine.bytes += act(what, *client, *accounts[household], random);
                    mine.milliseconds[what].push_back(1000 * since(start));
                } catch (const std::exception &error) {
                    if (++mine.failures == 1)
                        mine.firstFailure = error.what();
                    client.reset();
                }
            }
            const std::scoped_lock lock(mutex);
            for (const auto &[what, times] : mine.milliseconds)
                all.milliseconds[what].insert(all.milliseconds[what].end(), times.begin(), times.end());
            all.late.insert(all.late.end(), mine.late.begin(), mine.late.end());
            all.bytes += mine.bytes;
            all.failures += mine.failures;
            if (all.firstFailure.empty())
                all.firstFailure = mine.firstFailure;
        });
    }
    for (std::thread &caller : callers)
        caller.join();
    return all;
}

bool isCarried(const Figures &figures)
{
    const auto playlists = figures.milliseconds.find("getPlaylist");
    return figures.failures == 0 && playlists != figures.milliseconds.end() &&
           figures::percentile(playlists->second, 0.99) <= mostPlaylistMs &&
           figures::percentile(figures.late, 0.99) <= mostLateSeconds;
}

void report(const Figures &figures, double radios, const Server &server, double cpuBefore)
{
    const std::string at = ", " + std::to_string(int(radios)) + " radios";
    for (const Habit &habit : habits) {
        const auto found = figures.milliseconds.find(habit.function);
        if (found == figures.milliseconds.end())
            continue;
        figures::note(std::string(habit.function) + ", median" + at, figures::percentile(found->second, 0.5), "ms");
        figures::note(std::string(habit.function) + ", 99th percentile" + at, figures::percentile(found->second, 0.99),
                      "ms", std::to_string(found->second.size()) + " requests");
    }
    figures::note("media" + at, double(figures.bytes) / window / 1e6, "MB/s");
    figures::note("processor time of the service" + at, 100 * (server.cpuSeconds() - cpuBefore) / window,
                  "% of a core");
    figures::note("memory of the service" + at, server.megabytes(), "MB");
    figures::note("failed requests" + at, double(figures.failures), "", figures.firstFailure);
}

std::vector<std::unique_ptr<Account>> madeAccounts(int port, const std::filesystem::path &data)
{
    std::vector<std::unique_ptr<Account>> accounts;
    for (size_t number = 0; number < accountCount; ++number) {
        auto account = std::make_unique<Account>();
        account->name = "household" + std::to_string(number) + "@example.org";
        account->address = "127.0.4." + std::to_string(1 + number);
        HttpClient client(port, account->address);
        account->partner =
            call(client, "partnerLogin", {{"deviceKey", std::string(42, char('A' + number % 26)) + 'A'}}, "")
                .at("partnerToken");
        char identity[32];
        std::snprintf(identity, sizeof identity, "02005E%06X-0", unsigned(number));
        account->user = call(client, "createUser",
                             {{"userName", account->name},
                              {"password", password},
                              {"birthYear", 1984},
                              {"gender", "male"},
                              {"zipCode", "04109"},
                              {"countryCode", "DE"},
                              {"emailOptIn", false},
                              {"deviceId", identity}},
                             account->partner)
                            .at("userToken");
        openSignUpLink(client, data, account->name);
        account->station = call(client, "getStationList", json::object(), account->user)
                               .at("stations")
                               .at(number % 3)
                               .at("stationToken");
        remember(*account, call(client, "getPlaylist", {{"stationToken", account->station}}, account->user));
        accounts.push_back(std::move(account));
    }
    return accounts;
}

// The callers on one core, the service on another: neither takes the other's time.
void useFirstCore()
{
    cpu_set_t cores;
    CPU_ZERO(&cores);
    CPU_SET(0, &cores);
    if (::sched_setaffinity(0, sizeof cores, &cores) != 0)
        throw std::runtime_error("the callers cannot be bound to a core");
}

void measure()
{
    if (std::thread::hardware_concurrency() < 2)
        throw std::runtime_error("this needs two cores: one for the service, one for its callers");
    const ScratchFolder data;
    Server server(data.path, {}, "1");
    server.untilMusicIsMade();
    useFirstCore();
    auto accounts = madeAccounts(server.port(), data.path);
    double carried = 0;
    double step = 2000;
    for (double radios = step; step >= 250;) {
        const double cpu = server.cpuSeconds();
        const Figures figures = listen(server.port(), accounts, radios);
        const bool isEnough = isCarried(figures);
        std::printf("%.0f radios: %s, %.0f %% of a core, playlists %.1f ms, callers late by %.2f s%s%s\n", radios,
                    isEnough ? "carried" : "too many", 100 * (server.cpuSeconds() - cpu) / window,
                    figures::percentile(figures.milliseconds.at("getPlaylist"), 0.99),
                    figures::percentile(figures.late, 0.99), figures.failures > 0 ? ", " : "",
                    figures.firstFailure.c_str());
        std::fflush(stdout);
        if (isEnough) {
            carried = radios;
            step *= 2;
        } else {
            step = std::min(step, radios - carried) / 4;
        }
        radios = carried + step;
    }
    figures::note("radios that one core carries", carried, "");
    for (const double share : {0.5, 1.0}) {
        const double cpu = server.cpuSeconds();
        report(listen(server.port(), accounts, share * carried), share * carried, server, cpu);
    }
}

} // namespace

int main()
{
    try {
        measure();
    } catch (const std::exception &error) {
        std::fprintf(stderr, "bench-households: %s\n", error.what());
        return 1;
    }
    return 0;
}
