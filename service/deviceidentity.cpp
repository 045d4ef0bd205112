#include "service/deviceidentity.h"

#include <QByteArray>

QString macDigits(const char *mac)
{
    return QString::fromLatin1(QByteArray(mac, 6).toHex().toUpper());
}

QString slotDigit(const QString &password)
{
    const bool isSlot =
        password.size() == 1 && password.at(0) >= QLatin1Char('0') && password.at(0) <= QLatin1Char('4');
    return isSlot ? password : QStringLiteral("9");
}

QString deviceIdentity(const char *mac, const QString &password)
{
    return macDigits(mac) + QLatin1Char('-') + slotDigit(password);
}
