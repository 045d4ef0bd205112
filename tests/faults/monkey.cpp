#include "monkey.h"

#include "e2e/journey.h"
#include "faultproxy.h"
#include "menuline.h"
#include "platform/netcommon/device/remotekeytable.h"
#include "rig.h"

#include <QElapsedTimer>
#include <QFile>
#include <QUrl>

#include <memory>
#include <optional>
#include <random>

namespace faults {

namespace {

using Kind = Fault::Kind;
namespace keys = netcommon::keys;

constexpr int hangMs = 10000;
constexpr int patienceSeconds = 120; // for music after the storm: what was asked may be repeated for 45 s
constexpr int hopelessTries = 25;    // on a screen without a way to the player
// Growth in a storm, beyond which it is a leak: freed memory that the address sanitizer holds back, pictures, a grown
// history.
constexpr qint64 mostMoreKb = 96 * 1024;
constexpr int mostMoreDescriptors = 10;
constexpr int mostMoreThreads = 6;

const std::vector<Fault> &palette()
{
    static const std::vector<Fault> faults = {
        {.kind = Kind::Reset, .path = "/v1/", .times = 2},
        {.kind = Kind::Close, .path = "/v1/", .amount = 50, .times = 1},
        {.kind = Kind::Status, .path = "/v1/", .amount = 502, .lasts = 3},
        {.kind = Kind::Code, .path = "/v1/", .amount = 5097, .times = 1},
        {.kind = Kind::Code, .path = "/v1/", .amount = 5000, .times = 2},
        {.kind = Kind::Garbage, .path = "/v1/", .times = 1},
        {.kind = Kind::Empty, .path = "/v1/", .times = 1},
        {.kind = Kind::Html, .path = "/v1/", .times = 1},
        {.kind = Kind::Hang, .path = "/v1/", .times = 1},
        {.kind = Kind::Delay, .path = "/v1/", .amount = 800, .lasts = 4},
        {.kind = Kind::Slow, .amount = 2000, .lasts = 4},
        {.kind = Kind::Reset, .path = "/media/audio", .amount = 100000, .times = 3},
        {.kind = Kind::Hang, .path = "/media/audio", .amount = 200000, .times = 1},
        {.kind = Kind::Garbage, .path = "/media/audio", .times = 2},
        {.kind = Kind::Status, .path = "/media/audio", .amount = 404, .times = 3},
        {.kind = Kind::Shorter, .path = "/media/audio", .amount = 50000, .times = 1},
        {.kind = Kind::Garbage, .path = "/media/art", .times = 2},
        {.kind = Kind::Hang, .path = "/media/art", .times = 2},
        {.kind = Kind::Outage, .lasts = 2},
        {.kind = Kind::DeadOutage, .lasts = 2},
        {.kind = Kind::Down, .lasts = 3},
    };
    return faults;
}

// Moves are pressed more often than the keys that leave a screen.
const QStringList &keyNames()
{
    static const QStringList names = {"up",   "down", "left", "right", "up",   "down",   "left",     "right",
                                      "up",   "down", "left", "right", "up",   "select", "select",   "select",
                                      "back", "red",  "next", "green", "play", "pause",  "stop",     "menu",
                                      "top",  "end",  "blue", "enter", "home", "yellow", "pagedown", "pageup"};
    return names;
}

int code(const QString &name)
{
    return keys::keyByName(name)->key;
}

class StormRun {
public:
    explicit StormRun(const Storm &storm)
        : m_storm(storm)
        , m_chance(storm.seed)
        , m_journey({.radioUrl = QStringLiteral("http://127.0.0.1:%1").arg(m_proxy.port()), .library = shortLibrary()})
    {
    }

    Survival survival()
    {
        m_clock.start();
        if (!m_journey.prepare())
            return failed(m_journey.problem());
        m_proxy.setService(QUrl(m_journey.serverUrl()).port());
        if (!begin() || !storm() || !findMusic() || !isNoLarger())
            return m_survival;
        // The leak checker sometimes crashes itself; that says nothing of the radio.
        if (!m_journey.exits() && !m_journey.radioReport().contains("LeakSanitizer has encountered a fatal error"))
            return failed("it does not exit");
        isClean();
        m_survival.seconds = double(m_clock.elapsed()) / 1000;
        return m_survival;
    }

private:
    Survival failed(const QString &problem)
    {
        if (m_survival.problem.isEmpty())
            m_survival.problem = problem + "\n" + m_journey.radioReport().right(4000);
        m_survival.seconds = double(m_clock.elapsed()) / 1000;
        return m_survival;
    }

    // Starts the radio, until music.
    bool begin()
    {
        m_proxy.begin({});
        m_line.reset();
        m_journey.launch();
        if (!m_journey.waitForAudio(1, 60)) {
            failed("no music at a start");
            return false;
        }
        m_line = std::make_unique<MenuLine>(m_journey.root() + "/menu.sock");
        m_survival.before = sizeOf(look().value("pid").toInteger());
        return true;
    }

