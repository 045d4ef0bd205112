// The player screen: fetching playlists and the metadata of audio ads.
#include "netcommon/playbackthread.h"
#include "player/focusring.h"
#include "player/playlistcursor.h"
#include "player/stationrecord.h"
#include "player/velmoramaindlg.h"
#include "service/velmorawebservice.h"
#include "service/wsreply.h"
#include "ui_velmoramaindlg.h"

#include <QDebug>

// The station of the list's current row, chosen by the listener.
int VelmoraMainDlg::getPlayList()
{
    qDebug("VelmoraMainDlg,getPlayList,row=%d.", ui->stationListWidget->currentRow());
    return requestPlaylist(stationOfRow(ui->stationListWidget->currentRow()), true);
}

// More of the station that plays.
int VelmoraMainDlg::getPlayListNormal()
{
    qDebug("VelmoraMainDlg,getPlayListNormal,row=%d.", m_playing_station_info_t.selectedStationIndex);
    return requestPlaylist(stationOfRow(m_playing_station_info_t.selectedStationIndex), false);
}

// The current track keeps sounding until the reply arrives.
int VelmoraMainDlg::requestPlaylist(const VLM_STATION_MAP_T *station, bool isChosen)
{
    controlAnimation(true);
    resetFocus(false);
    if (!station) {
        qDebug("VelmoraMainDlg,getPlayList,invalid infolist.");
        return VELMORA_APP_INVALID;
    }
    const QString token = stationrecord::token(station);
    if (token.isEmpty()) {
        qDebug("VelmoraMainDlg,getPlayList,invalid stationToken.");
        return VELMORA_APP_INVALID;
    }
    if (isChosen || m_strCurrentStationToken != token)
        rememberLastStation(token);
    m_strCurrentStationToken = token;
    m_waterlineTimer->stop();
    m_playlist = nullptr;
    m_playlist_handle.reset();
    if (isChosen)
        showPlayingStation();

    HANDLE_T h_handle = 0;
    const VLM_WS_EXT_ERRCODE_T ret =
        m_webService->getPlaylist(token.toLatin1().constData(), 0, false, nullptr, &h_handle);
    if (ret == VLM_WS_ERR_OK) {
        showAnimation(tr("Buffering..."));
        return VELMORA_APP_DONE;
    }
    qDebug("VelmoraMainDlg,getPlayList,ret=%d.", ret);
    const WsHandle refused(h_handle);
    endPlayback();
    warn(tr("Get playlist failed,you could try again!"));
    return VELMORA_APP_INVALID;
}

void VelmoraMainDlg::showPlayingStation()
{
    const int row = ui->stationListWidget->currentRow();
    showStationIcon(m_playing_station_info_t.selectedStationIndex, false);
    showStationIcon(row, true);
    makeStationRowCurrent(row);
    m_playing_station_info_t.selectedStationIndex = row;
    if (m_focusPosition > focusring::Position::StationList)
        ui->stationListWidget->clearFocus();
}

void VelmoraMainDlg::getPlayListDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *)
{
    WsHandle handle(h_handle);
    qDebug("VelmoraMainDlg,getPlayListDone,ret=%d.", e_ret);
    controlAnimation(true);
    if (isFatalMessageUp())
        return;
    resetFocus(false);
    if (e_ret != VLM_WS_ERR_OK) {
        handle.reset();
        endPlayback();
        reportError(e_ret, tr("Get play list failed ,please try later!"));
        return;
    }
    const VLM_WS_PLAYLIST_T *playlist = wsreply::playlist(h_handle);
    if (!playlist) {
        qDebug("VelmoraMainDlg,getPlayListDone,no data.");
        endPlayback();
        return;
    }
    m_playlist_handle = std::move(handle);
    m_playlist = playlist;
    m_playing_song_info_t.playingSongIndex = -1;
    emit signalPlaySong();
}

// ---- ads

// Starts entry `index`, an ad. Its address comes with its metadata.
void VelmoraMainDlg::getAdMetaData(int index)
{
    qDebug("VelmoraMainDlg,getAdMetaData,index=%d.", index);
    m_playing_song_info_t.playingSongIndex = index;
    const VLM_AD_MAP_T *ad = playlistcursor::ad(m_playlist, index);
    if (!ad) {
        qDebug("VelmoraMainDlg,getAdMetaData,p_adMap is NULL");
        leaveEntryUnstarted();
        return;
    }
    m_isAdMetadataDone = false;
    HANDLE_T h_handle = 0;
    const VLM_WS_EXT_ERRCODE_T ret = m_webService->getAdMetadata(ad->adToken, 0, false, nullptr, &h_handle);
    if (ret == VLM_WS_ERR_OK) {
        showAnimation(tr("Buffering..."));
        return;
    }
    qDebug("VelmoraMainDlg,getAdMetaData,ret=%d.", ret);
    const WsHandle refused(h_handle);
    leaveEntryUnstarted();
    warn(tr("Get Ad metadata failed!"));
}

void VelmoraMainDlg::getAdMetadataDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *)
{
    WsHandle handle(h_handle);
    qDebug("VelmoraMainDlg,getAdMetadataDone,ret=%d.", e_ret);
    if (isFatalMessageUp())
        return;
    m_isAdMetadataDone = true;
    const bool isLate = !isPlayingAd(); // the listener has chosen another station since the request
    if (e_ret != VLM_WS_ERR_OK) {
        handle.reset();
        if (reportError(e_ret, tr("Get track data failed.Please try later!")) && !isLate)
            emit signalPlaySong();
        return;
    }
    if (isLate) {
        qDebug("VelmoraMainDlg,getAdMetadataDone,too late.");
        return;
    }
    const VLM_AD_METADATA_T *metadata = wsreply::adMetadata(h_handle);
    if (!metadata) {
        qDebug("VelmoraMainDlg,getAdMetadataDone,no data.");
        emit signalPlaySong();
        return;
    }
    m_adMetadata_handle.reset();
    if (playlistcursor::isUnusable(metadata->audioUrl, velmora_ws_invalid_url)) {
        qDebug("VelmoraMainDlg,getAdMetadataDone,audio url is NULL,play next.");
        handle.reset();
        emit signalPlaySong();
        return;
    }
    m_adMetadata_handle = std::move(handle);
    startFilePlay();
    m_playbackThread->setAudioUrl(metadata->audioUrl);
}

bool VelmoraMainDlg::checkinvalidURL(char *ps_url, char *ps_compare)
{
    const bool isInvalid = playlistcursor::isInvalidUrl(ps_url, ps_compare);
    qDebug("VelmoraMainDlg,checkinvalidURL,isInvalid=%d.", isInvalid);
    return isInvalid;
}
