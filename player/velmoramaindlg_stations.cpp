// The player screen: the station list.
#include "netcommon/playbackthread.h"
#include "player/focusring.h"
#include "player/nowplayingtext.h"
#include "player/stationrecord.h"
#include "player/velmoramaindlg.h"
#include "service/velmorasettings.h"
#include "service/wsreply.h"
#include "ui_velmoramaindlg.h"
#include "widgets/cuttext.h"

#include <QDebug>

#include <algorithm>

using stationrecord::iconPath;
using stationrecord::Kind;

void VelmoraMainDlg::wireStations()
{
    connect(ui->stationListWidget, &QListWidget::currentRowChanged, this, &VelmoraMainDlg::showStationNum);
}

// ---- filling

void VelmoraMainDlg::fillupStationListBox(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag)
{
    fillupStationListBox_Ex(h_handle, e_ret, pv_tag, true);
}

// The caller has checked the result already.
void VelmoraMainDlg::fillupStationListBox_Ex(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T, VOID *, bool fg_autoplay)
{
    WsHandle handle(h_handle);
    const int count = wsreply::StationList(h_handle).count();
    qDebug("VelmoraMainDlg,fillupStationListBox,count=%d.", count);
    if (count == 0) {
        m_strCurrentStationToken.clear(); // the listener has to create a station; row 0 keeps the reply it has
        return;
    }
    // The old reply is released at the end of this function: row 0 is read from it until then.
    std::swap(m_stationlist_handle, handle);
    fillStationInfoList(m_stationlist_handle.get());
    focusStation(fg_autoplay);
}

void VelmoraMainDlg::fillStationInfoList(HANDLE_T h_handle)
{
    releaseStationInfoList(true, 0);
    const wsreply::StationList reply(h_handle);
    qDebug("VelmoraMainDlg,fillStationInfoList,count=%d.", reply.count());
    for (int i = 1; i < reply.count(); ++i) {
        const VLM_STATION_MAP_T *source = reply.at(i);
        StationCopy record = source ? copyStation(*source) : nullptr;
        if (!record) {
            qDebug("VelmoraMainDlg,fillStationInfoList,malloc VLM_STATION_MAP_T failed! ");
            return;
        }
        m_stationInfoList.push_back(std::move(record));
    }
}

void VelmoraMainDlg::releaseStationInfoList(bool isAll, int index)
{
    qDebug("VelmoraMainDlg,releaseStationInfoList,isAll=%d,index=%d.", isAll, index);
    if (isAll)
        m_stationInfoList.clear();
    else if (stationrecord::at(m_stationInfoList, index))
        m_stationInfoList.erase(m_stationInfoList.begin() + index);
}

bool VelmoraMainDlg::caseInsensitiveLessThan(VLM_STATION_MAP_T *a, VLM_STATION_MAP_T *b)
{
    return stationrecord::lessThan(a, b);
}

void VelmoraMainDlg::sortStations()
{
    std::sort(m_stationInfoList.begin(), m_stationInfoList.end(),
              [](const StationCopy &a, const StationCopy &b) { return caseInsensitiveLessThan(a.get(), b.get()); });
}

const VLM_STATION_MAP_T *VelmoraMainDlg::stationOfRow(int row) const
{
    if (row == 0)
        return wsreply::StationList(m_stationlist_handle.get()).at(0);
    return stationrecord::at(m_stationInfoList, stationrecord::indexOfRow(row));
}

QString VelmoraMainDlg::stationRowText(int row) const
{
    if (row == ui->stationListWidget->currentRow())
        return ui->stationListWidget->currentItemText();
    const QListWidgetItem *item = ui->stationListWidget->item(row);
    return item && !item->text().isEmpty() ? item->text() : stationrecord::name(stationOfRow(row));
}

// ---- rows, focus, playing row

void VelmoraMainDlg::focusStation(bool fgAutoPlay)
{
    qDebug("VelmoraMainDlg,focusStation,fgAutoPlay=%d.", fgAutoPlay);
    ImageListWidget *list = ui->stationListWidget;
    if (list->count() > 0) {
        list->clearScroll();
        list->clear();
    }
    QString lastStation;
    {
        VelmoraSettings settings = deviceSettings();
        lastStation = settings.getStationInfo();
    }
    const VLM_STATION_MAP_T *tapestry = stationOfRow(0);
    if (!tapestry)
        return;
    addStationRows();
    const int foundRow =
        stationrecord::rowOfLastStation(stationrecord::token(tapestry), m_stationInfoList, lastStation);
    m_playing_station_info_t.selectedStationIndex = foundRow;
    const QPointer<VelmoraMainDlg> self(this);
    if (fgAutoPlay) {
        makeStationRowCurrent(foundRow);
        list->item(foundRow)->setIcon(cachedIcon(iconPath(Kind::Ordinary, true)));
        getPlayList();
        if (!self || m_isGoing)
            return;
    } else {
        focusStationWithoutPlaying(foundRow);
    }
    m_playing_station_info_t.deleteStationIndex = 0;
    m_playing_station_info_t.renametationIndex = 0;

    if (m_focusPosition == focusring::Position::None)
        m_focusPosition = focusring::Position::StationList;
    else if (m_focusPosition != focusring::Position::StationList)
        list->clearFocus();
    showStationNum(list->currentRow());
    if (screencover::mayLookFocused(cover()))
        showFocused(m_focusPosition);
}

