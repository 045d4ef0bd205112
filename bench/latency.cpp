// The time until the listener hears sound, with the real programs on loopback: from the arrival of the station list to
// the first audio sample at the sink, and from a key to the first sample of the chosen station or next track.
//
// The sink says when the first sample of a track is due: bench/audiosink.cpp.
#include "device.h"
#include "figures.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QThread>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr int silenceMs = 5000;

// An advertisement has no album, and cannot be skipped.
bool playsTrack(Device &device)
{
    const QJsonObject labels =
        QJsonDocument::fromJson(device.status()).object().value(QStringLiteral("labels")).toObject();
    return !labels.value(QStringLiteral("albumLabel")).toString().isEmpty();
}

// A box that refuses the key (the skip limit) causes no silence: the music plays on. The box would take the next key,
// so it is answered here.
bool wasRefused(Device &device)
{
    const QJsonObject status = QJsonDocument::fromJson(device.status()).object();
    if (status.value(QStringLiteral("box")).isNull())
        return false;
    std::fprintf(stderr, "refused: %s\n", qPrintable(status.value(QStringLiteral("boxText")).toString()));
    device.key({QStringLiteral("select")});
    return true;
}

struct Waits {
    std::vector<double> ms;
    int silent = 0;

    // Silence counts as the longest wait. Leaving it out would improve the figure.
    void add(const Observation &from, const std::optional<Observation> &sound)
    {
        if (!sound)
            ++silent;
        ms.push_back(sound ? static_cast<double>(sound->atUs - from.atUs) / 1000 : silenceMs);
    }
    void report(const std::string &name, double bound) const
    {
        figures::note(name + ", median", figures::median(ms), " ms");
        figures::print(name + ", 99th percentile", figures::percentile(ms, 0.99), " ms", bound,
                       "of " + std::to_string(ms.size()) + "; no sound within 5 s: " + std::to_string(silent));
    }
};

} // namespace

// usage: bench-latency [CHANGES [STARTS]]
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const int changes = argc > 1 ? std::atoi(argv[1]) : 200;
    const int starts = argc > 2 ? std::atoi(argv[2]) : 200;
    Device device;
    if (!device.prepare())
        return 1;

    Waits start, station, skip;
    for (int i = -1; i < starts; ++i) { // the first is not measured: GStreamer loads the sink's plug-in in it
        const auto radio = device.startRadio(Device::observedSink, false);
        const auto list = radio->next("stationlist", {}, 20000);
        if (!list) {
            std::fprintf(stderr, "no station list: %s\n", radio->log().right(2000).constData());
            return 1;
        }
        const auto sound = radio->next("firstsample", {}, silenceMs);
        if (i >= 0)
            start.add(*list, sound);
        radio->process().kill();
        radio->process().waitForFinished();
    }
    if (starts > 0)
        start.report("station list to first sample", 1000);

    const auto radio = device.startRadio(Device::observedSink, true);
    if (!radio->next("firstsample", {}, 30000)) {
        std::fprintf(stderr, "nothing plays: %s\n", radio->log().right(2000).constData());
        return 1;
    }
    QThread::msleep(500);
    int refused = 0;
    for (int i = 0; i < changes; ++i) {
        // A station allows six skips an hour. One key in five is a skip, and the stations take turns.
        const bool isSkip = i % 5 == 4 && playsTrack(device);
        radio->forget();
        device.key(isSkip ? QStringList{QStringLiteral("next")}
                          : QStringList{QStringLiteral("down"), QStringLiteral("select")});
        const auto key = isSkip ? radio->next("press", "1000083", 2000) : radio->next("release", "1010000", 2000);
        if (!key) {
            std::fprintf(stderr, "the key did not arrive\n");
            continue;
        }
        const auto sound = radio->next("firstsample", {}, silenceMs);
        if (!sound && wasRefused(device)) {
            ++refused;
            continue;
        }
        if (!sound)
            std::fprintf(stderr, "no sound after %s: %s\n", isSkip ? "a skip" : "a change",
                         device.status().left(900).constData());
        (isSkip ? skip : station).add(*key, sound);
        QThread::msleep(300);
    }
    if (refused > 0)
        figures::note("keys that the radio refused with a message, not measured", refused, "");
    station.report("station chosen to first sample", 500);
    skip.report("skip to first sample", 500);
    return 0;
}
