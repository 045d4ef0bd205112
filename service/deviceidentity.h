#pragma once

#include <QString>

// The 12 upper-case hexadecimal digits of the first six bytes of `mac`.
QString macDigits(const char *mac);
// The digit itself when `password` is exactly "0" to "4", otherwise "9".
QString slotDigit(const QString &password);
// macDigits + "-" + slotDigit: the identity by which the service knows this device.
QString deviceIdentity(const char *mac, const QString &password);
