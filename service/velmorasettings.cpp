#include "service/velmorasettings.h"

#include "service/devicepaths.h"
#include "service/settingsfile.h"

#include <QDebug>

#include <algorithm>
#include <limits>

// Groups of one record are written and read as arrays without an index (deliberate): the file has always had their
// "size=0".

namespace {

constexpr int slotCount = 5;

// The file that QSettings opens. A damaged one is moved aside first.
QString prepared(const QString &fileName, QSettings::Format format)
{
    if (format != QSettings::IniFormat)
        return fileName;
    const settingsfile::Prepared file = settingsfile::prepare(fileName);
    if (!file.aside.isEmpty())
        qWarning("VelmoraSettings,new,damaged file kept as %s", qUtf8Printable(file.aside));
    if (file.isReadable)
        return fileName;
    qWarning("VelmoraSettings,new,%s cannot be opened,nothing is read or stored", qUtf8Printable(fileName));
    // QSettings treats an unreadable file as empty and would overwrite it. A path below a plain file can be neither
    // read nor written.
    return fileName + QStringLiteral("/unreadable");
}

// Begins to read the array and returns the indexes, from 0, of the entries that the file holds. The stored size may be
// damaged; a valid one only limits the indexes.
QList<int> beginHeldArray(QSettings &settings, const QString &group)
{
    settings.beginReadArray(group);
    bool isNumber = false;
    const int claimed = settings.value(QStringLiteral("size")).toString().toInt(&isNumber);
    const int size = isNumber && claimed >= 0 ? claimed : std::numeric_limits<int>::max();
    QList<int> indexes;
    const QStringList entries = settings.childGroups();
    for (const QString &entry : entries) {
        const int number = entry.toInt(); // from 1
        if (number >= 1 && number <= size)
            indexes.append(number - 1);
    }
    std::sort(indexes.begin(), indexes.end());
    return indexes;
}

QString readGroup(QSettings &settings, const char *group, const char *key)
{
    settings.beginReadArray(QLatin1String(group));
    QString value = settings.value(QLatin1String(key)).toString();
    settings.endArray();
    return value;
}

void writeGroup(QSettings &settings, const char *group, const char *key, const QString &value)
{
    settings.beginWriteArray(QLatin1String(group));
    settings.setValue(QLatin1String(key), value);
    settings.endArray();
}

} // namespace

VelmoraSettings::VelmoraSettings(const QString &fileName, QSettings::Format format, QObject *parent)
    : QSettings(prepared(fileName, format), format, parent)
{
    qDebug("new VelmoraSettings\n");
    const QList<int> accounts = beginHeldArray(*this, QStringLiteral("Account"));
    qDebug("VelmoraSettings,new.size=%d..", static_cast<int>(accounts.size()));
    for (const int index : accounts) {
        setArrayIndex(index);
        const AccountRecord account{value(QStringLiteral("userName")).toString(),
                                    value(QStringLiteral("password")).toString(),
                                    value(QStringLiteral("laststation")).toString()};
        qDebug("VelmoraSettings,new.add userName=%s", qUtf8Printable(account.userName));
        m_accounts.append(account);
    }
    endArray();

    const bool hasSlots = !beginHeldArray(*this, QStringLiteral("Slot")).isEmpty();
    endArray();
    if (!hasSlots) {
        beginWriteArray(QStringLiteral("Slot"));
        for (int i = 0; i < slotCount; ++i) {
            setArrayIndex(i);
            setValue(QStringLiteral("slotValue"), QStringLiteral("0"));
        }
        endArray();
    }
}

VelmoraSettings::~VelmoraSettings()
{
    device::syncFiles(); // before QSettings has written (deliberate)
    qDebug("del VelmoraSettings..\n");
}

void VelmoraSettings::setWelcomeCheck(const QString &value)
{
    writeGroup(*this, "Welcome", "isCheck", value);
}

QString VelmoraSettings::getWelcomeCheck()
{
    return readGroup(*this, "Welcome", "isCheck");
}

void VelmoraSettings::setLoginState(const QString &value)
{
    writeGroup(*this, "LoginState", "stateValue", value);
}

QString VelmoraSettings::getLoginState()
{
    return readGroup(*this, "LoginState", "stateValue");
}

void VelmoraSettings::setLastSlot(const QString &value)
{
    beginWriteArray(QStringLiteral("LastSlot"));
    setArrayIndex(0);
    setValue(QStringLiteral("slotValue"), value);
    endArray();
}

// Does not read the entry that the setter writes (deliberate).
QString VelmoraSettings::getLastSlot()
{
    return readGroup(*this, "LastSlot", "slotValue");
}

