#pragma once

#include <cstdint>
#include <functional>

namespace velmora::server {

// Uniform in [0, bound).
using Random = std::function<uint32_t(uint32_t bound)>;

// The place of the advertisement among four entries: never the first, so that every list begins with music
// and two advertisements never follow each other.
int adPosition(const Random &random);

} // namespace velmora::server
