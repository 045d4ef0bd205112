// Memory while a track plays: the radio and its menu system, the bare window, and rhythmbox, a music player of Debian,
// playing a track of the same music. Medians of ten readings, a second apart, all programs at once; private and shared
// memory apart, because the shares of shared pages depend on what else runs.
#include "device.h"
#include "figures.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QProcess>
#include <QSet>
#include <QStandardPaths>
#include <QThread>

#include <algorithm>
#include <csignal>
#include <cstdio>

namespace {

// The programs that are measured at the same time, by name.
using Programs = QMap<QString, qint64>;

QMap<QString, Memory> medians(const Programs &programs)
{
    QMap<QString, std::vector<Memory>> readings;
    for (int i = 0; i < 10; ++i) {
        for (auto program = programs.begin(); program != programs.end(); ++program)
            readings[program.key()].push_back(memoryOf(program.value()));
        QThread::msleep(1000);
    }
    const auto median = [](const std::vector<Memory> &all, double Memory::*part) {
        std::vector<double> values;
        for (const Memory &each : all)
            values.push_back(each.*part);
        return figures::median(values);
    };
    QMap<QString, Memory> result;
    for (auto all = readings.begin(); all != readings.end(); ++all)
        result[all.key()] = {median(*all, &Memory::proportional), median(*all, &Memory::privatePart),
                             median(*all, &Memory::sharedPart), median(*all, &Memory::anonymous)};
    return result;
}

QStringList loadedPlugins(qint64 pid)
{
    QFile maps(QStringLiteral("/proc/%1/maps").arg(pid));
    QSet<QString> names;
    if (maps.open(QIODevice::ReadOnly))
        for (const QByteArray &line : maps.readAll().split('\n'))
            if (line.contains("/gstreamer-1.0/"))
                names.insert(QString::fromUtf8(line.mid(line.lastIndexOf('/') + 1)));
    QStringList sorted(names.begin(), names.end());
    sorted.sort();
    return sorted;
}

// "name private + shared", megabytes, of the mappings that weigh most.
std::string heaviestMappings(qint64 pid)
{
    QFile maps(QStringLiteral("/proc/%1/smaps").arg(pid));
    QMap<QByteArray, Memory> mappings;
    QByteArray name;
    if (maps.open(QIODevice::ReadOnly))
        for (const QByteArray &line : maps.readAll().split('\n')) {
            const QList<QByteArray> words = line.simplified().split(' ');
            if (words.first().contains('-') && words.size() >= 5)
                name = words.size() > 5 ? words.at(5).mid(words.at(5).lastIndexOf('/') + 1) : QByteArray("anonymous");
            else if (words.first() == "Pss:")
                mappings[name].proportional += words.at(1).toDouble() / 1024;
            else if (words.first() == "Private_Clean:" || words.first() == "Private_Dirty:")
                mappings[name].privatePart += words.at(1).toDouble() / 1024;
        }
    QList<QByteArray> names = mappings.keys();
    std::sort(names.begin(), names.end(),
              [&](auto &a, auto &b) { return mappings[a].proportional > mappings[b].proportional; });
    QStringList heaviest;
    for (const QByteArray &each : names.mid(0, 10))
        heaviest += QStringLiteral("%1 %2 + %3")
                        .arg(QString::fromUtf8(each).remove(QLatin1Char('[')).remove(QLatin1Char(']')))
                        .arg(mappings[each].privatePart, 0, 'f', 1)
                        .arg(mappings[each].proportional - mappings[each].privatePart, 0, 'f', 1);
    return heaviest.join(QStringLiteral(", ")).toStdString();
}

bool hasOpen(qint64 pid, const QString &file)
{
    const QDir descriptors(QStringLiteral("/proc/%1/fd").arg(pid));
    for (const QFileInfo &each : descriptors.entryInfoList(QDir::Files | QDir::System))
        if (each.symLinkTarget() == file)
            return true;
    return false;
}

// A player to compare with, on a session bus and in folders of its own. Not started when it is not installed.
class OtherPlayer {
public:
    OtherPlayer(const Device &device, const QString &track)
        : m_track(track)
    {
        if (QStandardPaths::findExecutable(QStringLiteral("rhythmbox")).isEmpty())
            return;
        QProcessEnvironment environment = device.environment();
        for (const char *const name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
            environment.insert(QString::fromLatin1(name), device.path(QStringLiteral("otherplayer")));
        QDir().mkpath(device.path(QStringLiteral("otherplayer")));
        m_session.setProcessEnvironment(environment);
        m_session.setStandardErrorFile(QProcess::nullDevice());
        m_session.start(QStringLiteral("dbus-run-session"),
                        {QStringLiteral("--"), QStringLiteral("sh"), QStringLiteral("-c"),
                         QStringLiteral("rhythmbox \"$0\" & echo $!; wait"), track});
        if (m_session.waitForReadyRead(20000))
            m_pid = m_session.readAllStandardOutput().trimmed().toLongLong();
    }
    ~OtherPlayer()
    {
        if (m_pid > 0)
            ::kill(static_cast<pid_t>(m_pid), SIGTERM); // the session ends with it
        m_session.waitForFinished(8000);
    }
    OtherPlayer(const OtherPlayer &) = delete;
    OtherPlayer &operator=(const OtherPlayer &) = delete;

    qint64 pid() const { return m_pid; } // 0: not there
    bool isPlaying() const { return m_pid > 0 && hasOpen(m_pid, m_track); }

private:
    const QString m_track;
    QProcess m_session;
    qint64 m_pid = 0;
};

void report(const char *name, const Memory &memory)
{
    figures::note(std::string(name) + ", proportional set", memory.proportional, " MB");
    figures::note(std::string("  of it private"), memory.privatePart, " MB");
    figures::note(std::string("  of it its share of shared pages"), memory.sharedPart, " MB");
    figures::note(std::string("  of it anonymous"), memory.anonymous, " MB");
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    Device device;
    if (!device.prepare())
        return 1;
    Watched window(QStringLiteral(BENCH_BAREWINDOW), {}, device.environment());
    if (!window.next("painted", {}, 20000))
        return 1;
    const auto menu = device.startRadio("fakesink sync=true", true);
    QByteArray status;
    const auto audioSeconds = [&] {
        status = device.status();
        return QJsonDocument::fromJson(status).object().value(QStringLiteral("audioSeconds")).toDouble();
    };
    for (int tries = 0; tries < 100 && audioSeconds() <= 5; ++tries)
        QThread::msleep(200);
    const qint64 pid = Device::radioPid(status);
    const OtherPlayer other(device, device.anyTrack());
    for (int tries = 0; tries < 150 && other.pid() > 0 && !other.isPlaying(); ++tries)
        QThread::msleep(200);
    QThread::sleep(3);
    Programs programs{{QStringLiteral("window"), window.pid()},
                      {QStringLiteral("radio"), pid},
                      {QStringLiteral("menu"), menu->pid()}};
    if (other.isPlaying())
        programs.insert(QStringLiteral("other"), other.pid());
    const double heardBefore = audioSeconds();
    const QMap<QString, Memory> all = medians(programs);
    if (pid == 0 || audioSeconds() < heardBefore + 5) {
        std::fprintf(stderr, "nothing plays: %s\n", status.constData());
        return 1;
    }
    const Memory radio = all.value(QStringLiteral("radio")), system = all.value(QStringLiteral("menu"));
    const double bothMb = radio.proportional + system.proportional;
    report("radio while playing", radio);
    report("its menu system", system);
    report("bare window", all.value(QStringLiteral("window")));
    if (all.contains(QStringLiteral("other"))) {
        const Memory rhythmbox = all.value(QStringLiteral("other"));
        report("rhythmbox while playing", rhythmbox);
        figures::print("radio with menu system against rhythmbox", bothMb / rhythmbox.proportional, "", 1);
    } else {
        figures::note("rhythmbox while playing", other.pid() > 0 ? "it did not play" : "not installed");
    }
    figures::print("anonymous memory of the radio", radio.anonymous, " MB", 16);
    figures::note("radio against the bare window",
                  radio.proportional / all.value(QStringLiteral("window")).proportional, "");
    figures::note("radio, heaviest mappings, private + shared, MB", heaviestMappings(pid));
    figures::note("menu system, heaviest mappings, private + shared, MB", heaviestMappings(menu->pid()));
    figures::note("bare window, heaviest mappings, private + shared, MB", heaviestMappings(window.pid()));
    figures::note("sound plug-ins loaded", loadedPlugins(pid).join(QLatin1Char(' ')).toStdString());
    return 0;
}
