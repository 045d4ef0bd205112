// The player screen: rating, sleep, bookmarks and the explanation of the track that plays.
#include "app/playerdialog.h"
#include "app/screenfactory.h"
#include "player/playlistcursor.h"
#include "player/velmoramaindlg.h"
#include "service/velmoranextlimit.h"
#include "service/velmorawebservice.h"
#include "service/wsreply.h"
#include "ui_velmoramaindlg.h"

#include <QDebug>

using feedbackrules::Action;
using feedbackrules::Verdict;

void VelmoraMainDlg::wireFeedback()
{
    connect(this, &VelmoraMainDlg::signalThumbUpSong, this, &VelmoraMainDlg::thumbUpSong);
    connect(this, &VelmoraMainDlg::signalThumbDownSong, this, &VelmoraMainDlg::thumbDownSong);
    connect(this, &VelmoraMainDlg::signalSleepSong, this, &VelmoraMainDlg::sleepSong);
    connect(this, &VelmoraMainDlg::signalAddSongBookmark, this, &VelmoraMainDlg::addSongBookmark);
    connect(this, &VelmoraMainDlg::signalAddArtistBookmark, this, &VelmoraMainDlg::addArtistBookmark);
    connect(this, &VelmoraMainDlg::signalExplainTrack, this, &VelmoraMainDlg::explainTrack);

    connect(m_webService, &VelmoraWebService::signalAddFeedbackDone, this, &VelmoraMainDlg::addFeedbackDone);
    connect(m_webService, &VelmoraWebService::signalSleepSongDone, this, &VelmoraMainDlg::sleepSongDone);
    connect(m_webService, &VelmoraWebService::signalAddSongBookmarkDone, this, &VelmoraMainDlg::addBookmarkDone);
    connect(m_webService, &VelmoraWebService::signalAddArtistBookmarkDone, this, &VelmoraMainDlg::addBookmarkDone);
    connect(m_webService, &VelmoraWebService::signalExplainTrackDone, this, &VelmoraMainDlg::explainTrackDone);
}

// ---- what all actions share

QString VelmoraMainDlg::skipLimitText()
{
    return tr("Unfortunately,our music licenses force us to limit the number of tracks you may skip each hour.");
}

void VelmoraMainDlg::recordSkip(const QString &stationToken)
{
    if (!stationToken.isEmpty())
        VelmoraNextLimit::getInstance()->addIntoQueue(stationToken);
}

const VLM_TRACK_MAP_T *VelmoraMainDlg::trackForAction(Action action, bool isPermitted)
{
    const VLM_TRACK_MAP_T *track = playlistcursor::track(m_playlist, m_playing_song_info_t.playingSongIndex);
    feedbackrules::Situation situation;
    situation.isActionAllowed = (action != Action::ThumbUp && action != Action::ThumbDown) || fgActionInvalid();
    situation.isPlayReady = m_isplayready;
    situation.isEntryValid = hasPlayingEntry();
    situation.isPermitted = isPermitted;
    situation.isAd = isPlayingAd();
    situation.hasTrack = track != nullptr;
    situation.isRatingAllowed = track && track->allowFeedback != 0;
    switch (feedbackrules::judge(action, situation)) {
    case Verdict::Go:
        return track;
    case Verdict::Ignore:
        qDebug("VelmoraMainDlg,trackForAction,action %d is not possible now.", static_cast<int>(action));
        break;
    case Verdict::NotForAds:
        warn(tr("       Invalid operation for audio ads"));
        break;
    case Verdict::NotForSharedStations:
        warn(action == Action::ThumbUp ? tr("Thumbs up is not allowed on shared stations.")
                                       : tr("Thumbs down is not allowed on shared stations."));
        break;
    }
    return nullptr;
}

bool VelmoraMainDlg::wasSent(VLM_WS_EXT_ERRCODE_T ret, HANDLE_T h_handle, const QString &animation,
                             const QString &refusal)
{
    if (ret == VLM_WS_ERR_OK) {
        showAnimation(animation);
        return true;
    }
    qDebug("VelmoraMainDlg,wasSent,ret=%d.", ret);
    const WsHandle refused(h_handle);
    warn(refusal);
    return false;
}

// ---- thumbs

void VelmoraMainDlg::thumbUpSong()
{
    qDebug("VelmoraMainDlg,thumbUpSong,index=%d.", m_playing_song_info_t.playingSongIndex);
    if (const VLM_TRACK_MAP_T *track = trackForAction(Action::ThumbUp, m_playing_song_info_t.isThumbUpAble)) {
        HANDLE_T h_handle = 0;
        const VLM_WS_EXT_ERRCODE_T ret = m_webService->addFeedback(1, track->trackToken, false, nullptr, &h_handle);
        qDebug("VelmoraMainDlg,thumbUpSong,ret=%d.", ret);
        if (!wasSent(ret, h_handle, tr("ThumbUp..."), tr("Thumbs up track failed,you could try again.")))
            return;
        m_isFeedbackBusy = true;
        m_playing_song_info_t.isThumbUpAble = false;
        m_ratedRow = 0;
    }
}

