// Guitar rock: two overdriven guitars left and right, bass, drums, a lead that sings over the contrast.

#include "arrangement.h"
#include "drums.h"
#include "electricguitar.h"
#include "keys.h"
#include "melody.h"
#include "strings.h"

#include <algorithm>
#include <cmath>

namespace velmora::demo {
namespace {

enum class Variant { Driving, HalfTime, Jangle, Shuffle, Anthem };
using enum Variant;

class RockBand {
public:
    explicit RockBand(Arrangement &arrangement)
        : m_a(arrangement)
        , m_random(arrangement.random('r'))
        , m_key(arrangement.scale().keyNote())
        , m_variant(static_cast<Variant>(arrangement.piece().variant))
    {
    }

    void play()
    {
        for (const Section &section : m_a.sections()) {
            const float loud = dynamics(section);
            drums(section, loud);
            for (const ChordSpan &span : m_a.chords(section)) {
                m_voicing = voiceLeading(m_voicing, span.chord, m_key, 55, 71, 4);
                if (span.beat == m_a.chords().back().beat) {
                    finish(span);
                    return;
                }
                const bool open = section.kind == 'B' || section.kind == 'C' || section.kind == 'E';
                rhythmGuitars(section, span, loud, open);
                if (section.kind != 'I' || m_variant == Driving)
                    bass(section, span, loud);
                if (m_variant == Anthem || (m_variant == HalfTime && open))
                    for (int pitch : m_voicing)
                        m_a.play(organ({double(pitch), m_a.length(span.beat, span.beats), loud * 0.6f}, 0.6f),
                                 span.beat, {0.32f, 0.25f, 0.2f});
            }
            if (section.kind == 'C' || section.kind == 'B' || (section.kind == 'A' && m_variant == Jangle))
                lead(section, loud);
            else if (section.kind == 'A')
                answer(section, loud);
        }
    }

private:
    double loose(double amount = 0.006) { return double(m_random.bipolar()) * amount; }

    std::vector<int> power(const Chord &chord) const
    {
        const int root = m_key + chord.root - (m_key + chord.root > 52 ? 12 : 0);
        return {root, root + 7, root + 12};
    }

    // The same part twice, slightly out of time, as by two players.
    void twoGuitars(const std::vector<int> &pitches, double beat, double beats, float velocity, float drive, bool muted,
                    float gain)
    {
        const double seconds = m_a.length(beat, beats);
        for (float side : {-0.75f, 0.75f}) {
            std::vector<int> strings = pitches;
            if (side > 0 && !muted && strings.size() > 2)
                strings.push_back(strings[0] + 24 - (strings[0] > 48 ? 12 : 0)); // another chord shape
            m_a.play(drivenChord(strings, seconds, velocity, drive, muted), beat, {gain, side, 0.08f}, 0.004 + loose());
        }
    }

    void cleanPicking(const ChordSpan &span, float velocity)
    {
        const int shape[] = {0, 2, 3, 1, 2, 3, 1, 2};
        const double end = span.beat + span.beats;
        for (double beat = span.beat; beat < end - 0.01; beat += 0.5) {
            const size_t which = size_t(shape[int(std::lround(beat * 2)) % 8]) % m_voicing.size();
            const Note note{double(m_voicing[which]), m_a.length(beat, end - beat), velocity};
            m_a.play(pluck(note, electricString), beat, {0.42f, -0.35f, 0.25f, 0.2f}, loose());
        }
    }

