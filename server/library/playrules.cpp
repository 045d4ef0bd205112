#include "server/library/playrules.h"

#include "server/catalogue/mediatypes.h"
#include "server/library/librarystore.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velmora::server {

namespace {

constexpr double targetLoudness = -18; // LUFS
constexpr double leastGain = -15;      // dB
constexpr double mostGain = 9;
// A lossless file is better than any other, then the bit rate decides.
constexpr int64_t losslessQuality = 1'000'000'000;

struct ContainerType {
    const char *container;
    const char *mediaType;
};
constexpr std::array containerTypes = {
    ContainerType{"mpeg", "audio/mpeg"},         ContainerType{"flac", "audio/flac"},
    ContainerType{"ogg-vorbis", "audio/ogg"},    ContainerType{"ogg-opus", "audio/ogg"},
    ContainerType{"ogg-flac", "audio/ogg"},      ContainerType{"wav", "audio/wav"},
    ContainerType{"mp4", "audio/mp4"},           ContainerType{"adts", "audio/aac"},
    ContainerType{"asf", "audio/x-ms-wma"},      ContainerType{"ape", "audio/x-ape"},
    ContainerType{"wavpack", "audio/x-wavpack"}, ContainerType{"mpc", "audio/x-musepack"},
    ContainerType{"tta", "audio/x-tta"},         ContainerType{"aiff", "audio/aiff"},
    ContainerType{"ogg-speex", "audio/x-speex"}, ContainerType{"dsf", "audio/x-dsf"},
    ContainerType{"dff", "audio/x-dff"},
};

} // namespace

const char *mediaTypeOf(const std::string &container)
{
    for (const ContainerType &type : containerTypes) {
        if (container == type.container)
            return type.mediaType;
    }
    return "";
}

std::string ruleFor(const ReadFile &file, bool hasFormats)
{
    constexpr double longest = 15 * 60;
    constexpr double longestClassical = 30 * 60;
    if (!file.leftOut.empty())
        return file.leftOut;
    const std::string_view type = mediaTypeOf(file.tags.container);
    if (type.empty() || (!hasFormats && !isPlayedByRadios(type)))
        return leftout::kind;
    if (file.facts.isSpeech)
        return leftout::speech;
    // An unknown duration is settled by listening.
    if (file.tags.seconds > 0 && file.tags.seconds < shortestSeconds)
        return leftout::shortPiece;
    if (file.tags.seconds > (file.facts.isClassical ? longestClassical : longest))
        return leftout::longPiece;
    return {};
}

const char *kindFor(const std::string &leftOut)
{
    for (const char *kind : {leftout::speech, leftout::shortPiece, leftout::longPiece}) {
        if (leftOut == kind)
            return kind;
    }
    return "music";
}

std::optional<double> taggedGain(const media::MediaTags &tags)
{
    const auto number = [](const std::string &text) -> std::optional<double> {
        char *end = nullptr;
        const double value = std::strtod(text.c_str(), &end);
        return end != text.c_str() && std::isfinite(value) && std::abs(value) < 40'000 ? std::optional(value)
                                                                                       : std::nullopt;
    };
    std::optional<double> gain;
    if (const auto replay = number(tags.first("REPLAYGAIN_TRACK_GAIN")))
        gain = *replay; // its reference is -18 LUFS too
    else if (const auto r128 = number(tags.first("R128_TRACK_GAIN")))
        gain = *r128 / 256 + 5; // 1/256 dB to -23 LUFS
    return gain ? std::optional(std::clamp(*gain, leastGain, mostGain)) : std::nullopt;
}

int64_t qualityOf(const media::MediaTags &tags)
{
    // Of two that are equal the one that radios play as it is.
    return 2 * (tags.isLossless ? losslessQuality + tags.rate : tags.bitrate) +
           isPlayedByRadios(mediaTypeOf(tags.container));
}

double gainFor(double loudness)
{
    return std::clamp(targetLoudness - loudness, leastGain, mostGain);
}

} // namespace velmora::server
