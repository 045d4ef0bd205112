#pragma once

#include <QtGlobal>

namespace netcommon {

// Adds to what statistics::audioSecondsRendered() answers. Any thread.
void addRenderedAudio(qint64 ns);

} // namespace netcommon
