// The player screen: walking the playlist, the listener's commands, the platform's answers, the water line.
#include "netcommon/playback.h"
#include "netcommon/playbackthread.h"
#include "player/playlistcursor.h"
#include "player/velmoramaindlg.h"
#include "player/waterline.h"
#include "service/velmoranextlimit.h"
#include "service/velmorawebservice.h"
#include "service/wsreply.h"

#include <QDebug>

int VelmoraMainDlg::m_lowWaterTicks = 0;

void VelmoraMainDlg::wirePlayback()
{
    connect(this, &VelmoraMainDlg::signalPlaySong, this, &VelmoraMainDlg::gotoPlaySong);
    connect(this, &VelmoraMainDlg::signalStationListWidgetItemClicked, this, &VelmoraMainDlg::getPlayList);
    connect(this, &VelmoraMainDlg::signalPlayBtn, this, &VelmoraMainDlg::playSong);
    connect(this, &VelmoraMainDlg::signalNextBtn, this, &VelmoraMainDlg::nextSong);
    connect(this, &VelmoraMainDlg::signalStopBtn, this, &VelmoraMainDlg::stopSong);
    connect(this, &VelmoraMainDlg::signalPauseBtn, this, &VelmoraMainDlg::pauseSong);
    connect(this, &VelmoraMainDlg::signalTimeoutPlay, this, &VelmoraMainDlg::playSong);
    connect(this, &VelmoraMainDlg::signalTimeoutStop, this, &VelmoraMainDlg::stopSong);
    connect(m_waterlineTimer, &QTimer::timeout, this, &VelmoraMainDlg::checkwaterline);

    auto *playback = netcommon::Playback::getInstance();
    connect(playback, &netcommon::Playback::signalGotoPlayNextSong, this, &VelmoraMainDlg::slotGotoPlayNextSong);
    connect(playback, &netcommon::Playback::signalGetFileEOF, this, &VelmoraMainDlg::updateFileEof);
    connect(playback, &netcommon::Playback::signalPlayResult, this, &VelmoraMainDlg::playResult);
    connect(playback, &netcommon::Playback::signalPlayURLOK, this, &VelmoraMainDlg::handlePlayURLOk);

    connect(m_webService, &VelmoraWebService::signalGetPlaylistDone, this, &VelmoraMainDlg::getPlayListDone);
    connect(m_webService, &VelmoraWebService::signalGetAdMetadataDone, this, &VelmoraMainDlg::getAdMetadataDone);
}

bool VelmoraMainDlg::hasPlayingEntry() const
{
    return playlistcursor::isValid(m_playlist, m_playing_song_info_t.playingSongIndex);
}

bool VelmoraMainDlg::isPlayingAd() const
{
    return playlistcursor::isAd(m_playlist, m_playing_song_info_t.playingSongIndex);
}

int VelmoraMainDlg::playbackState() const
{
    return netcommon::Playback::getInstance()->getPbcState();
}

// ---- to the next entry

// The one place that moves to another entry.
int VelmoraMainDlg::gotoPlaySong()
{
    using playlistcursor::Move;
    qDebug("VelmoraMainDlg,gotoPlaySong,index=%d.", m_playing_song_info_t.playingSongIndex);
    if (!m_playlist) {
        qDebug("VelmoraMainDlg,gotoPlaySong,no playlist.");
        return VELMORA_APP_NO_PLAYLIST;
    }
    m_isPlayPending = false;
    if (m_isFeedbackBusy) {
        m_isPlayPending = true; // the reply starts the track
        return VELMORA_APP_DONE;
    }
    destroyedDialog();
    stopFilePlay();
    const auto next = playlistcursor::next(m_playlist, m_playing_song_info_t.playingSongIndex, m_isNeedNewPlaylist,
                                           velmora_ws_invalid_url);
    m_isNeedNewPlaylist = false;
    m_isEntryUnstarted = false;
    qDebug("VelmoraMainDlg,gotoPlaySong,next index=%d.", next.index);
    m_isplayready = next.move == Move::FetchMore || next.move == Move::BrokenTrack;
    switch (next.move) {
    case Move::NoPlaylist:
        return VELMORA_APP_NO_PLAYLIST;
    case Move::FetchMore:
        getPlayListNormal();
        break;
    case Move::StartAd:
        getAdMetaData(next.index);
        break;
    case Move::BrokenTrack:
        qDebug("VelmoraMainDlg,gotoPlaySong,p_trackMap is NULL");
        endPlayback();
        return VELMORA_APP_INVALID;
    case Move::SkipTrack:
        m_playing_song_info_t.playingSongIndex = next.index;
        emit signalPlaySong(); // starts the next entry, which shows the animation
        break;
    case Move::StartTrack:
        m_playing_song_info_t.playingSongIndex = next.index;
        startFilePlay();
        m_playbackThread->setAudioUrl(playlistcursor::track(m_playlist, next.index)->audioUrl);
        showAnimation(tr("Buffering..."));
        break;
    }
    return VELMORA_APP_DONE;
}

