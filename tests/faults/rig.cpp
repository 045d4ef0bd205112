#include "rig.h"

#include "e2e/journey.h"
#include "faultproxy.h"
#include "menuline.h"
#include "shortmusic.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QUrl>

#include <algorithm>
#include <optional>

namespace faults {

namespace {

constexpr int lookMs = 100;
constexpr int shortSeconds = 22;
constexpr double playsAgain = 0.6; // of sound within the last second: it plays
const QString longLibrary = QStringLiteral(JOURNEY_LIBRARY "/demo");

QStringList listOf(const std::vector<std::string> &texts)
{
    QStringList list;
    for (const std::string &text : texts)
        list += QString::fromStdString(text);
    return list;
}

// Follows what reaches the sink.
class Ear {
public:
    void begin(double audioSeconds)
    {
        m_clock.start();
        m_first = m_last = audioSeconds;
        m_silentSince = 0;
        m_longest = 0;
    }
    void heard(double audioSeconds)
    {
        const double now = seconds();
        if (audioSeconds > m_last) {
            m_last = audioSeconds;
            m_silentSince = now;
        }
        m_longest = std::max(m_longest, now - m_silentSince);
    }
    void stop() { m_end = seconds(); }
    double seconds() const { return m_end.value_or(double(m_clock.elapsed()) / 1000); }
    double music() const { return m_last - m_first; }
    double silence() const { return std::max(0.0, seconds() - music()); }
    double silentFor() const { return seconds() - m_silentSince; }
    double longest() const { return m_longest; }

private:
    QElapsedTimer m_clock;
    std::optional<double> m_end;
    double m_first = 0;
    double m_last = 0;
    double m_silentSince = 0; // on the clock
    double m_longest = 0;
};

// One run, from the start of the programs to the verdict.
class ScenarioRun {
public:
    explicit ScenarioRun(const Scenario &scenario)
        : m_scenario(scenario)
        , m_journey({.serverOptions = listOf(scenario.serverOptions),
                     .radioUrl = QStringLiteral("http://127.0.0.1:%1").arg(m_proxy.port()),
                     .library = scenario.isLong ? longLibrary : shortLibrary()})
    {
    }

    Verdict verdict()
    {
        if (!m_journey.prepare())
            return failed(m_journey.problem());
        m_proxy.setService(QUrl(m_journey.serverUrl()).port());
        m_proxy.setMediaRate(m_scenario.rate);
        if (m_scenario.isFromLaunch) {
            m_proxy.begin(m_scenario.faults);
            m_ear.begin(0);
        } else if (m_scenario.isLastTrack) {
            m_proxy.begin({{.kind = Fault::Kind::Status, .path = "/media/audio", .amount = 404, .times = 3}});
        }
        m_journey.launch();
        if (!m_journey.waitFor([](const QJsonObject &now) { return now.value("screen").isString(); }, 60))
            return failed("the radio did not come up");
        m_line.emplace(m_journey.root() + "/menu.sock");
        if (!m_scenario.isFromLaunch) {
            if (!m_journey.waitForAudio(2, 60))
                return failed("no music before the faults");
            m_ear.begin(look().value("audioSeconds").toDouble());
            m_proxy.begin(m_scenario.faults);
        }
        return follow();
    }

private:
    QJsonObject look()
    {
        const QJsonObject now = m_line->status();
        m_verdict.worstAnswerMs = std::max(m_verdict.worstAnswerMs, m_line->answerMs());
        return now;
    }

    Verdict follow()
    {
        bool isPressed = m_scenario.keys.empty();
        std::optional<double> musicAtEndOfFaults;
        const QString word = QString::fromStdString(m_scenario.word);
        while (m_ear.seconds() < m_scenario.within) {
            const QJsonObject now = look();
            if (!now.value("answering").toBool())
                return failed("the radio does not answer");
            m_ear.heard(now.value("audioSeconds").toDouble());
            const bool hasBox = now.value("box").isString();
            const QString boxText = now.value("boxText").toString();
            if (!isPressed && m_ear.seconds() >= m_scenario.keysAfter) {
                isPressed = true;
                m_journey.key(listOf(m_scenario.keys));
            }
            if (hasBox)
                m_verdict.end = boxText;
            if (hasBox && m_scenario.end == End::Word && boxText.startsWith(word))
                return playsAfterwards() ? passed() : failed("no music after the box");
            if (hasBox && m_scenario.end == End::Music && isPressed)
                return failed("a box: " + boxText);
            if (isPressed && !musicAtEndOfFaults && m_proxy.isOver())
                musicAtEndOfFaults = m_ear.music();
            if (m_scenario.end == End::Music && musicAtEndOfFaults &&
                m_ear.music() >= *musicAtEndOfFaults + m_scenario.settle && m_ear.silentFor() < playsAgain) {
                m_verdict.end = "music";
                return passed();
            }
            QTest::qWait(lookMs);
        }
        return failed(m_scenario.end == End::Music ? QStringLiteral("no music in time")
                                                   : QStringLiteral("not the word in time"));
    }

    // After a clear word a listener finds back to music. Not counted as silence.
    bool playsAfterwards()
    {
        m_ear.stop();
        return m_scenario.keysAfterWord.empty() ||
               (m_journey.key(listOf(m_scenario.keysAfterWord)) && m_journey.waitForAudio(2));
    }

    Verdict passed()
    {
        if (m_ear.silence() > m_scenario.silence)
            return failed(QStringLiteral("%1 s of silence").arg(m_ear.silence(), 0, 'f', 1));
        if (m_proxy.hits() == 0 && std::any_of(m_scenario.faults.begin(), m_scenario.faults.end(),
                                               [](const Fault &fault) { return fault.kind < Fault::Kind::Outage; }))
            return failed("no request met the fault");
        return finished();
    }

    Verdict failed(const QString &problem)
    {
        m_verdict.problem = problem;
        return finished();
    }

    Verdict finished()
    {
        m_verdict.hits = m_proxy.hits();
        if (m_line) {
            m_verdict.took = m_ear.seconds();
            m_verdict.silence = m_ear.silence();
            m_verdict.longest = m_ear.longest();
        }
        const QString report = m_journey.radioReport();
        if (m_verdict.problem.isEmpty() && (report.contains("Sanitizer") || report.contains("runtime error:")))
            m_verdict.problem = "a sanitizer's report";
        if (!m_verdict.problem.isEmpty()) {
            m_verdict.problem += QStringLiteral("\n") + report.right(3000);
        }
        return m_verdict;
    }

    const Scenario &m_scenario;
    FaultProxy m_proxy; // before and after the programs
    Journey m_journey;
    std::optional<MenuLine> m_line;
    Ear m_ear;
    Verdict m_verdict;
};

} // namespace

QString shortLibrary()
{
    return QStringLiteral(FAULTS_LIBRARY "/short");
}

bool makeMusic()
{
    return (QFileInfo::exists(longLibrary + "/ads.json") || Journey::makeLibrary()) &&
           shortenMusic(longLibrary, shortLibrary(), shortSeconds);
}

Verdict run(const Scenario &scenario)
{
    return ScenarioRun(scenario).verdict();
}

} // namespace faults
