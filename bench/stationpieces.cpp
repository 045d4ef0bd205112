#include "stationpieces.h"

#include "demomusic/arrangement.h"
#include "demomusic/cataloguetable.h"
#include "server/media/descriptor.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstring>
#include <ebur128.h>
#include <fstream>
#include <memory>
#include <numbers>
#include <random>
#include <sndfile.h>
#include <stdexcept>
#include <thread>

namespace bench {

namespace {

using namespace velmora::demo;

constexpr int rate = 44100;
constexpr int opusRate = 48000;

// The manner of an album: what is done to all of its pieces after they were played.
struct Manner {
    double lowGain, highGain; // dB below 200 Hz and above 3 kHz
    double loudness;          // LUFS
    Room room;
};

struct Plan {
    StationPiece piece;
    Piece score;
    Manner manner;
    int format; // libsndfile's; 0 for none
};

Buffer shelved(const Buffer &input, double hertz, double gain)
{
    // The difference between a one-pole low pass and its input, weighed.
    const auto step = static_cast<float>(1 - std::exp(-2 * std::numbers::pi * hertz / rate));
    const auto low = static_cast<float>(std::pow(10, gain / 20));
    Buffer output(input.size());
    float state = 0;
    for (size_t i = 0; i < input.size(); ++i) {
        state += step * (input[i] - state);
        output[i] = low * state + (input[i] - state);
    }
    return output;
}

void (*arranger(Style style))(Arrangement &)
{
    switch (style) {
    case Style::SlowPiano:
        return arrangeSlowPiano;
    case Style::Folk:
        return arrangeFolk;
    case Style::Dance:
        return arrangeDance;
    case Style::Drones:
        return arrangeDrones;
    case Style::Swing:
        return arrangeSwing;
    case Style::Rock:
        break;
    }
    return arrangeRock;
}

// A file in memory, for libsndfile.
struct MemoryFile {
    std::vector<char> bytes;
    sf_count_t at = 0;

