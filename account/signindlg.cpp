#include "account/signindlg.h"

#include "account/afterlogin.h"
#include "account/loginfile.h"
#include "service/devicepaths.h"
#include "service/velmoralogin.h"
#include "service/wshandle.h"
#include "service/wsreply.h"
#include "ui_signindlg.h"
#include "widgets/textentry.h"

#include <virtualkb/qtvirtualkbdlg.h>

#include <QDebug>
#include <QKeyEvent>

SignInDlg::SignInDlg(QWidget *parent)
    : TextEntryDlg(parent)
    , ui(new Ui::SignInDlg)
{
    qDebug("new SignInDlg..");
    ui->setupUi(this);
    auto *entry = new TextEntry(this);
    entry->add(ui->emailLineEdit);
    entry->add(ui->passwordLineEdit);
    TextEntry::setPromptStyle(ui->emailLineEdit);
    TextEntry::setPromptStyle(ui->passwordLineEdit);
    ui->emailLineEdit->setText(tr("Enter your Velmora account..."));
    ui->emailLineEdit->setAccessibleName(ui->emailLabel->text());
    ui->passwordLineEdit->setAccessibleName(ui->passwordLabel->text());
    ui->passwordLineEdit->setEchoMode(QLineEdit::Password);
    ui->blueContentLabel->hide();
    ui->blueIconLabel->hide();

    showDigitHint(1);
    makeKeyboard(ui->emailLineEdit, true, QPoint(320, 310));
    connect(m_keyboard, &QtVirtualKbDlg::signalSendContext, this, &SignInDlg::signInVelmora);
    connect(m_keyboard, &QtVirtualKbDlg::signalRestoreInitState, this, &SignInDlg::recoverInitInputState);
    connect(m_keyboard, &QtVirtualKbDlg::signalFirstKey, this, &SignInDlg::changeInitInputState);
    connect(m_keyboard, &QtVirtualKbDlg::signalPageNum, this, &SignInDlg::showDigitHint);

    m_login = new VelmoraLogin(this);
    connect(m_login, &VelmoraLogin::signaVelmoraLoginFatalError, this, &SignInDlg::displayError);
    connect(m_login, &VelmoraLogin::signalGetStationListDone, this, &SignInDlg::enterVelmoraMainDlg);
    // The login sequence ends in a login by device identity, which the service may refuse.
    connect(m_login, &VelmoraLogin::signalLoginWithDeviceIDDoneError, this, &SignInDlg::displayUnknownDevice);
    ui->emailLineEdit->setFocus(Qt::OtherFocusReason);
}

SignInDlg::~SignInDlg()
{
    qDebug("del SignInDlg..");
}

QLineEdit *SignInDlg::activeField() const
{
    return m_stage == Stage::Email ? ui->emailLineEdit : ui->passwordLineEdit;
}

void SignInDlg::showByAccount(const QString &account)
{
    ui->emailLineEdit->setText(account);
    askForPassword();
    show();
}

void SignInDlg::askForPassword()
{
    m_stage = Stage::Password;
    ui->emailLineEdit->setReadOnly(true);
    ui->emailLineEdit->clearFocus();
    TextEntry::setPromptStyle(ui->emailLineEdit);
    ui->passwordLineEdit->setReadOnly(false);
    ui->passwordLineEdit->setFocus(Qt::OtherFocusReason);
    TextEntry::setTypingStyle(ui->passwordLineEdit);
    m_keyboard->enableLineEdit(ui->passwordLineEdit, true);
}

void SignInDlg::askForEmailAgain()
{
    ui->passwordLineEdit->clear();
    ui->passwordLineEdit->setReadOnly(true);
    ui->passwordLineEdit->clearFocus();
    TextEntry::setPromptStyle(ui->passwordLineEdit);
    ui->emailLineEdit->setReadOnly(false);
    ui->emailLineEdit->setFocus(Qt::OtherFocusReason);
    TextEntry::setTypingStyle(ui->emailLineEdit);
    m_keyboard->enableLineEdit(ui->emailLineEdit, false);
    m_stage = Stage::Email;
    if (m_page != letterPage)
        m_keyboard->changePage();
}

bool SignInDlg::signInFromLoginFile()
{
    const std::optional<LoginFile> file = LoginFile::read(device::loginFile());
    if (!file)
        return false;
    ui->emailLineEdit->setText(QString::fromLatin1(file->email));
    ui->passwordLineEdit->setText(QString::fromLatin1(file->password));
    // Uses the file's values, not the fields': a line edit drops the line feed that a file without carriage returns
    // leaves.
    logIn(QString::fromLatin1(file->email), QString::fromLatin1(file->password));
    return true;
}

