#include "melody.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace velmora::demo {
namespace {

struct Onset {
    double beat, beats; // within the unit
};

struct Motif {
    std::vector<Onset> onsets;
    std::vector<int> contour; // scale steps from the unit's anchor
};

std::vector<Onset> onsets(const std::string &rhythm, int slotsPerBeat)
{
    std::vector<Onset> result;
    int slot = 0;
    bool sounding = false;
    for (char c : rhythm) {
        if (c == ' ')
            continue;
        if (c == 'x')
            result.push_back({double(slot) / slotsPerBeat, 0});
        sounding = c == 'x' || (c == '-' && sounding);
        if (sounding)
            result.back().beats += 1.0 / slotsPerBeat;
        ++slot;
    }
    return result;
}

Motif makeMotif(const std::string &rhythm, const MelodyPlan &plan, Random &random)
{
    Motif motif{onsets(rhythm, plan.slotsPerBeat), {}};
    int at = 0, last = random.chance(0.5f) ? 1 : -1;
    for (size_t i = 0; i < motif.onsets.size(); ++i) {
        motif.contour.push_back(at);
        int step;
        if (random.chance(plan.leaps))
            step = random.chance(0.7f) ? 3 : random.chance(0.7f) ? 4 : 5;
        else
            step = random.chance(0.68f) ? 1 : random.chance(0.7f) ? 2 : 0;
        // A leap is followed by a step back. Otherwise the line mostly keeps its direction, near the anchor.
        const bool leapt = std::abs(last) >= 3;
        int direction = last < 0 ? -1 : 1;
        if (leapt) {
            direction = -direction;
            step = std::min(step, 1 + random.below(2));
        } else if (random.chance(0.35f)) {
            direction = -direction;
        }
        if (at + step * direction > 4)
            direction = -1;
        if (at + step * direction < -3)
            direction = 1;
        at += step * direction;
        last = step * direction == 0 ? last : step * direction;
    }
    return motif;
}

int withoutClash(int pitch, const Chord &chord, const Scale &scale)
{
    const int aboveKey = pitch - scale.keyNote();
    if (chord.contains(aboveKey))
        return pitch;
    // Where the chord alters a tone of the scale, the melody uses the altered tone.
    for (int shift : {1, -1})
        if (chord.contains(aboveKey + shift) && !scale.contains(pitch + shift))
            return pitch + shift;
    return pitch;
}

} // namespace

std::vector<MelodyNote> composeMelody(const Arrangement &arrangement, const Section &section, const MelodyPlan &plan,
                                      Random random)
{
    const Scale &scale = arrangement.scale();
    const int key = scale.keyNote(), bar = arrangement.piece().beatsPerBar;
    const Motif first = makeMotif(random.pick(plan.rhythms), plan, random);
    const Motif second = makeMotif(random.pick(plan.rhythms), plan, random);
    const Motif closing = makeMotif(random.pick(plan.cadences), plan, random);
    const int middle = scale.degreeNear((plan.low + plan.high) / 2.0 - 2);
    const int rise = random.below(2);

    std::vector<MelodyNote> result;
    double previous = 0;
    const int units = std::max(1, section.bars / 2);
    for (int unit = 0; unit < units; ++unit) {
        const bool closes = unit == units - 1;
        // a b a c: the third unit is higher than the first, the last one falls.
        const int place = closes ? 3 : unit % 4;
        const Motif &motif = closes ? closing : place == 1 || place == 3 ? second : first;
        const int anchor = middle + (place == 1 ? rise : place == 2 ? rise + 1 : 0) + (section.kind == 'B' ? 1 : 0);
        const double start = section.beat + unit * 2.0 * bar;
        for (size_t i = 0; i < motif.onsets.size(); ++i) {
            const double beat = start + motif.onsets[i].beat, beats = motif.onsets[i].beats;
            if (beat >= section.beat + section.beats)
                break;
            const Chord &chord = arrangement.chordAt(beat);
            int pitch = scale.pitch(anchor + motif.contour[i]);
            const bool onBeat = std::abs(beat - std::round(beat)) < 1e-6;
            const bool strong = (onBeat && beats >= 1) || std::abs(std::fmod(beat, bar)) < 1e-6 || beats >= 1.5;
            const bool lastOfAll = closes && i + 1 == motif.onsets.size();
            if (lastOfAll && chord.contains(0))
                pitch = nearest(0, key, previous);
            else if (strong || lastOfAll) {
                const int step = i > 0 ? motif.contour[i] - motif.contour[i - 1] : 0;
                pitch = nearestTone(chord, key, pitch);
                if (step != 0 && pitch == int(previous)) // a step of the motif never repeats the pitch
                    pitch = nearestTone(chord, key, pitch + (step > 0 ? 3.2 : -3.2));
            } else
                pitch = withoutClash(pitch, chord, scale);
            while (pitch > plan.high)
                pitch -= 12;
            while (pitch < plan.low)
                pitch += 12;
            // A leap wider than a sixth becomes a smaller one to the other octave.
            if (previous > 0 && pitch - previous > 9 && pitch - 12 >= plan.low)
                pitch -= 12;
            if (previous > 0 && previous - pitch > 9 && pitch + 12 <= plan.high)
                pitch += 12;
            previous = pitch;
            const float accent = 0.55f +
                                 (std::abs(std::fmod(beat, bar)) < 1e-6 ? 0.2f
                                  : onBeat                              ? 0.1f
                                                                        : 0.0f) +
                                 0.02f * float(std::max(0, motif.contour[i]));
            result.push_back({beat, beats, pitch, accent});
        }
    }
    if (plan.chromatic > 0)
        for (size_t i = 0; i + 1 < result.size(); ++i)
            if (result[i].beats < 0.8 && std::abs(result[i + 1].pitch - result[i].pitch) <= 4 &&
                random.chance(plan.chromatic))
                result[i].pitch = result[i + 1].pitch + (random.chance(0.6f) ? -1 : 1);
    return result;
}

std::vector<MelodyNote> ornamented(const std::vector<MelodyNote> &melody, const Arrangement &arrangement, Random random,
                                   float amount)
{
    const Scale &scale = arrangement.scale();
    std::vector<MelodyNote> result;
    for (const MelodyNote &note : melody) {
        if (note.beats >= 1 && random.chance(amount)) {
            const int degree = scale.degreeNear(note.pitch);
            const int turn = withoutClash(scale.pitch(degree + (random.chance(0.65f) ? 1 : -1)),
                                          arrangement.chordAt(note.beat), scale);
            const double half = note.beats >= 2 ? 0.5 : note.beats / 2;
            if (note.beats >= 2 && random.chance(0.5f)) { // ornament before the long note
                result.push_back({note.beat, half, note.pitch, note.accent});
                result.push_back({note.beat + half, half, turn, note.accent * 0.85f});
                result.push_back({note.beat + 2 * half, note.beats - 2 * half, note.pitch, note.accent * 0.95f});
            } else { // ornament after it
                result.push_back({note.beat, note.beats - half, note.pitch, note.accent});
                result.push_back({note.beat + note.beats - half, half, turn, note.accent * 0.85f});
            }
        } else {
            result.push_back(note);
        }
    }
    return result;
}

int harmonyBelow(const MelodyNote &note, const Arrangement &arrangement)
{
    return nearestTone(arrangement.chordAt(note.beat), arrangement.scale().keyNote(), note.pitch - 4.6);
}

} // namespace velmora::demo
