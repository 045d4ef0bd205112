// Small-band swing: walking bass, brushes, a comping piano, one lead instrument; a small room.

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

// Even: straight eighths. Late: slow, electric piano alone.
enum class Variant { Vibes, Horn, Reed, Even, Late };
using enum Variant;

class SwingBand {
public:
    explicit SwingBand(Arrangement &arrangement)
        : m_a(arrangement)
        , m_random(arrangement.random('s'))
        , m_key(arrangement.scale().keyNote())
        , m_variant(static_cast<Variant>(arrangement.piece().variant))
        , m_beats(arrangement.piece().beatsPerBar)
    {
    }

    void play()
    {
        for (const Section &section : m_a.sections()) {
            const float loud = dynamics(section);
            drums(section, loud);
            for (const ChordSpan &span : m_a.chords(section)) {
                m_voicing = voiceLeading(m_voicing, upper(span.chord), m_key, 53, 69, 4);
                if (span.beat == m_a.chords().back().beat) {
                    finish(span);
                    return;
                }
                walk(section, span, loud);
                comp(section, span, loud);
            }
            if (section.kind == 'A' || section.kind == 'B' || section.kind == 'C')
                front(section, loud);
        }
    }

private:
    double loose(double amount = 0.007) { return double(m_random.bipolar()) * amount; }

    // The bass plays the root, so the hands play the other tones.
    static Chord upper(Chord chord)
    {
        if (chord.tones.size() > 4)
            chord.tones.erase(chord.tones.begin());
        return chord;
    }

    // One tone for each beat: the root, chord tones, and on the last beat a step towards the next chord.
    void walk(const Section &section, const ChordSpan &span, float loud)
    {
        const int count = int(std::lround(span.beats));
        const Chord &after = m_a.chordAt(std::min(span.beat + span.beats, m_a.chords().back().beat));
        const int target = nearestBass(after, m_last == 0 ? 38 : m_last);
        if (m_variant == Even || (section.kind == 'I' && m_variant != Horn) || m_variant == Late) {
            const int root = nearestBass(span.chord, m_last == 0 ? 38 : m_last);
            stringBass(root, span.beat, count >= 3 ? 1.4 : 0.9, loud);
            if (count >= 4) {
                stringBass(root + (m_variant == Even       ? 7
                                   : m_random.chance(0.5f) ? 7
                                                           : 12),
                           span.beat + (m_variant == Even ? 1.5 : 2), m_variant == Even ? 0.45 : 1.2, loud * 0.8f);
                stringBass(m_variant == Even ? root + 7 : approach(target), span.beat + (m_variant == Even ? 2 : 3),
                           m_variant == Even ? 1.4 : 0.9, loud * 0.85f);
            }
            m_last = std::clamp(root, 31, 48);
            return;
        }
        int pitch = nearestBass(span.chord, m_last == 0 ? 38 : m_last);
        int direction = pitch < target || pitch < 36 ? 1 : -1;
        for (int i = 0; i < count; ++i) {
            const double beat = span.beat + i;
            if (i > 0 && i == count - 1) {
                pitch = approach(target);
            } else if (i > 0) {
                const int next = m_random.chance(0.6f)
                                     ? nearestTone(span.chord, m_key, pitch + direction * 3.6)
                                     : m_a.scale().pitch(m_a.scale().degreeNear(pitch + direction * 2.0));
                pitch = next == pitch ? pitch + direction * 2 : next;
                if (pitch > 50 || pitch < 30) {
                    direction = -direction;
                    pitch = nearestTone(span.chord, m_key, pitch + direction * 6.0);
                }
            }
            stringBass(pitch, beat, 0.92, loud * (i % 2 ? 1.0f : 0.9f));
            if (m_random.chance(0.09f) && i < count - 1)
                stringBass(pitch, beat + 0.5, 0.3, loud * 0.5f);
        }
        m_last = pitch;
    }

    int nearestBass(const Chord &chord, double pitch) const
    {
        int result = nearest(chord.bass, m_key, pitch);
        while (result > 45)
            result -= 12;
        while (result < 30)
            result += 12;
        return result;
    }
    int approach(int target) { return target + (m_random.chance(0.5f) ? -1 : m_random.chance(0.5f) ? 1 : 2); }

    void stringBass(int pitch, double beat, double beats, float velocity)
    {
        m_a.play(pluck({double(pitch), m_a.length(beat, beats), std::min(1.0f, velocity + 0.2f)}, uprightBass), beat,
                 {0.72f, -0.08f, 0.06f}, loose(0.005));
    }

