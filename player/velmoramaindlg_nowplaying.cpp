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
#include "widgets/cuttext.h"
#include "widgets/picturefile.h"

#include <QDebug>
#include <QPainter>

using nowplayingtext::labelLength;

namespace {

constexpr QPoint panelOutside(1161, 130);
constexpr QPoint panelInside(640, 130);
constexpr int slideMs = 500;
constexpr QRect artistPlace(500, 437, 376, 46); // behind its caption
constexpr QRect adTextPlace(404, 437, 472, 46); // without a caption

QIcon sameWhenSelected(const QPixmap &picture)
{
    QIcon icon;
    icon.addPixmap(picture, QIcon::Normal);
    icon.addPixmap(picture, QIcon::Selected);
    return icon;
}

// Draws a thin light edge, so that a dark picture stands out from the dark screen.
QPixmap framed(QPixmap picture, qreal ratio)
{
    QPainter painter(&picture);
    painter.setPen(QPen(QColor(255, 255, 255, 36), 2 * ratio, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawRect(QRectF(picture.rect()).adjusted(ratio, ratio, -ratio, -ratio));
    return picture;
}

// Narrows the text to the smallest width that needs the same number of lines: the lines become about equally long, and
// the last word does not stand alone.
void balanceLines(QLabel *label)
{
    label->setContentsMargins(0, 0, 0, 0);
    const QFontMetrics metrics(label->font());
    const int whole = label->contentsRect().width();
    const auto textIn = [&](int width) {
        return metrics.boundingRect(QRect(0, 0, width, 1000), Qt::TextWordWrap, label->text());
    };
    const int height = textIn(whole).height();
    if (height <= metrics.height())
        return;
    int tooNarrow = 0;
    int enough = whole;
    while (enough - tooNarrow > 1) {
        const int middle = (tooNarrow + enough) / 2;
        const QRect text = textIn(middle);
        (text.height() <= height && text.width() <= middle ? enough : tooNarrow) = middle;
    }
    label->setContentsMargins(0, 0, whole - enough, 0);
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
    connect(m_download.get(), &netcommon::HttpDownload::signalDownloadResult, this,
            &VelmoraMainDlg::responseDownloadDone);
    connect(this, &VelmoraMainDlg::signalMovePlaybackWidget, this, &VelmoraMainDlg::movePlaybackWidget);
    connect(ui->playListWidget, &QListWidget::currentRowChanged, this, &VelmoraMainDlg::showPlaylistNum);
    connect(ui->playListWidget, &QListWidget::currentRowChanged, this, &VelmoraMainDlg::showPlaylistHistorythumb);
}

// ---- texts

void VelmoraMainDlg::initPlaybackInfo()
{
    qDebug("VelmoraMainDlg,initPlaybackInfo...");
    ui->thumbnaiMasklLabel->hide();
    ui->playlistthumb->hide();
    ui->coverThumbLabel->hide();
    ui->adLabel->hide();
    ui->playIconLabel->setStyleSheet(
        QStringLiteral("background-color: rgba(255, 255, 255, 0);\nborder-image: url(:/images/Play.png);"));
    ui->playBtn->setStyleSheet(focusring::buttonStyle(focusring::Position::Play, false, true));
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
    qDebug("VelmoraMainDlg,updatePlaybackInfo,index=%d.", index);
    if (!hasPlayingEntry()) {
        qDebug("VelmoraMainDlg,updatePlaybackInfo,invalid index=%d.", index);
        return;
    }
    showEntryTexts(QString(), QString(), QString(), false);
    ui->totalTimeLabel->setText(m_strTotalTime);
    showStationLine();

    if (isPlayingAd()) {
        // ASCII here, UTF-8 in the history row (deliberate).
        if (const VLM_AD_METADATA_T *metadata = wsreply::adMetadata(m_adMetadata_handle.get()))
            showEntryTexts(QString::fromLatin1(metadata->title), QString::fromUtf8(metadata->adLine2), QString(), true);
        return;
    }
    const VLM_TRACK_MAP_T *track = playlistcursor::track(m_playlist, index);
    if (!track) {
        qDebug("VelmoraMainDlg,updatePlaybackInfo,p_trackMap is NULL");
        return;
    }
    showEntryTexts(QString::fromUtf8(track->songName), QString::fromUtf8(track->artistName),
                   QString::fromUtf8(track->albumName), false);
    if (track->songRating == 1) {
        trackhistory::setThumbOfRow(m_historyThumbs, 0, ui->playListWidget->count(), trackhistory::Thumb::Up);
        showPlaylistHistorythumb(0);
    } else {
        ui->playlistthumb->hide();
    }
    showCoverThumb();
}

// Hides captions without a value, and the artist caption of an ad, whose second line is no artist.
void VelmoraMainDlg::showEntryTexts(const QString &song, const QString &artist, const QString &album, bool isAd)
{
    ui->songLabel->setText(cutText(song, labelLength));
    balanceLines(ui->songLabel);
    ui->artistLabel->setText(cutText(artist, labelLength));
    ui->artistLabel->setGeometry(isAd ? adTextPlace : artistPlace);
    ui->albumLabel->setText(cutText(album, labelLength));
    const bool hasArtist = !artist.isEmpty() && !isAd;
    ui->artistIconLabel->setVisible(hasArtist);
    ui->artistCaptionLabel->setVisible(hasArtist);
    ui->albumIconLabel->setVisible(!album.isEmpty());
    ui->albumCaptionLabel->setVisible(!album.isEmpty());
    ui->adLabel->setVisible(isAd);
}

void VelmoraMainDlg::showStationLine()
{
    const int row = m_playing_station_info_t.selectedStationIndex;
    ui->stationNameLabel->setText(row == 0 ? stationRowText(0)
                                           : cutText(stationrecord::name(stationOfRow(row)), labelLength));
    ui->stationIconLabel->show();
    ui->stationCaptionLabel->show();
    ui->stationIconLabel->setStyleSheet(QStringLiteral("border-image: url(%1);")
                                            .arg(QLatin1String(stationrecord::iconPath(
                                                stationrecord::kindOfRow(row, m_stationInfoList), !m_isPaused))));
}

// ---- history

void VelmoraMainDlg::addPlaylistItem(QString text)
{
    qDebug("VelmoraMainDlg,addPlaylistItem,count=%d.", ui->playListWidget->count());
    ImageListWidget *list = ui->playListWidget;
    list->clearBg(list->currentItem());
    if (trackhistory::makeRoom(m_historyThumbs, list->count()))
        while (list->count() >= trackhistory::capacity)
            delete list->takeItem(list->count() - 1);
    list->clearBg(list->currentItem());
    ++m_ratedRow;

    auto row = std::make_unique<QListWidgetItem>(cachedIcon(":/images/NoThumbnail.png"), text);
    QListWidgetItem *const item = row.get();
    item->setSizeHint(QSize(324, 52));
    item->setTextAlignment(Qt::AlignLeft);
    item->setTextAlignment(Qt::AlignVCenter); // takes the place of the line above (deliberate)
    item->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    list->insertItem(0, row.release());
    list->setCurrentRow(0);
    ui->albumPicLabel->setStyleSheet(QStringLiteral("border-image: url(:/images/NoThumbnail.png);"));
    showPlaylistNum(0);
    showPlaylistHistorythumb(0);
    showCoverThumb();
    if (m_focusPosition == focusring::Position::History && screencover::mayLookFocused(cover()))
        showFocused(m_focusPosition);
}

void VelmoraMainDlg::showPlaylistNum(int index)
{
    qDebug("VelmoraMainDlg,showPlaylistNum,index=%d.", index);
    ui->playlistNumLabel->setText(QStringLiteral("%1/%2").arg(index + 1).arg(ui->playListWidget->count()));
}

void VelmoraMainDlg::showPlaylistHistorythumb(int index)
{
    qDebug("VelmoraMainDlg,showPlaylistHistorythumb,index=%d.", index);
    const trackhistory::Thumb thumb = trackhistory::thumbOfRow(m_historyThumbs, index, ui->playListWidget->count());
    if (thumb == trackhistory::Thumb::Down)
        ui->playlistthumb->setStyleSheet(QStringLiteral("border-image: url(:/images/ThumbsDown_Enable.png);"));
    else if (thumb == trackhistory::Thumb::Up)
        ui->playlistthumb->setStyleSheet(QStringLiteral("border-image: url(:/images/ThumbsUp_Enable.png);"));
    ui->playlistthumb->setVisible(thumb != trackhistory::Thumb::None);
}

// Shows the thumb of the newest entry, whatever row of the history is current.
void VelmoraMainDlg::showCoverThumb()
{
    const trackhistory::Thumb thumb = trackhistory::thumbOfRow(m_historyThumbs, 0, ui->playListWidget->count());
    ui->coverThumbLabel->setStyleSheet(QStringLiteral("border-image: url(:/images/%1);")
                                           .arg(thumb == trackhistory::Thumb::Down
                                                    ? QStringLiteral("ThumbsDown_Enable.png")
                                                    : QStringLiteral("ThumbsUp_Enable.png")));
    ui->coverThumbLabel->setVisible(thumb != trackhistory::Thumb::None);
}

// ---- times

void VelmoraMainDlg::updateTotalTime(int hours, int mins, int secs)
{
    qDebug("VelmoraMainDlg,updateTotalTime,hours=%d,mins=%d,secs=%d.", hours, mins, secs);
    m_strTotalTime = nowplayingtext::time(hours, mins, secs);
    m_totalSeconds = hours * 3600 + mins * 60 + secs;
    ui->totalTimeLabel->setText(m_strTotalTime);
    emit signalUpdatePlaybackinfo(0, hours, mins, secs);
}

void VelmoraMainDlg::updateCurrentTime(int hours, int mins, int secs)
{
    qDebug("VelmoraMainDlg,updateCurrentTime,hours=%d,mins=%d,secs=%d.", hours, mins, secs);
    ui->currentTimeLabel->setText(nowplayingtext::time(hours, mins, secs) + QStringLiteral(" /"));
    emit signalUpdatePlaybackinfo(1, hours, mins, secs);
}

void VelmoraMainDlg::updateProgressBar(int percent)
{
    qDebug("VelmoraMainDlg,updateProgressBar,percent=%d.", percent);
    ui->nowplayingProgressBar->setValue(percent);
}

void VelmoraMainDlg::initPlaybackInfoByStop()
{
    qDebug("VelmoraMainDlg,initPlaybackInfoByStop...");
    emit signalUpdatePlaybackinfo(2, 2, 0, 0);
    updateCurrentTime(0, 0, 0);
    if (ui->nowplayingProgressBar->value() != 0)
        updateProgressBar(0);
}

// ---- pictures

void VelmoraMainDlg::downloadPicfromVelmora(char *pcUrl)
{
    qDebug("VelmoraMainDlg,downloadPicfromVelmora,hasUrl=%d.", pcUrl && *pcUrl);
    m_isDownloadExpected = pcUrl && *pcUrl;
    if (m_isDownloadExpected)
        m_download->resquestDownload(pcUrl);
}

void VelmoraMainDlg::responseDownloadDone(int result, QString strInfo)
{
    qDebug("VelmoraMainDlg,responseDownloadDone,result=%d.", result);
    m_playing_station_info_t.download_info_t.result = result;
    m_playing_station_info_t.download_info_t.strInfo = strInfo;
    if (!m_isDownloadExpected) {
        qDebug("VelmoraMainDlg,responseDownloadDone,not expected any more."); // it belongs to an earlier entry
        return;
    }
    m_isDownloadExpected = false;
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
    qDebug("VelmoraMainDlg,updatePlaylistItem...");
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
    qDebug("VelmoraMainDlg,handlePlayOk...");
    emit signalUpdatePlaybackinfo(2, 0, 0, 0);
    showPaused(false);
}

void VelmoraMainDlg::handlePauseOk()
{
    qDebug("VelmoraMainDlg,handlePauseOk...");
    emit signalUpdatePlaybackinfo(2, 1, 0, 0);
    showPaused(true);
}

// The button shows the action that a press would do; its text stays white with and without focus. Mint stands for
// sound: the progress bar and the icons of the station lose it while paused.
void VelmoraMainDlg::showPaused(bool isPaused)
{
    m_isPaused = isPaused;
    ui->nowplayingProgressBar->setMuted(isPaused);
    if (!ui->stationNameLabel->text().isEmpty())
        showStationLine();
    if (isPaused != m_isPlayingRowPlain)
        showStationIcon(m_playing_station_info_t.selectedStationIndex, !isPaused);
    m_isPlayingRowPlain = isPaused;
    const QString name = isPaused ? QStringLiteral("Play.png") : QStringLiteral("Pause.png");
    ui->playIconLabel->setStyleSheet(
        QStringLiteral("background-color: rgba(255, 255, 255, 0);\nborder-image: url(:/images/%1);").arg(name));
    ui->playBtn->setStyleSheet(
        QStringLiteral("image: url(:/images/%1);\nborder-image: url(:/images/%2);\ncolor: rgb(255, 255, 255);\n"
                       "border-with: 5px;")
            .arg(name, focusWidget() == ui->playBtn ? QStringLiteral("Button_F.png") : QStringLiteral("Button_N.png")));
}

// ---- the panel slides in

void VelmoraMainDlg::movePlaybackWidget()
{
    qDebug("VelmoraMainDlg,movePlaybackWidget...");
    QWidget *panel = ui->playbackControlWidget;
    panel->move(panelOutside);
    panel->raise(); // it passes over the history
    m_playbackAnimation = std::make_unique<QPropertyAnimation>(panel, "geometry");
    m_playbackAnimation->setDuration(slideMs);
    m_playbackAnimation->setStartValue(QRect(panelOutside, panel->size()));
    m_playbackAnimation->setEndValue(QRect(panelInside, panel->size()));
    m_playbackAnimation->setEasingCurve(QEasingCurve::OutCubic);
    m_playbackAnimation->start();
}
