// Electronic dance: a deep kick on every beat, chords ducked by it, a melody with echo.

#include "arrangement.h"
#include "drums.h"
#include "envelope.h"
#include "keys.h"
#include "melody.h"
#include "synths.h"

#include <algorithm>
#include <cmath>

namespace velmora::demo {
namespace {

enum class Variant { House, Arpeggio, Broken, Deep, Acid };
using enum Variant;

class DanceMachine {
public:
    explicit DanceMachine(Arrangement &arrangement)
        : m_a(arrangement)
        , m_random(arrangement.random('d'))
        , m_key(arrangement.scale().keyNote())
        , m_variant(static_cast<Variant>(arrangement.piece().variant))
    {
        // The times of the kick come first, because ducked sounds need them.
        std::vector<double> kicks;
        for (const Section &section : m_a.sections())
            for (int sixteenth = 0; sixteenth < section.bars * 16; ++sixteenth)
                if (kickAt(section, sixteenth)) {
                    m_kicks.push_back(section.beat + sixteenth / 4.0);
                    kicks.push_back(m_a.seconds(m_kicks.back()));
                }
        m_a.mixer().duck(kicks, m_variant == Broken ? 0.5f : 0.72f, 0.26);
    }

    void play()
    {
        for (double beat : m_kicks)
            m_a.play(deepKick(0.95f), beat, {0.62f, 0, 0.02f});
        for (const Section &section : m_a.sections()) {
            drums(section);
            for (const ChordSpan &span : m_a.chords(section)) {
                m_voicing = voiceLeading(m_voicing, span.chord, m_key, 55, 72, 4);
                if (span.beat == m_a.chords().back().beat) {
                    finish(span);
                    return;
                }
                if (section.kind != 'I' || span.beat >= section.beat + section.beats / 2)
                    bass(section, span);
                chords(section, span);
                arpeggio(section, span);
            }
            if ((section.kind == 'A' && section.pass > 0) || section.kind == 'C')
                lead(section);
            if (section.kind == 'B' || section.kind == 'I')
                rise(section);
        }
    }

private:
    bool kickAt(const Section &section, int sixteenth) const
    {
        const int step = sixteenth % 16, bar = sixteenth / 16;
        if (section.kind == 'E')
            return step % 4 == 0 && bar < section.bars - 1;
        if (section.kind == 'B') // the break: a kick only in its second half, without the last bar
            return false;
        if (section.kind != 'I' && bar == section.bars - 1 && step >= 12)
            return false; // a pause before the next section
        if (m_variant == Broken)
            return step == 0 || step == 6 || step == 10 || (bar % 2 == 1 && step == 15);
        return step % 4 == 0;
    }

    void drums(const Section &section)
    {
        const bool quiet = section.kind == 'B';
        const bool full = section.kind == 'C' || (section.kind == 'A');
        for (int sixteenth = 0; sixteenth < section.bars * 16; ++sixteenth) {
            const int step = sixteenth % 16, bar = sixteenth / 16;
            const double beat = section.beat + sixteenth / 4.0;
            const uint64_t seed = m_random.next();
            if (section.kind == 'E' && bar >= section.bars - 1)
                break;
            const bool early = section.kind == 'I' && bar < section.bars / 2;
            if (!quiet && step % 4 == 2 && !early)
                m_a.play(hat(0.8f, 0.16, seed), beat, {0.55f, 0.2f, 0.06f});
            if ((full || section.kind == 'I') && step % 4 != 2)
                m_a.play(hat(step % 2 ? 0.28f : 0.45f, 0.045, seed), beat, {0.55f, -0.3f, 0.04f}, step % 2 ? 0.006 : 0);
            const bool back = step == 4 || step == 12;
            if (full && back)
                m_a.play(m_variant == Deep ? rimClick(0.9f) : clap(0.85f, seed), beat, {0.56f, 0.04f, 0.22f});
            if (full && m_variant == Deep && (step == 3 || step == 11 || step == 14))
                m_a.play(shaker(0.7f, seed), beat, {0.3f, 0.4f, 0.1f});
            if (full && m_variant == Broken && (step == 7 || step == 9))
                m_a.play(snare(0.22f, seed), beat, {0.4f, -0.1f, 0.12f});
            // A roll into the next section.
            if (section.kind != 'E' && bar == section.bars - 1 && step >= 8 && (step % 2 == 0 || step >= 12))
                m_a.play(snare(0.18f + 0.05f * float(step - 8), seed), beat, {0.4f, 0, 0.2f});
        }
        if (section.kind == 'A' || section.kind == 'C')
            m_a.play(crash(0.8f, m_random.next()), section.beat, {0.35f, 0.2f, 0.3f});
    }

