#pragma once

#include "oscillator.h"

#include <array>

namespace velmora::demo {

// A feedback delay network of eight lines. One channel in, two out.
class Reverb {
public:
    // `decay`: seconds to -60 dB; `brightness`: Hz above which the walls absorb; `size` 0.4 (room) to 1.5 (cathedral).
    Reverb(double decay, double brightness, double size);
    // Adds the reverb of `input` to both channels; all three are equally long.
    void process(const Buffer &input, Buffer &left, Buffer &right);

private:
    static constexpr size_t lines = 8;
    struct Line {
        Buffer memory;
        size_t position = 0;
        float gain = 0, state = 0;
    };
    struct Diffuser {
        Buffer memory;
        size_t position = 0;
        float next(float input);
    };
    std::array<Line, lines> m_lines;
    std::array<Diffuser, 3> m_diffusers;
    float m_damping;
};

} // namespace velmora::demo
