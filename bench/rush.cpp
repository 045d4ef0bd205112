// Playlists that many radios ask for over the network: a household's thousand radios, spread over time and all in the
// same moment; and a town's, as many a second as the service answers within 50 ms (99th percentile), with one and two
// processes. Callers, service and database share the machine. Latencies count from when a request was due.
#include "bench/balancer.h"
#include "bench/figures.h"
#include "bench/serviceprogram.h"
#include "bench/town.h"
#include "platform/ws/retry.h"
#include "server/store/store.h"
#include "tests/server/postgresserver.h"

#include <algorithm>
#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>
#include <stdexcept>

using namespace bench;
using namespace velmora::server;
using SteadyClock = std::chrono::steady_clock;

namespace {

constexpr size_t household = 1000;               // radios
constexpr double householdRate = 5;              // playlists a second, when all are back after an outage
constexpr double householdMs = 100, townMs = 50; // 99th percentile
constexpr int rounds = 10;
constexpr size_t townRadios = 5000;
constexpr double window = 8; // seconds that a rate is tried
constexpr size_t mostConnections = 1000;

struct Answers {
    std::vector<double> milliseconds;
    size_t refused = 0; // attempts; they are repeated
    size_t failed = 0;
};

class Callers {
public:
    Callers(const std::vector<int> &ports, const std::vector<TownRadio> &radios)
        : m_balancer(m_io, ports, mostConnections)
        , m_timer(m_io)
        , m_radios(radios)
    {
    }

    // At chance intervals, by chance radios.
    Answers ask(double perSecond, double seconds)
    {
        m_answers = {};
        m_begin = SteadyClock::now();
        m_last = m_begin + std::chrono::duration_cast<SteadyClock::duration>(std::chrono::duration<double>(seconds));
        m_pause = std::exponential_distribution<double>(perSecond);
        m_due = m_begin;
        askNext();
        m_io.restart();
        m_io.run();
        return m_answers;
    }

    // Every radio, now.
    Answers askAll()
    {
        m_answers = {};
        const auto now = SteadyClock::now();
        for (size_t radio = 0; radio < m_radios.size(); ++radio)
            send(radio, now, {});
        m_io.restart();
        m_io.run();
        return m_answers;
    }

private:
    void askNext()
    {
        m_due += std::chrono::duration_cast<SteadyClock::duration>(std::chrono::duration<double>(m_pause(m_random)));
        if (m_due >= m_last)
            return;
        m_timer.expires_at(m_due);
        m_timer.async_wait([this](const boost::system::error_code &) {
            send(m_random() % m_radios.size(), m_due, {});
            askNext();
        });
    }

    void send(size_t number, SteadyClock::time_point due, velmora::ws::Retry retry)
    {
        const TownRadio &radio = m_radios[number];
        retry.begin({}, false, SteadyClock::now());
        m_balancer.send(
            {"getPlaylist", "{\"stationToken\":\"" + radio.station + "\"}", radio.userToken, {}, radio.address},
            [this, number, due, retry](const Balancer::Answer &answer) { take(number, due, retry, answer); });
    }

    void take(size_t number, SteadyClock::time_point due, velmora::ws::Retry retry, const Balancer::Answer &answer)
    {
        if (answer.status == 200 && answer.body.find("\"code\":0") != std::string::npos) {
            m_answers.milliseconds.push_back(
                std::chrono::duration<double, std::milli>(SteadyClock::now() - due).count());
            return;
        }
        ++m_answers.refused;
        const auto again = retry.failed(SteadyClock::now(), std::chrono::seconds(answer.retryAfter),
                                        double(m_random()) / double(std::mt19937::max()));
        if (!again) {
            ++m_answers.failed;
            return;
        }
        const auto timer = std::make_shared<boost::asio::steady_timer>(m_io, *again);
        timer->async_wait(
            [this, timer, number, due, retry](const boost::system::error_code &) { send(number, due, retry); });
    }

    boost::asio::io_context m_io;
    Balancer m_balancer;
    boost::asio::steady_timer m_timer;
    const std::vector<TownRadio> &m_radios;
    std::mt19937 m_random{3};
    std::exponential_distribution<double> m_pause;
    SteadyClock::time_point m_begin, m_due, m_last;
    Answers m_answers;
};

std::string remark(const Answers &answers)
{
    return std::to_string(answers.milliseconds.size()) +
           " lists; attempts refused and repeated: " + std::to_string(answers.refused) +
           "; given up: " + std::to_string(answers.failed);
}

struct Place {
    ScratchFolder data;
    ServiceSettings settings;
    std::vector<TownRadio> radios;

