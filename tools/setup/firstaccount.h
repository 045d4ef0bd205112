#pragma once

#include <QString>

// Links this device with an account of the service and writes the settings of a device that was set up: welcome
// passed, one account in slot 0, last login. Talks to the service as the radio does: partner login, user login,
// association. Blocks; returns an empty text, or what went wrong in words for a person.
QString setUpFirstAccount(const QString &settingsFile, const QString &userName, const QString &password);
