// velmora-demomusic: writes the demo catalogue to a folder.

#include "demofolder.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <iostream>
#include <string_view>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace {

using namespace velmora::demo;

constexpr int exitUsage = 2;
constexpr int exitFailure = 1;

constexpr const char *usage =
    R"(usage: velmora-demomusic [--each N] [--attended] FOLDER

  Composes and renders original music: writes tagged FLAC files with covers to FOLDER/music, and advertisements to
  FOLDER/ads with their descriptions in FOLDER/ads.json. Existing files are kept.

  --each N      at most N tracks of each style (default: all)
  --attended    reads requests from standard input: one style a line, then an empty line. The program ends when
                standard input ends.

  Prints "style NAME" for each style, "ready N TOTAL" with the number of existing tracks, "made FILE" or
  "failed FILE" for each file, and "done".
)";

struct Options {
    int each = 1000;
    bool isAttended = false;
    bool showsHelp = false;
    std::filesystem::path folder;
};

bool parse(int argc, char *argv[], Options *options)
{
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument == "--help") {
            options->showsHelp = true;
        } else if (argument == "--attended") {
            options->isAttended = true;
        } else if (argument == "--each" && i + 1 < argc) {
            const std::string_view text = argv[++i];
            const auto result = std::from_chars(text.data(), text.data() + text.size(), options->each);
            if (result.ec != std::errc() || result.ptr != text.data() + text.size() || options->each < 1)
                return false;
        } else if (argument.starts_with("-") || !options->folder.empty()) {
            return false;
        } else {
            options->folder = argument;
        }
    }
    return options->showsHelp || !options->folder.empty();
}

void say(const std::string &line)
{
    // One write for each line, so that a reader never sees half a line.
    const std::string text = line + '\n';
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

// Reads requests for styles until standard input ends, then ends the program at once. An unfinished track leaves no
// incomplete file behind.
[[noreturn]] void attend(MakingOrder &order)
{
    std::set<std::string> styles;
    for (std::string line; std::getline(std::cin, line);) {
        if (line.empty())
            order.want(std::exchange(styles, {}));
        else
            styles.insert(line);
    }
    ::_exit(0);
}

} // namespace

int main(int argc, char *argv[])
{
    Options options;
    if (!parse(argc, argv, &options)) {
        std::fputs(usage, stderr);
        return exitUsage;
    }
    if (options.showsHelp) {
        std::fputs(usage, stdout);
        return 0;
    }
    ::umask(077);
    const std::vector<DemoTrack> tracks = tracksInTurn(options.each);
    DemoFolder folder(options.folder, tracks);
    if (!folder.prepare()) {
        std::fprintf(stderr, "velmora-demomusic: cannot write into %s\n", options.folder.c_str());
        return exitFailure;
    }
    MakingOrder order(tracks, [&](const DemoTrack &track) { return folder.has(folder.fileOf(track)); });
    if (options.isAttended)
        std::thread(attend, std::ref(order)).detach();
    std::set<std::string> styles;
    for (const DemoTrack &track : tracks)
        styles.insert(track.style);
    for (const std::string &style : styles)
        say("style " + style);
    const auto made = std::count_if(tracks.begin(), tracks.end(),
                                    [&](const DemoTrack &track) { return folder.has(folder.fileOf(track)); });
    say("ready " + std::to_string(made) + " " + std::to_string(tracks.size()));
    bool isWhole = true;
    folder.make(order, [&](const std::filesystem::path &file, bool isMade) {
        isWhole = isWhole && isMade;
        say((isMade ? "made " : "failed ") + file.string());
    });
    say("done");
    std::fflush(nullptr);
    ::_exit(isWhole ? 0 : exitFailure); // the thread that reads requests may still be waiting
}
