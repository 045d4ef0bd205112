#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace velmora::server {

// Writes samples of one channel to a file, with libav. The extension selects the container, unless it is named; tags
// have libav's names. The test fails when there is no such encoder.
void writeSoundFile(const std::filesystem::path &file, const char *encoder, int rate, const std::vector<float> &samples,
                    const std::vector<std::pair<std::string, std::string>> &tags = {});
// An APE file with so many seconds of silence: a few bytes for every seven seconds.
std::string silentApe(double seconds);

} // namespace velmora::server