// Called when there is no usable playlist. Stops the sound, shows the screen as stopped, and forgets the station, so
// that Select on any row, the same one included, requests a playlist.
void VelmoraMainDlg::endPlayback()
{
    stopFilePlay();
    m_strCurrentStationToken.clear();
    m_isPlayPending = false;
    m_isplayready = true; // nothing is being started
    showPaused(true);
}

// The entry cannot be started, and nothing plays. Play, pause and next go to the next entry.
void VelmoraMainDlg::leaveEntryUnstarted()
{
    m_isEntryUnstarted = true;
    m_isGotoNext = true;
    m_isFileEof = true;
    m_isplayready = true;
    showPaused(true);
}

void VelmoraMainDlg::startFilePlay()
{
    qDebug("VelmoraMainDlg,startFilePlay,index=%d.", m_playing_song_info_t.playingSongIndex);
    m_playbackThread->setType(PLAYBACK_TYPE_START);
    m_isLowWater = false;
}

void VelmoraMainDlg::stopFilePlay()
{
    qDebug("VelmoraMainDlg,stopFilePlay,index=%d.", m_playing_song_info_t.playingSongIndex);
    m_playbackThread->setType(PLAYBACK_TYPE_STOP);
    m_isFileEof = false;
    m_isGotoNext = false;
    m_waterlineTimer->stop();
}

void VelmoraMainDlg::pauseFilePlay()
{
    qDebug("VelmoraMainDlg,pauseFilePlay,index=%d.", m_playing_song_info_t.playingSongIndex);
    m_waterlineTimer->stop();
}

// ---- what the playback thread reports

void VelmoraMainDlg::handlePlayURLOk()
{
    qDebug("VelmoraMainDlg,handlePlayURLOk,index=%d.", m_playing_song_info_t.playingSongIndex);
    m_isPlayURLOk = true;
}

void VelmoraMainDlg::playResult(int ret)
{
    qDebug("VelmoraMainDlg,playResult,ret=%d.", ret);
    if (ret >= 0) {
        if (!m_isplayready) {
            controlAnimation(true);
            resetFocus(false);
            if (isPlayingAd() && !m_isAdMetadataDone) {
                qDebug("VelmoraMainDlg,playResult,getmetadata not done!");
                return; // the timer stays off (deliberate): the metadata will start the file
            }
            showStartedEntry();
        }
        m_waterlineTimer->start();
        emit signalUpdatePlaybackinfo(2, 0, 0, 0);
        m_isplayready = true;
        return;
    }
    if (ret == -1) {
        if (isFatalMessageUp())
            return;
        if (!m_isPlayURLOk) {
            qDebug("VelmoraMainDlg,playResult,play next have be done!");
            return;
        }
        controlAnimation(true);
        resetFocus(false);
        m_isplayready = true;
        m_isPlayURLOk = false;
        emit signalPlaySong();
        return;
    }
    if (ret != -2)
        return;
    controlAnimation(true);
    resetFocus(false);
    m_isplayready = true;
    showAndLeave(MSG_ERROR, tr("Play the track failed,System occurs error!"));
}

