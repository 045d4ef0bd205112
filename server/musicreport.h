#pragma once

#include <string>

namespace velmora::server {

class StationService;

// What the last scans found, for the owner, in lines: folders, what plays, what does not and why, duplicates, styles,
// and how far tags and sound agree. Compares all music with all music: takes seconds for thousands of tracks.
std::string musicReport(StationService &service);

} // namespace velmora::server
