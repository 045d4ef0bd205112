#include "arrangement.h"

#include <algorithm>

namespace velmora::demo {

Arrangement::Arrangement(const Piece &piece, Mixer &mixer)
    : m_piece(piece)
    , m_mixer(mixer)
    , m_sections(demo::sections(piece))
    , m_scale(48 + piece.key, piece.mode)
    , m_tempo(tempoMap(piece))
{
    for (const Section &section : m_sections) {
        const auto bars = parseBars(section.kind == 'B'   ? piece.contrast
                                    : section.kind == 'E' ? piece.ending
                                                          : piece.verse);
        // An introduction leads into the verse, so it uses the verse's last chords.
        const int first = section.kind == 'I' ? int(bars.size()) * section.bars - section.bars : 0;
        for (int bar = 0; bar < section.bars; ++bar) {
            const auto &inBar = bars[size_t(first + bar) % bars.size()];
            const double beats = double(piece.beatsPerBar) / double(inBar.size());
            for (size_t i = 0; i < inBar.size(); ++i)
                m_chords.push_back({section.beat + bar * piece.beatsPerBar + double(i) * beats, beats, inBar[i]});
        }
    }
}

std::vector<ChordSpan> Arrangement::chords(const Section &section) const
{
    std::vector<ChordSpan> result;
    for (const ChordSpan &span : m_chords)
        if (span.beat >= section.beat - 1e-6 && span.beat < section.beat + section.beats - 1e-6)
            result.push_back(span);
    return result;
}

const Chord &Arrangement::chordAt(double beat) const
{
    auto after = std::upper_bound(m_chords.begin(), m_chords.end(), beat + 1e-6,
                                  [](double value, const ChordSpan &span) { return value < span.beat; });
    return after == m_chords.begin() ? after->chord : std::prev(after)->chord;
}

void Arrangement::play(const Buffer &sound, double beat, const Placement &placement, double late)
{
    m_mixer.add(sound, std::max(0.0, seconds(beat) + late), placement);
}

float dynamics(const Section &section)
{
    switch (section.kind) {
    case 'I':
        return 0.6f;
    case 'B':
        return 0.85f;
    case 'C':
        return 0.8f;
    case 'E':
        return 0.6f;
    default:
        return section.pass == 0 ? 0.65f : 0.75f;
    }
}

} // namespace velmora::demo
