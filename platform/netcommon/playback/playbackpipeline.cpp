#include "playbackpipeline.h"

#include "playbackboard.h"

#include <QDebug>

#include <cstring>
#include <utility>

namespace netcommon {

namespace {

// The buffer for downloaded data of a track. Most compressed tracks fit completely. It holds half a minute or more of a
// lossless track, which bridges a network failure.
constexpr guint queueBytes = 3584 * 1024;
// The buffer may be larger when it holds less sound than this: more than the high water line, 7 s, at up to
// 9.6 Mbit/s. With less, the player screen could never resume.
constexpr guint64 queueTime = 30 * GST_SECOND;
constexpr guint largeQueueBytes = 8 * 1024 * 1024;
constexpr guint64 sourceBytes = 256 * 1024;
// The size of a block of packed frames. With the headers of the box and of the allocator it fills whole pages, which go
// back to the system when it is freed.
constexpr gsize blockBytes = 256 * 1024 - 64;
constexpr gsize largestPacked = blockBytes / 8;

bool startsWith(const gchar *text, const char *prefix)
{
    return text && std::strncmp(text, prefix, std::strlen(prefix)) == 0;
}

bool isAudio(GstPad *pad)
{
    GstCapsOwner caps(gst_pad_get_current_caps(pad));
    if (!caps)
        caps.reset(gst_pad_query_caps(pad, nullptr));
    return caps && gst_caps_get_size(caps.get()) > 0 &&
           startsWith(gst_structure_get_name(gst_caps_get_structure(caps.get(), 0)), "audio/");
}

// Whether this pad belongs to a parser or a demuxer. Tag readers do not count.
bool isRecognised(GstPad *pad)
{
    const GstOwner<GstPad> target(GST_IS_GHOST_PAD(pad) ? gst_ghost_pad_get_target(GST_GHOST_PAD(pad)) : nullptr);
    const GstOwner<GstElement> owner(gst_pad_get_parent_element(target ? target.get() : pad));
    GstElementFactory *const factory = owner ? gst_element_get_factory(owner.get()) : nullptr;
    const gchar *const klass =
        factory ? gst_element_factory_get_metadata(factory, GST_ELEMENT_METADATA_KLASS) : nullptr;
    return klass && (std::strstr(klass, "Parser") || std::strstr(klass, "Demuxer")) && !std::strstr(klass, "Metadata");
}

// GstAutoplugSelectResult has no public header.
constexpr int autoplugTry = 0;
constexpr int autoplugSkip = 2;

// GStreamer would open the addresses in a playlist (HLS, DASH, SDP) by itself, whatever their scheme: such elements are
// left out.
int selectParser(GstElement *, GstPad *, GstCaps *, GstElementFactory *factory, gpointer)
{
    const gchar *const klass = gst_element_factory_get_metadata(factory, GST_ELEMENT_METADATA_KLASS);
    const bool opensAddresses = klass && (std::strstr(klass, "Adaptive") || std::strstr(klass, "Network"));
    return opensAddresses ? autoplugSkip : autoplugTry;
}

} // namespace

void GstSinkClose::operator()(GstElement *sink) const
{
    gst_element_set_state(sink, GST_STATE_NULL);
    gst_object_unref(sink);
}

PlaybackSink makePlaybackSink(const QByteArray &description, QByteArray *problem)
{
    GError *error = nullptr;
    GstElement *const sink = gst_parse_bin_from_description_full(description.constData(), TRUE, nullptr,
                                                                 GST_PARSE_FLAG_FATAL_ERRORS, &error);
    if (!sink)
        *problem = description + " (" + (error ? error->message : "not understood") + ')';
    g_clear_error(&error);
    return PlaybackSink(sink ? GST_ELEMENT(gst_object_ref_sink(sink)) : nullptr);
}

bool isSilent(GstElement *sink)
{
    GstIterator *const elements = gst_bin_iterate_recurse(GST_BIN(sink));
    GValue found = G_VALUE_INIT;
    const bool isSilent = gst_iterator_find_custom(
        elements,
        [](gconstpointer value, gconstpointer) {
            auto *const element = GST_ELEMENT(g_value_get_object(static_cast<const GValue *>(value)));
            GstElementFactory *const factory = gst_element_get_factory(element);
            return factory && g_strcmp0(GST_OBJECT_NAME(factory), "fakesink") == 0 ? 0 : 1;
        },
        &found, nullptr);
    if (isSilent)
        g_value_unset(&found);
    gst_iterator_free(elements);
    return isSilent;
}

PlaybackPipeline::PlaybackPipeline(const Setup &setup, PlaybackInbox &inbox, Fetcher &fetcher)
    : m_setup(setup)
    , m_inbox(inbox)
    , m_feed(std::make_shared<FetcherFeed>(setup.id, inbox, fetcher))
    , m_pipeline(GST_ELEMENT(gst_object_ref_sink(gst_pipeline_new(nullptr))))
    , m_gain(GST_BIN(m_pipeline.get()), setup.isLevelled)
    , m_position(setup.startAtMs)
    , m_endNs(setup.startAtMs * GST_MSECOND)
{
    gst_segment_init(&m_segment, GST_FORMAT_TIME);
    GstElement *const source = add("appsrc", "source");
    GstElement *const parse = add("parsebin", "parse");
    m_queue = add("queue", "frames");
    m_decode = add("decodebin", "decode");
    m_convert = add("audioconvert", "convert");
    m_resample = add("audioresample", "resample");
    if (m_missing.isEmpty() && !m_gain.first())
        m_missing = "volume";
    if (!m_missing.isEmpty())
        return;

    // No size: parsers would guess a length from it, which is wrong by minutes for variable bit rates.
    g_object_set(source, "format", GST_FORMAT_BYTES, "stream-type", GST_APP_STREAM_TYPE_STREAM, "block", FALSE,
                 "max-bytes", sourceBytes, "min-percent", 50u, nullptr);
    g_object_set(m_queue, "max-size-bytes", queueBytes, "max-size-buffers", 0u, "max-size-time", guint64(0), nullptr);
    using Overrun = void (*)(GstElement *, gpointer);
    g_signal_connect(m_queue, "overrun", G_CALLBACK(Overrun([](GstElement *queue, gpointer) {
                         guint64 time = 0;
                         g_object_get(queue, "current-level-time", &time, nullptr);
                         if (time < queueTime)
                             g_object_set(queue, "max-size-bytes", largeQueueBytes, nullptr);
                     })),
                     nullptr);
    gst_element_link(source, parse);
    gst_element_link(m_queue, m_decode);
    gst_element_link(m_convert, m_gain.first());
    gst_element_link(m_gain.last(), m_resample);
    m_feed->attach(GST_APP_SRC(source), &m_gain);

    g_signal_connect(parse, "autoplug-select", G_CALLBACK(selectParser), nullptr);
    using PadAdded = void (*)(GstElement *, GstPad *, gpointer);
    g_signal_connect(parse, "pad-added", G_CALLBACK(PadAdded([](GstElement *, GstPad *pad, gpointer self) {
                         static_cast<PlaybackPipeline *>(self)->linkParsed(pad);
                     })),
                     this);
    g_signal_connect(m_decode, "pad-added", G_CALLBACK(PadAdded([](GstElement *, GstPad *pad, gpointer self) {
                         static_cast<PlaybackPipeline *>(self)->linkDecoded(pad);
                     })),
                     this);

    using UnknownType = void (*)(GstElement *, GstPad *, GstCaps *, gpointer);
    for (GstElement *const bin : {parse, m_decode})
        g_signal_connect(bin, "unknown-type",
                         G_CALLBACK(UnknownType([](GstElement *from, GstPad *pad, GstCaps *caps, gpointer self) {
                             static_cast<PlaybackPipeline *>(self)->unknownType(from, pad, caps);
                         })),
                         this);

    constexpr int data = GST_PAD_PROBE_TYPE_BUFFER | GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM;
    watch<&PlaybackPipeline::parsedProbe>(m_queue, "sink", data | GST_PAD_PROBE_TYPE_QUERY_DOWNSTREAM);
    m_waitProbe = watch<&PlaybackPipeline::decodedProbe>(m_convert, "sink", data | GST_PAD_PROBE_TYPE_BLOCK);
    watch<&PlaybackPipeline::renderProbe>(m_resample, "src", data);

    // There is no main loop: the thread that posts a message puts it into the playback thread's inbox.
    const GstOwner<GstBus> bus(gst_element_get_bus(m_pipeline.get()));
    gst_bus_set_sync_handler(
        bus.get(),
        [](GstBus *, GstMessage *message, gpointer self) {
            static_cast<PlaybackPipeline *>(self)->busMessage(message);
            gst_message_unref(message); // GST_BUS_DROP leaves our reference to us
            return GST_BUS_DROP;
        },
        this, nullptr);
}

PlaybackPipeline::~PlaybackPipeline()
{
    m_feed->detach();
    gst_element_set_state(m_pipeline.get(), GST_STATE_NULL);
    const GstOwner<GstBus> bus(gst_element_get_bus(m_pipeline.get()));
    gst_bus_set_sync_handler(bus.get(), nullptr, nullptr, nullptr);
}

GstElement *PlaybackPipeline::add(const char *factory, const char *name)
{
    GstElement *const element = gst_element_factory_make(factory, name);
    if (element)
        gst_bin_add(GST_BIN(m_pipeline.get()), element);
    else if (m_missing.isEmpty())
        m_missing = factory;
    return element;
}

template <PlaybackPipeline::Probe member>
gulong PlaybackPipeline::watch(GstElement *element, const char *padName, int types)
{
    const GstOwner<GstPad> pad(gst_element_get_static_pad(element, padName));
    return gst_pad_add_probe(
        pad.get(), static_cast<GstPadProbeType>(types),
        [](GstPad *, GstPadProbeInfo *info, gpointer self) {
            return (static_cast<PlaybackPipeline *>(self)->*member)(info);
        },
        this, nullptr);
}

bool PlaybackPipeline::attachSink(PlaybackSink sink)
{
    m_sink = std::move(sink);
    m_watchedSink = m_sink.get();
    gst_bin_add(GST_BIN(m_pipeline.get()), m_sink.get()); // takes a reference of its own
    const GstOwner<GstPad> pad(gst_element_get_static_pad(m_sink.get(), "sink"));
    if (!pad || !gst_element_link(m_resample, m_sink.get()))
        return false;
    gst_pad_set_offset(pad.get(), -m_setup.startAtMs * GST_MSECOND);
    // A pipeline that has not started yet would close the sink, which may be open.
    if (m_isStarted && !gst_element_sync_state_with_parent(m_sink.get()))
        return false;
    const GstOwner<GstPad> waiting(gst_element_get_static_pad(m_convert, "sink"));
    gst_pad_remove_probe(waiting.get(), std::exchange(m_waitProbe, 0));
    return true;
}

PlaybackSink PlaybackPipeline::takeSink()
{
    if (!m_sink || m_hasSinkFailed.load())
        return nullptr;
    // First, because a streaming thread may be waiting in it.
    gst_element_set_locked_state(m_sink.get(), TRUE);
    const bool isOpen = gst_element_set_state(m_sink.get(), GST_STATE_READY) == GST_STATE_CHANGE_SUCCESS;
    gst_element_unlink(m_resample, m_sink.get());
    gst_bin_remove(GST_BIN(m_pipeline.get()), m_sink.get());
    gst_element_set_locked_state(m_sink.get(), FALSE);
    m_watchedSink = nullptr;
    PlaybackSink sink = std::move(m_sink);
    return isOpen ? std::move(sink) : nullptr;
}

bool PlaybackPipeline::preroll()
{
    m_isStarted = true;
    return gst_element_set_state(m_pipeline.get(), GST_STATE_PAUSED) != GST_STATE_CHANGE_FAILURE;
}

void PlaybackPipeline::setPlaying(bool isPlaying)
{
    if (std::exchange(m_isPlaying, isPlaying) != isPlaying)
        gst_element_set_state(m_pipeline.get(), isPlaying ? GST_STATE_PLAYING : GST_STATE_PAUSED);
}

qint64 PlaybackPipeline::positionMs()
{
    gint64 ns = 0;
    if (m_sink && gst_element_query_position(m_pipeline.get(), GST_FORMAT_TIME, &ns) && ns >= 0)
        m_position = qMax<qint64>(ns / GST_MSECOND, m_setup.startAtMs); // while the start is fetched again, too
    return m_position;
}

qint64 PlaybackPipeline::lengthMs() const
{
    gint64 ns = -1;
    if (!gst_element_query_duration(m_pipeline.get(), GST_FORMAT_TIME, &ns) || ns <= 0)
        return -1;
    return ns / GST_MSECOND;
}

// In front of the queue: how much of the track has been received, in time.
GstPadProbeReturn PlaybackPipeline::parsedProbe(GstPadProbeInfo *info)
{
    if (info->type & GST_PAD_PROBE_TYPE_QUERY_DOWNSTREAM) {
        // A serialized query would wait in the queue until everything before it is played. In a paused pipeline it
        // would wait for ever, and block the download.
        return GST_QUERY_IS_SERIALIZED(GST_PAD_PROBE_INFO_QUERY(info)) ? GST_PAD_PROBE_DROP : GST_PAD_PROBE_OK;
    }
    if (info->type & GST_PAD_PROBE_TYPE_BUFFER) {
        GstBuffer *const buffer = GST_PAD_PROBE_INFO_BUFFER(info);
        if (!GST_BUFFER_PTS_IS_VALID(buffer))
            return GST_PAD_PROBE_OK; // headers
        guint64 end = GST_BUFFER_PTS(buffer);
        if (GST_BUFFER_DURATION_IS_VALID(buffer))
            end += GST_BUFFER_DURATION(buffer);
        if (m_segment.format == GST_FORMAT_TIME)
            gst_segment_to_stream_time_full(&m_segment, GST_FORMAT_TIME, end, &end);
        if (static_cast<qint64>(end) > m_endNs.load())
            m_endNs = static_cast<qint64>(end);
        if (static_cast<qint64>(end) <= m_setup.startAtMs * GST_MSECOND)
            return GST_PAD_PROBE_DROP;
        pack(info);
        return GST_PAD_PROBE_OK;
    }
    GstEvent *const event = GST_PAD_PROBE_INFO_EVENT(info);
    if (GST_EVENT_TYPE(event) == GST_EVENT_SEGMENT)
        gst_event_copy_segment(event, &m_segment);
    else if (GST_EVENT_TYPE(event) == GST_EVENT_EOS)
        m_isReceived = true;
    else if (GST_EVENT_TYPE(event) == GST_EVENT_TAG)
        m_gain.tagsSay(event);
    return GST_PAD_PROBE_OK;
}

// A parser's frame is a part of a fetched chunk, or a copy if it lies in two chunks, which then both stay in memory,
// too. So a frame that will wait for long is copied behind the previous one, and the chunks are freed at once.
void PlaybackPipeline::pack(GstPadProbeInfo *info)
{
    GstBuffer *const frame = GST_PAD_PROBE_INFO_BUFFER(info);
    const gsize size = gst_buffer_get_size(frame);
    if (size == 0 || size > largestPacked)
        return;
    if (!m_block || m_blockUsed + size > blockBytes) {
        m_block.reset(static_cast<char *>(g_atomic_rc_box_alloc(blockBytes)));
        m_blockUsed = 0;
    }
    char *const place = m_block.get() + m_blockUsed;
    m_blockUsed += size;
    gst_buffer_extract(frame, 0, place, size);
    GstBuffer *const packed = gst_buffer_new();
    gst_buffer_copy_into(packed, frame, GST_BUFFER_COPY_METADATA, 0, -1);
    gst_buffer_append_memory(packed,
                             gst_memory_new_wrapped(GST_MEMORY_FLAG_READONLY, place, size, 0, size,
                                                    g_atomic_rc_box_acquire(m_block.get()), g_atomic_rc_box_release));
    gst_buffer_unref(frame);
    GST_PAD_PROBE_INFO_DATA(info) = packed;
}

// Behind the decoder, while there is no sink: audio waits here. The events in front of it pass.
GstPadProbeReturn PlaybackPipeline::decodedProbe(GstPadProbeInfo *info)
{
    const bool isBuffer = (info->type & GST_PAD_PROBE_TYPE_BUFFER) != 0;
    if (!isBuffer && GST_EVENT_TYPE(GST_PAD_PROBE_INFO_EVENT(info)) != GST_EVENT_EOS)
        return GST_PAD_PROBE_PASS;
    (isBuffer ? m_hasDecoded : m_isEmpty) = true;
    m_inbox.push({PlaybackEvent::Kind::Decoded, m_setup.id});
    return GST_PAD_PROBE_OK; // stays blocked
}

// In front of the sink, which returns from a buffer once the device has taken it. So a buffer is counted when the next
// one comes. A buffer that a stop discards is not counted, nor one that a decoder still sends to a sink
// that has failed.
GstPadProbeReturn PlaybackPipeline::renderProbe(GstPadProbeInfo *info)
{
    if (m_hasSinkFailed.load())
        return GST_PAD_PROBE_OK;
    if (info->type & GST_PAD_PROBE_TYPE_BUFFER) {
        const GstBuffer *const buffer = GST_PAD_PROBE_INFO_BUFFER(info);
        PlaybackBoard::instance().addRenderedAudio(m_inSinkNs);
        m_inSinkNs = GST_BUFFER_DURATION_IS_VALID(buffer) ? static_cast<qint64>(GST_BUFFER_DURATION(buffer)) : 0;
        m_hasDecoded = true;
    } else if (GST_EVENT_TYPE(GST_PAD_PROBE_INFO_EVENT(info)) == GST_EVENT_EOS) {
        PlaybackBoard::instance().addRenderedAudio(std::exchange(m_inSinkNs, 0));
        if (!m_hasDecoded.load())
            m_isEmpty = true;
    }
    return GST_PAD_PROBE_OK;
}

void PlaybackPipeline::linkParsed(GstPad *pad)
{
    const GstOwner<GstPad> frames(gst_element_get_static_pad(m_queue, "sink"));
    if (!m_hasAudio.load())
        m_isRecognised = isRecognised(pad); // before data flows: the decoder may miss its plug-in at the first byte
    if (!gst_pad_is_linked(frames.get()) && isAudio(pad) && gst_pad_link(pad, frames.get()) == GST_PAD_LINK_OK) {
        m_hasAudio = true;
        return;
    }
    // Cover pictures and other streams need a sink of their own, or the parser blocks.
    GstElement *const drain = gst_element_factory_make("fakesink", nullptr);
    if (!drain)
        return;
    g_object_set(drain, "sync", FALSE, "async", FALSE, nullptr);
    gst_bin_add(GST_BIN(m_pipeline.get()), drain);
    gst_element_sync_state_with_parent(drain);
    const GstOwner<GstPad> drainPad(gst_element_get_static_pad(drain, "sink"));
    gst_pad_link(pad, drainPad.get());
}

void PlaybackPipeline::linkDecoded(GstPad *pad)
{
    const GstOwner<GstPad> target(gst_element_get_static_pad(m_convert, "sink"));
    if (!gst_pad_is_linked(target.get()))
        gst_pad_link(pad, target.get());
}

// No installed element accepts this pad. If a parser or a demuxer has recognised audio, its decoder is missing. If only
// typefind calls it audio, that is a guess from a few bytes, and the content is to blame.
void PlaybackPipeline::unknownType(GstElement *bin, GstPad *pad, GstCaps *caps)
{
    if (gst_caps_is_empty(caps) || gst_caps_is_any(caps))
        return;
    const gchar *const name = gst_structure_get_name(gst_caps_get_structure(caps, 0));
    if (startsWith(name, "audio/") && (bin == m_decode ? m_isRecognised.load() : isRecognised(pad)))
        m_inbox.push({PlaybackEvent::Kind::DecoderMissing, m_setup.id, 0, name});
}

// Any thread.
void PlaybackPipeline::busMessage(GstMessage *message)
{
    const auto tell = [this](PlaybackEvent::Kind kind, const char *text = "") {
        m_inbox.push({kind, m_setup.id, 0, text});
    };
    switch (GST_MESSAGE_TYPE(message)) {
    case GST_MESSAGE_ASYNC_DONE:
        if (GST_MESSAGE_SRC(message) == GST_OBJECT(m_pipeline.get()))
            tell(PlaybackEvent::Kind::Prerolled);
        break;
    case GST_MESSAGE_EOS:
        tell(PlaybackEvent::Kind::Ended);
        break;
    case GST_MESSAGE_ERROR: {
        GError *error = nullptr;
        gst_message_parse_error(message, &error, nullptr);
        GstElement *const sink = m_watchedSink.load();
        const bool isSink = sink && gst_object_has_as_ancestor(GST_MESSAGE_SRC(message), GST_OBJECT(sink));
        if (isSink)
            m_hasSinkFailed = true;
        tell(isSink ? PlaybackEvent::Kind::SinkFailed : PlaybackEvent::Kind::ContentFailed,
             error ? error->message : "");
        g_clear_error(&error);
        break;
    }
    case GST_MESSAGE_ELEMENT: {
        const GstStructure *const s = gst_message_get_structure(message);
        if (!s || !gst_structure_has_name(s, "missing-plugin"))
            break;
        const GValue *const detail = gst_structure_get_value(s, "detail");
        const bool caps = detail && GST_VALUE_HOLDS_CAPS(detail) && gst_caps_get_size(gst_value_get_caps(detail)) > 0;
        const gchar *const name =
            caps ? gst_structure_get_name(gst_caps_get_structure(gst_value_get_caps(detail), 0)) : "";
        // Pages and lists: parsebin would wait for ever. Missing audio decoders: see unknownType().
        if (!m_hasAudio.load() && (startsWith(name, "text/") || startsWith(name, "application/")))
            tell(PlaybackEvent::Kind::ContentFailed, name);
        break;
    }
    default:
        break;
    }
}

bool initialiseGStreamer()
{
    gst_segtrap_set_enabled(FALSE); // the application handles signals itself
    GError *error = nullptr;
    if (!gst_init_check(nullptr, nullptr, &error)) {
        qDebug("PlaybackThread,start,GStreamer: %s", error ? error->message : "failed");
        g_clear_error(&error);
        return false;
    }
    // libav's MP3 decoders rank first and load 35 MB of libraries; mpg123 needs hardly any memory.
    GstRegistry *const registry = gst_registry_get();
    const auto feature = [registry](const char *name) {
        return GstOwner<GstPluginFeature>(gst_registry_lookup_feature(registry, name));
    };
    const auto mpg123 = feature("mpg123audiodec");
    if (mpg123 && gst_plugin_feature_get_rank(mpg123.get()) > GST_RANK_NONE)
        for (const char *const name : {"avdec_mp3", "avdec_mp3float"})
            if (const auto libav = feature(name))
                gst_plugin_feature_set_rank(libav.get(), GST_RANK_NONE);
    for (const char *const name : {"appsrc", "parsebin", "queue", "decodebin", "audioconvert", "volume", "rglimiter",
                                   "audioresample", "typefind", "mpegaudioparse", "mpg123audiodec", "flacparse",
                                   "flacdec", "oggdemux", "vorbisdec", "opusdec", "wavparse"})
        if (!feature(name))
            qDebug("PlaybackThread,start,not installed: %s", name);
    return true;
}

} // namespace netcommon
