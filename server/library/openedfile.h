#pragma once

#include <unistd.h>

namespace velmora::server {

// A descriptor of an open file or folder, closed at its end. Negative: none is open.
struct OpenedFile {
    explicit OpenedFile(int descriptor)
        : value(descriptor)
    {
    }
    ~OpenedFile()
    {
        if (value >= 0)
            ::close(value);
    }
    OpenedFile(const OpenedFile &) = delete;
    OpenedFile &operator=(const OpenedFile &) = delete;

    const int value;
};

} // namespace velmora::server
