#pragma once

#include <QString>

// Every fixed path of the device and every shell command, in one place. The product's values are linked into `velmora`
// only (devicepaths_product.cpp); tests link a twin that lives under a private root and records the commands.
namespace device {

QString settingsFile(); // accounts, last login, last stations
QString scratchDir();   // downloaded pictures; without a trailing slash
QString loginFile();    // e-mail and password on a removable medium

// Each runs one shell command through system() and returns its result.
int makeScratchDir();
int removeScratchDir();
int syncFiles(); // flushes the file system in the background

} // namespace device
