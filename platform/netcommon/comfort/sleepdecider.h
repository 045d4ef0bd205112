#pragma once

#include <QtGlobal>

namespace netcommon {

// The sleep timer: fades the music out and pauses it. All times are milliseconds of one clock.
class SleepDecider {
public:
    enum class Mode { Off, Time, Track };
    static constexpr qint64 fadeMs = 60'000;

    void start(qint64 now, qint64 ms);
    void afterTrack();
    void off();

    Mode mode() const { return m_mode; }
    qint64 leftMs(qint64 now) const; // in Mode::Time; at least 0

    void trackEnds(qint64 now); // it asks for the next one
    void trackBegins();

    struct Action {
        double fade = 1;           // of the sound
        bool silencesNext = false; // the next track must not be heard
        bool pauses = false;       // the pause key is to be pressed now
        bool isOver = false;       // once: it sleeps now
        bool operator==(const Action &) const = default;
    };
    // About five times a second while the mode is not Off. isSounding: playback plays.
    Action step(qint64 now, bool isSounding);

private:
    Action end(qint64 now, bool isSounding);

    Mode m_mode = Mode::Off;
    qint64 m_end = 0;            // in Mode::Time
    qint64 m_trackEnd = -1;      // in Mode::Track: when it ended; -1: it plays
    bool m_hasNextBegun = false; // valid after that
    qint64 m_lastPause = -1;     // when the key was last to be pressed; -1: never
};

} // namespace netcommon
