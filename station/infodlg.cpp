#include "station/infodlg.h"

#include "widgets/roundcorners.h"

#include <QDebug>
#include <QKeyEvent>
#include <QPushButton>

InfoDlg::InfoDlg(QWidget *parent)
    : PlayerDialog(parent)
{
}

InfoDlg::~InfoDlg()
{
    emit signalDestroyedWindow();
}

void InfoDlg::useDoneButton(QPushButton *doneBtn)
{
    m_doneBtn = doneBtn;
    showRoundCorners(this);
    m_doneBtn->setFocus(Qt::OtherFocusReason);
    connect(m_doneBtn, &QPushButton::clicked, this, &InfoDlg::destroyedWindow);
}

void InfoDlg::destroyedWindow()
{
    qDebug("%s,destroyedWindow...", metaObject()->className());
    close();
    delete this;
}

void InfoDlg::keyReleaseEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Back && fgActionInvalid())
        destroyedWindow();
    else
        QDialog::keyReleaseEvent(event);
}

void InfoDlg::loseFocus(bool fgMsgbox)
{
    qDebug("%s,loseFocus...", metaObject()->className());
    m_doneBtn->clearFocus();
    PlayerDialog::loseFocus(fgMsgbox);
}

void InfoDlg::resetFocus(bool fgMsgbox)
{
    qDebug("%s,resetFocus...", metaObject()->className());
    m_doneBtn->setFocus(Qt::OtherFocusReason);
    m_doneBtn->setStyleSheet(QStringLiteral("border-image: url(:/images/Button_Focus_H.png);\ncolor: rgb(0, 0,0);"));
    PlayerDialog::resetFocus(fgMsgbox);
}
