#pragma once

#include "server/media/descriptorlayout.h"
#include "server/media/wire.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

// What the worker found out about a file, checked: numbers are finite and in range, texts are UTF-8 without control
// characters. Pure functions.
namespace velmora::media {

struct MediaTags {
    std::string container;
    double seconds = 0;
    int bitrate = 0; // bits a second
    int rate = 0;    // samples a second
    int channels = 0;
    bool isLossless = false;
    bool hasPicture = false;
    bool isGuess = false; // read again after the other files of its folder, its texts may become right
    std::string soundPrint;
    std::vector<std::pair<std::string, std::string>> tags; // names in capitals; a name may come several times

    std::string first(const char *name) const; // empty when there is none
    std::vector<std::string> all(const char *name) const;
};

struct MediaAnalysis {
    double seconds = 0;
    std::optional<double> loudness; // LUFS; nothing for silence
    double peak = 0;                // 1 is full scale
    int tempo = 0;                  // beats a minute, 0 when the beat is not clear
    bool isSpeechLike = false;
    std::optional<Descriptor> numbers;
};

// Nothing when the answer is not to be believed.
std::optional<MediaTags> tagsOf(const std::vector<Field> &fields);
std::optional<MediaAnalysis> analysisOf(const std::vector<Field> &fields);
std::optional<std::string> jpegOf(const std::vector<Field> &fields);
std::optional<uint64_t> writtenBytesOf(const std::vector<Field> &fields);
std::string problemOf(const std::vector<Field> &fields);

// Well-formed UTF-8 without surrogates.
bool isWellFormed(std::string_view text);

} // namespace velmora::media
