#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace velmora::server {

// Why a track was chosen; explained to the listener in these words.
enum class Reason { Artist, Style, Mood, Tempo, Liked, Mix, Change };

// What a station is about: the properties of the music it was made from, and of what got thumbs up there.
struct Taste {
    std::set<int64_t> artists;
    std::set<std::string> styles;
    std::set<std::string> moods;
    std::vector<int> tempos; // beats a minute
    std::set<int64_t> likedTracks;
    std::set<int64_t> likedArtists;
    std::set<std::string> likedStyles;

    bool isEmpty() const { return artists.empty() && styles.empty() && likedTracks.empty(); }
};

// A track that may be played: it has a file, and no thumbs down or sleep stands against it.
struct Candidate {
    int64_t trackId = 0;
    int64_t artistId = 0;
    std::string style;
    std::string mood;
    int tempo = 0;
};

struct Choice {
    int64_t trackId = 0;
    int64_t artistId = 0;
    std::vector<Reason> reasons; // never empty
};

// Uniform in [0, bound).
using Random = std::function<uint32_t(uint32_t bound)>;

// The next track: likelier the more it shares with the taste. It is by another artist than the last one where the
// candidates have another, and not in the more recently played half of what fits (`recentTracks`, newest last) unless
// nothing else is left. Nothing when there are no candidates.
std::optional<Choice> chooseNext(const Taste &taste, const std::vector<Candidate> &candidates, int64_t lastArtist,
                                 const std::vector<int64_t> &recentTracks, const Random &random);

// In what way a candidate fits the taste; empty when in none.
std::vector<Reason> reasonsFor(const Taste &taste, const Candidate &candidate);

// Which of four entries is the advertisement: any but the first, so that a list, the first of a new station above all,
// begins with music and two advertisements never meet.
int adPosition(const Random &random);

// The reason in plain ASCII words that go on after "it features".
std::string traitText(Reason reason, const std::string &style, const std::string &mood, int tempo);
const char *traitId(Reason reason);
std::optional<Reason> reasonOf(const std::string &traitId);

} // namespace velmora::server
