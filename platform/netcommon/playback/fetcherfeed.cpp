#include "fetcherfeed.h"

#include <chrono>

namespace netcommon {

namespace {
qint64 nowMs()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}
} // namespace

FetcherFeed::FetcherFeed(quint64 pipelineId, PlaybackInbox &inbox, Fetcher &fetcher)
    : m_id(pipelineId)
    , m_inbox(inbox)
    , m_fetcher(fetcher)
    , m_lastByte(nowMs())
{
}

void FetcherFeed::attach(GstAppSrc *source, PlaybackGain *gain)
{
    GstAppSrcCallbacks callbacks{};
    callbacks.need_data = needData;
    callbacks.enough_data = enoughData;
    // The pipeline sets its elements to NULL before it lets go of us, so a bare pointer is enough.
    gst_app_src_set_callbacks(source, &callbacks, this, nullptr);
    const std::lock_guard lock(m_mutex);
    m_source.reset(GST_APP_SRC(gst_object_ref(source)));
    m_gain = gain;
}

void FetcherFeed::detach()
{
    m_isWanted = false;
    const std::lock_guard lock(m_mutex);
    m_source.reset();
    m_gain = nullptr;
}

qint64 FetcherFeed::silentMs() const
{
    return nowMs() - m_lastByte.load();
}

qint64 FetcherFeed::arrivingMs() const
{
    const qint64 first = m_firstByte.load();
    return first > 0 ? nowMs() - first : 0;
}

void FetcherFeed::describe(const TrackLoudness &loudness)
{
    const std::lock_guard lock(m_mutex);
    if (m_gain)
        m_gain->serviceSays(loudness);
}

void FetcherFeed::push(const QByteArray &bytes)
{
    m_lastByte = nowMs();
    if (m_firstByte.load() == 0)
        m_firstByte = m_lastByte.load();
    const std::lock_guard lock(m_mutex);
    if (m_source)
        gst_app_src_push_buffer(m_source.get(),
                                gst_buffer_new_memdup(bytes.constData(), static_cast<gsize>(bytes.size())));
}

void FetcherFeed::complete()
{
    const std::lock_guard lock(m_mutex);
    if (!m_source)
        return;
    gst_app_src_end_of_stream(m_source.get());
    m_inbox.push({PlaybackEvent::Kind::BodyComplete, m_id});
}

void FetcherFeed::failed()
{
    const std::lock_guard lock(m_mutex);
    if (m_source)
        m_inbox.push({PlaybackEvent::Kind::BodyFailed, m_id});
}

void FetcherFeed::needData(GstAppSrc *, guint, gpointer self)
{
    auto *const feed = static_cast<FetcherFeed *>(self);
    if (!feed->m_isWanted.exchange(true))
        feed->m_fetcher.wake();
}

void FetcherFeed::enoughData(GstAppSrc *, gpointer self)
{
    static_cast<FetcherFeed *>(self)->m_isWanted = false;
}

} // namespace netcommon
