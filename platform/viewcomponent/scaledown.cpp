#include "scaledown.h"

#include <QBackingStore>
#include <QPaintEngine>
#include <QPainter>
#include <QPixmap>
#include <QScopedValueRollback>
#include <QWidget>

#include <utility>

namespace viewcomponent {

namespace {

constexpr int seam = 2; // pixels: smoothing reaches beyond a rectangle on each side

QRegion mapped(const QRegion &region, const QTransform &transform)
{
    QRegion result;
    for (const QRect &rect : region)
        result += transform.mapRect(QRectF(rect)).toAlignedRect().adjusted(-seam, -seam, seam, seam);
    return result;
}

} // namespace

ScaleDown::ScaleDown(QWidget *window)
    : m_window(window)
{
}

void ScaleDown::setFactor(double factor)
{
    m_factor = factor;
    update();
}

QPixmap ScaleDown::grabUnscaled(QWidget *window, const QRect &part)
{
    auto *effect = qobject_cast<ScaleDown *>(window->graphicsEffect());
    if (!effect)
        return window->grab(part);
    const QScopedValueRollback plain(effect->m_factor, 1.0);
    return window->grab(part);
}

// Qt has clipped the painter to what the widgets want to be painted anew, in their own coordinates. That lies elsewhere
// in the small picture: the clip is moved there, and what Qt will not send to the screen is sent from here.
void ScaleDown::draw(QPainter *painter)
{
    QPaintEngine *engine = painter->paintEngine();
    const QTransform toDevice = painter->deviceTransform();
    const QRegion wanted = engine->systemClip();
    painter->save();
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->scale(m_factor, m_factor);
    const QTransform toSmall = toDevice.inverted() * painter->deviceTransform();
    const QTransform toWindow = painter->deviceTransform().inverted();
    QRegion painted = m_factor == 1 ? wanted : mapped(wanted, toSmall);
    const bool isTranslucent = m_window->testAttribute(Qt::WA_TranslucentBackground);
    if (isTranslucent) // Qt has cleared it
        painted += wanted;
    engine->setSystemClip(painted);
    if (isTranslucent) {
        painter->setCompositionMode(QPainter::CompositionMode_Source);
        painter->fillRect(toWindow.mapRect(QRectF(painted.boundingRect())), Qt::transparent);
        painter->setCompositionMode(QPainter::CompositionMode_SourceOver);
    }
    const QRegion source = mapped(painted, toWindow) & m_window->rect();
    if (!source.isEmpty())
        m_window->render(painter, source.boundingRect().topLeft(), source,
                         QWidget::DrawWindowBackground | QWidget::DrawChildren);
    engine->setSystemClip(wanted);
    painter->restore();
    QBackingStore *store = m_window->backingStore();
    if (store && painter->device() == store->paintDevice())
        flushLater(painted - wanted);
}

void ScaleDown::flushLater(const QRegion &painted)
{
    if (painted.isEmpty())
        return;
    if (m_unflushed.isEmpty())
        QMetaObject::invokeMethod(this, &ScaleDown::flush, Qt::QueuedConnection);
    m_unflushed += painted;
}

void ScaleDown::flush()
{
    const QRegion region = std::exchange(m_unflushed, {}) & m_window->rect();
    if (QBackingStore *store = m_window->backingStore(); store && m_window->isVisible())
        store->flush(region);
}

} // namespace viewcomponent
