#include "station/createstationdlg.h"

#include "app/playerport.h"
#include "service/velmorasettings.h"
#include "service/velmorawebservice.h"
#include "service/wshandle.h"
#include "ui_createstationdlg.h"
#include "widgets/cuttext.h"
#include "widgets/textentry.h"

#include <virtualkb/qtvirtualkbdlg.h>

#include <QDebug>
#include <QKeyEvent>

namespace {

constexpr int selectDelayMs = 100;
constexpr int longestSearchShown = 40;
const QSize rowSize(324, 52);
constexpr int rowsShown = 8;

// The same picture for every icon mode: Qt would tint the icon of a selected row.
QIcon plainIcon(const char *path)
{
    QIcon icon(QString::fromLatin1(path));
    icon.addFile(QString::fromLatin1(path), QSize(), QIcon::Selected);
    return icon;
}

} // namespace

CreateStationDlg::CreateStationDlg(int mode, QWidget *parent)
    : StationTextDlg(parent)
    , ui(new Ui::CreateStationDlg)
    , m_mode(mode)
{
    qDebug("new CreateStationDlg..");
    ui->setupUi(this);
    (new TextEntry(this))->add(ui->searchLabelLineEdit);
    TextEntry::setPromptStyle(ui->searchLabelLineEdit);
    ui->searchLabelLineEdit->setText(tr("Artist Or Track"));
    ui->searchLabelLineEdit->setAccessibleName(ui->titleLabel->text());
    ui->searchResultListWidget->setAccessibleName(ui->stationListLabel->text());
    ui->searchResultListWidget->setPageSize(rowsShown);
    ui->searchResultListWidget->setIconSize(QSize(32, 32));
    ui->searchResultListWidget->hide();

    showDigitHint(1);
    makeKeyboard(ui->searchLabelLineEdit, true, QPoint(137, 280));
    connect(m_keyboard, &QtVirtualKbDlg::signalSendContext, this, &CreateStationDlg::searchStation);
    connect(m_keyboard, &QtVirtualKbDlg::signalRestoreInitState, this, &CreateStationDlg::recoverInitInputState);
    connect(m_keyboard, &QtVirtualKbDlg::signalFirstKey, this, &CreateStationDlg::changeInitInputState);
    connect(m_keyboard, &QtVirtualKbDlg::signalPageNum, this, &CreateStationDlg::showDigitHint);

    VelmoraWebService *service = VelmoraWebService::getInstance();
    connect(service, &VelmoraWebService::signalSearchDone, this, &CreateStationDlg::searchStationDone);
    connect(service, &VelmoraWebService::signalCreateStationDone, this, &CreateStationDlg::createStationDone);
    connect(service, &VelmoraWebService::signalGetStationListDone, this, &CreateStationDlg::getStationListDone);
    connect(ui->searchResultListWidget, &ImageListWidget::currentRowChanged, this, &CreateStationDlg::showNum);
    connect(this, &CreateStationDlg::signalSearchResultWidgetItemClicked, this, &CreateStationDlg::createStation);

    ui->searchLabelLineEdit->setFocus(Qt::OtherFocusReason);
    m_focusArea = FocusArea::Keyboard;
}

CreateStationDlg::~CreateStationDlg()
{
    delete ui->searchResultListWidget; // it draws with m_listStyle, which is destroyed before the children
    qDebug("del CreateStationDlg..");
}

void CreateStationDlg::searchStation(QString content)
{
    qDebug("CreateStationDlg,searchStation...");
    if (content.trimmed().isEmpty()) {
        showWarning(tr("Please enter an artist or track name to create a new station"));
        return;
    }
    HANDLE_T handle = 0;
    const VLM_WS_EXT_ERRCODE_T result =
        VelmoraWebService::getInstance()->search(content.toUtf8().constData(), 0, false, nullptr, &handle);
    if (result != VLM_WS_ERR_OK) {
        qDebug("CreateStationDlg,searchStation,ret=%d.", int(result));
        showWarning(tr("Search station failed!You could try again!"));
        return;
    }
    ui->searchLabelLineEdit->clearFocus();
    emit signalChangeHighlight(false);
    controlAnimation(false, tr("Search..."));
}

void CreateStationDlg::searchStationDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *)
{
    qDebug("CreateStationDlg,searchStationDone,ret=%d.", int(e_ret));
    WsHandle handle(h_handle);
    ui->searchLabelLineEdit->setFocus(Qt::OtherFocusReason);
    emit signalChangeHighlight(true);
    controlAnimation(true);
    dropRows();
    if (e_ret != VLM_WS_ERR_OK) {
        handle.reset();
        report(e_ret, tr("Search station failed,you could try again!"));
        return;
    }
    const wsreply::SearchResult result = wsreply::search(h_handle);
    handle.reset();
    showSearchContent(result); // last: it may ask a question, during which this screen can be deleted
}

