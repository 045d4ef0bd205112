#pragma once

#include "server/http/message.h"

namespace velmora::server::http {

// The part of a file that a Range header asks for.
struct ByteRange {
    uint64_t first = 0;
    uint64_t last = 0; // the last byte itself
};
enum class RangeResult { Whole, Part, Unsatisfiable };
// Understands a single range. Several ranges, reversed ones, other units and unreadable headers give the whole file,
// which HTTP allows.
RangeResult parseRange(std::string_view header, uint64_t size, ByteRange *range);

// Turns the answer to a GET or HEAD request into what its headers ask for: 304 when the caller has this content, 206
// with a part of the file, 416. The answer's ETag and Last-Modified say what it is. A second call changes nothing.
void applyConditions(const Request &request, Response &response);

} // namespace velmora::server::http
