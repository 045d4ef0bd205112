// Own music: scanning, listening, stations of a large library, and playing while files are listened to.
#include "server/library/library.h"
#include "server/api/apiserver.h"
#include "server/library/halffloat.h"
#include "server/store/store.h"

#include "bench/figures.h"
#include "bench/librarymusic.h"
#include "tests/server/httpclient.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <random>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace velmora;
using bench::makeManyTracks;
using bench::renderMusic;
using bench::taggedMp3;
using namespace velmora::server;
using namespace std::chrono_literals;
using nlohmann::json;
namespace fs = std::filesystem;
using SteadyClock = std::chrono::steady_clock;

namespace {

double secondsSince(SteadyClock::time_point begin)
{
    return std::chrono::duration<double>(SteadyClock::now() - begin).count();
}

double cpuSeconds(int who)
{
    rusage usage{};
    ::getrusage(who, &usage);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double threadCpuMs()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

// A line of /proc/self/status, in MB.
double memoryMb(const std::string &name)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name + ":"))
            return std::atof(line.c_str() + name.size() + 1) / 1024;
    }
    return 0;
}

// A service with one listener.
class Listener {
public:
    explicit Listener(const fs::path &data)
        : service([&] {
            ServiceSettings settings;
            settings.dataDirectory = data;
            settings.passwordCost = {1, 8192};
            return settings;
        }())
        , m_dispatcher(service)
    {
        AccountId id = 0;
        service.createAccount("mira@example.org", "seven small lamps", {}, &id);
        m_token = call("partnerLogin", {{"deviceKey", randomToken()}}).at("partnerToken");
        m_token = call("userLogin",
                       {{"loginType", "user"}, {"userName", "mira@example.org"}, {"password", "seven small lamps"}})
                      .at("userToken");
    }

    // Its data; an object without members when it failed.
    json call(const std::string &function, const json &parameters)
    {
        const Answer answer = m_dispatcher.answer({"v1", function, parameters.dump(), "Bearer " + m_token, "", "::1"});
        return answer.body.value("data", json::object());
    }
    // A station from the first artist that the search finds; empty when it finds none.
    std::string stationFrom(const std::string &artist)
    {
        const json artists = call("search", {{"text", artist}}).value("artists", json::array());
        if (artists.empty())
            return {};
        const json made = call("createStation", {{"musicToken", artists[0].at("musicToken")}});
        return made.contains("station") ? made["station"].value("stationToken", "") : std::string();
    }
    json entries(const std::string &station)
    {
        return call("getPlaylist", {{"stationToken", station}}).value("entries", json::array());
    }
    const std::string &token() const { return m_token; }

    StationService service;

private:
    Dispatcher m_dispatcher;
    std::string m_token;
};

// Takes the store's lock as a request does, again and again, and notes how long it waited.
class LockAsker {
public:
    explicit LockAsker(Store &store)
        : m_thread([this, &store] {
            while (!m_isStopping) {
                const auto begin = SteadyClock::now();
                store.lock();
                m_waits.push_back(secondsSince(begin) * 1000);
                std::this_thread::sleep_for(1ms);
            }
        })
    {
    }
    std::vector<double> stop()
    {
        m_isStopping = true;
        if (m_thread.joinable())
            m_thread.join();
        return m_waits;
    }
    ~LockAsker() { stop(); }

private:
    std::atomic<bool> m_isStopping{false};
    std::vector<double> m_waits;
    std::thread m_thread;
};

void printWaits(const std::string &what, const std::vector<double> &waits)
{
    figures::print("library, longest wait for the lock while " + what, figures::percentile(waits, 1), " ms", 15);
}

LibrarySettings settingsFor(const fs::path &music, const StationService &service, bool isAnalysed)
{
    LibrarySettings settings;
    settings.config.folders = {music};
    settings.config.isAnalysed = isAnalysed;
    settings.dataDirectory = service.dataDirectory();
    settings.workerProgram = BENCH_MEDIA;
    settings.tick = 10ms;
    return settings;
}

