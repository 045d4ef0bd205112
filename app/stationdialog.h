#pragma once

#include "app/textentrydlg.h"

// The signals that the player screen needs from the screens that create and rename stations. GUI thread only.
class StationDialog : public TextEntryDlg {
    Q_OBJECT
public:
    using TextEntryDlg::TextEntryDlg;

signals:
    void signalUpdateStationList(HANDLE_T h_handle);      // a station was created; the receiver owns the handle
    void signalUpdateStationName(QString newStationName); // no screen emits it (deliberate)
};
