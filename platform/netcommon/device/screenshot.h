#pragma once

#include <QString>

namespace netcommon {

// Writes what the radio shows on its canvas to a PNG file that only its owner can read; a file of that name is
// replaced, a link is replaced and not followed. Empty when done, otherwise what went wrong. GUI thread.
QString writeScreenshot(const QString &absolutePath);

} // namespace netcommon
