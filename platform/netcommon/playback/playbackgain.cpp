#include "playbackgain.h"

#include <QDebug>

namespace netcommon {

namespace {

// Tags that name their reference level and mean another one than this are corrected.
constexpr double referenceLevelDb = 89;

GstElement *added(GstBin *pipeline, const char *factory)
{
    GstElement *const element = gst_element_factory_make(factory, nullptr);
    if (element)
        gst_bin_add(pipeline, element);
    return element;
}

} // namespace

PlaybackGain::PlaybackGain(GstBin *pipeline, bool isLevelled)
    : m_volume(added(pipeline, "volume"))
{
    if (!m_volume || !isLevelled)
        return;
    m_limiter = added(pipeline, "rglimiter");
    if (!m_limiter) {
        qDebug("PlaybackGain,level,not installed: rglimiter");
        return;
    }
    m_convert = added(pipeline, "audioconvert");
    g_object_set(m_limiter, "enabled", FALSE, nullptr);
    gst_element_link_many(m_volume, m_limiter, m_convert, nullptr);
}

void PlaybackGain::serviceSays(const TrackLoudness &loudness)
{
    const std::lock_guard lock(m_mutex);
    m_isSaidByService = true;
    setLevel(loudness);
}

void PlaybackGain::tagsSay(GstEvent *event)
{
    GstTagList *tags = nullptr;
    gst_event_parse_tag(event, &tags);
    double gain = 0;
    double value = 0;
    if (!gst_tag_list_get_double(tags, GST_TAG_TRACK_GAIN, &gain))
        return;
    if (gst_tag_list_get_double(tags, GST_TAG_REFERENCE_LEVEL, &value))
        gain += referenceLevelDb - value;
    TrackLoudness loudness{gain, {}};
    if (gst_tag_list_get_double(tags, GST_TAG_TRACK_PEAK, &value) && value > 0)
        loudness.peak = value;
    const std::lock_guard lock(m_mutex);
    if (!m_isSaidByService)
        setLevel(loudness);
}

void PlaybackGain::setFactor(double factor)
{
    const std::lock_guard lock(m_mutex);
    if (m_factor == factor)
        return;
    m_factor = factor;
    apply();
}

void PlaybackGain::setLevel(const TrackLoudness &loudness)
{
    const Level level = levelFor(loudness);
    if (!m_limiter || level == m_level)
        return;
    m_level = level;
    qDebug("PlaybackGain,level,gain=%.2f dB,limited=%d.", loudness.gainDb, m_level.needsLimiter);
    g_object_set(m_limiter, "enabled", m_level.needsLimiter, nullptr);
    apply();
}

void PlaybackGain::apply()
{
    g_object_set(m_volume, "volume", m_level.factor * m_factor, nullptr);
}

} // namespace netcommon
