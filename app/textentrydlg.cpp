#include "app/textentrydlg.h"

#include "netcommon/remotekeys.h"

#include <virtualkb/qtvirtualkbdlg.h>

#include <QDebug>
#include <QKeyEvent>

TextEntryDlg::TextEntryDlg(QWidget *parent)
    : VelmoraParentWidget(parent)
{
}

void TextEntryDlg::makeKeyboard(QLineEdit *field, bool fgPrompt, const QPoint &place)
{
    m_keyboard = new QtVirtualKbDlg(this);
    m_keyboard->enableLineEdit(field, fgPrompt);
    m_keyboard->move(place);
    m_keyboard->showWindow(false);
    connect(this, &TextEntryDlg::signalRedBtn, m_keyboard, &QtVirtualKbDlg::changePage);
    connect(this, &TextEntryDlg::signalGreenBtn, m_keyboard, &QtVirtualKbDlg::changeMode);
    connect(this, &TextEntryDlg::signalChangeHighlight, m_keyboard, &QtVirtualKbDlg::signalChangeHighlight);
}

void TextEntryDlg::keyPressEvent(QKeyEvent *event)
{
    const char *name = metaObject()->className();
    qDebug("%s,keyPressEvent,event->key=%0x", name, event->key());
    runTimer();
    if (!fgActionInvalid()) {
        qDebug("%s,keyPressEvent,action invalid,return.", name);
        return;
    }
    if (event->key() == netcommon::redKey) {
        qDebug("%s,keyPressEvent.recv Qt::Key_Calculator,red key.", name);
        if (m_keyboard)
            emit signalRedBtn();
    } else if (event->key() == netcommon::greenKey) {
        qDebug("%s,keyPressEvent.recv Qt::Key_BookMark,green key.", name);
        if (m_keyboard && m_keyboard->m_isModeAble)
            emit signalGreenBtn();
    }
    VelmoraParentWidget::keyPressEvent(event);
}