    template <class List>
    const typename List::value_type &any(const List &list)
    {
        return list[std::uniform_int_distribution<int>(0, int(list.size()) - 1)(m_chance)];
    }

    bool storm()
    {
        QElapsedTimer pace;
        pace.start();
        std::uniform_int_distribution<qint64> pause(1000, 4000);
        qint64 nextFault = 0;
        for (int pressed = 0; pressed < m_storm.keys; ++pressed) {
            if (pace.elapsed() >= nextFault) {
                m_proxy.begin({any(palette())});
                nextFault = pace.elapsed() + pause(m_chance);
            }
            if (!m_line->key(code(any(keyNames()))) && !goesOn())
                return false;
            m_survival.worstAnswerMs = std::max(m_survival.worstAnswerMs, m_line->answerMs());
            if (m_line->answerMs() >= hangMs) {
                failed("it hangs");
                return false;
            }
            const qint64 early = qint64(pressed + 1) * 1000 / m_storm.perSecond - pace.elapsed();
            if (early > 0)
                QTest::qWait(int(early));
        }
        m_proxy.begin({});
        return true;
    }

    // A key was not accepted: has the radio been left, or has it crashed?
    bool goesOn()
    {
        if (!m_journey.waitForEnd(hangMs / 1000)) {
            if (look().value("answering").toBool())
                return true;
            failed("it neither answers nor ends");
            return false;
        }
        if (m_journey.exitCode() != 0) {
            failed(QStringLiteral("it ended with %1").arg(m_journey.exitCode()));
            return false;
        }
        if (!isClean())
            return false;
        ++m_survival.starts;
        return setUpAgain() && begin();
    }

    // The keys may have signed the account out.
    bool setUpAgain()
    {
        ++m_survival.setUps;
        QFile::remove(m_journey.settingsFile());
        if (m_journey.setUpDevice())
            return true;
        failed(m_journey.problem());
        return false;
    }

    QJsonObject look()
    {
        const QJsonObject now = m_line->status();
        m_survival.worstAnswerMs = std::max(m_survival.worstAnswerMs, m_line->answerMs());
        return now;
    }

    // As a listener would: closes what is open, chooses a station, hears it.
    bool findMusic()
    {
        QElapsedTimer patience;
        patience.start();
        int tries = 0;
        while (patience.elapsed() < patienceSeconds * 1000) {
            const QJsonObject now = look();
            const bool hasBox = now.value("box").isString();
            const QString screen = now.value("screen").toString();
            ++tries;
            if (!now.value("answering").toBool()) {
                if (!goesOn())
                    return false;
            } else if (!hasBox && screen == QLatin1String("VelmoraMainDlg") &&
                       now.value("focus").toString() == QLatin1String("stationListWidget")) {
                m_line->key(code("down"));
                m_line->key(code("select"));
                if (plays())
                    return true;
            } else if (!hasBox && screen == QLatin1String("VelmoraMainDlg")) {
                m_line->key(code("left"));
            } else if (hasBox || screen == QLatin1String("SelectUserDlg")) {
                m_line->key(code(hasBox && tries % 2 ? "back" : "select"));
            } else if (tries > hopelessTries) {
                // Signed out: a listener would type the account's name and password.
                if (!m_journey.exits() || !isClean() || !setUpAgain())
                    return false;
                ++m_survival.starts;
                tries = 0;
                if (!begin())
                    return false;
            } else {
                m_line->key(code("back"));
            }
            QTest::qWait(300);
        }
        failed("no music after the storm");
        return false;
    }

    bool plays()
    {
        const double before = look().value("audioSeconds").toDouble();
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < 15000) {
            const QJsonObject now = look();
            if (now.value("box").isString())
                return false;
            if (Journey::isPlaying(now) && now.value("audioSeconds").toDouble() > before + 2)
                return true;
            QTest::qWait(100);
        }
        return false;
    }

    bool isNoLarger()
    {
        const ProcessSize &before = m_survival.before;
        ProcessSize &after = m_survival.after;
        after = sizeOf(look().value("pid").toInteger());
        if (after.memoryKb - before.memoryKb > mostMoreKb ||
            after.descriptors - before.descriptors > mostMoreDescriptors ||
            after.threads - before.threads > mostMoreThreads)
            failed("it has grown");
        return m_survival.problem.isEmpty();
    }

    bool isClean()
    {
        const QString report = m_journey.radioReport();
        if (report.contains("ERROR: AddressSanitizer") || report.contains("ERROR: LeakSanitizer") ||
            report.contains("runtime error:"))
            failed("a sanitizer's report");
        return m_survival.problem.isEmpty();
    }

    const Storm m_storm;
    std::mt19937 m_chance;
    FaultProxy m_proxy;
    Journey m_journey;
    std::unique_ptr<MenuLine> m_line; // to the present menu system
    QElapsedTimer m_clock;
    Survival m_survival;
};

} // namespace

Survival survive(const Storm &storm)
{
    return StormRun(storm).survival();
}

} // namespace faults
