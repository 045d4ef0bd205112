// Acoustic folk: guitars, a singing lead, a bass, feet and hands; a small wooden room.

#include "arrangement.h"
#include "drums.h"
#include "keys.h"
#include "melody.h"
#include "strings.h"
#include "winds.h"

#include <algorithm>
#include <cmath>

namespace velmora::demo {
namespace {

enum class Variant { Fingerpicked, Strummed, Waltz, Jig, TwoGuitars };
using enum Variant;

class FolkBand {
public:
    explicit FolkBand(Arrangement &arrangement)
        : m_a(arrangement)
        , m_random(arrangement.random('f'))
        , m_key(arrangement.scale().keyNote())
        , m_variant(static_cast<Variant>(arrangement.piece().variant))
    {
    }

    void play(const Section &section)
    {
        const float loud = dynamics(section);
        for (const ChordSpan &span : m_a.chords(section)) {
            m_voicing = voiceLeading(m_voicing, span.chord, m_key, 52, 70, 4);
            if (span.beat == m_a.chords().back().beat) {
                finish(span);
                return;
            }
            guitar(section, span, loud);
            if (section.kind != 'I' || section.bars > 4)
                bass(span, loud);
        }
        if (section.kind == 'A' || section.kind == 'B')
            lead(section, loud);
        if (section.kind != 'I' && section.kind != 'E' && !(section.kind == 'A' && section.pass == 0))
            percussion(section, loud);
    }

private:
    double loose(double amount = 0.008) { return double(m_random.bipolar()) * amount; }

    void string(int pitch, double beat, double beats, float velocity, const StringTone &tone, float pan,
                float gain = 0.55f)
    {
        m_a.play(pluck({double(pitch), m_a.length(beat, beats), velocity}, tone), beat, {gain, pan, 0.16f}, loose());
    }

    std::vector<int> grip(const Chord &chord) const
    {
        std::vector<int> strings{bassNote(chord, m_key, 40)};
        for (int pitch : m_voicing)
            if (pitch > strings.back() + 2)
                strings.push_back(pitch);
        return strings;
    }

    void strumAt(const ChordSpan &span, double beat, double beats, float velocity, bool up, float pan)
    {
        auto strings = grip(span.chord);
        if (up)
            strings.erase(strings.begin());
        m_a.play(strum(strings, m_a.length(beat, beats), velocity, up ? -0.011 : 0.014, steelGuitar), beat,
                 {0.4f, pan, 0.14f}, loose(0.005));
    }

    // The thumb plays on the beats, the fingers between them. The pattern repeats as long as the chord lasts.
    void fingerpick(const ChordSpan &span, float loud, const StringTone &tone, float pan)
    {
        const int low = bassNote(span.chord, m_key, 40), fifth = nearestTone(span.chord, m_key, low + 7);
        const int count = int(m_voicing.size());
        const double end = span.beat + span.beats;
        for (double beat = span.beat; beat < end - 0.01; beat += 0.5) {
            const int step = int(std::lround((beat - span.beat) * 2)) % 8;
            if (step % 2 == 0) {
                string(step % 4 == 0 ? low : fifth, beat, end - beat, loud * (step == 0 ? 0.95f : 0.75f), tone, pan);
                if (step == 0)
                    string(m_voicing[size_t(count - 1)], beat, end - beat, loud * 0.7f, tone, pan);
            } else {
                const int finger = step == 1 ? count - 2 : step == 3 ? count - 1 : step == 5 ? count - 3 : count - 2;
                string(m_voicing[size_t(std::max(0, finger))], beat, std::max(0.5, end - beat), loud * 0.62f, tone,
                       pan);
            }
        }
    }

