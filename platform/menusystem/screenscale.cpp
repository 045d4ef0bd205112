#include "screenscale.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QProcess>
#include <QScreen>

#include <cstdio>

namespace menusystem {

namespace {

constexpr double windowShare = 0.8;

// "1280x720" or "1280,720", and what comes behind.
QSize readSize(const QByteArray &text)
{
    int width = 0, height = 0;
    const bool read = std::sscanf(text.constData(), "%d%*[x,]%d", &width, &height) == 2;
    return read && width > 0 && height > 0 ? QSize(width, height) : QSize();
}

QSize askPlatform()
{
    QProcess asker;
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_USE_PHYSICAL_DPI"})
        environment.remove(QString::fromLatin1(name));
    environment.insert(QStringLiteral("QT_FONT_DPI"), QStringLiteral("96"));
    asker.setProcessEnvironment(environment);
    asker.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    asker.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--measure-screen")});
    if (!asker.waitForFinished(60000)) {
        asker.kill();
        asker.waitForFinished();
        return {};
    }
    return readSize(asker.readAllStandardOutput());
}

} // namespace

double scaleFor(const QSize &screen, bool isWindowed)
{
    if (screen.isEmpty())
        return 1;
    return qMax(1.0, qMin(screen.width() / 1280.0, screen.height() / 720.0) * (isWindowed ? windowShare : 1));
}

QSize screenSize()
{
    const QString platform = qEnvironmentVariable("QT_QPA_PLATFORM").section(u':', 0, 0);
    const bool hasDisplay = qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
    if (platform.isEmpty() ? !hasDisplay : platform == QLatin1String("offscreen"))
        return {};
    return askPlatform();
}

int printScreenSize(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen)
        return 1;
    const QSize size = (QSizeF(screen->size()) * screen->devicePixelRatio()).toSize();
    std::printf("%dx%d\n", size.width(), size.height());
    return 0;
}

} // namespace menusystem
