// What a file says of itself.
#include "server/media/reading.h"
#include "server/media/tagfile.h"

#include <audioproperties.h>
#include <flacproperties.h>
#include <mp4file.h>
#include <mp4properties.h>
#include <tpropertymap.h>
#include <wavpackproperties.h>

#include <algorithm>
#include <array>

namespace velmora::media {

namespace {

// Everything else (words, comments, identifiers) is nothing that stations use.
constexpr std::array usedTags = {"TITLE",
                                 "ARTIST",
                                 "ARTISTS",
                                 "ALBUM",
                                 "ALBUMARTIST",
                                 "COMPOSER",
                                 "GENRE",
                                 "STYLE",
                                 "MOOD",
                                 "BPM",
                                 "DATE",
                                 "ORIGINALDATE",
                                 "TRACKNUMBER",
                                 "DISCNUMBER",
                                 "DISCSUBTITLE",
                                 "COMPILATION",
                                 "WORK",
                                 "MOVEMENTNAME",
                                 "MOVEMENTNUMBER",
                                 "MOVEMENT",
                                 "GROUPING",
                                 "CONTENTGROUP",
                                 "ITUNESADVISORY",
                                 "PARENTALRATING",
                                 "REPLAYGAIN_TRACK_GAIN",
                                 "R128_TRACK_GAIN",
                                 "MEDIATYPE",
                                 "PODCAST",
                                 "REPLAYGAIN_TRACK_PEAK"};
constexpr unsigned mostValues = 12; // of one tag

// The text, at most so many bytes long, cut between characters.
std::string cut(std::string text)
{
    constexpr size_t most = mostTextBytes - 64;
    if (text.size() <= most)
        return text;
    size_t end = most;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xc0) == 0x80)
        --end;
    text.resize(end);
    return text;
}

bool isLossless(const TagFile &file)
{
    const std::string &container = file.container();
    if (container == "mp4") {
        const auto *properties = dynamic_cast<TagLib::MP4::Properties *>(file.file()->audioProperties());
        return properties && properties->codec() == TagLib::MP4::Properties::ALAC;
    }
    if (container == "wavpack") {
        const auto *properties = dynamic_cast<TagLib::WavPack::Properties *>(file.file()->audioProperties());
        return properties && properties->isLossless();
    }
    constexpr std::array lossless = {"flac", "ogg-flac", "wav", "aiff", "ape", "tta"};
    return std::find(lossless.begin(), lossless.end(), container) != lossless.end();
}

} // namespace

Verdict refused(FieldWriter &answer, std::string_view why)
{
    answer.clear();
    answer.bytes(Key::Problem, why);
    return Verdict::Refused;
}

Verdict readTags(int descriptor, FieldWriter &answer)
{
    const TagFile file(descriptor);
    if (file.container().empty())
        return refused(answer, "there is no sound of a known kind in it");
    const TagLib::AudioProperties *properties = file.file()->audioProperties();
    if (!properties || properties->sampleRate() <= 0 || properties->channels() <= 0)
        return refused(answer, "its sound cannot be read");
    answer.bytes(Key::Container, file.container());
    answer.number(Key::Seconds, properties->lengthInMilliseconds() / 1000.0);
    answer.number(Key::Bitrate, properties->bitrate() * 1000.0);
    answer.number(Key::Rate, properties->sampleRate());
    answer.number(Key::Channels, properties->channels());
    answer.number(Key::IsLossless, isLossless(file));
    answer.number(Key::HasPicture, file.hasPicture());
    answer.bytes(Key::SoundPrint, soundPrint(descriptor, file.container()));
    const TagLib::PropertyMap tags = file.file()->properties();
    for (const char *name : usedTags) {
        const auto found = tags.find(name);
        if (found == tags.end())
            continue;
        unsigned count = 0;
        for (const TagLib::String &value : found->second) {
            const std::string text = cut(value.to8Bit(true));
            if (text.empty() || ++count > mostValues || answer.count() >= mostFields - 1 ||
                answer.size() + text.size() > mostAnswerBytes / 2)
                continue;
            answer.bytes(Key::Tag, std::string(name) + "=" + text);
        }
    }
    return Verdict::Done;
}

} // namespace velmora::media
