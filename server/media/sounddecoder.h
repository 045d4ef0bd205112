#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

struct AVCodecContext;
struct AVFormatContext;
struct AVFrame;
struct AVIOContext;
struct AVPacket;
struct SwrContext;

namespace velmora::media {

// The sound of an open file, decoded by libav, as interleaved samples of one kind from its beginning to its end,
// whatever the file changes in between: at most two channels, at most 96,000 samples a second. Damaged pieces are
// missing. One thread.
class SoundDecoder {
public:
    enum class Samples {
        Float,  // full scale 1
        Integer // 16 bits, or 32 bits with 24 in use where a lossless file has more than 16
    };

    // `file` stays the caller's, its offset is not used. Throws std::runtime_error with what is wrong.
    SoundDecoder(int file, Samples samples);
    ~SoundDecoder();
    SoundDecoder(const SoundDecoder &) = delete;
    SoundDecoder &operator=(const SoundDecoder &) = delete;

    int channels() const { return m_channels; }
    int rate() const { return m_rate; }
    int bits() const { return m_bits; } // of a sample that are in use: 16 or 24
    bool isLossless() const { return m_isLossless; }
    const AVFormatContext &context() const { return *m_context; }

    // The next samples, as bytes; empty at the end. Valid until the next call. Throws std::runtime_error when there is
    // more sound than `mostSeconds`.
    std::span<const uint8_t> read();

    static constexpr int mostSeconds = 2 * 3600;

private:
    struct Source {
        int file = -1;
        int64_t at = 0;
        int64_t size = 0;
    };
    template <auto free>
    struct Freer {
        template <typename T>
        void operator()(T *pointer) const
        {
            free(&pointer);
        }
    };

    static void freeInput(AVIOContext **input);
    static void closeContext(AVFormatContext **context);
    static void closeCodec(AVCodecContext **codec);
    static void freeFrame(AVFrame **frame);
    static void freePacket(AVPacket **packet);
    static void freeConverter(SwrContext **converter);

    void openContext();
    void openCodec();
    bool nextFrame(); // into m_frame; false at the end
    void convert(const AVFrame *frame);
    bool isOfOneKind() const; // whether m_frame is as the frames were for which m_converter was made

    Source m_source;
    std::unique_ptr<AVIOContext, Freer<freeInput>> m_input;
    std::unique_ptr<AVFormatContext, Freer<closeContext>> m_context; // uses m_input
    std::unique_ptr<AVCodecContext, Freer<closeCodec>> m_codec;
    std::unique_ptr<AVFrame, Freer<freeFrame>> m_frame;
    std::unique_ptr<AVPacket, Freer<freePacket>> m_packet;
    std::unique_ptr<SwrContext, Freer<freeConverter>> m_converter;
    Samples m_samples;
    int m_stream = -1;
    int m_rate = 0;
    int m_channels = 0;
    int m_bits = 16;
    bool m_isLossless = false;
    bool m_isDraining = false; // the file is read to its end
    int m_frameRate = 0;       // of the frames for which m_converter was made
    int m_frameChannels = 0;
    int m_frameFormat = -1;
    int64_t m_framesRead = 0;
    std::vector<uint8_t> m_bytes;
};

} // namespace velmora::media