    void guitar(const Section &section, const ChordSpan &span, float loud)
    {
        const double end = span.beat + span.beats;
        const bool full = section.kind == 'B' || section.pass > 0;
        switch (m_variant) {
        case Strummed: {
            // down . down-up . up-down-up
            const bool on[] = {true, false, true, true, false, true, true, true};
            const auto strummed = [&](double beat) {
                const int step = int(std::lround(beat * 2)) % 8;
                return on[step] && (section.kind != 'I' || step == 0 || step == 3 || step == 6);
            };
            for (double beat = span.beat; beat < end - 0.01; beat += 0.5) {
                const int step = int(std::lround(beat * 2)) % 8;
                double until = beat + 0.5;
                while (until < end - 0.01 && !strummed(until))
                    until += 0.5;
                if (strummed(beat))
                    strumAt(span, beat, until - beat,
                            loud * (step % 4 == 0 ? 0.9f
                                    : step == 2   ? 0.95f
                                                  : 0.6f),
                            step % 2 == 1, -0.35f);
            }
            if (full)
                fingerpick(span, loud * 0.7f, nylonGuitar, 0.45f);
            break;
        }
        case Waltz:
            string(bassNote(span.chord, m_key, 40), span.beat, span.beats, loud * 0.9f, nylonGuitar, -0.3f);
            for (double beat = span.beat + 1; beat < end - 0.01; beat += full ? 0.5 : 1) {
                const int step = int(std::lround((beat - span.beat) * 2));
                if (full)
                    string(m_voicing[size_t(step) % m_voicing.size()], beat, end - beat, loud * 0.62f, nylonGuitar,
                           -0.3f);
                else
                    for (size_t i = 1; i < m_voicing.size(); ++i)
                        string(m_voicing[i], beat, 0.95, loud * 0.55f, nylonGuitar, -0.3f, 0.42f);
            }
            break;
        case Jig: // long-short, long-short
            for (double beat = span.beat; beat < end - 0.01; ++beat) {
                strumAt(span, beat, 0.66, loud * 0.85f, false, -0.35f);
                strumAt(span, beat + 2 / 3.0, 0.33, loud * 0.6f, true, -0.35f);
                if (full)
                    strumAt(span, beat + 1 / 3.0, 0.33, loud * 0.4f, true, -0.35f);
            }
            break;
        case TwoGuitars:
            fingerpick(span, loud, nylonGuitar, -0.4f);
            if (full)
                for (double beat = span.beat + 0.5; beat < end - 0.01; ++beat) {
                    const size_t which = size_t(std::lround(beat * 2)) % m_voicing.size();
                    string(m_voicing[which] + 12, beat, end - beat, loud * 0.4f, harp, 0.5f, 0.4f);
                }
            break;
        default:
            fingerpick(span, loud, steelGuitar, -0.3f);
            if (full)
                strumAt(span, span.beat, span.beats, loud * 0.7f, false, 0.5f);
        }
        if (m_variant == Strummed && section.kind == 'B')
            for (int pitch : m_voicing)
                m_a.play(accordion({double(pitch), m_a.length(span.beat, span.beats), 0.5f}), span.beat,
                         {0.35f, 0.3f, 0.2f});
    }

    void bass(const ChordSpan &span, float loud)
    {
        const int low = bassNote(span.chord, m_key, 30), fifth = nearestTone(span.chord, m_key, low + 6);
        const double half = span.beats >= 4 ? span.beats / 2 : span.beats;
        for (double at = 0; at < span.beats - 0.01; at += half) {
            const Note note{double(at == 0 ? low : fifth), m_a.length(span.beat + at, half * 0.85), loud};
            m_a.play(pluck(note, uprightBass), span.beat + at, {0.75f, 0, 0.06f}, loose(0.004));
        }
    }

    Buffer leadSound(const Note &note) const
    {
        switch (m_variant) {
        case Strummed:
            return pluck({note.pitch, note.seconds + 0.3, note.velocity}, mandolin);
        case Waltz:
            return bow(note, 1);
        case TwoGuitars:
            return pluck({note.pitch, note.seconds + 0.5, note.velocity}, nylonGuitar);
        default:
            return whistle(note);
        }
    }

    MelodyPlan plan() const
    {
        MelodyPlan result;
        result.low = m_variant == TwoGuitars || m_variant == Waltz ? 62 : 67;
        result.high = result.low + 18;
        if (m_variant == Jig) {
            result.slotsPerBeat = 3;
            result.rhythms = {"x-xx-xx-xx-- x-xxxxx-xx-x", "xxxx-xx-xx-x xxxx-xx-----", "x-xxxxx-xx-x xxxxxxx-xx--"};
            result.cadences = {"x-xxxxx-xx-x xxxx-xx-----", "xxxxxxx-xx-x x-xx--x-----"};
            result.leaps = 0.25f;
        } else if (m_variant == Waltz) {
            result.rhythms = {"x---x- x-x-x-", "x-x-x- x---..", "x--xx- x---x-", "x---xx x-----"};
            result.cadences = {"x-x-x- x-----", "x-xxx- x-----"};
        } else {
            result.rhythms = {"x-x-x-xx x---x-..", "x--xx-x- x-x-x---", "..x-x-xx x-x-x---", "x-xxx-x- x---..x-"};
            result.cadences = {"x-x-x-x- x-----..", "x-xxx-x- x------."};
        }
        return result;
    }

