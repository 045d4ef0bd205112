#pragma once

#include "app/velmoraparentwidget.h"

#include <QList>

#include <memory>

class QLabel;
class QTimer;
class VelmoraLogin;

namespace Ui {
class LoadingDlg;
}

// Shows the logo and a small animation while the stored account logs in. Hands over to the player, to Create station or
// to account selection, or shows an error box and exits the application. Starts 200 ms after construction.
class LoadingDlg : public VelmoraParentWidget {
    Q_OBJECT
public:
    explicit LoadingDlg(QWidget *parent = nullptr);
    ~LoadingDlg() override;

    void loseFocus(bool fgMsgbox) override;
    void resetFocus(bool fgMsgbox) override;

signals:
    void signalPartnerLogin();

public slots:
    void loadingAnimation();
    void deviceidlogin();
    void connectToVelmora();
    void displayError(VLM_WS_EXT_ERRCODE_T e_ret);
    void enterVelmoraMainDlg(HANDLE_T h_handle); // takes the handle over

private:
    void wireLogin();
    void goToAccountSelection(int loginState);
    void leaveScreen();

    std::unique_ptr<Ui::LoadingDlg> ui;
    QList<QLabel *> m_frames; // of the form, in the order in which they are shown
    int m_frameIndex = 0;     // the frame to show next
    QTimer *m_animationTimer; // child
    VelmoraLogin *m_login;    // child
};
