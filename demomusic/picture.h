#pragma once

#include <filesystem>
#include <string>

namespace velmora::demo {

// Write a PNG of 480 by 480. False, with no file left behind, if there is no such picture or the file cannot be
// written.
bool drawCover(int album, const std::filesystem::path &pngFile);              // index in the catalogue's album table
bool drawSign(const std::string &adId, const std::filesystem::path &pngFile); // picture of an advertisement

} // namespace velmora::demo
