#pragma once

#include "oscillator.h"

#include <cstdint>

namespace velmora::demo {

// Single strokes. At velocity 1 their peaks have the proportions of a drum kit: kick and snare 1, cymbals and hands
// about a half, shaker and brush a quarter. Different seeds give slightly different strokes.

Buffer dryKick(float velocity);  // rock: beater and shell
Buffer deepKick(float velocity); // dance: a falling sine
Buffer feltKick(float velocity); // small jazz drum
Buffer snare(float velocity, uint64_t seed);
Buffer brushTap(float velocity, uint64_t seed);
Buffer brushSweep(double seconds, float velocity, uint64_t seed); // in circles on the skin
Buffer clap(float velocity, uint64_t seed);
Buffer rimClick(float velocity);
Buffer tom(float velocity, double hertz, uint64_t seed);
Buffer hat(float velocity, double seconds, uint64_t seed); // short: closed, long: open
Buffer ride(float velocity, uint64_t seed);
Buffer crash(float velocity, uint64_t seed);
Buffer shaker(float velocity, uint64_t seed);
Buffer tambourine(float velocity, uint64_t seed);
Buffer stomp(float velocity); // a foot on boards

} // namespace velmora::demo
