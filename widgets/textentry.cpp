#include "widgets/textentry.h"

#include <QCoreApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QProxyStyle>

namespace {

// A cursor of one pixel flickers on a television and cannot be seen from a distance.
class FieldStyle : public QProxyStyle {
public:
    explicit FieldStyle(QLineEdit *owner) { setParent(owner); }

    int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override
    {
        return metric == PM_TextCursorWidth ? 3 : QProxyStyle::pixelMetric(metric, option, widget);
    }
};

} // namespace

TextEntry::TextEntry(QDialog *dialog)
    : QObject(dialog)
    , m_dialog(dialog)
{
}

void TextEntry::add(QLineEdit *field)
{
    field->setReadOnly(true);
    field->setFocusPolicy(Qt::ClickFocus);
    field->setContextMenuPolicy(Qt::NoContextMenu);
    field->installEventFilter(this);
    field->setStyle(new FieldStyle(field));
}

void TextEntry::setPromptStyle(QLineEdit *field)
{
    field->setStyleSheet(
        QStringLiteral("border-image: url(:/images/InputBox_Normal_H.png);\ncolor: rgb(197, 197, 197);"));
}

void TextEntry::setTypingStyle(QLineEdit *field)
{
    field->setStyleSheet(QStringLiteral("border-image: url(:/images/InputBox_Focus_H.png);\ncolor: rgb(0, 0, 0);"));
}

bool TextEntry::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn) {
        // Qt selects the whole text of a field that gets the focus; a remote control has no use for a selection.
        auto *field = static_cast<QLineEdit *>(watched);
        QMetaObject::invokeMethod(
            field, [field] { field->end(false); }, Qt::QueuedConnection);
    }
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease)
        return QObject::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    const bool isDialogs = event->type() == QEvent::KeyRelease || key == Qt::Key_Left || key == Qt::Key_Right ||
                           key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_Select || key == Qt::Key_Return ||
                           key == Qt::Key_Enter || key == Qt::Key_Back || key == Qt::Key_Escape;
    if (!isDialogs)
        return false;
    QCoreApplication::sendEvent(m_dialog, event);
    return true; // the dialog, and this object with it, may be deleted here
}
