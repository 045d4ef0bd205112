#pragma once

#include "station/stationtextdlg.h"

#include <memory>

namespace Ui {
class RenameStationDlg;
}

// Gives a station a new name.
class RenameStationDlg : public StationTextDlg {
    Q_OBJECT
public:
    RenameStationDlg(const QString &stationName, const QString &stationToken, QWidget *parent = nullptr);
    ~RenameStationDlg() override;

    void loseFocus(bool fgMsgbox) override;
    void resetFocus(bool fgMsgbox) override;

protected:
    void keyReleaseEvent(QKeyEvent *event) override;

private slots:
    void renameStation(QString newStationName);
    void renameStationDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void getStationListDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void updateStationList(HANDLE_T h_handle);
    void getStationList();
    void recoverInitInputState();
    void changeInitInputState();
    void showDigitHint(int pageNum);

private:
    // Returns to the player screen, which still exists with its stations.
    void backToPlayer();

    std::unique_ptr<Ui::RenameStationDlg> ui;
    const QString m_stationToken;
};
