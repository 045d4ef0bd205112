#include "account/emailpwddlg.h"

#include "app/screenfactory.h"
#include "service/velmorawebservice.h"
#include "service/wshandle.h"
#include "ui_emailpwddlg.h"
#include "widgets/textentry.h"

#include <virtualkb/qtvirtualkbdlg.h>

#include <QDebug>
#include <QKeyEvent>

namespace {

// The field's style on this screen: light while it is empty, dark while text is typed.
constexpr char initialStyle[] = "color: rgb(0,0,0);\nborder-image: url(:/images/InputBox_Focus_H.png);\n"
                                "background-color: rgba(255, 255, 255, 0);";
constexpr char typingStyle[] = "color: rgb(255, 255, 255);\nborder-image: url(:/images/sign_inputbox.png);\n";

} // namespace

EmailPwdDlg::EmailPwdDlg(QWidget *parent)
    : TextEntryDlg(parent)
    , ui(new Ui::EmailPwdDlg)
{
    qDebug("new EmailPwdDlg..");
    ui->setupUi(this);
    (new TextEntry(this))->add(ui->emailLineEdit);
    ui->emailLineEdit->setAccessibleName(ui->titleLabel->text());
    makeKeyboard(ui->emailLineEdit, true, QPoint(137, 280));
    connect(m_keyboard, &QtVirtualKbDlg::signalSendContext, this, &EmailPwdDlg::emailPassword);
    connect(m_keyboard, &QtVirtualKbDlg::signalRestoreInitState, this, &EmailPwdDlg::recoverInitInputState);
    connect(m_keyboard, &QtVirtualKbDlg::signalFirstKey, this, &EmailPwdDlg::changeInitInputState);
    connect(VelmoraWebService::getInstance(), &VelmoraWebService::signalEmailPassowrdDone, this,
            &EmailPwdDlg::emailPasswordDone);
    ui->emailLineEdit->setFocus(Qt::OtherFocusReason);
}

EmailPwdDlg::~EmailPwdDlg()
{
    qDebug("del EmailPwdDlg..");
}

void EmailPwdDlg::openSignIn()
{
    retire();
    ScreenFactory::instance()->signIn()->show();
}

void EmailPwdDlg::emailPassword(QString strUserName)
{
    qDebug("EmailPwdDlg,emailPassword...");
    HANDLE_T handle = 0;
    const VLM_WS_EXT_ERRCODE_T result =
        VelmoraWebService::getInstance()->emailPassword(strUserName.toUtf8().constData(), false, nullptr, &handle);
    if (result == VLM_WS_ERR_OK) {
        controlAnimation(false, tr("Email passowrd..."));
        return;
    }
    qDebug("EmailPwdDlg,emailPassword,error,return=%d", int(result));
    showWarning(tr("Can not get the password because of system error!"));
}

void EmailPwdDlg::emailPasswordDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *)
{
    qDebug("EmailPwdDlg,emailPasswordDone...");
    {
        const WsHandle owner(h_handle);
    }
    controlAnimation(true);
    if (e_ret == VLM_WS_ERR_OK) {
        openSignIn();
        return;
    }
    qDebug("EmailPwdDlg,emailPasswordDone,error,return=%d", int(e_ret));
    if (isFatalMessageUp())
        return;
    const QString text =
        e_ret == VLM_WS_ERR_MAINTENANCE
            ? handleWSError(e_ret)
            : tr("Please check the email address your provided for instructions on retrieving your Velmora password.");
    const QPointer<EmailPwdDlg> guard(this);
    showMsgbox(MSG_WARNING, text);
    if (!guard || isEixt || m_isErrorMsg)
        return;
    openSignIn();
}

void EmailPwdDlg::changeInitInputState()
{
    qDebug("EmailPwdDlg,changeInitInputState...");
    ui->emailLineEdit->setStyleSheet(QLatin1String(typingStyle));
    ui->emailLineEdit->setReadOnly(false);
    ui->emailLineEdit->setFocus(Qt::OtherFocusReason);
}

void EmailPwdDlg::recoverInitInputState()
{
    qDebug("EmailPwdDlg,recoverInitInputState...");
    if (!ui->emailLineEdit->text().isEmpty())
        return;
    qDebug("EmailPwdDlg,recoverInitInputState,init the stationNameLineEdit..."); // the field's name is deliberate
    ui->emailLineEdit->setStyleSheet(QLatin1String(initialStyle));
    ui->emailLineEdit->setReadOnly(true);
}

void EmailPwdDlg::loseFocus(bool fgMsgbox)
{
    qDebug("EmailPwdDlg,loseFocus..fgMsgbox=%d.", fgMsgbox);
    ui->emailLineEdit->clearFocus();
    emit signalChangeHighlight(false);
    TextEntryDlg::loseFocus(fgMsgbox);
}

void EmailPwdDlg::resetFocus(bool fgMsgbox)
{
    qDebug("EmailPwdDlg,resetFocus..fgMsgbox=%d.", fgMsgbox);
    emit signalChangeHighlight(true);
    ui->emailLineEdit->setFocus(Qt::OtherFocusReason);
    TextEntryDlg::resetFocus(fgMsgbox);
}

void EmailPwdDlg::keyReleaseEvent(QKeyEvent *event)
{
    runTimer();
    if (!fgActionInvalid()) {
        qDebug("EmailPwdDlg,keyReleaseEvent,action invalid,return.");
        return;
    }
    if (event->key() == Qt::Key_Back) {
        qDebug("EmailPwdDlg,keyReleaseEvent.recv Qt::Key_Back.");
        emit signalReturnBtn();
        return;
    }
    TextEntryDlg::keyReleaseEvent(event);
}
