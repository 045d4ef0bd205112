#pragma once

#include "retry.h"

#include <chrono>
#include <filesystem>
#include <string>

namespace velmora::ws {

struct Config {
    std::string server;             // as configured; one that is no service's address ends every request with -504
    std::string caFile;             // empty: the system's certificates
    std::filesystem::path stateDir; // empty: nothing can be kept
    std::chrono::milliseconds connectTimeout{10'000};
    std::chrono::milliseconds stallTimeout{20'000};   // without a byte, or with a few only
    std::chrono::milliseconds requestTimeout{60'000}; // from the start of a request to its end
    RetryLimits retry;
};

// Reads the configuration file, then the environment, which wins. Reports unusable settings on standard error.
Config loadConfig();

} // namespace velmora::ws
