#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QtGlobal>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>

namespace netcommon {

// One event for the playback thread.
struct PlaybackEvent {
    enum class Kind {
        // Commands of the radio; id is the generation, value the PLAYBACK_TYPE_E.
        Command,
        Address, // text is the address
        // What happened to a pipeline; id is the pipeline's. text is for the log.
        Decoded,   // there is audio, or the end of the stream; it waits for a sink
        Prerolled, // the same, and the sink is ready to play
        Ended,
        SinkFailed,
        DecoderMissing, // of recognised audio
        ContentFailed,
        BodyComplete,
        BodyFailed,
    };
    Kind kind;
    quint64 id = 0;
    int value = 0;
    QByteArray text = {};
};

// The playback thread's queue. Any thread adds events; only the playback thread takes them out.
class PlaybackInbox {
public:
    void push(PlaybackEvent event)
    {
        const std::lock_guard lock(m_mutex);
        m_events.push_back(std::move(event));
        m_arrived.notify_one();
    }
    // make() runs under the queue's lock, so that generations are in the order of the queue.
    template <typename Make>
    void pushMade(Make make)
    {
        const std::lock_guard lock(m_mutex);
        m_events.push_back(make());
        m_arrived.notify_one();
    }
    // Waits for an event; nothing after the deadline.
    std::optional<PlaybackEvent> next(QDeadlineTimer deadline);
    void clear()
    {
        const std::lock_guard lock(m_mutex);
        m_events.clear();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_arrived;
    std::deque<PlaybackEvent> m_events;
};

} // namespace netcommon
