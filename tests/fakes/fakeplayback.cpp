#include "fakes/fakeplayback.h"

#include "netcommon/playback.h"
#include "netcommon/playbackthread.h"

#include <QMutex>
#include <QMutexLocker>
#include <QSemaphore>

#include <atomic>

namespace {

struct State {
    QMutex mutex;
    QStringList commands;
    QList<int> types;
    QList<QByteArray> urls;
    QStringList violations;
    int state = PLAYBACK_STATE_STOPPED;
    IMTK_PB_CTRL_BUFFER_STATUS_T buffer{};
    bool isArmed = false;
    bool isEofReported = false;
    int autoPlaySeconds = 0;
    std::atomic_int generation = 0; // of the address; queued reports of an older one are dropped
    int livingThreads = 0;
};

State &state()
{
    static State instance;
    return instance;
}

// Queued in the GUI thread; dropped when another address has been started meanwhile.
template <typename Report>
void later(Report report)
{
    const int generation = state().generation;
    QMetaObject::invokeMethod(
        netcommon::Playback::getInstance(),
        [generation, report] {
            if (generation == state().generation)
                report();
        },
        Qt::QueuedConnection);
}

void emitTotalTime(int seconds)
{
    emit netcommon::Playback::getInstance()->signalNotifyTotalTime(seconds / 3600, seconds / 60 % 60, seconds % 60);
}

} // namespace

namespace netcommon {

class PlaybackPrivate {};

Playback::Playback()
    : d(nullptr)
{
    Q_UNUSED(d);
}

static Playback *playbackInstance = nullptr;

Playback::~Playback()
{
    playbackInstance = nullptr;
}

Playback *Playback::getInstance()
{
    if (!playbackInstance)
        playbackInstance = new Playback;
    return playbackInstance;
}

int Playback::getPbcState()
{
    const QMutexLocker lock(&state().mutex);
    return state().state;
}

int Playback::GetBufferStatus(IMTK_PB_CTRL_BUFFER_STATUS_T *status)
{
    if (!status)
        return -1;
    const QMutexLocker lock(&state().mutex);
    *status = state().buffer;
    return 0;
}

struct PlaybackThread::Private {
    QSemaphore end;
    bool isEnded = false;
};

PlaybackThread::PlaybackThread(QObject *parent)
    : QThread(parent)
    , d(new Private)
{
    const QMutexLocker lock(&state().mutex);
    ++state().livingThreads;
}

PlaybackThread::~PlaybackThread()
{
    {
        const QMutexLocker lock(&state().mutex);
        --state().livingThreads;
        if (isRunning())
            state().violations.append("a playback thread was deleted before it had ended");
    }
    d->end.release();
    wait();
    delete d;
}

void PlaybackThread::setType(_PLAYBACK_TYPE_E type)
{
    State &s = state();
    const QMutexLocker lock(&s.mutex);
    s.commands.append(QStringLiteral("type %1").arg(type));
    s.types.append(type);
    if (type == PLAYBACK_TYPE_END)
        d->end.release();
    if (type == PLAYBACK_TYPE_START)
        s.isArmed = true;
    Playback *playback = Playback::getInstance();
    if (type == PLAYBACK_TYPE_PAUSE && s.state == PLAYBACK_STATE_PLAYING) {
        s.state = PLAYBACK_STATE_PAUSED;
        later([playback] { emit playback->signalPauseOk(); });
    } else if (type == PLAYBACK_TYPE_RESUME && s.state == PLAYBACK_STATE_PAUSED) {
        s.state = PLAYBACK_STATE_PLAYING;
        later([playback] { emit playback->signalPlayOk(); });
    } else if (type == PLAYBACK_TYPE_STOP) {
        ++s.generation;
        s.isArmed = false;
        s.state = PLAYBACK_STATE_STOPPED;
        s.buffer = {};
        later([playback] { emit playback->signalStopOk(); });
    }
}

void PlaybackThread::setAudioUrl(char *url)
{
    State &s = state();
    const QMutexLocker lock(&s.mutex);
    s.commands.append(QStringLiteral("url %1").arg(QString::fromUtf8(url)));
    if (!s.isArmed) {
        s.violations.append(QStringLiteral("an address without start: %1").arg(QString::fromUtf8(url)));
        return;
    }
    s.isArmed = false;
    s.isEofReported = false;
    s.urls.append(QByteArray(url));
    ++s.generation;
    if (s.autoPlaySeconds > 0)
        later([seconds = s.autoPlaySeconds] { FakePlayback::playOk(seconds); });
}

void PlaybackThread::run()
{
    d->end.acquire();
}

} // namespace netcommon

