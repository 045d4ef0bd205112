// The silence between two tracks that follow one another by themselves, with the real programs on loopback: from the
// last sample of one to the first sample of the next, at the sink. New playlists in between are included. A folder of
// tones of four seconds is played, so that many tracks follow one another soon. A track that is not heard to its last
// sample would make the figure better: such tracks are counted.
#include "device.h"
#include "figures.h"

#include "demomusic/flacfile.h"

#include <QCoreApplication>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

namespace demo = velmora::demo;

constexpr int trackMs = 4000;
constexpr int artists = 6;
constexpr int tracksOfArtist = 4;

// The service leaves out what is known to be shorter than twenty seconds, and plays what does not say how long it is: a
// FLAC file whose header counts no samples. False: not written.
bool hideLength(const std::filesystem::path &file)
{
    constexpr int totalSamples = 21; // its upper four bits are the lower ones of this byte
    std::fstream bytes(file, std::ios::in | std::ios::out | std::ios::binary);
    bytes.seekg(totalSamples);
    const char upper = static_cast<char>(bytes.get() & 0xf0);
    bytes.seekp(totalSamples);
    const std::array<char, 5> none{upper, 0, 0, 0, 0};
    bytes.write(none.data(), none.size());
    return static_cast<bool>(bytes.flush());
}

bool writeTones(const std::filesystem::path &folder)
{
    for (int number = 0; number < artists * tracksOfArtist; ++number) {
        demo::Buffer tone(demo::sampleRate * trackMs / 1000);
        for (size_t i = 0; i < tone.size(); ++i)
            tone[i] = 0.1F * std::sin(static_cast<float>(i) * 0.03F * (1 + 0.1F * static_cast<float>(number)));
        const std::string artist = "Fork " + std::to_string(number / tracksOfArtist);
        const std::string title = "Tone " + std::to_string(number);
        const std::filesystem::path file = folder / artist / "Tones" / (title + ".flac");
        std::filesystem::create_directories(file.parent_path());
        const demo::FlacTags tags{{"TITLE", title}, {"ARTIST", artist}, {"ALBUM", "Tones"}, {"GENRE", "Tones"}};
        if (!demo::writeFlac(tone, tone, tags, file) || !hideLength(file))
            return false;
    }
    return true;
}

} // namespace

// usage: bench-gap [CHANGES]
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const int changes = argc > 1 ? std::atoi(argv[1]) : 100;
    Device device;
    const QString music = device.path(QStringLiteral("tones"));
    const QString config = device.path(QStringLiteral("server.conf"));
    std::ofstream(config.toStdString()) << "[library]\nmusic = " << music.toStdString() << "\nanalysis = off\n";
    if (!writeTones(music.toStdString())) {
        std::fprintf(stderr, "cannot write into %s\n", qPrintable(music));
        return 1;
    }
    if (!device.prepare({QStringLiteral("--config"), config, QStringLiteral("--demo-account")}))
        return 1;

    const auto radio = device.startRadio(Device::observedSink, true);
    if (!radio->next("firstsample", {}, 30000)) {
        std::fprintf(stderr, "nothing plays: %s\n", radio->log().right(2000).constData());
        return 1;
    }
    std::vector<double> ms;
    int cutShort = 0;
    for (int i = 0; i < changes; ++i) {
        const auto last = radio->next("lastsample", {}, 60000);
        const auto first = last ? radio->next("firstsample", {}, 1000) : std::nullopt;
        if (!first) {
            std::fprintf(stderr, "the music stopped after %zu changes: %s\n%s\n", ms.size(),
                         device.status().left(900).constData(), radio->log().right(3000).constData());
            return 1;
        }
        ms.push_back(static_cast<double>(first->atUs - last->atUs) / 1000);
        cutShort += std::abs(last->detail.toInt() - trackMs) > 1 ? 1 : 0;
    }
    figures::note("silence between two tracks, median", figures::median(ms), " ms");
    figures::print("silence between two tracks, 99th percentile", figures::percentile(ms, 0.99), " ms", 150,
                   "of " + std::to_string(ms.size()));
    figures::note("silence between two tracks, longest", figures::percentile(ms, 1), " ms");
    figures::print("tracks not heard from the first to the last sample", cutShort, "", 0);
    return 0;
}
