#pragma once

#include <cstdint>
#include <functional>

namespace velmora::server {

// Uniform in [0, bound).
using Random = std::function<uint32_t(uint32_t bound)>;

// Which of four entries is the advertisement: any but the first, so that a list, the first of a new station above all,
// begins with music and two advertisements never meet.
int adPosition(const Random &random);

} // namespace velmora::server
