#include "screenshot.h"

#include "platform/shared/canvasproperty.h"
#include "platform/shared/windowstack.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QWindow>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace netcommon {

namespace {

// The canvas when no view library has placed it.
constexpr QRect plainCanvas(0, 0, 1280, 720);

QImage canvasPicture()
{
    const QVariant placed = qApp->property(platform::canvasProperty);
    const QRect canvas = placed.isValid() ? placed.toRect() : plainCanvas;
    const auto windows = platform::WindowStack::instance().bottomToTop();
    const qreal ratio = windows.isEmpty() ? 1.0 : windows.first()->devicePixelRatioF();
    QImage picture((QSizeF(canvas.size()) * ratio).toSize(), QImage::Format_RGB32);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::black);
    QPainter painter(&picture);
    for (QWidget *window : windows) {
        // On a small screen the canvas hides what its shrunk windows do not fill.
        const QWindow *native = window->windowHandle();
        const QRegion mask = native ? native->mask() : QRegion();
        const QRect shown = mask.isEmpty() ? window->rect() : mask.boundingRect();
        painter.setClipRect(shown.translated(window->pos() - canvas.topLeft()));
        painter.drawPixmap(window->pos() - canvas.topLeft(), window->grab());
    }
    return picture;
}

} // namespace

QString writeScreenshot(const QString &absolutePath)
{
    if (!qobject_cast<QApplication *>(QCoreApplication::instance()))
        return QStringLiteral("this program shows nothing");
    const QByteArray path = QFile::encodeName(absolutePath);
    if (!QFileInfo(absolutePath).isAbsolute())
        return QStringLiteral("the file's path must be absolute");
    struct stat entry {};
    if (::lstat(path.constData(), &entry) == 0 && !S_ISREG(entry.st_mode) && !S_ISLNK(entry.st_mode))
        return QStringLiteral("%1 is not a file").arg(absolutePath);
    // Written to a new file with a random name, which replaces the old file when it is complete.
    QByteArray temporary = path + ".XXXXXX";
    const int descriptor = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (descriptor < 0)
        return QStringLiteral("%1: %2").arg(absolutePath, QString::fromLocal8Bit(std::strerror(errno)));
    QFile file;
    const bool written = file.open(descriptor, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle) &&
                         canvasPicture().save(&file, "PNG") && file.flush();
    file.close();
    if (written && ::rename(temporary.constData(), path.constData()) == 0)
        return {};
    QString problem = QStringLiteral("%1: %2").arg(absolutePath, QString::fromLocal8Bit(std::strerror(errno)));
    ::unlink(temporary.constData());
    return problem;
}

} // namespace netcommon
