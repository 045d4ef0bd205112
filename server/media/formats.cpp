#include "server/media/formats.h"

#include "server/media/sounddecoder.h"
#include "server/media/soundmeter.h"

#include <array>

extern "C" {
#include <libavformat/avformat.h>
}

namespace velmora::media {

namespace {

struct TagName {
    const char *name;  // as libav has it
    const char *usual; // as everybody else has it
};
constexpr std::array tagNames = {
    TagName{"title", "TITLE"},       TagName{"artist", "ARTIST"},     TagName{"album", "ALBUM"},
    TagName{"genre", "GENRE"},       TagName{"composer", "COMPOSER"}, TagName{"album_artist", "ALBUMARTIST"},
    TagName{"track", "TRACKNUMBER"}, TagName{"disc", "DISCNUMBER"},   TagName{"date", "DATE"},
};

const char *containerOf(std::string_view format)
{
    constexpr std::array<std::pair<const char *, const char *>, 3> names = {
        {{"aac", "adts"}, {"dsf", "dsf"}, {"iff", "dff"}}};
    for (const auto &[name, container] : names) {
        if (format == name)
            return container;
    }
    return nullptr;
}

} // namespace

Verdict readFormatTags(int file, FieldWriter &answer)
{
    SoundDecoder sound(file, SoundDecoder::Samples::Float);
    const AVFormatContext &context = sound.context();
    const char *container = containerOf(context.iformat->name);
    if (!container)
        return refused(answer, "there is no sound of a known kind in it");
    if (sound.read().empty()) // noise passes for raw AAC until it is decoded
        return refused(answer, "its sound cannot be decoded");
    answer.bytes(Key::Container, container);
    answer.number(Key::Seconds, context.duration > 0 ? static_cast<double>(context.duration) / AV_TIME_BASE : 0);
    answer.number(Key::Bitrate, context.bit_rate > 0 ? static_cast<double>(context.bit_rate) : 0);
    answer.number(Key::Rate, sound.rate());
    answer.number(Key::Channels, sound.channels());
    answer.number(Key::IsLossless, sound.isLossless());
    answer.bytes(Key::SoundPrint, soundPrint(file, container));
    for (const TagName &tag : tagNames) {
        const AVDictionaryEntry *entry = av_dict_get(context.metadata, tag.name, nullptr, 0);
        if (entry)
            answer.bytes(Key::Tag, (std::string(tag.usual) + "=" + entry->value).substr(0, mostTextBytes));
    }
    return Verdict::Done;
}

Verdict analyseFormat(int file, FieldWriter &answer)
{
    SoundDecoder sound(file, SoundDecoder::Samples::Float);
    SoundMeter meter(sound.channels(), sound.rate());
    std::vector<float> samples;
    for (std::span<const uint8_t> bytes = sound.read(); !bytes.empty(); bytes = sound.read()) {
        samples.resize(bytes.size() / sizeof(float));
        std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(float));
        meter.add(samples);
    }
    return meter.finish(answer);
}

} // namespace velmora::media