void VelmoraMainDlg::showStartedEntry()
{
    if (const VLM_TRACK_MAP_T *track = playlistcursor::track(m_playlist, m_playing_song_info_t.playingSongIndex)) {
        addPlaylistItem(QString::fromUtf8(track->songName));
        emit signalDownLoadPic(track->albumArtUrl);
    } else if (const VLM_AD_METADATA_T *metadata =
                   isPlayingAd() ? wsreply::adMetadata(m_adMetadata_handle.get()) : nullptr) {
        addPlaylistItem(QString::fromUtf8(metadata->title));
        emit signalDownLoadPic(metadata->imageUrl);
        m_isAdMetadataDone = false;
    } else {
        return; // the result belongs to a playlist that was replaced
    }
    initPlaybackInfo();
    updatePlaybackInfo();
    if (screencover::mayLookFocused(cover()))
        showFocused(m_focusPosition); // initPlaybackInfo() gave the play button its normal style
}

void VelmoraMainDlg::slotGotoPlayNextSong()
{
    qDebug("VelmoraMainDlg,slotGotoPlayNextSong,index=%d.", m_playing_song_info_t.playingSongIndex);
    m_isGotoNext = true;
}

void VelmoraMainDlg::updateFileEof()
{
    qDebug("VelmoraMainDlg,updateFileEof,index=%d.", m_playing_song_info_t.playingSongIndex);
    m_isFileEof = true;
}

void VelmoraMainDlg::gotoPlayNextSong()
{
    qDebug("VelmoraMainDlg,gotoPlayNextSong,index=%d.", m_playing_song_info_t.playingSongIndex);
    emit signalPlaySong();
}

// ---- commands

int VelmoraMainDlg::playSong()
{
    qDebug("VelmoraMainDlg,playSong,index=%d.", m_playing_song_info_t.playingSongIndex);
    if (!hasPlayingEntry()) {
        qDebug("VelmoraMainDlg,playSong,invalid index=%d.", m_playing_song_info_t.playingSongIndex);
        return VELMORA_APP_INVALID;
    }
    const int state = playbackState();
    if (state == PLAYBACK_STATE_PLAYING) {
        qDebug("VelmoraMainDlg,playSong,palying");
    } else if (state == PLAYBACK_STATE_PAUSED) {
        if (!m_waterlineTimer->isActive())
            m_waterlineTimer->start(); // without it nobody would notice the track's end
        m_playbackThread->setType(PLAYBACK_TYPE_RESUME);
    } else if (state == PLAYBACK_STATE_STOPPED && m_isGotoNext && m_isFileEof) {
        emit signalPlaySong();
    }
    return VELMORA_APP_DONE;
}

int VelmoraMainDlg::pauseSong()
{
    qDebug("VelmoraMainDlg,pauseSong,index=%d.", m_playing_song_info_t.playingSongIndex);
    if (!hasPlayingEntry()) {
        qDebug("VelmoraMainDlg,pauseSong,invalid index=%d.", m_playing_song_info_t.playingSongIndex);
        return VELMORA_APP_INVALID;
    }
    const int state = playbackState();
    if (state == PLAYBACK_STATE_PLAYING) {
        pauseFilePlay();
        m_playbackThread->setType(PLAYBACK_TYPE_PAUSE);
    } else if (state == PLAYBACK_STATE_PAUSED) {
        m_waterlineTimer->start();
        m_playbackThread->setType(PLAYBACK_TYPE_RESUME);
    } else if (state == PLAYBACK_STATE_STOPPED && m_isGotoNext && m_isFileEof) {
        emit signalPlaySong();
    }
    return VELMORA_APP_DONE;
}

// Pauses the stream, does not stop it (deliberate).
int VelmoraMainDlg::stopSong()
{
    qDebug("VelmoraMainDlg,stopSong,index=%d.", m_playing_song_info_t.playingSongIndex);
    if (!hasPlayingEntry()) {
        qDebug("VelmoraMainDlg,stopSong,invalid index=%d.", m_playing_song_info_t.playingSongIndex);
        return VELMORA_APP_INVALID;
    }
    pauseFilePlay();
    if (playbackState() == PLAYBACK_STATE_PLAYING)
        m_playbackThread->setType(PLAYBACK_TYPE_PAUSE);
    return VELMORA_APP_DONE;
}