    void rhythmGuitars(const Section &section, const ChordSpan &span, float loud, bool open)
    {
        const auto chord = power(span.chord);
        const double end = span.beat + span.beats;
        if (section.kind == 'I' && m_variant != Driving) {
            cleanPicking(span, 0.7f);
            return;
        }
        if (m_variant == Jangle) {
            cleanPicking(span, loud);
            if (open) {
                std::vector<int> full = chord;
                full.insert(full.end(), m_voicing.begin() + 1, m_voicing.end());
                twoGuitars(full, span.beat, span.beats * 0.98, loud, 0.25f, false, 0.5f);
            }
            return;
        }
        if (open && m_variant != Shuffle) { // ringing chords, repeated off the beat
            const double parts[] = {0, 1.5, 2.5};
            for (int i = 0; i < 3; ++i) {
                if (parts[i] >= span.beats - 0.01)
                    break;
                const double until = i < 2 && parts[i + 1] < span.beats ? parts[i + 1] : span.beats;
                twoGuitars(chord, span.beat + parts[i], (until - parts[i]) * 0.97, loud * (i ? 0.85f : 1.0f), 0.75f,
                           false, 0.52f);
            }
            return;
        }
        if (m_variant == Shuffle) { // fifth and sixth alternate
            for (double beat = span.beat; beat < end - 0.01; beat += 0.5) {
                const bool sixth = int(std::lround(beat)) % 2 == 1 && std::abs(beat - std::round(beat)) < 0.1;
                const std::vector<int> pair{chord[0], chord[1] + (sixth ? 2 : 0)};
                twoGuitars(pair, beat, 0.42, loud, open ? 0.65f : 0.5f, !open && beat != std::round(beat), 0.5f);
            }
            return;
        }
        // Muted eighths with open accents.
        for (double beat = span.beat; beat < end - 0.01; beat += 0.5) {
            const int step = int(std::lround(beat * 2)) % 8;
            const bool accent = m_variant == HalfTime ? step == 0 || step == 5 : step == 0 || step == 3 || step == 6;
            if (m_variant == Anthem && step % 2 == 1)
                continue;
            twoGuitars({chord[0], chord[1]}, beat, accent ? 0.48 : 0.4, loud * (accent ? 1.0f : 0.75f), 0.6f, !accent,
                       0.58f);
        }
    }

    void bass(const Section &section, const ChordSpan &span, float loud)
    {
        const int root = bassNote(span.chord, m_key, 28);
        const int next = bassNote(m_a.chordAt(std::min(span.beat + span.beats, m_a.chords().back().beat)), m_key, 28);
        const double end = span.beat + span.beats;
        const double unit = m_variant == HalfTime && section.kind != 'B' ? 1 : 0.5;
        for (double beat = span.beat; beat < end - 0.01; beat += unit) {
            const int step = int(std::lround(beat * 2)) % 8;
            int pitch = root;
            if (end - beat < unit + 0.01 && next != root)
                pitch = next + (next > root ? -2 : 2); // walks up to the next chord
            else if (m_variant == Shuffle)
                pitch = root + (step % 4 == 2 ? 7 : step % 4 == 3 ? 9 : 0);
            else if (step == 7 && m_random.chance(0.4f))
                pitch = root + 7;
            const float velocity = std::min(1.0f, loud + (step % 2 == 0 ? 0.2f : 0.05f));
            m_a.play(pluck({double(pitch), m_a.length(beat, unit * 0.92), velocity}, electricBass), beat,
                     {0.95f, 0, 0.03f}, loose(0.003));
        }
    }

    struct Groove {
        const char *kick, *snare, *hat; // eighths of a bar
    };
    Groove groove(bool open) const
    {
        switch (m_variant) {
        case HalfTime:
            return {open ? "x..x...x" : "x.....x.", "....x...", "x.x.x.x."};
        case Jangle:
            return {"x..x.x..", "..x...x.", "xxxxxxxx"};
        case Shuffle:
            return {"x...x..x", "..x...x.", "xxxxxxxx"};
        case Anthem:
            return {open ? "x..xx..x" : "x...x...", "..x...x.", "x.x.x.x."};
        default:
            return {open ? "x..xx.x." : "x..xx...", "..x...x.", "xxxxxxxx"};
        }
    }

    void drums(const Section &section, float loud)
    {
        const bool open = section.kind == 'B' || section.kind == 'C' || section.kind == 'E';
        const Groove pattern = groove(open);
        const float v = 0.6f + 0.4f * loud;
        if (section.kind != 'I')
            m_a.play(crash(v, m_random.next()), section.beat, {0.55f, 0.3f, 0.15f});
        for (int bar = 0; bar < section.bars; ++bar) {
            const bool fill = bar == section.bars - 1 && section.kind != 'E';
            if (section.kind == 'I' && !fill && m_variant != Driving)
                continue;
            if (section.kind == 'E' && bar == section.bars - 1)
                break;
            for (int step = 0; step < 8; ++step) {
                const double beat = section.beat + bar * 4 + step / 2.0;
                const uint64_t seed = m_random.next();
                if (fill && step >= 4) {
                    const double heights[] = {168, 132, 108, 86};
                    if (step == 4)
                        m_a.play(snare(v * 0.9f, seed), beat, {0.6f, 0, 0.14f});
                    m_a.play(tom(v, heights[step - 4], seed), beat, {0.6f, 0.5f - 0.3f * float(step - 4), 0.14f},
                             loose(0.003));
                    if (step >= 6)
                        m_a.play(tom(v * 0.85f, heights[step - 4], seed + 1), beat + 0.25,
                                 {0.6f, 0.5f - 0.3f * float(step - 4), 0.14f});
                    continue;
                }
                if (pattern.kick[step] == 'x')
                    m_a.play(dryKick(v), beat, {0.85f, 0, 0.05f}, loose(0.002));
                if (pattern.snare[step] == 'x')
                    m_a.play(snare(v, seed), beat, {0.72f, -0.04f, 0.16f}, loose(0.002));
                if (pattern.hat[step] == 'x') {
                    const float hit = v * (step % 2 ? 0.55f : 0.85f);
                    if (open && step % 2 == 0)
                        m_a.play(m_variant == Jangle ? tambourine(hit, seed) : ride(hit, seed), beat,
                                 {0.6f, 0.4f, 0.08f});
                    if (!open || m_variant == Driving)
                        m_a.play(hat(hit, section.kind == 'A' ? 0.06 : 0.22, seed), beat, {0.5f, -0.4f, 0.06f},
                                 loose(0.003));
                }
            }
        }
    }

