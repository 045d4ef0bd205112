#pragma once

#include "fetcher.h"
#include "playbackinbox.h"
#include "playbackorder.h"
#include "playbackpipeline.h"
#include "sinkvolume.h"

#include "netcommon/netcommon_global.h"

#include <QElapsedTimer>

#include <memory>
#include <optional>

namespace netcommon {

// The playback thread's loop: commands and pipeline events in, reports out through the board. Playback thread only.
//
// Between two tracks: the next track is asked for shortly before the last sample. The STOP and START that follow do not
// cut what is left of the old track; it becomes the ending track, and plays on while the new one is fetched and
// decoded. At its end its sink, still open, goes to the new track.
class PlaybackWorker {
public:
    PlaybackWorker(PlaybackInbox &inbox, Fetcher &fetcher, bool isUsable);
    ~PlaybackWorker();
    void run(); // returns after PLAYBACK_TYPE_END

private:
    bool command(const PlaybackEvent &event); // false: the end
    void openAddress(const QByteArray &text);
    void pipelineEvent(const PlaybackEvent &event);
    void build(PlaybackSink sink, qint64 startAtMs); // sink: null while a track is ending
    PlaybackSink openSink();
    void attachSink(PlaybackSink sink);
    void replaceTrack();
    void tearDown();
    void dropAll();
    void keepSink(PlaybackPipeline &pipeline);
    void trackHasEnded();
    void startIfReady();
    void ended();
    void sinkFailed(const QByteArray &why);
    void lookForSink();
    void fail(int code, const QByteArray &why);
    bool isIdle() const { return !m_pipeline && !m_endingTrack && !m_sink; }
    int tickMs() const;
    void tick();
    void tickStarting();
    void tickPlaying();
    void applySound();
    void applyState(); // the pipeline does what the caller wants, unless it is held
    void publish(const IMTK_PB_CTRL_BUFFER_STATUS_T &buffer);
    void flush(); // takes reports to the GUI thread

    static constexpr qint64 firstSinkLookMs = 1000; // doubles each time within a track

    PlaybackInbox &m_inbox;
    Fetcher &m_fetcher;
    const bool m_isUsable; // GStreamer runs
    quint64 m_generation = 0;
    quint64 m_lastPipelineId = 0;
    bool m_isArmed = false; // START was given, its address was not
    PlaybackOrder m_order;
    QUrl m_address;
    PlaybackSink m_sink;                             // open and in no pipeline; null: closed, or in use
    QDeadlineTimer m_sinkCloses;                     // valid while m_sink is there
    QByteArray m_sinkDescription;                    // of the sink in use or open
    bool m_mayKeepSink = false;                      // the same; false: it only replaces one that failed
    bool m_isSinkReused = false;                     // m_pipeline's sink was opened for an earlier track
    bool m_hasSilentSink = false;                    // m_pipeline's sink replaces one that failed
    QDeadlineTimer m_nextSinkLook;                   // valid while m_hasSilentSink: when to look for the chosen sink
    qint64 m_sinkLookMs = firstSinkLookMs;           // the pause before it
    std::unique_ptr<PlaybackPipeline> m_endingTrack; // a replaced track's last moments; null: none. It holds the sink
    QDeadlineTimer m_endingIsOver;                   // valid while m_endingTrack plays: then it is cut
    std::unique_ptr<PlaybackPipeline> m_pipeline;    // null: nothing loaded
    SinkVolume m_sinkVolume;                         // of the sink in use or open
    bool m_isHeld = false;
    bool m_isPrerolled = false;                  // m_pipeline's sink has its first audio
    bool m_isSilent = false;                     // m_pipeline's track began when none was to be heard
    bool m_canStart = false;                     // the same, or its first audio waits for the ending track's sink
    qint64 m_lengthMs = -1;                      // from the file's header
    std::optional<QElapsedTimer> m_bodyComplete; // runs since the last byte was handed over
    bool m_hasGivenMemoryBack = false;           // since m_pipeline's track began
    IMTK_PB_CTRL_BUFFER_STATUS_T m_buffer{};
};

} // namespace netcommon
