#include "flacfile.h"

#include "atomicfile.h"
#include "random.h"

#include <algorithm>
#include <cmath>
#include <FLAC/metadata.h>
#include <FLAC/stream_encoder.h>
#include <memory>

namespace velmora::demo {
namespace {

struct Deleter {
    void operator()(FLAC__StreamEncoder *encoder) const { FLAC__stream_encoder_delete(encoder); }
    void operator()(FLAC__StreamMetadata *block) const { FLAC__metadata_object_delete(block); }
};
using Encoder = std::unique_ptr<FLAC__StreamEncoder, Deleter>;
using Metadata = std::unique_ptr<FLAC__StreamMetadata, Deleter>;

Metadata comments(const FlacTags &tags)
{
    Metadata block(FLAC__metadata_object_new(FLAC__METADATA_TYPE_VORBIS_COMMENT));
    if (!block)
        return {};
    for (const auto &[name, text] : tags) {
        FLAC__StreamMetadata_VorbisComment_Entry entry;
        if (!FLAC__metadata_object_vorbiscomment_entry_from_name_value_pair(&entry, name.c_str(), text.c_str()))
            return {};
        // The block owns the entry from here on.
        if (!FLAC__metadata_object_vorbiscomment_append_comment(block.get(), entry, false))
            return {};
    }
    return block;
}

bool encode(FLAC__StreamEncoder *encoder, const Buffer &left, const Buffer &right)
{
    // Dither of one step masks the quantisation of fading sounds. Silence stays silent.
    Random noise(16);
    constexpr size_t block = 4096;
    std::vector<FLAC__int32> interleaved(2 * block);
    for (size_t from = 0; from < left.size(); from += block) {
        const size_t count = std::min(block, left.size() - from);
        for (size_t i = 0; i < count; ++i)
            for (size_t channel = 0; channel < 2; ++channel) {
                const float value = channel ? right[from + i] : left[from + i];
                const float dither = value == 0 ? 0 : 0.5f * (noise.bipolar() + noise.bipolar());
                const long step = std::lround(value * 32767.0f + dither);
                interleaved[2 * i + channel] = FLAC__int32(std::clamp(step, -32768L, 32767L));
            }
        if (!FLAC__stream_encoder_process_interleaved(encoder, interleaved.data(), uint32_t(count)))
            return false;
    }
    return true;
}

} // namespace

bool writeFlac(const Buffer &left, const Buffer &right, const FlacTags &tags, const std::filesystem::path &file)
{
    AtomicFile target(file);
    const Encoder encoder(FLAC__stream_encoder_new());
    const Metadata block = comments(tags);
    if (!target.isOpen() || !encoder || !block || left.size() != right.size())
        return false;
    FLAC__StreamMetadata *blocks[] = {block.get()};
    FLAC__stream_encoder_set_channels(encoder.get(), 2);
    FLAC__stream_encoder_set_bits_per_sample(encoder.get(), 16);
    FLAC__stream_encoder_set_sample_rate(encoder.get(), sampleRate);
    FLAC__stream_encoder_set_compression_level(encoder.get(), 3);
    FLAC__stream_encoder_set_total_samples_estimate(encoder.get(), left.size());
    FLAC__stream_encoder_set_metadata(encoder.get(), blocks, 1);
    // The encoder closes the stream in any case. At the end it rewrites the header, which needs a seekable file.
    if (FLAC__stream_encoder_init_FILE(encoder.get(), target.takeStream(), nullptr, nullptr) !=
        FLAC__STREAM_ENCODER_INIT_STATUS_OK)
        return false;
    const bool encoded = encode(encoder.get(), left, right);
    const bool finished = FLAC__stream_encoder_finish(encoder.get());
    return encoded && finished && target.commit();
}

} // namespace velmora::demo
