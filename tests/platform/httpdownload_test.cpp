// Album pictures: what is fetched, what is refused, and where it may be written.

#include "mediaserver.h"

#include "netcommon/httpdownload.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QtTest>

#include <sys/stat.h>

namespace {

QByteArray picture(const char *format, QSize size = {300, 300})
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, format))
        return {};
    return bytes;
}

// A PNG's head that promises this size; nothing of it need be there.
QByteArray promisingPng(quint32 width, quint32 height)
{
    QByteArray bytes = picture("PNG");
    qToBigEndian(width, bytes.data() + 16);
    qToBigEndian(height, bytes.data() + 20);
    // Chunk checksum over type and data.
    quint32 crc = 0xffffffff;
    for (int i = 12; i < 29; ++i) {
        crc ^= uchar(bytes[i]);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (crc & 1 ? 0xedb88320 : 0);
    }
    qToBigEndian(~crc, bytes.data() + 29);
    return bytes;
}

const QByteArray gif = QByteArray::fromHex("47494638396101000100800000000000ffffff2c00000000010001000002024401003b");

} // namespace

class HttpDownloadTest : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        m_download = std::make_unique<netcommon::HttpDownload>();
        m_folder = std::make_unique<QTemporaryDir>();
        m_download->setDownloadFolder(m_folder->path() + '/');
    }

    void picturesAreStoredUnderGeneratedNames_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<bool>("redirect");
        QTest::newRow("PNG") << picture("PNG") << ".png" << false;
        QTest::newRow("JPEG") << picture("JPEG") << ".jpg" << false;
        QTest::newRow("GIF") << gif << ".gif" << false;
        QTest::newRow("the largest") << picture("PNG", {4096, 4096}) << ".png" << false;
        QTest::newRow("elsewhere") << picture("PNG") << ".png" << true;
        if (QImageReader::supportedImageFormats().contains("webp"))
            QTest::newRow("WebP") << picture("WEBP") << ".webp" << false;
    }

    void picturesAreStoredUnderGeneratedNames()
    {
        QFETCH(QByteArray, body);
        QFETCH(QString, suffix);
        QFETCH(bool, redirect);
        const QByteArray path = "/art/cover;rm.sh"; // neither path nor type is trusted
        m_server.serve(path, {.body = body, .type = "application/x-sh"});
        m_server.serve("/elsewhere", {.status = 301, .location = path});
        const QVariantList said = answer(m_server.url(redirect ? "/elsewhere" : path));
        QCOMPARE(said.value(0).toInt(), 0);
        const QString name = QFileInfo(said.value(1).toString()).fileName();
        QCOMPARE(files(), QStringList{name});
        QVERIFY2(QRegularExpression("^picture-[0-9a-f]{32}\\" + suffix + '$').match(name).hasMatch(), qPrintable(name));
        QFile file(said.value(1).toString());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.readAll() == body);
        QCOMPARE(file.permissions() & 0x77, QFile::Permissions());
    }

    void aRefusedDownloadLeavesNoFileBehind()
    {
        const auto refused = [this](const char *name, const QByteArray &url, int result) {
            const QVariantList said = answer(url);
            QVERIFY2(said.value(0).toInt() == result, qPrintable(name + (": " + said.value(0).toString())));
            QVERIFY2(!said.value(1).toString().isEmpty() && files().isEmpty(), name);
        };
        const auto served = [&](const char *name, const MediaFile &file, int result) {
            m_server.serve("/bad", file);
            refused(name, m_server.url("/bad"), result);
        };
        refused("a local file", "file:///etc/hostname", -1);
        refused("nonsense", "not an address", -1);
        refused("nobody there", MediaServer::refusedUrl(), -3);
        served("leads to a local file", {.status = 302, .location = "file:///etc/hostname"}, -1);
        served("leads in circles", {.status = 302, .location = "/bad"}, -1);
        served("not found", {.body = picture("PNG"), .status = 404}, -3);
        served("cut off", {.body = picture("PNG"), .cutAt = QList<qint64>(9, 100)}, -3);
        served("longer than allowed, as announced", {.body = "x", .announcedExtra = 9000000}, -4);
        served("longer than allowed, unannounced",
               {.body = QByteArray(8 * 1024 * 1024 + 1, 'x'), .length = MediaFile::Length::Chunked}, -4);
        served("a page called a picture", {.body = "<html>no</html>", .type = "image/png"}, -5);
        served("a drawing that can contain anything", {.body = "<svg xmlns='http://www.w3.org/2000/svg'/>"}, -5);
        served("empty", {}, -5);
        served("half a picture", {.body = picture("PNG").left(150)}, -5);
        served("a picture that would fill the memory", {.body = promisingPng(60000, 60000)}, -5);
        served("one pixel too wide", {.body = picture("PNG", {4097, 1})}, -5);
    }

    void unsafeFoldersAreRefused()
    {
        const QString real = m_folder->filePath("real"), link = m_folder->filePath("link");
        QVERIFY(QDir().mkdir(real));
        QVERIFY(QFile::link(real, link));
        QFile plain(m_folder->filePath("plain"));
        QVERIFY(plain.open(QIODevice::WriteOnly));
        m_server.serve("/cover", {.body = picture("PNG")});
        const auto isRefused = [&](const QString &folder) {
            m_download->setDownloadFolder(folder);
            return answer(m_server.url("/cover")).value(0).toInt() == -2;
        };
        QVERIFY2(isRefused(m_folder->filePath("nowhere")), "missing");
        QVERIFY2(isRefused(link), "a link");
        QVERIFY2(isRefused(link + "//"), "a link with a slash");
        QVERIFY2(isRefused(plain.fileName()), "a file");
        QVERIFY2(isRefused({}), "unset");
        QCOMPARE(::chmod(qPrintable(real), 0777), 0);
        QVERIFY2(isRefused(real), "writable for all");
        QCOMPARE(::chmod(qPrintable(real), 0700), 0);
        QVERIFY2(::geteuid() != 0 || (::chown(qPrintable(real), 12345, 12345) == 0 && isRefused(real)),
                 "somebody else's");
        QVERIFY(QDir(real).isEmpty());
        m_download->setDownloadFolder(m_folder->path()); // and it works again in a good one
        QCOMPARE(answer(m_server.url("/cover")).value(0).toInt(), 0);
    }

    void aNewRequestReplacesTheOldOne()
    {
        const QByteArray slow = picture("PNG", {200, 200}), quick = picture("PNG", {100, 100});
        m_server.serve("/slow", {.body = slow, .bytesPerSecond = 500});
        m_server.serve("/quick", {.body = quick});
        QSignalSpy spy(m_download.get(), &netcommon::HttpDownload::signalDownloadResult);
        QByteArray first = m_server.url("/slow"), second = m_server.url("/quick");
        m_download->resquestDownload(first.data());
        QTRY_VERIFY(!m_server.requests("/slow").isEmpty());
        m_download->resquestDownload(second.data());
        QTRY_COMPARE(spy.size(), 1);
        QCOMPARE(QImage(spy.at(0).at(1).toString()).width(), 100);
        QTRY_COMPARE(m_server.openConnections(), 0); // the slow one was given up
        QCOMPARE(spy.size(), 1);
        QCOMPARE(files().size(), 1);
    }

    void deletedWhileDownloadingIsHarmless()
    {
        m_server.serve("/stalled", {.body = picture("PNG"), .cutAt = {50}, .cut = MediaFile::Cut::Stall});
        QByteArray url = m_server.url("/stalled");
        m_download->resquestDownload(url.data());
        QTRY_COMPARE(m_server.openConnections(), 1);
        m_download.reset();
        QTRY_COMPARE(m_server.openConnections(), 0);
        QCOMPARE(files(), QStringList());
    }

    void onlyTheNewestPicturesStay()
    {
        for (int i = 0; i < 70; ++i) {
            QFile old(m_folder->filePath(QStringLiteral("picture-%1.png").arg(i)));
            QVERIFY(old.open(QIODevice::WriteOnly));
            QVERIFY(old.setFileTime(QDateTime::currentDateTime().addSecs(i - 1000), QFileDevice::FileModificationTime));
        }
        QFile foreign(m_folder->filePath("somebody's picture.png"));
        QVERIFY(foreign.open(QIODevice::WriteOnly));
        QVERIFY(foreign.setFileTime(QDateTime::currentDateTime().addDays(-9), QFileDevice::FileModificationTime));
        m_server.serve("/cover", {.body = picture("PNG")});
        const QVariantList said = answer(m_server.url("/cover"));
        QCOMPARE(said.value(0).toInt(), 0);
        QCOMPARE(files().size(), 65); // 64 of ours and the foreign one
        QVERIFY(QFile::exists(said.value(1).toString()));
        QVERIFY(foreign.exists());
        QVERIFY(!QFile::exists(m_folder->filePath("picture-6.png")));
        QVERIFY(QFile::exists(m_folder->filePath("picture-7.png")));
    }

private:
    // The answer to one request.
    QVariantList answer(const QByteArray &url)
    {
        QSignalSpy spy(m_download.get(), &netcommon::HttpDownload::signalDownloadResult);
        QByteArray text = url;
        m_download->resquestDownload(text.data());
        text.fill('x');
        if (!spy.wait(8000) || spy.size() != 1)
            return {-1000, QString()};
        return spy.takeFirst();
    }
    QStringList files() const { return QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden); }

    MediaServer m_server;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<netcommon::HttpDownload> m_download;
};

QTEST_GUILESS_MAIN(HttpDownloadTest)
#include "httpdownload_test.moc"
