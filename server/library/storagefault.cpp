#include "server/library/storagefault.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora::server {

bool isStorageFault(int error)
{
    constexpr std::array faults = {EIO,       ENXIO,        ENODEV,    ENOTCONN,     ESTALE,      ETIMEDOUT,
                                   EHOSTDOWN, EHOSTUNREACH, EREMOTEIO, ECONNABORTED, ECONNREFUSED};
    for (const int fault : faults) {
        if (error == fault)
            return true;
    }
    return false;
}

bool isStorageFailing(int file)
{
    constexpr std::chrono::seconds patience{2};
    constexpr int places = 16;
    std::array<char, 4096> bytes;
    struct stat status {};
    const auto begin = std::chrono::steady_clock::now();
    if (::fstat(file, &status) != 0)
        return true;
    for (int place = 0; place <= places; ++place) {
        if (::pread(file, bytes.data(), bytes.size(), status.st_size / places * place) < 0)
            return true;
    }
    return std::chrono::steady_clock::now() - begin > patience;
}

} // namespace velmora::server
