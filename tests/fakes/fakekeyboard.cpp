#include "fakes/fakekeyboard.h"

#include "virtualkb/qtvirtualkbdlg.h"

#include <QLineEdit>

namespace {

struct State {
    QPointer<QtVirtualKbDlg> current;
    QPointer<QLineEdit> field;
    bool isPrompt = false;
    bool isHighlighted = false;
    bool isLastKey = false;
    int page = 1;
};

State &state()
{
    static State instance;
    return instance;
}

} // namespace

struct QtVirtualKbDlg::Private {};

QtVirtualKbDlg::QtVirtualKbDlg(QWidget *parent)
    : QWidget(parent)
    , d(nullptr)
{
    Q_UNUSED(d);
    state() = State();
    state().current = this;
    setFocusPolicy(Qt::NoFocus);
    connect(this, &QtVirtualKbDlg::signalChangeHighlight, this,
            [](bool highlight) { state().isHighlighted = highlight; });
}

QtVirtualKbDlg::~QtVirtualKbDlg() = default;

void QtVirtualKbDlg::enableLineEdit(QLineEdit *field, bool fgPrompt)
{
    state().field = field;
    state().isPrompt = fgPrompt;
}

void QtVirtualKbDlg::showWindow(bool)
{
    state().isHighlighted = true;
    show();
}

void QtVirtualKbDlg::loseFocus()
{
    state().isHighlighted = false;
}

void QtVirtualKbDlg::restoreFocus()
{
    state().isHighlighted = true;
}

bool QtVirtualKbDlg::isLastKey() const
{
    return state().isLastKey;
}

void QtVirtualKbDlg::changePage()
{
    state().page = 3 - state().page;
    m_isModeAble = state().page == 1;
    emit signalPageNum(state().page);
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

void FakeKeyboard::reset()
{
    const QPointer<QtVirtualKbDlg> current = state().current;
    const QPointer<QLineEdit> field = state().field;
    const bool isPrompt = state().isPrompt;
    state() = State();
    state().current = current;
    state().field = field;
    state().isPrompt = isPrompt;
}

QtVirtualKbDlg *FakeKeyboard::current()
{
    return state().current;
}
QLineEdit *FakeKeyboard::field()
{
    return state().field;
}
bool FakeKeyboard::isPrompt()
{
    return state().isPrompt;
}
bool FakeKeyboard::isHighlighted()
{
    return state().isHighlighted;
}
void FakeKeyboard::setLastKey(bool isLastKey)
{
    state().isLastKey = isLastKey;
}

void FakeKeyboard::type(const QString &text)
{
    for (const QChar letter : text) {
        if (!state().current || !state().field)
            return;
        if (state().isPrompt) {
            state().isPrompt = false;
            emit state().current->signalFirstKey();
            if (!state().field)
                return;
            state().field->clear();
        }
        state().field->deselect();
        state().field->insert(letter);
    }
}

void FakeKeyboard::clear()
{
    if (!state().current || !state().field)
        return;
    state().field->clear();
    state().isPrompt = true;
    emit state().current->signalRestoreInitState();
}

void FakeKeyboard::confirm()
{
    if (state().current && state().field)
        emit state().current->signalSendContext(state().isPrompt ? QString() : state().field->text());
}
