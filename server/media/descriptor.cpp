#include "server/media/descriptor.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <kiss_fftr.h>
#include <numbers>
#include <numeric>
#include <stdexcept>
#include <vector>

namespace velmora::media {

namespace {

constexpr size_t bandCount = 40;
constexpr double lowestBand = 40; // Hz
constexpr double highestBand = 8000;
constexpr float depth = 50;    // dB below the reference; less is silence
constexpr float loudness = 45; // a frame within so many dB of the reference is loud
constexpr size_t fewestLoudFrames = 64;
constexpr double longestSeconds = 20 * 60;
constexpr size_t chromaEvery = 8; // frames

constexpr size_t coefficientCount = 19;
constexpr size_t lagCount = 24;
constexpr size_t wideBands = 5;
constexpr size_t modulationFrames = 256;
constexpr std::array modulationEdges = {0.3, 0.7, 1.2, 1.8, 2.6, 3.8, 5.5, 8.0, 12.0}; // Hz

using Bands = std::array<float, bandCount>;
using Chroma = std::array<float, 12>;

double mel(double hertz)
{
    return 1127 * std::log(1 + hertz / 700);
}

double hertzOf(double mel)
{
    return 700 * (std::exp(mel / 1127) - 1);
}

// The real transform of a window of one size.
class Spectrum {
public:
    explicit Spectrum(size_t size)
        : m_config(kiss_fftr_alloc(static_cast<int>(size), 0, nullptr, nullptr), &freeConfig)
        , m_window(size)
        , m_input(size)
        , m_output(size / 2 + 1)
        , m_power(size / 2 + 1)
    {
        if (!m_config)
            throw std::bad_alloc();
        for (size_t i = 0; i < size; ++i)
            m_window[i] = static_cast<float>(
                0.5 - 0.5 * std::cos(2 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(size)));
    }

    size_t size() const { return m_window.size(); }

    // Power of each bin; valid until the next call.
    const std::vector<float> &power(const float *samples)
    {
        for (size_t i = 0; i < m_window.size(); ++i)
            m_input[i] = samples[i] * m_window[i];
        kiss_fftr(m_config.get(), m_input.data(), m_output.data());
        for (size_t i = 0; i < m_power.size(); ++i)
            m_power[i] = m_output[i].r * m_output[i].r + m_output[i].i * m_output[i].i;
        return m_power;
    }

private:
    static void freeConfig(kiss_fftr_cfg config) { std::free(config); }

    std::unique_ptr<kiss_fftr_state, void (*)(kiss_fftr_cfg)> m_config;
    std::vector<float> m_window, m_input;
    std::vector<kiss_fft_cpx> m_output;
    std::vector<float> m_power;
};

// Triangular bands, equally wide in mel, each at least one bin.
class MelBands {
public:
    MelBands(int rate, size_t frame)
    {
        const double perBin = static_cast<double>(rate) / static_cast<double>(frame);
        const size_t lastBin = frame / 2;
        const double from = mel(lowestBand), step = (mel(highestBand) - from) / (bandCount + 1);
        for (size_t band = 0; band < bandCount; ++band) {
            const double left = hertzOf(from + step * static_cast<double>(band)) / perBin;
            const double peak = hertzOf(from + step * static_cast<double>(band + 1)) / perBin;
            const double right = hertzOf(from + step * static_cast<double>(band + 2)) / perBin;
            Triangle &triangle = m_triangles[band];
            triangle.first = static_cast<size_t>(std::ceil(left));
            for (size_t bin = triangle.first; static_cast<double>(bin) < right && bin <= lastBin; ++bin) {
                const double at = static_cast<double>(bin);
                const double weight = at < peak ? (at - left) / (peak - left) : (right - at) / (right - peak);
                triangle.weights.push_back(static_cast<float>(weight));
            }
            const size_t nearest = static_cast<size_t>(std::lround(peak));
            if (triangle.weights.empty() && nearest <= lastBin) {
                triangle.first = nearest;
                triangle.weights.push_back(1);
            }
        }
    }

