#include "service/velmoralogin.h"

#include "service/deviceidentity.h"
#include "service/velmorasettings.h"
#include "service/velmorawebservice.h"
#include "service/wshandle.h"
#include "service/wsreply.h"

#include <QDebug>

namespace {

// The identity that the service knows this device by, with `slot`, or the last login's when that is empty. Empty when
// the device's address cannot be read: the chain then stops silently (deliberate).
QByteArray identityFor(const QString &slot)
{
    char mac[7];
    const VLM_WS_EXT_ERRCODE_T result = VelmoraWebService::getInstance()->getMac(mac, sizeof mac);
    if (result != VLM_WS_ERR_OK) {
        qDebug("VelmoraLogin,userLoginWithDeviceID,getMac failed,e_ret=%d.", result);
        return QByteArray();
    }
    if (!slot.isEmpty())
        return deviceIdentity(mac, slot).toLatin1();
    VelmoraSettings settings = deviceSettings();
    return deviceIdentity(mac, settings.getLastLogin().password).toLatin1();
}

void logRelease()
{
    qDebug("VelmoraLogin,handleWebServiceRet,fianl,release web service handle...");
}

} // namespace

VelmoraLogin::VelmoraLogin(QObject *parent)
    : QObject(parent)
{
    qDebug("new VelmoraLogin...\n");
    VelmoraWebService *service = VelmoraWebService::getInstance();
    connect(service, &VelmoraWebService::signalParterLoginDone, this, &VelmoraLogin::handleWebServiceRet);
    connect(service, &VelmoraWebService::signalUserLoginDone, this, &VelmoraLogin::handleWebServiceRet);
    connect(service, &VelmoraWebService::signalAssociateDeviceDone, this, &VelmoraLogin::handleWebServiceRet);
    connect(service, &VelmoraWebService::signalGetStationListDone, this, &VelmoraLogin::handleWebServiceRet);
    qDebug("new VelmoraLogin...ok\n");
}

VelmoraLogin::~VelmoraLogin()
{
    qDebug("del VelmoraLogin..\n");
}

void VelmoraLogin::partnerLogin()
{
    qDebug("VelmoraLogin,partnerLogin....");
    HANDLE_T handle = 0;
    const VLM_WS_EXT_ERRCODE_T result =
        VelmoraWebService::getInstance()->partnerLogin(nullptr, nullptr, nullptr, 1, false, nullptr, &handle);
    if (result != VLM_WS_ERR_OK) {
        qDebug("VelmoraLogin,partnerLogin failed,ret=%d.", result);
        emit signaVelmoraLoginFatalError(result);
    }
}

bool VelmoraLogin::userLogin(const QString &userName, const QString &password)
{
    qDebug("VelmoraLogin,userLogin..");
    QByteArray name = userName.toUtf8();
    QByteArray secret = password.toUtf8();
    if (userName.isEmpty()) {
        qDebug("VelmoraLogin,userLogin,read ini file...");
        VelmoraSettings settings = deviceSettings();
        const AccountRecord last = settings.getLastLogin();
        name = last.userName.toUtf8();
        secret = last.password.toUtf8();
    } else {
        qDebug("VelmoraLogin,userLogin,read from input parameter...");
        m_account.userName = userName;
        m_account.password = password;
    }
    char mac[7];
    VLM_WS_EXT_ERRCODE_T result = VelmoraWebService::getInstance()->getMac(mac, sizeof mac);
    if (result != VLM_WS_ERR_OK) {
        qDebug("VelmoraLogin,userLogin,getMac failed,e_ret=%d.", result);
        return false;
    }
    HANDLE_T handle = 0;
    result = VelmoraWebService::getInstance()->userLogin("user", secret.constData(), name.constData(), mac, false,
                                                         nullptr, &handle);
    if (result == VLM_WS_ERR_OK) {
        m_isDeviceLogin = false;
    } else {
        qDebug("VelmoraLogin,userLogin failed,ret=%d.", result);
        emit signaVelmoraLoginFatalError(result);
    }
    return true;
}

void VelmoraLogin::associateDevice()
{
    qDebug("VelmoraLogin,associateDevice...");
    const QByteArray identity = identityFor(QString());
    if (identity.isEmpty())
        return;
    qDebug("VelmoraLogin,associateDevice.deviceId=%s..", identity.constData());
    HANDLE_T handle = 0;
    const VLM_WS_EXT_ERRCODE_T result =
        VelmoraWebService::getInstance()->associateDevice(identity.constData(), false, nullptr, &handle);
    if (result != VLM_WS_ERR_OK) {
        qDebug("VelmoraLogin,associateDevice failed,ret=%d.", result);
        emit signaVelmoraLoginFatalError(result);
    }
}

