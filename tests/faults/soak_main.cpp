// velmora-soak: the real radio on the real service for hours of its own time, with a fault every twenty seconds of it.
// Started by tools/soak.

#include "e2e/journey.h"
#include "faults/faultproxy.h"
#include "faults/menuline.h"
#include "faults/processsize.h"
#include "faults/rig.h"
#include "platform/netcommon/device/remotekeytable.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QUrl>

#include <cmath>
#include <cstdio>
#include <map>
#include <random>
#include <vector>

namespace {

using faults::Fault;
using Kind = Fault::Kind;

constexpr int lookMs = 100;
constexpr double faultEvery = 20; // seconds of its own time
constexpr double thumbEvery = 60; // the same: the library takes a list that is used up so fast for unplayed
constexpr double sampleEvery = 5; // seconds
constexpr double recovery = 20;   // seconds after a fault in which silence is its
constexpr double lostSecond = 1;  // of silence without a fault
constexpr int bufferMs = 93;      // of sound, that leave the decoder at once: 4,096 samples
constexpr double warmUp = 0.5;    // of the time, before slopes are taken

// What a radio is expected to survive without a word.
const std::vector<Fault> &palette()
{
    static const std::vector<Fault> faults = {
        {.kind = Kind::Reset, .path = "/v1/", .times = 1},
        {.kind = Kind::Close, .path = "/v1/", .amount = 50, .times = 1},
        {.kind = Kind::Status, .path = "/v1/", .amount = 502, .times = 1},
        {.kind = Kind::Code, .path = "/v1/", .amount = 5000, .times = 1},
        {.kind = Kind::Code, .path = "/v1/", .amount = 5097, .times = 1},
        {.kind = Kind::Delay, .path = "/v1/", .amount = 300, .times = 2},
        {.kind = Kind::Reset, .path = "/media/audio", .amount = 100000, .times = 1},
        {.kind = Kind::Close, .path = "/media/audio", .amount = 500000, .times = 2},
        {.kind = Kind::Status, .path = "/media/audio", .amount = 404, .times = 1},
        {.kind = Kind::Status, .path = "/media/audio", .amount = 503, .times = 1},
        {.kind = Kind::Garbage, .path = "/media/audio", .times = 1},
        {.kind = Kind::Longer, .path = "/media/audio", .amount = 5000, .times = 1},
        {.kind = Kind::Html, .path = "/media/art", .times = 1},
        {.kind = Kind::Garbage, .path = "/media/art", .times = 1},
        {.kind = Kind::Outage, .lasts = 0.5},
    };
    return faults;
}

// Lines of the logs that say that something is wrong. Those that a fault of the palette brings about are expected.
const QRegularExpression &complaint()
{
    static const QRegularExpression found("Sanitizer|runtime error|CRITICAL|WARNING|[Aa]ssert|QObject|QTimer|QSocket|"
                                          "terminate|exception|[Ww]arning|corrupt|leak");
    return found;
}

struct Sample {
    double hours; // of its own time
    faults::ProcessSize size;
};

struct Slope {
    double perHour = 0;
    double drift = 0; // over the samples
    double noise = 0; // standard deviation of what the line leaves
    bool isFlat() const { return std::abs(drift) <= 2 * noise || std::abs(drift) < 1; }
};

template <class Value>
Slope slopeOf(const std::vector<Sample> &all, Value value)
{
    const std::vector<Sample> samples(all.begin() + std::ptrdiff_t(double(all.size()) * warmUp), all.end());
    const double n = double(samples.size());
    double x = 0, y = 0, xx = 0, xy = 0;
    for (const Sample &sample : samples) {
        x += sample.hours / n;
        y += value(sample.size) / n;
    }
    for (const Sample &sample : samples) {
        xx += (sample.hours - x) * (sample.hours - x);
        xy += (sample.hours - x) * (value(sample.size) - y);
    }
    Slope slope;
    if (n < 3 || xx == 0)
        return slope;
    slope.perHour = xy / xx;
    slope.drift = slope.perHour * (samples.back().hours - samples.front().hours);
    for (const Sample &sample : samples) {
        const double left = value(sample.size) - y - slope.perHour * (sample.hours - x);
        slope.noise += left * left / n;
    }
    slope.noise = std::sqrt(slope.noise);
    return slope;
}

class Soak {
public:
    Soak(double hours, double minutes, double speed, unsigned seed)
        : m_hours(hours)
        , m_minutes(minutes)
        , m_chance(seed)
        , m_journey(
              {.radioUrl = QStringLiteral("http://127.0.0.1:%1").arg(m_proxy.port()),
               .library = faults::shortLibrary(),
               .sink =
                   QStringLiteral("identity sleep-time=%1 ! fakesink sync=false").arg(int(bufferMs * 1000 / speed))})
    {
    }

    int run()
    {
        if (!m_journey.prepare())
            return failed(m_journey.problem());
        m_proxy.setService(QUrl(m_journey.serverUrl()).port());
        m_journey.launch();
        if (!m_journey.waitForAudio(1, 60))
            return failed("no music at the start");
        m_line = std::make_unique<faults::MenuLine>(m_journey.root() + "/menu.sock");
        m_pid = m_journey.radioPid();
        follow();
        if (!m_journey.exits())
            complain("it does not exit");
        report();
        return m_failures > 0 ? 1 : 0;
    }

private:
    int failed(const QString &problem)
    {
        std::fprintf(stderr, "soak: %s\n", qPrintable(problem));
        return 1;
    }

