#include "fakes/fakeplayback.h"

#include "netcommon/playback.h"
#include "netcommon/playbackthread.h"

#include <QSemaphore>

QStringList FakePlayback::commands;
QList<int> FakePlayback::types;
QList<QByteArray> FakePlayback::urls;
int FakePlayback::livingThreads = 0;
QStringList FakePlayback::violations;
int FakePlayback::state = PLAYBACK_STATE_STOPPED;
int FakePlayback::autoPlaySeconds = 0;

namespace {

IMTK_PB_CTRL_BUFFER_STATUS_T buffer{};
bool isArmed = false;
int generation = 0; // of the address; queued reports of an older one are dropped

// Queued; dropped when another address has been started meanwhile.
template <typename Report>
void later(Report report)
{
    const auto ifStillMeant = [made = generation, report] {
        if (made == generation)
            report();
    };
    QMetaObject::invokeMethod(netcommon::Playback::getInstance(), ifStillMeant, Qt::QueuedConnection);
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
    return FakePlayback::state;
}

int Playback::GetBufferStatus(IMTK_PB_CTRL_BUFFER_STATUS_T *status)
{
    if (!status)
        return -1;
    *status = buffer;
    return 0;
}

struct PlaybackThread::Private {
    QSemaphore end;
};

PlaybackThread::PlaybackThread(QObject *parent)
    : QThread(parent)
    , d(std::make_shared<Private>())
{
    ++FakePlayback::livingThreads;
}

PlaybackThread::~PlaybackThread()
{
    --FakePlayback::livingThreads;
    if (isRunning())
        FakePlayback::violations.append("a playback thread was deleted before it had ended");
    d->end.release();
    wait();
}

void PlaybackThread::setType(_PLAYBACK_TYPE_E type)
{
    FakePlayback::commands.append(QStringLiteral("type %1").arg(type));
    FakePlayback::types.append(type);
    if (type == PLAYBACK_TYPE_END)
        d->end.release();
    if (type == PLAYBACK_TYPE_START)
        isArmed = true;
    Playback *playback = Playback::getInstance();
    int &state = FakePlayback::state;
    if (type == PLAYBACK_TYPE_PAUSE && state == PLAYBACK_STATE_PLAYING) {
        state = PLAYBACK_STATE_PAUSED;
        later([playback] { emit playback->signalPauseOk(); });
    } else if (type == PLAYBACK_TYPE_RESUME && state == PLAYBACK_STATE_PAUSED) {
        state = PLAYBACK_STATE_PLAYING;
        later([playback] { emit playback->signalPlayOk(); });
    } else if (type == PLAYBACK_TYPE_STOP) {
        ++generation;
        isArmed = false;
        state = PLAYBACK_STATE_STOPPED;
        buffer = {};
        later([playback] { emit playback->signalStopOk(); });
    }
}

void PlaybackThread::setAudioUrl(char *url)
{
    FakePlayback::commands.append(QStringLiteral("url %1").arg(QString::fromUtf8(url)));
    if (!isArmed) {
        FakePlayback::violations.append(QStringLiteral("an address without start: %1").arg(QString::fromUtf8(url)));
        return;
    }
    isArmed = false;
    FakePlayback::urls.append(QByteArray(url));
    ++generation;
    if (FakePlayback::autoPlaySeconds > 0)
        later([seconds = FakePlayback::autoPlaySeconds] { FakePlayback::playOk(seconds); });
}

void PlaybackThread::run()
{
    d->end.acquire();
}

} // namespace netcommon

void FakePlayback::reset()
{
    clearCommands();
    violations.clear();
    state = PLAYBACK_STATE_STOPPED;
    buffer = {};
    isArmed = false;
    autoPlaySeconds = 0;
    ++generation;
}

void FakePlayback::clearCommands()
{
    commands.clear();
    types.clear();
    urls.clear();
}

void FakePlayback::setBuffer(quint32 startMs, quint32 endMs)
{
    buffer = {startMs, endMs, endMs - startMs};
}

void FakePlayback::playOk(int totalSeconds)
{
    netcommon::Playback *playback = netcommon::Playback::getInstance();
    state = PLAYBACK_STATE_PLAYING;
    emit playback->signalPlayURLOK();
    emit playback->signalPlayResult(0);
    emit playback->signalPlayOk();
    emit playback->signalNotifyTotalTime(totalSeconds / 3600, totalSeconds / 60 % 60, totalSeconds % 60);
}

void FakePlayback::playFailed(int result)
{
    emit netcommon::Playback::getInstance()->signalPlayURLOK();
    playRefused(result);
}

void FakePlayback::playRefused(int result)
{
    state = PLAYBACK_STATE_STOPPED;
    emit netcommon::Playback::getInstance()->signalPlayResult(result);
}

void FakePlayback::progress(int seconds, int total)
{
    netcommon::Playback *playback = netcommon::Playback::getInstance();
    emit playback->signalNotifyCurrentTime(seconds / 3600, seconds / 60 % 60, seconds % 60);
    emit playback->signalNotifyProgressValue(qBound(0, seconds * 100 / total, 100));
}

void FakePlayback::finished()
{
    state = PLAYBACK_STATE_STOPPED;
    emit netcommon::Playback::getInstance()->signalGetFileEOF();
    emit netcommon::Playback::getInstance()->signalGotoPlayNextSong();
}
