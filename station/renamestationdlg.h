#pragma once

#include "app/velmoraparentwidget.h"

#include <memory>

class QtVirtualKbDlg;

namespace Ui {
class RenameStationDlg;
}

// Gives a station a new name.
class RenameStationDlg : public VelmoraParentWidget {
    Q_OBJECT
public:
    RenameStationDlg(const QString &stationName, const QString &stationToken, QWidget *parent = nullptr);
    ~RenameStationDlg() override;

    void loseFocus(bool fgMsgbox) override;
    void resetFocus(bool fgMsgbox) override;

signals:
    void signalRetuenBtn(); // spelled so
    void signalRedBtn();
    void signalGreenBtn();
    void signalChangeHighlight(bool highlight);
    void signalUpdateStationName(QString newStationName); // for the player screen; never emitted here

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;

private slots:
    void renameStation(QString newStationName);
    void renameStationDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void getStationListDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void updateStationList(HANDLE_T h_handle);
    void getStationList();
    void handleFatalErr(int errType);
    void recoverInitInputState();
    void changeInitInputState();
    void showDigitHint(int pageNum);

private:
    // Leaves for the player screen, which is still there with its stations.
    void backToPlayer();
    // Shows the message of a failed completion and does what 5099 and -504 want. True when the caller goes on.
    bool report(VLM_WS_EXT_ERRCODE_T code, const QString &fallback);

    std::unique_ptr<Ui::RenameStationDlg> ui;
    QtVirtualKbDlg *m_keyboard; // child
    const QString m_stationToken;
};
