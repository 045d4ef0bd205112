#include "device.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <chrono>
#include <csignal>
#include <cstdio>

#include <sys/prctl.h>
#include <unistd.h>

namespace {

void dieWithUs(QProcess &process)
{
    process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
}

void end(QProcess &process)
{
    if (process.state() == QProcess::NotRunning)
        return;
    process.terminate();
    if (!process.waitForFinished(8000)) {
        process.kill();
        process.waitForFinished();
    }
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

qint64 nowUs()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::microseconds>(now).count();
}

// ---- a watched program

Watched::Watched(const QString &program, const QStringList &arguments, const QProcessEnvironment &environment)
{
    dieWithUs(m_process);
    m_process.setProcessEnvironment(environment);
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start(program, arguments);
    m_process.waitForStarted();
}

Watched::~Watched()
{
    end(m_process);
}

void Watched::read()
{
    const QByteArray said = m_process.readAll();
    m_log += said;
    m_rest += said;
    for (qsizetype lineEnd = m_rest.indexOf('\n'); lineEnd >= 0; lineEnd = m_rest.indexOf('\n')) {
        const QList<QByteArray> parts = m_rest.left(lineEnd).trimmed().split(',');
        m_rest.remove(0, lineEnd + 1);
        if (parts.size() == 5 && parts.at(0) == "bench")
            m_seen.append({parts.at(1), parts.at(2), parts.at(3).toLongLong(), parts.at(4).toLongLong()});
    }
}

void Watched::forget()
{
    m_process.waitForReadyRead(1);
    read();
    m_seen.clear();
}

std::optional<Observation> Watched::next(const QByteArray &what, const QByteArray &detail, int milliseconds)
{
    QElapsedTimer clock;
    clock.start();
    for (;;) {
        read();
        while (!m_seen.isEmpty()) {
            const Observation first = m_seen.takeFirst();
            if (first.what == what && (detail.isEmpty() || first.detail == detail))
                return first;
        }
        const qint64 left = milliseconds - clock.elapsed();
        if (left <= 0 || (m_process.state() == QProcess::NotRunning && m_process.bytesAvailable() == 0))
            return std::nullopt;
        m_process.waitForReadyRead(static_cast<int>(std::min<qint64>(left, 20)));
    }
}

// ---- the device

Device::Device()
    : m_library(QStringLiteral(BENCH_LIBRARY))
{
}

Device::~Device()
{
    end(m_server);
}

QProcessEnvironment Device::environment() const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (!environment.contains(QStringLiteral("QT_QPA_PLATFORM")))
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("VELMORA_PRIVATE_ROOT"), m_root.filePath(QStringLiteral("device")));
    environment.insert(QStringLiteral("VELMORA_WS_SERVER"), m_serverUrl);
    environment.insert(QStringLiteral("VELMORA_WS_STATE_DIR"), m_root.filePath(QStringLiteral("state")));
    environment.insert(QStringLiteral("VELMORA_DEVICE_CONF"), m_root.filePath(QStringLiteral("device.conf")));
    environment.remove(QStringLiteral("VELMORA_MENU_SOCKET"));
    return environment;
}

