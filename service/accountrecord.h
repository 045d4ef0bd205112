#pragma once

#include <QString>

// An account that this device knows.
struct AccountRecord {
    QString userName;
    QString password;    // for an account linked to the device its slot digit, "0" to "4"
    QString lastStation; // token of the station played last
};