void CreateStationDlg::showSearchContent(const wsreply::SearchResult &result)
{
    const qsizetype artists = result.artists.size();
    const qsizetype tracks = result.tracks.size();
    if (artists == 0 && tracks == 0) {
        const QString text = cutText(ui->searchLabelLineEdit->text(), longestSearchShown);
        showWarning(tr("No result for ") + QLatin1String("\n\"") + text + QLatin1Char('"'));
        return;
    }
    if (tracks == 0) {
        showArtists(result.artists);
        return;
    }
    if (artists == 0) {
        showSongs(result.tracks);
        return;
    }
    if (isFatalMessageUp())
        return;
    // The missing and the additional blank are deliberate.
    const QString question = tr("We found ") + QString::number(artists) + tr(" results by artists and ") +
                             QString::number(tracks) + tr(" results by tracks.Which did you mean ?");
    setMsgBoxInfoType(LABELS_ARTIST_TRACK);
    const QPointer<CreateStationDlg> guard(this);
    const int answer = showMsgbox(MSG_QUESTION, question);
    if (!guard || isBoxDestroyed() || isEixt || m_isErrorMsg)
        return;
    if (answer == 1) {
        if (artists == 1)
            createStation(result.artists.first().musicToken);
        else
            showArtists(result.artists);
    } else {
        if (tracks == 1)
            createStation(result.tracks.first().musicToken);
        else
            showSongs(result.tracks);
    }
}

// Removes the rows of an earlier search: they do not belong to the text that is in the field now.
void CreateStationDlg::dropRows()
{
    ui->searchResultListWidget->clearScroll();
    ui->searchResultListWidget->clear();
    ui->searchResultListWidget->hide();
    ui->searchResultNumLabel->clear();
    ui->descriptionLabel->show();
    m_tokens.clear();
}

void CreateStationDlg::beginRows()
{
    dropRows();
    ui->descriptionLabel->hide();
    ImageListWidget *list = ui->searchResultListWidget;
    list->show();
    list->setStyle(&m_listStyle);
}

void CreateStationDlg::addRow(const QString &text, const QString &token, const QIcon &icon)
{
    auto row = std::make_unique<QListWidgetItem>(icon, text);
    row->setSizeHint(rowSize);
    row->setTextAlignment(Qt::AlignVCenter);
    row->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    ui->searchResultListWidget->addItem(row.release());
    m_tokens.insert(text, token);
}

void CreateStationDlg::endRows()
{
    ui->searchResultListWidget->setCurrentRow(0);
    showNum(0);
    focusList();
    emit signalChangeHighlight(false);
    m_isSelectAble = false;
    QTimer::singleShot(selectDelayMs, this, &CreateStationDlg::selectAble);
}

void CreateStationDlg::showArtists(const QList<wsreply::SearchArtist> &artists)
{
    beginRows();
    const QIcon icon = plainIcon(":/images/ArtisIcon.png");
    for (const wsreply::SearchArtist &artist : artists)
        addRow(artist.artistName, artist.musicToken, icon);
    endRows();
}

void CreateStationDlg::showSongs(const QList<wsreply::SearchTrack> &tracks)
{
    beginRows();
    const QIcon icon = plainIcon(":/images/NoThumbnail.png");
    for (const wsreply::SearchTrack &track : tracks)
        addRow(track.songName + tr(" by ") + track.artistName, track.musicToken, icon);
    endRows();
}

void CreateStationDlg::showNum(int index)
{
    ui->searchResultNumLabel->setText(QStringLiteral("%1/%2").arg(index + 1).arg(ui->searchResultListWidget->count()));
}

void CreateStationDlg::selectAble()
{
    m_isSelectAble = true;
}

void CreateStationDlg::createStation(QString strMusicToken)
{
    qDebug("CreateStationDlg,createStation...");
    HANDLE_T handle = 0;
    const VLM_WS_EXT_ERRCODE_T result = VelmoraWebService::getInstance()->createStation(
        strMusicToken.toUtf8().constData(), nullptr, nullptr, 0, false, nullptr, &handle);
    if (result != VLM_WS_ERR_OK) {
        qDebug("CreateStationDlg,createStation,ret=%d.", int(result));
        showWarning(messageFor(result, tr("Create station list failed ,please try later!")));
        return;
    }
    controlAnimation(false, tr("Buffering..."));
}

void CreateStationDlg::createStationDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *)
{
    qDebug("CreateStationDlg,createStationDone,ret=%d.", int(e_ret));
    WsHandle handle(h_handle);
    controlAnimation(true);
    if (e_ret != VLM_WS_ERR_OK) {
        handle.reset();
        report(e_ret, tr("Create station list failed ,please try later!"));
        return;
    }
    if (!wsreply::station(h_handle)) {
        handle.reset();
        showWarning(tr("Create station failed,because system gets invalid data from Velmora!"));
        return;
    }
    if (m_mode == 1) {
        updateStationList(handle.take());
    } else if (m_mode == 0) {
        delUiType();
        if (PlayerPort *player = PlayerPort::existing())
            player->restartIdleTimer();
        emit signalUpdateStationList(handle.take());
    }
}