    void bass(const Section &section, const ChordSpan &span)
    {
        const int low = bassNote(span.chord, m_key, 31);
        if (section.kind == 'B') {
            m_a.play(subBass({double(low), m_a.length(span.beat, span.beats * 0.95), 0.6f}), span.beat, {0.4f, 0, 0});
            return;
        }
        // Sixteenths of one bar; 'o' an octave up.
        const char *patterns[] = {"..x...x...x...xo", "..xx..xx..xx..xo", "x.....x...x..x..", "x..x..x...x.x...",
                                  "x.xxo.x.x.xox.ox"};
        const char *pattern = patterns[static_cast<int>(m_variant)];
        for (int i = 0; i < int(std::lround(span.beats * 4)); ++i) {
            const double beat = span.beat + i / 4.0;
            const char c = pattern[int(std::lround(beat * 4)) % 16];
            if (c == '.')
                continue;
            const int pitch = c == 'o' ? low + 12 : low;
            const bool accent = m_random.chance(0.3f);
            const double seconds = m_a.length(beat, m_variant == Broken ? 0.6 : m_variant == Deep ? 0.45 : 0.22);
            if (m_variant == Broken || m_variant == Deep) {
                m_a.play(subBass({double(pitch), seconds, 0.9f}), beat, {0.42f, 0, 0, 0, true});
                m_a.play(synthBass({double(pitch + 12), seconds, 0.5f}, 260, 700), beat, {0.42f, 0, 0.02f, 0, true});
            } else {
                // The acid line opens slowly over the section.
                const float open = float((beat - section.beat) / section.beats);
                const float bite = m_variant == Acid ? 700 + 3000 * open + (accent ? 900.0f : 0.0f) : 1300;
                m_a.play(synthBass({double(pitch), seconds, accent ? 1.0f : 0.8f}, m_variant == Acid ? 180 : 240, bite),
                         beat, {0.5f, 0, 0.02f, 0, true});
            }
        }
    }

    void chords(const Section &section, const ChordSpan &span)
    {
        const float open = section.kind == 'B' ? 2600.0f : section.kind == 'I' ? 700.0f : 1500.0f;
        const PadTone soft{section.kind == 'B' ? 0.25f : 0.08f, 0.35f, open * 0.8f, open * 1.6f, 0.11f, 0.006f, 4};
        const double seconds = m_a.length(span.beat, span.beats);
        for (size_t i = 0; i < m_voicing.size(); ++i) {
            const float pan = -0.6f + 1.2f * float(i) / float(std::max<size_t>(1, m_voicing.size() - 1));
            const float gain = section.kind == 'B' ? 0.7f : 0.62f;
            m_a.play(pad({double(m_voicing[i]), seconds, 0.8f}, soft, m_random.next()), span.beat,
                     {gain, pan, 0.25f, 0, true});
        }
        if (section.kind == 'I' || section.kind == 'B' || section.kind == 'E')
            return;
        const char *rhythm = m_variant == House ? "..x..x....x..x.." : m_variant == Deep ? "x..x......x....." : nullptr;
        if (!rhythm)
            return;
        for (int i = 0; i < int(std::lround(span.beats * 4)); ++i) {
            const double beat = span.beat + i / 4.0;
            if (rhythm[int(std::lround(beat * 4)) % 16] != 'x')
                continue;
            for (int pitch : m_voicing) {
                const Note note{double(pitch), m_a.length(beat, 0.3), 0.75f};
                m_a.play(m_variant == Deep ? electricPiano(note) : chordStab(note, 2600), beat,
                         {0.7f, m_random.bipolar() * 0.5f, 0.15f, 0.18f});
            }
        }
    }