void waitForScan(Library &library)
{
    while (library.status().scans == 0)
        std::this_thread::sleep_for(1ms);
}

void measureScan(const fs::path &directory, int count)
{
    const fs::path music = directory / "scanned";
    for (int i = 0; i < count; ++i) {
        const fs::path folder = music / std::to_string(i / 40) / std::to_string(i / 10);
        if (i % 10 == 0)
            fs::create_directories(folder);
        std::ofstream(folder / (std::to_string(i) + ".mp3"), std::ios::binary) << taggedMp3(i);
    }
    Listener listener(directory / "scan-data");
    StationService &service = listener.service;
    double cpu = cpuSeconds(RUSAGE_SELF) + cpuSeconds(RUSAGE_CHILDREN);
    auto begin = SteadyClock::now();
    {
        Library library(service.store, service.catalogue, service.clock, settingsFor(music, service, false));
        library.start();
        std::string station;
        while (station.empty() || listener.entries(station).empty()) {
            std::this_thread::sleep_for(10ms);
            if (station.empty())
                station = listener.stationFrom("Artist");
        }
        figures::print("library, first station of a new folder plays", secondsSince(begin), " s", 10);
        waitForScan(library);
        figures::note("library, first scan, wall time", count / secondsSince(begin), " files/s");
    }
    // The worker's time counts once it has ended.
    cpu = (cpuSeconds(RUSAGE_SELF) + cpuSeconds(RUSAGE_CHILDREN) - cpu) / count * 1000;
    figures::print("library, first scan, CPU of a file", cpu, " ms", 2, "500 files/s on one core");
    cpu = cpuSeconds(RUSAGE_SELF);
    begin = SteadyClock::now();
    Library library(service.store, service.catalogue, service.clock, settingsFor(music, service, false));
    library.start();
    waitForScan(library);
    const std::string remark = std::to_string(count) + " files, scaled up";
    figures::print("library, nothing changed, 50,000 files, wall time", secondsSince(begin) * 50000 / count, " s", 6,
                   remark);
    figures::note("library, nothing changed, 50,000 files, CPU", (cpuSeconds(RUSAGE_SELF) - cpu) * 50000 / count, " s",
                  remark);
}

// Rows as a scan and listening leave them: 12 tracks an artist, one file each, descriptors drawn by chance.
void fillStore(StationService &service, int count)
{
    std::mt19937 random(5);
    std::normal_distribution<float> normal;
    constexpr int styles = 40;
    constexpr int inBatch = 5000;
    for (int first = 0; first < count; first += inBatch) {
        std::vector<Track> tracks;
        for (int i = first; i < std::min(count, first + inBatch); ++i) {
            Track track;
            track.publicId = "b" + std::to_string(i);
            track.song = "Song " + std::to_string(i);
            track.artist = "Artist " + std::to_string(i / 12);
            track.album = "Album " + std::to_string(i / 12);
            track.style = "style " + std::to_string(i / 12 % styles);
            track.durationSeconds = 120 + static_cast<int>(random() % 240);
            track.audioFile = "/nowhere/" + std::to_string(i) + ".mp3";
            track.audioType = "audio/mpeg";
            track.isPlayable = true;
            tracks.push_back(std::move(track));
        }
        service.catalogue.put(tracks);
    }
    const Store::Lock db = service.store.lock();
    Transaction change(*db);
    const int64_t root =
        db->number("INSERT INTO roots (path, is_present, scanned_at) VALUES (CAST('/nowhere' AS BLOB), "
                   "1, 1) RETURNING id");
    db->run("UPDATE tracks SET source = 'folder', seconds = duration + (id % 1000) / 1000.0");
    db->run("INSERT INTO files (root_id, path, size, mtime_ns, inode, track_id, sound_print, worker_version, "
            "analysis_version) SELECT ?1, CAST(public_id || '.mp3' AS BLOB), 5000000, id, id, id, randomblob(17), ?2, "
            "?3 FROM tracks",
            root, media::workerVersion, media::descriptorVersion);
    std::vector<media::Descriptor> middles(static_cast<size_t>(styles) * 5);
    for (media::Descriptor &middle : middles)
        std::generate(middle.begin(), middle.end(), [&] { return normal(random); });
    for (int64_t id = 1; id <= count; ++id) {
        media::Descriptor numbers = middles[random() % middles.size()];
        for (float &number : numbers)
            number += 0.7f * normal(random);
        db->run("INSERT INTO descriptors (track_id, version, numbers) VALUES (?1, ?2, ?3)", id,
                media::descriptorVersion, Blob{halves(numbers)});
    }
    change.commit();
}