void VelmoraMainDlg::addStationRows()
{
    ImageListWidget *list = ui->stationListWidget;
    list->setUpdatesEnabled(false);
    addStationRow(stationrecord::name(stationOfRow(0)), cachedIcon(iconPath(Kind::Tapestry, false)));
    for (const StationCopy &record : m_stationInfoList)
        addStationRow(stationrecord::name(record.get()),
                      cachedIcon(iconPath(record->isShared ? Kind::Shared : Kind::Ordinary, false)));
    list->setUpdatesEnabled(true);
}

void VelmoraMainDlg::addStationRow(const QString &name, const QIcon &icon)
{
    auto *const item = new QListWidgetItem(icon, name, ui->stationListWidget);
    item->setSizeHint(QSize(324, 52));
    item->setTextAlignment(Qt::AlignLeft);
    item->setTextAlignment(Qt::AlignVCenter); // takes the place of the line above (deliberate)
    item->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
}

void VelmoraMainDlg::focusStationWithoutPlaying(int foundRow)
{
    auto &playing = m_playing_station_info_t;
    if (playing.selectedStationIndex == 0)
        showStationIcon(0, true);
    int row = foundRow;
    if (playing.deleteStationIndex > 0) {
        row = playing.deleteStationIndex;
    } else if (playing.renametationIndex > 0) {
        row = playing.renametationIndex;
        if (row == playing.selectedStationIndex)
            ui->stationNameLabel->setText(cutText(stationrecord::name(stationOfRow(row)), nowplayingtext::labelLength));
    }
    makeStationRowCurrent(row);
    // The ordinary picture, also on a playing Tapestry row (deliberate).
    if (QListWidgetItem *item = ui->stationListWidget->item(playing.selectedStationIndex))
        item->setIcon(cachedIcon(iconPath(Kind::Ordinary, true)));
}

void VelmoraMainDlg::makeStationRowCurrent(int row)
{
    ImageListWidget *list = ui->stationListWidget;
    if (list->currentRow() == row)
        return;
    list->clearBg(list->currentItem());
    list->setCurrentRow(row);
}

void VelmoraMainDlg::showStationIcon(int row, bool isPlaying)
{
    if (QListWidgetItem *item = ui->stationListWidget->item(row))
        item->setIcon(cachedIcon(iconPath(stationrecord::kindOfRow(row, m_stationInfoList), isPlaying)));
}

// The selected mode gets the same picture; otherwise Qt tints it.
// Kept in the size of the lists' icons: some of the pictures are much larger.
const QIcon &VelmoraMainDlg::cachedIcon(const char *path)
{
    QIcon &icon = m_icons[QByteArray(path)];
    if (icon.isNull()) {
        const QPixmap picture =
            QIcon(QString::fromLatin1(path)).pixmap(ui->playListWidget->iconSize(), devicePixelRatioF());
        icon.addPixmap(picture, QIcon::Normal);
        icon.addPixmap(picture, QIcon::Selected);
    }
    return icon;
}

// The argument is not used (deliberate): the widget's current row counts.
void VelmoraMainDlg::showStationNum(int)
{
    qDebug("VelmoraMainDlg,showStationNum...");
    const ImageListWidget *list = ui->stationListWidget;
    ui->stationNumLabel->setText(QStringLiteral("%1/%2").arg(list->currentRow() + 1).arg(list->count()));
}

void VelmoraMainDlg::rememberLastStation(const QString &stationToken)
{
    VelmoraSettings settings = deviceSettings();
    settings.setStationInfo(settings.getLastLoginName(), stationToken);
}

// ---- after a station was created or renamed

void VelmoraMainDlg::updateStationList(HANDLE_T h_handle)
{
    const WsHandle handle(h_handle);
    const VLM_STATION_MAP_T *station = wsreply::station(h_handle);
    qDebug("VelmoraMainDlg,updateStationList,hasStation=%d.", station != nullptr);
    if (!station)
        return;
    controlAnimation(true, QString());
    resetFocus(false);
    const QString token = stationrecord::token(station);
    if (token == m_strCurrentStationToken) {
        qDebug("VelmoraMainDlg,updateStationList,it is the same as current StationToken.");
        warn(tr("Now playing..."));
        return;
    }
    ui->stationListWidget->clearScroll();
    rememberLastStation(token);
    m_playing_station_info_t.deleteStationIndex = 0;
    m_playing_station_info_t.renametationIndex = 0;
    if (stationrecord::indexOfToken(m_stationInfoList, token) < 0) {
        StationCopy record = copyStation(*station);
        if (!record) {
            qDebug("VelmoraMainDlg,updateStationList,malloc VLM_STATION_MAP_T failed! ");
            return;
        }
        m_stationInfoList.push_back(std::move(record));
        sortStations();
    }
    focusStation(true);
}

// The cursor stays on its row number, even though another station may stand there after sorting (deliberate).
void VelmoraMainDlg::updateStationName(QString newStationName)
{
    ImageListWidget *list = ui->stationListWidget;
    qDebug("VelmoraMainDlg,updateStationName,row=%d.", list->currentRow());
    const int index = stationrecord::indexOfRow(list->currentRow());
    list->clearScroll();
    if (!stationrecord::at(m_stationInfoList, index))
        return;
    // Latin-1, although names are read as UTF-8 (deliberate).
    if (!setStationName(*m_stationInfoList[static_cast<std::size_t>(index)], newStationName.toLatin1()))
        return;
    sortStations();
    focusStation(false);
    list->ensureFocusVisible();
    if (m_focusPosition != focusring::Position::StationList || !screencover::mayLookFocused(cover()))
        list->clearFocus(); // the bar of a list without focus
}
