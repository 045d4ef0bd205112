#include "station/stationtextdlg.h"

#include "station/stationhandover.h"

#include <QDebug>

StationTextDlg::StationTextDlg(QWidget *parent)
    : TextEntryDlg(parent)
{
    connect(this, &StationTextDlg::signalFatalErr, this, &StationTextDlg::handleFatalErr);
}

bool StationTextDlg::warn(const QString &text)
{
    if (m_isErrorMsg) {
        qDebug("Velmoraparent m_isErrorMsg is true.");
        return false;
    }
    const QPointer<StationTextDlg> guard(this);
    showMsgbox(MSG_WARNING, text);
    return guard && !isEixt && !m_isErrorMsg;
}

bool StationTextDlg::report(VLM_WS_EXT_ERRCODE_T code, const QString &fallback)
{
    if (m_isErrorMsg) {
        qDebug("Velmoraparent m_isErrorMsg is true.");
        return false;
    }
    const QString text = messageFor(code, fallback);
    const QPointer<StationTextDlg> guard(this);
    if (code == VLM_WS_ERR_ACCOUNT_INACTIVE) {
        m_isErrorMsg = true;
        emit signalFatalErr(code);
    }
    showMsgbox(MSG_WARNING, text);
    if (!guard)
        return false;
    if (code == VLM_WS_ERR_ERROR_CURL_FAILURE) {
        emit signalExit(false, true);
        return false;
    }
    if (code == VLM_WS_ERR_ACCOUNT_INACTIVE) {
        stationhandover::signOut(this);
        return false;
    }
    return !isEixt && !m_isErrorMsg;
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