    Bands of(const std::vector<float> &power) const
    {
        Bands bands{};
        for (size_t band = 0; band < bandCount; ++band) {
            const Triangle &triangle = m_triangles[band];
            for (size_t i = 0; i < triangle.weights.size(); ++i)
                bands[band] += triangle.weights[i] * power[triangle.first + i];
        }
        return bands;
    }

private:
    struct Triangle {
        size_t first = 0;
        std::vector<float> weights;
    };
    std::array<Triangle, bandCount> m_triangles;
};

struct Moments {
    double sum = 0, squares = 0;
    size_t count = 0;

    void add(double value)
    {
        sum += value;
        squares += value * value;
        ++count;
    }
    double mean() const { return count ? sum / static_cast<double>(count) : 0; }
    double deviation() const
    {
        return count ? std::sqrt(std::max(0.0, squares / static_cast<double>(count) - mean() * mean())) : 0;
    }
};

float percentile(std::vector<float> values, double share)
{
    if (values.empty())
        return 0;
    const auto at = values.begin() + static_cast<std::ptrdiff_t>(share * static_cast<double>(values.size() - 1));
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

// Which pitches sound, from the peaks of a spectrum.
Chroma chromaOf(const std::vector<float> &power, double perBin)
{
    Chroma chroma{};
    const size_t first = static_cast<size_t>(std::ceil(80 / perBin));
    const size_t last = std::min(static_cast<size_t>(2100 / perBin), power.size() - 2);
    if (first < 1 || first >= last)
        return chroma;
    const float highest = *std::max_element(power.begin() + static_cast<std::ptrdiff_t>(first),
                                            power.begin() + static_cast<std::ptrdiff_t>(last) + 1);
    const float least = highest * 0.02f * 0.02f; // 2 % of the highest magnitude
    for (size_t bin = first; bin <= last; ++bin) {
        if (power[bin] <= least || power[bin] < power[bin - 1] || power[bin] <= power[bin + 1])
            continue;
        const double pitch = 12 * std::log2(static_cast<double>(bin) * perBin / 440) + 69;
        const auto nearest = static_cast<long>(std::lround(pitch));
        chroma[static_cast<size_t>(nearest % 12)] += std::sqrt(power[bin]);
    }
    const float sum = std::accumulate(chroma.begin(), chroma.end(), 0.0f);
    if (sum > 0)
        std::for_each(chroma.begin(), chroma.end(), [&](float &value) { value /= sum; });
    return chroma;
}

double correlation(const Chroma &chroma, const std::array<double, 12> &profile, size_t key)
{
    double meanA = 0, meanB = 0;
    for (size_t i = 0; i < 12; ++i) {
        meanA += static_cast<double>(chroma[i]) / 12;
        meanB += profile[i] / 12;
    }
    double product = 0, squareA = 0, squareB = 0;
    for (size_t i = 0; i < 12; ++i) {
        const double a = static_cast<double>(chroma[(i + key) % 12]) - meanA, b = profile[i] - meanB;
        product += a * b;
        squareA += a * a;
        squareB += b * b;
    }
    return squareA > 0 ? product / std::sqrt(squareA * squareB) : 0;
}

double bestKey(const Chroma &chroma, const std::array<double, 12> &profile)
{
    double best = -1;
    for (size_t key = 0; key < 12; ++key)
        best = std::max(best, correlation(chroma, profile, key));
    return best;
}

// How firmly listeners hear each pitch as belonging to a major or minor key, from its key note up.
constexpr std::array<double, 12> majorProfile = {6.35, 2.23, 3.48, 2.33, 4.38, 4.09,
                                                 2.52, 5.19, 2.39, 3.66, 2.29, 2.88};
constexpr std::array<double, 12> minorProfile = {6.33, 2.68, 3.52, 5.38, 2.60, 3.53,
                                                 2.54, 4.75, 3.98, 2.69, 3.34, 3.17};

} // namespace

struct DescriptorBuilder::Analysis {
    explicit Analysis(int samplesASecond)
        : rate(samplesASecond)
        , spectrum(size_t{1} << std::lround(std::log2(0.0929 * samplesASecond)))
        , chromaSpectrum(4 * spectrum.size())
        , bands(rate, spectrum.size())
        , hop(static_cast<size_t>(std::lround(0.02322 * rate)))
        , framesASecond(static_cast<double>(rate) / static_cast<double>(hop))
        , mostSamples(static_cast<size_t>(longestSeconds * rate))
    {
    }

