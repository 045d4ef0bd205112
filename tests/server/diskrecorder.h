#pragma once

#include <cstdint>

// What the recorder (diskrecorder.cpp) writes down for each call that reaches the disk, in the order of the calls.
namespace velmora::diskrecord {

enum class Call : uint8_t {
    Begin, // a program starts: no descriptor of an earlier one is valid
    Open,  // path
    Close,
    Write,    // offset, content
    Truncate, // offset: the new size
    Sync,
    Rename, // path: both, separated by a line feed
    Link,   // the same
    Unlink, // path
    MakeFolder,
};

// Followed by `size` bytes: the path or the content.
struct Header {
    Call call{};
    int32_t descriptor = -1;
    uint64_t offset = 0;
    uint32_t size = 0;
};

} // namespace velmora::diskrecord
