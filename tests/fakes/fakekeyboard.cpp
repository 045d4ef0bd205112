#include "fakes/fakekeyboard.h"

#include "virtualkb/qtvirtualkbdlg.h"

#include <QLineEdit>

QPointer<QtVirtualKbDlg> FakeKeyboard::current;
QPointer<QLineEdit> FakeKeyboard::field;
bool FakeKeyboard::isPrompt = false;
bool FakeKeyboard::isHighlighted = false;
bool FakeKeyboard::isLastKey = false;

static int page = 1;

struct QtVirtualKbDlg::Private {};

QtVirtualKbDlg::QtVirtualKbDlg(QWidget *parent)
    : QWidget(parent)
    , d(nullptr)
{
    Q_UNUSED(d);
    FakeKeyboard::current = this;
    FakeKeyboard::field = nullptr;
    FakeKeyboard::isPrompt = FakeKeyboard::isHighlighted = FakeKeyboard::isLastKey = false;
    page = 1;
    setFocusPolicy(Qt::NoFocus);
    connect(this, &QtVirtualKbDlg::signalChangeHighlight, this,
            [](bool highlight) { FakeKeyboard::isHighlighted = highlight; });
}

QtVirtualKbDlg::~QtVirtualKbDlg() = default;

void QtVirtualKbDlg::enableLineEdit(QLineEdit *field, bool fgPrompt)
{
    FakeKeyboard::field = field;
    FakeKeyboard::isPrompt = fgPrompt;
}

void QtVirtualKbDlg::showWindow(bool)
{
    FakeKeyboard::isHighlighted = true;
    show();
}

void QtVirtualKbDlg::loseFocus()
{
    FakeKeyboard::isHighlighted = false;
}

void QtVirtualKbDlg::restoreFocus()
{
    FakeKeyboard::isHighlighted = true;
}

bool QtVirtualKbDlg::isLastKey() const
{
    return FakeKeyboard::isLastKey;
}

void QtVirtualKbDlg::changePage()
{
    page = 3 - page;
    m_isModeAble = page == 1;
    emit signalPageNum(page);
}

void QtVirtualKbDlg::changeMode()
{
}

bool QtVirtualKbDlg::eventFilter(QObject *watched, QEvent *event)
{
    return QWidget::eventFilter(watched, event);
}

void QtVirtualKbDlg::paintEvent(QPaintEvent *event)
{
    QWidget::paintEvent(event);
}

void FakeKeyboard::type(const QString &text)
{
    for (const QChar letter : text) {
        if (!current || !field)
            return;
        if (isPrompt) {
            isPrompt = false;
            emit current->signalFirstKey();
            if (!field)
                return;
            field->clear();
        }
        field->deselect();
        field->insert(letter);
    }
}

void FakeKeyboard::clear()
{
    if (!current || !field)
        return;
    field->clear();
    isPrompt = true;
    emit current->signalRestoreInitState();
}

void FakeKeyboard::confirm()
{
    if (current && field)
        emit current->signalSendContext(isPrompt ? QString() : field->text());
}
