#pragma once

#include "fetcherfeed.h"
#include "gstowner.h"
#include "playbackgain.h"
#include "playbackinbox.h"

#include <QByteArray>

#include <atomic>
#include <memory>

namespace netcommon {

struct GstSinkClose {
    void operator()(GstElement *sink) const;
};
// Owns an audio sink. Consecutive tracks pass it on, so that the device stays open between them. Outside a pipeline its
// state is READY or NULL.
using PlaybackSink = std::unique_ptr<GstElement, GstSinkClose>;

// description: as for gst-launch-1.0. Null with a reason when it cannot be understood.
PlaybackSink makePlaybackSink(const QByteArray &description, QByteArray *problem);
// The sink, as opened, throws the sound away.
bool isSilent(GstElement *sink);

// One reference to memory of g_atomic_rc_box_alloc().
struct AtomicBoxRelease {
    void operator()(char *box) const { g_atomic_rc_box_release(box); }
};
using AtomicBox = std::unique_ptr<char, AtomicBoxRelease>;

// The GStreamer pipeline of one track:
//
//   appsrc ! parsebin ! queue of parsed frames, bounded in bytes ! decodebin ! audioconvert ! gain ! audioresample !
//   sink
//
// The queue holds frames with their times, so the buffered amount is known in milliseconds for every format. They are
// packed into large blocks, each of which is freed once its last frame was played. The sink may be attached late: until
// then the decoded audio waits in front of it. Created, used and destroyed by the playback thread; GStreamer's threads
// only push events into the inbox and set the atomics.
class PlaybackPipeline {
public:
    struct Setup {
        quint64 id;           // carried by its events
        qint64 startAtMs = 0; // frames before this are dropped unheard
        bool isLevelled = false;
    };
    PlaybackPipeline(const Setup &setup, PlaybackInbox &inbox, Fetcher &fetcher);
    ~PlaybackPipeline(); // returns when none of its threads runs any more

    quint64 id() const { return m_setup.id; }
    // An element that is not installed; empty: all is well.
    const QByteArray &missing() const { return m_missing; }
    const std::shared_ptr<FetcherFeed> &feed() const { return m_feed; }

    // Once, before or after preroll(). False: the sink cannot be linked.
    bool attachSink(PlaybackSink sink);
    bool hasSink() const { return m_sink != nullptr; }
    GstElement *sink() const { return m_sink.get(); }
    // The sink, open and silent, for the next track. Null: there is none, or it has failed. The pipeline is of no
    // further use; destroy it.
    PlaybackSink takeSink();

    // Prerolled follows, or a failure; without a sink Decoded follows, or a failure. False: refused at once.
    bool preroll();
    void setPlaying(bool isPlaying);
    PlaybackGain &gain() { return m_gain; }

    qint64 positionMs();     // keeps the last answer while there is none
    qint64 lengthMs() const; // as the file's header states it, -1 unknown
    qint64 endMs() const { return m_endNs.load() / 1000000; }
    bool isReceived() const { return m_isReceived.load(); }
    bool hasAudio() const { return m_hasAudio.load(); }     // an audio stream was found
    bool hasDecoded() const { return m_hasDecoded.load(); } // at least one decoded buffer is there
    bool isEmpty() const { return m_isEmpty.load(); }       // the stream ended without one

private:
    GstElement *add(const char *factory, const char *name);
    using Probe = GstPadProbeReturn (PlaybackPipeline::*)(GstPadProbeInfo *);
    template <Probe member>
    gulong watch(GstElement *element, const char *padName, int types);
    GstPadProbeReturn parsedProbe(GstPadProbeInfo *info);
    GstPadProbeReturn decodedProbe(GstPadProbeInfo *info);
    GstPadProbeReturn renderProbe(GstPadProbeInfo *info);
    void pack(GstPadProbeInfo *info);
    void linkParsed(GstPad *pad);
    void linkDecoded(GstPad *pad);
    void unknownType(GstElement *bin, GstPad *pad, GstCaps *caps);
    void busMessage(GstMessage *message);

    const Setup m_setup;
    PlaybackInbox &m_inbox;
    std::shared_ptr<FetcherFeed> m_feed;
    QByteArray m_missing;
    GstOwner<GstElement> m_pipeline;
    PlaybackGain m_gain;
    PlaybackSink m_sink; // null: not attached yet, or taken
    // Owned by m_pipeline.
    GstElement *m_queue = nullptr;
    GstElement *m_decode = nullptr;
    GstElement *m_convert = nullptr;
    GstElement *m_resample = nullptr;
    gulong m_waitProbe = 0; // holds decoded audio back while there is no sink; 0: removed
    bool m_isStarted = false;
    bool m_isPlaying = false;
    qint64 m_position = 0;

    // Written by streaming threads.
    std::atomic<qint64> m_endNs{0};
    std::atomic<bool> m_isReceived{false};
    std::atomic<bool> m_hasAudio{false};
    std::atomic<bool> m_isRecognised{false}; // the audio stream comes from a parser or a demuxer
    std::atomic<bool> m_hasDecoded{false};
    std::atomic<bool> m_isEmpty{false};
    std::atomic<bool> m_hasSinkFailed{false};
    std::atomic<GstElement *> m_watchedSink{nullptr}; // m_sink, for the threads that post messages
    // Streaming thread in front of the queue only.
    GstSegment m_segment;
    AtomicBox m_block;     // the block that pack() fills, null: none yet
    gsize m_blockUsed = 0; // bytes at its beginning
    qint64 m_inSinkNs = 0; // duration of the buffer that the sink is busy with; streaming thread behind the queue only
};

// Once a process, in the playback thread: it reads the registry of plug-ins, which may take seconds the first time.
bool initialiseGStreamer();

} // namespace netcommon
