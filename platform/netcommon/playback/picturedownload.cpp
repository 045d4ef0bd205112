#include "picturedownload.h"

#include "httpaddress.h"
#include "httpdownloadfolder.h"

#include "netcommon/httpdownload.h"

#include <QBuffer>
#include <QDebug>
#include <QImageReader>
#include <QNetworkAccessManager>
#include <QNetworkReply>

#include <utility>

namespace netcommon {

namespace {

// The results of signalDownloadResult, as the header lists them.
constexpr int downloaded = 0;
constexpr int addressRefused = -1;
constexpr int folderUnusable = -2;
constexpr int transferFailed = -3;
constexpr int tooLarge = -4;
constexpr int notAPicture = -5;

constexpr qint64 maxBytes = 8 * 1024 * 1024;
constexpr int maxSide = 4096; // pixels
constexpr int silenceMs = 15000;

struct Kind {
    const char *format; // as QImageReader names it
    const char *suffix;
};
constexpr Kind kinds[] = {{"png", ".png"}, {"jpeg", ".jpg"}, {"gif", ".gif"}, {"webp", ".webp"}};

// The suffix for the format found in the bytes, whatever the server calls it. Empty with a reason when they are no
// picture that the radio shows.
QByteArray pictureSuffix(QByteArray &bytes, QString *why)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    const QByteArray format = reader.format();
    for (const Kind &kind : kinds) {
        if (format != kind.format)
            continue;
        const QSize size = reader.size();
        if (!size.isValid() || size.isEmpty() || size.width() > maxSide || size.height() > maxSide) {
            *why = QStringLiteral("picture of %1 x %2 pixels").arg(size.width()).arg(size.height());
            return {};
        }
        if (reader.read().isNull()) {
            *why = QStringLiteral("damaged picture: %1").arg(reader.errorString());
            return {};
        }
        return kind.suffix;
    }
    *why = QStringLiteral("not a picture");
    return {};
}

class HttpPictureDownload : public PictureDownload {
public:
    explicit HttpPictureDownload(HttpDownload *owner)
        : q(owner)
    {
    }
    ~HttpPictureDownload() override { cancel(); }

    void setFolder(const QString &path) override { folder = HttpDownloadFolder(path); }
    void request(const QByteArray &url) override;

private:
    void cancel();
    void open(const QUrl &address);
    void read();
    void finished();
    void end(int result, const QString &info);

    HttpDownload *const q;
    HttpDownloadFolder folder{QString()};
    QNetworkAccessManager *network = nullptr; // made for the first request
    QNetworkReply *reply = nullptr;           // null: nothing under way
    QByteArray bytes;
    int redirects = 0;
    quint64 newest = 0; // number of the newest request
};

void HttpPictureDownload::request(const QByteArray &url)
{
    cancel();
    const QUrl address = httpaddress::parse(url);
    const QString complaint = folder.complaint();
    if (!address.isValid())
        end(addressRefused, QStringLiteral("neither http nor https"));
    else if (!complaint.isEmpty())
        end(folderUnusable, complaint);
    else
        open(address);
}

void HttpPictureDownload::cancel()
{
    ++newest;
    redirects = 0;
    bytes.clear();
    if (auto *const old = std::exchange(reply, nullptr))
        httpaddress::drop(old, q);
}

void HttpPictureDownload::open(const QUrl &address)
{
    if (!network)
        network = new QNetworkAccessManager(q);
    QNetworkRequest wanted = httpaddress::request(address);
    wanted.setTransferTimeout(silenceMs);
    reply = network->get(wanted);
    reply->setReadBufferSize(256 * 1024);
    QObject::connect(reply, &QNetworkReply::readyRead, q, [this] { read(); });
    QObject::connect(reply, &QNetworkReply::finished, q, [this] { finished(); });
}

void HttpPictureDownload::read()
{
    bytes += reply->readAll();
    const qint64 announced = reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
    if (qMax<qint64>(bytes.size(), announced) > maxBytes)
        end(tooLarge, QStringLiteral("more than %1 bytes").arg(maxBytes));
}

void HttpPictureDownload::finished()
{
    read();
    if (!reply)
        return;
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (httpaddress::isRedirect(status)) {
        const QUrl to = httpaddress::redirected(reply->url(), reply->rawHeader("Location"));
        const int hops = redirects + 1;
        if (!to.isValid() || hops > httpaddress::maxRedirects) {
            end(addressRefused, QStringLiteral("leads elsewhere than to http or https"));
            return;
        }
        cancel();
        redirects = hops;
        open(to);
        return;
    }
    if (reply->error() != QNetworkReply::NoError || status != 200) {
        end(transferFailed, status >= 300 ? QStringLiteral("status %1").arg(status) : reply->errorString());
        return;
    }
    const QVariant announced = reply->header(QNetworkRequest::ContentLengthHeader);
    if (announced.isValid() && announced.toLongLong() != bytes.size()) { // Qt does not always call this an error
        end(transferFailed, QStringLiteral("cut off"));
        return;
    }
    QString why;
    const QByteArray suffix = pictureSuffix(bytes, &why);
    if (suffix.isEmpty()) {
        end(notAPicture, why);
        return;
    }
    const QString file = folder.store(bytes, suffix, &why);
    end(file.isEmpty() ? folderUnusable : downloaded, file.isEmpty() ? why : file);
}

// Queued: no result is reported before resquestDownload() has returned, and none of a replaced request.
void HttpPictureDownload::end(int result, const QString &info)
{
    cancel();
    if (result < 0)
        qDebug("HttpDownload,download,result=%d,%s.", result, qUtf8Printable(info));
    QMetaObject::invokeMethod(
        q,
        [this, result, info, number = newest] {
            if (number == newest)
                emit q->signalDownloadResult(result, info);
        },
        Qt::QueuedConnection);
}

} // namespace

std::unique_ptr<PictureDownload> makePictureDownload(HttpDownload *owner)
{
    return std::make_unique<HttpPictureDownload>(owner);
}

} // namespace netcommon
