#pragma once

#include <QByteArray>
#include <QString>

namespace netcommon {

// The folder that downloaded pictures are written to. It is opened for each picture, without following a symbolic link,
// and used only if this user owns it and nobody else may write to it. The file names are random.
class HttpDownloadFolder {
public:
    static constexpr int maxPictures = 64; // older ones go

    explicit HttpDownloadFolder(const QString &path);

    // Why the folder cannot be used; empty if it can.
    QString complaint() const;
    // Writes the picture to a new file with this suffix. Returns its path, or an empty one with the reason.
    QString store(const QByteArray &bytes, const QByteArray &suffix, QString *why) const;

private:
    int open(QString *why) const; // descriptor, or -1
    static void removeOld(int folder);

    QByteArray m_path; // without trailing slash: with one, a link would be followed
};

} // namespace netcommon
