#pragma once

#include "server/engine/chooser.h"

namespace velmora::engine {

// What a listener is told: an id for programs, and plain ASCII words that go on after "it features".
struct ReasonText {
    std::string id;
    std::string text;

    bool operator==(const ReasonText &) const = default;
};

// The index that would have won if these terms had been the same for all of the shortlist, each at its mean; the noise
// of the pick is kept.
size_t winnerWithout(const Pick &pick, const std::vector<size_t> &terms);

// The terms without which another track would have been chosen. Up to three that decide alone, the one with the largest
// advantage over the shortlist's mean first; if there is none, the fewest of the largest that decide together, up to
// four; empty when chance decided.
std::vector<size_t> decisiveTerms(const Pick &pick);

// Words for the decisive terms, at least one. They say no more than the term knows.
std::vector<ReasonText> explain(const StationScores &scores, const Pick &pick);

} // namespace velmora::engine
