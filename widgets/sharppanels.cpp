#include "widgets/sharppanels.h"

#include <QEvent>
#include <QFile>
#include <QWidget>

#include <algorithm>

namespace {

struct Panel {
    const char *picture;
    const char *border;
    int radius;
    const char *top;
    const char *bottom;
};

// The same values as in the SVG masters of the pictures.
constexpr Panel panels[] = {
    {"Welcome_Bg.png", "2px solid #5B4472", 16, "rgba(43, 24, 57, 240)", "rgba(29, 15, 40, 240)"},
    {"DialogBox_Bg.png", "3px solid #8E6FAE", 22, "rgb(58, 33, 80)", "rgb(38, 19, 56)"},
    {"Menu_Bg.png", "3px solid #8E6FAE", 20, "rgb(58, 33, 80)", "rgb(38, 19, 56)"}};

} // namespace

SharpPanels::SharpPanels(QObject *application)
    : QObject(application)
    , m_hasPictures(std::all_of(std::begin(panels), std::end(panels), [](const Panel &panel) {
        return QFile::exists(QStringLiteral(":/images/") + QLatin1String(panel.picture));
    }))
{
    application->installEventFilter(this);
}

QString SharpPanels::sharpened(const QString &style, const QString &objectName)
{
    for (const Panel &panel : panels)
        if (style.contains(QLatin1String(panel.picture)))
            return QStringLiteral(
                       "QWidget#%1 { border: %2; border-radius: %3px; background: qlineargradient(x1:0, y1:0, "
                       "x2:0, y2:1, stop:0 %4, stop:1 %5); }")
                .arg(objectName, QLatin1String(panel.border), QString::number(panel.radius), QLatin1String(panel.top),
                     QLatin1String(panel.bottom));
    return style;
}

bool SharpPanels::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Polish || !watched->isWidgetType())
        return false;
    auto *widget = static_cast<QWidget *>(watched);
    const QString style = widget->styleSheet();
    if (style.isEmpty() || (widget->devicePixelRatioF() <= 1 && m_hasPictures))
        return false;
    const QString sharp = sharpened(style, widget->objectName());
    if (sharp == style)
        return false;
    if (!widget->isWindow()) {
        widget->setStyleSheet(sharp);
        return false;
    }
    // A window's own style sheet would fill its corners too, so a child at the bottom gets it.
    widget->setStyleSheet(QString());
    auto *panel = new QWidget(widget);
    panel->setObjectName(QStringLiteral("sharpPanel"));
    panel->setStyleSheet(sharpened(style, panel->objectName()));
    panel->setAttribute(Qt::WA_TransparentForMouseEvents);
    panel->setGeometry(widget->rect());
    panel->lower();
    panel->show();
    return false;
}
