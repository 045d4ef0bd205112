#pragma once

#include <nlohmann/json.hpp>

namespace velmora::server {

class StationService;

// The answer of /health: whether the service is ready, how much it can play, and how far the library is. Counts of the
// library are at most some seconds old. No names of files or folders.
nlohmann::json healthOf(StationService &service);

} // namespace velmora::server
