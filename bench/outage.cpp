// A town's radios and an outage of a minute: 100,000 simulated radios in this process sign in, listen, and go on while
// the service (SQLite) or its database (PostgreSQL) is killed and comes back. Says what listeners noticed, how long
// playlists took before, during the return and after, and whether an acknowledged thumb was lost.
#include "bench/crowd.h"
#include "bench/figures.h"
#include "bench/serviceprogram.h"
#include "server/store/store.h"
#include "tests/server/postgresserver.h"

#include <algorithm>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <set>
#include <stdexcept>
#include <thread>

using namespace bench;
using namespace velmora::server;
using SteadyClock = std::chrono::steady_clock;

namespace {

constexpr size_t trackCount = 3000;
constexpr size_t mostConnections = 1000;
constexpr size_t signingIn = 48;                                            // radios at once
constexpr double settleSeconds = 15, phaseSeconds = 45, outageSeconds = 60; // of the radios
constexpr double patience = 900;                                            // of the clock

struct Options {
    size_t radios = 100'000;
    double speed = 1;
    bool isPostgres = false;
    bool isHeld = false; // waits for a line on standard input before they listen: the machine may have to become quiet
};

double secondsOf(Crowd::Time::duration time)
{
    return std::chrono::duration<double>(time).count();
}

struct Moments {
    Crowd::Time steady, begin, end, served, over;
    double signedInSeconds = 0, silentSeconds = 0; // of the clock
    size_t mostSilent = 0;
    std::vector<double> cpu; // of the service: before, in the steady phase, during the return
};

void sleep(double seconds)
{
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

void waitUntil(const std::function<bool()> &isDone, const char *what)
{
    for (const auto begin = SteadyClock::now(); !isDone();) {
        if (since(begin) > patience)
            throw std::runtime_error(std::string("not in time: ") + what);
        sleep(0.02);
    }
}

void reportPhase(const Crowd::Figures &figures, const std::string &name, Crowd::Time from, Crowd::Time to)
{
    std::vector<double> attempts, waits;
    int repeated = 0;
    for (const Crowd::List &list : figures.lists) {
        if (list.answered < from || list.answered >= to)
            continue;
        attempts.push_back(list.milliseconds);
        waits.push_back(secondsOf(list.answered - list.asked));
        repeated += list.attempts > 1 ? 1 : 0;
    }
    const std::string lists = std::to_string(attempts.size()) + " lists in " +
                              std::to_string(int(secondsOf(to - from))) + " s, " + std::to_string(repeated) +
                              " of them asked for more than once";
    figures::note("playlist, median, " + name, figures::median(attempts), " ms", lists);
    figures::note("  99th percentile", figures::percentile(attempts, 0.99), " ms");
    figures::note("  from the first attempt on, 99th percentile; longest",
                  std::to_string(figures::percentile(waits, 0.99)) + " s; " +
                      std::to_string(figures::percentile(waits, 1)) + " s");
}

void report(const Crowd::Figures &figures, const Moments &moments, const Options &options)
{
    figures::note("radios that sign in and get their first list, a second",
                  double(options.radios) / moments.signedInSeconds, "");
    reportPhase(figures, "before the outage", moments.steady, moments.begin);
    reportPhase(figures, "during the return", moments.end, moments.served);
    reportPhase(figures, "afterwards", moments.served, moments.over);

    size_t silences = 0, begun = 0, gaveUp = 0;
    std::vector<double> seconds;
    for (const auto &[began, length] : figures.silences) {
        if (began < moments.begin || began >= moments.over)
            continue;
        ++silences;
        seconds.push_back(length);
    }
    for (const Crowd::Time time : figures.begun)
        begun += time >= moments.begin && time < moments.end ? 1 : 0;
    for (const Crowd::Time time : figures.gaveUp)
        gaveUp += time >= moments.begin && time < moments.over ? 1 : 0;
    figures::note("radios that fell silent: their list was used up, and no other came", double(silences), "",
                  std::to_string(100.0 * double(silences) / double(options.radios)) + " %");
    figures::note("  silence, median; longest", std::to_string(figures::median(seconds)) + " s; " +
                                                    std::to_string(figures::percentile(seconds, 1)) + " s");
    figures::note("radios that ended after 45 seconds without an answer, and started anew", double(gaveUp), "");
    figures::note("tracks that began in the outage, which media from the same process would have lost", double(begun),
                  "");
    figures::note("from the return until every radio is served and plays", secondsOf(moments.served - moments.end),
                  " s");
    for (const auto &[reason, count] : figures.refused)
        figures::note("attempts that were repeated: " + reason, double(count), "");
    figures::print("answers with an error", 0.0 + double(figures.errors.size()), " kinds", 0);
    for (const auto &[reason, count] : figures.errors)
        figures::note("  " + reason, double(count), "");
    figures::note("events of tracks that were never taken; thumbs that were refused, and said so",
                  std::to_string(figures.eventsLost) + "; " + std::to_string(figures.thumbsRefused));
    figures::note("answers in all", double(figures.answers), "");
    figures::note("processor time of the service before the outage; during the return",
                  std::to_string(moments.cpu[0]) + "; " + std::to_string(moments.cpu[1]) + " % of a core");
    figures::note("radios' own lateness, 99th percentile", figures::percentile(figures.lateMs, 0.99), " ms");
}

// Acknowledged thumbs that the store does not have.
size_t lostThumbs(StationService &service, const std::vector<Crowd::Thumb> &acknowledged)
{
    std::map<int64_t, std::string> names;
    {
        const Store::Lock db = service.catalogueStore.lock();
        for (Statement row = db->prepare("SELECT id, public_id FROM tracks"); row.step();)
            names[row.integer(0)] = row.text(1);
    }
    std::set<std::pair<int64_t, std::string>> stored;
    {
        const Store::Lock db = service.store.lock();
        for (Statement row = db->prepare("SELECT account_id, track_id FROM feedback"); row.step();)
            stored.emplace(row.integer(0), names[row.integer(1)]);
    }
    return static_cast<size_t>(std::count_if(acknowledged.begin(), acknowledged.end(), [&](const Crowd::Thumb &thumb) {
        return !stored.contains({thumb.account, thumb.track});
    }));
}

Moments live(Crowd &crowd, Servers &service, velmora::PostgresServer *postgres, const Options &options,
             const std::function<void(std::function<void()>)> &onLoop)
{
    Moments moments;
    auto begin = SteadyClock::now();
    onLoop([&crowd] { crowd.start(signingIn); });
    waitUntil([&] { return crowd.listening() == options.radios; }, "all radios listen");
    moments.signedInSeconds = since(begin);
    std::fprintf(stderr, "all radios have their first list\n");
    if (options.isHeld)
        std::getchar();
    onLoop([&crowd] { crowd.begin(); });
    sleep(settleSeconds / options.speed);

    moments.steady = crowd.now();
    double cpu = service.cpuSeconds();
    begin = SteadyClock::now();
    sleep(phaseSeconds / options.speed);
    moments.cpu.push_back(100 * (service.cpuSeconds() - cpu) / since(begin));

    moments.begin = crowd.now();
    if (postgres)
        postgres->kill();
    else
        service.kill();
    std::fprintf(stderr, "killed\n");
    sleep(outageSeconds / options.speed);
    if (postgres)
        postgres->start();
    else
        service.start();
    moments.end = crowd.now();
    std::fprintf(stderr, "back\n");

    cpu = service.cpuSeconds();
    begin = SteadyClock::now();
    waitUntil([&] { return crowd.unanswered() == 0 && crowd.silent() == 0; }, "all radios are served again");
    moments.served = crowd.now();
    moments.cpu.push_back(100 * (service.cpuSeconds() - cpu) / since(begin));
    std::fprintf(stderr, "served\n");
    sleep(phaseSeconds / options.speed);
    moments.over = crowd.now();
    return moments;
}

void measure(const Options &options)
{
    allowManyConnections();
    const auto postgres =
        options.isPostgres ? std::make_unique<velmora::PostgresServer>(velmora::PostgresServer::Disk::Synced) : nullptr;
    const ScratchFolder data;
    std::mt19937 random(7);
    ServiceSettings settings;
    settings.dataDirectory = data.path;
    settings.database = postgres ? postgres->makeDatabase() : std::string();
    settings.passwordCost = {1, 8192};
    std::vector<TownRadio> radios;
    {
        StationService service(settings);
        fillCatalogue(service, trackCount, random, Ads::None);
        radios = makeTown(service, options.radios, SignedIn::No, random);
    }
    std::fprintf(stderr, "the town is built\n");
    Servers service(data.path, settings.database, postgres ? 2 : 1);
    boost::asio::io_context io;
    auto work = boost::asio::make_work_guard(io);
    Balancer balancer(io, service.ports(), mostConnections);
    Crowd crowd(io, balancer, std::move(radios), options.speed);
    std::thread loop([&io] { io.run(); });
    Moments moments;
    try {
        moments = live(crowd, service, postgres.get(), options,
                       [&io](const std::function<void()> &job) { boost::asio::post(io, job); });
    } catch (...) {
        io.stop();
        loop.join();
        throw;
    }
    io.stop();
    loop.join();
    service.stop();
    report(crowd.figures(), moments, options);
    StationService store(settings);
    figures::print("acknowledged thumbs that were lost", double(lostThumbs(store, crowd.figures().thumbs)), "", 0,
                   "of " + std::to_string(crowd.figures().thumbs.size()));
}

} // namespace

// arguments: radios, speed of their time against the clock's, sqlite or postgresql, "held"; none: 100,000 at 1, sqlite
int main(int count, char **texts)
{
    try {
        Options options;
        if (count > 1)
            options.radios = std::stoul(texts[1]);
        if (count > 2)
            options.speed = std::stod(texts[2]);
        const std::string store = count > 3 ? texts[3] : "sqlite";
        options.isPostgres = store == "postgresql";
        if (!options.isPostgres && store != "sqlite")
            throw std::runtime_error("the store is sqlite or postgresql, not " + store);
        options.isHeld = count > 4 && std::string(texts[4]) == "held";
        if (options.isPostgres && !velmora::PostgresServer::programs())
            throw std::runtime_error("PostgreSQL is not installed");
        figures::note("radios; seconds of theirs in one of the clock; store",
                      std::to_string(options.radios) + "; " + std::to_string(options.speed) + "; " +
                          (options.isPostgres ? "PostgreSQL, synced, two servers" : "SQLite, one server"));
        measure(options);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "bench-outage: %s\n", error.what());
        return 1;
    }
    return 0;
}
