// The device's menu system, and its remote control on the command line.

#include "arguments.h"
#include "commandclient.h"
#include "menuserver.h"
#include "screenscale.h"
#include "servicemanager.h"
#include "settingscommand.h"
#include "socketplace.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <csignal>
#include <cstdio>

namespace {

using namespace menusystem;

int fail(int code, const QString &text)
{
    std::fprintf(stderr, "velmora-menu: %s\n", qPrintable(text));
    return code;
}

int printScreenSize()
{
    const QSize size = screenSize();
    if (size.isEmpty())
        return 1;
    std::printf("%dx%d\n", size.width(), size.height());
    return 0;
}

// From now on they wait until the server reads them.
void holdSignals()
{
    sigset_t held;
    ::sigemptyset(&held);
    ::sigaddset(&held, SIGINT);
    ::sigaddset(&held, SIGTERM);
    ::sigprocmask(SIG_BLOCK, &held, nullptr);
}

// Beside this program, or beside its folder in a build.
QString usualHome()
{
    const QDir folder(QCoreApplication::applicationDirPath());
    const QString installed = folder.filePath(QStringLiteral("velmora-home"));
    return QFileInfo::exists(installed) ? installed : folder.absoluteFilePath(QStringLiteral("../home/velmora-home"));
}

int runRadio(Arguments arguments, const QString &socket)
{
    if (arguments.home.isEmpty())
        arguments.home = usualHome();
    MenuServer server(arguments);
    double scale = arguments.scale.value_or(1);
    if (!arguments.scale)
        scale = scaleFor(screenSize(), arguments.isWindowed);
    QString reason;
    if (!server.start(socket, scale, &reason))
        return fail(1, QStringLiteral("cannot listen at %1: %2 (--socket takes another place)").arg(socket, reason));
    const ServiceManager manager;
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    QStringList words;
    for (int index = 1; index < argc; ++index)
        words += QString::fromLocal8Bit(argv[index]);
    QString reason;
    const auto arguments = parseArguments(words, &reason);
    if (!arguments) {
        std::fprintf(stderr, "velmora-menu: %s\n%s", qPrintable(reason), qPrintable(usage()));
        return 2;
    }
    using Mode = Arguments::Mode;
    if (arguments->mode == Mode::Help) {
        std::fputs(qPrintable(usage()), stdout);
        return 0;
    }
    const bool isRadio = arguments->mode == Mode::Run;
    if (isRadio)
        holdSignals();
    const QCoreApplication application(argc, argv);
    if (arguments->mode == Mode::MeasureScreen)
        return printScreenSize();
    if (arguments->mode == Mode::Settings)
        return runSettingsCommand(arguments->settingWords);
    QString socket = arguments->socket;
    if (socket.isEmpty())
        socket = usualSocket(qEnvironmentVariable("XDG_RUNTIME_DIR"), QDir::tempPath(), isRadio, &reason);
    if (socket.isEmpty())
        return fail(1, isRadio ? QStringLiteral("no place for the socket: %1").arg(reason)
                               : QStringLiteral("no menu system runs (%1)").arg(reason));
    return isRadio ? runRadio(*arguments, socket) : runCommand(arguments->requests, socket);
}