void VelmoraLogin::userLoginWithDeviceID()
{
    qDebug("VelmoraLogin,userLoginWithDeviceID...");
    const QByteArray identity = identityFor(m_activationSlot);
    if (identity.isEmpty())
        return;
    HANDLE_T handle = 0;
    const VLM_WS_EXT_ERRCODE_T result = VelmoraWebService::getInstance()->userLogin(
        "deviceId", nullptr, nullptr, identity.constData(), false, nullptr, &handle);
    if (result == VLM_WS_ERR_OK) {
        m_isDeviceLogin = true;
    } else {
        qDebug("VelmoraLogin,userLoginWithDeviceID,userLoginfailed,ret=%d.", result);
        emit signaVelmoraLoginFatalError(result);
    }
}

void VelmoraLogin::getStationList()
{
    qDebug("VelmoraLogin,getStationList...");
    HANDLE_T handle = 0;
    const VLM_WS_EXT_ERRCODE_T result =
        VelmoraWebService::getInstance()->getStationList(true, "dateCreated", "desc", false, nullptr, &handle);
    if (result != VLM_WS_ERR_OK) {
        qDebug("VelmoraLogin,getStationList failed,ret=%d.", result);
        emit signaVelmoraLoginFatalError(result);
    }
}

void VelmoraLogin::handleWebServiceRet(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *)
{
    qDebug("VelmoraLogin,handleWebServiceRet...");
    WsHandle handle(h_handle);
    // "Device not found" continues: the login by device identity handles it as a separate answer.
    if (e_ret != VLM_WS_ERR_OK && e_ret != VLM_WS_ERR_DEVICE_NOT_FOUND) {
        qDebug("VelmoraLogin,handleWebServiceRet=%d", e_ret);
        logRelease();
        handle.reset();
        emit signaVelmoraLoginFatalError(e_ret);
        return;
    }
    const int cmd = wsreply::commandId(h_handle);
    qDebug("VelmoraLogin,handleWebServiceRet,cmdID=%d.", cmd);
    // A receiver may delete this object from here on, so no member is used after a signal.
    switch (cmd) {
    case VLM_WS_MSGID_PARTNER_LOGIN:
        qDebug("VelmoraLogin,handleWebServiceRet,partner login rentun ok...");
        emit signalPartnerLoginDone();
        break;
    case VLM_WS_MSGID_USER_LOGIN:
        finishUserLogin(h_handle, e_ret);
        break;
    case VLM_WS_MSGID_ASSOCIATE_DEVICE:
        qDebug("VelmoraLogin,handleWebServiceRet,associateDevice return,call userLoginWithDeviceID...");
        userLoginWithDeviceID();
        break;
    case VLM_WS_MSGID_GET_STATION_LIST:
        emit signalGetStationListDone(handle.take()); // the receiver owns it
        return;
    default:
        break;
    }
    logRelease();
}

void VelmoraLogin::finishUserLogin(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret)
{
    qDebug("VelmoraLogin,handleWebServiceRet,user login return ok...");
    if (!m_isDeviceLogin) {
        qDebug("VelmoraLogin,handleWebServiceRet,associateDevice...");
        {
            VelmoraSettings settings = deviceSettings();
            const QString slot = settings.getPassword(m_account.userName); // empty for an unknown account too
            if (!slot.isEmpty())
                settings.setLastLogin(m_account.userName);
            else
                settings.setLastLogin(m_account.userName, settings.getFreeSlot());
        }
        m_isAssociateStarted = true;
        associateDevice();
        return;
    }
    qDebug("VelmoraLogin,handleWebServiceRet,login with deviceId!");
    if (e_ret == VLM_WS_ERR_DEVICE_NOT_FOUND) {
        m_isDeviceLogin = false;
        qDebug("VelmoraLogin,handleWebServiceRet,login with deviceId VLM_WS_ERR_DEVICE_NOT_FOUND!");
        emit signalLoginWithDeviceIDDoneError();
        return;
    }
    const QString userName = wsreply::loginUserName(h_handle);
    qDebug("VelmoraLogin,handleWebServiceRet,set username with deviceId!");
    if (!userName.isEmpty()) { // a reply without a name must not cost the last login its slot
        VelmoraSettings settings = deviceSettings();
        if (!m_activationSlot.isEmpty())
            settings.setLastLogin(QString(), m_activationSlot);
        settings.addAccount(userName, settings.getLastLogin().password);
        settings.setLastLogin(userName);
    }
    qDebug("VelmoraLogin,handleWebServiceRet,login with device id,get station list...");
    getStationList();
}
