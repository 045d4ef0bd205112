#include "service/devicepaths.h"

#include <cstdlib>

namespace device {

QString settingsFile()
{
    return QStringLiteral("/var/local/misc/velmora/velmora_5.ini");
}
QString scratchDir()
{
    return QStringLiteral("/tmp/velmora");
}
QString loginFile()
{
    return QStringLiteral("/mnt/sda1/velmora_login.ini");
}

int makeScratchDir()
{
    return std::system("mkdir /tmp/velmora");
}
int removeScratchDir()
{
    return std::system("rm -rf /tmp/velmora");
}
int syncFiles()
{
    return std::system("sync&");
}

} // namespace device
