#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

// Reports of crashes and hangs, for the person who mends them.
namespace menusystem::reports {

// `velmora/reports` in the user's state folder.
QString usualFolder(const QString &stateHome, const QString &home);

// Writes the report to a new file of the folder, which is made if it is missing, and removes all reports but the newest
// ten. Folder and files are the owner's only. Returns the file's name; empty, with a reason, when it cannot be written.
QString keep(const QString &folder, const QDateTime &when, const QByteArray &report, QString *reason);

// Without what a report must not tell: values of tokens, keys (also typed ones) and passwords, what an address asks
// for, and e-mail addresses.
QByteArray withoutSecrets(const QByteArray &output);

inline constexpr int keptReports = 10;

} // namespace menusystem::reports
