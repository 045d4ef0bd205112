#include "netcommon/httpdownload.h"

#include "mediamodule.h"
#include "playbackstatistics.h"

#include <QUrl>

namespace netcommon {

namespace {
QString lastPicture;   // GUI thread
QString requestedPath; // of the picture that was requested last; GUI thread
} // namespace

QString statistics::coverFile()
{
    return lastPicture;
}

QString statistics::coverPath()
{
    return lastPicture.isEmpty() ? QString() : requestedPath;
}

struct Q_DECL_HIDDEN HttpDownload::Private {
    std::unique_ptr<PictureDownload> download;
};

HttpDownload::HttpDownload(QObject *parent)
    : QObject(parent)
    , d(new Private{mediaModule().makePictureDownload(this)})
{
    connect(this, &HttpDownload::signalDownloadResult, this,
            [](int result, const QString &file) { lastPicture = result >= 0 ? file : QString(); });
}

HttpDownload::~HttpDownload()
{
    delete d;
}

void HttpDownload::setDownloadFolder(const QString &folder)
{
    d->download->setFolder(folder);
}

void HttpDownload::resquestDownload(char *url)
{
    lastPicture.clear();
    requestedPath = QUrl::fromEncoded(QByteArray(url)).path();
    d->download->request(QByteArray(url));
}

} // namespace netcommon
