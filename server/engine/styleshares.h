#pragma once

#include "server/engine/enginemusic.h"
#include "server/engine/likeness.h"

#include <atomic>
#include <span>

namespace velmora::engine {

struct StyleShare {
    uint16_t style = 0;
    uint16_t share = 0; // of 65535
    float value() const { return static_cast<float>(share) / 65535; }
};

// What styles a track belongs to, by its own tags, its artist's and what sounds like it. Shares of one track sum to at
// most 1; the smallest of many are dropped. Immutable once built.
class StyleShares {
public:
    enum class Votes { Taken, Ignored };
    // With votes it looks for every track's nearest ones: seconds for a large library. `isStopping` ends it early, with
    // less certain shares; may be null.
    StyleShares(const EngineMusic &music, const Likeness &likeness, Votes votes, const std::atomic<bool> *isStopping);

    std::span<const StyleShare> of(size_t track) const
    {
        return {m_shares.data() + m_offsets[track], m_offsets[track + 1] - m_offsets[track]};
    }
    // Fetches where they stand from memory, ahead of their use.
    void prefetch(size_t track) const { __builtin_prefetch(&m_offsets[track]); }
    float share(size_t track, int style) const;
    // Whether the track or its artist is tagged so; otherwise the share comes from what sounds like it.
    bool isTagged(size_t track, int style) const;
    // How far tags and sound agree: 0 as chance has it, 1 always. 0 without votes.
    float agreement() const { return m_agreement; }
    // How much likeness of sound counts: 1, and less where there are tags that it hardly agrees with.
    float soundTrust() const { return m_soundTrust; }

private:
    std::vector<size_t> m_offsets;
    std::vector<StyleShare> m_shares;
    std::vector<bool> m_tagged; // by share
    float m_agreement = 0;
    float m_soundTrust = 1;
};

} // namespace velmora::engine
