#pragma once

#include <QString>

// What the radio looks like when its pictures are missing: plain surfaces under every text, so that it can be read and
// the focus is seen.
namespace plainlook {

bool isNeeded(); // a surface that carries text is missing
QString styleSheet();

} // namespace plainlook
