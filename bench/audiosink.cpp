// A GStreamer plug-in: the audio sink "benchsink", which plays into nothing in real time. Like the observer it says on
// standard output what happened and when. At the first sample of a stream, once that is due by the clock:
//   bench,lastsample,MILLISECONDS OF THE STREAM BEFORE THAT WERE HEARD,when the last of them had sounded,0
//   bench,firstsample,,now,0
// in monotonic microseconds. The mark is the beginning of a stream, which every track has, and not the opening of the
// sink, which stays open between tracks.
#include <gst/base/gstbasesink.h>

#include <cstdio>

namespace {

struct BenchSink {
    GstBaseSink base;
    // Of the streaming thread, of which there is one at a time.
    gboolean isNew;  // no sample of this stream was heard yet
    gint64 endUs;    // when the last sample that was heard ends; 0: none was heard
    guint64 heardNs; // of this stream
};

struct BenchSinkClass {
    GstBaseSinkClass base;
};

G_DEFINE_TYPE(BenchSink, bench_sink, GST_TYPE_BASE_SINK)

BenchSink *self(GstBaseSink *base)
{
    return reinterpret_cast<BenchSink *>(base);
}

gboolean event(GstBaseSink *base, GstEvent *event)
{
    if (GST_EVENT_TYPE(event) == GST_EVENT_STREAM_START)
        self(base)->isNew = TRUE;
    return GST_BASE_SINK_CLASS(bench_sink_parent_class)->event(base, event);
}

// Called when the buffer is due. The end of its sound is taken from the pipeline's clock, not from the time of this
// call, which may be late. No element of the pipeline has a clock, so that is the system's monotonic one.
GstFlowReturn render(GstBaseSink *base, GstBuffer *buffer)
{
    BenchSink *const sink = self(base);
    if (sink->isNew) {
        const gint64 nowUs = g_get_monotonic_time();
        if (sink->endUs > 0)
            std::printf("bench,lastsample,%" G_GUINT64_FORMAT ",%" G_GINT64_FORMAT ",0\n", sink->heardNs / GST_MSECOND,
                        sink->endUs);
        std::printf("bench,firstsample,,%" G_GINT64_FORMAT ",0\n", nowUs);
        std::fflush(stdout);
        sink->isNew = FALSE;
        sink->heardNs = 0;
    }
    const GstClockTime duration = GST_BUFFER_DURATION(buffer);
    const guint64 end = gst_segment_to_running_time(&base->segment, GST_FORMAT_TIME, GST_BUFFER_PTS(buffer) + duration);
    if (!GST_CLOCK_TIME_IS_VALID(duration) || !GST_CLOCK_TIME_IS_VALID(end))
        return GST_FLOW_ERROR;
    sink->heardNs += duration;
    sink->endUs = static_cast<gint64>((gst_element_get_base_time(GST_ELEMENT(base)) + end) / GST_USECOND);
    return GST_FLOW_OK;
}

void bench_sink_init(BenchSink *sink)
{
    gst_base_sink_set_sync(&sink->base, TRUE);
}

void bench_sink_class_init(BenchSinkClass *type)
{
    auto *const element = reinterpret_cast<GstElementClass *>(type);
    gst_element_class_set_static_metadata(element, "Benchmark sink", "Sink/Audio", "Says when tracks begin", "Velmora");
    GstCaps *const caps = gst_caps_new_empty_simple("audio/x-raw");
    gst_element_class_add_pad_template(element, gst_pad_template_new("sink", GST_PAD_SINK, GST_PAD_ALWAYS, caps));
    gst_caps_unref(caps);
    type->base.event = event;
    type->base.render = render;
}

gboolean initialise(GstPlugin *plugin)
{
    return gst_element_register(plugin, "benchsink", GST_RANK_NONE, bench_sink_get_type());
}

} // namespace

#define PACKAGE "velmora"
GST_PLUGIN_DEFINE(GST_VERSION_MAJOR, GST_VERSION_MINOR, benchsink, "Sink of the benchmarks", initialise, "1",
                  GST_LICENSE_UNKNOWN, PACKAGE, PACKAGE)
