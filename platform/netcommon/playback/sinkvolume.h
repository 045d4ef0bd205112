#pragma once

#include <gst/gst.h>

namespace netcommon {

// Sets the volume of an audio sink: a stream volume (PulseAudio, PipeWire) if the sink has one, else the mixer of its
// ALSA card, else none. One object for one sink. Playback thread only.
class SinkVolume {
public:
    // percent: 0 to 100, as a person perceives it. Takes effect with the next apply().
    void want(int percent, bool isMuted);
    // A stream begins, which has forgotten its volume, or has it only now.
    void streamBegins() { m_isApplied = false; }
    // sink: the same each time. Does nothing if nothing has changed.
    void apply(GstElement *sink);
    // By which the pipeline must multiply the samples: 1 if the sink has a volume of its own.
    double factor() const;

private:
    bool setOwn(GstElement *sink);

    int m_percent = 100;
    bool m_isMuted = false;
    bool m_isApplied = false;
    bool m_hasOwn = false;   // the sink has a volume of its own; known once it was applied
    int m_mixerPercent = -1; // as the card's mixer was set; -1: it was not
};

} // namespace netcommon
