#pragma once

#include <fileref.h>
#include <memory>
#include <string>
#include <tiostream.h>

namespace velmora::media {

// An open file for TagLib, which is never told a name and never writes.
class DescriptorStream : public TagLib::IOStream {
public:
    explicit DescriptorStream(int file);

    TagLib::FileName name() const override { return ""; }
    TagLib::ByteVector readBlock(unsigned long length) override;
    void writeBlock(const TagLib::ByteVector &) override {}
    void insert(const TagLib::ByteVector &, unsigned long, unsigned long) override {}
    void removeBlock(unsigned long, unsigned long) override {}
    bool readOnly() const override { return true; }
    bool isOpen() const override { return true; }
    void seek(long offset, Position from) override;
    long tell() const override { return m_at; }
    long length() override { return m_length; }
    void truncate(long) override {}

private:
    int m_file;
    long m_at = 0;
    long m_length = 0;
};

// The file by its content, whatever it is called. `container` is "mpeg", "flac", "ogg-vorbis", "ogg-opus", "ogg-flac",
// "ogg-speex", "wav", "aiff", "mp4", "asf", "ape", "wavpack", "mpc", "tta"; empty when it is none of these.
class TagFile {
public:
    explicit TagFile(int file);

    const std::string &container() const { return m_container; }
    // Not null while container() is not empty.
    TagLib::File *file() const { return m_file.get(); }
    // The front picture, else the first one; empty when there is none.
    std::string picture() const;
    bool hasPicture() const;

private:
    template <typename Take>
    void eachPicture(Take take) const; // take(isFront, bytes) -> whether it is enough

    DescriptorStream m_stream;
    std::unique_ptr<TagLib::File> m_file; // uses m_stream
    std::string m_container;
};

} // namespace velmora::media
