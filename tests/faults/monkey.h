#pragma once

#include "processsize.h"

#include <QString>

namespace faults {

struct Storm {
    unsigned seed = 1;
    int keys = 5000;
    int perSecond = 50; // at most; a key is pressed when the one before was accepted
};

struct Survival {
    QString problem; // empty: none
    int starts = 1;  // of the radio: keys may also leave it
    int setUps = 1;  // of the device: keys may also sign the account out
    double seconds = 0;
    int worstAnswerMs = 0;
    ProcessSize before; // of the last radio, with its first music
    ProcessSize after;  // of the same, with music after the storm
};

// Presses random keys on a playing radio while the proxy does random wrong. Then, without faults, a station is chosen
// and plays. A problem is a crash, a hang, a sanitizer's report, growth, or no music.
Survival survive(const Storm &storm);

} // namespace faults