    Place(size_t trackCount, size_t radioCount, const std::string &database)
    {
        settings.dataDirectory = data.path;
        settings.database = database;
        settings.passwordCost = {1, 8192};
        std::mt19937 random(7);
        StationService service(settings);
        fillCatalogue(service, trackCount, random, Ads::None);
        radios = makeTown(service, radioCount, SignedIn::Yes, random);
    }
};

void measureHousehold(size_t trackCount)
{
    const Place place(trackCount, household, {});
    Servers servers(place.data.path, {}, 1);
    Callers callers(servers.ports(), place.radios);
    callers.ask(50, 10); // what is begun at a start is over
    const Answers spread = callers.ask(householdRate, 60);
    figures::note("household of 1,000 radios, five playlists a second, median", figures::median(spread.milliseconds),
                  " ms", remark(spread));
    figures::print("  99th percentile", figures::percentile(spread.milliseconds, 0.99), " ms", householdMs);
    std::vector<double> all, medians, last;
    size_t refused = 0;
    double cpu = servers.cpuSeconds();
    for (int round = 0; round < rounds; ++round) {
        const Answers answers = callers.askAll();
        all.insert(all.end(), answers.milliseconds.begin(), answers.milliseconds.end());
        last.push_back(figures::percentile(answers.milliseconds, 1));
        refused += answers.refused;
    }
    cpu = (servers.cpuSeconds() - cpu) / double(all.size());
    figures::note("1,000 radios in the same moment, median", figures::median(all), " ms",
                  std::to_string(rounds) + " times");
    figures::print("  99th percentile", figures::percentile(all, 0.99), " ms", householdMs);
    figures::note("  until the last one has its list, median", figures::median(last), " ms");
    figures::note("  attempts that were refused and repeated, of 1,000", double(refused) / rounds, "");
    figures::note("  processor time of the service, of a list", 1000 * cpu, " ms");
}

void measureTown(size_t trackCount, const std::string &database, size_t processes, const std::string &where)
{
    const Place place(trackCount, townRadios, database);
    Servers servers(place.data.path, database, processes);
    Callers callers(servers.ports(), place.radios);
    callers.ask(50, 10);
    std::optional<Store> store;
    if (!database.empty())
        store.emplace(database, place.data.path);
    double carried = 0, atCarried = 0;
    double step = 100;
    for (double rate = step; step >= 12;) {
        const double cpu = servers.cpuSeconds();
        const double inDatabase = store ? databaseCosts(*store).seconds : 0;
        const Answers answers = callers.ask(rate, window);
        const double p99 = figures::percentile(answers.milliseconds, 0.99);
        const bool isEnough = p99 <= townMs && answers.refused == 0;
        const auto lists = double(answers.milliseconds.size());
        std::printf("%.0f playlists a second, %s: %s, median %.1f ms, 99th percentile %.1f ms; a list takes %.2f ms of "
                    "the service, %.2f ms of PostgreSQL; refused %zu\n",
                    rate, where.c_str(), isEnough ? "carried" : "too many", figures::median(answers.milliseconds), p99,
                    1000 * (servers.cpuSeconds() - cpu) / lists,
                    store ? 1000 * (databaseCosts(*store).seconds - inDatabase) / lists : 0, answers.refused);
        std::fflush(stdout);
        if (isEnough) {
            carried = rate;
            atCarried = p99;
            step *= carried > step ? 1 : 2;
        } else {
            step = std::min(step, rate - carried) / 2;
        }
        rate = carried + step;
    }
    figures::note("playlists a second within 50 ms (99th percentile), " + where, carried, "",
                  std::to_string(atCarried) + " ms");
}

} // namespace

// arguments: tracks of the catalogue; none: 3,000
int main(int count, char **texts)
{
    try {
        const size_t trackCount = count > 1 ? std::stoul(texts[1]) : 3000;
        allowManyConnections();
        measureHousehold(trackCount);
        measureTown(trackCount, {}, 1, "SQLite");
        if (!velmora::PostgresServer::programs()) {
            figures::note("PostgreSQL", "not installed, not measured");
            return 0;
        }
        velmora::PostgresServer postgres(velmora::PostgresServer::Disk::Synced);
        measureTown(trackCount, postgres.makeDatabase(), 1, "PostgreSQL");
        measureTown(trackCount, postgres.makeDatabase(), 2, "PostgreSQL, two processes");
    } catch (const std::exception &error) {
        std::fprintf(stderr, "bench-rush: %s\n", error.what());
        return 1;
    }
    return 0;
}
