#pragma once

#include <gst/gst.h>

namespace netcommon {

// Sets the volume of an audio sink: a stream volume (PulseAudio, PipeWire) if the sink has one, else none. One object
// for one sink. Playback thread only.
class SinkVolume {
public:
    // percent: 0 to 100, as a person perceives it. Takes effect with the next apply().
    void want(int percent, bool isMuted);
    // sink: the same each time. One that is not open yet may not know its device, and is looked at again when it is.
    // Does nothing if nothing has changed.
    void apply(GstElement *sink, bool isOpen);
    // By which the pipeline must multiply the samples: 1 if the sink has a volume of its own.
    double factor() const;

private:
    int m_percent = 100;
    bool m_isMuted = false;
    bool m_isApplied = false;
    bool m_hasOwn = false; // the sink has a volume of its own; known once it was applied
};

} // namespace netcommon
