#pragma once

#include <QString>

// The look of the radio when its pictures are missing: every text has a plain surface under it, so that it can be read,
// and the focus stays visible.
namespace plainlook {

bool isNeeded(); // a surface that carries text is missing
QString styleSheet();

} // namespace plainlook
