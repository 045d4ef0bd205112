#include "mixer.h"

#include "filter.h"
#include "reverb.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <numbers>

namespace velmora::demo {
namespace {

constexpr float ceiling = 0.88f; // -1.1 dB: a little room for rounding

// Looks 6 ms ahead, so that the gain is already down when the peak comes.
void limit(Buffer &left, Buffer &right)
{
    const size_t window = samples(0.006), length = left.size();
    const float recovery = float(1 - std::exp(-1.0 / (0.12 * sampleRate)));
    Buffer wanted(length);
    float gain = 1;
    for (size_t i = 0; i < length; ++i) {
        const float peak = std::max(std::abs(left[i]), std::abs(right[i]));
        const float need = peak > ceiling ? ceiling / peak : 1;
        gain += (1 - gain) * recovery;
        gain = std::min(gain, need);
        wanted[i] = gain;
    }
    // The minimum of the gain over the coming window, then its average over a window: it never exceeds what a peak
    // allows.
    std::deque<size_t> least;
    double sum = 0;
    Buffer history(window, 1.0f);
    for (size_t i = 0; i < length + window; ++i) {
        if (i < length) {
            while (!least.empty() && wanted[least.back()] >= wanted[i])
                least.pop_back();
            least.push_back(i);
        }
        if (i < window)
            continue;
        const size_t now = i - window;
        while (!least.empty() && least.front() < now)
            least.pop_front();
        const float lowest = least.empty() ? 1 : wanted[least.front()];
        if (now == 0) { // no average before the start: the first sample may be a peak
            std::fill(history.begin(), history.end(), lowest);
            sum = double(lowest) * double(window);
        }
        sum += double(lowest) - double(history[now % window]);
        history[now % window] = lowest;
        const float applied = float(sum / double(window));
        left[now] *= applied;
        right[now] *= applied;
    }
}

// Soft clipping: linear below one half, rounded above, never more than 1.
float rounded(float x)
{
    const float size = std::abs(x);
    if (size <= 0.5f)
        return x;
    const float bent = 0.5f + 0.5f * std::tanh((size - 0.5f) * 2);
    return x < 0 ? -bent : bent;
}

} // namespace

Mixer::Mixer(double seconds, const Room &room)
    : m_room(room)
    , m_left(samples(seconds), 0.0f)
    , m_right(m_left.size(), 0.0f)
    , m_send(m_left.size(), 0.0f)
    , m_echo(room.echoSeconds > 0 ? m_left.size() : 0, 0.0f)
{
}

void Mixer::duck(const std::vector<double> &times, float depth, double recoverySeconds)
{
    m_beats = times;
    m_depth = depth;
    m_recovery = recoverySeconds;
}

float Mixer::duckGain(double seconds) const
{
    const auto after = std::upper_bound(m_beats.begin(), m_beats.end(), seconds + 0.004);
    if (after == m_beats.begin())
        return 1;
    const double since = seconds + 0.004 - *std::prev(after); // a little early, to make room for the beat
    if (since < 0.004)
        return 1 - m_depth * float(since / 0.004);
    const double part = std::min(1.0, (since - 0.004) / m_recovery);
    return 1 - m_depth * float(0.5 + 0.5 * std::cos(std::numbers::pi * part));
}

void Mixer::add(const Buffer &sound, double startSeconds, const Placement &placement)
{
    const size_t start = samples(startSeconds);
    if (start >= m_left.size())
        return;
    const size_t length = std::min(sound.size(), m_left.size() - start);
    const float angle = (placement.pan + 1) * 0.125f; // in turns; equal-power panning
    const float toLeft = placement.gain * sine(0.25f + angle), toRight = placement.gain * sine(angle);
    const float toRoom = placement.gain * placement.reverb, toEcho = placement.gain * placement.echo;
    const bool ducked = placement.ducked && !m_beats.empty(), echoed = toEcho > 0 && !m_echo.empty();
    constexpr size_t block = 32;
    float duckNow = ducked ? duckGain(startSeconds) : 1;
    for (size_t from = 0; from < length; from += block) {
        const size_t end = std::min(length, from + block);
        float step = 0;
        if (ducked) {
            const float target = duckGain(startSeconds + double(from + block) / sampleRate);
            step = (target - duckNow) / block;
        }
        for (size_t i = from; i < end; ++i) {
            const float value = sound[i] * duckNow;
            duckNow += step;
            m_left[start + i] += value * toLeft;
            m_right[start + i] += value * toRight;
            m_send[start + i] += value * toRoom;
            if (echoed)
                m_echo[start + i] += value * toEcho;
        }
    }
}

// A ping-pong echo; each repeat is darker than the one before.
void Mixer::addEcho()
{
    const size_t delay = std::max<size_t>(1, samples(m_room.echoSeconds));
    const float feedback = float(m_room.echoFeedback);
    Buffer toLeft(delay, 0.0f), toRight(delay, 0.0f);
    OnePole darkLeft(3500), darkRight(3500), thin(250);
    for (size_t i = 0, position = 0; i < m_echo.size(); ++i) {
        const float onLeft = toLeft[position], onRight = toRight[position];
        toLeft[position] = thin.high(m_echo[i]) + feedback * darkLeft.low(onRight);
        toRight[position] = feedback * darkRight.low(onLeft);
        position = position + 1 == delay ? 0 : position + 1;
        m_left[i] += 0.8f * onLeft + 0.2f * onRight;
        m_right[i] += 0.2f * onLeft + 0.8f * onRight;
        m_send[i] += 0.2f * (onLeft + onRight);
    }
}

void Mixer::master(const Mastering &mastering)
{
    if (!m_echo.empty())
        addEcho();
    Reverb(m_room.decay, m_room.brightness, m_room.size).process(m_send, m_left, m_right);

    for (Buffer *channel : {&m_left, &m_right})
        Biquad::highPass(28).run(*channel);
    if (mastering.treble != 0)
        for (Buffer *channel : {&m_left, &m_right})
            Biquad::highShelf(2500, mastering.treble).run(*channel);

    const float gain = float(std::pow(10, (mastering.loudness - loudness(m_left, m_right)) / 20));
    const float push = float(1 + mastering.drive);
    for (Buffer *channel : {&m_left, &m_right})
        for (float &sample : *channel) {
            sample *= gain;
            if (mastering.drive > 0)
                sample = rounded(sample * push) / push * 1.1f;
        }
    // Restores the loudness that the soft clipping removed; the limiter comes last.
    const float back = float(std::pow(10, std::min(6.0, mastering.loudness - loudness(m_left, m_right)) / 20));
    for (Buffer *channel : {&m_left, &m_right})
        for (float &sample : *channel)
            sample *= back;
    limit(m_left, m_right);

    const size_t silence = std::min(m_left.size(), samples(0.08));
    for (Buffer *channel : {&m_left, &m_right}) {
        channel->resize(channel->size() - silence);
        const size_t length = std::min(channel->size(), samples(mastering.fadeSeconds));
        for (size_t i = 0; i < length; ++i) {
            const float rest = float(i) / float(length);
            (*channel)[channel->size() - 1 - i] *= rest * rest * (3 - 2 * rest);
        }
        channel->resize(channel->size() + silence, 0.0f);
    }
}

double loudness(const Buffer &left, const Buffer &right)
{
    const size_t block = samples(0.4);
    std::vector<double> energies((left.size() + block - 1) / block, 0.0);
    for (const Buffer *channel : {&left, &right}) {
        // The standard's shelf has its poles at 1682 Hz; this filter's poles lie above its middle frequency.
        Biquad shelf = Biquad::highShelf(1499, 4), pass = Biquad::highPass(38, 0.5);
        for (size_t i = 0; i < channel->size(); ++i) {
            const double x = double(pass.next(shelf.next((*channel)[i])));
            energies[i / block] += x * x / double(block);
        }
    }
    const auto level = [](double energy) { return -0.691 + 10 * std::log10(energy + 1e-12); };
    const auto mean = [&](double gate) {
        double sum = 0;
        int count = 0;
        for (double energy : energies)
            if (level(energy) > gate) {
                sum += energy;
                ++count;
            }
        return count ? level(sum / count) : -120.0;
    };
    return mean(std::max(-60.0, mean(-60) - 10));
}

} // namespace velmora::demo
