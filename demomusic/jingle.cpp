#include "jingle.h"

#include "drums.h"
#include "keys.h"
#include "random.h"
#include "strings.h"
#include "winds.h"

#include <cmath>
#include <sstream>

namespace velmora::demo {
namespace {

constexpr double ringSeconds = 1.8;

struct Tone {
    double beat, beats;
    int degree;
};

std::vector<Tone> tones(const char *melody)
{
    std::vector<Tone> result;
    std::istringstream words(melody);
    double beat = 0;
    for (std::string word; words >> word; beat += 0.5) {
        if (word == "-") {
            if (!result.empty())
                result.back().beats += 0.5;
        } else if (word != ".") {
            const int octave = word.ends_with('\'') ? 7 : word.ends_with(',') ? -7 : 0;
            result.push_back({beat, 0.5, word.front() - '1' + octave});
        }
    }
    return result;
}

double beats(const Jingle &jingle)
{
    return 2.0 * double(parseBars(jingle.chords).size());
}

Buffer lead(Voice voice, const Note &note)
{
    switch (voice) {
    case Voice::Marimba:
        return marimba(note);
    case Voice::Whistle:
        return whistle(note);
    case Voice::Harp:
        return pluck({note.pitch, note.seconds + 0.8, note.velocity}, harp);
    case Voice::Accordion:
        return accordion(note);
    case Voice::Bell:
        return glassBell(note);
    case Voice::Piano:
        break;
    }
    return piano({note.pitch, note.seconds + 0.4, note.velocity}, 0.1f);
}

} // namespace

int durationSeconds(const Jingle &jingle)
{
    return int(std::ceil(beats(jingle) * 60 / jingle.tempo + ringSeconds));
}

void play(const Jingle &jingle, Mixer &mixer)
{
    Random random(jingle.seed);
    const int key = 48 + jingle.key;
    const Scale scale(key > 55 ? key : key + 12, jingle.mode);
    const double second = 60.0 / jingle.tempo;
    const bool lively = jingle.tempo > 100;

    for (const Tone &tone : tones(jingle.melody)) {
        const Note note{double(scale.pitch(tone.degree)), tone.beats * second * 0.95,
                        tone.beat == std::floor(tone.beat) ? 0.85f : 0.7f};
        mixer.add(lead(jingle.voice, note), tone.beat * second, {0.8f, 0.1f, 0.25f});
    }

    Voicing voicing;
    double beat = 0;
    const auto bars = parseBars(jingle.chords);
    for (size_t i = 0; i < bars.size(); ++i, beat += 2) {
        const Chord &chord = bars[i].front();
        const bool last = i + 1 == bars.size();
        voicing = voiceLeading(voicing, chord, key, 52, 68, 4);
        const int low = bassNote(chord, key, 33);
        mixer.add(pluck({double(low), second * (last ? 4 : 1.8), 0.8f}, uprightBass), beat * second, {0.9f, 0, 0.08f});
        if (lively) {
            for (double off : {0.5, 1.5})
                if (!last)
                    mixer.add(strum(voicing, second * 0.5, 0.7f, 0.008, nylonGuitar), (beat + off) * second,
                              {0.4f, -0.4f, 0.15f});
            for (int k = 0; k < 4 && !last; ++k)
                mixer.add(shaker(k % 2 ? 0.5f : 0.8f, random.next()), (beat + k / 2.0) * second, {0.2f, 0.4f, 0.1f});
            if (!last)
                mixer.add(rimClick(0.5f), (beat + 1) * second, {0.3f, 0.2f, 0.15f});
        } else {
            for (size_t k = 0; k < voicing.size(); ++k)
                mixer.add(pluck({double(voicing[k]), second * 2, 0.5f}, harp), (beat + 0.25 * double(k)) * second,
                          {0.45f, -0.3f, 0.3f});
        }
        if (last)
            mixer.add(strum(voicing, 2, 0.8f, 0.03, lively ? steelGuitar : harp), beat * second, {0.5f, -0.25f, 0.3f});
    }
}

} // namespace velmora::demo
