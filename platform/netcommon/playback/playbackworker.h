#pragma once

#include "fetcher.h"
#include "playbackinbox.h"
#include "playbackorder.h"
#include "playbackpipeline.h"

#include "netcommon/netcommon_global.h"

#include <QElapsedTimer>

#include <memory>
#include <optional>

namespace netcommon {

// The playback thread's loop: commands and pipeline events in, reports out through the board. Playback thread only.
class PlaybackWorker {
public:
    PlaybackWorker(PlaybackInbox &inbox, Fetcher &fetcher, bool usable);
    ~PlaybackWorker();
    void run(); // returns after PLAYBACK_TYPE_END

private:
    bool command(const PlaybackEvent &event); // false: the end
    void openAddress(const QByteArray &text);
    void pipelineEvent(const PlaybackEvent &event);
    void build(const QByteArray &sink, qint64 startAtMs);
    void tearDown();
    void prerolled();
    void ended();
    void sinkFailed(const QByteArray &why);
    void fail(int code, const QByteArray &why);
    void tick();
    void applyState(); // the pipeline does what the caller wants, unless it is held
    void publish(const IMTK_PB_CTRL_BUFFER_STATUS_T &buffer);
    void flush(); // takes reports to the GUI thread

    PlaybackInbox &m_inbox;
    Fetcher &m_fetcher;
    const bool m_usable; // GStreamer runs
    quint64 m_generation = 0;
    quint64 m_lastPipelineId = 0;
    bool m_armed = false; // START was given, its address was not
    PlaybackOrder m_order;
    QUrl m_address;
    std::unique_ptr<PlaybackPipeline> m_pipeline; // null: nothing loaded
    bool m_held = false;
    bool m_fallback = false;                     // the sink of this track is the silent one already
    qint64 m_lengthMs = -1;                      // from the file's header
    std::optional<QElapsedTimer> m_bodyComplete; // runs since the last byte was handed over
    IMTK_PB_CTRL_BUFFER_STATUS_T m_buffer{};
};

} // namespace netcommon
