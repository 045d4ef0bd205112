#pragma once

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What the service and the program that reads media files say to each other, over one stream socket. A request is one
// Request with the file's descriptor beside it, and that of the file to write where there is one; an answer is an
// AnswerHead and so many bytes of fields. Both programs are of one build, so numbers are in the machine's order. The
// service takes every answer for hostile.
namespace velmora::media {

// Counts up when tags are read differently: files are then read again.
constexpr int workerVersion = 3;

enum class Operation : uint32_t {
    Tags = 1,  // container, duration, tags, print of the sound
    Picture,   // the front picture inside an audio file, as a small JPEG
    Cover,     // the same of a picture file
    Analysis,  // loudness and descriptor
    Transcode, // the sound as FLAC into a second descriptor; velmora-media-formats only
};

// The argument that lets velmora-media-formats write the file that it is given.
constexpr const char *transcodingRole = "transcode";

struct Request {
    uint32_t operation = 0;
    uint32_t sequence = 0;  // comes back with the answer
    uint64_t mostBytes = 0; // that may be written
    uint64_t folder = 0;    // files with the same number lie in one folder; 0: the file stands alone
};

enum class Verdict : uint32_t {
    Done = 1,
    Refused, // the file cannot be used; Key::Problem says why
    NoRoom,  // what was to be written could not be, which is no fault of the file
};

struct AnswerHead {
    uint32_t sequence = 0;
    uint32_t verdict = 0;
    uint32_t length = 0; // of the fields that follow
};

enum class Key : uint16_t {
    Problem = 1,
    Container, // a Container by its name
    Seconds,
    Bitrate, // bits a second
    Rate,    // samples a second
    Channels,
    IsLossless, // 0 or 1
    HasPicture, // 0 or 1
    IsGuess,    // 0 or 1: the character set of its texts was guessed
    SoundPrint, // 17 bytes: equal for files whose coded sound is equal, whatever their tags say
    Tag,        // NAME=value, UTF-8; repeated
    Jpeg,
    Loudness,      // LUFS
    LoudnessRange, // LU
    Peak,          // highest sample, 1 is full scale
    Tempo,         // beats a minute; missing when the beat is not clear
    IsSpeechLike,  // 0 or 1
    Bytes,         // how many were written
    Numbers,       // the descriptor, as floats; missing when there is too little sound
};

constexpr size_t mostAnswerBytes = 256 * 1024;
constexpr size_t mostFields = 200;
constexpr size_t mostTextBytes = 4096;

struct Field {
    Key key{};
    std::string bytes;
};

class FieldWriter {
public:
    void bytes(Key key, std::string_view value)
    {
        const auto number = static_cast<uint16_t>(key);
        const auto length = static_cast<uint32_t>(value.size());
        m_bytes.append(reinterpret_cast<const char *>(&number), sizeof number);
        m_bytes.append(reinterpret_cast<const char *>(&length), sizeof length);
        m_bytes.append(value);
        ++m_count;
    }
    void number(Key key, double value) { bytes(key, {reinterpret_cast<const char *>(&value), sizeof value}); }
    size_t count() const { return m_count; }
    size_t size() const { return m_bytes.size(); }
    const std::string &all() const { return m_bytes; }
    void clear()
    {
        m_bytes.clear();
        m_count = 0;
    }

private:
    std::string m_bytes;
    size_t m_count = 0;
};

// Nothing unless the bytes are whole fields within the limits.
inline std::optional<std::vector<Field>> readFields(std::string_view bytes)
{
    std::vector<Field> fields;
    while (!bytes.empty()) {
        uint16_t key = 0;
        uint32_t length = 0;
        if (bytes.size() < sizeof key + sizeof length || fields.size() == mostFields)
            return std::nullopt;
        std::memcpy(&key, bytes.data(), sizeof key);
        std::memcpy(&length, bytes.data() + sizeof key, sizeof length);
        bytes.remove_prefix(sizeof key + sizeof length);
        if (length > bytes.size())
            return std::nullopt;
        fields.push_back({static_cast<Key>(key), std::string(bytes.substr(0, length))});
        bytes.remove_prefix(length);
    }
    return fields;
}

} // namespace velmora::media
