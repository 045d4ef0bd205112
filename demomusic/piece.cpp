#include "piece.h"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace velmora::demo {
namespace {

// The timing of a style: swing, how much its ending slows, and how long its last chord rings.
struct Motion {
    double swing, slowing, ringSeconds;
};

Motion motion(const Piece &piece)
{
    switch (piece.style) {
    case Style::SlowPiano:
        return {0.5, 0.5, 7.5};
    case Style::Folk:
        return {piece.variant == 3 ? 0.5 : 0.52, 0.25, 4}; // the jig counts in threes
    case Style::Dance:
        return {0.5, 0, 3.6};
    case Style::Drones:
        return {0.5, 0, 14};
    case Style::Swing: // the swing ratio falls with the tempo
        return {piece.variant == 3 ? 0.5 : piece.tempo > 165 ? 0.61 : 0.655, 0.12, 3.5};
    case Style::Rock:
        break;
    }
    return {piece.variant == 3 ? 0.64 : 0.5, 0.1, 4}; // the shuffle
}

} // namespace

std::vector<Section> sections(const Piece &piece)
{
    std::vector<Section> result;
    std::istringstream form(piece.form);
    double beat = 0;
    for (std::string word; form >> word;) {
        const char kind = word.front();
        const int pass = int(
            std::count_if(result.begin(), result.end(), [&](const Section &section) { return section.kind == kind; }));
        const int bars = std::stoi(word.substr(1));
        result.push_back({kind, pass, bars, beat, double(bars * piece.beatsPerBar)});
        beat += bars * piece.beatsPerBar;
    }
    return result;
}

TempoMap::TempoMap(int tempo, double swing, double slowFrom, double end, double slowing)
    : m_beatSeconds(60.0 / tempo)
    , m_swing(swing)
    , m_slowFrom(slowFrom)
    , m_end(end)
    , m_slowing(slowing)
{
}

double TempoMap::seconds(double beat) const
{
    const double whole = std::floor(beat), part = beat - whole;
    double even = whole + (part < 0.5 ? part * 2 * m_swing : m_swing + (part - 0.5) * 2 * (1 - m_swing));
    if (even > m_slowFrom && m_end > m_slowFrom) {
        const double length = m_end - m_slowFrom, inside = std::min(even, m_end) - m_slowFrom;
        even += m_slowing * inside * inside / (2 * length) + std::max(0.0, even - m_end) * m_slowing;
    }
    return even * m_beatSeconds;
}

TempoMap tempoMap(const Piece &piece)
{
    const Motion how = motion(piece);
    const Section last = sections(piece).back();
    // The tempo falls until the last bar, which is one held chord.
    return {piece.tempo, how.swing, last.beat - piece.beatsPerBar, last.beat + last.beats - piece.beatsPerBar,
            how.slowing};
}

int durationSeconds(const Piece &piece)
{
    const Section last = sections(piece).back();
    return int(
        std::ceil(tempoMap(piece).seconds(last.beat + last.beats - piece.beatsPerBar) + motion(piece).ringSeconds));
}

} // namespace velmora::demo
