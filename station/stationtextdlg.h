#pragma once

#include "app/stationdialog.h"

// What Create and Rename station share: how a failed completion is told and where it leads, and the station list that
// both end with. GUI thread only.
class StationTextDlg : public StationDialog {
    Q_OBJECT
public:
    explicit StationTextDlg(QWidget *parent = nullptr);

protected slots:
    void handleFatalErr(int errType);

protected:
    // Shows the message of a failed completion and does what 5099 (sign-out) and -504 (exit) want. True when the caller
    // goes on; false when a fatal message is up, the failure has ended the screen, or the screen is gone.
    bool report(VLM_WS_EXT_ERRCODE_T code, const QString &fallback);
    // A warning, unless a fatal message is up, and the end of the radio.
    void warnAndLeave(const QString &text);

    // The station list that ends the dialog, newest station first. Shows `animation` once the request is on its way;
    // the library's immediate result.
    VLM_WS_EXT_ERRCODE_T requestStationList(const QString &animation);
    // Its reply: over to the player screen. A failure is told; it signs out or ends the radio. Takes the handle over.
    void takeStationList(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, const QString &fallback);
};
