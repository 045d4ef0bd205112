#include "station/renamestationdlg.h"

#include "service/velmorawebservice.h"
#include "service/wshandle.h"
#include "station/stationhandover.h"
#include "ui_renamestationdlg.h"
#include "widgets/cuttext.h"
#include "widgets/textentry.h"

#include <virtualkb/qtvirtualkbdlg.h>

#include <QDebug>
#include <QKeyEvent>

namespace {

constexpr int longestNameAsked = 40;
constexpr int longestName = 64;

} // namespace

RenameStationDlg::RenameStationDlg(const QString &stationName, const QString &stationToken, QWidget *parent)
    : StationTextDlg(parent)
    , ui(new Ui::RenameStationDlg)
    , m_stationToken(stationToken)
{
    qDebug("new RenameStationDlg..");
    ui->setupUi(this);
    (new TextEntry(this))->add(ui->stationNameLineEdit);
    TextEntry::setPromptStyle(ui->stationNameLineEdit);
    ui->stationNameLineEdit->setMaxLength(longestName);
    ui->stationNameLineEdit->setText(stationName);
    ui->stationNameLineEdit->setAccessibleName(ui->titleLabel->text());

    showDigitHint(1);
    makeKeyboard(ui->stationNameLineEdit, false, QPoint(137, 280));
    connect(m_keyboard, &QtVirtualKbDlg::signalSendContext, this, &RenameStationDlg::renameStation);
    connect(m_keyboard, &QtVirtualKbDlg::signalRestoreInitState, this, &RenameStationDlg::recoverInitInputState);
    connect(m_keyboard, &QtVirtualKbDlg::signalFirstKey, this, &RenameStationDlg::changeInitInputState);
    connect(m_keyboard, &QtVirtualKbDlg::signalPageNum, this, &RenameStationDlg::showDigitHint);
    // The field holds real text, for which the keyboard announces no first key: the first change sets the typing style.
    connect(ui->stationNameLineEdit, &QLineEdit::textChanged, this, [this](const QString &text) {
        if (!text.isEmpty() && ui->stationNameLineEdit->isReadOnly())
            changeInitInputState();
    });

    VelmoraWebService *service = VelmoraWebService::getInstance();
    connect(service, &VelmoraWebService::signalRenameStationDone, this, &RenameStationDlg::renameStationDone);
    connect(service, &VelmoraWebService::signalGetStationListDone, this, &RenameStationDlg::getStationListDone);
    ui->stationNameLineEdit->setFocus(Qt::OtherFocusReason);
}

RenameStationDlg::~RenameStationDlg()
{
    qDebug("del RenameStationDlg..");
}

void RenameStationDlg::backToPlayer()
{
    retire();
    delUiType();
    stationhandover::showPlayer();
}

void RenameStationDlg::renameStation(QString newStationName)
{
    qDebug("RenameStationDlg,renameStation...");
    if (isFatalMessageUp())
        return;
    if (ui->stationNameLineEdit->text().isEmpty()) {
        showMsgbox(MSG_WARNING, tr("Rename station failed, no station name supplied."));
        return;
    }
    setMsgBoxInfoType(LABELS_YES_NO);
    const QPointer<RenameStationDlg> guard(this);
    const int answer = showMsgbox(MSG_QUESTION, tr("Are you sure you want to rename this station as: \n") +
                                                    cutText(newStationName, longestNameAsked) + QLatin1Char('?'));
    if (!guard || isBoxDestroyed() || isEixt || m_isErrorMsg)
        return;
    if (answer == 0) {
        qDebug("RenameStationDlg,renameStation,answer is no.");
        return;
    }
    HANDLE_T handle = 0;
    const VLM_WS_EXT_ERRCODE_T result = VelmoraWebService::getInstance()->renameStation(
        newStationName.toUtf8().constData(), m_stationToken.toLatin1().constData(), 0, false, nullptr, &handle);
    if (result != VLM_WS_ERR_OK) {
        qDebug("RenameStationDlg,renameStation,ret=%d.", int(result));
        showMsgbox(MSG_WARNING, tr("Rename station failed,you could try again."));
        if (guard && !isEixt)
            backToPlayer();
        return;
    }
    ui->stationNameLineEdit->clearFocus();
    emit signalChangeHighlight(false);
    controlAnimation(false, tr("Rename station..."));
}

void RenameStationDlg::renameStationDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *)
{
    qDebug("RenameStationDlg,renameStationDone,ret=%d.", int(e_ret));
    WsHandle handle(h_handle);
    controlAnimation(true);
    if (e_ret == VLM_WS_ERR_OK) {
        updateStationList(handle.take());
        return;
    }
    handle.reset();
    if (report(e_ret, tr("Rename station list failed ,please try later!")))
        backToPlayer();
}

void RenameStationDlg::updateStationList(HANDLE_T h_handle)
{
    {
        const WsHandle owner(h_handle);
    }
    getStationList();
}

void RenameStationDlg::getStationList()
{
    if (requestStationList(tr("Buffering...")) != VLM_WS_ERR_OK)
        warnAndLeave(tr("Get station list failed!"));
}

void RenameStationDlg::getStationListDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *)
{
    takeStationList(h_handle, e_ret, tr("Get station list failed ,please try later!"));
}

void RenameStationDlg::changeInitInputState()
{
    qDebug("RenameStationDlg,changeInitInputState...");
    TextEntry::setTypingStyle(ui->stationNameLineEdit);
    ui->stationNameLineEdit->setReadOnly(false);
    ui->stationNameLineEdit->setFocus(Qt::OtherFocusReason);
}

void RenameStationDlg::recoverInitInputState()
{
    qDebug("RenameStationDlg,recoverInitInputState...");
    if (!ui->stationNameLineEdit->text().isEmpty())
        return;
    TextEntry::setPromptStyle(ui->stationNameLineEdit);
    ui->stationNameLineEdit->setReadOnly(true);
}

void RenameStationDlg::showDigitHint(int pageNum)
{
    if (pageNum != 1 && pageNum != 2)
        return;
    const bool isLetters = pageNum == 1;
    ui->digitalContentLabel->setVisible(!isLetters);
    ui->digitalIconLabel->setVisible(!isLetters);
    ui->greenContentLabel->setVisible(isLetters);
    ui->greenIconLabel->setVisible(isLetters);
}

void RenameStationDlg::loseFocus(bool fgMsgbox)
{
    qDebug("RenameStationDlg,loseFocus..fgMsgbox=%d.", fgMsgbox);
    ui->stationNameLineEdit->clearFocus();
    emit signalChangeHighlight(false);
    StationTextDlg::loseFocus(fgMsgbox);
}

void RenameStationDlg::resetFocus(bool fgMsgbox)
{
    qDebug("RenameStationDlg,resetFocus..fgMsgbox=%d.", fgMsgbox);
    emit signalChangeHighlight(true);
    ui->stationNameLineEdit->setFocus(Qt::OtherFocusReason);
    StationTextDlg::resetFocus(fgMsgbox);
}

void RenameStationDlg::keyReleaseEvent(QKeyEvent *event)
{
    // Unlike the other dialogs, this one does not ask fgActionInvalid() here (deliberate).
    qDebug("RenameStationDlg,keyReleaseEvent,event->key=%0x", event->key());
    runTimer();
    if (event->key() == Qt::Key_Back) {
        qDebug("RenameStationDlg,keyReleaseEvent.recv Qt::Key_Back.");
        emit signalReturnBtn();
        return;
    }
    StationTextDlg::keyReleaseEvent(event);
}
