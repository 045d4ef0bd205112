#include "station/stationtextdlg.h"

#include "app/errortexts.h"
#include "service/velmorawebservice.h"
#include "service/wshandle.h"
#include "station/stationhandover.h"

#include <QDebug>

StationTextDlg::StationTextDlg(QWidget *parent)
    : StationDialog(parent)
{
    connect(this, &StationTextDlg::signalFatalErr, this, &StationTextDlg::handleFatalErr);
}

void StationTextDlg::warnAndLeave(const QString &text)
{
    if (isFatalMessageUp())
        return;
    const QPointer<StationTextDlg> guard(this);
    showLastMsgbox(MSG_WARNING, text);
    if (guard && !isEixt && !m_isNetworkError)
        emit signalExit(false, true);
}

bool StationTextDlg::report(VLM_WS_EXT_ERRCODE_T code, const QString &fallback, bool isAlwaysLast)
{
    if (isFatalMessageUp())
        return false;
    const QString text = messageFor(code, fallback);
    const QPointer<StationTextDlg> guard(this);
    const errortexts::Reaction reaction = errortexts::reactionTo(code, errortexts::Place::Player);
    if (reaction == errortexts::Reaction::SignOut) {
        m_isErrorMsg = true;
        emit signalFatalErr(code);
    }
    if (reaction == errortexts::Reaction::Leave || (isAlwaysLast && reaction != errortexts::Reaction::SignOut))
        showLastMsgbox(MSG_WARNING, text);
    else
        showMsgbox(MSG_WARNING, text);
    // A network loss and an exit close the box and decide by themselves what follows.
    if (!guard || isEixt || m_isNetworkError)
        return false;
    switch (reaction) {
    case errortexts::Reaction::Leave:
        if (isBoxDestroyed()) // another box replaced this one: the listener has not confirmed the message
            break;
        emit signalExit(false, true);
        return false;
    case errortexts::Reaction::SignOut:
        stationhandover::signOut(this);
        return false;
    default:
        break;
    }
    return true;
}

VLM_WS_EXT_ERRCODE_T StationTextDlg::requestStationList(const QString &animation)
{
    HANDLE_T handle = 0;
    const VLM_WS_EXT_ERRCODE_T result =
        VelmoraWebService::getInstance()->getStationList(1, "dateCreated", "desc", false, nullptr, &handle);
    if (result == VLM_WS_ERR_OK)
        controlAnimation(false, animation);
    else
        qDebug("%s,getStationList,ret=%d.", metaObject()->className(), int(result));
    return result;
}

void StationTextDlg::takeStationList(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, const QString &fallback)
{
    const char *name = metaObject()->className();
    qDebug("%s,getStationListDone,ret=%d.", name, int(e_ret));
    WsHandle handle(h_handle);
    controlAnimation(true);
    if (m_isErrorMsg) {
        qDebug("%s m_isErrorMsg is true.", name);
        return;
    }
    if (e_ret == VLM_WS_ERR_OK) {
        stationhandover::enterPlayer(this, handle.take());
        return;
    }
    handle.reset();
    if (report(e_ret, fallback, true))
        emit signalExit(false, true);
}

void StationTextDlg::handleFatalErr(int errType)
{
    qDebug("%s,handleFatalErr,errType=%d.", metaObject()->className(), errType);
    if (errType != VLM_WS_ERR_ACCOUNT_INACTIVE)
        return;
    // The emitting step still shows its message: closing defers the deletion until that step has finished.
    close();
    clearAllRecordHistroyUiType();
    stationhandover::showPlayer();
}
