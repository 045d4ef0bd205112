#pragma once

#include "oscillator.h"

#include <filesystem>
#include <string>
#include <utility>

namespace velmora::demo {

using FlacTags = std::vector<std::pair<std::string, std::string>>; // ASCII name, UTF-8 text

// Writes two equally long channels as 16-bit FLAC with the total length in its header. Samples beyond full scale are
// clipped. False, with no file left behind, when the file could not be written.
bool writeFlac(const Buffer &left, const Buffer &right, const FlacTags &tags, const std::filesystem::path &file);

} // namespace velmora::demo
