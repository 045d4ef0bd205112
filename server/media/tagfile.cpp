#include "server/media/tagfile.h"

#include <aifffile.h>
#include <apefile.h>
#include <apetag.h>
#include <asffile.h>
#include <asfpicture.h>
#include <asftag.h>
#include <attachedpictureframe.h>
#include <flacfile.h>
#include <flacpicture.h>
#include <id3v2framefactory.h>
#include <id3v2tag.h>
#include <mp4coverart.h>
#include <mp4file.h>
#include <mp4tag.h>
#include <mpcfile.h>
#include <mpegfile.h>
#include <oggflacfile.h>
#include <opusfile.h>
#include <speexfile.h>
#include <trueaudiofile.h>
#include <vorbisfile.h>
#include <wavfile.h>
#include <wavpackfile.h>
#include <xiphcomment.h>

#include <algorithm>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora::media {

DescriptorStream::DescriptorStream(int file)
    : m_file(file)
{
    struct stat status {};
    if (::fstat(file, &status) == 0)
        m_length = static_cast<long>(status.st_size);
}

TagLib::ByteVector DescriptorStream::readBlock(unsigned long length)
{
    // A damaged head may claim any length; there is never more than the rest of the file.
    const long left = std::max(0L, m_length - m_at);
    const unsigned long count = std::min<unsigned long>(length, static_cast<unsigned long>(left));
    TagLib::ByteVector bytes(static_cast<unsigned>(count), 0);
    const ssize_t got = count == 0 ? 0 : ::pread(m_file, bytes.data(), count, m_at);
    bytes.resize(got > 0 ? static_cast<unsigned>(got) : 0);
    m_at += got > 0 ? got : 0;
    return bytes;
}

void DescriptorStream::seek(long offset, Position from)
{
    const long base = from == Beginning ? 0 : from == Current ? m_at : m_length;
    m_at = std::max(0L, base + offset);
}

TagFile::TagFile(int file)
    : m_stream(file)
{
    constexpr bool readsProperties = true;
    constexpr auto style = TagLib::AudioProperties::Average;
    const auto take = [&](const char *container, auto made) {
        m_file = std::move(made);
        m_container = m_file->isValid() ? container : "";
    };
    // The strict ones first: MPEG sound has no magic number worth the name, so it is looked for last.
    auto *const stream = static_cast<TagLib::IOStream *>(&m_stream);
    auto *const factory = TagLib::ID3v2::FrameFactory::instance();
    if (TagLib::Ogg::Opus::File::isSupported(stream))
        take("ogg-opus", std::make_unique<TagLib::Ogg::Opus::File>(stream, readsProperties, style));
    else if (TagLib::Ogg::Vorbis::File::isSupported(stream))
        take("ogg-vorbis", std::make_unique<TagLib::Ogg::Vorbis::File>(stream, readsProperties, style));
    else if (TagLib::Ogg::FLAC::File::isSupported(stream))
        take("ogg-flac", std::make_unique<TagLib::Ogg::FLAC::File>(stream, readsProperties, style));
    else if (TagLib::Ogg::Speex::File::isSupported(stream))
        take("ogg-speex", std::make_unique<TagLib::Ogg::Speex::File>(stream, readsProperties, style));
    else if (TagLib::FLAC::File::isSupported(stream))
        take("flac", std::make_unique<TagLib::FLAC::File>(stream, factory, readsProperties, style));
    else if (TagLib::RIFF::WAV::File::isSupported(stream))
        take("wav", std::make_unique<TagLib::RIFF::WAV::File>(stream, readsProperties, style));
    else if (TagLib::RIFF::AIFF::File::isSupported(stream))
        take("aiff", std::make_unique<TagLib::RIFF::AIFF::File>(stream, readsProperties, style));
    else if (TagLib::MP4::File::isSupported(stream))
        take("mp4", std::make_unique<TagLib::MP4::File>(stream, readsProperties, style));
    else if (TagLib::ASF::File::isSupported(stream))
        take("asf", std::make_unique<TagLib::ASF::File>(stream, readsProperties, style));
    else if (TagLib::WavPack::File::isSupported(stream))
        take("wavpack", std::make_unique<TagLib::WavPack::File>(stream, readsProperties, style));
    else if (TagLib::APE::File::isSupported(stream))
        take("ape", std::make_unique<TagLib::APE::File>(stream, readsProperties, style));
    else if (TagLib::MPC::File::isSupported(stream))
        take("mpc", std::make_unique<TagLib::MPC::File>(stream, readsProperties, style));
    else if (TagLib::TrueAudio::File::isSupported(stream))
        take("tta", std::make_unique<TagLib::TrueAudio::File>(stream, readsProperties, style));
    else if (TagLib::MPEG::File::isSupported(stream))
        take("mpeg", std::make_unique<TagLib::MPEG::File>(stream, factory, readsProperties, style));
}