void CreateStationDlg::updateStationList(HANDLE_T h_handle)
{
    const WsHandle handle(h_handle);
    const QString token = QString::fromLatin1(wsreply::station(h_handle)->stationToken);
    {
        VelmoraSettings settings = deviceSettings();
        settings.setStationInfo(settings.getLastLoginName(), token);
    }
    getStationList();
}

void CreateStationDlg::getStationList()
{
    const VLM_WS_EXT_ERRCODE_T result = requestStationList(tr("Buffering..."));
    if (result != VLM_WS_ERR_OK)
        warnAndLeave(messageFor(result, tr("Get station list failed ,please try later!")));
}

void CreateStationDlg::getStationListDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *)
{
    takeStationList(h_handle, e_ret, tr("Get station list failed ,please try later!"));
}

void CreateStationDlg::changeInitInputState()
{
    qDebug("CreateStationDlg,changeInitInputState...");
    if (m_focusArea != FocusArea::Keyboard)
        return;
    TextEntry::setTypingStyle(ui->searchLabelLineEdit);
    ui->searchLabelLineEdit->setReadOnly(false);
    ui->searchLabelLineEdit->setFocus(Qt::OtherFocusReason);
}

void CreateStationDlg::recoverInitInputState()
{
    qDebug("CreateStationDlg,recoverInitInputState...");
    if (!ui->searchLabelLineEdit->text().isEmpty())
        return;
    TextEntry::setPromptStyle(ui->searchLabelLineEdit);
    ui->searchLabelLineEdit->setReadOnly(true);
    ui->searchLabelLineEdit->setText(tr("Artist or Song")); // not the prompt of the start (deliberate)
}

void CreateStationDlg::showDigitHint(int pageNum)
{
    if (pageNum != 1 && pageNum != 2)
        return;
    const bool isLetters = pageNum == 1;
    ui->digitalContentLable->setVisible(!isLetters);
    ui->digitalIconLabel->setVisible(!isLetters);
    ui->greenContentLabel->setVisible(isLetters);
    ui->greenIconLabel->setVisible(isLetters);
}

void CreateStationDlg::focusKeyboard()
{
    m_focusArea = FocusArea::Keyboard;
    ui->searchResultListWidget->clearFocus();
    ui->searchLabelLineEdit->setFocus(Qt::OtherFocusReason);
    TextEntry::setTypingStyle(ui->searchLabelLineEdit);
    m_keyboard->restoreFocus();
    emit signalChangeHighlight(true);
}

void CreateStationDlg::focusList()
{
    m_focusArea = FocusArea::List;
    ui->searchLabelLineEdit->clearFocus();
    TextEntry::setPromptStyle(ui->searchLabelLineEdit);
    m_keyboard->loseFocus();
    ui->searchResultListWidget->setFocus();
}

void CreateStationDlg::loseFocus(bool fgMsgbox)
{
    qDebug("CreateStationDlg,loseFocus..fgMsgbox=%d.", fgMsgbox);
    if (m_focusArea == FocusArea::List)
        ui->searchResultListWidget->clearFocus();
    else
        ui->searchLabelLineEdit->clearFocus();
    emit signalChangeHighlight(false);
    StationTextDlg::loseFocus(fgMsgbox);
}

void CreateStationDlg::resetFocus(bool fgMsgbox)
{
    qDebug("CreateStationDlg,resetFocus..fgMsgbox=%d.", fgMsgbox);
    emit signalChangeHighlight(true);
    if (m_focusArea == FocusArea::List)
        ui->searchResultListWidget->setFocus();
    else
        ui->searchLabelLineEdit->setFocus(Qt::OtherFocusReason);
    StationTextDlg::resetFocus(fgMsgbox);
}

void CreateStationDlg::keyReleaseEvent(QKeyEvent *event)
{
    qDebug("CreateStationDlg,keyReleaseEvent,event->key=%0x", event->key());
    if (!fgActionInvalid()) {
        qDebug("CreateStationDlg,keyReleaseEvent,action invalid,return.");
        return;
    }
    runTimer();
    switch (event->key()) {
    case Qt::Key_Back:
        qDebug("CreateStationDlg,keyReleaseEvent.recv Qt::Key_Back.");
        emit signalReturnBtn();
        return;
    case Qt::Key_Select:
        if (m_focusArea == FocusArea::List && m_isSelectAble) {
            const QString text = ui->searchResultListWidget->currentItemText();
            if (m_tokens.contains(text))
                emit signalSearchResultWidgetItemClicked(m_tokens.value(text));
        }
        return;
    case Qt::Key_Right:
        if (m_focusArea == FocusArea::Keyboard) {
            if (ui->searchResultListWidget->count() > 0 && m_keyboard->isLastKey())
                focusList();
        } else {
            ui->searchResultListWidget->setFocus();
        }
        return;
    case Qt::Key_Left:
        if (m_focusArea == FocusArea::List)
            focusKeyboard();
        return;
    case Qt::Key_Up:
    case Qt::Key_Down:
        if (m_focusArea == FocusArea::Keyboard)
            ui->searchLabelLineEdit->setFocus(Qt::OtherFocusReason);
        return;
    default:
        StationTextDlg::keyReleaseEvent(event);
    }
}
