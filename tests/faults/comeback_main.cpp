// velmora-comeback: how long the music is away after the service went, and after the radio crashed or hung. The real
// radio, menu system and service. Started by tools/comeback.

#include "e2e/journey.h"
#include "faults/menuline.h"
#include "faults/rig.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <functional>
#include <optional>
#include <random>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int lookMs = 50;
constexpr double patience = 60; // seconds
constexpr double limit = 5;     // seconds until the music is back
constexpr int hangSeconds = 10;
// The sink takes 93 ms of sound at once: four times as fast as music, so that a track soon needs the next one.
const QString fastSink = QStringLiteral("identity sleep-time=23000 ! fakesink sync=false");

// Stops the GUI thread and no other, until the process ends or this object does. A process of its own traces it: the
// end of a traced process is its tracer's to see first, at once.
class GuiHang {
public:
    explicit GuiHang(pid_t pid)
        : m_tracer(::fork())
    {
        if (m_tracer != 0)
            return;
        int status = 0;
        ::ptrace(PTRACE_SEIZE, pid, nullptr, nullptr);
        ::ptrace(PTRACE_INTERRUPT, pid, nullptr, nullptr);
        while (::waitpid(pid, &status, __WALL) == pid && !WIFEXITED(status) && !WIFSIGNALED(status)) {
        }
        ::_exit(0);
    }
    ~GuiHang()
    {
        ::kill(m_tracer, SIGKILL);
        ::waitpid(m_tracer, nullptr, 0);
    }
    GuiHang(const GuiHang &) = delete;
    GuiHang &operator=(const GuiHang &) = delete;

private:
    pid_t m_tracer;
};

class Trials {
public:
    explicit Trials(const QString &home)
        : m_journey({.library = faults::shortLibrary(),
                     .sink = fastSink,
                     .menuOptions = {"--supervise", "--hang-after", QString::number(hangSeconds), "--home", home}})
    {
    }

    bool begin()
    {
        // The radio repeats failed requests for 45 seconds before it gives up; here for one.
        QFile settings(m_journey.root() + "/ws.conf");
        if (!settings.open(QIODevice::WriteOnly) || settings.write("retry_for_ms=1000\nstart_retry_for_ms=1000\n") <= 0)
            return false;
        settings.close();
        qputenv("VELMORA_WS_CONF", QFile::encodeName(settings.fileName()));
        if (!m_journey.startPlaying()) {
            std::fprintf(stderr, "comeback: %s\n", qPrintable(m_journey.problem()));
            return false;
        }
        m_line = std::make_unique<faults::MenuLine>(m_journey.root() + "/menu.sock");
        std::puts("| what | times | music is back after (s): least | median | most | reports |");
        std::puts("|---|---|---|---|---|---|");
        return true;
    }

    bool end() { return m_journey.exits() && m_failures == 0; }

    void outages(int times)
    {
        std::mt19937 chance(1);
        std::vector<double> took;
        for (int i = 0; i < times; ++i) {
            m_journey.stopServer();
            const auto ends = m_journey.radioReport().count("the radio has ended");
            // Until the radio has given up, and then some more: a moment, or many.
            if (!waitUntil(
                    [&](const QJsonObject &) { return m_journey.radioReport().count("the radio has ended") > ends; })) {
                failed("the radio does not give up");
                continue;
            }
            QTest::qWait(int(1000 * std::uniform_real_distribution<>(0, 20)(chance)));
            if (!m_journey.startServer()) {
                failed("the service does not start");
                continue;
            }
            measure(took, 0);
            playOn();
        }
        row("service killed and back", took, 0);
    }

    void crashes(const char *what, int times, double detection, const std::function<void(pid_t)> &harm)
    {
        QDir reports(m_journey.root() + "/statehome/velmora/reports");
        reports.removeRecursively(); // the newest ten are kept
        std::vector<double> took;
        for (int i = 0; i < times; ++i) {
            if (i % 5 == 0 && !restart()) // a sixth crash within ten minutes needs a person
                return failed("no music after a restart of all");
            const auto pid = pid_t(m_line->status().value("pid").toInt());
            harm(pid);
            measure(took, pid, detection);
            m_hang.reset();
            playOn();
        }
        reports.refresh();
        row(what, took, int(reports.entryList(QDir::Files).size()));
    }
    void hang(pid_t pid) { m_hang.emplace(pid); }

private:
    bool waitUntil(const std::function<bool(const QJsonObject &)> &isReached)
    {
        QElapsedTimer clock;
        clock.start();
        do {
            if (isReached(m_line->status()))
                return true;
            QTest::qWait(lookMs);
        } while (clock.elapsed() < patience * 1000);
        return false;
    }

    // From now until music, of another process than `before`.
    void measure(std::vector<double> &took, pid_t before, double detection = 0)
    {
        QElapsedTimer clock;
        clock.start();
        if (!waitUntil([&](const QJsonObject &now) {
                return now.value("answering").toBool() && now.value("pid").toInt() != before &&
                       now.value("audioSeconds").toDouble() > 0;
            }))
            return failed("no music");
        took.push_back(double(clock.elapsed()) / 1000 - detection);
        if (took.back() > limit)
            failed(qPrintable(QStringLiteral("%1 s").arg(took.back())));
    }

    bool restart()
    {
        if (!m_journey.exits())
            return false;
        m_journey.launch();
        if (!m_journey.waitForAudio(1))
            return false;
        m_line = std::make_unique<faults::MenuLine>(m_journey.root() + "/menu.sock");
        return true;
    }

    // Long enough that the menu system has noticed the music.
    void playOn()
    {
        waitUntil([](const QJsonObject &now) { return now.value("audioSeconds").toDouble() > 10; });
    }

    void failed(const char *problem)
    {
        ++m_failures;
        std::fprintf(stderr, "comeback: %s\n", problem);
    }

    void row(const char *what, std::vector<double> took, int kept)
    {
        std::sort(took.begin(), took.end());
        const auto at = [&](double part) {
            return took.empty() ? 0 : took[std::size_t(part * double(took.size() - 1))];
        };
        std::printf("| %s | %zu | %.1f | %.1f | %.1f | %d |\n", what, took.size(), at(0), at(0.5), at(1), kept);
        std::fflush(stdout);
    }

    Journey m_journey;
    std::unique_ptr<faults::MenuLine> m_line;
    std::optional<GuiHang> m_hang;
    int m_failures = 0;
};

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addOptions({{"outages", "", "N", "20"}, {"crashes", "", "N", "10"}, {"home", "", "PROGRAM"}});
    parser.process(application);
    const int crashes = parser.value("crashes").toInt();
    if (!faults::makeMusic())
        return 2;
    Trials trials(parser.value("home"));
    if (!trials.begin())
        return 2;
    trials.outages(parser.value("outages").toInt());
    trials.crashes("SIGSEGV", crashes, 0, [](pid_t pid) { ::kill(pid, SIGSEGV); });
    trials.crashes("SIGSTOP", crashes, 0, [](pid_t pid) { ::kill(pid, SIGSTOP); });
    trials.crashes("GUI thread hangs, after its detection", crashes, hangSeconds,
                   [&trials](pid_t pid) { trials.hang(pid); });
    return trials.end() ? 0 : 1;
}
