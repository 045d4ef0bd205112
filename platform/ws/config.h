#pragma once

#include "retry.h"

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

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

// The file that VELMORA_WS_CONF names; else the one that a package of this machine brings, then the owner's.
std::vector<std::string> configurationFiles();
// Reads the files, of which the last wins, then the environment, which wins over all. Reports unusable settings on
// standard error.
Config loadConfig(const std::vector<std::string> &files = configurationFiles());

} // namespace velmora::ws
