#include "virtualkb/qtvirtualkbdlg.h"

#include "keylayout.h"
#include "platform/shared/canvasproperty.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPointer>
#include <QTimer>

#include <algorithm>

namespace {

constexpr int repeatDelayMs = 500;
constexpr int repeatPeriodMs = 80;

const QColor panelColor(0x18, 0x0C, 0x24);
const QColor panelEdge(0x7D, 0x62, 0x98);
const QColor keyColor(0x3B, 0x25, 0x50);
const QColor keyEdge(0x55, 0x3C, 0x6D);
const QColor amberTop(0xFF, 0xCB, 0x52);
const QColor amberBottom(0xFF, 0xAC, 0x12);
const QColor amberEdge(0xFF, 0xE3, 0xA6);

bool isArrow(int key)
{
    return key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down;
}

bool isConfirm(int key)
{
    return key == Qt::Key_Select || key == Qt::Key_Return || key == Qt::Key_Enter;
}

bool isPrintable(const QKeyEvent *event)
{
    return !event->text().isEmpty() && event->text().at(0).isPrint() &&
           !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
}

} // namespace

struct QtVirtualKbDlg::Private {
    explicit Private(QtVirtualKbDlg *keyboard)
        : q(keyboard)
        , keys(KeyLayout::keys(KeyLayout::letterPage, false))
    {
        letterFont.setFamily(QStringLiteral("Arial"));
        letterFont.setPointSize(18);
        wordFont.setFamily(QStringLiteral("Arial"));
        wordFont.setPointSize(15);
        repeatTimer.setParent(keyboard);
    }

    QtVirtualKbDlg *q;
    QPointer<QLineEdit> field; // not owned
    QMetaObject::Connection fieldEdited;
    QList<KeyLayout::Key> keys;
    QFont letterFont;
    QFont wordFont;
    QTimer repeatTimer; // repeats Delete while Select is held
    int page = KeyLayout::letterPage;
    int index = 0;
    bool isCapital = false;
    bool isPrompt = false;    // the field shows its prompt: the first key replaces it, confirming gives ""
    bool hasHighlight = true; // loseFocus() and restoreFocus()
    bool isCovered = false;   // a message box lies over the dialog
    // A Right press has just brought the highlight to a right-most key: its release must not leave the keyboard.
    bool isFreshArrival = false;
    bool isRightAtEdge = false; // a Right press found the highlight on a right-most key
    bool isDispatching = false;

    bool isActive() const { return hasHighlight && !isCovered && q->isVisible(); }

    void setIndex(int next)
    {
        if (next == index)
            return;
        updateKey();
        index = next;
        updateKey();
        tellHighlight();
    }

    void tellHighlight()
    {
        q->setProperty(platform::attentionProperty, hasHighlight && !isCovered ? keys.at(index).rect : QRect());
    }

    // With a margin: at a fractional scale a key's edge lies in a pixel outside of its rectangle.
    void updateKey() { q->update(keys.at(index).rect.adjusted(-1, -1, 1, 1)); }

    void relabel()
    {
        keys = KeyLayout::keys(page, isCapital);
        q->update();
    }

    // The first key ends the prompt state: the dialog restyles the field, then the prompt is removed.
    void endPrompt()
    {
        if (!isPrompt)
            return;
        isPrompt = false;
        emit q->signalFirstKey();
        if (field)
            field->clear();
    }

    void noteEmpty()
    {
        if (!field || isPrompt || !field->text().isEmpty())
            return;
        emit q->signalRestoreInitState();
        isPrompt = true;
    }

    void type(const QString &text)
    {
        if (!field)
            return;
        endPrompt();
        if (!field)
            return;
        field->deselect(); // a field that has just got the focus may have selected everything
        field->insert(text);
    }

    void deleteLast()
    {
        if (!field || isPrompt)
            return;
        field->end(false);
        field->backspace();
        noteEmpty();
    }

    void clear()
    {
        if (!field || isPrompt)
            return;
        field->clear();
        noteEmpty();
    }

    // What an input method commits, instead of the characters that it names.
    void commit(const QInputMethodEvent &event)
    {
        const QString before = isPrompt ? QString() : field->text();
        const int at = isPrompt ? 0 : field->cursorPosition();
        const int from = std::clamp(at + event.replacementStart(), 0, int(before.size()));
        QString text = before;
        text.replace(from, std::min(event.replacementLength(), int(before.size()) - from), event.commitString());
        if (text == before)
            return;
        if (text.isEmpty()) {
            clear();
            return;
        }
        endPrompt();
        if (!field)
            return;
        field->selectAll();
        field->insert(text);
    }