void VelmoraMainDlg::thumbDownSong()
{
    qDebug("VelmoraMainDlg,thumbDownSong,index=%d.", m_playing_song_info_t.playingSongIndex);
    const VLM_TRACK_MAP_T *track = trackForAction(Action::ThumbDown, m_playing_song_info_t.isThumbDownAble);
    if (!track)
        return;
    // The rating is sent even when no skip is left; then the track plays on.
    m_feedbackSkipToken = m_strCurrentStationToken;
    if (!m_strCurrentStationToken.isEmpty() &&
        !VelmoraNextLimit::getInstance()->isAllowedNext(m_strCurrentStationToken))
        m_isNeedNewPlaylist = true;
    HANDLE_T h_handle = 0;
    const VLM_WS_EXT_ERRCODE_T ret = m_webService->addFeedback(0, track->trackToken, false, nullptr, &h_handle);
    qDebug("VelmoraMainDlg,thumbDownSong,ret=%d.", ret);
    if (ret != VLM_WS_ERR_OK)
        m_isNeedNewPlaylist = false;
    if (!wasSent(ret, h_handle, tr("ThumbDown..."), tr("Thumbs down track failed,you could try again.")))
        return;
    m_playing_song_info_t.isThumbDownAble = false;
    m_ratedRow = 0;
}

// The reply does not say whether it belongs to a thumbs up or a thumbs down: the busy flag does.
void VelmoraMainDlg::addFeedbackDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *)
{
    const WsHandle handle(h_handle);
    qDebug("VelmoraMainDlg,addFeedbackDone,ret=%d.", e_ret);
    controlAnimation(true);
    if (isFatalMessageUp())
        return;
    resetFocus(false);
    const bool isUp = m_isFeedbackBusy;
    m_isFeedbackBusy = false;
    (isUp ? m_playing_song_info_t.isThumbUpAble : m_playing_song_info_t.isThumbDownAble) = true;
    if (e_ret == VLM_WS_ERR_OK) {
        feedbackSucceeded(isUp);
        return;
    }
    if (reportError(e_ret, tr("Add feedback failed ,you could try again!")) && m_isPlayPending) {
        m_isPlayPending = false;
        emit signalPlaySong(); // otherwise nothing would start the next track
    }
}

void VelmoraMainDlg::feedbackSucceeded(bool isUp)
{
    setRatedRowsThumb(isUp ? trackhistory::Thumb::Up : trackhistory::Thumb::Down);
    if (isUp) {
        m_isNeedNewPlaylist = false;
        if (m_isPlayPending) {
            m_isPlayPending = false;
            emit signalPlaySong();
        }
    } else if (m_isNeedNewPlaylist) {
        warn(skipLimitText());
    } else {
        if (!m_isPlayPending)
            recordSkip(m_feedbackSkipToken);
        getPlayListNormal();
    }
}

// The rated row is the newest one unless tracks were added before the reply arrived.
void VelmoraMainDlg::setRatedRowsThumb(trackhistory::Thumb thumb)
{
    trackhistory::setThumbOfRow(m_historyThumbs, m_ratedRow, ui->playListWidget->count(), thumb);
    if (ui->playListWidget->currentRow() == m_ratedRow)
        showPlaylistHistorythumb(m_ratedRow);
    showCoverThumb();
}

// ---- sleep

void VelmoraMainDlg::sleepSong()
{
    qDebug("VelmoraMainDlg,sleepSong,index=%d.", m_playing_song_info_t.playingSongIndex);
    const VLM_TRACK_MAP_T *track = trackForAction(Action::Sleep, m_playing_song_info_t.isSleepAble);
    if (!track)
        return;
    if (!m_strCurrentStationToken.isEmpty() &&
        !VelmoraNextLimit::getInstance()->isAllowedNext(m_strCurrentStationToken)) {
        warn(skipLimitText());
        return;
    }
    HANDLE_T h_handle = 0;
    const VLM_WS_EXT_ERRCODE_T ret = m_webService->sleepSong(track->trackToken, false, nullptr, &h_handle);
    qDebug("VelmoraMainDlg,sleepSong,ret=%d.", ret);
    if (!wasSent(ret, h_handle, tr("Sleep..."), tr("Sleep track failed,you could try again.")))
        return;
    m_sleepSkipToken = m_strCurrentStationToken;
    m_playing_song_info_t.isSleepAble = false;
}

void VelmoraMainDlg::sleepSongDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *)
{
    const WsHandle handle(h_handle);
    qDebug("VelmoraMainDlg,sleepSongDone,ret=%d.", e_ret);
    controlAnimation(true);
    if (isFatalMessageUp())
        return;
    resetFocus(false);
    m_playing_song_info_t.isSleepAble = true;
    if (e_ret != VLM_WS_ERR_OK) {
        reportError(e_ret, tr("Sleep track failed ,you could try later!"));
        return;
    }
    if (!m_isPlayPending)
        recordSkip(m_sleepSkipToken);
    emit signalPlaySong();
}

