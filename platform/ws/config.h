#pragma once

#include <chrono>
#include <filesystem>
#include <string>

namespace velmora::ws {

struct Config {
    std::string server;             // without a trailing slash; empty: none is configured, requests end with -504
    std::string caFile;             // empty: the system's certificates
    std::filesystem::path stateDir; // empty: nothing can be kept
    std::chrono::milliseconds connectTimeout{10'000};
    std::chrono::milliseconds stallTimeout{20'000};   // without a single byte
    std::chrono::milliseconds requestTimeout{60'000}; // a whole request, however slowly it drips
};

// The configuration file, then the environment on top. What cannot be used is named on standard error and left out.
Config loadConfig();

} // namespace velmora::ws
