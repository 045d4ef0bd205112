#include "server/media/mediafacts.h"

#include <algorithm>
#include <cmath>

namespace velmora::media {

namespace {

// The number of this key. False when it is there and cannot be believed; `value` is left alone when it is not there.
bool readNumber(const std::vector<Field> &fields, Key key, double lowest, double highest, double *value)
{
    for (const Field &field : fields) {
        if (field.key != key)
            continue;
        double read = 0;
        if (field.bytes.size() != sizeof read)
            return false;
        std::memcpy(&read, field.bytes.data(), sizeof read);
        if (!std::isfinite(read) || read < lowest || read > highest)
            return false;
        *value = read;
        return true;
    }
    return true;
}

const Field *find(const std::vector<Field> &fields, Key key)
{
    const auto found = std::find_if(fields.begin(), fields.end(), [&](const Field &field) { return field.key == key; });
    return found == fields.end() ? nullptr : &*found;
}

// Control characters become blanks; blanks at the ends go.
std::string cleaned(std::string_view text)
{
    std::string clean(text);
    std::replace_if(
        clean.begin(), clean.end(), [](unsigned char c) { return c < ' ' || c == 0x7f; }, ' ');
    const size_t begin = clean.find_first_not_of(' ');
    const size_t end = clean.find_last_not_of(' ');
    return begin == std::string::npos ? std::string() : clean.substr(begin, end - begin + 1);
}

} // namespace

bool isWellFormed(std::string_view text)
{
    for (size_t i = 0; i < text.size();) {
        const auto first = static_cast<unsigned char>(text[i]);
        const size_t length = first < 0x80                    ? 1
                              : first >= 0xc2 && first < 0xe0 ? 2
                              : first >= 0xe0 && first < 0xf0 ? 3
                              : first >= 0xf0 && first < 0xf5 ? 4
                                                              : 0;
        if (length == 0 || i + length > text.size())
            return false;
        uint32_t code = length == 1 ? first : first & (0x7fu >> length);
        for (size_t next = 1; next < length; ++next) {
            const auto byte = static_cast<unsigned char>(text[i + next]);
            if ((byte & 0xc0) != 0x80)
                return false;
            code = code << 6 | (byte & 0x3f);
        }
        constexpr uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
        if (code < smallest[length] || code > 0x10ffff || (code >= 0xd800 && code < 0xe000))
            return false;
        i += length;
    }
    return true;
}

std::string MediaTags::first(const char *name) const
{
    for (const auto &[key, value] : tags) {
        if (key == name)
            return value;
    }
    return {};
}

std::vector<std::string> MediaTags::all(const char *name) const
{
    std::vector<std::string> values;
    for (const auto &[key, value] : tags) {
        if (key == name)
            values.push_back(value);
    }
    return values;
}

std::optional<MediaTags> tagsOf(const std::vector<Field> &fields)
{
    constexpr double mostSeconds = 7 * 24 * 3600;
    double bitrate = 0;
    double rate = 0;
    double channels = 0;
    double isLossless = 0;
    double hasPicture = 0;
    double isGuess = 0;
    MediaTags tags;
    if (!readNumber(fields, Key::Seconds, 0, mostSeconds, &tags.seconds) ||
        !readNumber(fields, Key::Bitrate, 0, 1e9, &bitrate) || !readNumber(fields, Key::Rate, 1, 1e7, &rate) ||
        !readNumber(fields, Key::Channels, 1, 256, &channels) ||
        !readNumber(fields, Key::IsLossless, 0, 1, &isLossless) ||
        !readNumber(fields, Key::HasPicture, 0, 1, &hasPicture) || !readNumber(fields, Key::IsGuess, 0, 1, &isGuess))
        return std::nullopt;
    const Field *container = find(fields, Key::Container);
    const Field *print = find(fields, Key::SoundPrint);
    const auto isOfName = [](char c) { return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-'; };
    if (!container || container->bytes.empty() || container->bytes.size() > 16 ||
        !std::all_of(container->bytes.begin(), container->bytes.end(), isOfName) || (print && print->bytes.size() > 32))
        return std::nullopt;
    tags.container = container->bytes;
    tags.soundPrint = print ? print->bytes : std::string();
    tags.bitrate = static_cast<int>(bitrate);
    tags.rate = static_cast<int>(rate);
    tags.channels = static_cast<int>(channels);
    tags.isLossless = isLossless != 0;
    tags.hasPicture = hasPicture != 0;
    tags.isGuess = isGuess != 0;
    for (const Field &field : fields) {
        const size_t equals = field.bytes.find('=');
        if (field.key != Key::Tag || equals == std::string::npos || field.bytes.size() > mostTextBytes)
            continue;
        const std::string_view value = std::string_view(field.bytes).substr(equals + 1);
        if (!isWellFormed(value))
            continue;
        if (std::string text = cleaned(value); !text.empty())
            tags.tags.emplace_back(field.bytes.substr(0, equals), std::move(text));
    }
    return tags;
}

std::optional<MediaAnalysis> analysisOf(const std::vector<Field> &fields)
{
    constexpr double none = 1000;
    MediaAnalysis analysis;
    double loudness = none;
    double tempo = 0;
    double isSpeechLike = 0;
    if (!readNumber(fields, Key::Seconds, 0.001, 1e7, &analysis.seconds) ||
        !readNumber(fields, Key::Loudness, -100, 30, &loudness) ||
        !readNumber(fields, Key::Peak, 0, 8, &analysis.peak) || !readNumber(fields, Key::Tempo, 20, 400, &tempo) ||
        !readNumber(fields, Key::IsSpeechLike, 0, 1, &isSpeechLike))
        return std::nullopt;
    analysis.tempo = static_cast<int>(tempo);
    analysis.isSpeechLike = isSpeechLike != 0;
    if (loudness != none)
        analysis.loudness = loudness;
    if (const Field *numbers = find(fields, Key::Numbers)) {
        Descriptor descriptor{};
        if (numbers->bytes.size() != sizeof descriptor)
            return std::nullopt;
        std::memcpy(descriptor.data(), numbers->bytes.data(), sizeof descriptor);
        // Half floats end at 65504.
        if (!std::all_of(descriptor.begin(), descriptor.end(),
                         [](float value) { return std::isfinite(value) && std::abs(value) < 65000; }))
            return std::nullopt;
        analysis.numbers = descriptor;
    }
    return analysis;
}

std::optional<std::string> jpegOf(const std::vector<Field> &fields)
{
    const Field *jpeg = find(fields, Key::Jpeg);
    return jpeg && jpeg->bytes.starts_with("\xff\xd8\xff") ? std::optional(jpeg->bytes) : std::nullopt;
}

std::optional<uint64_t> writtenBytesOf(const std::vector<Field> &fields)
{
    double bytes = 0;
    const bool isRead = readNumber(fields, Key::Bytes, 1, 1e12, &bytes);
    return isRead && bytes > 0 ? std::optional(static_cast<uint64_t>(bytes)) : std::nullopt;
}

std::string problemOf(const std::vector<Field> &fields)
{
    const Field *problem = find(fields, Key::Problem);
    if (!problem || problem->bytes.size() > 200 || !isWellFormed(problem->bytes))
        return "it cannot be used";
    return cleaned(problem->bytes);
}

} // namespace velmora::media
