#pragma once

#include <QByteArray>
#include <QString>

namespace netcommon {

// The folder that downloaded pictures are written to: opened anew for each picture, without following a link at its
// end, and only if it is ours and nobody else may write to it. Names are of our own making.
class HttpDownloadFolder {
public:
    static constexpr int MaxPictures = 64; // older ones go

    explicit HttpDownloadFolder(const QString &path);

    // Empty: it can be used. Else why not.
    QString complaint() const;
    // Writes the picture under a new name with this suffix and gives the path, or an empty one and the reason.
    QString store(const QByteArray &bytes, const QByteArray &suffix, QString *why) const;

private:
    int open(QString *why) const; // descriptor, or -1
    static void removeOld(int folder);

    QByteArray m_path; // without trailing slash: with one, a link would be followed
};

} // namespace netcommon
