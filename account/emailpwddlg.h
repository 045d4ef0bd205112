#pragma once

#include "app/textentrydlg.h"

#include <memory>

namespace Ui {
class EmailPwdDlg;
}

// Asks the service to send a password reminder to an e-mail address; returns to sign-in.
class EmailPwdDlg : public TextEntryDlg {
    Q_OBJECT
public:
    explicit EmailPwdDlg(QWidget *parent = nullptr);
    ~EmailPwdDlg() override;

    void loseFocus(bool fgMsgbox) override;
    void resetFocus(bool fgMsgbox) override;

protected:
    void keyReleaseEvent(QKeyEvent *event) override;

private slots:
    void emailPassword(QString strUserName);
    void emailPasswordDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void recoverInitInputState();
    void changeInitInputState();

private:
    void openSignIn();

    std::unique_ptr<Ui::EmailPwdDlg> ui;
};
