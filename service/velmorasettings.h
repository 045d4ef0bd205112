#pragma once

#include "service/accountrecord.h"

#include <QList>
#include <QSettings>
#include <QStringList>

// What the application remembers between runs. An object lives on the stack for one operation; its destructor flushes
// the file system. A file with damaged content is kept under another name, and an empty one is started. A file that
// cannot be opened reads as empty, stores nothing and is not changed. GUI thread; during a token renewal also the
// web-service callback's thread, with an object of its own.
class VelmoraSettings : public QSettings {
    Q_OBJECT
public:
    VelmoraSettings(const QString &fileName, QSettings::Format format, QObject *parent);
    ~VelmoraSettings() override;

    void setWelcomeCheck(const QString &value);
    QString getWelcomeCheck();
    void setLoginState(const QString &value);
    QString getLoginState();
    void setLastSlot(const QString &value);
    QString getLastSlot(); // never what the setter wrote (deliberate)
    void markSlotUsed(int index);
    QString getLastLoginName();
    AccountRecord getLastLogin();
    void setLastLogin(const QString &userName, const QString &password);
    void setLastLogin(const QString &userName); // with the stored password of that account
    QString getPassword(const QString &userName) const;
    QStringList getAllUserName() const;
    QStringList getAllPassword() const;
    QString getFreeSlot() const; // "0" to "4", "9" when there is none
    void addAccount(const QString &userName, const QString &password);
    void deleteAccount(const QString &userName);
    void setStationInfo(const QString &userName, const QString &stationToken);
    QString getStationInfo(); // last station of the last login
    void setDeviceAccount(const QString &userName);
    QString getDeviceAccount();

private:
    void rewriteAccounts(bool withLastStation);

    QList<AccountRecord> m_accounts; // in file order
};

// The settings of this device, for one operation: `VelmoraSettings settings = deviceSettings();`. The file is opened
// anew with every call.
[[nodiscard]] VelmoraSettings deviceSettings();
