// The player screen: creating, deleting and renaming stations, the Tapestry station, sign-out.
#include "app/screenfactory.h"
#include "app/stationdialog.h"
#include "netcommon/playbackthread.h"
#include "player/nowplayingtext.h"
#include "player/stationrecord.h"
#include "player/velmoramaindlg.h"
#include "service/velmoranextlimit.h"
#include "service/velmorasettings.h"
#include "service/velmorawebservice.h"
#include "ui_velmoramaindlg.h"
#include "widgets/cuttext.h"

#include <QDebug>

using nowplayingtext::questionLength;

namespace {

constexpr int mostStations = 100; // the Tapestry row counts
constexpr int createFromPlayer = 1;
constexpr int selectAfterSignOut = 2;

} // namespace

void VelmoraMainDlg::wireManage()
{
    connect(this, &VelmoraMainDlg::signalCreateStation, this, &VelmoraMainDlg::createStation);
    connect(this, &VelmoraMainDlg::signalDeleteStation, this, &VelmoraMainDlg::delStation);
    connect(this, &VelmoraMainDlg::signalRenameStation, this, &VelmoraMainDlg::renameStation);
    connect(this, &VelmoraMainDlg::signalTapestryStation, this, &VelmoraMainDlg::tapestryStation);
    connect(m_webService, &VelmoraWebService::signalDeleteStationDone, this, &VelmoraMainDlg::deleteStationDone);
}

// ---- create

void VelmoraMainDlg::createStation()
{
    qDebug("VelmoraMainDlg,createStation,count=%d.", ui->stationListWidget->count());
    if (ui->stationListWidget->count() >= mostStations) {
        warn(tr("Velmora only permits to create 100 stations,so you can not create more stations!"));
        return;
    }
    stopTimer();
    hide();
    StationDialog *dialog = ScreenFactory::instance()->createStation(createFromPlayer);
    recordHistroyUiType(VELMORA_UI_TYPE_MAIN);
    connect(dialog, &StationDialog::signalUpdateStationList, this, &VelmoraMainDlg::updateStationList);
    connect(dialog, &StationDialog::signalFatalErr, this, &VelmoraMainDlg::handleFatalErr);
    dialog->show();
}

// ---- what delete and rename ask first

int VelmoraMainDlg::ownStationRow(const QString &refusal)
{
    loseFocus(false);
    const int row = ui->stationListWidget->currentRow();
    if (row == 0)
        warn(refusal);
    else if (row > 0)
        return row;
    else
        resetFocus();
    return -1;
}

bool VelmoraMainDlg::confirm(const QString &question)
{
    if (isFatalMessageUp())
        return false;
    const QPointer<VelmoraMainDlg> self(this);
    setMsgBoxInfoType(LABELS_YES_NO);
    const bool isYes = showMsgbox(MSG_QUESTION, question) == 1;
    if (!self || m_isGoing)
        return false;
    if (isYes && !isBoxDestroyed() && !m_isErrorMsg && !isEixt)
        return true;
    resetFocus();
    return false;
}

// ---- delete

void VelmoraMainDlg::delStation()
{
    qDebug("VelmoraMainDlg,delStation,row=%d.", ui->stationListWidget->currentRow());
    const int row = ownStationRow(tr("Tapestry station can not be deleted!"));
    if (row < 0)
        return;
    const QString token = stationrecord::token(stationOfRow(row));
    if (!confirm(tr("Are you sure you want to delete station: \n") + cutText(stationRowText(row), questionLength) +
                 tr(" ?")))
        return;
    const VLM_STATION_MAP_T *station = stationOfRow(row);
    if (!station || stationrecord::token(station) != token) {
        qDebug("VelmoraMainDlg,delStation,the list has changed.");
        resetFocus();
        return;
    }
    if (!station->allowDelete) {
        warn(tr("This station can not be deleted!"));
        return;
    }
    HANDLE_T h_handle = 0;
    const VLM_WS_EXT_ERRCODE_T ret = m_webService->deleteStation(station->stationToken, false, nullptr, &h_handle);
    qDebug("VelmoraMainDlg,delStation,ret=%d.", ret);
    if (ret == VLM_WS_ERR_OK) {
        resetFocus();
        showAnimation(tr("Delete station..."));
        return;
    }
    const WsHandle refused(h_handle);
    m_playing_station_info_t.deleteStationIndex = 0;
    warn(tr("Sorry.Delete station failed,you could try aganin."));
}

