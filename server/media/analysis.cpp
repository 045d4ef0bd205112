// Loudness and descriptor of a whole file.
#include "server/media/soundmeter.h"

#include <sndfile.h>

#include <algorithm>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora::media {

namespace {

struct Source {
    int file = -1;
    sf_count_t at = 0;
    sf_count_t length = 0;
};

SF_VIRTUAL_IO virtualFile()
{
    SF_VIRTUAL_IO io{};
    io.get_filelen = [](void *user) { return static_cast<Source *>(user)->length; };
    io.seek = [](sf_count_t offset, int whence, void *user) {
        auto *source = static_cast<Source *>(user);
        const sf_count_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? source->at : source->length;
        source->at = std::clamp<sf_count_t>(base + offset, 0, source->length);
        return source->at;
    };
    io.read = [](void *buffer, sf_count_t count, void *user) -> sf_count_t {
        auto *source = static_cast<Source *>(user);
        const ssize_t got = count <= 0 ? 0 : ::pread(source->file, buffer, static_cast<size_t>(count), source->at);
        source->at += got > 0 ? got : 0;
        return got > 0 ? got : 0;
    };
    io.write = [](const void *, sf_count_t, void *) -> sf_count_t { return 0; };
    io.tell = [](void *user) { return static_cast<Source *>(user)->at; };
    return io;
}

struct SoundCloser {
    void operator()(SNDFILE *file) const { sf_close(file); }
};

} // namespace

Verdict analyse(int descriptor, FieldWriter &answer)
{
    struct stat status {};
    if (::fstat(descriptor, &status) != 0)
        return refused(answer, "it cannot be read");
    Source source{descriptor, 0, status.st_size};
    SF_VIRTUAL_IO io = virtualFile();
    SF_INFO info{};
    const std::unique_ptr<SNDFILE, SoundCloser> sound(sf_open_virtual(&io, SFM_READ, &info, &source));
    if (!sound)
        return refused(answer, "its sound cannot be decoded");
    SoundMeter meter(info.channels, info.samplerate);
    constexpr sf_count_t pieceFrames = 4096;
    const auto channels = static_cast<size_t>(info.channels);
    std::vector<float> piece(static_cast<size_t>(pieceFrames) * channels);
    for (;;) {
        const sf_count_t got = sf_readf_float(sound.get(), piece.data(), pieceFrames);
        if (got <= 0)
            break;
        meter.add(std::span(piece).first(static_cast<size_t>(got) * channels));
    }
    return meter.finish(answer);
}

} // namespace velmora::media
