#pragma once

#include "app/velmoraparentwidget.h"

#include <memory>

class QrCode;
class VelmoraLogin;

namespace Ui {
class InternetRadioDlg;
}

// Device activation: shows the code and the page on which it is typed; Continue logs in with the device's identity.
class InternetRadioDlg : public VelmoraParentWidget {
    Q_OBJECT
public:
    // The caller prepares both lines (see deviceactivation.h); the navigation history passes two empty strings.
    InternetRadioDlg(const QString &codeLine, const QString &pageLine, QWidget *parent = nullptr);
    ~InternetRadioDlg() override;

    void loseFocus(bool fgMsgbox) override;
    void resetFocus(bool fgMsgbox) override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;

private slots:
    void userLoginWithDeviceID();
    void displayError(); // the service does not know this device yet
    void displayFatalError(VLM_WS_EXT_ERRCODE_T e_ret);
    void enterVelmoraMainDlg(HANDLE_T h_handle);
    void generateDeviceActivationCodeDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);

private:
    void generateDeviceActivationCode();
    void dress(bool isFocused);
    void showQrCode();

    std::unique_ptr<Ui::InternetRadioDlg> ui;
    VelmoraLogin *m_login; // child
    QrCode *m_qrCode;      // child; the page's address with the code, for the camera of a telephone
};
