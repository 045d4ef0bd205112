#pragma once

#include "app/textentrydlg.h"

// The screens that create and rename stations, by what the player screen hears of them. GUI thread only.
class StationDialog : public TextEntryDlg {
    Q_OBJECT
public:
    using TextEntryDlg::TextEntryDlg;

signals:
    void signalUpdateStationList(HANDLE_T h_handle);      // a station was created; the receiver owns the handle
    void signalUpdateStationName(QString newStationName); // no screen emits it (deliberate)
};
