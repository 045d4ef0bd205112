#pragma once

#include <QString>

// What happens to the settings file before it is opened.
namespace settingsfile {

struct Prepared {
    bool isReadable = true; // false: the file is there and cannot be opened, after several attempts; it is left alone
    QString aside;          // where a damaged file is kept now; empty when none was
};

// A file whose content is no ini file or holds NUL bytes is renamed to <name>.damaged-<date and time>, so that an empty
// one can be started. So is a folder in its place. A sound or missing file becomes readable for its owner only.
Prepared prepare(const QString &fileName);

} // namespace settingsfile
