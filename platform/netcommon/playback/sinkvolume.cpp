#include "sinkvolume.h"

#include "alsamixer.h"
#include "gstowner.h"

#include <gst/audio/streamvolume.h>

#include <memory>

namespace netcommon {

namespace {

// Loudness grows with the cube of the factor, about as it is perceived.
double cubic(int percent)
{
    const double share = percent / 100.0;
    return share * share * share;
}

using Matches = bool (*)(GstElement *element);

// The element of the sink that matches; null: none. The caller owns a reference.
GstOwner<GstElement> find(GstElement *sink, Matches matches)
{
    const std::unique_ptr<GstIterator, decltype(&gst_iterator_free)> elements(gst_bin_iterate_recurse(GST_BIN(sink)),
                                                                              gst_iterator_free);
    GValue found = G_VALUE_INIT;
    const auto compare = [](gconstpointer value, gconstpointer rule) {
        auto *const element = GST_ELEMENT(g_value_get_object(static_cast<const GValue *>(value)));
        return (*static_cast<const Matches *>(rule))(element) ? 0 : 1;
    };
    if (!gst_iterator_find_custom(elements.get(), compare, &found, &matches))
        return nullptr;
    GstOwner<GstElement> element(GST_ELEMENT(g_value_dup_object(&found)));
    g_value_unset(&found);
    return element;
}

bool hasStreamVolume(GstElement *element)
{
    return GST_IS_STREAM_VOLUME(element);
}

bool isAlsa(GstElement *element)
{
    GstElementFactory *const factory = gst_element_get_factory(element);
    return factory && g_strcmp0(GST_OBJECT_NAME(factory), "alsasink") == 0;
}

QString deviceOf(GstElement *alsa)
{
    gchar *text = nullptr;
    g_object_get(alsa, "device", &text, nullptr);
    QString device = text ? QString::fromUtf8(text) : QStringLiteral("default");
    g_free(text);
    return device;
}

} // namespace

void SinkVolume::want(int percent, bool isMuted)
{
    m_isApplied = m_isApplied && percent == m_percent && isMuted == m_isMuted;
    m_percent = percent;
    m_isMuted = isMuted;
}

void SinkVolume::apply(GstElement *sink)
{
    if (m_isApplied)
        return;
    m_isApplied = true;
    m_hasOwn = setOwn(sink);
}

bool SinkVolume::setOwn(GstElement *sink)
{
    if (const auto stream = find(sink, hasStreamVolume)) {
        auto *const volume = GST_STREAM_VOLUME(stream.get());
        gst_stream_volume_set_volume(volume, GST_STREAM_VOLUME_FORMAT_CUBIC, m_percent / 100.0);
        gst_stream_volume_set_mute(volume, m_isMuted);
        return true;
    }
    const auto alsa = find(sink, isAlsa);
    if (!alsa)
        return false;
    const int percent = m_isMuted ? 0 : m_percent;
    if (m_mixerPercent != percent)
        m_mixerPercent = setMixerVolume(deviceOf(alsa.get()), percent) ? percent : -1;
    return m_mixerPercent >= 0;
}

double SinkVolume::factor() const
{
    if (m_hasOwn)
        return 1;
    return m_isMuted ? 0 : cubic(m_percent);
}

} // namespace netcommon
