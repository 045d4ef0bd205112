#include "screenscale.h"

#include <QCoreApplication>
#include <QProcess>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include <xcb/randr.h>
#include <xcb/xcb.h>

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

template <typename T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

template <typename T>
Reply<T> owned(T *reply)
{
    return {reply, &std::free};
}

// The mode of the primary output, as Qt chooses its primary screen; else the whole X screen.
QSize outputSize(xcb_connection_t *connection, const xcb_screen_t &screen)
{
    const QSize whole(screen.width_in_pixels, screen.height_in_pixels);
    const auto *extension = xcb_get_extension_data(connection, &xcb_randr_id);
    if (!extension || !extension->present)
        return whole;
    const auto primaryCookie = xcb_randr_get_output_primary(connection, screen.root);
    const auto resourcesCookie = xcb_randr_get_screen_resources_current(connection, screen.root);
    const auto primary = owned(xcb_randr_get_output_primary_reply(connection, primaryCookie, nullptr));
    const auto resources = owned(xcb_randr_get_screen_resources_current_reply(connection, resourcesCookie, nullptr));
    if (!resources)
        return whole;
    std::vector<xcb_randr_output_t> outputs;
    if (primary && primary->output)
        outputs.push_back(primary->output);
    const auto *first = xcb_randr_get_screen_resources_current_outputs(resources.get());
    outputs.insert(outputs.end(), first, first + resources->num_outputs);
    for (const xcb_randr_output_t output : outputs) {
        const auto outputCookie = xcb_randr_get_output_info(connection, output, resources->config_timestamp);
        const auto info = owned(xcb_randr_get_output_info_reply(connection, outputCookie, nullptr));
        if (!info || !info->crtc)
            continue;
        const auto crtcCookie = xcb_randr_get_crtc_info(connection, info->crtc, resources->config_timestamp);
        const auto crtc = owned(xcb_randr_get_crtc_info_reply(connection, crtcCookie, nullptr));
        if (crtc && crtc->width && crtc->height)
            return {crtc->width, crtc->height};
    }
    return whole;
}

// Asked directly, because a process with Qt's platform in it takes as long to start as the radio itself.
QSize askDisplayServer()
{
    int number = 0;
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(xcb_connect(nullptr, &number),
                                                                                  &xcb_disconnect);
    if (xcb_connection_has_error(connection.get()))
        return {};
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection.get()));
    for (; screens.rem && number > 0; --number)
        xcb_screen_next(&screens);
    return screens.rem ? outputSize(connection.get(), *screens.data) : QSize();
}

// A separate process asks Qt's platform, so that a console's screen is released again.
QSize askPlatform()
{
    QProcess asker;
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_USE_PHYSICAL_DPI"})
        environment.remove(QString::fromLatin1(name));
    environment.insert(QStringLiteral("QT_FONT_DPI"), QStringLiteral("96"));
    asker.setProcessEnvironment(environment);
    asker.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    asker.start(QCoreApplication::applicationDirPath() + QStringLiteral("/velmora-screen"), {});
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
        return askDisplayServer();
    if (platform.isEmpty() ? !qEnvironmentVariableIsSet("WAYLAND_DISPLAY") : platform == QLatin1String("offscreen"))
        return {};
    return askPlatform();
}

} // namespace menusystem
