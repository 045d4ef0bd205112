#include "netcommon/httpdownload.h"

#include "mediamodule.h"

namespace netcommon {

struct Q_DECL_HIDDEN HttpDownload::Private {
    std::unique_ptr<PictureDownload> download;
};

HttpDownload::HttpDownload(QObject *parent)
    : QObject(parent)
    , d(new Private{mediaModule().makePictureDownload(this)})
{
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
    d->download->request(QByteArray(url));
}

} // namespace netcommon
