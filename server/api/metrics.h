#pragma once

#include "server/http/server.h"

#include <prometheus/counter.h>
#include <prometheus/family.h>
#include <prometheus/histogram.h>
#include <prometheus/registry.h>

#include <chrono>
#include <string>

namespace velmora::server {

class StationService;

// What the service has answered since its start, for a monitoring system. Any thread.
class Metrics {
public:
    Metrics();

    // An answer: a function's code, or the HTTP status of pages and media. `function` is one of a fixed set of names.
    void note(const std::string &function, int code, std::chrono::steady_clock::duration taken);
    // An answer that refused the caller for having asked too often.
    void noteThrottled(const std::string &function);
    // Everything in the Prometheus text format, with what the service and its HTTP server hold at this moment. No
    // names of people, stations or files.
    std::string text(StationService &service, const http::Load &load);

private:
    prometheus::Registry m_registry;
    prometheus::Family<prometheus::Counter> &m_answers;
    prometheus::Family<prometheus::Histogram> &m_seconds;
    prometheus::Family<prometheus::Counter> &m_throttled;
};

} // namespace velmora::server
