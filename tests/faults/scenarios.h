#pragma once

#include "fault.h"

#include <string>
#include <vector>

namespace faults {

enum class End {
    Music, // it plays, without a box above it
    Word   // a box says what is wrong
};

// One row of the table.
struct Scenario {
    std::string name = {};
    std::vector<Fault> faults = {};
    double silence = 1; // seconds without sound that are allowed, from the first fault to the end
    End end = End::Music;
    std::string word = {};                       // what the box begins with
    std::vector<std::string> keysAfterWord = {}; // then music plays
    bool isFromLaunch = false; // the faults begin before the radio; else after its first seconds of music
    bool isLong = false;       // tracks of more than a minute; else of 22 s
    bool isLastTrack = false;  // the first three entries are unplayable, so that the playlist ends with the track heard
    int rate = 0;              // of the audio, bytes a second; 0: unlimited. 100,000 is about playing speed
    std::vector<std::string> keys = {}; // pressed when the faults have begun
    double keysAfter = 1;               // seconds after the faults began
    int settle = 4;                     // seconds of music after the faults that must be heard
    int within = 90;                    // seconds for all of it
    std::vector<std::string> serverOptions = {};
    bool isQuick = false; // part of ./test
};

const std::vector<Scenario> &scenarios();

} // namespace faults
