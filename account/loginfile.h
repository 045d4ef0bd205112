#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// The login file on a removable medium: two lines, e-mail and password.
struct LoginFile {
    QByteArray email;
    QByteArray password;

    // Returns nothing when the file cannot be opened. Each line is read with a 32-byte buffer: 31 characters, line end
    // included; the rest of a longer line is the next value. A carriage return in the last or last-but-one position
    // ends the value; a bare line feed stays in it (deliberate: the file has CR LF line ends).
    static std::optional<LoginFile> read(const QString &path);
    static QByteArray value(const QByteArray &line);
};
