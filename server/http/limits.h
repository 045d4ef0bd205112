#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace velmora::server::http {

// What one connection, one address and all together may take. Every connection is bound by all of them.
struct Limits {
    size_t connections = 16'384;       // fewer where the system allows fewer descriptors
    size_t connectionsOfAddress = 256; // of an IPv4 address or an IPv6 /64; trusted proxies are exempt
    size_t requestLine = 4 * 1024;     // bytes
    size_t headerBytes = 16 * 1024;    // request line and headers; also of what waits behind a request
    size_t headerCount = 64;
    size_t bodies = 64 * 1024 * 1024; // bytes of all bodies that are being received or answered
    size_t workers = 24;              // threads that answer functions and pages
    size_t fileWorkers = 8;           // threads that open files, and as many that read ahead in them
    size_t queued = 512;              // requests that wait for a thread, in each lane; beyond it 503
    size_t queuedOfAddress = 128;     // of them, of one IPv4 address or IPv6 /64
    size_t probeWorkers = 4;          // threads that say how the service is
    size_t passwordWorkers = 2;       // threads that hash passwords; each hash takes 64 MB
    size_t passwordsOfAddress = 24;   // requests that wait for one of these, of one address

    std::chrono::milliseconds headerTime{10'000}; // from the first byte (a new connection: from the start) to the end
    std::chrono::milliseconds bodyTime{20'000};   // for the whole body
    std::chrono::milliseconds idleTime{75'000};   // between two requests
    std::chrono::milliseconds answerTime{30'000}; // for reading an answer that is no file
    std::chrono::milliseconds lingerTime{5'000};  // for what still arrives after the last answer
    std::chrono::milliseconds endTime{5'000};     // for answers in preparation when the server stops
    // A paused radio stops reading its stream. It may do so for this long; in every such time at least so many bytes
    // must have been taken. The radio continues an ended stream with a range request.
    std::chrono::milliseconds streamTime{600'000};
    uint64_t streamBytes = 64 * 1024;
};

} // namespace velmora::server::http
