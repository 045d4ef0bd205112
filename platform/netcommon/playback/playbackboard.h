#pragma once

#include "netcommon/playback.h"

#include <atomic>
#include <functional>
#include <mutex>

namespace netcommon {

// What the playback thread publishes and everybody reads; one a process, it outlives Playback and every thread.
//
// Each START, STOP and END opens a new generation in the thread that gives the command, before the command is even
// queued. Whatever belongs to an older generation is unknown from then on: its state reads as stopped, its snapshot as
// zero, and its signals that are still under way are dropped when they are delivered.
class PlaybackBoard {
public:
    static PlaybackBoard &instance();

    quint64 newGeneration() { return m_generation.fetch_add(1) + 1; }

    // Playback thread only.
    void publish(quint64 generation, int state, const IMTK_PB_CTRL_BUFFER_STATUS_T &buffer);
    // Runs report in the GUI thread, with the Playback of that moment, if generation is still current then. Without a
    // Playback nothing happens. Any thread.
    void post(quint64 generation, std::function<void(Playback *)> report);
    // The same, whatever has been commanded since.
    void postAlways(std::function<void(Playback *)> report);

    int state() const;
    IMTK_PB_CTRL_BUFFER_STATUS_T buffer() const;

    // GUI thread.
    void setReceiver(Playback *receiver);

private:
    std::atomic<quint64> m_generation{1};
    mutable std::mutex m_mutex;
    quint64 m_published = 0; // the generation that the two below belong to
    int m_state = PLAYBACK_STATE_STOPPED;
    IMTK_PB_CTRL_BUFFER_STATUS_T m_buffer{};
    std::mutex m_receiverMutex;
    Playback *m_receiver = nullptr;
};

} // namespace netcommon
