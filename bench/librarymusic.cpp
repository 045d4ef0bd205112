#include "bench/librarymusic.h"

#include <array>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <sndfile.h>
#include <thread>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

void append(std::string &bytes, uint32_t value, int count)
{
    for (int i = count - 1; i >= 0; --i)
        bytes += static_cast<char>(value >> 8 * i);
}

} // namespace

namespace bench {

std::string taggedMp3(int number)
{
    std::string frames;
    const auto text = [&](const char *name, const std::string &value) {
        frames += name;
        append(frames, static_cast<uint32_t>(value.size() + 1), 4);
        frames += std::string(2, '\0') + '\3' + value;
    };
    text("TIT2", "Song " + std::to_string(number));
    text("TPE1", "Artist " + std::to_string(number / 40));
    text("TALB", "Album " + std::to_string(number / 10));
    text("TCON", number % 3 == 0 ? "Folk" : "Ambient");
    text("TYER", "1999");
    std::string file = "ID3\3";
    file += std::string(2, '\0');
    for (int shift = 21; shift >= 0; shift -= 7)
        file += static_cast<char>(frames.size() >> shift & 0x7f);
    file += frames;
    std::string frame("\xff\xfb\x90\x64", 4);
    frame.resize(417, '\0');
    for (int i = 0; i < 1150; ++i) {
        file += frame;
        file.back() = static_cast<char>(number >> 8 * (i % 3)); // no two files have the same sound
    }
    return file;
}

bool renderMusic(const fs::path &folder, int copies)
{
    const fs::path rendered = folder.parent_path() / "rendered";
    const std::string command = "'" BENCH_DEMOMUSIC "' --each 1 '" + rendered.string() + "' >/dev/null 2>&1 </dev/null";
    if (std::system(command.c_str()) != 0) // NOLINT(cert-env33-c): fixed program, own folder
        return false;
    fs::create_directories(folder);
    int number = 0;
    for (const auto &entry : fs::recursive_directory_iterator(rendered / "music")) {
        SF_INFO info{};
        SNDFILE *source =
            entry.path().extension() == ".flac" ? sf_open(entry.path().c_str(), SFM_READ, &info) : nullptr;
        if (!source)
            continue;
        std::vector<float> samples(static_cast<size_t>(info.frames * info.channels));
        samples.resize(static_cast<size_t>(sf_readf_float(source, samples.data(), info.frames) * info.channels));
        sf_close(source);
        const std::pair<const char *, int> formats[] = {{".flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16},
                                                        {".mp3", SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III},
                                                        {".ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS},
                                                        {".wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16}};
        for (int copy = 0; copy < copies; ++copy) {
            const auto &[extension, format] = formats[number % 4];
            SF_INFO target{};
            target.samplerate = info.samplerate;
            target.channels = info.channels;
            target.format = format;
            const fs::path file = folder / (std::to_string(number) + extension);
            SNDFILE *sound = sf_open(file.c_str(), SFM_WRITE, &target);
            if (!sound)
                return false;
            sf_set_string(sound, SF_STR_TITLE, ("Piece " + std::to_string(number)).c_str());
            sf_set_string(sound, SF_STR_ARTIST, ("Player " + std::to_string(number / 3)).c_str());
            const auto frames = static_cast<sf_count_t>(samples.size()) / info.channels - copy * info.samplerate * 2;
            // In pieces: the Vorbis encoder takes each one on its stack.
            for (sf_count_t at = 0; at < frames; at += 4096)
                sf_writef_float(sound, samples.data() + at * info.channels, std::min<sf_count_t>(4096, frames - at));
            sf_close(sound);
            ++number;
        }
    }
    return number > 0;
}

bool makeManyTracks(const fs::path &folder, int count)
{
    constexpr int rate = 16000, shortest = 21, longest = 51, perFolder = 500;
    std::atomic<bool> isWhole{true};
    std::array<int16_t, 1 << 14> wave{}; // one period
    for (size_t i = 0; i < wave.size(); ++i)
        wave[i] = static_cast<int16_t>(6000 * std::sin(2 * M_PI * static_cast<double>(i) / wave.size()));
    const auto make = [&](int first) {
        std::vector<int16_t> samples;
        for (int number = first; number < count && isWhole; number += 2) {
            const size_t low = (80 + number % 701) * wave.size() / rate;
            const size_t high = (900 + number % 1999) * wave.size() / rate;
            samples.resize(rate * shortest + static_cast<size_t>(number) * 7919 % (rate * (longest - shortest)));
            for (size_t i = 0; i < samples.size(); ++i)
                samples[i] = static_cast<int16_t>(wave[low * i % wave.size()] + wave[high * i % wave.size()] / 3);
            const fs::path file = folder / std::to_string(number / perFolder) / (std::to_string(number) + ".flac");
            fs::create_directories(file.parent_path());
            SF_INFO target{};
            target.samplerate = rate;
            target.channels = 1;
            target.format = SF_FORMAT_FLAC | SF_FORMAT_PCM_16;
            SNDFILE *sound = sf_open(file.c_str(), SFM_WRITE, &target);
            if (!sound) {
                isWhole = false;
                return;
            }
            sf_set_string(sound, SF_STR_TITLE, ("Tones " + std::to_string(number)).c_str());
            sf_set_string(sound, SF_STR_ARTIST, ("Player " + std::to_string(number / 12)).c_str());
            const auto frames = static_cast<sf_count_t>(samples.size());
            if (sf_writef_short(sound, samples.data(), frames) != frames)
                isWhole = false;
            sf_close(sound);
        }
    };
    std::thread other(make, 1);
    make(0);
    other.join();
    return isWhole;
}

} // namespace bench