void VelmoraSettings::markSlotUsed(int index)
{
    if (index < 0 || index >= slotCount)
        return;
    beginWriteArray(QStringLiteral("Slot"), slotCount); // without the size the array would end after `index`
    setArrayIndex(index);
    setValue(QStringLiteral("slotValue"), QStringLiteral("1"));
    endArray();
}

QString VelmoraSettings::getLastLoginName()
{
    QString userName = readGroup(*this, "LastLogin", "userName");
    qDebug("VelmoraSettings,getLastLoginName,userName=%s", qUtf8Printable(userName));
    return userName;
}

AccountRecord VelmoraSettings::getLastLogin()
{
    AccountRecord account;
    account.userName = readGroup(*this, "LastLogin", "userName");
    account.password = readGroup(*this, "LastLogin", "password");
    qDebug("VelmoraSettings,getLastLogin,password=");
    return account;
}

void VelmoraSettings::setLastLogin(const QString &userName, const QString &password)
{
    beginWriteArray(QStringLiteral("LastLogin"));
    setValue(QStringLiteral("userName"), userName);
    setValue(QStringLiteral("password"), password);
    endArray();
}

void VelmoraSettings::setLastLogin(const QString &userName)
{
    setLastLogin(userName, getPassword(userName));
}

QString VelmoraSettings::getPassword(const QString &userName) const
{
    qDebug("VelmoraSettings,getPassword,password=");
    for (const AccountRecord &account : m_accounts) {
        if (account.userName == userName)
            return account.password;
    }
    return QString();
}

QStringList VelmoraSettings::getAllUserName() const
{
    qDebug("VelmoraSettings,getAllUserName,size=%d.", static_cast<int>(m_accounts.size()));
    QStringList names;
    for (const AccountRecord &account : m_accounts)
        names.append(account.userName);
    return names;
}

QStringList VelmoraSettings::getAllPassword() const
{
    qDebug("VelmoraSettings,getAllUserName,size=%d.", static_cast<int>(m_accounts.size())); // same text (deliberate)
    QStringList passwords;
    for (const AccountRecord &account : m_accounts)
        passwords.append(account.password);
    return passwords;
}

QString VelmoraSettings::getFreeSlot() const
{
    if (m_accounts.size() < slotCount) {
        const QStringList used = getAllPassword();
        for (int slot = 0; slot < slotCount; ++slot) {
            if (!used.contains(QString::number(slot)))
                return QString::number(slot);
        }
    }
    return QStringLiteral("9");
}

void VelmoraSettings::addAccount(const QString &userName, const QString &password)
{
    qDebug("VelmoraSettings addAccount,userName=%s", qUtf8Printable(userName));
    for (const AccountRecord &account : m_accounts) {
        if (account.userName == userName) {
            qDebug("VelmoraSettings,addAccount,already exist,return.");
            return;
        }
    }
    m_accounts.append({userName, password, QString()});
    rewriteAccounts(true);
}

void VelmoraSettings::deleteAccount(const QString &userName)
{
    for (int i = 0; i < m_accounts.size(); ++i) {
        if (m_accounts.at(i).userName != userName)
            continue;
        m_accounts.removeAt(i);
        rewriteAccounts(false); // the others lose their last station in the file (deliberate)
        return;
    }
}

void VelmoraSettings::setStationInfo(const QString &userName, const QString &stationToken)
{
    qDebug("+++ setStationInfo");
    for (AccountRecord &account : m_accounts) {
        if (account.userName != userName)
            continue;
        account.lastStation = stationToken;
        rewriteAccounts(true);
        return;
    }
}

QString VelmoraSettings::getStationInfo()
{
    qDebug("+++ getStationInfo");
    const QString userName = getLastLoginName();
    for (const AccountRecord &account : m_accounts) {
        if (account.userName == userName)
            return account.lastStation;
    }
    return QString();
}

void VelmoraSettings::setDeviceAccount(const QString &userName)
{
    qDebug("GetDeviceAccount,deviceaccount=%s", qUtf8Printable(userName)); // "Get" is deliberate
    writeGroup(*this, "deviceaccount", "username", userName);
}

QString VelmoraSettings::getDeviceAccount()
{
    return readGroup(*this, "deviceaccount", "username");
}

void VelmoraSettings::rewriteAccounts(bool withLastStation)
{
    remove(QStringLiteral("Account"));
    beginWriteArray(QStringLiteral("Account"));
    for (int i = 0; i < m_accounts.size(); ++i) {
        setArrayIndex(i);
        setValue(QStringLiteral("userName"), m_accounts.at(i).userName);
        setValue(QStringLiteral("password"), m_accounts.at(i).password);
        if (withLastStation)
            setValue(QStringLiteral("laststation"), m_accounts.at(i).lastStation);
    }
    endArray();
}

VelmoraSettings deviceSettings()
{
    return {device::settingsFile(), QSettings::IniFormat, nullptr};
}
