#pragma once

#include "netcommon/playback.h"
#include "playbacksound.h"

#include <atomic>
#include <functional>
#include <mutex>

namespace netcommon {

// What the playback thread publishes and any thread reads. One per process; it outlives Playback and every thread.
//
// Each START, STOP and END opens a new generation, in the thread that gives the command and before the command is
// queued. From then on nothing of an older generation is visible: the state reads as stopped, the snapshot as zero, and
// queued signals of the older generation are dropped at their delivery.
class PlaybackBoard {
public:
    static PlaybackBoard &instance();
    // The media module has this code a second time, and is given the library's board.
    static void use(PlaybackBoard &board);

    quint64 newGeneration() { return m_generation.fetch_add(1) + 1; }

    // Playback thread only.
    void publish(quint64 generation, int state, const IMTK_PB_CTRL_BUFFER_STATUS_T &buffer);
    // Runs report in the GUI thread, if generation is still current by then. Without a Playback nothing happens. Any
    // thread.
    void post(quint64 generation, std::function<void(Playback *)> report);
    // The same, for any generation.
    void postAlways(std::function<void(Playback *)> report);

    // Adds to what audioRenderedNs() answers. Any thread.
    void addRenderedAudio(qint64 ns) { m_renderedNs.fetch_add(ns, std::memory_order_relaxed); }
    qint64 audioRenderedNs() const { return m_renderedNs.load(std::memory_order_relaxed); }

    PlaybackSound &sound() { return m_sound; } // any thread

    int state() const;
    IMTK_PB_CTRL_BUFFER_STATUS_T buffer() const;

    // GUI thread.
    void setReceiver(Playback *receiver);

private:
    std::atomic<quint64> m_generation{1};
    std::atomic<qint64> m_renderedNs{0};
    PlaybackSound m_sound;
    mutable std::mutex m_mutex;
    quint64 m_published = 0; // generation of the two members below
    int m_state = PLAYBACK_STATE_STOPPED;
    IMTK_PB_CTRL_BUFFER_STATUS_T m_buffer{};
    std::mutex m_receiverMutex;
    Playback *m_receiver = nullptr;
};

} // namespace netcommon