    void complain(const QString &text)
    {
        ++m_failures;
        std::printf("soak: at %.2f h: %s\n", m_audio / 3600, qPrintable(text));
        std::fflush(stdout);
    }

    void follow()
    {
        QElapsedTimer clock;
        clock.start();
        double nextFault = faultEvery, nextThumb = thumbEvery, nextSample = 0;
        double silentSince = 0, lastFault = -recovery;
        while (m_audio < m_hours * 3600 && double(clock.elapsed()) < m_minutes * 60000) {
            const double now = double(clock.elapsed()) / 1000;
            const QJsonObject status = m_line->status();
            if (!status.value("answering").toBool())
                return complain("the radio does not answer");
            const double audio = status.value("audioSeconds").toDouble();
            const QString song = status.value("labels").toObject().value("songLabel").toString();
            m_changes += song != m_song && !song.isEmpty() ? 1 : 0;
            if (!song.isEmpty())
                m_song = song;
            if (audio > m_audio) {
                if (now - silentSince >= lostSecond && silentSince > lastFault + recovery)
                    complain(QStringLiteral("%1 s lost without a fault").arg(now - silentSince, 0, 'f', 1));
                m_longest = std::max(m_longest, now - silentSince);
                silentSince = now;
            }
            m_audio = audio;
            if (status.value("box").isString())
                answerBox(status.value("boxText").toString());
            if (!m_proxy.isOver())
                lastFault = now;
            if (audio >= nextFault) {
                std::uniform_int_distribution<size_t> any(0, palette().size() - 1);
                m_proxy.begin({palette()[any(m_chance)]});
                nextFault = audio + faultEvery;
                ++m_faults;
            }
            const bool isAd = status.value("labels").toObject().value("albumLabel").toString().isEmpty();
            if (audio >= nextThumb && !isAd) {
                m_line->key(netcommon::keys::keyByName("green")->key);
                nextThumb = audio + thumbEvery;
            }
            if (now >= nextSample) {
                m_samples.push_back({audio / 3600, faults::sizeOf(m_pid)});
                nextSample = now + sampleEvery;
                if (m_samples.size() % 60 == 0)
                    progress();
            }
            if (now - silentSince > 120)
                return complain("no music any more");
            QTest::qWait(lookMs);
        }
    }

    // A listener closes it and chooses a station.
    void answerBox(const QString &text)
    {
        complain("a box: " + text);
        for (const char *name : {"select", "down", "select"}) {
            m_line->key(netcommon::keys::keyByName(name)->key);
            QTest::qWait(500);
        }
    }

    void progress() const
    {
        const faults::ProcessSize &size = m_samples.back().size;
        std::printf("soak: %.2f h, %d tracks, %d faults, %lld kB, %d descriptors, %d threads\n", m_audio / 3600,
                    m_changes, m_faults, static_cast<long long>(size.memoryKb), size.descriptors, size.threads);
        std::fflush(stdout);
    }

    void report()
    {
        progress();
        std::printf("\n| | First | Last | Slope an hour | Drift over the second half | Noise | "
                    "|\n|---|---|---|---|---|---|---|\n");
        row("memory, kB", [](const faults::ProcessSize &size) { return double(size.memoryKb); });
        row("descriptors", [](const faults::ProcessSize &size) { return double(size.descriptors); });
        row("threads", [](const faults::ProcessSize &size) { return double(size.threads); });
        std::printf("\n%.2f h of its own time, %d changes of the track, %d faults, longest silence %.1f s\n",
                    m_audio / 3600, m_changes, m_faults, m_longest);
        for (const QString &log : {m_journey.radioReport(), m_journey.serverReport()})
            readLog(log);
    }

    template <class Value>
    void row(const char *name, Value value)
    {
        const Slope slope = slopeOf(m_samples, value);
        m_failures += slope.isFlat() ? 0 : 1;
        std::printf("| %s | %.0f | %.0f | %.1f | %.1f | %.1f | %s |\n", name, value(m_samples.front().size),
                    value(m_samples.back().size), slope.perHour, slope.drift, slope.noise,
                    slope.isFlat() ? "flat" : "**grows**");
    }

    void readLog(const QString &log)
    {
        std::map<QString, int> found;
        for (const QString &line : log.split('\n'))
            if (complaint().match(line).hasMatch())
                ++found[line.left(160)];
        for (const auto &[line, count] : found)
            complain(QStringLiteral("in a log, %1 times: %2").arg(count).arg(line));
    }

    const double m_hours;
    const double m_minutes;
    std::mt19937 m_chance;
    faults::FaultProxy m_proxy;
    Journey m_journey;
    std::unique_ptr<faults::MenuLine> m_line;
    qint64 m_pid = 0;
    double m_audio = 0; // its own time, seconds
    double m_longest = 0;
    int m_changes = 0;
    int m_faults = 0;
    int m_failures = 0;
    QString m_song;
    std::vector<Sample> m_samples;
};

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addOptions({{"hours", "of the radio's own time (8)", "N", "8"},
                       {"minutes", "of the clock, at most (1440)", "N", "1440"},
                       {"speed", "of its music (8)", "N", "8"},
                       {"seed", "of the faults (1)", "N", "1"}});
    parser.addHelpOption();
    parser.process(application);
    if (!faults::makeMusic())
        return 2;
    return Soak(parser.value("hours").toDouble(), parser.value("minutes").toDouble(), parser.value("speed").toDouble(),
                parser.value("seed").toUInt())
        .run();
}
