#include "soundfile.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace velmora::server {

void writeSoundFile(const std::filesystem::path &file, const char *encoder, int rate, const std::vector<float> &samples,
                    const std::vector<std::pair<std::string, std::string>> &tags)
{
    av_log_set_level(AV_LOG_QUIET);
    const AVCodec *codec = avcodec_find_encoder_by_name(encoder);
    ASSERT_NE(codec, nullptr) << encoder;
    AVFormatContext *context = nullptr;
    ASSERT_GE(avformat_alloc_output_context2(&context, nullptr, nullptr, file.c_str()), 0) << file;
    AVCodecContext *coder = avcodec_alloc_context3(codec);
    for (const AVSampleFormat *format = codec->sample_fmts; *format != AV_SAMPLE_FMT_NONE; ++format) {
        const AVSampleFormat packed = av_get_packed_sample_fmt(*format);
        if (packed == AV_SAMPLE_FMT_S16 || (packed == AV_SAMPLE_FMT_FLT && coder->sample_fmt == AV_SAMPLE_FMT_NONE))
            coder->sample_fmt = *format;
    }
    coder->sample_rate = rate;
    coder->bit_rate = 32000;
    av_channel_layout_default(&coder->ch_layout, 1);
    if (context->oformat->flags & AVFMT_GLOBALHEADER)
        coder->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    ASSERT_EQ(avcodec_open2(coder, codec, nullptr), 0) << encoder;
    AVStream *stream = avformat_new_stream(context, nullptr);
    avcodec_parameters_from_context(stream->codecpar, coder);
    for (const auto &[name, value] : tags)
        av_dict_set(&context->metadata, name.c_str(), value.c_str(), 0);
    AVDictionary *options = nullptr;
    av_dict_set(&options, "write_id3v2", "1", 0);
    ASSERT_GE(avio_open(&context->pb, file.c_str(), AVIO_FLAG_WRITE), 0) << file;
    ASSERT_GE(avformat_write_header(context, &options), 0) << file;
    av_dict_free(&options);
    AVPacket *packet = av_packet_alloc();
    const auto take = [&] {
        while (avcodec_receive_packet(coder, packet) == 0) {
            av_packet_rescale_ts(packet, {1, rate}, stream->time_base);
            av_interleaved_write_frame(context, packet);
        }
    };
    const size_t block = coder->frame_size > 0 ? static_cast<size_t>(coder->frame_size) : 1024;
    for (size_t at = 0; at < samples.size(); at += block) {
        AVFrame *frame = av_frame_alloc();
        frame->nb_samples = static_cast<int>(std::min(block, samples.size() - at));
        frame->format = coder->sample_fmt;
        frame->sample_rate = rate;
        frame->pts = static_cast<int64_t>(at);
        av_channel_layout_copy(&frame->ch_layout, &coder->ch_layout);
        ASSERT_EQ(av_frame_get_buffer(frame, 0), 0);
        const int bytes = av_get_bytes_per_sample(coder->sample_fmt);
        for (int i = 0; i < frame->nb_samples; ++i) {
            const float sample = samples[at + static_cast<size_t>(i)];
            const auto number = static_cast<int16_t>(std::lround(sample * 32767));
            if (av_get_packed_sample_fmt(coder->sample_fmt) == AV_SAMPLE_FMT_FLT)
                std::memcpy(frame->data[0] + i * bytes, &sample, sizeof sample);
            else
                std::memcpy(frame->data[0] + i * bytes, &number, sizeof number);
        }
        EXPECT_EQ(avcodec_send_frame(coder, frame), 0) << encoder;
        av_frame_free(&frame);
        take();
    }
    avcodec_send_frame(coder, nullptr);
    take();
    EXPECT_EQ(av_write_trailer(context), 0);
    av_packet_free(&packet);
    avcodec_free_context(&coder);
    avio_closep(&context->pb);
    avformat_free_context(context);
}

std::string silentApe(double seconds)
{
    constexpr uint32_t rate = 44100;
    constexpr uint32_t block = 73728 * 4;
    const auto samples = static_cast<uint64_t>(seconds * rate);
    const auto frames = static_cast<uint32_t>((samples + block - 1) / block);
    std::string file;
    const auto put = [&](uint32_t value, int bytes) {
        for (int i = 0; i < bytes; ++i)
            file += static_cast<char>(value >> (8 * i));
    };
    constexpr uint32_t headBytes = 52;
    constexpr uint32_t frameBytes = 12;
    file = "MAC ";
    put(3990, 2);
    put(0, 2);
    for (const uint32_t length : {headBytes, 24u, frames * 4, 0u, frames * frameBytes, 0u, 0u})
        put(length, 4);
    file.append(16, '\0');
    put(1000, 2); // fast
    put(0, 2);
    put(block, 4);
    put(static_cast<uint32_t>(samples - uint64_t(frames - 1) * block), 4);
    put(frames, 4);
    put(16, 2);
    put(2, 2);
    put(rate, 4);
    for (uint32_t i = 0; i < frames; ++i)
        put(headBytes + 24 + frames * 4 + i * frameBytes, 4);
    for (uint32_t i = 0; i < frames; ++i) {
        put(0x80000000u, 4); // flags follow
        put(3, 4);           // both channels are silent
        put(0, 4);
    }
    return file;
}

} // namespace velmora::server
