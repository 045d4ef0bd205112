#pragma once

#include "netcommon/netcommon_global.h"

#include <QObject>
#include <QString>

namespace netcommon {

// Downloads pictures, one at a time: a new request replaces the current one, which then reports nothing.
// GUI thread only. The creator owns it.
class NETCOMMON_EXPORT HttpDownload : public QObject {
    Q_OBJECT
public:
    explicit HttpDownload(QObject *parent = nullptr);
    ~HttpDownload() override;

    // The folder that downloads are written to. It is opened without following links; while it is missing or belongs
    // to somebody else every download fails.
    void setDownloadFolder(const QString &folder);
    // http and https only; at most 8 MiB; pictures only. The text is copied.
    void resquestDownload(char *url);

signals:
    // result >= 0: strInfo is the local file. Negative: nothing was written, strInfo says why: -1 the address, or what
    // it leads to, is neither http nor https; -2 the folder cannot be used or written to; -3 the transfer failed; -4
    // more than 8 MiB; -5 not a picture (PNG, JPEG, GIF or WebP of at most 4096 x 4096 pixels), or a damaged one.
    void signalDownloadResult(int result, QString strInfo);

private:
    struct Private;
    Private *d;
};

} // namespace netcommon