// ---- bookmarks

void VelmoraMainDlg::addSongBookmark()
{
    qDebug("VelmoraMainDlg,addSongBookmark,index=%d.", m_playing_song_info_t.playingSongIndex);
    bookmark(false);
}

void VelmoraMainDlg::addArtistBookmark()
{
    qDebug("VelmoraMainDlg,addArtistBookmark,index=%d.", m_playing_song_info_t.playingSongIndex);
    bookmark(true);
}

void VelmoraMainDlg::bookmark(bool isArtist)
{
    bool &isAble = isArtist ? m_playing_song_info_t.isBookMarkArtistAble : m_playing_song_info_t.isBookMarkSongAble;
    const VLM_TRACK_MAP_T *track = trackForAction(isArtist ? Action::BookmarkArtist : Action::BookmarkSong, isAble);
    if (!track)
        return;
    HANDLE_T h_handle = 0;
    const VLM_WS_EXT_ERRCODE_T ret = isArtist
                                         ? m_webService->addArtistBookmark(track->trackToken, false, nullptr, &h_handle)
                                         : m_webService->addSongBookmark(track->trackToken, false, nullptr, &h_handle);
    qDebug("VelmoraMainDlg,bookmark,isArtist=%d,ret=%d.", isArtist, ret);
    if (wasSent(ret, h_handle, QString(),
                isArtist ? tr("Bookmark artist failed,you could try again.")
                         : tr("Bookmark track failed,you could try again.")))
        isAble = false;
}

void VelmoraMainDlg::addBookmarkDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *)
{
    const WsHandle handle(h_handle);
    qDebug("VelmoraMainDlg,addBookmarkDone,ret=%d.", e_ret);
    controlAnimation(true);
    m_playing_song_info_t.isBookMarkSongAble = true;
    m_playing_song_info_t.isBookMarkArtistAble = true;
    if (isFatalMessageUp())
        return;
    if (e_ret == VLM_WS_ERR_OK)
        warn(tr("Add bookmark successful!"));
    else
        reportError(e_ret, tr("Add bookmark failed ,please try later!"));
}

// ---- explanation

void VelmoraMainDlg::explainTrack()
{
    qDebug("VelmoraMainDlg,explainTrack,index=%d.", m_playing_song_info_t.playingSongIndex);
    const VLM_TRACK_MAP_T *track = trackForAction(Action::Explain, true);
    if (!track)
        return;
    HANDLE_T h_handle = 0;
    const VLM_WS_EXT_ERRCODE_T ret = m_webService->explainTrack(track->trackToken, false, nullptr, &h_handle);
    qDebug("VelmoraMainDlg,explainTrack,ret=%d.", ret);
    wasSent(ret, h_handle, QString(), tr("Explain track failed,you could try again."));
}

void VelmoraMainDlg::explainTrackDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *)
{
    WsHandle handle(h_handle);
    qDebug("VelmoraMainDlg,explainTrackDone,ret=%d.", e_ret);
    controlAnimation(true);
    if (isFatalMessageUp())
        return;
    resetFocus(false);
    if (e_ret != VLM_WS_ERR_OK) {
        handle.reset();
        reportError(e_ret, tr("Explain track failed ,you could try again!"));
        return;
    }
    // Another entry may play by now.
    const VLM_TRACK_MAP_T *track = playlistcursor::track(m_playlist, m_playing_song_info_t.playingSongIndex);
    if (!track || !wsreply::hasData(h_handle)) {
        qDebug("VelmoraMainDlg,explainTrackDone,no data.");
        return;
    }
    const QString text = tr("Based on what you've told us so far, we're playing ") +
                         QString::fromUtf8(track->songName) + tr(" by ") + QString::fromUtf8(track->artistName) +
                         tr(" because it features ") + feedbackrules::joinTraits(wsreply::traits(h_handle));
    handle.reset();
    showExplanation(text);
}

void VelmoraMainDlg::showExplanation(const QString &text)
{
    m_isExplanationOpen = true;
    openDialog(ScreenFactory::instance()->why(text, this), QPoint(240, 110), &VelmoraMainDlg::slotDestroyDialog);
}

// The explanation has ended.
void VelmoraMainDlg::slotDestroyDialog()
{
    qDebug("VelmoraMainDlg,slotDestroyDialog...");
    m_isExplanationOpen = false;
    resetFocus();
}

// Ends an open explanation, which then reports to slotDestroyDialog().
void VelmoraMainDlg::destroyedDialog()
{
    qDebug("VelmoraMainDlg,destroyedDialog,isOpen=%d.", m_isExplanationOpen);
    if (!m_isExplanationOpen)
        return;
    m_isExplanationOpen = false;
    emit signalDestoryDialog();
}
