#pragma once

#include <string>

namespace faults {

// What a listener's network and service can do wrong. Plain data: see scenarios.cpp.
struct Fault {
    enum class Kind {
        // instead of the answer, or within it
        Delay,         // the answer comes `amount` ms late
        Slow,          // the body comes at `amount` bytes a second
        Hang,          // nothing comes after `amount` bytes of the body; -1: not even a header
        Close,         // the connection is ended after `amount` bytes of the body; -1: before the answer
        Reset,         // the same, by a reset
        Status,        // an error page with the HTTP status `amount`
        Html,          // a page of HTML with status 200
        Garbage,       // random bytes as the body, with the right type
        Noise,         // bytes that are no HTTP
        Empty,         // a body without bytes
        Code,          // the service's own answer `amount`, for instance 5097
        Longer,        // Content-Length states `amount` more bytes than come
        Shorter,       // Content-Length states only `amount` bytes
        NoRanges,      // a range is answered by the whole file
        RangesRefused, // a range is answered by status 416
        // of everything, whatever the path
        Outage,     // no byte passes; connections go on afterwards
        DeadOutage, // no byte passes; connections of before never go on
        Down        // connections are reset, new ones refused
    };

    Kind kind = Kind::Delay;
    std::string path = {};  // requests with this in their path; empty: all
    int amount = -1;        // see Kind
    double from = 0;        // seconds after the faults began, or after the request that `since` names
    double lasts = 0;       // seconds; 0: until `times` is used up, or for ever
    int times = 0;          // as many requests; 0: all
    std::string since = {}; // waits for a request with this in its path
    int retryAfter = 0;     // seconds that Status and Code name
};

} // namespace faults