    void analyse();
    void makeDecibels();
    void sound(Descriptor &result) const;
    void beat(Descriptor &result) const;
    void modulation(float *result) const;
    void harmony(Descriptor &result) const;
    void shape(Descriptor &result, double loudnessRange) const;
    std::vector<float> onsetCurve(float *meanRise, float *lowShare, float *highShare) const;

    const int rate;
    Spectrum spectrum;
    Spectrum chromaSpectrum;
    MelBands bands;
    const size_t hop;
    const double framesASecond;
    const size_t mostSamples;

    std::vector<float> buffer; // samples from the start of the next frame on
    size_t received = 0;       // samples
    size_t nextFrame = 0;      // of the bands
    std::vector<Bands> frames; // power, after makeDecibels() dB
    std::vector<Chroma> chroma;

    std::vector<float> levels;      // dB of each frame
    std::vector<size_t> loudFrames; // indices
};

DescriptorBuilder::DescriptorBuilder(int rate)
{
    if (rate < 8000 || rate > 192000)
        throw std::invalid_argument("no descriptor for this sample rate");
    m_analysis = std::make_unique<Analysis>(rate);
}

DescriptorBuilder::~DescriptorBuilder() = default;

void DescriptorBuilder::add(std::span<const float> samples)
{
    Analysis &analysis = *m_analysis;
    samples = samples.first(std::min(samples.size(), analysis.mostSamples - analysis.received));
    analysis.received += samples.size();
    for (const float sample : samples)
        analysis.buffer.push_back(std::isfinite(sample) ? sample : 0);
    analysis.analyse();
}

void DescriptorBuilder::Analysis::analyse()
{
    // A frame of the bands waits until the longer frame of the chroma that begins with it is whole too.
    size_t begin = 0;
    for (; begin + chromaSpectrum.size() <= buffer.size(); begin += hop) {
        frames.push_back(bands.of(spectrum.power(buffer.data() + begin)));
        if (nextFrame++ % chromaEvery == 0)
            chroma.push_back(chromaOf(chromaSpectrum.power(buffer.data() + begin),
                                      static_cast<double>(rate) / static_cast<double>(chromaSpectrum.size())));
    }
    buffer.erase(buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(begin));
}

void DescriptorBuilder::Analysis::makeDecibels()
{
    std::vector<float> powers;
    for (const Bands &frame : frames)
        powers.push_back(std::accumulate(frame.begin(), frame.end(), 0.0f) / bandCount);
    const float reference = std::max(percentile(powers, 0.95), 1e-12f);
    for (size_t i = 0; i < frames.size(); ++i) {
        levels.push_back(10 * std::log10(std::max(powers[i], 1e-30f) / reference));
        if (levels.back() > -loudness && powers[i] > 1e-12f)
            loudFrames.push_back(i);
        for (float &value : frames[i])
            value = std::max(-depth, 10 * std::log10(std::max(value, 1e-30f) / reference));
    }
}

void DescriptorBuilder::Analysis::sound(Descriptor &result) const
{
    static const auto cosines = [] {
        std::array<std::array<float, bandCount>, coefficientCount> table{};
        for (size_t k = 0; k < coefficientCount; ++k) {
            for (size_t band = 0; band < bandCount; ++band)
                table[k][band] = static_cast<float>(std::sqrt(2.0 / bandCount) *
                                                    std::cos(std::numbers::pi * static_cast<double>(k + 1) *
                                                             (static_cast<double>(band) + 0.5) / bandCount));
        }
        return table;
    }();
    std::array<Moments, coefficientCount> coefficients;
    std::array<Moments, number::cepstrumChanges> changes;
    std::array<float, coefficientCount> before{};
    size_t beforeFrame = 0;
    for (size_t i = 0; i < loudFrames.size(); i += 2) {
        const Bands &frame = frames[loudFrames[i]];
        std::array<float, coefficientCount> cepstrum;
        for (size_t k = 0; k < coefficientCount; ++k) {
            cepstrum[k] = std::inner_product(frame.begin(), frame.end(), cosines[k].begin(), 0.0f);
            coefficients[k].add(static_cast<double>(cepstrum[k]));
        }
        if (i > 0 && loudFrames[i] - beforeFrame <= 4) { // not across a silence
            for (size_t k = 0; k < changes.size(); ++k)
                changes[k].add(static_cast<double>(cepstrum[k] - before[k]));
        }
        before = cepstrum;
        beforeFrame = loudFrames[i];
    }

    std::array<Moments, 5> plain; // centroid, spread, flatness, 85 % point, low to high
    for (size_t i = 0; i < loudFrames.size(); i += 4) {
        const Bands &frame = frames[loudFrames[i]];
        Bands power;
        std::transform(frame.begin(), frame.end(), power.begin(), [](float dB) { return std::pow(10.0f, dB / 10); });
        const double sum = static_cast<double>(std::accumulate(power.begin(), power.end(), 0.0f));
        double centroid = 0, spread = 0, low = 0, high = 0, logs = 0, reached = 0;
        size_t point = bandCount;
        for (size_t band = 0; band < bandCount; ++band) {
            const double share = static_cast<double>(power[band]) / sum;
            centroid += share * static_cast<double>(band);
            logs += static_cast<double>(frame[band]) / bandCount;
            low += band < 8 ? share : 0;
            high += band >= bandCount - 12 ? share : 0;
            reached += share;
            if (reached >= 0.85 && point == bandCount)
                point = band;
        }
        for (size_t band = 0; band < bandCount; ++band)
            spread += static_cast<double>(power[band]) / sum * std::pow(static_cast<double>(band) - centroid, 2);
        plain[0].add(centroid);
        plain[1].add(std::sqrt(spread));
        plain[2].add(logs - 10 * std::log10(sum / bandCount));
        plain[3].add(static_cast<double>(point));
        plain[4].add(10 * std::log10((low + 1e-6) / (high + 1e-6)));
    }

    auto out = result.begin() + soundGroup.first;
    for (const Moments &moments : coefficients)
        *out++ = static_cast<float>(moments.mean());
    for (const Moments &moments : coefficients)
        *out++ = static_cast<float>(moments.deviation());
    for (const Moments &moments : changes)
        *out++ = static_cast<float>(moments.deviation());
    for (const Moments &moments : plain)
        *out++ = static_cast<float>(moments.mean());
    for (const Moments &moments : plain)
        *out++ = static_cast<float>(moments.deviation());
}

std::vector<float> DescriptorBuilder::Analysis::onsetCurve(float *meanRise, float *lowShare, float *highShare) const
{
    std::vector<float> rises(frames.size(), 0);
    double all = 0, low = 0, high = 0;
    for (size_t i = 1; i < frames.size(); ++i) {
        for (size_t band = 0; band < bandCount; ++band) {
            const float rise = std::max(0.0f, frames[i][band] - frames[i - 1][band]);
            rises[i] += rise / bandCount;
            all += static_cast<double>(rise);
            low += band < 6 ? static_cast<double>(rise) : 0;
            high += band >= bandCount - 14 ? static_cast<double>(rise) : 0;
        }
    }
    *meanRise = static_cast<float>(all / bandCount / static_cast<double>(std::max<size_t>(1, frames.size())));
    *lowShare = static_cast<float>(all > 0 ? low / all : 0);
    *highShare = static_cast<float>(all > 0 ? high / all : 0);

    const auto reach = static_cast<size_t>(std::lround(framesASecond / 2));
    std::vector<double> sums(frames.size() + 1, 0);
    for (size_t i = 0; i < rises.size(); ++i)
        sums[i + 1] = sums[i] + static_cast<double>(rises[i]);
    std::vector<float> onsets(frames.size(), 0);
    for (size_t i = 0; i < rises.size(); ++i) {
        const size_t from = i > reach ? i - reach : 0, to = std::min(rises.size(), i + reach + 1);
        const double mean = (sums[to] - sums[from]) / static_cast<double>(to - from);
        onsets[i] = static_cast<float>(std::max(0.0, static_cast<double>(rises[i]) - mean));
    }
    return onsets;
}

void DescriptorBuilder::Analysis::beat(Descriptor &result) const
{
    auto out = result.begin() + beatGroup.first;
    float meanRise = 0, lowShare = 0, highShare = 0;
    const std::vector<float> onsets = onsetCurve(&meanRise, &lowShare, &highShare);
    Moments moments;
    for (const float onset : onsets)
        moments.add(static_cast<double>(onset));

    // Normalised autocorrelation up to the longest lag that the tempo looks at.
    const auto longest = static_cast<size_t>(framesASecond * 60 / 30 * 3) + 2;
    std::vector<double> correlations(longest, 0);
    double energy = 0;
    for (const float onset : onsets)
        energy += std::pow(static_cast<double>(onset) - moments.mean(), 2);
    for (size_t lag = 1; lag < std::min(longest, onsets.size()); ++lag) {
        double sum = 0;
        for (size_t i = lag; i < onsets.size(); ++i)
            sum += (static_cast<double>(onsets[i]) - moments.mean()) *
                   (static_cast<double>(onsets[i - lag]) - moments.mean());
        correlations[lag] = energy > 0 ? sum / energy : 0;
    }
    const auto at = [&](double lag) {
        const auto below = static_cast<size_t>(lag);
        if (below + 1 >= correlations.size())
            return 0.0;
        const double part = lag - static_cast<double>(below);
        return correlations[below] * (1 - part) + correlations[below + 1] * part;
    };
    const auto lagOf = [&](double bpm) { return framesASecond * 60 / bpm; };

    for (size_t b = 0; b < lagCount; ++b)
        *out++ = static_cast<float>(at(lagOf(30 * std::exp2(3.4 * static_cast<double>(b) / lagCount))));

    size_t onsetCount = 0;
    const double threshold = moments.mean() + moments.deviation();
    for (size_t i = 1; i + 1 < onsets.size(); ++i) {
        if (static_cast<double>(onsets[i]) > threshold && onsets[i] >= onsets[i - 1] && onsets[i] > onsets[i + 1])
            ++onsetCount;
    }
    double clearness = 0;
    for (double lag = lagOf(240); lag <= lagOf(40); lag += 0.5)
        clearness = std::max(clearness, at(lag));
    double best = -1e9, tempo = 110;
    for (double bpm = 50; bpm <= 200; bpm *= 1.005) {
        const double lag = lagOf(bpm);
        const double combed = at(lag) + at(2 * lag) / 2 + at(3 * lag) / 4 + at(lag / 2) / 4;
        const double distance = std::log2(bpm / 110) / 0.9;
        const double score = combed * std::exp(-0.5 * distance * distance);
        if (score > best) {
            best = score;
            tempo = bpm;
        }
    }
    *out++ = static_cast<float>(static_cast<double>(onsetCount) * framesASecond / static_cast<double>(onsets.size()));
    *out++ = static_cast<float>(clearness);
    *out++ = static_cast<float>(moments.mean() > 0 ? moments.deviation() / moments.mean() : 0);
    *out++ = lowShare;
    *out++ = highShare;
    *out++ = meanRise;
    *out++ = static_cast<float>(std::log2(tempo));
    modulation(&*out);
}

void DescriptorBuilder::Analysis::modulation(float *result) const
{
    constexpr size_t rangeCount = modulationEdges.size() - 1;
    Spectrum windowed(modulationFrames);
    std::array<std::array<Moments, rangeCount>, wideBands> magnitudes;
    std::array<float, modulationFrames> series;
    for (size_t begin = 0; begin + modulationFrames <= frames.size(); begin += modulationFrames / 2) {
        constexpr size_t bandsEach = bandCount / wideBands;
        for (size_t wide = 0; wide < wideBands; ++wide) {
            float sum = 0;
            for (size_t i = 0; i < modulationFrames; ++i) {
                const auto first = frames[begin + i].begin() + wide * bandsEach;
                series[i] = std::accumulate(first, first + bandsEach, 0.0f) / static_cast<float>(bandsEach);
                sum += series[i];
            }
            for (float &value : series)
                value -= sum / modulationFrames;
            const std::vector<float> &power = windowed.power(series.data());
            for (size_t bin = 1; bin < power.size(); ++bin) {
                const double hertz = static_cast<double>(bin) * framesASecond / modulationFrames;
                const auto range = std::upper_bound(modulationEdges.begin(), modulationEdges.end(), hertz);
                if (range != modulationEdges.begin() && range != modulationEdges.end())
                    magnitudes[wide][static_cast<size_t>(range - modulationEdges.begin()) - 1].add(
                        std::sqrt(static_cast<double>(power[bin])) / modulationFrames * 4);
            }
        }
    }
    for (const auto &ranges : magnitudes) {
        for (const Moments &moments : ranges)
            *result++ = static_cast<float>(std::log1p(moments.mean()));
    }
}

void DescriptorBuilder::Analysis::harmony(Descriptor &result) const
{
    Chroma mean{};
    Moments change, entropy;
    const Chroma *before = nullptr;
    size_t count = 0;
    for (size_t i = 0; i < chroma.size(); ++i) {
        const bool isLoud = i * chromaEvery < levels.size() && levels[i * chromaEvery] > -loudness;
        if (!isLoud)
            continue;
        double uncertainty = 0, difference = 0;
        for (size_t pitch = 0; pitch < 12; ++pitch) {
            const auto share = static_cast<double>(chroma[i][pitch]);
            mean[pitch] += chroma[i][pitch];
            uncertainty -= share > 0 ? share * std::log(share) : 0;
            if (before)
                difference += std::abs(share - static_cast<double>((*before)[pitch]));
        }
        entropy.add(uncertainty);
        if (before)
            change.add(difference);
        before = &chroma[i];
        ++count;
    }
    if (count > 0)
        std::for_each(mean.begin(), mean.end(), [&](float &value) { value /= static_cast<float>(count); });

    auto out = result.begin() + harmonyGroup.first;
    for (size_t k = 1; k <= 6; ++k) {
        std::complex<double> sum = 0;
        for (size_t pitch = 0; pitch < 12; ++pitch)
            sum += static_cast<double>(mean[pitch]) *
                   std::polar(1.0, -2 * std::numbers::pi * static_cast<double>(k * pitch) / 12);
        *out++ = static_cast<float>(std::abs(sum));
    }
    *out++ = static_cast<float>(bestKey(mean, majorProfile) - bestKey(mean, minorProfile));
    *out++ = static_cast<float>(change.mean());
    *out = static_cast<float>(entropy.mean());
}

void DescriptorBuilder::Analysis::shape(Descriptor &result, double loudnessRange) const
{
    const float median = percentile(levels, 0.5);
    auto out = result.begin() + shapeGroup.first;
    *out++ = percentile(levels, 0.95) - median;
    *out++ = std::min(median - std::max(percentile(levels, 0.1), -depth), depth);
    *out++ = static_cast<float>(loudFrames.size()) / static_cast<float>(frames.size());
    *out = static_cast<float>(std::clamp(loudnessRange, 0.0, 60.0));
}

std::optional<Descriptor> DescriptorBuilder::finish(double loudnessRange)
{
    Analysis &analysis = *m_analysis;
    // The end is filled up with silence, so that the last frames of the track count.
    analysis.buffer.resize(analysis.buffer.size() + analysis.chromaSpectrum.size() - analysis.hop, 0.0f);
    analysis.analyse();
    if (analysis.frames.empty())
        return std::nullopt;
    analysis.makeDecibels();
    if (analysis.loudFrames.size() < fewestLoudFrames)
        return std::nullopt;
    Descriptor result{};
    analysis.sound(result);
    analysis.beat(result);
    analysis.harmony(result);
    analysis.shape(result, loudnessRange);
    const bool isFinite = std::all_of(result.begin(), result.end(), [](float value) { return std::isfinite(value); });
    return isFinite ? std::optional(result) : std::nullopt;
}

bool isSpeechLike(const Descriptor &descriptor)
{
    const auto first = descriptor.begin() + number::firstCepstrumChange;
    const float change = std::accumulate(first, first + number::cepstrumChanges, 0.0f) / number::cepstrumChanges;
    return descriptor[number::clearness] < 0.1f && change > 9;
}

std::optional<int> clearTempoOf(const Descriptor &descriptor)
{
    if (descriptor[number::clearness] < clearTempo)
        return std::nullopt;
    return static_cast<int>(std::lround(std::exp2(descriptor[number::logTempo])));
}

} // namespace velmora::media
