// The fetcher against a server that misbehaves: every byte arrives once and in order, or the failure is told.

#include "mediaserver.h"

#include "platform/netcommon/fetcher.h"

#include <QtTest>

using namespace netcommon;

namespace {

class Collector : public FetchSink {
public:
    bool wanted() const override { return open; }
    void push(const QByteArray &part) override { bytes += part; }
    void complete() override { ++completes; }
    void failed() override { ++failures; }
    bool over() const { return completes + failures > 0; }

    bool open = true;
    QByteArray bytes;
    int completes = 0;
    int failures = 0;
};

QByteArray noise(qsizetype size)
{
    QByteArray bytes;
    for (quint32 i = 0, x = 1; i < size; ++i, x = x * 1664525 + 1013904223)
        bytes.append(char(x >> 24));
    return bytes;
}

constexpr FetchLimits Quick{.idleMs = 300, .firstAttempts = 2, .firstRetryMs = 20, .longestRetryMs = 80};

} // namespace

class PlaybackFetcherTest : public QObject {
    Q_OBJECT
private slots:
    void everyByteArrivesOnce_data()
    {
        QTest::addColumn<MediaFile>("file");
        QTest::addColumn<int>("requests"); // one more is allowed: after a reset Qt may ask again by itself
        const QByteArray body = noise(700000);
        const auto row = [](const char *name, const MediaFile &file, int requests) {
            QTest::newRow(name) << file << requests;
        };
        row("in one go", {.body = body}, 1);
        row("chunked", {.body = body, .length = MediaFile::Chunked}, 2);
        row("chunked without ranges", {.body = body, .length = MediaFile::Chunked, .ranges = false}, 1);
        row("length unknown", {.body = body, .length = MediaFile::Unknown}, 2);
        row("length unknown, closed early",
            {.body = body, .length = MediaFile::Unknown, .cutAt = {9001}, .cut = MediaFile::Close}, 2);
        row("reset twice", {.body = body, .cutAt = {100000, 400001}}, 3);
        row("closed twice", {.body = body, .cutAt = {100000, 400001}, .cut = MediaFile::Close}, 3);
        row("closed in a chunked body",
            {.body = body, .length = MediaFile::Chunked, .cutAt = {9001}, .cut = MediaFile::Close}, 2);
        row("stalled", {.body = body, .cutAt = {200000}, .cut = MediaFile::Stall}, 2);
        row("reset without ranges", {.body = body, .ranges = false, .cutAt = {300000, 500000}}, 3);
        row("reset before the first byte", {.body = body, .cutAt = {0}}, 2);
        row("with a tag", {.body = body, .etag = "\"v1\"", .cutAt = {5000}}, 2);
    }

    void everyByteArrivesOnce()
    {
        QFETCH(MediaFile, file);
        QFETCH(int, requests);
        const QByteArray path = "/" + QByteArray(QTest::currentDataTag()).replace(' ', '-');
        m_server.serve(path, file);
        Fetcher fetcher(Quick);
        const auto sink = std::make_shared<Collector>();
        fetcher.start(QUrl(QString::fromLatin1(m_server.url(path))), sink);
        QTRY_VERIFY(sink->over());
        QCOMPARE(sink->failures, 0);
        QCOMPARE(sink->completes, 1);
        QVERIFY(sink->bytes == file.body);
        const auto asked = m_server.requests(path);
        QVERIFY2(asked.size() >= requests && asked.size() <= requests + 1, qPrintable(QString::number(asked.size())));
        for (const MediaRequest &request : asked)
            QCOMPARE(request.headers.value("accept-encoding"), QByteArray("identity"));
        if (!file.etag.isEmpty())
            QCOMPARE(asked.last().headers.value("if-range"), file.etag);
    }

    void whatCannotBeHadIsAFailure_data()
    {
        QTest::addColumn<MediaFile>("file");
        QTest::addColumn<int>("requests");
        QTest::newRow("not found") << MediaFile{.body = "no", .status = 404} << 1;
        QTest::newRow("server's trouble") << MediaFile{.body = "no", .status = 503} << 2;
        QTest::newRow("empty") << MediaFile{} << 1;
        QTest::newRow("never answers") << MediaFile{.silent = true} << 2;
        QTest::newRow("leads to a file") << MediaFile{.status = 302, .location = "file:///etc/hostname"} << 1;
        QTest::newRow("leads in circles") << MediaFile{.status = 302, .location = "/leads-in-circles"} << 11;
    }