    void lead(const Section &section, float loud)
    {
        const uint64_t which = section.kind == 'B' ? 98 : 97; // one melody for the verse, one for the contrast
        auto melody = composeMelody(m_a, section, plan(), m_a.random(which));
        if (section.pass > 0)
            melody = ornamented(melody, m_a, m_a.random(which + 3), 0.45f);
        const bool struck = m_variant == Strummed || m_variant == TwoGuitars;
        const float gain = struck ? 0.95f : m_variant == Waltz ? 0.62f : 0.55f;
        for (const MelodyNote &note : melody) {
            const double seconds = m_a.length(note.beat, note.beats) * (struck ? 1 : 0.93);
            const float velocity = std::clamp(loud * (note.accent + 0.4f), 0.2f, 1.0f);
            m_a.play(leadSound({double(note.pitch), seconds, velocity}), note.beat, {gain, 0.12f, 0.26f}, loose(0.01));
            // The second voice joins in the contrast, and in repeated sections at long notes.
            if (section.kind == 'B' || (section.pass > 0 && note.beats >= 1)) {
                const Note second{double(harmonyBelow(note, m_a)), seconds, velocity * 0.7f};
                m_a.play(leadSound(second), note.beat, {gain * 0.75f, 0.4f, 0.26f}, 0.012 + loose(0.01));
            }
        }
    }

    void percussion(const Section &section, float loud)
    {
        const double unit = m_variant == Jig ? 1 / 3.0 : 0.5;
        const int perBar = int(std::lround(m_a.piece().beatsPerBar / unit));
        const int steps = int(std::lround(section.beats / unit));
        for (int i = 0; i < steps; ++i) {
            const double beat = section.beat + i * unit;
            const int step = i % perBar;
            const uint64_t seed = m_random.next();
            if (m_variant == Jig) { // a frame drum
                const bool strong = step % 3 == 0;
                m_a.play(tom(loud * (strong          ? 0.8f
                                     : step % 3 == 2 ? 0.4f
                                                     : 0.2f),
                             strong ? 88 : 116, seed),
                         beat, {0.4f, 0.2f, 0.15f}, loose(0.004));
            } else if (m_variant != Waltz && m_variant != TwoGuitars) {
                m_a.play(shaker(loud * (step % 2 ? 0.55f : 0.85f), seed), beat, {0.22f, 0.5f, 0.1f}, loose(0.004));
            }
            if (m_variant == Strummed) {
                if (step % 4 == 0)
                    m_a.play(stomp(loud * 0.9f), beat, {0.5f, 0, 0.1f});
                if (step % 4 == 2 && section.kind == 'B')
                    m_a.play(clap(loud * 0.7f, seed), beat, {0.28f, -0.2f, 0.25f}, loose(0.006));
            }
            if (m_variant == Waltz && step == 0)
                m_a.play(stomp(loud * 0.5f), beat, {0.4f, 0, 0.1f});
        }
    }

    void finish(const ChordSpan &span)
    {
        const double seconds = m_a.length(span.beat, span.beats) + 3;
        const StringTone &tone = m_variant == Waltz || m_variant == TwoGuitars ? nylonGuitar : steelGuitar;
        StringTone ringing = tone;
        ringing.decay *= 1.6;
        m_a.play(strum(grip(span.chord), seconds, 0.75f, 0.05, ringing), span.beat, {0.6f, -0.2f, 0.25f});
        m_a.play(pluck({double(bassNote(span.chord, m_key, 30)), seconds, 0.7f}, uprightBass), span.beat,
                 {0.8f, 0, 0.1f});
        const Note top{double(nearest(0, m_key, 74)), m_a.length(span.beat, span.beats) * 0.8, 0.6f};
        m_a.play(leadSound(top), span.beat, {0.5f, 0.12f, 0.3f}, 0.1);
    }

    Arrangement &m_a;
    Random m_random;
    int m_key;
    Variant m_variant;
    Voicing m_voicing;
};

} // namespace

void arrangeFolk(Arrangement &arrangement)
{
    FolkBand band(arrangement);
    for (const Section &section : arrangement.sections())
        band.play(section);
}

} // namespace velmora::demo