    Buffer compSound(const Note &note) const
    {
        return m_variant == Vibes || m_variant == Late ? electricPiano(note) : piano(note, 0.2f);
    }

    void comp(const Section &section, const ChordSpan &span, float loud)
    {
        // A pattern of two bars in eighths; the chord's position in them selects its strokes.
        static const std::vector<std::string> four = {"x..x.... ...x..x.", "..x..x.. x......x", "x..x.... ..x....x",
                                                      ".x....x. ..x..x..", "...x..x. x...x..."};
        static const std::vector<std::string> three = {"x..x.. ..x.x.", "..x.x. x...x.", "x...x. ..x..x"};
        const auto &patterns = m_beats == 3 ? three : four;
        const int bar = int(std::lround(std::floor(span.beat / m_beats)));
        std::string pattern = m_variant == Even
                                  ? "x..x..x. ..x..x.."
                                  : patterns[size_t(m_a.random(uint64_t(bar / 2) + 900).below(int(patterns.size())))];
        pattern.erase(std::remove(pattern.begin(), pattern.end(), ' '), pattern.end());
        for (double beat = span.beat; beat < span.beat + span.beats - 0.01; beat += 0.5) {
            const size_t slot = size_t(std::lround(std::fmod(beat, 2.0 * m_beats) * 2)) % pattern.size();
            const bool hold = m_variant == Late && beat == span.beat;
            if (pattern[slot] != 'x' && !hold)
                continue;
            const double beats = hold ? span.beats : m_variant == Even || m_random.chance(0.35f) ? 1.1 : 0.42;
            const float velocity = loud * (section.kind == 'C' ? 0.6f : 0.5f) * m_random.between(0.85f, 1.1f);
            for (int pitch : m_voicing)
                m_a.play(compSound({double(pitch), m_a.length(beat, beats), velocity}), beat, {0.6f, 0.5f, 0.2f},
                         loose());
        }
    }

    void drums(const Section &section, float loud)
    {
        const int bars = section.kind == 'E' ? section.bars - 1 : section.bars; // the last chord stands alone
        for (int bar = 0; bar < bars; ++bar)
            for (int beatInBar = 0; beatInBar < m_beats; ++beatInBar) {
                const double beat = section.beat + bar * m_beats + beatInBar;
                const uint64_t seed = m_random.next();
                const bool back = m_beats == 3 ? beatInBar == 1 : beatInBar % 2 == 1;
                // The left brush sweeps in circles, the right one taps the swing rhythm.
                m_a.play(brushSweep(m_a.length(beat, 1.1), loud * (back ? 0.5f : 0.75f), seed), beat,
                         {0.6f, -0.35f, 0.12f}, -0.03);
                if (m_variant == Even) {
                    m_a.play(shaker(loud * 0.6f, seed + 1), beat, {0.42f, 0.5f, 0.1f}, loose(0.004));
                    m_a.play(shaker(loud * 0.4f, seed + 2), beat + 0.5, {0.42f, 0.5f, 0.1f}, loose(0.004));
                    const bool clave = bar % 2 == 0 ? beatInBar == 0 || beatInBar == 3 : beatInBar == 1;
                    if (clave)
                        m_a.play(rimClick(loud * 0.6f), beat + (bar % 2 == 0 && beatInBar == 0 ? 0.0 : 0.5),
                                 {0.35f, -0.3f, 0.2f});
                } else if (m_variant != Late || section.kind == 'B') {
                    const bool cymbal = section.kind == 'C' || section.kind == 'B';
                    const auto tap = [&](double at, float velocity) {
                        if (cymbal)
                            m_a.play(ride(velocity * 0.8f, seed + 3), at, {0.6f, 0.45f, 0.12f}, loose(0.004));
                        else
                            m_a.play(brushTap(velocity, seed + 3), at, {0.75f, 0.3f, 0.12f}, loose(0.004));
                    };
                    tap(beat, loud * (back ? 0.85f : 0.6f));
                    if (back)
                        tap(beat + 0.5, loud * 0.5f);
                }
                if (back)
                    m_a.play(hat(loud * 0.5f, 0.05, seed), beat, {0.55f, -0.4f, 0.06f});
                if (beatInBar == 0 || (m_beats == 4 && beatInBar == 2))
                    m_a.play(feltKick(loud * 0.4f), beat, {0.6f, 0, 0.05f});
                if (bar == bars - 1 && bars >= 4 && beatInBar >= m_beats - 2) // a fill into the next section
                    for (double off : {0.0, 0.5})
                        m_a.play(brushTap(loud * (0.7f + 0.3f * float(off)), seed + 5), beat + off, {0.7f, 0.1f, 0.15f},
                                 loose(0.004));
            }
    }

