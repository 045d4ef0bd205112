#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace velmora::demo {

// A small generator with the same sequence on every system. The distributions of the standard library differ between
// implementations, so cached files would no longer match the catalogue after an upgrade.
class Random {
public:
    explicit Random(uint64_t seed)
        : m_state(seed)
    {
    }

    uint64_t next()
    {
        uint64_t z = (m_state += 0x9e3779b97f4a7c15ULL);
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ULL;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebULL;
        return z ^ (z >> 31);
    }
    float unit() { return float(next() >> 40) * (1.0f / 16777216.0f); } // 0 <= x < 1
    float bipolar() { return 2.0f * unit() - 1.0f; }                    // -1 <= x < 1
    float between(float low, float high) { return low + (high - low) * unit(); }
    int below(int count) { return int(next() % uint64_t(count)); } // 0 .. count-1; count > 0
    bool chance(float probability) { return unit() < probability; }
    template <typename T>
    const T &pick(const std::vector<T> &from)
    {
        return from[size_t(below(int(from.size())))];
    }
    // A separate generator for one part, so that the parts do not change each other's sequences.
    Random fork(uint64_t name) const { return Random((m_state ^ (name * 0xd1342543de82ef95ULL)) + name); }

private:
    uint64_t m_state;
};

} // namespace velmora::demo
