#pragma once

#include <QString>
#include <QStringList>

// The device of the tests: the product's paths under a private root; shell commands are recorded and not run. The root
// is the argument of setPrivateRoot, else the environment variable VELMORA_PRIVATE_ROOT, else a folder that is removed
// when the process ends.
class DeviceTwin {
public:
    static void setPrivateRoot(const QString &root); // makes the folders that a device has
    static QStringList shellCommands();
};