    void whatCannotBeHadIsAFailure()
    {
        QFETCH(MediaFile, file);
        QFETCH(int, requests);
        const QByteArray path = "/" + QByteArray(QTest::currentDataTag()).replace(' ', '-');
        m_server.serve(path, file);
        Fetcher fetcher(Quick);
        const auto sink = std::make_shared<Collector>();
        fetcher.start(QUrl(QString::fromLatin1(m_server.url(path))), sink);
        QTRY_VERIFY(sink->over());
        QCOMPARE(sink->failures, 1);
        QCOMPARE(sink->completes, 0);
        QVERIFY(sink->bytes.isEmpty());
        QCOMPARE(m_server.requests(path).size(), requests);
    }

    void aSinkThatIsFullIsNotReadFor()
    {
        const QByteArray body = noise(20000000);
        m_server.serve("/full", {.body = body});
        Fetcher fetcher(Quick);
        const auto sink = std::make_shared<Collector>();
        sink->open = false;
        fetcher.start(QUrl(QString::fromLatin1(m_server.url("/full"))), sink);
        QTRY_COMPARE(m_server.requests("/full").size(), 1);
        QTest::qWait(3 * Quick.idleMs); // twice too long for the idle timer, which must not run
        QVERIFY(sink->bytes.isEmpty());
        QCOMPARE(m_server.requests("/full").size(), 1);
        QCOMPARE(m_server.openConnections(), 1); // it still has most of the file to send
        sink->open = true;
        fetcher.wake();
        QTRY_COMPARE(sink->completes, 1);
        QVERIFY(sink->bytes == body);
    }

    void aServerThatComesBackIsPickedUp()
    {
        const QByteArray body = noise(300000);
        m_server.serve("/back", {.body = body, .cutAt = {100000}, .cut = MediaFile::Stall});
        Fetcher fetcher(Quick);
        const auto sink = std::make_shared<Collector>();
        fetcher.start(QUrl(QString::fromLatin1(m_server.url("/back"))), sink);
        QTRY_COMPARE(sink->bytes.size(), 100000);
        m_server.down();
        QTest::qWait(10 * Quick.longestRetryMs); // far more attempts than the first contact has
        QVERIFY(!sink->over());
        m_server.up();
        QTRY_COMPARE(sink->completes, 1);
        QVERIFY(sink->bytes == body);
    }

    void aFileThatChangedIsNotJoined()
    {
        const QByteArray body = noise(200000);
        m_server.serve("/changed", {.body = body, .etag = "\"old\"", .cutAt = {100000}, .cut = MediaFile::Stall});
        Fetcher fetcher(Quick);
        const auto sink = std::make_shared<Collector>();
        fetcher.start(QUrl(QString::fromLatin1(m_server.url("/changed"))), sink);
        QTRY_COMPARE(sink->bytes.size(), 100000);
        m_server.serve("/changed", {.body = QByteArray(200000, 'x'), .etag = "\"new\""});
        QTRY_COMPARE(sink->completes, 1); // what is there is played to its end
        QVERIFY(sink->bytes == body.left(100000));
    }

    void aFileShorterThanItSaysEndsWhereItEnds()
    {
        const QByteArray body = noise(200000);
        m_server.serve("/short", {.body = body, .announcedExtra = 1000});
        Fetcher fetcher(Quick);
        const auto sink = std::make_shared<Collector>();
        fetcher.start(QUrl(QString::fromLatin1(m_server.url("/short"))), sink);
        QTRY_COMPARE(sink->completes, 1);
        QVERIFY(!sink->bytes.isEmpty() && body.startsWith(sink->bytes));
    }

    void aServerThatDiesAfterAFileOfUnknownLengthDoesNotHoldItsEndUp()
    {
        const QByteArray body = noise(50000);
        m_server.serve("/unknown", {.body = body, .length = MediaFile::Unknown, .cutAt = {-1, 0, 0, 0, 0, 0}});
        Fetcher fetcher(Quick);
        const auto sink = std::make_shared<Collector>();
        fetcher.start(QUrl(QString::fromLatin1(m_server.url("/unknown"))), sink);
        QTRY_COMPARE(sink->completes, 1);
        QVERIFY(sink->bytes == body);
    }

    void aReplacedFetchSaysNothingMore()
    {
        m_server.serve("/first", {.body = noise(100000), .bytesPerSecond = 50000});
        m_server.serve("/second", {.body = noise(1000)});
        Fetcher fetcher(Quick);
        const auto first = std::make_shared<Collector>(), second = std::make_shared<Collector>();
        fetcher.start(QUrl(QString::fromLatin1(m_server.url("/first"))), first);
        QTRY_VERIFY(!first->bytes.isEmpty());
        fetcher.start(QUrl(QString::fromLatin1(m_server.url("/second"))), second);
        QTRY_COMPARE(second->completes, 1);
        QCOMPARE(first->completes + first->failures, 0);
        QCOMPARE(first.use_count(), 1); // let go of
    }

private:
    MediaServer m_server;
};

QTEST_GUILESS_MAIN(PlaybackFetcherTest)
#include "playback_fetcher_test.moc"
