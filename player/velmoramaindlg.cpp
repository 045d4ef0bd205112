// The player screen: its life, its port, and what it shows when something fails.
#include "player/velmoramaindlg.h"

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
    : ui(new Ui::VelmoraMainDlg)
    , m_webService(VelmoraWebService::getInstance())
    , m_waterlineTimer(new QTimer(this))
    , m_playbackThread(new netcommon::PlaybackThread)
    , m_download(new netcommon::HttpDownload)
{
    qDebug("new VelmoraMainDlg");
    ui->setupUi(this);
    initPlaybackInfo();
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
    // Dialogs report their end to this screen, which must still be one then.
    if (m_childDlg)
        m_childDlg->disconnect(this);
    delete m_childDlg.data();
    ui->stationListWidget->disconnect(this);
    ui->playListWidget->disconnect(this);

    delete ui;
    delete m_waterlineTimer;
    releaseStationInfoList(true, 0);
    delete m_download;
    m_playbackThread->setType(PLAYBACK_TYPE_END);
    if (m_playbackThread->wait())
        qDebug("VelmoraMainDlg,delete,m_playbackThread return true.");
    else
        qDebug("VelmoraMainDlg,delete,m_playbackThread return false.");
    delete m_playbackThread;
    m_stationlist_handle.reset();
    m_playlist_handle.reset();
    m_adMetadata_handle.reset();
    delete m_playbackAnimation;
}

void VelmoraMainDlg::showUserName()
{
    VelmoraSettings settings(device::settingsFile(), QSettings::IniFormat, nullptr);
    ui->userNameLabel->setText(settings.getLastLoginName());
}

// Closes the screen for good. It is deleted as soon as control is back in the event loop; until then it hears nothing.
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
    m_isplayready = true; // a track that is being started holds up the listener's sign-out only
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
    showMsgbox(type, text);
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
    const bool isInactive = e_ret == VLM_WS_ERR_ACCOUNT_INACTIVE;
    if (isInactive) {
        m_isErrorMsg = true;
        emit signalFatalErr(e_ret);
    }
    showMsgbox(MSG_WARNING, text);
    // A box that the network's loss or an exit took away has been answered by them.
    if (!self || m_isGoing || isEixt || m_isNetworkError)
        return false;
    if (e_ret == VLM_WS_ERR_ERROR_CURL_FAILURE) {
        emit signalExit(false, true);
        return false;
    }
    resetFocus();
    if (isInactive)
        signOutAfterError();
    return !isInactive;
}
