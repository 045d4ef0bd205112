#pragma once

#include <QStringList>

// The settings of the device on the command line. No menu system needs to run.
namespace menusystem {

// Whether the words are `get KEY`, `set KEY VALUE` or `settings`.
bool isSettingCommand(const QStringList &words);
// Prints a value, changes a value, or prints the whole table. Returns the process's exit code: 0 done, 1 the key or the
// value is not usable, or the file cannot be written.
int runSettingsCommand(const QStringList &words);

} // namespace menusystem
