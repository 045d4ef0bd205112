// The fetcher against a server that misbehaves: every byte arrives once and in order, or the failure is reported.

#include "mediaserver.h"

#include "platform/netcommon/playback/fetcher.h"

#include <QtTest>

using namespace netcommon;
using mediasample::noise;

namespace {

class Collector : public FetchSink {
public:
    bool wanted() const override { return open; }
    void push(const QByteArray &part) override { bytes += part; }
    void complete() override { ++completes; }
    void failed() override { ++failures; }
    bool isUrgent() const override { return isNearlyDry; }
    bool over() const { return completes + failures > 0; }

    bool open = true;
    bool isNearlyDry = false;
    QByteArray bytes;
    int completes = 0;
    int failures = 0;
};

// Where nothing hangs, no limit of time counts. A busy machine is given more time than a server that hangs.
constexpr int stallMs = 1500;
constexpr int never = 3'600'000;
constexpr FetchLimits patientLimits{
    .idleMs = never, .firstPatienceMs = never, .firstRetryMs = 20, .longestRetryMs = 80};
constexpr FetchLimits stallLimits{
    .idleMs = stallMs, .urgentConnectMs = stallMs, .firstPatienceMs = never, .firstRetryMs = 20, .longestRetryMs = 80};
constexpr FetchLimits quickLimits{
    .idleMs = 300, .urgentConnectMs = 160, .firstPatienceMs = 1500, .firstRetryMs = 20, .longestRetryMs = 80};

// One path of the server, fetched.
struct Fetch {
    Fetch(MediaServer &server, const QByteArray &path, const MediaFile &file, const FetchLimits &limits = patientLimits,
          bool isOpen = true)
        : fetcher(limits)
    {
        server.serve(path, file);
        sink->open = isOpen;
        fetcher.start(QUrl(QString::fromLatin1(server.url(path))), sink);
    }
    const std::shared_ptr<Collector> sink = std::make_shared<Collector>();
    Fetcher fetcher;
};

} // namespace

class PlaybackFetcherTest : public QObject {
    Q_OBJECT
private slots:
    void everyByteArrivesOnceOrTheFailureIsReported_data()
    {
        QTest::addColumn<MediaFile>("file");
        QTest::addColumn<int>("requests"); // one more is allowed: Qt may repeat a request after a reset
        QTest::addColumn<bool>("isHad");
        const QByteArray body = noise(700000);
        const auto row = [](const char *name, const MediaFile &file, int requests, bool isHad = true) {
            QTest::newRow(name) << file << requests << isHad;
        };
        row("in one go", {.body = body}, 1);
        row("chunked", {.body = body, .length = MediaFile::Length::Chunked}, 2);
        row("chunked without ranges", {.body = body, .length = MediaFile::Length::Chunked, .ranges = false}, 1);
        row("length unknown", {.body = body, .length = MediaFile::Length::Unknown}, 2);
        row("length unknown, closed early",
            {.body = body, .length = MediaFile::Length::Unknown, .cutAt = {9001}, .cut = MediaFile::Cut::Close}, 2);
        row("reset twice", {.body = body, .cutAt = {100000, 400001}}, 3);
        row("closed twice", {.body = body, .cutAt = {100000, 400001}, .cut = MediaFile::Cut::Close}, 3);
        row("closed in a chunked body",
            {.body = body, .length = MediaFile::Length::Chunked, .cutAt = {9001}, .cut = MediaFile::Cut::Close}, 2);
        row("stalled", {.body = body, .cutAt = {200000}, .cut = MediaFile::Cut::Stall}, 2);
        row("reset without ranges", {.body = body, .ranges = false, .cutAt = {300000, 500000}}, 3);
        row("reset before the first byte", {.body = body, .cutAt = {0}}, 2);
        row("with a tag", {.body = body, .etag = "\"v1\"", .cutAt = {5000}}, 2);
        row("not found", {.body = "no", .status = 404}, 1, false);
        row("server's trouble", {.body = "no", .status = 503}, 2, false);
        row("empty", {}, 1, false);
        row("never answers", {.silent = true}, 2, false);
        row("leads to a file", {.status = 302, .location = "file:///etc/hostname"}, 1, false);
        row("leads in circles", {.status = 302, .location = "/leads-in-circles"}, 11, false);
    }

    void everyByteArrivesOnceOrTheFailureIsReported()
    {
        QFETCH(MediaFile, file);
        QFETCH(int, requests);
        QFETCH(bool, isHad);
        const QByteArray path = "/" + QByteArray(QTest::currentDataTag()).replace(' ', '-');
        const bool isRepeated = file.status == 503 || file.silent; // for a time
        const Fetch fetch(m_server, path, file,
                          isRepeated                          ? quickLimits
                          : file.cut == MediaFile::Cut::Stall ? stallLimits
                                                              : patientLimits);
        QTRY_VERIFY(fetch.sink->over());
        QCOMPARE(fetch.sink->failures, isHad ? 0 : 1);
        QCOMPARE(fetch.sink->completes, isHad ? 1 : 0);
        QVERIFY(fetch.sink->bytes == (isHad ? file.body : QByteArray()));
        const auto asked = m_server.requests(path);
        QVERIFY2(asked.size() >= requests && (isRepeated || asked.size() <= requests + (isHad ? 1 : 0)),
                 qPrintable(QString::number(asked.size())));
        for (const MediaRequest &request : asked)
            QCOMPARE(request.headers.value("accept-encoding"), QByteArray("identity"));
        if (!file.etag.isEmpty())
            QCOMPARE(asked.last().headers.value("if-range"), file.etag);
    }

