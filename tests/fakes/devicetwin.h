#pragma once

#include <QString>
#include <QStringList>

// The tests' device: the same paths as the product's under a private root, and shell commands that are recorded
// instead of run. The root is what setPrivateRoot says, else the environment's VELMORA_PRIVATE_ROOT, else a folder that
// is removed when the process ends.
class DeviceTwin {
public:
    static void setPrivateRoot(const QString &root); // makes the folders that a device has
    static QStringList shellCommands();
};
