// What a file says of itself.
#include "server/media/charsets.h"
#include "server/media/reading.h"
#include "server/media/tagfile.h"

#include <aifffile.h>
#include <audioproperties.h>
#include <commentsframe.h>
#include <flacproperties.h>
#include <id3v1tag.h>
#include <id3v2tag.h>
#include <mp4file.h>
#include <mp4properties.h>
#include <mpegfile.h>
#include <textidentificationframe.h>
#include <tpropertymap.h>
#include <trueaudiofile.h>
#include <unsynchronizedlyricsframe.h>
#include <wavfile.h>
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

// Tags whose texts may be called Latin-1, which is what they are in the fewest countries.
struct OldTags {
    TagLib::ID3v2::Tag *second = nullptr;
    TagLib::ID3v1::Tag *first = nullptr;
};

OldTags oldTagsOf(TagLib::File *file)
{
    if (auto *mpeg = dynamic_cast<TagLib::MPEG::File *>(file))
        return {mpeg->ID3v2Tag(), mpeg->ID3v1Tag()};
    if (auto *wav = dynamic_cast<TagLib::RIFF::WAV::File *>(file))
        return {wav->ID3v2Tag(), nullptr};
    if (auto *aiff = dynamic_cast<TagLib::RIFF::AIFF::File *>(file))
        return {aiff->tag(), nullptr};
    if (auto *trueAudio = dynamic_cast<TagLib::TrueAudio::File *>(file))
        return {trueAudio->ID3v2Tag(), trueAudio->ID3v1Tag()};
    return {};
}

std::string bytesOf(const TagLib::String &text)
{
    const TagLib::ByteVector bytes = text.data(TagLib::String::Latin1);
    return {bytes.data(), bytes.size()};
}

// Reads anew, in memory, the texts that call themselves Latin-1 and are something else.
void mendTexts(TagLib::File *file, FolderCharset &folder)
{
    const OldTags tags = oldTagsOf(file);
    std::vector<TagLib::ID3v2::TextIdentificationFrame *> frames;
    std::vector<std::string> texts;
    const auto note = [&](const TagLib::String &text) {
        if (!text.isEmpty())
            texts.push_back(bytesOf(text));
    };
    if (tags.second) {
        for (auto *frame : tags.second->frameList()) {
            if (auto *text = dynamic_cast<TagLib::ID3v2::TextIdentificationFrame *>(frame);
                text && text->textEncoding() == TagLib::String::Latin1) {
                frames.push_back(text);
                note(text->toString());
            } else if (auto *comment = dynamic_cast<TagLib::ID3v2::CommentsFrame *>(frame);
                       comment && comment->textEncoding() == TagLib::String::Latin1) {
                note(comment->text());
            } else if (auto *lyrics = dynamic_cast<TagLib::ID3v2::UnsynchronizedLyricsFrame *>(frame);
                       lyrics && lyrics->textEncoding() == TagLib::String::Latin1) {
                note(lyrics->text());
            }
        }
    }
    if (tags.first) {
        for (const TagLib::String &text : {tags.first->title(), tags.first->artist(), tags.first->album()})
            note(text);
    }
    const std::optional<std::string> charset = folder.of(texts);
    if (!charset)
        return;
    const auto mended = [&](const TagLib::String &text) {
        const std::optional<std::string> read = toUtf8(*charset, bytesOf(text));
        return read ? TagLib::String(*read, TagLib::String::UTF8) : text;
    };
    for (auto *frame : frames) {
        TagLib::StringList fields;
        for (const TagLib::String &field : frame->fieldList())
            fields.append(mended(field));
        frame->setTextEncoding(TagLib::String::UTF8);
        frame->setText(fields);
    }
    if (tags.first) {
        tags.first->setTitle(mended(tags.first->title()));
        tags.first->setArtist(mended(tags.first->artist()));
        tags.first->setAlbum(mended(tags.first->album()));
    }
}

} // namespace

Verdict readTags(int descriptor, FolderCharset &folder, FieldWriter &answer)
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
    mendTexts(file.file(), folder);
    answer.number(Key::IsGuess, folder.isGuess());
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
