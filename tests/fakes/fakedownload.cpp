#include "fakes/fakedownload.h"

#include "netcommon/httpdownload.h"

#include <QPointer>

namespace {

struct State {
    QList<QByteArray> urls;
    QString folder;
    QPointer<netcommon::HttpDownload> last;
};

State &state()
{
    static State instance;
    return instance;
}

int livingObjects = 0;

} // namespace

namespace netcommon {

struct HttpDownload::Private {};

HttpDownload::HttpDownload(QObject *parent)
    : QObject(parent)
    , d(nullptr)
{
    Q_UNUSED(d);
    ++livingObjects;
}

HttpDownload::~HttpDownload()
{
    --livingObjects;
}

void HttpDownload::setDownloadFolder(const QString &folder)
{
    state().folder = folder;
}

void HttpDownload::resquestDownload(char *url)
{
    state().urls.append(QByteArray(url));
    state().last = this;
}

} // namespace netcommon

void FakeDownload::reset()
{
    state() = State();
}
QList<QByteArray> FakeDownload::urls()
{
    return state().urls;
}
QString FakeDownload::folder()
{
    return state().folder;
}
int FakeDownload::living()
{
    return livingObjects;
}

bool FakeDownload::result(int result, const QString &strInfo)
{
    if (!state().last)
        return false;
    emit state().last->signalDownloadResult(result, strInfo);
    return true;
}