void measureLargeLibrary(const fs::path &directory, int count)
{
    {
        ServiceSettings settings;
        settings.dataDirectory = directory / "large-data";
        StationService filled(settings);
        fillStore(filled, count);
    }
    Listener listener(directory / "large-data");
    StationService &service = listener.service;
    const std::string tracks = std::to_string(count) + " tracks";
    LibraryStore store(service.store, service.catalogue, service.clock);
    const double cpu = cpuSeconds(RUSAGE_SELF);
    const auto begin = SteadyClock::now();
    std::vector<std::string> stations;
    for (int i = 0; i < 8; ++i)
        stations.push_back(listener.stationFrom("Artist " + std::to_string(100 + i * 37)));
    if (listener.entries(stations[0]).empty())
        figures::note("library, a large library", "no station plays");
    figures::note("library, first list of " + tracks + " after a start", secondsSince(begin), " s wall time");
    std::vector<double> first, warm, lists;
    const auto ask = [&](const std::string &station, std::vector<double> &ms) {
        const double before = threadCpuMs();
        const json entries = listener.entries(station);
        const double used = threadCpuMs() - before;
        lists.push_back(used);
        if (!entries.empty())
            ms.push_back(used);
        for (const json &entry : entries) {
            if (entry["type"] == "track" && lists.size() % 4 == 0)
                listener.call("addFeedback", {{"stationToken", station},
                                              {"trackToken", entry["track"]["trackToken"]},
                                              {"isPositive", lists.size() % 8 != 0}});
        }
    };
    for (const std::string &station : stations)
        ask(station, first);
    for (int round = 0; round < 25; ++round) {
        for (const std::string &station : stations)
            ask(station, warm);
    }
    figures::note("library, list of a station not asked before, CPU, median", figures::median(first), " ms", tracks);
    figures::print("library, list of four, CPU, median", figures::median(warm), " ms", 2,
                   tracks + "; after every fourth list four thumbs");
    figures::note("library, list of four, CPU, slowest", figures::percentile(warm, 1), " ms");
    figures::print("library, memory", memoryMb("VmRSS") - memoryMb("RssFile"), " MB", 150,
                   tracks + ", without the mapped database");
    figures::note("library, memory, highest, mapped database included", memoryMb("VmHWM"), " MB");
    figures::note("library, CPU since the start of that service", cpuSeconds(RUSAGE_SELF) - cpu, " s");

    // What the scanner and the listeners ask of the store.
    const auto measured = [&](const char *what, const auto &use) {
        LockAsker asker(service.store);
        std::this_thread::sleep_for(5ms);
        use();
        printWaits(what, asker.stop());
    };
    measured("the page counts", [&] { store.counts(); });
    measured("a scan reads what is known", [&] { store.files(1); });
    measured("a listener looks for files", [&] {
        for (uint32_t i = 0; i < 10; ++i)
            store.nextToAnalyse(8, i * 1000);
    });
    measured("a listener looks for covers", [&] { store.albumsWithoutCover(16); });
    measured("the page lists what was left out", [&] { store.leftOutFiles({}, 0, 100); });
    measured("/health counts", [&] { service.catalogue.counts(); });
    measured("styles are listed", [&] { service.catalogue.styles(); });
    std::mt19937 random(6);
    std::normal_distribution<float> normal;
    measured("analyses are stored", [&] {
        for (int i = 0; i < 100; ++i) {
            media::MediaAnalysis analysis;
            analysis.seconds = 120 + i;
            analysis.numbers.emplace();
            std::generate(analysis.numbers->begin(), analysis.numbers->end(), [&] { return normal(random); });
            const int64_t id = 1 + i * (count / 100);
            store.putAnalysis({id, id, "/nowhere", "x", {5000000, id, id}, analysis.seconds}, analysis, {});
        }
    });
    measured("batches are stored", [&] {
        for (int batch = 0; batch < 10; ++batch) {
            std::vector<ReadFile> files;
            for (int i = 0; i < static_cast<int>(LibraryStore::mostInBatch); ++i) {
                ReadFile file;
                file.path = "new/" + std::to_string(batch) + "-" + std::to_string(i) + ".mp3";
                file.hasTags = true;
                file.tags.container = "mpeg";
                file.tags.seconds = 200;
                file.tags.soundPrint = "print " + file.path;
                file.facts.song = "New " + std::to_string(i);
                file.facts.artist = "New Artist " + std::to_string(i / 10);
                file.facts.album = "New Album";
                file.facts.styles = {"folk"};
                files.push_back(std::move(file));
            }
            store.put(1, files, [](const Root &, const std::string &, const FileStamp &) { return false; });
        }
    });
    std::vector<int64_t> some;
    for (int64_t id = 1; id <= 1000; ++id)
        some.push_back(id);
    measured("files are missing or back", [&] {
        store.setMissing(some, true);
        store.setMissing(some, false);
    });
}

