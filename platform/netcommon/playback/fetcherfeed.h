#pragma once

#include "fetcher.h"
#include "gstowner.h"
#include "playbackgain.h"
#include "playbackinbox.h"

#include <gst/app/gstappsrc.h>

#include <atomic>
#include <mutex>

namespace netcommon {

// Passes the bytes of a fetch into one pipeline. Owned by the pipeline and, during the fetch, by the fetcher. After
// detach() arriving bytes are discarded, so that neither owner waits for the other.
class FetcherFeed : public FetchSink {
public:
    FetcherFeed(quint64 pipelineId, PlaybackInbox &inbox, Fetcher &fetcher);

    // Before the pipeline leaves NULL. Both live until detach().
    void attach(GstAppSrc *source, PlaybackGain *gain);
    void detach(); // before it is set to NULL again; any thread
    // Milliseconds since the last byte came, or since attach().
    qint64 silentMs() const;
    // Milliseconds since the first byte came; 0 before it.
    qint64 arrivingMs() const;

    void setUrgent(bool isUrgent) { m_isUrgent = isUrgent; } // any thread

    bool wanted() const override { return m_isWanted.load(); }
    bool isUrgent() const override { return m_isUrgent.load(); }
    void describe(const TrackLoudness &loudness) override;
    void push(const QByteArray &bytes) override;
    void complete() override;
    void failed() override;

private:
    static void needData(GstAppSrc *, guint, gpointer self);
    static void enoughData(GstAppSrc *, gpointer self);

    const quint64 m_id;
    PlaybackInbox &m_inbox;
    Fetcher &m_fetcher;
    std::atomic<bool> m_isWanted{false};
    std::atomic<bool> m_isUrgent{true}; // nothing is there to play at first
    // Milliseconds of the steady clock.
    std::atomic<qint64> m_firstByte{0}; // 0: none came
    std::atomic<qint64> m_lastByte{0};
    std::mutex m_mutex;
    GstOwner<GstAppSrc> m_source;   // null: detached
    PlaybackGain *m_gain = nullptr; // the same
};

} // namespace netcommon
