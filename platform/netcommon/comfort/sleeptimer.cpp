#include "sleeptimer.h"

#include "netcommon/playback.h"
#include "platform/netcommon/device/menumessages.h"
#include "platform/netcommon/playback/playbacksound.h"
#include "platform/netcommon/playback/playbackstatistics.h"

#include <QDebug>
#include <QFile>
#include <QSaveFile>

#include <ctime>

namespace netcommon {

using Mode = SleepDecider::Mode;

namespace {

constexpr int tickMs = 200;

// Goes on while the machine sleeps, and means the same to all processes.
qint64 nowMs()
{
    timespec now{};
    ::clock_gettime(CLOCK_BOOTTIME, &now);
    return qint64(now.tv_sec) * 1000 + now.tv_nsec / 1'000'000;
}

// Each start of the machine has its own: what this clock said in another one means nothing.
QByteArray startOfMachine()
{
    QFile file(QStringLiteral("/proc/sys/kernel/random/boot_id"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
}

} // namespace

SleepTimer::SleepTimer(PlaybackSound &sound, const QString &file, QObject *parent)
    : QObject(parent)
    , m_sound(sound)
    , m_file(file)
{
    connect(&m_tick, &QTimer::timeout, this, &SleepTimer::step);
    restore();
}

void SleepTimer::start(int minutes)
{
    const qint64 now = nowMs();
    m_decider.start(now, minutes * menu::minuteMs);
    keep(now + minutes * menu::minuteMs);
    run();
}

void SleepTimer::afterTrack()
{
    m_decider.afterTrack();
    keep(0);
    run();
}

void SleepTimer::off()
{
    m_decider.off();
    keep(0);
    step();
}

QString SleepTimer::text() const
{
    switch (m_decider.mode()) {
    case Mode::Time:
        return QString::number((m_decider.leftMs(nowMs()) + menu::minuteMs - 1) / menu::minuteMs);
    case Mode::Track:
        return QStringLiteral("track");
    case Mode::Off:
        break;
    }
    return QStringLiteral("off");
}

QString SleepTimer::shortText() const
{
    switch (m_decider.mode()) {
    case Mode::Time:
        return text() + QStringLiteral(" min");
    case Mode::Track:
        return QStringLiteral("1 \u266B");
    case Mode::Off:
        break;
    }
    return {};
}

// Playback is connected when it is needed: other programs have none.
void SleepTimer::run()
{
    auto *const playback = Playback::getInstance();
    connect(playback, &Playback::signalGotoPlayNextSong, this, &SleepTimer::trackEnds, Qt::UniqueConnection);
    connect(playback, &Playback::signalPlayURLOK, this, &SleepTimer::trackBegins, Qt::UniqueConnection);
    m_tick.start(tickMs);
    step();
}

// At once: the screens start the next track after this signal.
void SleepTimer::trackEnds()
{
    m_decider.trackEnds(nowMs());
    step();
}

void SleepTimer::trackBegins()
{
    m_decider.trackBegins();
}

void SleepTimer::step()
{
    const SleepDecider::Action action = m_decider.step(nowMs(), statistics::playbackState() == PLAYBACK_STATE_PLAYING);
    m_sound.fade = action.fade;
    m_sound.isNextSilent = action.silencesNext;
    if (action.pauses)
        emit pauseWanted();
    if (action.isOver) {
        qDebug("SleepTimer,asleep");
        keep(0);
        emit asleep();
    }
    if (!isOn())
        m_tick.stop();
}

// endMs: 0: none.
void SleepTimer::keep(qint64 endMs) const
{
    if (m_file.isEmpty())
        return;
    if (endMs == 0) {
        QFile::remove(m_file);
        return;
    }
    QSaveFile file(m_file);
    if (!file.open(QIODevice::WriteOnly) || file.write(startOfMachine() + ' ' + QByteArray::number(endMs)) < 0 ||
        !file.commit())
        qDebug("SleepTimer,keep,%s", qPrintable(file.errorString()));
}

void SleepTimer::restore()
{
    QFile file(m_file);
    if (m_file.isEmpty() || !file.open(QIODevice::ReadOnly))
        return;
    const qint64 now = nowMs();
    const QByteArrayList kept = file.read(100).split(' ');
    const qint64 left = kept.last().toLongLong() - now;
    if (kept.first() != startOfMachine() || left <= 0 || left > menu::mostSleepMinutes * menu::minuteMs) {
        QFile::remove(m_file);
        return;
    }
    m_decider.start(now, left);
    QMetaObject::invokeMethod(this, &SleepTimer::run, Qt::QueuedConnection);
}

} // namespace netcommon
