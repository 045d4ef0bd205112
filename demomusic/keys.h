#pragma once

#include "note.h"
#include "oscillator.h"

namespace velmora::demo {

// Struck and held keys. All sounds begin and end without a click.

Buffer piano(const Note &note, float softness = 0); // softness 1: felt before the strings
Buffer electricPiano(const Note &note);
Buffer organ(const Note &note, float brightness = 0.5f);
Buffer accordion(const Note &note);
Buffer vibraphone(const Note &note);
Buffer marimba(const Note &note);
Buffer glassBell(const Note &note);
Buffer singingBowl(const Note &note);

} // namespace velmora::demo
