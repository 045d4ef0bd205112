#pragma once

#include "scenarios.h"

#include <QString>

namespace faults {

// What a listener has seen and heard of a scenario.
struct Verdict {
    QString problem;       // empty: all as allowed
    double silence = 0;    // seconds, from the first fault to the end
    double longest = 0;    // of it without a break
    double took = 0;       // seconds
    int worstAnswerMs = 0; // of `velmora-menu status`
    int hits = 0;          // requests that met a fault
    QString end;           // "music", or what the box says
};

// Runs the real radio, menu system and service with the proxy between them.
Verdict run(const Scenario &scenario);

// Makes both music folders, once. False when they cannot be made.
bool makeMusic();
QString shortLibrary(); // the demo catalogue with tracks of 22 s

} // namespace faults
