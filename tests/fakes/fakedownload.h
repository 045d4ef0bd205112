#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

// Drives the fakes of netcommon::HttpDownload. GUI thread only. Nothing is downloaded.
class FakeDownload {
public:
    static void reset();
    static QList<QByteArray> urls;
    static QString folder; // of the newest object
    static int living;     // HttpDownload objects

    // Reported by the object that made the last request, which must live.
    static void result(int result, const QString &strInfo);
};
