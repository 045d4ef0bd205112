// The player screen: texts, times, picture and history of what plays.
#include "netcommon/httpdownload.h"
#include "netcommon/playback.h"
#include "player/focusring.h"
#include "player/nowplayingtext.h"
#include "player/playlistcursor.h"
#include "player/stationrecord.h"
#include "player/velmoramaindlg.h"
#include "service/wsreply.h"
#include "ui_velmoramaindlg.h"
#include "widgets/picturefile.h"

#include <QDebug>
#include <QPainter>

using nowplayingtext::cut;
using nowplayingtext::labelLength;

namespace {

constexpr QPoint panelOutside(1161, 130);
constexpr QPoint panelInside(640, 130);
constexpr int slideMs = 500;

QIcon sameWhenSelected(const QPixmap &picture)
{
    QIcon icon;
    icon.addPixmap(picture, QIcon::Normal);
    icon.addPixmap(picture, QIcon::Selected);
    return icon;
}

// With a thin light edge: a dark picture would run into the dark screen.
QPixmap framed(QPixmap picture, qreal ratio)
{
    QPainter painter(&picture);
    painter.setPen(QPen(QColor(255, 255, 255, 36), 2 * ratio, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawRect(QRectF(picture.rect()).adjusted(ratio, ratio, -ratio, -ratio));
    return picture;
}

} // namespace

void VelmoraMainDlg::wireNowPlaying()
{
    auto *playback = netcommon::Playback::getInstance();
    connect(playback, &netcommon::Playback::signalNotifyProgressValue, this, &VelmoraMainDlg::updateProgressBar);
    connect(playback, &netcommon::Playback::signalNotifyTotalTime, this, &VelmoraMainDlg::updateTotalTime);
    connect(playback, &netcommon::Playback::signalNotifyCurrentTime, this, &VelmoraMainDlg::updateCurrentTime);
    connect(playback, &netcommon::Playback::signalStopOk, this, &VelmoraMainDlg::initPlaybackInfoByStop);
    connect(playback, &netcommon::Playback::signalPauseOk, this, &VelmoraMainDlg::handlePauseOk);
    connect(playback, &netcommon::Playback::signalPlayOk, this, &VelmoraMainDlg::handlePlayOk);

    connect(this, &VelmoraMainDlg::signalDownLoadPic, this, &VelmoraMainDlg::downloadPicfromVelmora,
            Qt::DirectConnection);
    connect(m_download, &netcommon::HttpDownload::signalDownloadResult, this, &VelmoraMainDlg::responseDownloadDone);
    connect(this, &VelmoraMainDlg::signalMovePlaybackWidget, this, &VelmoraMainDlg::movePlaybackWidget);
    connect(ui->playListWidget, &QListWidget::currentRowChanged, this, &VelmoraMainDlg::showPlaylistNum);
    connect(ui->playListWidget, &QListWidget::currentRowChanged, this, &VelmoraMainDlg::showPlaylistHistorythumb);
}

// ---- texts

void VelmoraMainDlg::initPlaybackInfo()
{
    ui->thumbnaiMasklLabel->hide();
    ui->playlistthumb->hide();
    ui->playIconLabel->setStyleSheet(
        QStringLiteral("background-color: rgba(255, 255, 255, 0);\nborder-image: url(:/images/Play.png);"));
    ui->playBtn->setStyleSheet(focusring::buttonStyle(focusring::Play, false, true));
    ui->totalTimeLabel->setText(QString());
    // A path without the resource prefix finds nothing (deliberate): the label's style shows the placeholder.
    ui->albumPicLabel->setPixmap(QPixmap(QStringLiteral("/images/NoThumbnail.png")).scaled(ui->albumPicLabel->size()));
    m_totalSeconds = 0;
    m_playing_song_info_t.isThumbUpAble = true;
    m_playing_song_info_t.isThumbDownAble = true;
    m_playing_song_info_t.isSleepAble = true;
    m_playing_song_info_t.isBookMarkSongAble = true;
    m_playing_song_info_t.isBookMarkArtistAble = true;
    m_isPaused = true;
    updateCurrentTime(0, 0, 0);
    updateProgressBar(0);
}

void VelmoraMainDlg::updatePlaybackInfo()
{
    const int index = m_playing_song_info_t.playingSongIndex;
    if (!hasPlayingEntry()) {
        qDebug("VelmoraMainDlg,updatePlaybackInfo,invalid index=%d.", index);
        return;
    }
    ui->songLabel->setText(QString());
    ui->artistLabel->setText(QString());
    ui->albumLabel->setText(QString());
    ui->stationNameLabel->setText(QString());
    ui->totalTimeLabel->setText(m_strTotalTime);
    showStationLine();

    if (isPlayingAd()) {
        if (const VLM_AD_METADATA_T *metadata = wsreply::adMetadata(m_adMetadata_handle.get())) {
            // ASCII here, UTF-8 in the history row (deliberate).
            ui->songLabel->setText(cut(QString::fromLatin1(metadata->title), labelLength));
            ui->artistLabel->setText(cut(QString::fromUtf8(metadata->adLine2), labelLength));
        }
        return;
    }
    const VLM_TRACK_MAP_T *track = playlistcursor::track(m_playlist, index);
    if (!track) {
        qDebug("VelmoraMainDlg,updatePlaybackInfo,p_trackMap is NULL");
        return;
    }
    ui->songLabel->setText(cut(QString::fromUtf8(track->songName), labelLength));
    ui->artistLabel->setText(cut(QString::fromUtf8(track->artistName), labelLength));
    ui->albumLabel->setText(cut(QString::fromUtf8(track->albumName), labelLength));
    if (track->songRating == 1) {
        trackhistory::setThumbOfRow(m_historyThumbs, 0, ui->playListWidget->count(), trackhistory::ThumbUp);
        showPlaylistHistorythumb(0);
    } else {
        ui->playlistthumb->hide();
    }
}

void VelmoraMainDlg::showStationLine()
{
    const int row = m_playing_station_info_t.selectedStationIndex;
    ui->stationNameLabel->setText(row == 0 ? stationRowText(0)
                                           : cut(stationrecord::name(stationOfRow(row)), labelLength));
    ui->stationIconLabel->setStyleSheet(
        QStringLiteral("border-image: url(%1);")
            .arg(QLatin1String(stationrecord::iconPath(stationrecord::kindOfRow(row, m_stationInfoList), true))));
}

// ---- history

void VelmoraMainDlg::addPlaylistItem(QString text)
{
    ImageListWidget *list = ui->playListWidget;
    list->clearBg(list->currentItem());
    if (trackhistory::makeRoom(m_historyThumbs, list->count()))
        while (list->count() >= trackhistory::capacity)
            delete list->takeItem(list->count() - 1);
    list->clearBg(list->currentItem());
    ++m_ratedRow;

    auto *item = new QListWidgetItem(cachedIcon(":/images/NoThumbnail.png"), text);
    item->setSizeHint(QSize(324, 52));
    item->setTextAlignment(Qt::AlignLeft);
    item->setTextAlignment(Qt::AlignVCenter); // takes the place of the line above (deliberate)
    item->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    list->insertItem(0, item);
    list->setCurrentRow(0);
    ui->albumPicLabel->setStyleSheet(QStringLiteral("border-image: url(:/images/NoThumbnail.png);"));
    showPlaylistNum(0);
    showPlaylistHistorythumb(0);
    if (m_focusPosition == focusring::History && m_isFocusable && !m_isErrorMsg)
        showFocused(m_focusPosition);
}

void VelmoraMainDlg::showPlaylistNum(int index)
{
    ui->playlistNumLabel->setText(QStringLiteral("%1/%2").arg(index + 1).arg(ui->playListWidget->count()));
}

void VelmoraMainDlg::showPlaylistHistorythumb(int index)
{
    const int thumb = trackhistory::thumbOfRow(m_historyThumbs, index, ui->playListWidget->count());
    if (thumb == trackhistory::ThumbDown)
        ui->playlistthumb->setStyleSheet(QStringLiteral("border-image: url(:/images/ThumbsDown_Enable.png);"));
    else if (thumb == trackhistory::ThumbUp)
        ui->playlistthumb->setStyleSheet(QStringLiteral("border-image: url(:/images/ThumbsUp_Enable.png);"));
    ui->playlistthumb->setVisible(thumb != trackhistory::NoThumb);
}

// ---- times

void VelmoraMainDlg::updateTotalTime(int hours, int mins, int secs)
{
    m_strTotalTime = nowplayingtext::time(hours, mins, secs);
    m_totalSeconds = hours * 3600 + mins * 60 + secs;
    ui->totalTimeLabel->setText(m_strTotalTime);
    emit signalUpdatePlaybackinfo(0, hours, mins, secs);
}

void VelmoraMainDlg::updateCurrentTime(int hours, int mins, int secs)
{
    ui->currentTimeLabel->setText(nowplayingtext::time(hours, mins, secs) + QStringLiteral(" /"));
    emit signalUpdatePlaybackinfo(1, hours, mins, secs);
}

void VelmoraMainDlg::updateProgressBar(int percent)
{
    ui->nowplayingProgressBar->setValue(percent);
}

void VelmoraMainDlg::initPlaybackInfoByStop()
{
    emit signalUpdatePlaybackinfo(2, 2, 0, 0);
    updateCurrentTime(0, 0, 0);
    if (ui->nowplayingProgressBar->value() != 0)
        updateProgressBar(0);
}

// ---- pictures

void VelmoraMainDlg::downloadPicfromVelmora(char *pcUrl)
{
    m_isDownloadExpected = pcUrl && *pcUrl;
    if (m_isDownloadExpected)
        m_download->resquestDownload(pcUrl);
}

void VelmoraMainDlg::responseDownloadDone(int result, QString strInfo)
{
    qDebug("VelmoraMainDlg,responseDownloadDone,result=%d.", result);
    if (!m_isDownloadExpected) {
        qDebug("VelmoraMainDlg,responseDownloadDone,not expected any more.");
        return;
    }
    m_isDownloadExpected = false;
    m_playing_station_info_t.download_info_t.result = result;
    m_playing_station_info_t.download_info_t.strInfo = strInfo;
    if (result < 0)
        return;
    const QPixmap picture = picturefile::load(strInfo, ui->albumPicLabel->size() * devicePixelRatioF());
    if (picture.isNull()) {
        qDebug("VelmoraMainDlg,responseDownloadDone,no picture.");
        return;
    }
    ui->albumPicLabel->setPixmap(framed(picture, devicePixelRatioF()));
    showHistoryIcon(picture);
}

void VelmoraMainDlg::updatePlaylistItem()
{
    const auto &download = m_playing_station_info_t.download_info_t;
    if (download.result >= 0 && !download.strInfo.isEmpty())
        showHistoryIcon(picturefile::load(download.strInfo, ui->albumPicLabel->size() * devicePixelRatioF()));
}

void VelmoraMainDlg::showHistoryIcon(const QPixmap &picture)
{
    QListWidgetItem *item = ui->playListWidget->item(0);
    if (!item || picture.isNull())
        return;
    const qreal ratio = devicePixelRatioF();
    QPixmap small =
        picture.scaled(ui->playListWidget->iconSize() * ratio, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    small.setDevicePixelRatio(ratio);
    item->setIcon(sameWhenSelected(small));
}

// ---- play and pause

void VelmoraMainDlg::handlePlayOk()
{
    m_isPaused = false;
    emit signalUpdatePlaybackinfo(2, 0, 0, 0);
    showPlayPicture("Pause.png");
}

void VelmoraMainDlg::handlePauseOk()
{
    m_isPaused = true;
    emit signalUpdatePlaybackinfo(2, 1, 0, 0);
    showPlayPicture("Play.png");
}

// The action that a press would do; the text stays white with and without focus.
void VelmoraMainDlg::showPlayPicture(const char *picture)
{
    const QString name = QString::fromLatin1(picture);
    ui->playIconLabel->setStyleSheet(
        QStringLiteral("background-color: rgba(255, 255, 255, 0);\nborder-image: url(:/images/%1);").arg(name));
    ui->playBtn->setStyleSheet(
        QStringLiteral("image: url(:/images/%1);\nborder-image: url(:/images/%2);\ncolor: rgb(255, 255, 255);\n"
                       "border-with: 5px;")
            .arg(name, ui->playBtn->hasFocus() ? QStringLiteral("Button_F.png") : QStringLiteral("Button_N.png")));
}

// ---- the panel slides in

void VelmoraMainDlg::movePlaybackWidget()
{
    QWidget *panel = ui->playbackControlWidget;
    panel->move(panelOutside);
    panel->raise(); // it passes over the history
    delete m_playbackAnimation;
    m_playbackAnimation = new QPropertyAnimation(panel, "geometry");
    m_playbackAnimation->setDuration(slideMs);
    m_playbackAnimation->setStartValue(QRect(panelOutside, panel->size()));
    m_playbackAnimation->setEndValue(QRect(panelInside, panel->size()));
    m_playbackAnimation->setEasingCurve(QEasingCurve::OutCubic);
    m_playbackAnimation->start();
}
