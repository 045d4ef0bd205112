#pragma once

#include "app/stationdialog.h"

// What Create and Rename station share: the reaction to a failed completion, and the request for the station list that
// ends both. GUI thread only.
class StationTextDlg : public StationDialog {
    Q_OBJECT
public:
    explicit StationTextDlg(QWidget *parent = nullptr);

protected slots:
    void handleFatalErr(int errType);

protected:
    // Shows the message of a failed completion and carries out 5099 (sign-out) and -504 (exit). True when the caller
    // goes on; false when a fatal message is up, the failure has ended the screen, or the screen is gone.
    // `isAlwaysLast`: the caller ends the radio when it goes on.
    bool report(VLM_WS_EXT_ERRCODE_T code, const QString &fallback, bool isAlwaysLast = false);
    // Shows a warning, unless a fatal message is up, and ends the radio.
    void warnAndLeave(const QString &text);

    // Requests the station list that ends the dialog, newest station first. Shows `animation` once the request is sent.
    // Returns the library's immediate result.
    VLM_WS_EXT_ERRCODE_T requestStationList(const QString &animation);
    // Handles the reply: goes to the player screen. A failure is shown; it signs out or ends the radio. Takes ownership
    // of the handle.
    void takeStationList(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, const QString &fallback);
};
