#include "randombytes.h"

#include <cerrno>
#include <cstdlib>
#include <sys/random.h>

namespace velmora::ws {

void fillRandom(unsigned char *bytes, std::size_t size)
{
    while (size > 0) {
        const ssize_t got = getrandom(bytes, size, 0);
        if (got < 0 && errno != EINTR)
            std::abort(); // a kernel without random numbers: nothing safe can be made
        if (got > 0) {
            bytes += got;
            size -= static_cast<std::size_t>(got);
        }
    }
}

} // namespace velmora::ws
