#pragma once

#include "fetcherfeed.h"
#include "gstowner.h"
#include "playbackinbox.h"

#include <QByteArray>

#include <atomic>
#include <memory>

namespace netcommon {

// The GStreamer pipeline of one track:
//
//   appsrc ! parsebin ! queue of parsed frames, bounded in bytes ! decodebin ! audioconvert ! audioresample ! sink
//
// The queue holds frames with their times, so what is buffered is known in milliseconds for every format. Made, used
// and destroyed by the playback thread; GStreamer's threads only push events into the inbox and set the atomics.
class PlaybackPipeline {
public:
    struct Setup {
        quint64 id;           // carried by its events
        QByteArray sink;      // description as for gst-launch
        qint64 startAtMs = 0; // frames before this are dropped unheard
    };
    PlaybackPipeline(const Setup &setup, PlaybackInbox &inbox, Fetcher &fetcher);
    ~PlaybackPipeline(); // returns when none of its threads runs any more

    quint64 id() const { return m_setup.id; }
    // An element that is not installed, or a sink description that cannot be understood; empty: all is well.
    const QByteArray &missing() const { return m_missing; }
    const std::shared_ptr<FetcherFeed> &feed() const { return m_feed; }

    bool preroll(); // Prerolled follows, or a failure; false: the sink refused at once
    void setPlaying(bool playing);

    qint64 positionMs();     // keeps the last answer while there is none
    qint64 lengthMs() const; // as the file's header states it, -1 unknown
    qint64 endMs() const { return m_endNs.load() / 1000000; }
    bool received() const { return m_received.load(); }
    bool hasAudio() const { return m_hasAudio.load(); }       // an audio stream was found
    bool reachedSink() const { return m_reachedSink.load(); } // at least one decoded buffer
    bool playsIntoNothing() const;

private:
    GstElement *add(const char *factory, const char *name);
    GstElement *addSink();
    GstPadProbeReturn parsedProbe(GstPadProbeInfo *info);
    GstPadProbeReturn renderProbe(GstPadProbeInfo *info);
    void linkParsed(GstPad *pad);
    void linkDecoded(GstPad *pad);
    void unknownType(GstElement *bin, GstPad *pad, GstCaps *caps);
    void busMessage(GstMessage *message);

    const Setup m_setup;
    PlaybackInbox &m_inbox;
    std::shared_ptr<FetcherFeed> m_feed;
    QByteArray m_missing;
    GstOwner<GstElement> m_pipeline;
    // Owned by m_pipeline.
    GstElement *m_queue = nullptr;
    GstElement *m_decode = nullptr;
    GstElement *m_convert = nullptr;
    GstElement *m_sink = nullptr;
    bool m_playing = false;
    qint64 m_position = 0;

    // Written by streaming threads.
    std::atomic<qint64> m_endNs{0};
    std::atomic<bool> m_received{false};
    std::atomic<bool> m_hasAudio{false};
    std::atomic<bool> m_recognised{false}; // the audio stream comes from a parser or a demuxer
    std::atomic<bool> m_reachedSink{false};
    std::atomic<bool> m_sinkFailed{false};
    GstSegment m_segment;  // streaming thread in front of the queue only
    qint64 m_inSinkNs = 0; // duration of the buffer that the sink is busy with; streaming thread behind the queue only
};

// Once a process, in the playback thread: it reads the registry of plug-ins, which may take seconds the first time.
bool initialiseGStreamer();

} // namespace netcommon
