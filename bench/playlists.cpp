// What one playlist costs the service without its network: processor time, statements, bytes that the database writes.
// Radios of many accounts ask in turn, one in five for the Tapestry station, and report what was heard in between.
#include "bench/figures.h"
#include "bench/town.h"
#include "server/api/dispatcher.h"
#include "tests/server/postgresserver.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <numeric>
#include <random>
#include <sqlite3.h>
#include <stdexcept>

using namespace velmora::server;
using nlohmann::json;

namespace {

// Every connection that is opened from now on counts its statements here. The ends of transactions do not count.
struct Statements {
    uint64_t ofAccounts = 0, ofCatalogue = 0;
} statements;
sqlite3 *accountDatabase = nullptr; // the one that is opened first

int countStatements(sqlite3 *db, char **, const sqlite3_api_routines *)
{
    if (!accountDatabase)
        accountDatabase = db;
    return sqlite3_trace_v2(
        db, SQLITE_TRACE_STMT,
        [](unsigned, void *, void *, void *text) {
            const std::string_view sql = static_cast<const char *>(text);
            const bool isCatalogue = sql.find("FROM tracks") < sql.size() || sql.find("FROM ads") < sql.size();
            for (const char *begin : {"SELECT", "WITH", "INSERT", "UPDATE", "DELETE"}) {
                if (sql.starts_with(begin)) // a trigger's statements come as comments
                    ++(isCatalogue ? statements.ofCatalogue : statements.ofAccounts);
            }
            return 0;
        },
        nullptr);
}

double writtenBytes()
{
    int pages = 0, highest = 0;
    sqlite3_db_status(accountDatabase, SQLITE_DBSTATUS_CACHE_WRITE, &pages, &highest, 0);
    return pages * 4096.0;
}

double cpuSeconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

// How the tables that listening writes took it: updates that left the indices alone, and rows that wait for a vacuum.
void reportUpdates(StationService &service, const std::string &where)
{
    const Store::Lock db = service.store.lock();
    Statement row = db->prepare(
        "SELECT relname, n_tup_ins, n_tup_upd, n_tup_hot_upd, n_tup_del, n_dead_tup, "
        "pg_total_relation_size(relid) FROM "
        "pg_stat_user_tables WHERE relname IN ('stations', 'plays_under_way', 'remembered_plays') ORDER BY relname");
    while (row.step())
        figures::note("rows of " + row.text(0) + where,
                      std::to_string(row.integer(1)) + " made, " + std::to_string(row.integer(2)) + " changed, " +
                          std::to_string(row.integer(3)) + " of these beside the indices, " +
                          std::to_string(row.integer(4)) + " deleted; " + std::to_string(row.integer(5)) +
                          " wait for a vacuum; " + std::to_string(row.integer(6) / 1024) + " kB");
}

struct Radio {
    std::string token;
    std::vector<std::string> stations; // the Tapestry station first
};

struct Costs {
    std::vector<double> cpu, plain, mixed;             // ms
    double ofAccounts = 0, ofCatalogue = 0, bytes = 0; // of a playlist
    std::vector<double> wall, database;                // ms
    double logBytes = 0;
};

class Caller {
public:
    explicit Caller(StationService &service)
        : m_dispatcher(service)
    {
    }
    json data(const char *function, const json &parameters, const std::string &token)
    {
        const Answer answer =
            m_dispatcher.answer({"v1", function, parameters.dump(), "Bearer " + token, "", "127.0.0.1"});
        if (answer.code != Code::Done)
            throw std::runtime_error(std::string(function) + ": " + answer.body.dump());
        return answer.body.value("data", json::object());
    }

private:
    Dispatcher m_dispatcher;
};

Costs listen(StationService &service, std::vector<Radio> &radios, size_t lists, std::atomic<int64_t> &now,
             std::mt19937 &random)
{
    Costs costs;
    // Each caller counts the requests of a network.
    auto caller = std::make_unique<Caller>(service);
    for (size_t list = 0; list < lists; ++list) {
        Radio &radio = radios[random() % radios.size()];
        const bool isMixed = random() % 5 == 0;
        const std::string &station = radio.stations[isMixed ? 0 : 1 + random() % (radio.stations.size() - 1)];
        const Statements before = statements;
        const double bytes = writtenBytes();
        const bench::DatabaseCosts database = bench::databaseCosts(service.store);
        const auto start = std::chrono::steady_clock::now();
        const double begin = cpuSeconds();
        const json entries = caller->data("getPlaylist", {{"stationToken", station}}, radio.token).at("entries");
        const double ms = 1000 * (cpuSeconds() - begin);
        costs.wall.push_back(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
        const bench::DatabaseCosts after = bench::databaseCosts(service.store);
        costs.database.push_back(1000 * (after.seconds - database.seconds));
        costs.logBytes += (after.logBytes - database.logBytes) / double(lists);
        costs.cpu.push_back(ms);
        (isMixed ? costs.mixed : costs.plain).push_back(ms);
        costs.ofAccounts += double(statements.ofAccounts - before.ofAccounts);
        costs.ofCatalogue += double(statements.ofCatalogue - before.ofCatalogue) / double(lists);
        costs.bytes += (writtenBytes() - bytes) / double(lists);
        for (const json &entry : entries) {
            if (!entry.contains("track"))
                continue;
            now += 1;
            const json token = entry["track"].at("trackToken");
            const bool isSkipped = random() % 6 == 0;
            caller->data(
                "trackEvent",
                {{"trackToken", token}, {"eventType", isSkipped ? "skip" : "end"}, {"seconds", isSkipped ? 20 : 210}},
                radio.token);
            if (random() % 20 == 0)
                caller->data("addFeedback", {{"trackToken", token}, {"isPositive", random() % 3 != 0}}, radio.token);
        }
        if (list % 5000 == 4999)
            caller = std::make_unique<Caller>(service);
    }
    return costs;
}

double mean(const std::vector<double> &values)
{
    return std::accumulate(values.begin(), values.end(), 0.0) / double(values.size());
}

void report(const Costs &costs, const std::string &where, bool isPostgres)
{
    const double own = mean(costs.cpu), database = mean(costs.database);
    figures::print("processor time of a playlist, mean" + where, own + database, " ms", 2);
    figures::note("  plain station, median" + where, figures::median(costs.plain), " ms");
    figures::note("  plain station, 99th percentile" + where, figures::percentile(costs.plain, 0.99), " ms");
    figures::note("  Tapestry station, median" + where, figures::median(costs.mixed), " ms");
    figures::note("time of a playlist, median" + where, figures::median(costs.wall), " ms");
    figures::note("time of a playlist, 99th percentile" + where, figures::percentile(costs.wall, 0.99), " ms");
    if (isPostgres) {
        figures::print("processor time of PostgreSQL of it, mean" + where, database, " ms", 0.7);
        figures::print("log of PostgreSQL" + where, costs.logBytes, " bytes", 1000);
    } else {
        figures::print("statements of a playlist" + where, costs.ofAccounts / double(costs.cpu.size()), "", 2);
        figures::note("pages written by a playlist" + where, costs.bytes / 4096, "");
    }
    figures::note("look-ups of tracks and advertisements" + where, costs.ofCatalogue, "");
}

void measure(size_t trackCount, size_t accountCount, size_t lists, const std::string &database)
{
    char directory[] = "/tmp/velmora-bench-XXXXXX";
    if (!mkdtemp(directory))
        throw std::runtime_error("no folder");
    const std::unique_ptr<const char, void (*)(const char *)> removed(
        directory, [](const char *path) { std::filesystem::remove_all(path); });
    std::atomic<int64_t> now = 1'800'000'000;
    std::mt19937 random(7);
    ServiceSettings settings;
    settings.dataDirectory = directory;
    settings.database = database;
    settings.passwordCost = {1, 8192};
    settings.lifetimes = {1'000'000'000, 1'000'000'000};
    settings.clock = [&now] { return now.load(); };
    {
        StationService service(settings);
        bench::fillCatalogue(service, trackCount, random, bench::Ads::One);
    }
    accountDatabase = nullptr;
    StationService service(settings); // a new one: its engine has seen all of the music
    std::vector<Radio> radios;
    {
        const std::string passwordHash = service.hasher.hash("seven small lamps");
        Caller caller(service);
        for (size_t number = 0; number < accountCount; ++number) {
            AccountId id = 0;
            service.accounts.create(
                "h" + std::to_string(number) + "@example.org", passwordHash, {}, &id, [&](AccountId made) {
                    service.stations.createTapestry(made);
                    Station station;
                    for (int i = 0; i < 4; ++i) {
                        const Music style{MusicKind::Style, bench::styleName(random())};
                        const Music artist{MusicKind::Artist, std::to_string(1 + random() % (trackCount / 20))};
                        service.stations.create(made, i % 2 == 0 ? style : artist, &station);
                    }
                });
            Radio radio;
            radio.token = service.sessions.openUser(id, std::string(64, 'a'));
            const json list = caller.data("getStationList", {{"sortOrder", "asc"}}, radio.token).at("stations");
            for (const json &station : list)
                radio.stations.push_back(station.at("stationToken"));
            radios.push_back(std::move(radio));
        }
    }
    listen(service, radios, lists / 2, now, random);
    report(listen(service, radios, lists, now, random),
           ", " + std::to_string(trackCount) + " tracks" + (database.empty() ? "" : ", PostgreSQL"), !database.empty());
    if (!database.empty()) {
        service.store.lock()->execute("SELECT pg_stat_force_next_flush()");
        reportUpdates(service, ", " + std::to_string(trackCount) + " tracks");
    }
}

} // namespace

// arguments: tracks, accounts, playlists; none: a household's catalogue and one of 100,000 tracks
int main(int count, char **texts)
{
    try {
        sqlite3_auto_extension(reinterpret_cast<void (*)()>(countStatements));
        const bool hasPostgres = velmora::PostgresServer::programs().has_value();
        const auto postgres = hasPostgres ? std::make_unique<velmora::PostgresServer>() : nullptr;
        if (!hasPostgres)
            figures::note("PostgreSQL", "not installed, not measured");
        const auto both = [&](size_t tracks, size_t accounts, size_t lists) {
            measure(tracks, accounts, lists, {});
            if (hasPostgres)
                measure(tracks, accounts, lists, postgres->makeDatabase());
        };
        if (count == 4) {
            both(std::stoul(texts[1]), std::stoul(texts[2]), std::stoul(texts[3]));
        } else {
            both(3000, 200, 2000);
            both(100'000, 200, 300);
        }
    } catch (const std::exception &error) {
        std::fprintf(stderr, "bench-playlists: %s\n", error.what());
        return 1;
    }
    return 0;
}