int VelmoraMainDlg::nextSong()
{
    qDebug("VelmoraMainDlg,nextSong,index=%d.", m_playing_song_info_t.playingSongIndex);
    if (!fgActionInvalid()) {
        qDebug("VelmoraMainDlg,nextSong,action invalid");
        return VELMORA_APP_INVALID;
    }
    if (!m_isplayready) {
        qDebug("VelmoraMainDlg,nextSong,action invalid, m_isplayready");
        return VELMORA_APP_INVALID;
    }
    if (!hasPlayingEntry()) {
        qDebug("VelmoraMainDlg,nextSong,invalid index=%d.", m_playing_song_info_t.playingSongIndex);
        return VELMORA_APP_INVALID;
    }
    if (m_isEntryUnstarted) {
        emit signalPlaySong(); // nothing was heard, so this does not count as a skip
        return VELMORA_APP_DONE;
    }
    if (isPlayingAd()) {
        warn(tr("       Invalid operation for audio ads"));
        return VELMORA_APP_INVALID;
    }
    const int state = playbackState();
    if (state != PLAYBACK_STATE_PLAYING && state != PLAYBACK_STATE_PAUSED) {
        qDebug("VelmoraMainDlg,nextSong,invaild state,can not be skip.");
        return VELMORA_APP_INVALID;
    }
    // While a track change is pending, another skip joins it: the limiter has counted that change already.
    const bool isCounted = !m_strCurrentStationToken.isEmpty() && !m_isPlayPending;
    if (isCounted && !VelmoraNextLimit::getInstance()->isAllowedNext(m_strCurrentStationToken)) {
        warn(skipLimitText());
        return VELMORA_APP_SKIP_LIMIT;
    }
    pauseFilePlay();
    if (isCounted)
        recordSkip(m_strCurrentStationToken);
    emit signalPlaySong();
    return VELMORA_APP_DONE;
}

void VelmoraMainDlg::playFromPause()
{
    qDebug("VelmoraMainDlg,playFromPause,index=%d.", m_playing_song_info_t.playingSongIndex);
    m_playbackThread->setType(PLAYBACK_TYPE_RESUME);
}

// ---- the water line

void VelmoraMainDlg::checkwaterline()
{
    using waterline::Action;
    auto *playback = netcommon::Playback::getInstance();
    IMTK_PB_CTRL_BUFFER_STATUS_T buffer{};
    if (playback->GetBufferStatus(&buffer) != 0)
        buffer = {};
    qDebug("VelmoraMainDlg,checkwaterline,amount=%u.", buffer.ui4_amount);
    waterline::State state{m_isGotoNext, m_isFileEof, m_isLowWater, m_lowWaterTicks};
    const Action action = waterline::tick(state, {buffer.ui4_start, buffer.ui4_end, buffer.ui4_amount,
                                                  playback->getPbcState(), m_totalSeconds, m_isPaused});
    m_isGotoNext = state.isGotoNext;
    m_isFileEof = state.isFileEof;
    m_isLowWater = state.isLowWater;
    m_lowWaterTicks = state.lowTicks;
    switch (action) {
    case Action::None:
        break;
    case Action::NextSong:
        qDebug("VelmoraMainDlg,checkwaterline,is eos 1");
        gotoPlayNextSong();
        break;
    case Action::Ended:
        qDebug("VelmoraMainDlg,checkwaterline,is eos 2");
        break;
    case Action::Resume:
        playSong();
        break;
    case Action::Pause:
        m_playbackThread->setType(PLAYBACK_TYPE_PAUSE);
        break;
    case Action::GiveUp:
        giveUpOnBuffer();
        break;
    case Action::PlayOn:
        playFromPause();
        break;
    case Action::ShowPlaying:
        m_isPaused = false;
        handlePlayOk();
        break;
    case Action::AlreadyPlays:
        qDebug("Playback,playSong,already playing,return.");
        break;
    }
}

void VelmoraMainDlg::giveUpOnBuffer()
{
    m_waterlineTimer->stop();
    if (playbackState() == PLAYBACK_STATE_PLAYING)
        m_playbackThread->setType(PLAYBACK_TYPE_PAUSE); // no sound under the message
    showAndLeave(MSG_WARNING, tr("A network error has occurred.  Please check your network connection and try again."));
}