void measureListening(const fs::path &music)
{
    std::map<std::string, std::pair<double, double>> used; // CPU and music in seconds, by kind
    for (const auto &entry : fs::directory_iterator(music)) {
        const int file = ::open(entry.path().c_str(), O_RDONLY | O_CLOEXEC);
        const double before = cpuSeconds(RUSAGE_CHILDREN);
        media::MediaAnalysis analysis;
        std::string problem;
        media::Outcome outcome{};
        {
            media::MediaWorker worker(BENCH_MEDIA);
            outcome = worker.analyse(file, 300, &analysis, &problem);
        }
        ::close(file);
        if (outcome != media::Outcome::Done)
            figures::note("library, " + entry.path().filename().string(), "not listened to: " + problem);
        auto &[cpu, seconds] = used[entry.path().extension()];
        cpu += cpuSeconds(RUSAGE_CHILDREN) - before;
        seconds += analysis.seconds;
    }
    for (const auto &[kind, sums] : used)
        figures::print("library, listening to a three-minute track, CPU, " + kind, sums.first / sums.second * 180, " s",
                       2);
}

// Plays a track at its own speed over HTTP while the rest is listened to: what arrives must stay ahead of what plays.
void measurePlaying(const fs::path &directory, const fs::path &music, const std::string &what)
{
    Listener listener(directory / (music.filename().string() + "-data"));
    StationService &service = listener.service;
    LibrarySettings settings = settingsFor(music, service, true);
    settings.config.workers = 2;
    Library library(service.store, service.catalogue, service.clock, settings);
    ListenSettings listen;
    listen.port = 0;
    listen.logsRequests = false;
    ApiServer server(service, listen);
    server.start();
    LockAsker asker(service.store);
    library.start();
    waitForScan(library);
    const std::string station = listener.stationFrom("Player");
    std::atomic<bool> isStopping{false};
    double lost = 0, played = 0;
    std::thread radio([&] {
        while (!isStopping) {
            const json entries = listener.entries(station);
            for (const json &entry : entries) {
                const json track = entry.value("track", json::object());
                const std::string address = track.value("audioUrl", "");
                const double duration = track.value("durationSeconds", 0.0);
                if (address.empty() || duration < 1 || isStopping)
                    continue;
                // A second is buffered before it plays; a piece that comes later than its turn is silence.
                const auto begin = SteadyClock::now() + 1s;
                double silence = 0;
                const std::string path = address.substr(service.addresses.base().size());
                const auto whole = httpRequest(server.port(), "HEAD", path).header("Content-Length");
                HttpClient client(server.port());
                client.send("GET " + path + " HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n");
                double got = 0;
                while (const size_t count = isStopping ? 0 : client.read(64 * 1024)) {
                    got += static_cast<double>(count);
                    const double due = duration * got / std::stod(whole) + silence;
                    const double late = secondsSince(begin) - due;
                    silence += std::max(0.0, late);
                    if (late < -2) // no further ahead than a radio
                        std::this_thread::sleep_for(std::chrono::duration<double>(-late - 2));
                }
                lost += silence;
                played += std::max(0.0, std::chrono::duration<double>(SteadyClock::now() - begin).count());
            }
        }
    });
    std::vector<double> ms;
    const http::Headers headers = {{"Authorization", "Bearer " + listener.token()},
                                   {"Content-Type", "application/json"}};
    const auto begin = SteadyClock::now();
    while (library.status().counts.toAnalyse > 0 || secondsSince(begin) < 10) {
        const auto asked = SteadyClock::now();
        const HttpAnswer answer =
            httpPost(server.port(), "/v1/getPlaylist", json{{"stationToken", station}}.dump(), headers);
        if (answer.status == 200)
            ms.push_back(secondsSince(asked) * 1000);
        std::this_thread::sleep_for(50ms);
        if (secondsSince(begin) > 180)
            break;
    }
    isStopping = true;
    radio.join();
    library.stop();
    const auto counts = library.store().counts();
    const std::string remark = std::to_string(ms.size()) + " lists; listened to " + std::to_string(counts.analysed) +
                               " files meanwhile, " + std::to_string(counts.toAnalyse) + " left";
    figures::print("library, list while " + what + " are listened to, 99th percentile", figures::percentile(ms, 0.99),
                   " ms", 50, remark);
    figures::print("library, sound lost while " + what + " are listened to", lost, " s", 1,
                   std::to_string(static_cast<int>(played)) + " s played");
    printWaits(what + " are listened to", asker.stop());
    server.stop();
}

} // namespace

