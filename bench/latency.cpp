// How long the listener waits for sound, with the real programs on loopback: from the station list's arrival to the
// first audio sample at the sink, and from the key to the first sample of what it chose (a station or the next track).
//
// The sink is a file, which every track begins anew: a track's first sample has reached the sink when the file has
// become shorter than it was and is not empty any more.
#include "device.h"
#include "figures.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QThread>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <thread>

#include <sys/stat.h>
#include <unistd.h>

namespace {

// Looks at the file on a thread of its own, so that no beginning is missed.
class AudioFile {
public:
    explicit AudioFile(const QString &path)
        : m_path(QFile::encodeName(path))
        , m_thread([this] { watch(); })
    {
    }
    ~AudioFile()
    {
        m_isEnding = true;
        m_thread.join();
        ::unlink(m_path.constData());
    }
    QByteArray sink() const { return "filesink sync=true buffer-mode=unbuffered location=" + m_path; }

    // When new music first sounded after this moment; -1: it did not within 5 s from now.
    qint64 beginningAfter(qint64 us)
    {
        for (int tries = 0; tries < 1000; ++tries) {
            {
                const std::lock_guard lock(m_mutex);
                for (const qint64 beginning : m_beginnings)
                    if (beginning > us)
                        return beginning;
            }
            QThread::msleep(5);
        }
        return -1;
    }

private:
    void watch()
    {
        off_t sizeBefore = 0;
        bool isNew = true;
        while (!m_isEnding) {
            struct stat now {};
            if (::stat(m_path.constData(), &now) == 0) {
                isNew = isNew || now.st_size < sizeBefore;
                sizeBefore = now.st_size;
                if (isNew && now.st_size > 0) {
                    isNew = false;
                    const std::lock_guard lock(m_mutex);
                    m_beginnings.push_back(nowUs());
                }
            }
            QThread::usleep(500);
        }
    }

    const QByteArray m_path;
    std::atomic<bool> m_isEnding{false};
    std::mutex m_mutex; // guards m_beginnings
    std::vector<qint64> m_beginnings;
    std::thread m_thread; // last: it uses the others
};

// An advertisement has no album, and cannot be skipped.
bool playsTrack(Device &device)
{
    const QJsonObject labels =
        QJsonDocument::fromJson(device.status()).object().value(QStringLiteral("labels")).toObject();
    return !labels.value(QStringLiteral("albumLabel")).toString().isEmpty();
}

// A box that refuses the key (the skip limit) is no silence: the music plays on. The box takes the next key, which
// would then choose nothing: so it is answered.
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

    void add(qint64 fromUs, qint64 toUs)
    {
        if (toUs < 0)
            ++silent;
        // Silence counts as the longest wait, or it would make the figure better.
        if (toUs < 0)
            ms.push_back(5000);
        else
            ms.push_back(static_cast<double>(toUs - fromUs) / 1000);
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
    for (int i = 0; i < starts; ++i) {
        AudioFile audio(device.path(QStringLiteral("audio%1").arg(i)));
        const auto radio = device.startRadio(audio.sink(), false);
        const auto list = radio->next("stationlist", {}, 20000);
        if (!list) {
            std::fprintf(stderr, "no station list: %s\n", radio->log().right(2000).constData());
            return 1;
        }
        start.add(list->atUs, audio.beginningAfter(list->atUs));
        radio->process().kill();
        radio->process().waitForFinished();
    }
    if (starts > 0)
        start.report("station list to first sample", 1000);

    AudioFile audio(device.path(QStringLiteral("audio")));
    const auto radio = device.startRadio(audio.sink(), true);
    audio.beginningAfter(0);
    QThread::msleep(500);
    int refused = 0;
    for (int i = 0; i < changes; ++i) {
        // A station allows six skips an hour: one key in five is one, which meets all stations in turn.
        const bool isSkip = i % 5 == 4 && playsTrack(device);
        radio->forget();
        device.key(isSkip ? QStringList{QStringLiteral("next")}
                          : QStringList{QStringLiteral("down"), QStringLiteral("select")});
        const auto key = isSkip ? radio->next("press", "1000083", 2000) : radio->next("release", "1010000", 2000);
        if (!key) {
            std::fprintf(stderr, "the key did not arrive\n");
            continue;
        }
        const qint64 soundUs = audio.beginningAfter(key->atUs);
        if (soundUs < 0 && wasRefused(device)) {
            ++refused;
            continue;
        }
        if (soundUs < 0)
            std::fprintf(stderr, "no sound after %s: %s\n", isSkip ? "a skip" : "a change",
                         device.status().left(900).constData());
        (isSkip ? skip : station).add(key->atUs, soundUs);
        QThread::msleep(300);
    }
    if (refused > 0)
        figures::note("keys that the radio refused with a message, not measured", refused, "");
    station.report("station chosen to first sample", 500);
    skip.report("skip to first sample", 500);
    return 0;
}
