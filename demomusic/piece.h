#pragma once

#include "harmony.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velmora::demo {

enum class Style { SlowPiano, Folk, Dance, Drones, Swing, Rock };

// The composed part of a track; everything else follows from the seed. The texts are literals of static tables.
struct Piece {
    Style style;
    uint64_t seed;
    int variant; // which of the style's textures, 0 to 4
    int key;     // pitch class of the key note, C is 0
    Mode mode;
    int tempo; // beats a minute
    int beatsPerBar;
    const char *form;     // sections, "I4 A8 B8 A8 E2": I introduction, A verse, B contrast, C solo, E ending
    const char *verse;    // chords of A, of I, and of C; see parseBars(); repeated as long as the section is
    const char *contrast; // chords of B
    const char *ending;   // chords of E; the last bar is one chord that rings
};

struct Section {
    char kind; // I A B C E
    int pass;  // 0 for the first of its kind
    int bars;
    double beat;  // where it begins
    double beats; // how long it is
};
std::vector<Section> sections(const Piece &piece);

// Converts beats to seconds, with swing and a slowing ending.
class TempoMap {
public:
    // `swing`: where the second half of a beat begins, 0.5 (even) to 0.67. From `slowFrom` to `end` (beats) the tempo
    // falls steadily, by `slowing` in total (0.3: the last beat lasts 1.3 times as long).
    TempoMap(int tempo, double swing, double slowFrom, double end, double slowing);
    double seconds(double beat) const;

private:
    double m_beatSeconds, m_swing, m_slowFrom, m_end, m_slowing;
};
TempoMap tempoMap(const Piece &piece);

// Whole seconds of the finished recording, the last chord's ringing included.
int durationSeconds(const Piece &piece);

} // namespace velmora::demo
