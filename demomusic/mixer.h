#pragma once

#include "oscillator.h"

namespace velmora::demo {

// Where and how loud a sound stands.
struct Placement {
    float gain = 1;
    float pan = 0;       // -1 left, 1 right
    float reverb = 0;    // how much of it goes into the room
    float echo = 0;      // how much of it goes into the echo
    bool ducked = false; // gives way to the beats of Mixer::duck
};

struct Room {
    double decay = 1.5, brightness = 5000, size = 0.8;
    double echoSeconds = 0, echoFeedback = 0.4; // 0 seconds: no echo
};

// What the finished recording shall be.
struct Mastering {
    double loudness = -16.5; // LUFS, of the whole recording
    double drive = 0;        // 0 to 1: how much the loudest moments are rounded before the limiter
    double fadeSeconds = 2;  // at the very end
    double treble = 0;       // dB, above about 2.5 kHz
};

// Two channels of a whole recording, a room and an echo behind them.
class Mixer {
public:
    Mixer(double seconds, const Room &room);

    // Sounds reaching over the end are cut there (the final fade hides it).
    void add(const Buffer &sound, double startSeconds, const Placement &placement);
    // From now on ducked sounds are pushed down by `depth` (0 to 1) at each of the ascending times.
    void duck(const std::vector<double> &times, float depth, double recoverySeconds);
    // Room, loudness, limiter and fade; after it left() and right() are final. Once only.
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

// Integrated loudness in LUFS (K-weighted, blocks below -60 left out).
double loudness(const Buffer &left, const Buffer &right);

} // namespace velmora::demo