void FakePlayback::reset()
{
    State &s = state();
    const QMutexLocker lock(&s.mutex);
    s.commands.clear();
    s.types.clear();
    s.urls.clear();
    s.violations.clear();
    s.state = PLAYBACK_STATE_STOPPED;
    s.buffer = {};
    s.isArmed = false;
    s.isEofReported = false;
    s.autoPlaySeconds = 0;
    ++s.generation;
}

QStringList FakePlayback::commands()
{
    const QMutexLocker lock(&state().mutex);
    return state().commands;
}

QList<int> FakePlayback::types()
{
    const QMutexLocker lock(&state().mutex);
    return state().types;
}

QList<QByteArray> FakePlayback::urls()
{
    const QMutexLocker lock(&state().mutex);
    return state().urls;
}

QByteArray FakePlayback::lastUrl()
{
    const QList<QByteArray> all = urls();
    return all.isEmpty() ? QByteArray() : all.last();
}

void FakePlayback::clearCommands()
{
    const QMutexLocker lock(&state().mutex);
    state().commands.clear();
    state().types.clear();
    state().urls.clear();
}

int FakePlayback::livingThreads()
{
    const QMutexLocker lock(&state().mutex);
    return state().livingThreads;
}

QStringList FakePlayback::violations()
{
    const QMutexLocker lock(&state().mutex);
    return state().violations;
}

void FakePlayback::setState(int newState)
{
    const QMutexLocker lock(&state().mutex);
    state().state = newState;
}

void FakePlayback::setBuffer(quint32 startMs, quint32 endMs)
{
    const QMutexLocker lock(&state().mutex);
    state().buffer = {startMs, endMs, endMs - startMs};
}

void FakePlayback::setAutoPlay(int totalSeconds)
{
    const QMutexLocker lock(&state().mutex);
    state().autoPlaySeconds = totalSeconds;
}

void FakePlayback::playOk(int totalSeconds)
{
    netcommon::Playback *playback = netcommon::Playback::getInstance();
    setState(PLAYBACK_STATE_PLAYING);
    emit playback->signalPlayURLOK();
    emit playback->signalPlayResult(0);
    emit playback->signalPlayOk();
    emitTotalTime(totalSeconds);
}

void FakePlayback::playFailed(int result)
{
    emit netcommon::Playback::getInstance()->signalPlayURLOK();
    playRefused(result);
}

void FakePlayback::playRefused(int result)
{
    setState(PLAYBACK_STATE_STOPPED);
    emit netcommon::Playback::getInstance()->signalPlayResult(result);
}

void FakePlayback::progress(int seconds, int total)
{
    netcommon::Playback *playback = netcommon::Playback::getInstance();
    emit playback->signalNotifyCurrentTime(seconds / 3600, seconds / 60 % 60, seconds % 60);
    if (total > 0)
        emit playback->signalNotifyProgressValue(qBound(0, seconds * 100 / total, 100));
}

void FakePlayback::fileEof()
{
    {
        const QMutexLocker lock(&state().mutex);
        state().isEofReported = true;
    }
    emit netcommon::Playback::getInstance()->signalGetFileEOF();
}

void FakePlayback::finished()
{
    bool isEofReported = false;
    {
        const QMutexLocker lock(&state().mutex);
        isEofReported = state().isEofReported;
        state().state = PLAYBACK_STATE_STOPPED;
    }
    if (!isEofReported)
        fileEof();
    emit netcommon::Playback::getInstance()->signalGotoPlayNextSong();
}
