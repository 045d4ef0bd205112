#include "account/internetradiodlg.h"

#include "account/afterlogin.h"
#include "account/deviceactivation.h"
#include "service/velmoralogin.h"
#include "service/velmorasettings.h"
#include "service/velmorawebservice.h"
#include "service/wshandle.h"
#include "service/wsreply.h"
#include "ui_internetradiodlg.h"
#include "widgets/qrcode.h"

#include <QDebug>
#include <QKeyEvent>

namespace {

constexpr QRect qrCodePlace(1000, 428, 180, 180); // right of the button, on the canvas

} // namespace

InternetRadioDlg::InternetRadioDlg(const QString &codeLine, const QString &pageLine, QWidget *parent)
    : VelmoraParentWidget(parent)
    , ui(new Ui::InternetRadioDlg)
    , m_login(new VelmoraLogin(this))
    , m_qrCode(new QrCode(this))
{
    qDebug("New InternetRadioDlg...");
    ui->setupUi(this);
    if (!codeLine.isEmpty())
        ui->descriptionLabel3->setText(codeLine);
    if (!pageLine.isEmpty())
        ui->descriptionLabel->setText(pageLine);
    m_qrCode->setObjectName(QStringLiteral("qrCode"));
    m_qrCode->setGeometry(qrCodePlace);
    m_qrCode->raise(); // above the panel, which came later
    showQrCode();
    connect(ui->okBtn, &QPushButton::clicked, this, &InternetRadioDlg::userLoginWithDeviceID);
    connect(VelmoraWebService::getInstance(), &VelmoraWebService::signalGenerateDeviceActivationCodeDone, this,
            &InternetRadioDlg::generateDeviceActivationCodeDone);
    connect(m_login, &VelmoraLogin::signalGetStationListDone, this, &InternetRadioDlg::enterVelmoraMainDlg);
    connect(m_login, &VelmoraLogin::signalLoginWithDeviceIDDoneError, this, &InternetRadioDlg::displayError);
    // Without this connection a failed login would leave "Please wait..." on the screen for ever.
    connect(m_login, &VelmoraLogin::signaVelmoraLoginFatalError, this, &InternetRadioDlg::displayFatalError);
    dress(true);
    ui->okBtn->setFocus(Qt::OtherFocusReason);
}

InternetRadioDlg::~InternetRadioDlg()
{
    qDebug("Del InternetRadioDlg...");
}

void InternetRadioDlg::showQrCode()
{
    const QString address =
        deviceactivation::addressWithCode(ui->descriptionLabel->text(), ui->descriptionLabel3->text());
    m_qrCode->setText(address.toUtf8());
    m_qrCode->setVisible(!m_qrCode->isEmpty());
}

void InternetRadioDlg::dress(bool isFocused)
{
    ui->okBtn->setStyleSheet(
        isFocused ? QStringLiteral("border-image: url(:/images/Button_Focus_H.png);\ncolor: rgb(0, 0, 0);")
                  : QStringLiteral("border-image: url(:/images/Button_Normal_H.png);\ncolor: rgb(255, 255, 255);"));
}

void InternetRadioDlg::userLoginWithDeviceID()
{
    controlAnimation(false, tr("Please wait..."));
    // The settings keep the last login until the service has logged the new account in. So the next start does not
    // change, whatever ends this screen.
    m_login->setActivationSlot(deviceSettings().getFreeSlot());
    m_login->userLoginWithDeviceID();
}

void InternetRadioDlg::displayError()
{
    controlAnimation(true);
    if (isFatalMessageUp())
        return;
    dress(false);
    const QPointer<InternetRadioDlg> guard(this);
    showMsgbox(MSG_WARNING, tr("Please activate your device to continue."));
    if (!guard || isBoxDestroyed() || isEixt || m_isErrorMsg)
        return;
    dress(true);
    generateDeviceActivationCode();
}

void InternetRadioDlg::displayFatalError(VLM_WS_EXT_ERRCODE_T e_ret)
{
    controlAnimation(true);
    showWarning(messageFor(e_ret, tr("Incorrect login,please try again!")));
}

void InternetRadioDlg::generateDeviceActivationCode()
{
    qDebug("InternetRadioDlg,generateDeviceActivationCode...");
    const auto result = deviceactivation::requestCode();
    if (!result)
        return;
    if (*result == VLM_WS_ERR_OK) {
        controlAnimation(false, tr("Please wait..."));
        return;
    }
    qDebug("InternetRadioDlg,generateDeviceActivationCode failed,e_ret=%d.", int(*result));
    showWarning(tr("Can not generate device activation code!"));
}

void InternetRadioDlg::generateDeviceActivationCodeDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *)
{
    if (const auto code = deviceactivation::takeCode(this, h_handle, e_ret)) {
        ui->descriptionLabel3->setText(deviceactivation::codeLine(code->code));
        showQrCode();
    } else // the old code stays on the screen
        showWarning(messageFor(e_ret, tr("Generate device activation code failed,you could try again!")));
}

void InternetRadioDlg::enterVelmoraMainDlg(HANDLE_T h_handle)
{
    qDebug("InternetRadioDlg,enterVelmoraMainDlg...");
    WsHandle handle(h_handle);
    if (isFatalMessageUp())
        return;
    qDebug("InternetRadioDlg,enterVelmoraMainDlg,station count=%d...", wsreply::StationList(h_handle).count());
    afterlogin::enterPlayer(this, m_login, handle.take());
}

void InternetRadioDlg::loseFocus(bool fgMsgbox)
{
    qDebug("InternetRadioDlg,loseFocus...");
    dress(false);
    ui->okBtn->clearFocus();
    VelmoraParentWidget::loseFocus(fgMsgbox);
}

void InternetRadioDlg::resetFocus(bool fgMsgbox)
{
    qDebug("InternetRadioDlg,resetFocus...");
    dress(true);
    ui->okBtn->setFocus(Qt::OtherFocusReason);
    VelmoraParentWidget::resetFocus(fgMsgbox);
}

void InternetRadioDlg::keyPressEvent(QKeyEvent *event)
{
    qDebug("InternetRadioDlg,keyPressEvent,event->key=%0x", event->key());
    if (!fgActionInvalid()) {
        qDebug("InternetRadioDlg,keyPressEvent,action invalid,return.");
        return;
    }
    if (event->key() == Qt::Key_News)
        qDebug("InternetRadioDlg,keyPressEvent.recv Qt::Key_News.");
    VelmoraParentWidget::keyPressEvent(event);
}

void InternetRadioDlg::keyReleaseEvent(QKeyEvent *event)
{
    qDebug("InternetRadioDlg,keyReleaseEvent,event->key=%0x", event->key());
    runTimer();
    if (!fgActionInvalid()) {
        qDebug("InternetRadioDlg,keyReleaseEvent,action invalid,return.");
        return;
    }
    if (event->key() == Qt::Key_Back) {
        qDebug("InternetRadioDlg,keyReleaseEvent.recv Qt::Key_Back.");
        emit signalReturnBtn();
        return;
    }
    VelmoraParentWidget::keyReleaseEvent(event);
}
