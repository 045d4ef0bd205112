#include "platform/shared/windowstack.h"

#include "platform/shared/windoworder.h"

#include <QCoreApplication>
#include <QEvent>

namespace platform {

WindowStack &WindowStack::instance()
{
    static QPointer<WindowStack> stack; // programs with one application object after the other make one each
    if (!stack)
        stack = new WindowStack(QCoreApplication::instance());
    return *stack;
}

WindowStack::WindowStack(QObject *application)
    : QObject(application)
{
    application->installEventFilter(this);
}

bool WindowStack::isScreen(const QWidget *widget)
{
    if (!widget->isWindow() || widget->testAttribute(Qt::WA_DontShowOnScreen))
        return false;
    switch (widget->windowType()) {
    case Qt::Popup:
    case Qt::ToolTip:
    case Qt::SplashScreen:
    case Qt::Desktop:
        return false;
    default:
        return true;
    }
}

QList<QWidget *> WindowStack::bottomToTop() const
{
    QList<QWidget *> shown;
    for (const auto &widget : m_shown)
        if (widget)
            shown += widget;
    QList<WindowRank> ranks;
    for (const QWidget *widget : shown) {
        // The nearest owner that shows: a dialog of a hidden screen lies where it was shown.
        qsizetype owner = -1;
        for (const QWidget *parent = widget->parentWidget(); parent && owner < 0; parent = parent->parentWidget())
            owner = shown.indexOf(parent->window());
        ranks += WindowRank{int(owner), widget->isModal()};
    }
    QList<QWidget *> ordered;
    for (const int index : windowOrder(ranks))
        ordered += shown[index];
    return ordered;
}

QWidget *WindowStack::top() const
{
    const auto order = bottomToTop();
    return order.isEmpty() ? nullptr : order.last();
}

bool WindowStack::eventFilter(QObject *watched, QEvent *event)
{
    if ((event->type() != QEvent::Show && event->type() != QEvent::Hide) || event->spontaneous() ||
        !watched->isWidgetType())
        return false;
    auto *widget = static_cast<QWidget *>(watched);
    if (!isScreen(widget))
        return false;
    m_shown.removeAll(widget);
    m_shown.removeAll(nullptr);
    if (event->type() == QEvent::Show)
        m_shown += widget;
    emit changed();
    return false;
}

} // namespace platform
