#pragma once

#include "service/accountrecord.h"
#include "velmora_ws.h"

#include <QObject>

// The chain of requests that turns an account of this device into a logged-in user with a station list. One object a
// login attempt, child of the screen that started it. GUI thread only.
class VelmoraLogin : public QObject {
    Q_OBJECT
public:
    explicit VelmoraLogin(QObject *parent = nullptr);
    ~VelmoraLogin() override;

    // Empty name: the last login of the settings. False when the device's address cannot be read: nothing was sent, and
    // no signal will come.
    bool userLogin(const QString &userName, const QString &password);
    // The slot of an account that is being activated: userLoginWithDeviceID() logs in with it instead of the last
    // login's. The settings get it only once the service has logged the account in.
    void setActivationSlot(const QString &slot) { m_activationSlot = slot; }
    void userLoginWithDeviceID();
    void associateDevice();
    void getStationList();

public slots:
    void partnerLogin();

signals:
    void signaVelmoraLoginFatalError(VLM_WS_EXT_ERRCODE_T e_ret); // spelled so
    void signalPartnerLoginDone();
    void signalLoginWithDeviceIDDoneError();          // the service does not know this device identity
    void signalGetStationListDone(HANDLE_T h_handle); // the receiver owns the handle

private slots:
    void handleWebServiceRet(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);

private:
    void finishUserLogin(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret);

    bool m_isAssociateStarted = false;
    bool m_isDeviceLogin = false; // the user login under way is the one by device identity
    AccountRecord m_account;
    QString m_activationSlot; // empty: none
};
