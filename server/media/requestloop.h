#pragma once

#include "server/media/reading.h"

#include <functional>

namespace velmora::media {

// The descriptors that came with a request; closed after it.
struct Files {
    int read = -1;
    int write = -1; // -1: there is none
};

// Answers request after request until the service closes the socket; returns the status for the end of main. What
// `carryOut` throws refuses the file.
int serveRequests(const std::function<Verdict(const Request &, const Files &, FieldWriter &)> &carryOut);

} // namespace velmora::media
