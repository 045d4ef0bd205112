// velmora-setup ACCOUNT-FILE: sets this device up with the account whose e-mail and password are the file's two lines.
// Does nothing when there is a settings file already. Used by ./run, so that the first start ends in music.

#include "service/devicepaths.h"
#include "tools/setup/firstaccount.h"
#include "velmora_ws.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() != 2) {
        std::fputs("usage: velmora-setup ACCOUNT-FILE\n", stderr);
        return 2;
    }
    if (QFileInfo::exists(device::settingsFile())) {
        std::puts("velmora-setup: this device is set up already");
        return 0;
    }
    QFile file(arguments.at(1));
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "velmora-setup: %s\n", qPrintable(file.errorString()));
        return 1;
    }
    const QString userName = QString::fromUtf8(file.readLine()).trimmed();
    const QString password = QString::fromUtf8(file.readLine()).trimmed();
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    if (velmora_ws_init() != VLM_WS_ERR_OK) {
        std::fputs("velmora-setup: the web-service library does not start\n", stderr);
        return 1;
    }
    const QString problem = setUpFirstAccount(device::settingsFile(), userName, password);
    velmora_ws_uninit();
    if (!problem.isEmpty()) {
        std::fprintf(stderr, "velmora-setup: %s\n", qPrintable(problem));
        return 1;
    }
    std::printf("velmora-setup: this device is linked with %s\n", qPrintable(userName));
    return 0;
}