template <typename Take>
void TagFile::eachPicture(Take take) const
{
    const auto text = [](const TagLib::ByteVector &bytes) { return std::string_view(bytes.data(), bytes.size()); };
    const auto ofId3 = [&](TagLib::ID3v2::Tag *tag) {
        if (!tag)
            return;
        for (auto *frame : tag->frameListMap()["APIC"]) {
            const auto *picture = dynamic_cast<TagLib::ID3v2::AttachedPictureFrame *>(frame);
            if (picture &&
                take(picture->type() == TagLib::ID3v2::AttachedPictureFrame::FrontCover, text(picture->picture())))
                return;
        }
    };
    const auto ofFlac = [&](const TagLib::List<TagLib::FLAC::Picture *> &pictures) {
        for (const TagLib::FLAC::Picture *picture : pictures) {
            if (take(picture->type() == TagLib::FLAC::Picture::FrontCover, text(picture->data())))
                return;
        }
    };
    const auto ofXiph = [&](TagLib::Ogg::XiphComment *tag) {
        if (tag)
            ofFlac(tag->pictureList());
    };
    const auto ofApe = [&](TagLib::APE::Tag *tag) {
        if (!tag)
            return;
        const auto found = tag->itemListMap().find("COVER ART (FRONT)");
        if (found == tag->itemListMap().end())
            return;
        // A file name in front, ended by a zero.
        const TagLib::ByteVector data = found->second.binaryData();
        const int end = data.find('\0');
        if (end >= 0)
            take(true, text(data).substr(static_cast<size_t>(end) + 1));
    };
    if (auto *mpeg = dynamic_cast<TagLib::MPEG::File *>(m_file.get())) {
        ofId3(mpeg->ID3v2Tag());
    } else if (auto *flac = dynamic_cast<TagLib::FLAC::File *>(m_file.get())) {
        ofFlac(flac->pictureList());
    } else if (auto *vorbis = dynamic_cast<TagLib::Ogg::Vorbis::File *>(m_file.get())) {
        ofXiph(vorbis->tag());
    } else if (auto *opus = dynamic_cast<TagLib::Ogg::Opus::File *>(m_file.get())) {
        ofXiph(opus->tag());
    } else if (auto *oggFlac = dynamic_cast<TagLib::Ogg::FLAC::File *>(m_file.get())) {
        ofXiph(oggFlac->tag());
    } else if (auto *wav = dynamic_cast<TagLib::RIFF::WAV::File *>(m_file.get())) {
        ofId3(wav->ID3v2Tag());
    } else if (auto *aiff = dynamic_cast<TagLib::RIFF::AIFF::File *>(m_file.get())) {
        ofId3(aiff->tag());
    } else if (auto *wavPack = dynamic_cast<TagLib::WavPack::File *>(m_file.get())) {
        ofApe(wavPack->APETag());
    } else if (auto *ape = dynamic_cast<TagLib::APE::File *>(m_file.get())) {
        ofApe(ape->APETag());
    } else if (auto *mp4 = dynamic_cast<TagLib::MP4::File *>(m_file.get())) {
        if (!mp4->tag() || !mp4->tag()->contains("covr"))
            return;
        const TagLib::MP4::CoverArtList covers = mp4->tag()->item("covr").toCoverArtList();
        for (const TagLib::MP4::CoverArt &cover : covers) {
            if (take(true, text(cover.data())))
                return;
        }
    } else if (auto *asf = dynamic_cast<TagLib::ASF::File *>(m_file.get())) {
        if (!asf->tag() || !asf->tag()->contains("WM/Picture"))
            return;
        const TagLib::ASF::AttributeList attributes = asf->tag()->attribute("WM/Picture");
        for (const TagLib::ASF::Attribute &attribute : attributes) {
            const TagLib::ASF::Picture picture = attribute.toPicture();
            if (picture.isValid() && take(picture.type() == TagLib::ASF::Picture::FrontCover, text(picture.picture())))
                return;
        }
    }
}

std::string TagFile::picture() const
{
    std::string best;
    eachPicture([&](bool isFront, std::string_view bytes) {
        if (best.empty() || isFront)
            best = bytes;
        return isFront;
    });
    return best;
}

bool TagFile::hasPicture() const
{
    bool has = false;
    eachPicture([&](bool, std::string_view bytes) { return has = !bytes.empty(); });
    return has;
}

} // namespace velmora::media