    MelodyPlan plan() const
    {
        MelodyPlan result;
        result.rhythms = {"x-x-x--x --x-x---", "..x-x-xx x--x----", "x--x--x- x-x-x-..", "x---x-x- x-----x-"};
        result.cadences = {"x-x-x--x --------", "x--x--x- x-------"};
        result.low = 62;
        result.high = 81;
        result.leaps = 0.25f;
        return result;
    }

    void lead(const Section &section, float loud)
    {
        auto melody =
            composeMelody(m_a, section, plan(), m_a.random(section.kind == 'C' ? 'b' : uint64_t(section.kind)));
        if (section.kind == 'C')
            melody = ornamented(melody, m_a, m_a.random('o'), 0.5f);
        const float drive = m_variant == Jangle ? 0.3f : 0.6f;
        for (const MelodyNote &note : melody) {
            const double seconds = m_a.length(note.beat, note.beats * 0.96);
            const float velocity = std::clamp(loud * (0.7f + 0.4f * note.accent), 0.4f, 1.0f);
            m_a.play(drivenLead({double(note.pitch), seconds, velocity}, drive), note.beat, {0.72f, 0.1f, 0.22f, 0.22f},
                     loose());
            if (section.kind == 'C' && note.beats >= 1)
                m_a.play(drivenLead({double(harmonyBelow(note, m_a)), seconds, velocity * 0.8f}, drive), note.beat,
                         {0.5f, -0.3f, 0.22f, 0.15f}, 0.008 + loose());
        }
    }

    // In the verse the lead plays only in the last two bars of every four.
    void answer(const Section &section, float loud)
    {
        const auto melody = composeMelody(m_a, section, plan(), m_a.random('a'));
        const double four = 4.0 * m_a.piece().beatsPerBar;
        for (const MelodyNote &note : melody)
            if (std::fmod(note.beat - section.beat, four) >= four / 2)
                m_a.play(drivenLead({double(note.pitch), m_a.length(note.beat, note.beats * 0.9), loud}, 0.35f),
                         note.beat, {0.55f, 0.15f, 0.2f, 0.2f}, loose());
    }

    void finish(const ChordSpan &span)
    {
        const double seconds = m_a.length(span.beat, span.beats) + 2.2;
        for (float side : {-0.7f, 0.7f}) {
            Buffer chord = drivenChord(power(span.chord), seconds, 0.9f, 0.7f, false);
            const size_t fade = samples(seconds * 0.7);
            for (size_t i = 0; i < std::min(fade, chord.size()); ++i) {
                const float rest = float(i) / float(fade);
                chord[chord.size() - 1 - i] *= rest;
            }
            m_a.play(chord, span.beat, {0.55f, side, 0.15f}, 0.004 + loose());
        }
        m_a.play(pluck({double(bassNote(span.chord, m_key, 28)), seconds, 1}, electricBass), span.beat,
                 {0.95f, 0, 0.05f});
        m_a.play(dryKick(1), span.beat, {0.85f, 0, 0.08f});
        m_a.play(crash(1, 9), span.beat, {0.5f, 0.3f, 0.25f});
        m_a.play(crash(0.8f, 10), span.beat, {0.4f, -0.4f, 0.25f});
    }

    Arrangement &m_a;
    Random m_random;
    int m_key;
    Variant m_variant;
    Voicing m_voicing;
};

} // namespace

void arrangeRock(Arrangement &arrangement)
{
    RockBand(arrangement).play();
}

} // namespace velmora::demo
