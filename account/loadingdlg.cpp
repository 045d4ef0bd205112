#include "account/loadingdlg.h"

#include "account/afterlogin.h"
#include "app/errortexts.h"
#include "app/screenfactory.h"
#include "service/velmoralogin.h"
#include "service/velmorasettings.h"
#include "service/velmorawebservice.h"
#include "service/wshandle.h"
#include "service/wsreply.h"
#include "ui_loadingdlg.h"

#include <QTimer>

namespace {

constexpr int framePeriodMs = 200;
constexpr int loginDelayMs = 200; // so that the screen is painted first

// 0: no account on this device yet, 1: some.
int loginStateOf(const QStringList &userNames)
{
    return userNames.isEmpty() ? 0 : 1;
}

QStringList storedUserNames()
{
    return deviceSettings().getAllUserName();
}

} // namespace

LoadingDlg::LoadingDlg(QWidget *parent)
    : VelmoraParentWidget(parent)
    , ui(new Ui::LoadingDlg)
    , m_animationTimer(new QTimer(this))
    , m_login(new VelmoraLogin(this))
{
    ui->setupUi(this);
    m_frames = {ui->loadingAnimationLabel_1, ui->loadingAnimationLabel_2, ui->loadingAnimationLabel_3,
                ui->loadingAnimationLabel_4, ui->loadingAnimationLabel_5, ui->loadingAnimationLabel_6,
                ui->loadingAnimationLabel_7, ui->loadingAnimationLabel_8, ui->loadingAnimationLabel_9,
                ui->loadingAnimationLabel_10};
    for (QLabel *frame : std::as_const(m_frames))
        frame->hide();
    connect(m_animationTimer, &QTimer::timeout, this, &LoadingDlg::loadingAnimation);
    m_animationTimer->start(framePeriodMs);
    wireLogin();
    QTimer::singleShot(loginDelayMs, this, &LoadingDlg::signalPartnerLogin);
    qDebug("new LoadingDlg done.");
}

void LoadingDlg::wireLogin()
{
    connect(this, &LoadingDlg::signalPartnerLogin, m_login, &VelmoraLogin::partnerLogin);
    connect(m_login, &VelmoraLogin::signalPartnerLoginDone, this, &LoadingDlg::deviceidlogin);
    connect(m_login, &VelmoraLogin::signalLoginWithDeviceIDDoneError, this, &LoadingDlg::connectToVelmora);
    connect(m_login, &VelmoraLogin::signaVelmoraLoginFatalError, this, &LoadingDlg::displayError);
    connect(m_login, &VelmoraLogin::signalGetStationListDone, this, &LoadingDlg::enterVelmoraMainDlg);
}

LoadingDlg::~LoadingDlg()
{
    qDebug("del LoadingDlg...");
}

void LoadingDlg::loseFocus(bool fgMsgbox)
{
    qDebug("LoadingDlg,loseFocus..");
    VelmoraParentWidget::loseFocus(fgMsgbox);
}

void LoadingDlg::resetFocus(bool fgMsgbox)
{
    qDebug("LoadingDlg,resetFocus..");
    VelmoraParentWidget::resetFocus(fgMsgbox);
}

void LoadingDlg::loadingAnimation()
{
    for (QLabel *frame : std::as_const(m_frames))
        frame->hide();
    m_frames.at(m_frameIndex)->show();
    m_frameIndex = (m_frameIndex + 1) % int(m_frames.size());
}

void LoadingDlg::deviceidlogin()
{
    qDebug("LoadingDlg,deviceidlogin..");
    QStringList userNames;
    AccountRecord lastLogin;
    {
        VelmoraSettings settings = deviceSettings();
        userNames = settings.getAllUserName();
        lastLogin = settings.getLastLogin();
    }
    if (userNames.isEmpty())
        goToAccountSelection(0);
    else if (!lastLogin.userName.isEmpty() || !lastLogin.password.isEmpty())
        m_login->userLoginWithDeviceID();
    else
        goToAccountSelection(1);
}

void LoadingDlg::connectToVelmora()
{
    qDebug("LoadingDlg,connectToVelmora..");
    goToAccountSelection(loginStateOf(storedUserNames()));
}

void LoadingDlg::leaveScreen()
{
    m_animationTimer->stop();
    retire(m_login);
}

void LoadingDlg::goToAccountSelection(int loginState)
{
    leaveScreen();
    qDebug("LoadingDlg,connectToVelmora,first login..."); // the same text in every case (deliberate)
    int storedState = 0;
    {
        VelmoraSettings settings = deviceSettings();
        settings.setLoginState(QString::number(loginState));
        storedState = settings.getLoginState().toInt();
    }
    ScreenFactory::instance()->selectUser(storedState)->show();
}

void LoadingDlg::enterVelmoraMainDlg(HANDLE_T h_handle)
{
    qDebug("LoadingDlg,enterVelmoraMainDlg...");
    WsHandle handle(h_handle);
    if (isFatalMessageUp())
        return;
    const int count = wsreply::StationList(handle.get()).count();
    qDebug("LoadingDlg,enterVelmoraMainDlg,station count=%d...", count);
    m_animationTimer->stop();
    afterlogin::enterPlayer(this, m_login, handle.take());
}

void LoadingDlg::displayError(VLM_WS_EXT_ERRCODE_T e_ret)
{
    qDebug("LoadingDlg,displayError,ret=%d.", e_ret);
    m_animationTimer->stop();
    if (errortexts::reactionTo(e_ret, errortexts::Place::Loading) == errortexts::Reaction::SelectAccount) {
        goToAccountSelection(loginStateOf(storedUserNames()));
        return;
    }
    const QString text = messageFor(e_ret, tr("Connect to Velmora failed!"));
    if (isFatalMessageUp())
        return;
    const QPointer<LoadingDlg> self(this);
    showLastMsgbox(MSG_ERROR, text);
    if (self && !isBoxDestroyed())
        emit signalExit(false, true);
}
