#include "screens/lookcheck.h"

#include "platform/keyboard/keylayout.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QStyle>
#include <QStyleOptionButton>

#include <algorithm>
#include <cmath>
#include <vector>

namespace lookcheck {

namespace {

constexpr QRect safeArea(64, 36, 1152, 648);
constexpr double leastContrast = 4.5;
constexpr double largestShade = 1.6; // of a key's surface with nothing on it
constexpr int textMargin = 2;        // the side bearing of a letter may lie outside

QString textOf(const QWidget *widget)
{
    if (const auto *label = qobject_cast<const QLabel *>(widget))
        return label->text();
    if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
        return button->text();
    return {};
}

bool isControl(const QWidget *widget)
{
    return qobject_cast<const QAbstractButton *>(widget) || qobject_cast<const QLineEdit *>(widget) ||
           qobject_cast<const QAbstractItemView *>(widget) || qobject_cast<const QProgressBar *>(widget) ||
           widget->inherits("QtVirtualKbDlg");
}

QRect place(const QWidget *widget, const QWidget *window)
{
    return {widget->mapTo(window, QPoint()), widget->size()};
}

QList<QWidget *> shown(const QWidget *window)
{
    QList<QWidget *> all;
    for (auto *widget : window->findChildren<QWidget *>())
        if (widget->isVisible() && widget->window() == window && (isControl(widget) || !textOf(widget).isEmpty()))
            all += widget;
    return all;
}

// --- colours

double luminance(QRgb colour)
{
    const auto part = [](int value) {
        const double share = value / 255.0;
        return share <= 0.03928 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(qRed(colour)) + 0.7152 * part(qGreen(colour)) + 0.0722 * part(qBlue(colour));
}

double ratio(double one, double other)
{
    return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

// The contrast between the strongest pixels of the letters and the median of their surroundings.
double contrast(const QImage &picture, const QRect &where)
{
    std::vector<double> all;
    const QRect inside = where.intersected(picture.rect());
    for (int y = inside.top(); y <= inside.bottom(); ++y)
        for (int x = inside.left(); x <= inside.right(); ++x)
            all.push_back(luminance(picture.pixel(x, y)));
    if (all.empty())
        return 21;
    std::sort(all.begin(), all.end());
    const double behind = all[all.size() / 2];
    return std::max(ratio(all.front(), behind), ratio(all.back(), behind));
}

bool isAmber(QRgb colour)
{
    return qRed(colour) > 235 && qGreen(colour) > 150 && qGreen(colour) < 232 && qBlue(colour) < 170 &&
           qRed(colour) - qBlue(colour) > 80;
}

double amberShare(const QImage &picture, const QRect &where)
{
    int amber = 0;
    const QRect inside = where.intersected(picture.rect());
    for (int y = inside.top(); y <= inside.bottom(); ++y)
        for (int x = inside.left(); x <= inside.right(); ++x)
            amber += isAmber(picture.pixel(x, y)) ? 1 : 0;
    return inside.isEmpty() ? 0 : double(amber) / (double(inside.width()) * inside.height());
}

// --- text

// The picture at the left end of a key cap: a button without words on a label.
bool isCapPicture(const QWidget *one, const QWidget *other)
{
    return qobject_cast<const QAbstractButton *>(one) && textOf(one).isEmpty() && qobject_cast<const QLabel *>(other) &&
           other->geometry().contains(one->geometry());
}

QSize needed(const QWidget *widget, const QString &text, int width, bool wraps)
{
    const QRect room(0, 0, wraps ? width : 100000, 100000);
    return widget->fontMetrics().boundingRect(room, wraps ? Qt::TextWordWrap : 0, text).size();
}

QString textFault(QWidget *widget)
{
    const QString text = textOf(widget);
    QSize room;
    QSize need;
    if (auto *label = qobject_cast<QLabel *>(widget)) {
        room = label->contentsRect().size();
        if (label->indent() > 0)
            room.rwidth() -= label->indent();
        need = needed(label, text, room.width(), label->wordWrap());
    } else if (auto *button = qobject_cast<QAbstractButton *>(widget)) {
        QStyleOptionButton option;
        option.initFrom(button);
        room = QSize(button->style()->subElementRect(QStyle::SE_PushButtonContents, &option, button).width(),
                     button->height());
        need = needed(button, text, room.width(), false);
    }
    if (need.width() <= room.width() + textMargin && need.height() <= room.height() + textMargin)
        return {};
    return QStringLiteral("%1: \"%2\" needs %3 x %4 and has %5 x %6")
        .arg(widget->objectName(), text)
        .arg(need.width())
        .arg(need.height())
        .arg(room.width())
        .arg(room.height());
}

QString contrastFault(const QImage &picture, const QWidget *widget, const QRect &where)
{
    // The caption whose grey is fixed; its cap is the lightest there is.
    const bool isDim = widget->styleSheet().contains(QLatin1String("rgb(113, 113, 113)"));
    const double found = contrast(picture, where);
    if (isDim || found >= leastContrast)
        return {};
    return QStringLiteral("%1: contrast %2").arg(widget->objectName()).arg(found, 0, 'f', 2);
}

// The on-screen keyboard paints its letters itself: each inside its key, and bright against it.
QStringList keyFaults(const QImage &picture, const QRect &keyboard)
{
    QStringList all;
    for (const KeyLayout::Key &key : KeyLayout::keys(KeyLayout::letterPage, false)) {
        const QRect where = key.rect.translated(keyboard.topLeft());
        const QRect inside = where.adjusted(6, 6, -6, -6);
        if (contrast(picture, inside) < leastContrast)
            all +=
                QStringLiteral("the key \"%1\": contrast %2").arg(key.label).arg(contrast(picture, inside), 0, 'f', 2);
        for (const QRect &edge : {QRect(where.left() + 3, inside.top(), 3, inside.height()),
                                  QRect(inside.right() + 1, inside.top(), 3, inside.height()),
                                  QRect(inside.left(), where.top() + 3, inside.width(), 3),
                                  QRect(inside.left(), inside.bottom() + 1, inside.width(), 3)})
            if (contrast(picture, edge) > largestShade)
                all += QStringLiteral("the key \"%1\": its label leaves it").arg(key.label);
    }
    return all;
}

QString spokenName(QWidget *widget)
{
    QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(widget);
    return spoken ? spoken->text(QAccessible::Name) : widget->accessibleName();
}

} // namespace

QStringList faults(QWidget *window)
{
    QStringList all;
    const QImage picture = window->grab().toImage().convertToFormat(QImage::Format_RGB32);
    const QList<QWidget *> widgets = shown(window);
    for (QWidget *widget : widgets) {
        const QRect where = place(widget, window);
        const QRect onCanvas = where.translated(window->pos());
        if (!safeArea.contains(onCanvas))
            all += QStringLiteral("%1 leaves the safe area: %2,%3 %4 x %5")
                       .arg(widget->objectName())
                       .arg(onCanvas.x())
                       .arg(onCanvas.y())
                       .arg(onCanvas.width())
                       .arg(onCanvas.height());
        if (!textOf(widget).isEmpty()) {
            all += textFault(widget);
            all += contrastFault(picture, widget, where);
        }
        if (const auto *list = qobject_cast<QListWidget *>(widget)) {
            for (int row = 0; row < list->count(); ++row) {
                const QRect line = list->visualItemRect(list->item(row)).translated(where.topLeft());
                if (where.contains(line))
                    all += contrastFault(picture, widget, line.adjusted(48, 6, -24, -6));
            }
        }
        if (widget->inherits("QtVirtualKbDlg"))
            all += keyFaults(picture, where);
        const bool takesFocus = widget->focusPolicy() != Qt::NoFocus && widget->isEnabled();
        if (takesFocus && isControl(widget) && spokenName(widget).isEmpty())
            all += widget->objectName() + QStringLiteral(" has no accessible name");
        for (QWidget *other : widgets) {
            if (other <= widget || other->parentWidget() != widget->parentWidget())
                continue;
            if (isCapPicture(widget, other) || isCapPicture(other, widget))
                continue;
            if (where.intersects(place(other, window)))
                all += QStringLiteral("%1 lies over %2").arg(widget->objectName(), other->objectName());
        }
    }
    all.removeAll(QString());
    return all;
}

QStringList cutTexts(QWidget *window)
{
    QStringList all;
    for (QWidget *widget : shown(window))
        all += textFault(widget);
    all.removeAll(QString());
    return all;
}

QStringList focused(QWidget *window)
{
    QStringList names;
    const QImage picture = window->grab().toImage().convertToFormat(QImage::Format_RGB32);
    for (const QWidget *widget : shown(window)) {
        if (!isControl(widget) || qobject_cast<const QLineEdit *>(widget) || qobject_cast<const QProgressBar *>(widget))
            continue;
        const QRect where = place(widget, window);
        bool isLit = false;
        if (const auto *list = qobject_cast<const QListWidget *>(widget)) {
            for (int row = 0; row < list->count(); ++row)
                isLit |= amberShare(picture, list->visualItemRect(list->item(row)).translated(where.topLeft())) > 0.4;
        } else if (widget->inherits("QtVirtualKbDlg")) {
            isLit = amberShare(picture, where) > 0.008; // one key
        } else {
            const QRect frame(where.left() + where.width() / 4, where.top() + 2, where.width() / 2, 2);
            isLit = amberShare(picture, where) > 0.4 || amberShare(picture, frame) > 0.9;
        }
        if (isLit)
            names += widget->objectName();
    }
    return names;
}

} // namespace lookcheck
