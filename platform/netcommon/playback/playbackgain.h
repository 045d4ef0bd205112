#pragma once

#include "levelling.h"

#include <gst/gst.h>

#include <mutex>

namespace netcommon {

// The part of a track's pipeline that makes it louder or quieter:
//
//   volume                                   without levelling
//   volume ! rglimiter ! audioconvert        with it; the limiter works on floating point
//
// One volume element does all: what levels the track, a fade, and the volume of a sink that has none of its own. Made
// by the playback thread; the setters may be called from any thread.
class PlaybackGain {
public:
    // The pipeline owns the elements, and outlives this object. Without an installed limiter nothing is levelled.
    PlaybackGain(GstBin *pipeline, bool isLevelled);

    // Null: the volume element is not installed.
    GstElement *first() const { return m_volume; }
    GstElement *last() const { return m_convert ? m_convert : m_volume; }

    // What the service says counts, whatever the tags say.
    void serviceSays(const TrackLoudness &loudness);
    void tagsSay(GstEvent *event); // a tag event
    void setFactor(double factor); // 0 to 1

private:
    void setLevel(const TrackLoudness &loudness);
    void apply();

    GstElement *m_volume = nullptr;
    GstElement *m_limiter = nullptr; // null: nothing is levelled
    GstElement *m_convert = nullptr; // the same
    std::mutex m_mutex;              // protects what follows
    bool m_isSaidByService = false;
    Level m_level;
    double m_factor = 1;
};

} // namespace netcommon