    // Another way to type than keys, a telephone's keyboard, uses this widget as an input method uses a field.
    void takeInput(QInputMethodEvent *event)
    {
        event->setAccepted(field && isActive());
        if (!event->isAccepted())
            return;
        const QPointer<QtVirtualKbDlg> guard(q);
        commit(*event);
        if (guard)
            setIndex(KeyLayout::doneIndex()); // Select confirms, as after a PC's keyboard
    }

    void answerQuery(QInputMethodQueryEvent *event) const
    {
        const bool isTaking = field && isActive();
        const bool isSecret = isTaking && field->echoMode() != QLineEdit::Normal;
        event->setValue(Qt::ImEnabled, isTaking);
        event->setValue(Qt::ImHints, int(isSecret ? Qt::ImhHiddenText | Qt::ImhSensitiveData : Qt::ImhNone));
        event->setValue(Qt::ImSurroundingText, isTaking && !isSecret && !isPrompt ? field->text() : QString());
        event->setValue(Qt::ImCursorPosition, isTaking && !isPrompt ? field->cursorPosition() : 0);
        event->accept();
    }

    void press()
    {
        const KeyLayout::Key key = keys.at(index);
        switch (key.action) {
        case KeyLayout::Action::Type:
            type(key.text);
            break;
        case KeyLayout::Action::Clear:
            clear();
            break;
        case KeyLayout::Action::Delete:
            deleteLast();
            repeatTimer.start(repeatDelayMs);
            break;
        case KeyLayout::Action::Done:
            if (field) // last: the receiver may close the dialog and this keyboard with it
                emit q->signalSendContext(isPrompt ? QString() : field->text());
            break;
        }
    }

    void move(int key)
    {
        const KeyLayout::Direction direction = key == Qt::Key_Left    ? KeyLayout::Direction::Left
                                               : key == Qt::Key_Right ? KeyLayout::Direction::Right
                                               : key == Qt::Key_Up    ? KeyLayout::Direction::Up
                                                                      : KeyLayout::Direction::Down;
        const int next = KeyLayout::next(index, direction);
        isRightAtEdge = key == Qt::Key_Right && next == index;
        isFreshArrival = key == Qt::Key_Right && next != index && KeyLayout::isRightMost(next);
        setIndex(next);
    }

    // True when the keyboard used the key.
    bool handlePress(QKeyEvent *event)
    {
        if (!isActive())
            return false;
        if (isArrow(event->key())) {
            move(event->key());
            return true;
        }
        if (isConfirm(event->key())) {
            if (!event->isAutoRepeat())
                press();
            return true;
        }
        if (event->key() == Qt::Key_Backspace || event->key() == Qt::Key_Delete) {
            deleteLast();
            return true;
        }
        if (isPrintable(event)) {
            type(event->text());
            setIndex(KeyLayout::doneIndex()); // Enter on a PC keyboard confirms
            return true;
        }
        return false;
    }

    void handleRelease(const QKeyEvent *event)
    {
        if (event->isAutoRepeat())
            return;
        if (isConfirm(event->key()))
            repeatTimer.stop();
        if (event->key() != Qt::Key_Right)
            return;
        // After the dialog has handled this release.
        QTimer::singleShot(0, q, [this] {
            isFreshArrival = false;
            if (isRightAtEdge && isActive())
                setIndex(KeyLayout::wrapRight(index));
            isRightAtEdge = false;
        });
    }
};

QtVirtualKbDlg::QtVirtualKbDlg(QWidget *parent)
    : QWidget(parent)
    , d(new Private(this))
{
    resize(KeyLayout::width, KeyLayout::height);
    setFocusPolicy(Qt::NoFocus); // the field keeps the keyboard focus
    setAccessibleName(QCoreApplication::translate("KeyLayout", "Keyboard"));
    parent->installEventFilter(this);
    installEventFilter(this);
    connect(&d->repeatTimer, &QTimer::timeout, this, [this] {
        d->repeatTimer.start(repeatPeriodMs);
        d->deleteLast();
    });
    connect(this, &QtVirtualKbDlg::signalChangeHighlight, this, [this](bool highlight) {
        d->isCovered = !highlight;
        d->tellHighlight();
        d->repeatTimer.stop();
        update();
    });
    d->tellHighlight();
    hide();
}

QtVirtualKbDlg::~QtVirtualKbDlg()
{
    delete d;
}

