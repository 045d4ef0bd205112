// Loudness and descriptor of a whole file.
#include "server/media/descriptor.h"
#include "server/media/reading.h"

#include <ebur128.h>
#include <sndfile.h>

#include <algorithm>
#include <cmath>
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
struct MeterCloser {
    void operator()(ebur128_state *meter) const { ebur128_destroy(&meter); }
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
    if (info.channels < 1 || info.channels > 8 || info.samplerate < 8000 || info.samplerate > 192000)
        return refused(answer, "sound of an unusual kind: " + std::to_string(info.channels) + " channels, " +
                                   std::to_string(info.samplerate) + " Hz");
    const auto channels = static_cast<unsigned>(info.channels);
    const std::unique_ptr<ebur128_state, MeterCloser> meter(
        ebur128_init(channels, static_cast<unsigned long>(info.samplerate),
                     EBUR128_MODE_I | EBUR128_MODE_LRA | EBUR128_MODE_SAMPLE_PEAK));
    if (!meter)
        return refused(answer, "there is no memory for it");
    DescriptorBuilder builder(info.samplerate);

    constexpr sf_count_t pieceFrames = 4096;
    std::vector<float> piece(static_cast<size_t>(pieceFrames) * channels);
    std::vector<float> mixed(static_cast<size_t>(pieceFrames));
    sf_count_t frames = 0;
    for (;;) {
        const sf_count_t got = sf_readf_float(sound.get(), piece.data(), pieceFrames);
        if (got <= 0)
            break;
        const auto count = static_cast<size_t>(got);
        // One number that is not finite would spoil every sum after it.
        for (float &sample : std::span(piece).first(count * channels))
            sample = std::isfinite(sample) ? std::clamp(sample, -8.0f, 8.0f) : 0.0f;
        for (size_t i = 0; i < count; ++i) {
            float sum = 0;
            for (unsigned channel = 0; channel < channels; ++channel)
                sum += piece[i * channels + channel];
            mixed[i] = sum / static_cast<float>(channels);
        }
        ebur128_add_frames_float(meter.get(), piece.data(), count);
        builder.add(std::span(mixed).first(count));
        frames += got;
    }
    if (frames == 0)
        return refused(answer, "there is no sound in it");

    double loudness = -HUGE_VAL;
    double range = 0;
    double peak = 0;
    ebur128_loudness_global(meter.get(), &loudness);
    ebur128_loudness_range(meter.get(), &range);
    for (unsigned channel = 0; channel < channels; ++channel) {
        double highest = 0;
        ebur128_sample_peak(meter.get(), channel, &highest);
        peak = std::max(peak, highest);
    }
    answer.number(Key::Seconds, static_cast<double>(frames) / info.samplerate);
    if (std::isfinite(loudness)) {
        answer.number(Key::Loudness, loudness);
        answer.number(Key::LoudnessRange, range);
    }
    answer.number(Key::Peak, peak);
    if (const std::optional<Descriptor> numbers = builder.finish(range)) {
        answer.number(Key::IsSpeechLike, isSpeechLike(*numbers));
        if (const std::optional<int> tempo = clearTempoOf(*numbers))
            answer.number(Key::Tempo, *tempo);
        answer.bytes(Key::Numbers, {reinterpret_cast<const char *>(numbers->data()), numbers->size() * sizeof(float)});
    }
    return Verdict::Done;
}

} // namespace velmora::media
