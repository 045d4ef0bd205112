#include "playbackboard.h"

#include <QMetaObject>

namespace netcommon {

namespace {
// Of this library or module. Set before anything of the module reads it.
std::atomic<PlaybackBoard *> given{nullptr};
} // namespace

PlaybackBoard &PlaybackBoard::instance()
{
    if (auto *const board = given.load(std::memory_order_acquire))
        return *board;
    static auto *const board = new PlaybackBoard; // never destroyed: a thread that a sink blocks may be left behind
    return *board;
}

void PlaybackBoard::use(PlaybackBoard &board)
{
    given.store(&board, std::memory_order_release);
}

void PlaybackBoard::publish(quint64 generation, int state, const IMTK_PB_CTRL_BUFFER_STATUS_T &buffer)
{
    const std::lock_guard lock(m_mutex);
    m_published = generation;
    m_state = state;
    m_buffer = buffer;
}

void PlaybackBoard::post(quint64 generation, std::function<void(Playback *)> report)
{
    postAlways([this, generation, report = std::move(report)](Playback *playback) {
        if (m_generation.load() == generation)
            report(playback);
    });
}

void PlaybackBoard::postAlways(std::function<void(Playback *)> report)
{
    const std::lock_guard lock(m_receiverMutex); // the receiver must not be destroyed while a call is posted to it
    if (auto *const playback = m_receiver)
        QMetaObject::invokeMethod(
            playback, [playback, report = std::move(report)] { report(playback); }, Qt::QueuedConnection);
}

int PlaybackBoard::state() const
{
    const std::lock_guard lock(m_mutex);
    return m_published == m_generation.load() ? m_state : PLAYBACK_STATE_STOPPED;
}

IMTK_PB_CTRL_BUFFER_STATUS_T PlaybackBoard::buffer() const
{
    const std::lock_guard lock(m_mutex);
    return m_published == m_generation.load() ? m_buffer : IMTK_PB_CTRL_BUFFER_STATUS_T{};
}

void PlaybackBoard::setReceiver(Playback *receiver)
{
    const std::lock_guard lock(m_receiverMutex);
    m_receiver = receiver;
}

} // namespace netcommon
