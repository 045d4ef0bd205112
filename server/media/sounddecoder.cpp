#include "server/media/sounddecoder.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswresample/swresample.h>
}

namespace velmora::media {

namespace {

constexpr int inputBytes = 64 * 1024;
constexpr int highestRate = 96000;
constexpr int mostStreams = 64;

// What is not named here is not even probed: containers of music, and what is found in them.
constexpr const char *containers = "mov,asf,ape,wv,tta,mpc,mpc8,aiff,aac,dsf,iff,ogg";
constexpr const char *codecs =
    "aac,alac,ape,wavpack,tta,mpc7,mpc8,wmav1,wmav2,wmapro,wmalossless,wmavoice,mp3,mp3float,ac3,eac3,flac,opus,vorbis,"
    "libspeex,speex,dsd_lsbf,dsd_msbf,dsd_lsbf_planar,dsd_msbf_planar,dst,pcm_s8,pcm_u8,pcm_s16be,pcm_s16le,pcm_s24be,"
    "pcm_s24le,pcm_s32be,pcm_s32le,pcm_f32be,pcm_f32le,pcm_f64be,pcm_f64le,pcm_alaw,pcm_mulaw";

int refuseToOpen(AVFormatContext *, AVIOContext **, const char *, int, AVDictionary **)
{
    return AVERROR(EACCES); // one file may name others
}

[[noreturn]] void cannotBeDecoded()
{
    throw std::runtime_error("its sound cannot be decoded");
}

} // namespace

void SoundDecoder::freeInput(AVIOContext **input)
{
    av_freep(&(*input)->buffer);
    avio_context_free(input);
}

void SoundDecoder::closeContext(AVFormatContext **context)
{
    avformat_close_input(context);
}

void SoundDecoder::closeCodec(AVCodecContext **codec)
{
    avcodec_free_context(codec);
}

void SoundDecoder::freeFrame(AVFrame **frame)
{
    av_frame_free(frame);
}

void SoundDecoder::freePacket(AVPacket **packet)
{
    av_packet_free(packet);
}

void SoundDecoder::freeConverter(SwrContext **converter)
{
    swr_free(converter);
}

SoundDecoder::SoundDecoder(int file, Samples samples)
    : m_frame(av_frame_alloc())
    , m_packet(av_packet_alloc())
    , m_samples(samples)
{
    av_log_set_level(AV_LOG_QUIET);
    struct stat status {};
    if (::fstat(file, &status) != 0)
        throw std::runtime_error("it cannot be read");
    m_source = {file, 0, status.st_size};
    openContext();
    openCodec();
}

SoundDecoder::~SoundDecoder() = default;

void SoundDecoder::openContext()
{
    const auto read = [](void *user, uint8_t *buffer, int count) -> int {
        auto *source = static_cast<Source *>(user);
        const ssize_t got = count <= 0 ? 0 : ::pread(source->file, buffer, static_cast<size_t>(count), source->at);
        if (got <= 0)
            return got == 0 ? AVERROR_EOF : AVERROR(EIO);
        source->at += got;
        return static_cast<int>(got);
    };
    const auto seek = [](void *user, int64_t offset, int whence) -> int64_t {
        auto *source = static_cast<Source *>(user);
        if (whence == AVSEEK_SIZE)
            return source->size;
        const int way = whence & ~AVSEEK_FORCE;
        const int64_t base = way == SEEK_SET ? 0 : way == SEEK_CUR ? source->at : source->size;
        if (offset > source->size - base || offset < -base)
            return AVERROR(EINVAL);
        return source->at = base + offset;
    };
    auto *const buffer = static_cast<unsigned char *>(av_malloc(inputBytes));
    m_input.reset(buffer ? avio_alloc_context(buffer, inputBytes, 0, &m_source, read, nullptr, seek) : nullptr);
    AVFormatContext *context = avformat_alloc_context();
    if (!m_input || !context || !m_frame || !m_packet) {
        avformat_free_context(context);
        throw std::runtime_error("there is no memory for it");
    }
    context->pb = m_input.get();
    context->flags |= AVFMT_FLAG_CUSTOM_IO;
    context->io_open = refuseToOpen;
    context->max_streams = mostStreams;
    context->format_whitelist = av_strdup(containers);
    context->codec_whitelist = av_strdup(codecs);
    if (avformat_open_input(&context, nullptr, nullptr, nullptr) < 0) // frees the context
        throw std::runtime_error("there is no sound of a known kind in it");
    m_context.reset(context);
}

void SoundDecoder::openCodec()
{
    const std::span streams(m_context->streams, m_context->nb_streams);
    for (AVStream *stream : streams) {
        if (stream->codecpar->codec_type != AVMEDIA_TYPE_AUDIO)
            stream->discard = AVDISCARD_ALL;
    }
    if (avformat_find_stream_info(m_context.get(), nullptr) < 0)
        cannotBeDecoded();
    m_stream = av_find_best_stream(m_context.get(), AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
    if (m_stream < 0)
        throw std::runtime_error("there is no sound in it");
    for (unsigned i = 0; i < m_context->nb_streams; ++i)
        m_context->streams[i]->discard = static_cast<int>(i) == m_stream ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    const AVCodecParameters &parameters = *m_context->streams[m_stream]->codecpar;
    const AVCodec *codec = avcodec_find_decoder(parameters.codec_id);
    if (codec)
        m_codec.reset(avcodec_alloc_context3(codec));
    if (!m_codec || avcodec_parameters_to_context(m_codec.get(), &parameters) < 0)
        cannotBeDecoded();
    m_codec->codec_whitelist = av_strdup(codecs);
    m_codec->thread_count = 1;
    m_codec->pkt_timebase = m_context->streams[m_stream]->time_base;
    if (avcodec_open2(m_codec.get(), codec, nullptr) < 0)
        cannotBeDecoded();

    m_rate = m_codec->sample_rate;
    m_channels = m_codec->ch_layout.nb_channels;
    if (m_rate < 8000 || m_rate > 6'000'000 || m_channels < 1 || m_channels > 16)
        throw std::runtime_error("sound of an unusual kind: " + std::to_string(m_channels) + " channels, " +
                                 std::to_string(m_rate) + " Hz");
    while (m_rate > highestRate)
        m_rate /= 2;
    m_channels = std::min(m_channels, 2);
    const AVCodecDescriptor *descriptor = avcodec_descriptor_get(parameters.codec_id);
    const bool isDsd =
        parameters.codec_id >= AV_CODEC_ID_DSD_LSBF && parameters.codec_id <= AV_CODEC_ID_DSD_MSBF_PLANAR;
    const int sourceBits = std::max(m_codec->bits_per_raw_sample, parameters.bits_per_raw_sample);
    const bool isLossy = descriptor && (descriptor->props & AV_CODEC_PROP_LOSSLESS) == 0;
    m_isLossless = !isLossy || isDsd || parameters.codec_id == AV_CODEC_ID_DST;
    if (m_isLossless &&
        (isDsd || (sourceBits != 0 ? sourceBits : av_get_bytes_per_sample(m_codec->sample_fmt) * 8) > 16))
        m_bits = 24;
}

bool SoundDecoder::nextFrame()
{
    for (;;) {
        const int received = avcodec_receive_frame(m_codec.get(), m_frame.get());
        if (received >= 0)
            return true;
        if (received == AVERROR_EOF || m_isDraining)
            return false;
        // More is needed, or this piece is damaged: the next one.
        if (av_read_frame(m_context.get(), m_packet.get()) < 0) {
            m_isDraining = true;
            avcodec_send_packet(m_codec.get(), nullptr);
            continue;
        }
        if (m_packet->stream_index == m_stream)
            avcodec_send_packet(m_codec.get(), m_packet.get());
        av_packet_unref(m_packet.get());
    }
}

bool SoundDecoder::isOfOneKind() const
{
    return m_converter && m_frame->sample_rate == m_frameRate && m_frame->format == m_frameFormat &&
           m_frame->ch_layout.nb_channels == m_frameChannels;
}

void SoundDecoder::convert(const AVFrame *frame)
{
    const int most = swr_get_out_samples(m_converter.get(), frame ? frame->nb_samples : 0);
    if (most <= 0)
        return;
    const size_t sampleBytes = m_samples == Samples::Integer && m_bits == 16 ? 2 : 4;
    const size_t frameBytes = sampleBytes * static_cast<size_t>(m_channels);
    const size_t before = m_bytes.size();
    m_bytes.resize(before + static_cast<size_t>(most) * frameBytes);
    uint8_t *to = m_bytes.data() + before;
    const int got =
        swr_convert(m_converter.get(), &to, most, frame ? const_cast<const uint8_t **>(frame->extended_data) : nullptr,
                    frame ? frame->nb_samples : 0);
    m_bytes.resize(before + static_cast<size_t>(std::max(got, 0)) * frameBytes);
    m_framesRead += std::max(got, 0);
}

std::span<const uint8_t> SoundDecoder::read()
{
    m_bytes.clear();
    while (m_bytes.empty()) {
        if (!nextFrame()) {
            if (m_converter)
                convert(nullptr);
            m_converter.reset();
            break;
        }
        // A converter that was made for other frames would read beyond the ends of this one.
        if (!isOfOneKind()) {
            if (m_converter)
                convert(nullptr);
            m_converter.reset();
            if (m_frame->sample_rate < 1000 || m_frame->ch_layout.nb_channels < 1 ||
                m_frame->ch_layout.nb_channels > 16)
                continue;
            if (m_frame->ch_layout.order == AV_CHANNEL_ORDER_UNSPEC)
                av_channel_layout_default(&m_frame->ch_layout, m_frame->ch_layout.nb_channels);
            AVChannelLayout layout{};
            av_channel_layout_default(&layout, m_channels);
            SwrContext *converter = nullptr;
            const AVSampleFormat format = m_samples == Samples::Float ? AV_SAMPLE_FMT_FLT
                                          : m_bits == 24              ? AV_SAMPLE_FMT_S32
                                                                      : AV_SAMPLE_FMT_S16;
            const int made =
                swr_alloc_set_opts2(&converter, &layout, format, m_rate, &m_frame->ch_layout,
                                    static_cast<AVSampleFormat>(m_frame->format), m_frame->sample_rate, 0, nullptr);
            m_converter.reset(converter);
            if (made < 0 || swr_init(m_converter.get()) < 0) {
                m_converter.reset();
                continue;
            }
            m_frameRate = m_frame->sample_rate;
            m_frameChannels = m_frame->ch_layout.nb_channels;
            m_frameFormat = m_frame->format;
        }
        convert(m_frame.get());
    }
    if (m_framesRead / m_rate > mostSeconds)
        throw std::runtime_error("there are more than two hours of sound in it");
    return m_bytes;
}

} // namespace velmora::media
