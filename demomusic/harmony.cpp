#include "harmony.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

namespace velmora::demo {
namespace {

int floorMod(int value, int modulus)
{
    return ((value % modulus) + modulus) % modulus;
}

std::array<int, 7> steps(Mode mode)
{
    switch (mode) {
    case Mode::Minor:
        return {0, 2, 3, 5, 7, 8, 10};
    case Mode::Dorian:
        return {0, 2, 3, 5, 7, 9, 10};
    case Mode::Mixolydian:
        return {0, 2, 4, 5, 7, 9, 10};
    case Mode::Lydian:
        return {0, 2, 4, 6, 7, 9, 11};
    case Mode::Major:
        break;
    }
    return {0, 2, 4, 5, 7, 9, 11};
}

struct Numeral {
    std::string_view text;
    int semitones;
    bool minor;
};
// Longer ones first, so that "IV" is not read as "I".
constexpr Numeral numerals[] = {{"VII", 11, false}, {"III", 4, false}, {"VI", 9, false}, {"IV", 5, false},
                                {"II", 2, false},   {"V", 7, false},   {"I", 0, false},  {"vii", 11, true},
                                {"iii", 4, true},   {"vi", 9, true},   {"iv", 5, true},  {"ii", 2, true},
                                {"v", 7, true},     {"i", 0, true}};

struct Quality {
    std::string_view text;
    std::vector<int> tones; // empty: the triad of the numeral and `added`
    std::vector<int> added;
};

const std::vector<Quality> &qualities()
{
    static const std::vector<Quality> table = {
        {"", {}, {}},
        {"7", {}, {10}},
        {"maj7", {}, {11}},
        {"6", {}, {9}},
        {"9", {}, {10, 14}},
        {"maj9", {}, {11, 14}},
        {"add9", {}, {14}},
        {"69", {}, {9, 14}},
        {"sus4", {0, 5, 7}, {}},
        {"sus2", {0, 2, 7}, {}},
        {"7sus4", {0, 5, 7, 10}, {}},
        {"dim", {0, 3, 6}, {}},
        {"dim7", {0, 3, 6, 9}, {}},
        {"m7b5", {0, 3, 6, 10}, {}},
        {"5", {0, 7}, {}},
        {"7b9", {0, 4, 7, 10, 13}, {}},
        {"11", {}, {10, 14, 17}},
    };
    return table;
}

} // namespace

Scale::Scale(int keyNote, Mode mode)
    : m_keyNote(keyNote)
    , m_steps(steps(mode))
{
}

int Scale::pitch(int degree) const
{
    const int within = floorMod(degree, 7);
    return m_keyNote + 12 * ((degree - within) / 7) + m_steps[size_t(within)];
}

int Scale::degreeNear(double wanted) const
{
    int best = 7 * (int(wanted - m_keyNote) / 12 - 1);
    for (int degree = best; degree < best + 22; ++degree)
        if (std::abs(pitch(degree) - wanted) < std::abs(pitch(best) - wanted))
            best = degree;
    return best;
}

bool Scale::contains(int wanted) const
{
    return std::find(m_steps.begin(), m_steps.end(), floorMod(wanted - m_keyNote, 12)) != m_steps.end();
}

bool Chord::contains(int pitchAboveKey) const
{
    return std::any_of(tones.begin(), tones.end(),
                       [&](int tone) { return floorMod(pitchAboveKey - root - tone, 12) == 0; });
}

Chord parseChord(std::string_view text)
{
    std::string_view rest = text;
    int shift = 0;
    if (rest.starts_with('b') || rest.starts_with('#')) {
        shift = rest.front() == 'b' ? -1 : 1;
        rest.remove_prefix(1);
    }
    const auto numeral = std::find_if(std::begin(numerals), std::end(numerals),
                                      [&](const Numeral &candidate) { return rest.starts_with(candidate.text); });
    if (numeral == std::end(numerals))
        throw std::invalid_argument("no chord: " + std::string(text));
    rest.remove_prefix(numeral->text.size());
    const size_t slash = rest.find('/');
    const std::string_view name = rest.substr(0, slash);
    const auto quality = std::find_if(qualities().begin(), qualities().end(),
                                      [&](const Quality &candidate) { return candidate.text == name; });
    if (quality == qualities().end())
        throw std::invalid_argument("no chord: " + std::string(text));

    Chord chord;
    chord.root = floorMod(numeral->semitones + shift, 12);
    chord.bass = chord.root;
    chord.tones = quality->tones;
    if (chord.tones.empty()) {
        chord.tones = {0, numeral->minor ? 3 : 4, 7};
        chord.tones.insert(chord.tones.end(), quality->added.begin(), quality->added.end());
    }
    if (slash != std::string_view::npos) {
        const std::string_view which = rest.substr(slash + 1);
        const size_t index = which == "3" ? 1 : which == "5" ? 2 : which == "7" ? 3 : chord.tones.size();
        if (index >= chord.tones.size())
            throw std::invalid_argument("no such bass: " + std::string(text));
        chord.bass = floorMod(chord.root + chord.tones[index], 12);
    }
    return chord;
}

std::vector<std::vector<Chord>> parseBars(std::string_view text)
{
    std::vector<std::vector<Chord>> bars;
    size_t position = 0;
    while ((position = text.find_first_not_of(' ', position)) != std::string_view::npos) {
        const size_t end = std::min(text.find(' ', position), text.size());
        std::vector<Chord> &bar = bars.emplace_back();
        while (position < end) {
            const size_t comma = std::min(text.find(',', position), end);
            bar.push_back(parseChord(text.substr(position, comma - position)));
            position = comma + 1;
        }
    }
    if (bars.empty())
        throw std::invalid_argument("no chords");
    return bars;
}

int nearest(int pitchClass, int keyNote, double pitch)
{
    const int base = keyNote + pitchClass;
    return base + 12 * int(std::floor((pitch - base) / 12 + 0.5));
}

int nearestTone(const Chord &chord, int keyNote, double pitch)
{
    int best = nearest(chord.root, keyNote, pitch);
    for (int tone : chord.tones) {
        const int candidate = nearest(chord.root + tone, keyNote, pitch);
        if (std::abs(candidate - pitch) < std::abs(best - pitch))
            best = candidate;
    }
    return best;
}

int bassNote(const Chord &chord, int keyNote, int low)
{
    return low + floorMod(keyNote + chord.bass - low, 12);
}

Voicing voiceLeading(const Voicing &previous, const Chord &chord, int keyNote, int low, int high, int voices)
{
    std::vector<int> classes;
    for (int tone : chord.tones)
        classes.push_back(floorMod(keyNote + chord.root + tone, 12));
    if (int(classes.size()) > voices && classes.size() > 2)
        classes.erase(classes.begin() + 2); // the fifth matters least
    while (int(classes.size()) > voices)
        classes.erase(classes.begin()); // the bass plays the root
    std::sort(classes.begin(), classes.end());
    classes.erase(std::unique(classes.begin(), classes.end()), classes.end());

    Voicing best;
    double bestCost = 1e9;
    for (int start = low; start <= high; ++start) {
        const auto first = std::find(classes.begin(), classes.end(), floorMod(start, 12));
        if (first == classes.end())
            continue;
        Voicing candidate;
        const size_t offset = size_t(first - classes.begin());
        for (size_t i = 0; i < classes.size() && int(candidate.size()) < voices; ++i) {
            const int pitchClass = classes[(offset + i) % classes.size()];
            int pitch = candidate.empty() ? start : candidate.back() + 1;
            pitch += floorMod(pitchClass - pitch, 12);
            candidate.push_back(pitch);
        }
        while (int(candidate.size()) < voices) // doubled from below
            candidate.push_back(candidate[candidate.size() - classes.size()] + 12);
        double cost = candidate.back() > high ? 30.0 * (candidate.back() - high) : 0;
        if (previous.empty()) {
            cost += std::abs((candidate.front() + candidate.back()) / 2.0 - (low + high) / 2.0);
        } else {
            for (size_t i = 0; i < candidate.size(); ++i)
                cost += std::abs(candidate[i] - previous[std::min(i, previous.size() - 1)]);
            // A weak pull to the middle: without it the chords drift over a long piece.
            cost += 0.3 * std::abs((candidate.front() + candidate.back()) / 2.0 - (low + high) / 2.0);
        }
        if (cost < bestCost) {
            bestCost = cost;
            best = candidate;
        }
    }
    return best;
}

} // namespace velmora::demo
