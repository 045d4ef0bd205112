#include "netcommon/playbackthread.h"

#include "mediamodule.h"
#include "playbackboard.h"
#include "playbackinbox.h"

#include <QDebug>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace netcommon {

namespace {

// A sink that does not answer, a sound server that hangs for instance, blocks whoever closes it.
constexpr std::chrono::milliseconds patience{1500};

} // namespace

// What the engine, the thread that owns every GStreamer object, works with. Owned by the PlaybackThread and the engine.
struct Q_DECL_HIDDEN PlaybackThread::Private {
    PlaybackInbox inbox;

    void run(); // the engine's
    // Returns when run() has, or when it has not obeyed PLAYBACK_TYPE_END in time: false.
    bool waitForEnd();
    void endOrdered();

private:
    std::mutex m_mutex; // guards what follows
    std::condition_variable m_changed;
    bool m_hasEnded = false;
    std::optional<std::chrono::steady_clock::time_point> m_endOrdered;
};

void PlaybackThread::Private::run()
{
    mediaModule().play(inbox, PlaybackBoard::instance());
    inbox.clear();
    const std::lock_guard lock(m_mutex);
    m_hasEnded = true;
    m_changed.notify_all();
}

bool PlaybackThread::Private::waitForEnd()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_hasEnded || m_endOrdered; });
    if (!m_hasEnded)
        m_changed.wait_until(lock, *m_endOrdered + patience, [this] { return m_hasEnded; });
    m_endOrdered.reset();
    return std::exchange(m_hasEnded, false);
}

void PlaybackThread::Private::endOrdered()
{
    const std::lock_guard lock(m_mutex);
    m_endOrdered = std::chrono::steady_clock::now();
    m_changed.notify_all();
}

PlaybackThread::PlaybackThread(QObject *parent)
    : QThread(parent)
    , d(std::make_shared<Private>())
{
    setObjectName(QStringLiteral("playback"));
}

PlaybackThread::~PlaybackThread()
{
    if (isRunning()) {
        setType(PLAYBACK_TYPE_END);
        wait();
    }
}

void PlaybackThread::setType(_PLAYBACK_TYPE_E type)
{
    d->inbox.pushMade([type] {
        const bool opens = type == PLAYBACK_TYPE_START || type == PLAYBACK_TYPE_STOP || type == PLAYBACK_TYPE_END;
        return PlaybackEvent{PlaybackEvent::Kind::Command, opens ? PlaybackBoard::instance().newGeneration() : 0, type};
    });
    if (type == PLAYBACK_TYPE_END)
        d->endOrdered();
}

void PlaybackThread::setAudioUrl(char *url)
{
    d->inbox.push({PlaybackEvent::Kind::Address, 0, 0, QByteArray(url)}); // null reads as an address that is refused
}

void PlaybackThread::run()
{
    std::thread engine([work = d] { work->run(); });
    if (d->waitForEnd()) {
        engine.join();
        return;
    }
    qDebug("PlaybackThread,end,the sink does not answer and is left behind.");
    engine.detach();
}

} // namespace netcommon
