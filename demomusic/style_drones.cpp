// Ambient drones: long, slowly changing tones, few events, a very large room.

#include "arrangement.h"
#include "keys.h"
#include "strings.h"
#include "synths.h"

#include <algorithm>
#include <cmath>

namespace velmora::demo {
namespace {

enum class Variant { Glass, Bowed, Voices, Bowls, Shimmer };
using enum Variant;

class DroneField {
public:
    explicit DroneField(Arrangement &arrangement)
        : m_a(arrangement)
        , m_random(arrangement.random('n'))
        , m_key(arrangement.scale().keyNote())
        , m_variant(static_cast<Variant>(arrangement.piece().variant))
        , m_end(arrangement.sections().back().beat + arrangement.sections().back().beats)
    {
    }

    void play()
    {
        ground();
        air();
        for (const Section &section : m_a.sections()) {
            const float loud = section.kind == 'B' ? 1.0f : section.kind == 'I' || section.kind == 'E' ? 0.65f : 0.8f;
            for (const ChordSpan &span : m_a.chords(section)) {
                m_voicing = voiceLeading(m_voicing, span.chord, m_key, 50, 70, 4);
                layer(section, span, loud);
                events(section, span, loud);
            }
        }
    }

private:
    // The key note in the low bass, which swells and fades against its fifth.
    void ground()
    {
        const double bar = m_a.piece().beatsPerBar;
        for (double beat = 0; beat < m_end; beat += 4 * bar) {
            const double beats = std::min(5 * bar, m_end - beat + bar);
            const int low = nearest(0, m_key, 38);
            const PadTone dark{3.5f, 4, 140, 260, 0.06f, 0.003f, 3};
            const double seconds = m_a.length(beat, beats) - 1;
            m_a.play(pad({double(low), seconds, 0.9f}, dark, m_random.next()), beat, {0.8f, 0, 0.2f});
            const PadTone fifth{5, 4, 180, 420, 0.08f, 0.004f, 3};
            m_a.play(pad({double(low + 7), seconds - 2, 0.55f}, fifth, m_random.next()), beat + bar,
                     {0.6f, 0.2f, 0.3f});
        }
    }

    // Wind or sea: broadband noise; each wave has its own length and position.
    void air()
    {
        const float level = m_variant == Bowed ? 0.08f : m_variant == Bowls ? 0.06f : 0.045f;
        for (double beat = 0; beat < m_end;) {
            const double beats = double(m_random.between(7, 13));
            const float top = m_random.between(500, m_variant == Bowls ? 1600 : 2600);
            const Buffer wave =
                noiseSweep(m_a.length(beat, beats), m_random.between(200, 400), top, 0.45f, m_random.next());
            m_a.play(wave, beat, {level, m_random.bipolar() * 0.7f, 0.5f});
            beat += beats * double(m_random.between(0.4f, 0.7f));
        }
    }

    void layer(const Section &section, const ChordSpan &span, float loud)
    {
        const double seconds = m_a.length(span.beat, span.beats) + 0.5;
        for (size_t i = 0; i < m_voicing.size(); ++i) {
            const float pan = float(i) * 0.4f - 0.6f;
            const double pitch = m_voicing[i];
            const double late = double(m_random.unit()) * 0.8;
            switch (m_variant) {
            case Bowed:
                for (int player = 0; player < 2; ++player) {
                    Buffer sound =
                        bow({pitch + 0.06 * player - 0.03 - (i == 0 ? 12 : 0), seconds, 0.35f + 0.25f * loud}, 0.7f);
                    soften(sound, 2.2, 2.4);
                    m_a.play(sound, span.beat, {0.33f * loud, pan + 0.3f * float(player), 0.55f}, late);
                }
                break;
            case Voices:
                m_a.play(choir({pitch, seconds, 0.9f * loud}, section.kind == 'B' ? 0.75f : 0.3f, m_random.next()),
                         span.beat, {0.55f, pan, 0.55f}, late);
                break;
            default: {
                const float cutoff = m_variant == Shimmer ? 700 : 380;
                const PadTone tone{
                    2.4f,   3.2f, cutoff, cutoff * (section.kind == 'B' ? 5.0f : 2.6f), m_random.between(0.07f, 0.16f),
                    0.005f, 4};
                m_a.play(pad({pitch, seconds, 0.8f * loud}, tone, m_random.next()), span.beat, {0.5f, pan, 0.5f}, late);
            }
            }
        }
    }

    static void soften(Buffer &sound, double inSeconds, double outSeconds)
    {
        const size_t in = std::min(sound.size() / 2, samples(inSeconds)),
                     out = std::min(sound.size() / 2, samples(outSeconds));
        for (size_t i = 0; i < in; ++i)
            sound[i] *= float(i) / float(in);
        for (size_t i = 0; i < out; ++i)
            sound[sound.size() - 1 - i] *= float(i) / float(out);
    }

    // Single sounds on the beats: a slow melody of chord tones that returns in each section.
    void events(const Section &section, const ChordSpan &span, float loud)
    {
        if (section.kind == 'I' && span.beat < section.beat + section.beats / 2)
            return;
        Random random = m_a.random(uint64_t(section.kind) + 17 + uint64_t(span.chord.root));
        const int count = m_variant == Bowls ? 2 : m_variant == Shimmer ? int(span.beats * 2) : int(span.beats * 0.6);
        for (int i = 0; i < count; ++i) {
            const double at = m_variant == Shimmer ? i / 2.0 : std::floor(double(random.unit()) * span.beats);
            const int tone = m_voicing[size_t(random.below(int(m_voicing.size())))];
            const float pan = random.bipolar() * 0.8f;
            const double beat = span.beat + at;
            switch (m_variant) {
            case Bowls:
                m_a.play(
                    singingBowl({double(nearest(tone - m_key, m_key, i ? 69 : 55)), m_a.length(beat, 6), 0.75f * loud}),
                    beat, {0.55f, pan * 0.6f, 0.45f});
                break;
            case Shimmer:
                m_a.play(glassBell({double(tone + 12 + 12 * random.below(2)), 1, 0.25f + 0.3f * random.unit() * loud}),
                         beat, {0.3f, pan, 0.55f, 0.4f});
                break;
            case Bowed:
                m_a.play(pluck({double(tone + 12), 3, 0.5f}, harp), beat, {0.45f, pan, 0.6f, 0.3f});
                break;
            case Voices:
                m_a.play(piano({double(tone + 12), 3, 0.35f * loud}, 0.9f), beat, {0.8f, pan, 0.6f, 0.35f});
                break;
            default:
                m_a.play(glassBell({double(tone + 12), 2, 0.55f * loud}), beat, {0.42f, pan, 0.6f, 0.4f});
            }
        }
    }

    Arrangement &m_a;
    Random m_random;
    int m_key;
    Variant m_variant;
    double m_end;
    Voicing m_voicing;
};

} // namespace

void arrangeDrones(Arrangement &arrangement)
{
    DroneField(arrangement).play();
}

} // namespace velmora::demo
