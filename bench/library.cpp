// Scanning own music: a folder of copies of one tagged file, without listening; then again, with nothing changed.
#include "server/library/library.h"
#include "server/api/stationservice.h"

#include "bench/figures.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sys/resource.h>

using namespace velmora::server;
namespace fs = std::filesystem;
using SteadyClock = std::chrono::steady_clock;

namespace {

void append(std::string &bytes, uint32_t value, int count, bool isBig)
{
    for (int i = 0; i < count; ++i)
        bytes += static_cast<char>(value >> 8 * (isBig ? count - 1 - i : i));
}

// An MP3 file: ID3v2 tags and silent frames of 128 kb/s for about half a minute.
std::string taggedMp3(int number)
{
    std::string frames;
    const auto text = [&](const char *name, const std::string &value) {
        frames += name;
        append(frames, static_cast<uint32_t>(value.size() + 1), 4, true);
        frames += std::string(2, '\0') + '\3' + value;
    };
    text("TIT2", "Song " + std::to_string(number));
    text("TPE1", "Artist " + std::to_string(number / 40));
    text("TALB", "Album " + std::to_string(number / 10));
    text("TCON", number % 3 == 0 ? "Folk" : "Ambient");
    text("TYER", "1999");
    std::string file = "ID3\3";
    file += std::string(2, '\0');
    for (int shift = 21; shift >= 0; shift -= 7)
        file += static_cast<char>(frames.size() >> shift & 0x7f);
    file += frames;
    std::string frame("\xff\xfb\x90\x64", 4);
    frame.resize(417, '\0');
    for (int i = 0; i < 1150; ++i) {
        file += frame;
        file.back() = static_cast<char>(number >> 8 * (i % 3)); // no two files have the same sound
    }
    return file;
}

double cpuSeconds()
{
    double sum = 0;
    for (const int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage usage{};
        ::getrusage(who, &usage);
        for (const timeval &time : {usage.ru_utime, usage.ru_stime})
            sum += static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    }
    return sum;
}

} // namespace

// Argument: how many files (4000).
int main(int argc, char *argv[])
{
    const int count = argc > 1 ? std::atoi(argv[1]) : 4000;
    char directory[] = "/tmp/velmora-bench-XXXXXX";
    if (!mkdtemp(directory))
        return 1;
    const fs::path music = fs::path(directory) / "music";
    for (int i = 0; i < count; ++i) {
        const fs::path folder = music / std::to_string(i / 40) / std::to_string(i / 10);
        if (i % 10 == 0)
            fs::create_directories(folder);
        std::ofstream(folder / (std::to_string(i) + ".mp3"), std::ios::binary) << taggedMp3(i);
    }
    {
        ServiceSettings settings;
        settings.dataDirectory = fs::path(directory) / "data";
        StationService service(settings);
        LibrarySettings library;
        library.config.folders = {music};
        library.config.isAnalysed = false;
        library.dataDirectory = service.dataDirectory();
        library.workerProgram = BENCH_MEDIA;
        library.tick = std::chrono::milliseconds(10);
        const auto wait = [](Library &scanner) {
            while (scanner.status().scans == 0)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
        };
        double cpu = cpuSeconds();
        auto begin = SteadyClock::now();
        const auto seconds = [&] { return std::chrono::duration<double>(SteadyClock::now() - begin).count(); };
        {
            Library scanner(service.store, service.catalogue, settings.clock, library);
            scanner.start();
            while (service.catalogue.counts().playable < 50)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            figures::print("library, first fifty tracks play", seconds(), "s", 10);
            wait(scanner);
            figures::note("library, first scan", count / seconds(), "files/s");
        }
        // The worker's time counts once it has ended.
        figures::print("library, CPU of a file at the first scan", (cpuSeconds() - cpu) / count * 1000, "ms", 2);
        cpu = cpuSeconds();
        begin = SteadyClock::now();
        Library scanner(service.store, service.catalogue, settings.clock, library);
        scanner.start();
        wait(scanner);
        figures::print("library, nothing changed, 50,000 files", seconds() * 50000 / count, "s", 6, "extrapolated");
    }
    fs::remove_all(directory);
    return 0;
}
