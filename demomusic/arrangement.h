#pragma once

#include "mixer.h"
#include "piece.h"
#include "random.h"

namespace velmora::demo {

// A chord, its start and its length, in beats from the start of the piece.
struct ChordSpan {
    double beat, beats;
    Chord chord;
};

struct MelodyNote {
    double beat, beats;
    int pitch;
    float accent; // 0 to 1
};

// A piece that is being rendered into a mixer: its chords, and the time of each beat.
class Arrangement {
public:
    Arrangement(const Piece &piece, Mixer &mixer);

    const Piece &piece() const { return m_piece; }
    const std::vector<Section> &sections() const { return m_sections; }
    const Scale &scale() const { return m_scale; } // key note between C3 (48) and B3
    Mixer &mixer() { return m_mixer; }
    Random random(uint64_t part) const { return Random(m_piece.seed).fork(part); }

    const std::vector<ChordSpan> &chords() const { return m_chords; }
    std::vector<ChordSpan> chords(const Section &section) const;
    const Chord &chordAt(double beat) const;

    double seconds(double beat) const { return m_tempo.seconds(beat); }
    double length(double beat, double beats) const { return seconds(beat + beats) - seconds(beat); }
    // `late` in seconds; may be negative.
    void play(const Buffer &sound, double beat, const Placement &placement, double late = 0);

private:
    const Piece &m_piece;
    Mixer &m_mixer;
    std::vector<Section> m_sections;
    Scale m_scale;
    TempoMap m_tempo;
    std::vector<ChordSpan> m_chords;
};

// The loudness of a section, 0 to 1: quiet at both ends of the song, loudest in the contrast.
float dynamics(const Section &section);

// One function for each style; it plays the whole piece.
void arrangeSlowPiano(Arrangement &arrangement);
void arrangeFolk(Arrangement &arrangement);
void arrangeDance(Arrangement &arrangement);
void arrangeDrones(Arrangement &arrangement);
void arrangeSwing(Arrangement &arrangement);
void arrangeRock(Arrangement &arrangement);

} // namespace velmora::demo
