// The player screen: its life, its port, and what it shows when something fails.
#include "player/velmoramaindlg.h"

#include "app/errortexts.h"
#include "app/playerdialog.h"
#include "netcommon/httpdownload.h"
#include "netcommon/ipcthread.h"
#include "netcommon/networknotify.h"
#include "netcommon/playback.h"
#include "netcommon/playbackthread.h"
#include "player/waterline.h"
#include "service/devicepaths.h"
#include "service/velmorasettings.h"
#include "service/velmorawebservice.h"
#include "ui_velmoramaindlg.h"
#include "widgets/tiledbackground.h"

#include <QDebug>

VelmoraMainDlg *VelmoraMainDlg::m_instance = nullptr;

namespace {

constexpr int listPageSize = 9; // rows that both lists show

} // namespace

VelmoraMainDlg *VelmoraMainDlg::getInstance()
{
    if (!m_instance)
        m_instance = new VelmoraMainDlg;
    return m_instance;
}

VelmoraMainDlg::VelmoraMainDlg()
    : ui(std::make_unique<Ui::VelmoraMainDlg>())
    , m_webService(VelmoraWebService::getInstance())
    , m_waterlineTimer(new QTimer(this))
    , m_playbackThread(std::make_unique<netcommon::PlaybackThread>())
    , m_download(std::make_unique<netcommon::HttpDownload>())
{
    qDebug("new VelmoraMainDlg");
    ui->setupUi(this);
    new TiledBackground(QStringLiteral(":/images/Main_Bg.png"), ui->velmoraMainFrame);
    initPlaybackInfo();
    showEntryTexts(QString(), QString(), QString(), false);
    ui->stationIconLabel->hide();
    ui->stationCaptionLabel->hide();
    showUserName();
    m_playbackThread->start(QThread::InheritPriority);
    runTimer();
    m_download->setDownloadFolder(device::scratchDir() + QLatin1Char('/'));
    m_waterlineTimer->setInterval(waterline::tickMs);

    wireStations();
    wirePlayback();
    wireFeedback();
    wireNowPlaying();
    wireFocus();
    wireManage();

    ui->stationListWidget->setPageSize(listPageSize);
    ui->playListWidget->setPageSize(listPageSize);
    setExisting(this);
}

VelmoraMainDlg::~VelmoraMainDlg()
{
    qDebug("del VelmoraMainDlg");
    m_isGoing = true;
    if (m_instance == this)
        m_instance = nullptr;
    if (existing() == this)
        setExisting(nullptr);
    // Dialogs report their end to this screen while it is still complete.
    for (PlayerDialog *dialog : std::as_const(m_dialogs)) {
        dialog->disconnect(this);
        delete dialog;
    }
    ui->stationListWidget->disconnect(this);
    ui->playListWidget->disconnect(this);

    ui.reset();
    delete m_waterlineTimer;
    releaseStationInfoList(true, 0);
    m_download.reset();
    m_playbackThread->setType(PLAYBACK_TYPE_END);
    if (m_playbackThread->wait())
        qDebug("VelmoraMainDlg,delete,m_playbackThread return true.");
    else
        qDebug("VelmoraMainDlg,delete,m_playbackThread return false.");
    m_playbackThread.reset();
    m_stationlist_handle.reset();
    m_playlist_handle.reset();
    m_adMetadata_handle.reset();
    m_playbackAnimation.reset();
}

void VelmoraMainDlg::showUserName()
{
    VelmoraSettings settings = deviceSettings();
    ui->userNameLabel->setText(settings.getLastLoginName());
}

// Closes the screen for good. The event loop deletes it; until then it receives no signals.
void VelmoraMainDlg::leave()
{
    m_isGoing = true;
    destroyedMsgbox();
    controlAnimation(true);
    stopTimer();
    m_waterlineTimer->stop();
    m_webService->disconnect(this);
    netcommon::Playback::getInstance()->disconnect(this);
    netcommon::NetworkNotify::getInstance()->disconnect(this);
    netcommon::IpcThread::getInstance()->disconnect(this);
    m_download->disconnect(this);
    if (m_instance == this)
        m_instance = nullptr;
    if (existing() == this)
        setExisting(nullptr);
    close();
}

// ---- the port

void VelmoraMainDlg::stopCurrentSong()
{
    stopSong();
}

void VelmoraMainDlg::playCurrentSong()
{
    playSong();
}

void VelmoraMainDlg::fillFromStationList(HANDLE_T h_handle)
{
    showUserName();
    fillupStationListBox(h_handle, VLM_WS_ERR_OK, nullptr);
}

void VelmoraMainDlg::restartIdleTimer()
{
    runTimer();
}

void VelmoraMainDlg::signOutAfterError()
{
    m_isplayready = true; // a starting track delays only the sign-out that the listener asks for
    signout();
}

// ---- what goes wrong

bool VelmoraMainDlg::warn(const QString &text)
{
    const QPointer<VelmoraMainDlg> self(this);
    loseFocus(false);
    showWarning(text);
    if (!self || m_isGoing)
        return false;
    resetFocus();
    return true;
}

void VelmoraMainDlg::showAndLeave(int type, const QString &text)
{
    if (isFatalMessageUp())
        return;
    const QPointer<VelmoraMainDlg> self(this);
    showLastMsgbox(type, text);
    if (self && !m_isGoing && !isEixt && !m_isNetworkError)
        emit signalExit(false, true);
}

bool VelmoraMainDlg::reportError(VLM_WS_EXT_ERRCODE_T e_ret, const QString &fallback)
{
    const QString text = messageFor(e_ret, fallback);
    loseFocus(false);
    if (isFatalMessageUp())
        return false;

    const QPointer<VelmoraMainDlg> self(this);
    const errortexts::Reaction reaction = errortexts::reactionTo(e_ret, errortexts::Place::Player);
    if (reaction == errortexts::Reaction::SignOut) {
        m_isErrorMsg = true;
        emit signalFatalErr(e_ret);
    }
    if (reaction == errortexts::Reaction::Leave)
        showLastMsgbox(MSG_WARNING, text);
    else
        showMsgbox(MSG_WARNING, text);
    // A network loss and an exit close the box and decide by themselves what follows.
    if (!self || m_isGoing || isEixt || m_isNetworkError)
        return false;
    // Another box replaced this one: the listener has not confirmed the message, so the radio does not end.
    if (reaction == errortexts::Reaction::Leave && !isBoxDestroyed()) {
        emit signalExit(false, true);
        return false;
    }
    resetFocus();
    if (reaction != errortexts::Reaction::SignOut)
        return true;
    signOutAfterError(); // also when the box was replaced: the service refuses this account from now on
    return false;
}