bool Device::prepare(const QStringList &music)
{
    QDir().mkpath(path(QStringLiteral("device")));
    if (!music.isEmpty())
        m_library = path(QStringLiteral("service"));
    QDir().mkpath(m_library);
    QFile::setPermissions(m_library, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    for (const QString &state : {QStringLiteral("velmora.db"), QStringLiteral("velmora.db-wal"),
                                 QStringLiteral("velmora.db-shm"), QStringLiteral("demo-account.txt")})
        QFile::remove(m_library + QLatin1Char('/') + state);
    const QString tracksOfStyle = QStringLiteral("4");
    if (music.isEmpty() && !makeDemoMusic(tracksOfStyle))
        return false;
    dieWithUs(m_server);
    m_server.setProcessChannelMode(QProcess::MergedChannels);
    // An analysis in the background would be measured as well.
    const QStringList demo = {QStringLiteral("--demo-tracks"), tracksOfStyle, QStringLiteral("--analysis"),
                              QStringLiteral("off")};
    const QStringList played = music.isEmpty() ? demo : music;
    m_server.start(QStringLiteral(BENCH_SERVER), QStringList{QStringLiteral("--listen"), QStringLiteral("127.0.0.1:0"),
                                                             QStringLiteral("--data"), m_library} +
                                                     played);
    static const QRegularExpression listening(QStringLiteral("listening on (http://127\\.0\\.0\\.1:\\d+)"));
    QByteArray said;
    QElapsedTimer clock;
    clock.start();
    while (m_serverUrl.isEmpty() && clock.elapsed() < 60000 && m_server.state() != QProcess::NotRunning) {
        m_server.waitForReadyRead(100);
        said += m_server.readAll();
        const auto match = listening.match(QString::fromUtf8(said));
        if (match.hasMatch())
            m_serverUrl = match.captured(1);
    }
    QProcess setup;
    dieWithUs(setup);
    setup.setProcessEnvironment(environment());
    setup.setProcessChannelMode(QProcess::MergedChannels);
    setup.start(QStringLiteral(BENCH_SETUP), {m_library + QStringLiteral("/demo-account.txt")});
    if (m_serverUrl.isEmpty() || !setup.waitForFinished(60000) || setup.exitCode() != 0) {
        std::fprintf(stderr, "the device was not set up: %s %s\n", said.constData(), setup.readAll().constData());
        return false;
    }
    return true;
}

// The first time this takes minutes. A service that still makes music would have its listeners wait for it.
bool Device::makeDemoMusic(const QString &tracksOfStyle) const
{
    QProcess music;
    dieWithUs(music);
    music.setStandardOutputFile(QProcess::nullDevice());
    music.start(QStringLiteral(BENCH_DEMOMUSIC),
                {QStringLiteral("--each"), tracksOfStyle, m_library + QStringLiteral("/demo")});
    if (music.waitForFinished(-1) && music.exitStatus() == QProcess::NormalExit && music.exitCode() == 0)
        return true;
    std::fprintf(stderr, "the demo music was not made: %s\n", music.readAllStandardError().constData());
    return false;
}

std::unique_ptr<Watched> Device::startRadio(const QByteArray &audioSink, bool hasMenu)
{
    QProcessEnvironment with = environment();
    with.insert(QStringLiteral("VELMORA_AUDIO_SINK"), QString::fromUtf8(audioSink));
    if (audioSink == observedSink) {
        with.insert(QStringLiteral("GST_PLUGIN_PATH"), QStringLiteral(BENCH_GSTREAMER));
        // Of its own, or the list of plug-ins would be made anew whenever a program starts with another path.
        with.insert(QStringLiteral("GST_REGISTRY"), QStringLiteral(BENCH_GSTREAMER "/registry.bin"));
    }
    const QString radio = QStringLiteral(BENCH_RADIO);
    if (!hasMenu)
        return std::make_unique<Watched>(radio, QStringList(), with);
    return std::make_unique<Watched>(
        QStringLiteral(BENCH_MENU),
        QStringList{QStringLiteral("--socket"), path(QStringLiteral("menu.sock")), QStringLiteral("--"), radio}, with);
}

bool Device::key(const QStringList &names)
{
    QProcess menu;
    menu.setProcessEnvironment(environment());
    menu.start(QStringLiteral(BENCH_MENU),
               QStringList{QStringLiteral("--socket"), path(QStringLiteral("menu.sock")), QStringLiteral("key")} +
                   names);
    return menu.waitForFinished(10000) && menu.exitCode() == 0;
}

QByteArray Device::status()
{
    QProcess menu;
    menu.setProcessEnvironment(environment());
    menu.start(QStringLiteral(BENCH_MENU),
               {QStringLiteral("--socket"), path(QStringLiteral("menu.sock")), QStringLiteral("status")});
    menu.waitForFinished(10000);
    return menu.readAllStandardOutput();
}

QString Device::anyTrack() const
{
    QDirIterator tracks(m_library + QStringLiteral("/demo/music"), {QStringLiteral("*.flac")}, QDir::Files,
                        QDirIterator::Subdirectories);
    return tracks.hasNext() ? tracks.next() : QString();
}

qint64 Device::radioPid(const QByteArray &status)
{
    return QJsonDocument::fromJson(status).object().value(QStringLiteral("pid")).toInteger();
}

// ---- other processes

namespace {

double cpuSecondsIn(const QString &statFile)
{
    const QByteArray stat = readFile(statFile);
    // The name in brackets may hold blanks; user and system time are the 12th and 13th field behind it.
    const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    if (fields.size() < 13)
        return 0;
    return static_cast<double>(fields.at(11).toLongLong() + fields.at(12).toLongLong()) /
           static_cast<double>(sysconf(_SC_CLK_TCK));
}

} // namespace

double cpuSeconds(qint64 pid)
{
    return cpuSecondsIn(QStringLiteral("/proc/%1/stat").arg(pid));
}

double threadCpuSeconds(qint64 pid, qint64 thread)
{
    return cpuSecondsIn(QStringLiteral("/proc/%1/task/%2/stat").arg(pid).arg(thread));
}

Memory memoryOf(qint64 pid)
{
    Memory memory;
    for (const QByteArray &line : readFile(QStringLiteral("/proc/%1/smaps_rollup").arg(pid)).split('\n')) {
        const QList<QByteArray> words = line.simplified().split(' ');
        const double megabytes = words.value(1).toDouble() / 1024;
        if (words.first() == "Pss:")
            memory.proportional = megabytes;
        else if (words.first() == "Private_Clean:" || words.first() == "Private_Dirty:")
            memory.privatePart += megabytes;
        else if (words.first() == "Anonymous:")
            memory.anonymous = megabytes;
    }
    memory.sharedPart = memory.proportional - memory.privatePart;
    return memory;
}