void QtVirtualKbDlg::enableLineEdit(QLineEdit *field, bool fgPrompt)
{
    if (d->field) {
        d->field->removeEventFilter(this);
        disconnect(d->fieldEdited);
    }
    // Whoever types from elsewhere tells one field from the next by this number.
    if (field != d->field)
        setProperty("velmoraField", property("velmoraField").toInt() + 1);
    d->field = field;
    d->isPrompt = fgPrompt;
    setProperty("velmoraFieldName", field ? field->accessibleName() : QString());
    d->repeatTimer.stop();
    if (field) {
        field->installEventFilter(this);
        // Text deleted in the field by a PC keyboard.
        d->fieldEdited = connect(field, &QLineEdit::textEdited, this, [this] { d->noteEmpty(); });
    }
}

void QtVirtualKbDlg::showWindow(bool)
{
    show();
    emit signalPageNum(d->page);
}

void QtVirtualKbDlg::loseFocus()
{
    d->hasHighlight = false;
    d->tellHighlight();
    d->repeatTimer.stop();
    update();
}

void QtVirtualKbDlg::restoreFocus()
{
    d->hasHighlight = true;
    d->isCovered = false;
    d->tellHighlight();
    update();
}

bool QtVirtualKbDlg::isLastKey() const
{
    return KeyLayout::isRightMost(d->index) && !d->isFreshArrival;
}

void QtVirtualKbDlg::changePage()
{
    d->page = d->page == KeyLayout::letterPage ? KeyLayout::symbolPage : KeyLayout::letterPage;
    m_isModeAble = d->page == KeyLayout::letterPage;
    d->relabel();
    emit signalPageNum(d->page);
}

void QtVirtualKbDlg::changeMode()
{
    if (!m_isModeAble)
        return;
    d->isCapital = !d->isCapital;
    d->relabel();
}

bool QtVirtualKbDlg::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == this && event->type() == QEvent::InputMethod) {
        d->takeInput(static_cast<QInputMethodEvent *>(event));
        return true;
    }
    if (watched == this && event->type() == QEvent::InputMethodQuery) {
        d->answerQuery(static_cast<QInputMethodQueryEvent *>(event));
        return true;
    }
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease)
        return QWidget::eventFilter(watched, event);
    auto *key = static_cast<QKeyEvent *>(event);
    if (watched == d->field) {
        // A prompt is never edited: typed text replaces it.
        if (event->type() == QEvent::KeyPress && d->isPrompt && d->isActive() &&
            (isPrintable(key) || key->key() == Qt::Key_Backspace || key->key() == Qt::Key_Delete))
            return d->handlePress(key);
        return false;
    }
    if (watched != parent() || d->isDispatching)
        return false;
    if (event->type() == QEvent::KeyRelease) {
        d->handleRelease(key);
        return false;
    }
    // The dialog handles the key first; if it passes it to QDialog, the event is ignored, and the keyboard uses it.
    const QPointer<QtVirtualKbDlg> guard(this);
    d->isDispatching = true;
    event->accept();
    watched->event(event);
    if (!guard)
        return true;
    d->isDispatching = false;
    if (!event->isAccepted() && d->handlePress(key))
        event->accept();
    return true;
}

void QtVirtualKbDlg::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setLayoutDirection(Qt::LeftToRight); // else "(" and ".com" would not show what they type
    painter.setPen(QPen(panelEdge, 2));
    painter.setBrush(panelColor);
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 16, 16);
    for (int i = 0; i < d->keys.size(); ++i) {
        const KeyLayout::Key &key = d->keys.at(i);
        if (!event->rect().intersects(key.rect))
            continue;
        const bool isFocused = i == d->index && d->isActive();
        const QRectF box = QRectF(key.rect).adjusted(1, 1, -1, -1);
        if (isFocused) {
            QLinearGradient amber(box.topLeft(), box.bottomLeft());
            amber.setColorAt(0, amberTop);
            amber.setColorAt(1, amberBottom);
            painter.setPen(QPen(amberEdge, 2));
            painter.setBrush(amber);
        } else {
            painter.setPen(QPen(keyEdge, 2));
            painter.setBrush(keyColor);
        }
        painter.drawRoundedRect(box, 8, 8);
        QFont font = key.label.size() > 1 ? d->wordFont : d->letterFont;
        font.setBold(isFocused);
        painter.setFont(font);
        painter.setPen(isFocused ? Qt::black : Qt::white);
        painter.drawText(key.rect, Qt::AlignCenter, key.label);
    }
}
