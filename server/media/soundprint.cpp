// A print of the coded sound that new tags do not change: samples of the payload's beginning, middle and end, and its
// length.
#include "server/media/reading.h"

#include <algorithm>
#include <sys/stat.h>
#include <unistd.h>

#define XXH_INLINE_ALL
#include <xxhash.h>

namespace velmora::media {

namespace {

constexpr size_t sampleBytes = 16 * 1024;
constexpr int64_t oggTailBytes = 128 * 1024;
constexpr int mostBlocks = 4096; // pages, chunks or metadata blocks looked at before the sound

struct Extent {
    int64_t begin = 0;
    int64_t end = 0;
};

class Bytes {
public:
    explicit Bytes(int file)
        : m_file(file)
    {
        struct stat status {};
        if (::fstat(file, &status) == 0)
            m_size = status.st_size;
    }
    int64_t size() const { return m_size; }
    std::string at(int64_t offset, size_t count) const
    {
        std::string bytes(count, '\0');
        const ssize_t got = offset < 0 ? 0 : ::pread(m_file, bytes.data(), count, offset);
        bytes.resize(got > 0 ? static_cast<size_t>(got) : 0);
        return bytes;
    }

private:
    int m_file;
    int64_t m_size = 0;
};

uint32_t byteAt(std::string_view bytes, size_t index)
{
    return index < bytes.size() ? static_cast<unsigned char>(bytes[index]) : 0;
}

uint32_t bigEndian(std::string_view bytes, size_t at)
{
    return byteAt(bytes, at) << 24 | byteAt(bytes, at + 1) << 16 | byteAt(bytes, at + 2) << 8 | byteAt(bytes, at + 3);
}

uint32_t littleEndian(std::string_view bytes, size_t at)
{
    return byteAt(bytes, at + 3) << 24 | byteAt(bytes, at + 2) << 16 | byteAt(bytes, at + 1) << 8 | byteAt(bytes, at);
}

// What ID3v2 at the beginning and ID3v1 or APE at the end leave over.
Extent withoutOuterTags(const Bytes &file)
{
    Extent extent{0, file.size()};
    for (int i = 0; i < 8; ++i) {
        const std::string head = file.at(extent.begin, 10);
        if (!head.starts_with("ID3") || head.size() < 10)
            break;
        int64_t length = 10;
        for (size_t byte = 6; byte < 10; ++byte)
            length += int64_t(byteAt(head, byte) & 0x7f) << (7 * (9 - byte));
        if (byteAt(head, 5) & 0x10)
            length += 10;
        extent.begin += length;
    }
    if (file.at(extent.end - 128, 3) == "TAG")
        extent.end -= 128;
    const std::string foot = file.at(extent.end - 32, 32);
    if (foot.starts_with("APETAGEX"))
        extent.end -= int64_t(littleEndian(foot, 12)) + (littleEndian(foot, 20) & 0x80000000u ? 32 : 0);
    return extent;
}

Extent flacFrames(const Bytes &file)
{
    Extent extent = withoutOuterTags(file);
    if (file.at(extent.begin, 4) != "fLaC")
        return extent;
    int64_t at = extent.begin + 4;
    for (int i = 0; i < mostBlocks; ++i) {
        const std::string head = file.at(at, 4);
        if (head.size() < 4)
            break;
        at += 4 + int64_t(bigEndian(head, 0) & 0xffffff);
        if (byteAt(head, 0) & 0x80)
            break;
    }
    extent.begin = at;
    return extent;
}

// The chunk of this name in a RIFF, AIFF or MP4 file; MP4 atoms count their own head and may have 64-bit lengths.
Extent chunk(const Bytes &file, int64_t at, std::string_view name, bool isLittle, bool isAtom)
{
    for (int i = 0; i < mostBlocks && at + 8 <= file.size(); ++i) {
        const std::string head = file.at(at, 16);
        const size_t lengthAt = isAtom ? 0 : 4;
        int64_t length = isLittle ? littleEndian(head, lengthAt) : bigEndian(head, lengthAt);
        if (isAtom && length == 1)
            length = int64_t(uint64_t(bigEndian(head, 8)) << 32 | bigEndian(head, 12));
        else if (isAtom && length == 0)
            length = file.size() - at;
        if (!isAtom)
            length += 8;
        if (length < 8 || length > file.size())
            length = file.size() - at;
        if (std::string_view(head).substr(isAtom ? 4 : 0, 4) == name)
            return {at + 8, std::min(at + length, file.size())};
        at += length + (!isAtom && (length & 1));
    }
    return {};
}

void mix(XXH3_state_t &state, const Bytes &file, int64_t offset, size_t count)
{
    const std::string bytes = file.at(offset, count);
    XXH3_128bits_update(&state, bytes.data(), bytes.size());
}

// Pages without their heads: tagging renumbers pages and so changes their check sums.
void mixPages(XXH3_state_t &state, std::string_view bytes, int most)
{
    for (size_t at = bytes.find("OggS"); at != std::string_view::npos && most-- > 0; at = bytes.find("OggS", at + 4)) {
        const size_t segments = byteAt(bytes, at + 26);
        size_t length = 0;
        for (size_t i = 0; i < segments; ++i)
            length += byteAt(bytes, at + 27 + i);
        const size_t body = at + 27 + segments;
        if (body + length > bytes.size())
            return;
        XXH3_128bits_update(&state, bytes.data() + at + 6, 8); // position in samples
        XXH3_128bits_update(&state, bytes.data() + body, length);
    }
}

bool mixOgg(XXH3_state_t &state, const Bytes &file)
{
    int64_t at = 0;
    for (int i = 0; i < mostBlocks; ++i) {
        const std::string head = file.at(at, 27 + 255);
        if (!head.starts_with("OggS") || head.size() < 27)
            return false;
        const bool isSound = (littleEndian(head, 6) != 0 || littleEndian(head, 10) != 0) &&
                             !(littleEndian(head, 6) == 0xffffffffu && littleEndian(head, 10) == 0xffffffffu);
        if (isSound)
            break;
        const size_t segments = byteAt(head, 26);
        int64_t length = 27 + int64_t(segments);
        for (size_t s = 0; s < segments; ++s)
            length += byteAt(head, 27 + s);
        at += length;
    }
    const int64_t length = file.size() - at;
    XXH3_128bits_update(&state, &length, sizeof length);
    mixPages(state, file.at(at, 4 * sampleBytes), 3);
    const int64_t tail = std::max(at, file.size() - oggTailBytes);
    mixPages(state, file.at(tail, static_cast<size_t>(file.size() - tail)), 64);
    return true;
}

} // namespace

std::string soundPrint(int descriptor, std::string_view container)
{
    const Bytes file(descriptor);
    XXH3_state_t state;
    XXH3_128bits_reset(&state);
    char kind = 's';
    if (container.starts_with("ogg")) {
        kind = 'o';
        if (!mixOgg(state, file))
            return {};
    } else {
        Extent extent = withoutOuterTags(file);
        if (container == "flac")
            extent = flacFrames(file);
        else if (container == "wav")
            extent = chunk(file, 12, "data", true, false);
        else if (container == "aiff")
            extent = chunk(file, 12, "SSND", false, false);
        else if (container == "mp4")
            extent = chunk(file, 0, "mdat", false, true);
        else if (container == "asf")
            extent.begin = int64_t(littleEndian(file.at(16, 4), 0));
        const int64_t length = extent.end - extent.begin;
        if (length <= 0)
            return {};
        XXH3_128bits_update(&state, &length, sizeof length);
        const auto count = static_cast<size_t>(std::min<int64_t>(length, sampleBytes));
        mix(state, file, extent.begin, count);
        mix(state, file, extent.begin + (length - static_cast<int64_t>(count)) / 2, count);
        mix(state, file, extent.end - static_cast<int64_t>(count), count);
    }
    const XXH128_hash_t hash = XXH3_128bits_digest(&state);
    std::string print(1, kind);
    print.append(reinterpret_cast<const char *>(&hash), sizeof hash);
    return print;
}

} // namespace velmora::media
