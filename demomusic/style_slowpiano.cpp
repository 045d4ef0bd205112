// Slow piano: one piano with the pedal down, in a hall.

#include "arrangement.h"
#include "keys.h"
#include "melody.h"

#include <algorithm>
#include <cmath>

namespace velmora::demo {
namespace {

constexpr float felt[] = {0.15f, 0.25f, 0.45f, 0.7f, 0.1f}; // of each variant

class PianoPlayer {
public:
    explicit PianoPlayer(Arrangement &arrangement)
        : m_arrangement(arrangement)
        , m_random(arrangement.random('p'))
        , m_softness(felt[arrangement.piece().variant % 5])
    {
    }

    // Low keys sound from the left, as for the player.
    void key(int pitch, double beat, double beats, float velocity, double late = 0)
    {
        const Placement place{0.9f, std::clamp((float(pitch) - 62) / 50, -0.45f, 0.45f), 0.32f};
        const double seconds = m_arrangement.length(beat, beats) + 0.06;
        // Rubato: the tempo moves a little forward and back over eight beats.
        const double sway = 0.018 * std::sin(beat * 0.785) + 0.006 * double(m_random.bipolar());
        m_arrangement.play(piano({double(pitch), seconds, std::clamp(velocity, 0.08f, 1.0f)}, m_softness), beat, place,
                           sway + late);
    }