    static MemoryFile &of(void *self) { return *static_cast<MemoryFile *>(self); }
    static SF_VIRTUAL_IO interface()
    {
        SF_VIRTUAL_IO io{};
        io.get_filelen = [](void *self) { return static_cast<sf_count_t>(of(self).bytes.size()); };
        io.seek = [](sf_count_t offset, int whence, void *self) {
            MemoryFile &file = of(self);
            const auto size = static_cast<sf_count_t>(file.bytes.size());
            file.at = offset + (whence == SEEK_CUR ? file.at : whence == SEEK_END ? size : 0);
            return file.at;
        };
        io.read = [](void *target, sf_count_t count, void *self) {
            MemoryFile &file = of(self);
            count = std::min(count, static_cast<sf_count_t>(file.bytes.size()) - file.at);
            std::memcpy(target, file.bytes.data() + file.at, static_cast<size_t>(count));
            file.at += count;
            return count;
        };
        io.write = [](const void *source, sf_count_t count, void *self) {
            MemoryFile &file = of(self);
            file.bytes.resize(std::max(file.bytes.size(), static_cast<size_t>(file.at + count)));
            std::memcpy(file.bytes.data() + file.at, source, static_cast<size_t>(count));
            file.at += count;
            return count;
        };
        io.tell = [](void *self) { return of(self).at; };
        return io;
    }
};

struct Sound {
    std::vector<float> samples; // two channels interleaved
    int samplesASecond = rate;
};

Sound throughCodec(const Sound &input, int format)
{
    MemoryFile file;
    SF_VIRTUAL_IO io = MemoryFile::interface();
    SF_INFO info{};
    info.channels = 2;
    info.samplerate = input.samplesASecond;
    info.format = format;
    SNDFILE *out = sf_open_virtual(&io, SFM_WRITE, &info, &file);
    if (!out)
        throw std::runtime_error(std::string("cannot encode: ") + sf_strerror(nullptr));
    double level = (format & SF_FORMAT_TYPEMASK) == SF_FORMAT_MPEG ? 0.55 : 0.6; // about 128 and 96 kbit/s
    sf_command(out, SFC_SET_COMPRESSION_LEVEL, &level, sizeof level);
    sf_writef_float(out, input.samples.data(), static_cast<sf_count_t>(input.samples.size() / 2));
    sf_close(out);

    file.at = 0;
    info = {};
    SNDFILE *in = sf_open_virtual(&io, SFM_READ, &info, &file);
    if (!in)
        throw std::runtime_error(std::string("cannot decode: ") + sf_strerror(nullptr));
    Sound result;
    result.samplesASecond = info.samplerate;
    std::vector<float> piece(static_cast<size_t>(info.channels) * 65536);
    for (sf_count_t count; (count = sf_readf_float(in, piece.data(), 65536)) > 0;)
        result.samples.insert(result.samples.end(), piece.begin(), piece.begin() + count * info.channels);
    sf_close(in);
    return result;
}

// Opus knows 48 kHz only: linear interpolation is good enough below 8 kHz.
Sound resampled(const Sound &input, int to)
{
    Sound result;
    result.samplesASecond = to;
    const size_t frames = input.samples.size() / 2;
    const double step = static_cast<double>(input.samplesASecond) / to;
    for (double at = 0; at + 1 < static_cast<double>(frames); at += step) {
        const auto below = static_cast<size_t>(at);
        const auto part = static_cast<float>(at - static_cast<double>(below));
        for (size_t channel = 0; channel < 2; ++channel)
            result.samples.push_back(input.samples[2 * below + channel] * (1 - part) +
                                     input.samples[2 * below + 2 + channel] * part);
    }
    return result;
}

velmora::media::Descriptor describe(const Sound &sound)
{
    velmora::media::DescriptorBuilder builder(sound.samplesASecond);
    const std::unique_ptr<ebur128_state, void (*)(ebur128_state *)> meter(
        ebur128_init(2, static_cast<unsigned long>(sound.samplesASecond), EBUR128_MODE_LRA),
        [](ebur128_state *state) { ebur128_destroy(&state); });
    ebur128_add_frames_float(meter.get(), sound.samples.data(), sound.samples.size() / 2);
    double range = 0;
    ebur128_loudness_range(meter.get(), &range);
    std::vector<float> mono(sound.samples.size() / 2);
    for (size_t i = 0; i < mono.size(); ++i)
        mono[i] = (sound.samples[2 * i] + sound.samples[2 * i + 1]) / 2;
    builder.add(mono);
    const auto descriptor = builder.finish(range);
    if (!descriptor)
        throw std::runtime_error("a piece without a descriptor");
    return *descriptor;
}

Sound play(const Plan &plan)
{
    Mixer mixer(std::min(durationSeconds(plan.score), 60), plan.manner.room);
    Arrangement arrangement(plan.score, mixer);
    arranger(plan.score.style)(arrangement);
    mixer.master({plan.manner.loudness, 0.05, 1, 1});
    Sound sound;
    const auto equalised = [&](const Buffer &input) {
        Buffer tilted = shelved(input, 200, plan.manner.lowGain);
        const Buffer below = shelved(tilted, 3000, -plan.manner.highGain);
        const auto gain = static_cast<float>(std::pow(10, plan.manner.highGain / 20));
        std::transform(below.begin(), below.end(), tilted.begin(), [&](float value) { return value * gain * 0.7f; });
        return tilted;
    };
    const Buffer left = equalised(mixer.left()), right = equalised(mixer.right());
    for (size_t i = 0; i < left.size(); ++i) {
        sound.samples.push_back(std::clamp(left[i], -1.0f, 1.0f));
        sound.samples.push_back(std::clamp(right[i], -1.0f, 1.0f));
    }
    return sound;
}

Sound encoded(const Sound &sound, int format)
{
    if (format == 0)
        return sound;
    const bool isOpus = (format & SF_FORMAT_SUBMASK) == SF_FORMAT_OPUS;
    return throughCodec(isOpus ? resampled(sound, opusRate) : sound, format);
}

constexpr int mp3 = SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III;
constexpr int opus = SF_FORMAT_OGG | SF_FORMAT_OPUS;

std::vector<Plan> plans(const PieceSettings &settings)
{
    std::vector<Plan> result;
    std::mt19937_64 random(settings.seed);
    const auto between = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    const auto below = [&](size_t bound) { return std::uniform_int_distribution<size_t>(0, bound - 1)(random); };
    int artist = 0, album = 0;
    for (int style = 0; style < styleCount; ++style) {
        for (int a = 0; a < settings.artistsAStyle; ++a, ++artist) {
            const std::array textures = {a % texturesAStyle, static_cast<int>(below(texturesAStyle))};
            for (int b = 0; b < settings.albumsAnArtist; ++b, ++album) {
                const Manner manner{between(-5, 5),
                                    between(-5, 5),
                                    between(-24, -11),
                                    {between(0.6, 3.5), between(3000, 7000), between(0.5, 1.5), 0, 0}};
                for (int p = 0; p < settings.piecesAnAlbum; ++p) {
                    Plan plan;
                    plan.manner = manner;
                    const int texture = textures[below(textures.size())];
                    std::vector<const Piece *> models;
                    for (const TrackEntry &entry : trackEntries()) {
                        if (static_cast<int>(entry.piece.style) == style && entry.piece.variant == texture)
                            models.push_back(&entry.piece);
                    }
                    if (models.empty())
                        throw std::runtime_error("no piece to vary for a texture");
                    plan.score = *models[below(models.size())];
                    plan.score.seed = 1'000'000'007 * settings.seed + result.size();
                    plan.score.key = static_cast<int>(below(12));
                    plan.score.tempo = static_cast<int>(plan.score.tempo * between(0.85, 1.15));
                    plan.score.form = style == static_cast<int>(Style::Drones) ? "I2 A4 B2 E2" : "I2 A8 B4 E2";
                    plan.piece.style = style;
                    plan.piece.texture = texture;
                    plan.piece.artist = artist;
                    plan.piece.album = album;
                    const size_t kind = below(8);
                    plan.format = kind < 2 ? 0 : kind < 5 ? mp3 : opus;
                    result.push_back(plan);
                }
            }
        }
    }
    return result;
}

} // namespace

std::vector<StationPiece> makePieces(const PieceSettings &settings)
{
    const std::vector<Plan> all = plans(settings);
    const auto count = all.size();
    const size_t copies = std::min(count, static_cast<size_t>(settings.copies));
    std::vector<StationPiece> pieces(count + copies);
    std::atomic<size_t> next{0};
    std::atomic<bool> hasFailed{false};
    const auto work = [&] {
        try {
            for (size_t i; (i = next++) < count && !hasFailed;) {
                const Sound sound = play(all[i]);
                pieces[i] = all[i].piece;
                pieces[i].descriptor = describe(encoded(sound, all[i].format));
                // The copies lie far apart, so that all styles have some.
                const size_t stride = copies ? count / copies : count + 1;
                if (i % stride == 0 && i / stride < copies) {
                    StationPiece &copy = pieces[count + i / stride];
                    copy = all[i].piece;
                    copy.copyOf = static_cast<int>(i);
                    copy.descriptor = describe(encoded(sound, all[i].format == mp3 ? opus : mp3));
                }
            }
        } catch (const std::exception &error) {
            std::fprintf(stderr, "%s\n", error.what());
            hasFailed = true;
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < settings.threads; ++i)
        threads.emplace_back(work);
    for (std::thread &thread : threads)
        thread.join();
    if (hasFailed)
        throw std::runtime_error("the pieces could not be made");
    return pieces;
}

void writePieces(const std::vector<StationPiece> &pieces, const std::filesystem::path &file)
{
    // A line a piece; four digits are more than any comparison sees.
    std::ofstream out(file);
    for (const StationPiece &piece : pieces) {
        out << piece.style << ' ' << piece.texture << ' ' << piece.artist << ' ' << piece.album << ' ' << piece.copyOf;
        out.precision(4);
        for (const float number : piece.descriptor)
            out << ' ' << number;
        out << '\n';
    }
    if (!out.flush())
        throw std::runtime_error("cannot write " + file.string());
}

std::vector<StationPiece> readPieces(const std::filesystem::path &file)
{
    std::vector<StationPiece> pieces;
    std::ifstream in(file);
    StationPiece piece;
    while (in >> piece.style >> piece.texture >> piece.artist >> piece.album >> piece.copyOf) {
        for (float &number : piece.descriptor)
            in >> number;
        if (!in)
            throw std::runtime_error(file.string() + " ends within a piece");
        pieces.push_back(piece);
    }
    if (pieces.empty())
        throw std::runtime_error("no pieces in " + file.string());
    return pieces;
}

} // namespace bench
