#pragma once

#include <QString>

namespace netcommon {

// The mixer that belongs to an ALSA device, by its name: "plughw:CARD=Audio,DEV=0" has the mixer "hw:Audio".
QString mixerOf(const QString &device);

// Sets the volume of the card behind an ALSA device by amixer, on a scale that is even to the ear. False: it has no
// mixer that answers in time, or no control in it for playback (HDMI, for instance). percent: 0 to 100. Any thread.
bool setMixerVolume(const QString &device, int percent);

} // namespace netcommon