// Arguments: how many files are scanned (5000), how many tracks the large library has (100000), how many files of each
// of six pieces are rendered and listened to (4), how many short tracks wait to be listened to while one plays, for
// three minutes at most (50000), the folder where these are kept for the next time; 0 leaves that out.
int main(int argc, char *argv[])
{
    const auto argument = [&](int place, int otherwise) { return argc > place ? std::atoi(argv[place]) : otherwise; };
    char made[] = "/tmp/velmora-bench-XXXXXX";
    if (!mkdtemp(made))
        return 1;
    const fs::path directory = made;
    if (const int files = argument(1, 5000); files > 0)
        measureScan(directory, files);
    if (const int tracks = argument(2, 100000); tracks > 0)
        measureLargeLibrary(directory, tracks);
    if (const int copies = argument(3, 4); copies > 0) {
        if (renderMusic(directory / "music", copies)) {
            measureListening(directory / "music");
            measurePlaying(directory, directory / "music", "files");
        } else {
            figures::note("library, listening", "not measured: no music could be rendered");
        }
    }
    if (const int tracks = argument(4, 50000); tracks > 0) {
        const fs::path many = argc > 5 ? fs::path(argv[5]) : directory / "many";
        if (fs::exists(many) || makeManyTracks(many, tracks))
            measurePlaying(directory, many, std::to_string(tracks) + " files");
        else
            figures::note("library, playing while many files are listened to", "not measured: the disk is full");
    }
    fs::remove_all(directory);
    return 0;
}
