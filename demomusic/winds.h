#pragma once

#include "note.h"
#include "oscillator.h"

namespace velmora::demo {

// Blown instruments: breath, a delayed vibrato, soft beginnings.
Buffer whistle(const Note &note);
Buffer clarinet(const Note &note);
Buffer mutedHorn(const Note &note);

} // namespace velmora::demo
