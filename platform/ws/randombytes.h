#pragma once

#include <cstddef>

namespace velmora::ws {

// Unpredictable bytes of the kernel. Any thread.
void fillRandom(unsigned char *bytes, std::size_t size);

} // namespace velmora::ws
