// velmora-setup ACCOUNT-FILE: links this device with the account whose e-mail and password are the file's two lines;
// "-" is standard input. Does nothing when the device has had an account. Used by ./run and by the packages, so that
// the first start ends in music.

#include "service/devicepaths.h"
#include "service/velmorasettings.h"
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
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    // Its list stays when the last account is removed.
    if (QFileInfo::exists(device::settingsFile()) &&
        deviceSettings().childGroups().contains(QLatin1String("Account"))) {
        std::puts("velmora-setup: this device has had an account");
        return 0;
    }
    QFile file(arguments.at(1));
    const bool isOpen =
        arguments.at(1) == QLatin1String("-") ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
    if (!isOpen) {
        std::fprintf(stderr, "velmora-setup: %s\n", qPrintable(file.errorString()));
        return 1;
    }
    const QString userName = QString::fromUtf8(file.readLine()).trimmed();
    const QString password = QString::fromUtf8(file.readLine()).trimmed();
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
