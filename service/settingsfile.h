#pragma once

#include <QString>

// What happens to the settings file before it is opened.
namespace settingsfile {

// A file that cannot be read, is no ini file or holds NUL bytes is renamed to <name>.damaged-<date and time>, so that
// an empty one can be started; the new name is returned, or nothing when the file is sound or missing. A sound or
// missing file becomes readable for its owner only.
QString prepare(const QString &fileName);

} // namespace settingsfile
