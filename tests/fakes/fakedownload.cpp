#include "fakes/fakedownload.h"

#include "netcommon/httpdownload.h"

#include <QPointer>

QList<QByteArray> FakeDownload::urls;
QString FakeDownload::folder;
int FakeDownload::living = 0;

static QPointer<netcommon::HttpDownload> last;

namespace netcommon {

struct HttpDownload::Private {};

HttpDownload::HttpDownload(QObject *parent)
    : QObject(parent)
    , d(nullptr)
{
    Q_UNUSED(d);
    ++FakeDownload::living;
}

HttpDownload::~HttpDownload()
{
    --FakeDownload::living;
}

void HttpDownload::setDownloadFolder(const QString &folder)
{
    FakeDownload::folder = folder;
}

void HttpDownload::resquestDownload(char *url)
{
    FakeDownload::urls.append(QByteArray(url));
    last = this;
}

} // namespace netcommon

void FakeDownload::reset()
{
    urls.clear();
    folder.clear();
    last.clear();
}

void FakeDownload::result(int result, const QString &strInfo)
{
    emit last->signalDownloadResult(result, strInfo);
}
