#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace velmora::server {

// Samples of one channel as a file, by libav. The container is that of the extension, unless it is named; tags have
// libav's names. The test fails when there is no such encoder.
void writeSoundFile(const std::filesystem::path &file, const char *encoder, int rate, const std::vector<float> &samples,
                    const std::vector<std::pair<std::string, std::string>> &tags = {});
// So many seconds of silence as APE: a few bytes for every seven seconds.
std::string silentApe(double seconds);

} // namespace velmora::server