    void rolled(const Voicing &voicing, double beat, double beats, float velocity, double spread)
    {
        for (size_t i = 0; i < voicing.size(); ++i)
            key(voicing[i], beat, beats, velocity, spread * double(i));
    }

private:
    Arrangement &m_arrangement;
    Random m_random;
    float m_softness;
};

// The left hand over one chord.
void accompany(PianoPlayer &player, const Arrangement &arrangement, const ChordSpan &span, const Voicing &voicing,
               float loud, float fullness)
{
    const int key = arrangement.scale().keyNote(), bass = bassNote(span.chord, key, 34);
    const double end = span.beat + span.beats;
    const float v = loud * 0.62f;
    const auto held = [&](double beat) { return end - beat; };
    player.key(bass, span.beat, span.beats, v + 0.12f);
    const int fifth = nearestTone(span.chord, key, bass + 7), tenth = nearestTone(span.chord, key, bass + 16);
    switch (arrangement.piece().variant) {
    case 1: // waltz: the chord on the second and third beat
        for (double beat = span.beat + 1; beat < end; ++beat)
            player.rolled(voicing, beat, std::min(0.9, held(beat)), v * 0.72f, 0.012);
        break;
    case 2: // hymn: full chords with a moving inner voice
        player.rolled(voicing, span.beat, span.beats, v * 0.8f, 0.03);
        if (span.beats >= 3 && fullness > 0.6f) {
            player.key(voicing[1] > 0 ? arrangement.scale().pitch(arrangement.scale().degreeNear(voicing[1]) + 1) : 60,
                       span.beat + 2, 1, v * 0.6f);
            player.key(voicing[1], span.beat + 3, 1, v * 0.55f);
        }
        break;
    case 3: // two alternating tones under a calm melody
        for (double beat = span.beat; beat < end - 0.01; beat += 0.5) {
            const int step = int(std::lround((beat - span.beat) * 2));
            const int pitch = step % 4 == 0 ? voicing[0] : step % 4 == 2 ? voicing[1] : voicing.back();
            player.key(pitch, beat, std::min(1.5, held(beat)), v * (step % 4 == 0 ? 0.75f : 0.55f));
        }
        break;
    case 4: { // nocturne: triplets up two octaves and back
        const int line[] = {bass, fifth, tenth, voicing.front(), voicing.back(), tenth};
        for (int step = 1; step / 3.0 < span.beats - 0.01; ++step) {
            const double beat = span.beat + step / 3.0;
            player.key(line[step % 6], beat, held(beat), v * (step % 3 == 0 ? 0.72f : 0.55f));
        }
        break;
    }
    default: { // broken chords in eighths
        const int line[] = {bass, fifth, voicing[0], voicing[1], voicing.back(), voicing[1], voicing[0], fifth};
        const double step = fullness < 0.6f ? 1 : 0.5;
        int index = step > 0.6 ? 2 : 1;
        for (double beat = span.beat + step; beat<end - 0.01; beat += step, index += step> 0.6 ? 2 : 1)
            player.key(line[index % 8], beat, held(beat), v * 0.66f);
        break;
    }
    }
}

MelodyPlan plan(const Piece &piece)
{
    MelodyPlan result;
    result.low = 65;
    result.high = 84;
    result.leaps = 0.22f;
    if (piece.beatsPerBar == 3) {
        result.rhythms = {"x-x-x- x---x-", "x---x- x-----", "x--xx- x---..", "..x-x- x---x-"};
        result.cadences = {"x-x-x- x-----", "x---x- x-----"};
    } else if (piece.variant == 3) {
        result.rhythms = {"x-------x------- ", "x-----x-x-------", "....x---x-----x-"};
        result.cadences = {"x---x---x-------", "x-------x-------"};
    } else {
        result.rhythms = {"x---x-x-x-----..", "x-x-x---x---x---", "..x-x-x-x-----x-", "x-----x-x-x-x---"};
        result.cadences = {"x-x-x-x-x-------", "x---x-x-x-------", "..x-x-x-x-------"};
    }
    return result;
}

void playMelody(PianoPlayer &player, Arrangement &arrangement, const Section &section, float loud)
{
    const uint64_t which = section.kind == 'B' ? 98 : 97; // one melody for the verse, one for the contrast
    auto melody = composeMelody(arrangement, section, plan(arrangement.piece()), arrangement.random(which));
    if (section.pass > 0)
        melody = ornamented(melody, arrangement, arrangement.random(which + 7), 0.4f);
    for (const MelodyNote &note : melody) {
        // A phrase swells towards its middle.
        const double inPhrase = std::fmod(note.beat - section.beat, 4.0 * arrangement.piece().beatsPerBar) /
                                (4.0 * arrangement.piece().beatsPerBar);
        const float swell = 0.08f * float(std::sin(3.14159 * inPhrase));
        player.key(note.pitch, note.beat, note.beats + 0.3, loud * (note.accent + 0.28f) + swell);
        if (section.kind == 'B' && note.beats >= 1)
            player.key(harmonyBelow(note, arrangement), note.beat, note.beats + 0.2, loud * note.accent * 0.75f);
        else if (section.pass > 0 && note.beats >= 2)
            player.key(note.pitch - 12, note.beat, note.beats, loud * note.accent * 0.6f);
    }
}

} // namespace

void arrangeSlowPiano(Arrangement &arrangement)
{
    PianoPlayer player(arrangement);
    const int key = arrangement.scale().keyNote();
    Voicing voicing;
    for (const Section &section : arrangement.sections()) {
        const float loud = dynamics(section) * 0.9f;
        for (const ChordSpan &span : arrangement.chords(section)) {
            voicing = voiceLeading(voicing, span.chord, key, 52, 69, 3);
            if (span.beat == arrangement.chords().back().beat) {
                Voicing all{bassNote(span.chord, key, 29), bassNote(span.chord, key, 41)};
                all.insert(all.end(), voicing.begin(), voicing.end());
                all.push_back(nearest(span.chord.root, key, 76));
                player.rolled(all, span.beat, span.beats + 6, 0.42f, 0.11);
                continue;
            }
            accompany(player, arrangement, span, voicing, loud, section.kind == 'I' ? 0.5f : 0.9f);
            if (section.kind == 'E')
                player.key(nearestTone(span.chord, key, 79), span.beat, span.beats, loud * 0.7f);
        }
        if (section.kind == 'A' || section.kind == 'B')
            playMelody(player, arrangement, section, loud);
    }
}

} // namespace velmora::demo
