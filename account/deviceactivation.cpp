#include "account/deviceactivation.h"

#include "service/devicepaths.h"
#include "service/velmorasettings.h"

#include <QCoreApplication>

#include <optional>

namespace deviceactivation {

namespace {

// The last login before the reservation. GUI thread.
std::optional<AccountRecord> &before()
{
    static std::optional<AccountRecord> record;
    return record;
}

} // namespace

QString codeLine(const QString &code)
{
    return QCoreApplication::translate("InternetRadioDlg", "Your activation code is:    ") + code;
}

QString pageLine(const QString &url)
{
    return QCoreApplication::translate("InternetRadioDlg", "Please go to    ") + url;
}

void reserveSlot()
{
    VelmoraSettings settings(device::settingsFile(), QSettings::IniFormat, nullptr);
    if (!before())
        before() = settings.getLastLogin();
    settings.setLastLogin(QString(), settings.getFreeSlot());
}

void giveSlotBack()
{
    if (!before())
        return;
    VelmoraSettings settings(device::settingsFile(), QSettings::IniFormat, nullptr);
    settings.setLastLogin(before()->userName, before()->password);
    before().reset();
}

void forgetReservation()
{
    before().reset();
}

} // namespace deviceactivation