    Buffer frontSound(const Note &note) const
    {
        switch (m_variant) {
        case Horn:
            return mutedHorn(note);
        case Reed:
            return clarinet(note);
        case Even:
            return pluck({note.pitch, note.seconds + 0.3, note.velocity}, nylonGuitar);
        case Late:
            return mutedHorn({note.pitch, note.seconds, note.velocity * 0.85f});
        default:
            return vibraphone(note);
        }
    }

    void front(const Section &section, float loud)
    {
        MelodyPlan plan;
        const bool solo = section.kind == 'C';
        plan.low = m_variant == Reed || m_variant == Late ? 60 : 64;
        plan.high = plan.low + 20;
        plan.leaps = solo ? 0.3f : 0.25f;
        plan.chromatic = solo ? 0.5f : 0.25f;
        if (m_beats == 3) {
            plan.rhythms = {"x-xx-x x---..", "..xx-x x-xx--", "x--x-x .x-x--", "xxx-x- x-----"};
            plan.cadences = {"x-xx-x x-----", "xxx-x- x---.."};
        } else if (solo) {
            plan.rhythms = {"xxxxxxxx x-x---..", ".xxxx-xx xxxxx-..", "x-xxx.xx xxx-x-..", "xxx-xxx. .xxxxxx-"};
            plan.cadences = {"xxxxxxxx x-----..", "x-xxxxxx x---...."};
        } else {
            plan.rhythms = {"x--xx-xx -...x-xx", "..x-xxx- x---....", "x-xx-x-x ----..xx", ".xx-x-x- xx------",
                            "x--x--x- .xx-x-.."};
            plan.cadences = {"x-xx-x-x -----...", "xxx-x-xx ------.."};
        }
        auto melody = composeMelody(m_a, section, plan,
                                    m_a.random(solo                  ? 'c' + uint64_t(section.pass)
                                               : section.kind == 'B' ? 'b'
                                                                     : 'a'));
        if (section.kind == 'A' && section.pass > 0)
            melody = ornamented(melody, m_a, m_a.random('o' + uint64_t(section.pass)), 0.35f);
        const float gain = m_variant == Vibes ? 0.75f : m_variant == Even ? 1.1f : 0.8f;
        for (const MelodyNote &note : melody) {
            const bool offBeat = std::abs(note.beat - std::round(note.beat)) > 0.1;
            const float velocity = std::clamp(loud * (note.accent + 0.35f + (offBeat ? 0.1f : 0.0f)), 0.25f, 1.0f);
            const double beats = note.beats <= 0.5 ? note.beats * 0.95 : note.beats * 0.85;
            // The lead plays a little behind the beat.
            m_a.play(frontSound({double(note.pitch), m_a.length(note.beat, beats), velocity}), note.beat,
                     {gain, -0.2f, 0.26f}, 0.012 + loose());
            if (section.kind == 'B' && note.beats >= 1 && m_variant != Late)
                m_a.play(frontSound({double(harmonyBelow(note, m_a)), m_a.length(note.beat, beats), velocity * 0.7f}),
                         note.beat, {gain * 0.7f, 0.2f, 0.22f}, 0.016 + loose());
        }
    }

    void finish(const ChordSpan &span)
    {
        const double seconds = m_a.length(span.beat, span.beats) + 2.5;
        for (size_t i = 0; i < m_voicing.size(); ++i)
            m_a.play(compSound({double(m_voicing[i]), seconds, 0.55f}), span.beat, {0.6f, 0.2f, 0.25f},
                     0.04 * double(i));
        m_a.play(frontSound({double(nearest(span.chord.root, m_key, 74)), m_a.length(span.beat, 3), 0.7f}), span.beat,
                 {0.7f, -0.12f, 0.3f}, 0.15);
        m_a.play(pluck({double(nearestBass(span.chord, 34)), seconds, 0.9f}, uprightBass), span.beat, {1.0f, 0, 0.1f});
        m_a.play(ride(0.6f, 1), span.beat, {0.35f, 0.3f, 0.2f});
        m_a.play(brushSweep(2.5, 0.8f, 2), span.beat, {0.5f, -0.1f, 0.2f});
        m_a.play(feltKick(0.5f), span.beat, {0.6f, 0, 0.05f});
    }

    Arrangement &m_a;
    Random m_random;
    int m_key;
    Variant m_variant;
    int m_beats;
    int m_last = 0; // pitch of the bass
    Voicing m_voicing;
};

} // namespace

void arrangeSwing(Arrangement &arrangement)
{
    SwingBand(arrangement).play();
}

} // namespace velmora::demo