void VelmoraMainDlg::deleteStationDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *)
{
    WsHandle handle(h_handle);
    qDebug("VelmoraMainDlg,deleteStationDone,ret=%d.", e_ret);
    controlAnimation(true);
    if (isFatalMessageUp())
        return;
    resetFocus(false);
    handle.reset();
    if (e_ret != VLM_WS_ERR_OK) {
        m_playing_station_info_t.deleteStationIndex = 0;
        reportError(e_ret, tr("Delete station failed ,please try later!"));
        return;
    }
    ImageListWidget *list = ui->stationListWidget;
    const int row = list->currentRow();
    if (!stationOfRow(row) || row < 1) {
        qDebug("VelmoraMainDlg,deleteStationDone,invalid row=%d.", row);
        return;
    }
    list->clearScroll();
    m_playing_station_info_t.deleteStationIndex = stationrecord::rowAfterDeletion(row, list->count());
    const bool wasPlaying = row == m_playing_station_info_t.selectedStationIndex;
    if (list->count() == 2) {
        // A listener must own a station: the player closes, and the creation screen opens.
        if (wasPlaying)
            stopFilePlay();
        leave();
        ScreenFactory::instance()->createStation(createFromPlayer)->show();
        return;
    }
    releaseStationInfoList(false, stationrecord::indexOfRow(row));
    if (!wasPlaying) {
        focusStation(false);
        return;
    }
    stopFilePlay();
    const QString token = stationrecord::token(stationOfRow(m_playing_station_info_t.deleteStationIndex));
    if (!token.isEmpty()) {
        m_strCurrentStationToken = token;
        rememberLastStation(token);
    }
    focusStation(true);
}

// ---- rename

void VelmoraMainDlg::renameStation()
{
    qDebug("VelmoraMainDlg,renameStation,row=%d.", ui->stationListWidget->currentRow());
    const int row = ownStationRow(tr("Tapestry station can not be renamed!"));
    if (row < 0)
        return;
    const QString token = stationrecord::token(stationOfRow(row));
    const QString name = stationRowText(row);
    if (!confirm(tr("Are you sure you want to rename station: \n") + cutText(name, questionLength) + tr(" ?")))
        return;
    const VLM_STATION_MAP_T *station = stationOfRow(row);
    if (!station || stationrecord::token(station) != token) {
        qDebug("VelmoraMainDlg,renameStation,the list has changed.");
        resetFocus();
        return;
    }
    if (!station->allowRename) {
        warn(tr("A share station cannot be renamed!"));
        return;
    }
    hide();
    stopTimer();
    StationDialog *dialog = ScreenFactory::instance()->renameStation(name, token);
    recordHistroyUiType(VELMORA_UI_TYPE_MAIN);
    connect(dialog, &StationDialog::signalUpdateStationName, this, &VelmoraMainDlg::updateStationName);
    connect(dialog, &StationDialog::signalFatalErr, this, &VelmoraMainDlg::handleFatalErr);
    dialog->show();
    m_playing_station_info_t.renametationIndex = row;
}

// ---- Tapestry

void VelmoraMainDlg::tapestryStation()
{
    qDebug("VelmoraMainDlg,tapestryStation...");
    ui->stationListWidget->clearBg(ui->stationListWidget->currentItem());
    ui->stationListWidget->setCurrentRow(0);
    getPlayList();
}

// ---- sign-out

void VelmoraMainDlg::signout()
{
    qDebug("VelmoraMainDlg,signout,isplayready=%d.", m_isplayready);
    if (!m_isplayready) {
        qDebug("VelmoraMainDlg,signout,a track is being started,return.");
        return;
    }
    {
        VelmoraSettings settings = deviceSettings();
        const AccountRecord account = settings.getLastLogin();
        qDebug("VelmoraMainDlg,signout,isKnown=%d.", !account.userName.isEmpty());
        loseFocus(false);
        emit signalUpdatePlaybackinfo(2, 2, 0, 0);
        settings.setLoginState(QStringLiteral("1"));
    }
    delete VelmoraNextLimit::existing();
    leave();
    ScreenFactory::instance()->selectUser(selectAfterSignOut)->show();
}

void VelmoraMainDlg::handleFatalErr(int errType)
{
    qDebug("VelmoraMainDlg,handleFatalErr,errType=%d.", errType);
}
