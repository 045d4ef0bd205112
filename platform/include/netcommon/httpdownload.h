#pragma once

#include "netcommon/netcommon_global.h"

#include <QObject>
#include <QString>

namespace netcommon {

// Downloads pictures, one at a time: a new request replaces the one under way, which then reports nothing.
// GUI thread only. Owned by whoever creates it.
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
    // result >= 0: strInfo is the local file. Negative: nothing was written, strInfo says why.
    void signalDownloadResult(int result, QString strInfo);

private:
    struct Private;
    Private *d;
};

} // namespace netcommon
