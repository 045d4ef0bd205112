// Any sound into FLAC.
#include "server/media/formats.h"
#include "server/media/sounddecoder.h"

#include <algorithm>
#include <cerrno>
#include <stdexcept>
#include <unistd.h>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace velmora::media {

namespace {

constexpr int outputBytes = 256 * 1024;
constexpr int compression = 5; // 0 saves no time worth having, 8 no space

struct NoRoom {};

// A FLAC file that is being written. Throws std::runtime_error for what the encoder does not take.
class FlacWriter {
public:
    FlacWriter(int file, uint64_t mostBytes, const SoundDecoder &sound);
    ~FlacWriter();
    FlacWriter(const FlacWriter &) = delete;
    FlacWriter &operator=(const FlacWriter &) = delete;

    void add(std::span<const uint8_t> samples);
    // Returns how many bytes the file has. Throws NoRoom.
    int64_t finish();

private:
    void encode(size_t bytes); // from the front of m_waiting
    void takePackets();
    void check() const; // throws when writing failed

    int m_file;
    int64_t m_at = 0;
    int64_t m_size = 0;
    int64_t m_mostBytes;
    bool m_isTooLarge = false;
    AVIOContext *m_output = nullptr; // owned, like the four below; freed by the destructor
    AVFormatContext *m_context = nullptr;
    AVCodecContext *m_encoder = nullptr;
    AVFrame *m_frame = nullptr;
    AVPacket *m_packet = nullptr;
    size_t m_frameBytes = 0;        // of one sample of all channels
    size_t m_blockBytes = 0;        // of what the encoder takes at a time
    std::vector<uint8_t> m_waiting; // less than a block between two calls
    int64_t m_frames = 0;
};

FlacWriter::FlacWriter(int file, uint64_t mostBytes, const SoundDecoder &sound)
    : m_file(file)
    , m_mostBytes(static_cast<int64_t>(mostBytes))
{
    const auto write = [](void *user, uint8_t *buffer, int count) -> int {
        auto *writer = static_cast<FlacWriter *>(user);
        if (writer->m_at + count > writer->m_mostBytes) {
            writer->m_isTooLarge = true;
            return AVERROR(EFBIG);
        }
        // lseek and write: the sandbox knows no other way.
        if (::lseek(writer->m_file, writer->m_at, SEEK_SET) < 0)
            return AVERROR(EIO);
        for (int done = 0; done < count;) {
            const ssize_t written = ::write(writer->m_file, buffer + done, static_cast<size_t>(count - done));
            if (written < 0 && errno == EINTR)
                continue;
            if (written <= 0)
                return AVERROR(ENOSPC);
            done += static_cast<int>(written);
        }
        writer->m_at += count;
        writer->m_size = std::max(writer->m_size, writer->m_at);
        return count;
    };
    const auto seek = [](void *user, int64_t offset, int whence) -> int64_t {
        auto *writer = static_cast<FlacWriter *>(user);
        if (whence == AVSEEK_SIZE)
            return writer->m_size;
        const int64_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? writer->m_at : writer->m_size;
        return base + offset < 0 ? AVERROR(EINVAL) : writer->m_at = base + offset;
    };
    const AVCodec *codec = avcodec_find_encoder(AV_CODEC_ID_FLAC);
    auto *const buffer = static_cast<unsigned char *>(av_malloc(outputBytes));
    if (buffer)
        m_output = avio_alloc_context(buffer, outputBytes, 1, this, nullptr, write, seek);
    m_encoder = codec ? avcodec_alloc_context3(codec) : nullptr;
    m_frame = av_frame_alloc();
    m_packet = av_packet_alloc();
    if (!m_output || !m_encoder || !m_frame || !m_packet ||
        avformat_alloc_output_context2(&m_context, nullptr, "flac", nullptr) < 0)
        throw std::runtime_error("there is no memory for it");
    m_context->pb = m_output;
    m_context->flags |= AVFMT_FLAG_CUSTOM_IO | AVFMT_FLAG_BITEXACT;
    m_encoder->sample_rate = sound.rate();
    m_encoder->sample_fmt = sound.bits() == 24 ? AV_SAMPLE_FMT_S32 : AV_SAMPLE_FMT_S16;
    m_encoder->bits_per_raw_sample = sound.bits();
    m_encoder->time_base = {1, sound.rate()};
    m_encoder->compression_level = compression;
    m_encoder->thread_count = 1;
    m_encoder->flags |= AV_CODEC_FLAG_GLOBAL_HEADER | AV_CODEC_FLAG_BITEXACT;
    av_channel_layout_default(&m_encoder->ch_layout, sound.channels());
    AVStream *stream = nullptr;
    if (avcodec_open2(m_encoder, codec, nullptr) < 0 || !(stream = avformat_new_stream(m_context, nullptr)) ||
        avcodec_parameters_from_context(stream->codecpar, m_encoder) < 0)
        throw std::runtime_error("there is no FLAC of such sound");
    stream->time_base = m_encoder->time_base;
    if (avformat_write_header(m_context, nullptr) < 0)
        check();
    m_frameBytes = static_cast<size_t>(sound.channels()) * (sound.bits() == 24 ? 4 : 2);
    m_blockBytes = m_frameBytes * static_cast<size_t>(m_encoder->frame_size);
}

FlacWriter::~FlacWriter()
{
    av_packet_free(&m_packet);
    av_frame_free(&m_frame);
    avcodec_free_context(&m_encoder);
    avformat_free_context(m_context);
    if (m_output)
        av_freep(&m_output->buffer);
    avio_context_free(&m_output);
}

void FlacWriter::check() const
{
    if (m_isTooLarge)
        throw std::runtime_error("it is too large for the cache");
    throw NoRoom();
}

void FlacWriter::takePackets()
{
    while (avcodec_receive_packet(m_encoder, m_packet) >= 0) {
        m_packet->stream_index = 0;
        av_packet_rescale_ts(m_packet, m_encoder->time_base, m_context->streams[0]->time_base);
        const int result = av_write_frame(m_context, m_packet);
        av_packet_unref(m_packet);
        if (result < 0 || m_output->error < 0)
            check();
    }
}

void FlacWriter::encode(size_t bytes)
{
    m_frame->nb_samples = static_cast<int>(bytes / m_frameBytes);
    m_frame->format = m_encoder->sample_fmt;
    m_frame->sample_rate = m_encoder->sample_rate;
    m_frame->pts = m_frames;
    if (av_channel_layout_copy(&m_frame->ch_layout, &m_encoder->ch_layout) < 0 || av_frame_get_buffer(m_frame, 0) < 0)
        throw std::runtime_error("there is no memory for it");
    std::memcpy(m_frame->data[0], m_waiting.data(), bytes);
    m_waiting.erase(m_waiting.begin(), m_waiting.begin() + static_cast<std::ptrdiff_t>(bytes));
    m_frames += m_frame->nb_samples;
    const int sent = avcodec_send_frame(m_encoder, m_frame);
    av_frame_unref(m_frame);
    if (sent < 0)
        throw std::runtime_error("there is no FLAC of such sound");
    takePackets();
}

void FlacWriter::add(std::span<const uint8_t> samples)
{
    m_waiting.insert(m_waiting.end(), samples.begin(), samples.end());
    while (m_waiting.size() >= m_blockBytes)
        encode(m_blockBytes);
}

int64_t FlacWriter::finish()
{
    if (!m_waiting.empty())
        encode(m_waiting.size());
    avcodec_send_frame(m_encoder, nullptr);
    takePackets();
    // Its length and check sum go to the file's head.
    const int result = av_write_trailer(m_context);
    avio_flush(m_output);
    if (result < 0 || m_output->error < 0)
        check();
    return m_frames == 0 ? 0 : m_size;
}

} // namespace

Verdict transcode(int file, int to, uint64_t mostBytes, FieldWriter &answer)
{
    SoundDecoder sound(file, SoundDecoder::Samples::Integer);
    try {
        FlacWriter writer(to, mostBytes, sound);
        for (std::span<const uint8_t> samples = sound.read(); !samples.empty(); samples = sound.read())
            writer.add(samples);
        const int64_t bytes = writer.finish();
        if (bytes == 0)
            return refused(answer, "there is no sound in it");
        answer.number(Key::Bytes, static_cast<double>(bytes));
        return Verdict::Done;
    } catch (const NoRoom &) {
        refused(answer, "there is no room for it on the disk");
        return Verdict::NoRoom;
    }
}

} // namespace velmora::media