    void arpeggio(const Section &section, const ChordSpan &span)
    {
        const bool always = m_variant == Arpeggio || m_variant == Broken;
        if (!(section.kind == 'B' || section.kind == 'C' || (always && section.kind != 'E')))
            return;
        const int shape[] = {0, 2, 1, 3, 2, 0, 3, 1};
        const double unit = m_variant == Broken ? 0.5 : 0.25;
        for (double beat = span.beat; beat < span.beat + span.beats - 0.01; beat += unit) {
            const int step = int(std::lround(beat / unit));
            const size_t which = size_t(shape[step % 8]) % m_voicing.size();
            const int octave = (step / 8) % 2 ? 24 : 12;
            // The filter opens and closes over eight bars, so that the sound keeps changing.
            const float open = 0.5f - 0.5f * float(std::cos(2 * 3.14159265 * (beat - section.beat) / 32));
            const float velocity = step % 4 == 0 ? 0.85f : 0.6f;
            m_a.play(synthPluck({double(m_voicing[which] + octave), m_a.length(beat, unit * 0.8), velocity},
                                900 + 3600 * open),
                     beat,
                     {section.kind == 'B' ? 0.6f : 0.55f, step % 2 ? 0.4f : -0.4f, 0.15f, 0.3f, section.kind != 'B'});
        }
    }

    void lead(const Section &section)
    {
        MelodyPlan plan;
        plan.slotsPerBeat = 4;
        plan.rhythms = {"x--x--x-x--x--x- x-----x-........", "x-x-..x-..x-x--- x--x--x-x-------",
                        "..x-x--x--x-x--- x-------........", "x--x--x---x-x-x- x---x-----------"};
        plan.cadences = {"x--x--x-x--x--x- x-----------....", "x-x-x--x--x-x-x- x-----------...."};
        plan.low = 67;
        plan.high = 86;
        plan.leaps = 0.3f;
        auto melody = composeMelody(m_a, section, plan, m_a.random('l'));
        for (const MelodyNote &note : melody) {
            const Note sung{double(note.pitch), m_a.length(note.beat, note.beats * 0.9),
                            std::min(1.0f, note.accent + 0.25f)};
            const Buffer sound = m_variant == Deep     ? glassBell({sung.pitch, sung.seconds, sung.velocity * 0.8f})
                                 : m_variant == Broken ? synthPluck(sung, 4200)
                                                       : synthLead(sung, 4200);
            m_a.play(sound, note.beat, {m_variant == Deep ? 0.7f : 0.9f, 0, 0.2f, 0.32f});
        }
    }

    void rise(const Section &section)
    {
        const double beats = std::min(section.beats, 16.0), start = section.beat + section.beats - beats;
        // A sweep is loudest in its middle, so half of it is used, up to the point where the beat returns.
        Buffer tension = noiseSweep(m_a.length(start, beats) * 2, 300, 20000, 0.4f, m_random.next());
        tension.resize(tension.size() / 2);
        fadeEnd(tension, 0.03);
        m_a.play(tension, start, {0.16f, 0, 0.3f});
        for (int i = 0; i < int(beats) && section.kind == 'B'; ++i)
            m_a.play(clap(0.25f + 0.4f * float(i) / float(beats), m_random.next()), start + i, {0.3f, 0, 0.35f});
    }

    void finish(const ChordSpan &span)
    {
        const PadTone last{0.02f, 2.5f, 1200, 1500, 0.1f, 0.007f, 5};
        const double seconds = m_a.length(span.beat, span.beats) * 0.7;
        for (size_t i = 0; i < m_voicing.size(); ++i)
            m_a.play(pad({double(m_voicing[i]), seconds, 0.8f}, last, m_random.next()), span.beat,
                     {0.6f, float(i) * 0.3f - 0.45f, 0.4f, 0.2f});
        m_a.play(subBass({double(bassNote(span.chord, m_key, 31)), seconds, 0.9f}), span.beat, {0.7f, 0, 0});
        m_a.play(deepKick(0.95f), span.beat, {0.85f, 0, 0.1f});
        m_a.play(crash(0.9f, 3), span.beat, {0.4f, -0.2f, 0.4f});
    }

    Arrangement &m_a;
    Random m_random;
    int m_key;
    Variant m_variant;
    std::vector<double> m_kicks; // beats
    Voicing m_voicing;
};

} // namespace

void arrangeDance(Arrangement &arrangement)
{
    DanceMachine(arrangement).play();
}

} // namespace velmora::demo
