#include "account/welcomedlg.h"

#include "app/screenfactory.h"
#include "service/velmorasettings.h"
#include "ui_welcomedlg.h"

#include <QKeyEvent>

namespace {
constexpr char focusedLook[] = "border-image: url(:/images/Button_Focus_H.png);\ncolor: rgb(0, 0, 0);";
constexpr char normalLook[] = "border-image: url(:/images/Button_Normal_H.png);\ncolor: rgb(255, 255, 255);";
} // namespace

WelcomeDlg::WelcomeDlg(QWidget *parent)
    : VelmoraParentWidget(parent)
    , ui(new Ui::WelcomeDlg)
{
    qDebug("new WelcomeDlg");
    ui->setupUi(this);
    connect(ui->activateBtn, &QPushButton::clicked, this, &WelcomeDlg::activateVelmora);
    ui->activateBtn->setFocus(Qt::OtherFocusReason);
}

WelcomeDlg::~WelcomeDlg()
{
    qDebug("del WelcomeDlg");
}

void WelcomeDlg::loseFocus(bool fgMsgbox)
{
    ui->activateBtn->clearFocus();
    ui->activateBtn->setStyleSheet(QLatin1String(normalLook));
    VelmoraParentWidget::loseFocus(fgMsgbox);
}

void WelcomeDlg::resetFocus(bool fgMsgbox)
{
    ui->activateBtn->setFocus(Qt::OtherFocusReason);
    ui->activateBtn->setStyleSheet(QLatin1String(focusedLook));
    VelmoraParentWidget::resetFocus(fgMsgbox);
}

void WelcomeDlg::activateVelmora()
{
    qDebug("WelcomeDlg,activateVelmora");
    deviceSettings().setWelcomeCheck(QStringLiteral("1"));
    destroyedMsgbox();
    close(); // deletes this screen as soon as control is back in the event loop
    ScreenFactory::instance()->loading()->show();
}

void WelcomeDlg::keyPressEvent(QKeyEvent *event)
{
    qDebug("WelcomeDlg,keyPressEvent,key=%0x", static_cast<unsigned>(event->key()));
    runTimer();
    if (!fgActionInvalid()) {
        qDebug("WelcomeDlg,keyPressEvent,action invalid");
        return;
    }
    if (event->key() == Qt::Key_TopMenu)
        qDebug("WelcomeDlg,keyPressEvent,do nothing");
    QDialog::keyPressEvent(event);
}

void WelcomeDlg::keyReleaseEvent(QKeyEvent *event)
{
    qDebug("WelcomeDlg,keyReleaseEvent,key=%0x", static_cast<unsigned>(event->key()));
    runTimer();
    if (!fgActionInvalid()) {
        qDebug("WelcomeDlg,keyReleaseEvent,action invalid");
        return;
    }
    if (event->key() == Qt::Key_Back)
        askToLeave();
    else
        QDialog::keyReleaseEvent(event);
}

void WelcomeDlg::askToLeave()
{
    if (isFatalMessageUp())
        return;
    setMsgBoxInfoType(LABELS_YES_NO);
    const QPointer<WelcomeDlg> self(this);
    // No blank after the full stop, a blank and a line break at the end: deliberate.
    const bool isNo =
        showMsgbox(MSG_QUESTION, tr("You have reached the last window.Are you sure you want to exit Velmora? \n")) == 0;
    if (!self || isBoxDestroyed())
        return;
    if (isNo)
        resetFocus(false);
    else
        leaveAsWished();
}
