#pragma once

#include "oscillator.h"

namespace velmora::demo {

// Level and position of a sound in the mix.
struct Placement {
    float gain = 1;
    float pan = 0;       // -1 left, 1 right
    float reverb = 0;    // level sent to the reverb
    float echo = 0;      // level sent to the echo
    bool ducked = false; // lowered at the beats of Mixer::duck
};

struct Room {
    double decay = 1.5, brightness = 5000, size = 0.8;
    double echoSeconds = 0, echoFeedback = 0.4; // 0 seconds: no echo
};

// Targets for the finished recording.
struct Mastering {
    double loudness = -16.5; // LUFS, of the whole recording
    double drive = 0;        // 0 to 1: amount of soft clipping before the limiter
    double fadeSeconds = 2;  // at the very end
    double treble = 0;       // dB, above about 2.5 kHz
};

// A whole stereo recording, with reverb and echo.
class Mixer {
public:
    Mixer(double seconds, const Room &room);

    // A sound that lasts beyond the end is cut there; the final fade hides the cut.
    void add(const Buffer &sound, double startSeconds, const Placement &placement);
    // Sounds added later with `ducked` are lowered by `depth` (0 to 1) at each of the ascending times.
    void duck(const std::vector<double> &times, float depth, double recoverySeconds);
    // Applies reverb, loudness, limiter and fade. Afterwards left() and right() are final. Called once.
    void master(const Mastering &mastering);

    const Buffer &left() const { return m_left; }
    const Buffer &right() const { return m_right; }

private:
    float duckGain(double seconds) const;
    void addEcho();

    Room m_room;
    Buffer m_left, m_right, m_send, m_echo;
    std::vector<double> m_beats;
    float m_depth = 0;
    double m_recovery = 0.2;
};

// Integrated loudness in LUFS (K-weighted, without blocks below -60).
double loudness(const Buffer &left, const Buffer &right);

} // namespace velmora::demo
