#pragma once

#include "app/textentrydlg.h"

// What Create and Rename station share: how a failed completion is told and where it leads. GUI thread only.
class StationTextDlg : public TextEntryDlg {
    Q_OBJECT
public:
    explicit StationTextDlg(QWidget *parent = nullptr);

protected slots:
    void handleFatalErr(int errType);

protected:
    // Shows the message of a failed completion and does what 5099 (sign-out) and -504 (exit) want. True when the caller
    // goes on; false when a fatal message is up, the failure has ended the screen, or the screen is gone.
    bool report(VLM_WS_EXT_ERRCODE_T code, const QString &fallback);
    // A message over this screen; false when a fatal message is up, or the screen did not survive its box.
    bool warn(const QString &text);
};
