#include "screenscale.h"

#include <QCoreApplication>
#include <QProcess>

#include <cstdio>

namespace menusystem {

namespace {

constexpr double windowShare = 0.8;

// Reads "1280x720" or "1280,720" at the start of the text.
QSize readSize(const QByteArray &text)
{
    int width = 0, height = 0;
    const bool read = std::sscanf(text.constData(), "%d%*[x,]%d", &width, &height) == 2;
    return read && width > 0 && height > 0 ? QSize(width, height) : QSize();
}

// Asked by a program of its own, which is gone again: the libraries of a display stay out of this one, and a console's
// screen is released.
QSize ask(const char *program)
{
    QProcess asker;
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_USE_PHYSICAL_DPI"})
        environment.remove(QString::fromLatin1(name));
    environment.insert(QStringLiteral("QT_FONT_DPI"), QStringLiteral("96"));
    asker.setProcessEnvironment(environment);
    asker.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    asker.start(QCoreApplication::applicationDirPath() + u'/' + QLatin1String(program), {});
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
    if (platform == QLatin1String("xcb") || (platform.isEmpty() && qEnvironmentVariableIsSet("DISPLAY")))
        return ask("velmora-screen-x11");
    if (platform.isEmpty() ? !qEnvironmentVariableIsSet("WAYLAND_DISPLAY") : platform == QLatin1String("offscreen"))
        return {};
    return ask("velmora-screen");
}

} // namespace menusystem