    void nothingIsReadWhileTheSinkIsFull()
    {
        const QByteArray body = noise(20000000);
        Fetch fetch(m_server, "/full", {.body = body}, stallLimits, false);
        QTRY_COMPARE(m_server.requests("/full").size(), 1);
        // Beside it a server that never answers is given up, later: the idle timer would have fired here too.
        const Fetch silent(m_server, "/silent-beside", {.silent = true}, {.idleMs = 2 * stallMs, .firstPatienceMs = 1});
        QTRY_COMPARE(silent.sink->failures, 1);
        QVERIFY(fetch.sink->bytes.isEmpty());
        QCOMPARE(m_server.requests("/full").size(), 1);
        QCOMPARE(m_server.openConnections(), 1); // it still has most of the file to send
        fetch.sink->open = true;
        fetch.fetcher.wake();
        QTRY_COMPARE(fetch.sink->completes, 1);
        QVERIFY(fetch.sink->bytes == body);
    }

    // A connection that hangs is replaced once there is little left to play, even if there was much when it began to
    // hang. The other limit is out of reach.
    void aHangingConnectionIsReplacedSoonWhenLittleIsLeft()
    {
        const QByteArray body = noise(200000);
        m_server.serve("/hangs", {.body = body, .cutAt = {100000, 150000}, .cut = MediaFile::Cut::Stall});
        const auto sink = std::make_shared<Collector>();
        Fetcher fetcher({.idleMs = 3'600'000, .urgentConnectMs = stallMs, .urgentIdleMs = stallMs});
        fetcher.start(QUrl(QString::fromLatin1(m_server.url("/hangs"))), sink);
        QTRY_COMPARE(sink->bytes.size(), 100000);
        QCOMPARE(m_server.requests("/hangs").size(), 1);
        sink->isNearlyDry = true;
        QTRY_COMPARE(sink->completes, 1);
        QVERIFY(sink->bytes == body);
        QCOMPARE(m_server.requests("/hangs").size(), 3);
    }

    // A server that starts: nobody listens, then it is not ready yet.
    void theFirstContactIsPatient()
    {
        const QByteArray body = noise(1000);
        m_server.serve("/starts", {.body = body});
        m_server.down();
        const auto sink = std::make_shared<Collector>();
        Fetcher fetcher({.firstPatienceMs = 3'600'000, .firstRetryMs = 20, .longestRetryMs = 20});
        fetcher.start(QUrl(QString::fromLatin1(m_server.url("/starts"))), sink);
        QTest::qWait(100); // an input of the test: so long nobody listens
        m_server.serve("/starts", {.status = 503});
        m_server.up();
        QTRY_VERIFY(m_server.requests("/starts").size() >= 3);
        QVERIFY(!sink->over());
        m_server.serve("/starts", {.body = body});
        QTRY_COMPARE(sink->completes, 1);
        QVERIFY(sink->bytes == body);
    }

    void partsOfAChangedFileAreNotJoined()
    {
        const QByteArray body = noise(200000);
        Fetch fetch(m_server, "/changed",
                    {.body = body, .etag = "\"old\"", .cutAt = {100000}, .cut = MediaFile::Cut::Stall}, stallLimits);
        QTRY_COMPARE(fetch.sink->bytes.size(), 100000);
        m_server.serve("/changed", {.body = QByteArray(200000, 'x'), .etag = "\"new\""});
        QTRY_COMPARE(fetch.sink->completes, 1); // the existing bytes are played to their end
        QVERIFY(fetch.sink->bytes == body.left(100000));
    }

    void aFileShorterThanAnnouncedEndsWithItsLastByte()
    {
        const QByteArray body = noise(200000);
        Fetch fetch(m_server, "/short", {.body = body, .announcedExtra = 1000});
        QTRY_COMPARE(fetch.sink->completes, 1);
        QVERIFY(!fetch.sink->bytes.isEmpty() && body.startsWith(fetch.sink->bytes));
    }

    void aServerThatDiesAfterAFileOfUnknownLengthDoesNotDelayTheEnd()
    {
        const QByteArray body = noise(50000);
        Fetch fetch(m_server, "/unknown",
                    {.body = body, .length = MediaFile::Length::Unknown, .cutAt = {-1, 0, 0, 0, 0, 0}});
        QTRY_COMPARE(fetch.sink->completes, 1);
        QVERIFY(fetch.sink->bytes == body);
    }

    void aReplacedFetchReportsNothing()
    {
        Fetch fetch(m_server, "/first", {.body = noise(100000), .bytesPerSecond = 50000});
        m_server.serve("/second", {.body = noise(1000)});
        QTRY_VERIFY(!fetch.sink->bytes.isEmpty());
        const auto second = std::make_shared<Collector>();
        fetch.fetcher.start(QUrl(QString::fromLatin1(m_server.url("/second"))), second);
        QTRY_COMPARE(second->completes, 1);
        QCOMPARE(fetch.sink->completes + fetch.sink->failures, 0);
        QCOMPARE(fetch.sink.use_count(), 1); // the fetcher has released it
    }

private:
    MediaServer m_server;
};

QTEST_GUILESS_MAIN(PlaybackFetcherTest)
#include "playback_fetcher_test.moc"