void SignInDlg::logIn(const QString &email, const QString &password)
{
    m_isLoginUnderWay = true; // set first: a refusal is signalled during the call
    const QPointer<SignInDlg> guard(this);
    const bool isAnswerExpected = m_login->userLogin(email, password);
    if (!guard || isAnswerExpected)
        return;
    m_isLoginUnderWay = false;
    emit signalChangeHighlight(true);
    activeField()->setFocus(Qt::OtherFocusReason);
    controlAnimation(true);
}

void SignInDlg::signInVelmora(QString strContent)
{
    qDebug("SignInDlg,signInVelmora,stage=%d.", int(m_stage));
    if (m_isLoginUnderWay) { // one from the login file shows no animation, so keys still arrive
        qDebug("SignInDlg,signInVelmora,login under way,return.");
        return;
    }
    if (strContent.isEmpty()) {
        if (!signInFromLoginFile())
            showWarning(tr("No information was entered.Please try again."));
        return;
    }
    if (m_stage == Stage::Email) {
        askForPassword();
        return;
    }
    ui->passwordLineEdit->clearFocus();
    emit signalChangeHighlight(false);
    controlAnimation(false, tr("Please wait..."));
    logIn(ui->emailLineEdit->text(), ui->passwordLineEdit->text());
}

void SignInDlg::displayUnknownDevice()
{
    displayError(VLM_WS_ERR_DEVICE_NOT_FOUND);
}

void SignInDlg::displayError(VLM_WS_EXT_ERRCODE_T e_ret)
{
    qDebug("SignInDlg,displayError,ret=%d.", int(e_ret));
    m_isLoginUnderWay = false;
    if (isFatalMessageUp())
        return;
    emit signalChangeHighlight(true);
    activeField()->setFocus(Qt::OtherFocusReason);
    controlAnimation(true);
    const QString text = messageFor(e_ret, tr("Incorrect Login ,please try again!"));
    const QPointer<SignInDlg> guard(this);
    showMsgbox(MSG_WARNING, text);
    if (!guard)
        return;
    askForEmailAgain(); // the typed address stays
}

void SignInDlg::enterVelmoraMainDlg(HANDLE_T h_handle)
{
    qDebug("SignInDlg,enterVelmoraMainDlg...");
    emit signalChangeHighlight(true);
    activeField()->setFocus(Qt::OtherFocusReason);
    controlAnimation(true);
    WsHandle handle(h_handle);
    if (isFatalMessageUp())
        return;
    qDebug("SignInDlg,enterVelmoraMainDlg,station count=%d...", wsreply::StationList(h_handle).count());
    ui->passwordLineEdit->clear();
    afterlogin::enterPlayer(this, m_login, handle.take());
}

void SignInDlg::changeInitInputState()
{
    qDebug("SignInDlg,changeInitInputState...");
    if (m_stage != Stage::Email)
        return;
    TextEntry::setTypingStyle(ui->emailLineEdit);
    ui->emailLineEdit->setReadOnly(false);
}

void SignInDlg::recoverInitInputState()
{
    qDebug("SignInDlg,recoverInitInputState...");
    // Only the e-mail field has a prompt.
    if (!ui->emailLineEdit->text().isEmpty())
        return;
    TextEntry::setPromptStyle(ui->emailLineEdit);
    ui->emailLineEdit->setReadOnly(true);
    ui->emailLineEdit->setText(tr("Enter your Velmora account..."));
}

void SignInDlg::showDigitHint(int pageNum)
{
    m_page = pageNum;
    if (pageNum == letterPage) {
        ui->blueContentLabel->hide();
        ui->blueIconLabel->hide();
        ui->greenContentLabel->show();
        ui->greenIconLabel->show();
    } else if (pageNum == symbolPage) {
        ui->greenContentLabel->hide();
        ui->greenIconLabel->hide();
    }
}

void SignInDlg::loseFocus(bool fgMsgbox)
{
    qDebug("SignInDlg,loseFocus..fgMsgbox=%d.", fgMsgbox);
    activeField()->clearFocus();
    emit signalChangeHighlight(false);
    TextEntryDlg::loseFocus(fgMsgbox);
}

void SignInDlg::resetFocus(bool fgMsgbox)
{
    qDebug("SignInDlg,resetFocus..fgMsgbox=%d.", fgMsgbox);
    emit signalChangeHighlight(true);
    activeField()->setFocus(Qt::OtherFocusReason);
    TextEntryDlg::resetFocus(fgMsgbox);
}

void SignInDlg::keyReleaseEvent(QKeyEvent *event)
{
    qDebug("SignInDlg,keyReleaseEvent,event->key=%0x", event->key());
    runTimer();
    if (!fgActionInvalid()) {
        qDebug("SignInDlg,keyReleaseEvent,action invalid,return.");
        return;
    }
    if (event->key() == Qt::Key_Back) {
        qDebug("SignInDlg,keyReleaseEvent.recv Qt::Key_Back.");
        if (m_stage == Stage::Password)
            askForEmailAgain();
        else
            emit signalReturnBtn();
        return;
    }
    TextEntryDlg::keyReleaseEvent(event);
}
