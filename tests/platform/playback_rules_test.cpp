// The deciders of playback, by tables.

#include "platform/netcommon/playback/fetcherrules.h"
#include "platform/netcommon/playback/httpaddress.h"
#include "platform/netcommon/playback/playbackbuffer.h"
#include "platform/netcommon/playback/playbackorder.h"

#include <QtTest>

#include <functional>
#include <map>

using namespace netcommon;

namespace {

const std::map<char, std::function<void(PlaybackOrder &)>> facts{
    {'t', [](PlaybackOrder &order) { order.taken(); }},
    {'p', [](PlaybackOrder &order) { order.ready(); }},
    {'1', [](PlaybackOrder &order) { order.failed(-1); }},
    {'2', [](PlaybackOrder &order) { order.failed(-2); }},
    {'P', [](PlaybackOrder &order) { order.wantPlay(false); }},
    {'R', [](PlaybackOrder &order) { order.wantPlay(true); }},
    {'T', [](PlaybackOrder &order) { order.totalKnown(12); }},
    {'5', [](PlaybackOrder &order) { order.position(5); }},
    {'l', [](PlaybackOrder &order) { order.buffered(2999); }},
    {'h', [](PlaybackOrder &order) { order.buffered(3000); }},
    {'E', [](PlaybackOrder &order) { order.received(); }},
    {'S', [](PlaybackOrder &order) { order.endsSoon(); }},
    {'N', [](PlaybackOrder &order) { order.ended(); }},
};

QString reports(const QByteArray &letters)
{
    static const QStringList names{"url", "result", "play", "pause", "total", "time", "percent", "low", "eof", "next"};
    PlaybackOrder order;
    QStringList said;
    for (const char letter : letters)
        facts.at(letter)(order);
    for (const PlaybackReport &report : order.take()) {
        const bool valued =
            report.kind == PlaybackReport::Kind::Result || report.kind == PlaybackReport::Kind::CurrentTime ||
            report.kind == PlaybackReport::Kind::TotalTime || report.kind == PlaybackReport::Kind::Progress ||
            report.kind == PlaybackReport::Kind::BufferLow;
        said << names.value(int(report.kind)) + (valued ? QString::number(report.value) : QString());
    }
    return said.join(' ') + QStringLiteral(" =%1").arg(order.state());
}

} // namespace

class PlaybackRulesTest : public QObject {
    Q_OBJECT
private slots:
    void reportsComeInTheScreensOrder()
    {
        const auto row = [](const char *name, const char *letters, const char *expected) {
            QVERIFY2(reports(letters) == QLatin1String(expected), qPrintable(name + (": " + reports(letters))));
        };
        row("a good track", "tpTEN", "url result0 play total12 eof next =4");
        row("all bytes before the result", "tETpN", "url result0 play total12 eof next =4");
        row("total before the result is told after it", "tTp", "url result0 play total12 =5");
        row("the end without the file's end reports both", "tpN", "url result0 play eof next =4");
        row("the next track is asked for once, while this one still plays", "tpESlSN", "url result0 play eof next =4");
        row("what ends soon still plays", "tpES", "url result0 play eof next =5");
        row("what is not all here does not end soon", "tpS", "url result0 play =5");
        row("the end before the beginning is nothing", "tSN", "url =4");
        row("paused before the result", "tPp", "url result0 pause =6");
        row("paused and resumed before the result", "tPRp", "url result0 play =5");
        row("paused before the address", "Ptp", "url result0 pause =6");
        row("pausing twice is one pause", "tpPP", "url result0 play pause =6");
        row("resuming what plays says nothing", "tpR", "url result0 play =5");
        row("pause and resume", "tpPR", "url result0 play pause play =5");
        row("a bad address", "t1", "url result-1 =4");
        row("failing twice is one result", "t112", "url result-1 =4");
        row("nothing after a failure", "t1pTE5lNP", "url result-1 =4");
        row("nothing can be played", "t2", "url result-2 =4");
        row("broken in the middle", "tp1EN", "url result0 play result-1 =4");
        row("the total is told once", "tpTT", "url result0 play total12 =5");
        row("a second is told once, with its percentage", "tpT55", "url result0 play total12 time5 percent41 =5");
        row("no percentage without a total", "tp5", "url result0 play time5 =5");
        row("the low line is told when crossed", "tphllhhl", "url result0 play low1 low0 low1 =5");
        row("beginning low is no news", "tpllh", "url result0 play =5");
        row("what is all here is never low", "tphlElll", "url result0 play low1 eof low0 =5");
        row("no position before the result", "t5l", "url =4");
        row("taken twice is one address", "ttp", "url result0 play =5");
    }

    void bufferSnapshots()
    {
        const std::tuple<qint64, qint64, qint64, bool, uint, uint> cases[] = {
            {1000LL, 5000LL, 40700LL, false, 1000u, 5000u},    // ordinary
            {0LL, 0LL, -1LL, false, 0u, 0u},                   // nothing yet
            {5200LL, 5000LL, -1LL, false, 5000u, 5000u},       // the clock ran ahead of the data
            {40000LL, 40751LL, 40700LL, true, 40000u, 40700u}, // the last frame is cut to the length
            {9000LL, 40000LL, 10000LL, false, 9000u, 40000u},  // a length far off is ignored
            {5000LL, 5000LL, -1LL, true, 4999u, 5000u},        // all here and all heard, but not ended
            {0LL, 0LL, -1LL, true, 0u, 1u},                    // all here, empty
        };
        for (const auto &[position, end, length, received, start, stop] : cases) {
            const auto status = bufferStatus({position, end, length, received});
            QCOMPARE(uint(status.ui4_start), start);
            QCOMPARE(uint(status.ui4_end), stop);
            QCOMPARE(status.ui4_amount, status.ui4_end - status.ui4_start);
        }
    }

    void aTrackStartsWhenItsFirstCheckWillFindEnough()
    {
        const std::tuple<qint64, qint64, bool, bool> cases[] = {
            {3499, 60000, false, false}, {3500, 60000, false, true}, // enough is buffered
            {400, 5000, true, true},     {0, 0, false, false},       // all of it, nothing
            {1000, 149, false, false},   {1000, 150, false, true},   // the first burst says nothing
            {2400, 1200, false, false},  {2500, 1250, false, true},  // at twice playing speed
            {2700, 1400, false, false},                              // a little slower
        };
        for (const auto &[buffered, arriving, isReceived, expected] : cases)
            QVERIFY2(mayStart({buffered, arriving, isReceived}) == expected, qPrintable(QString::number(buffered)));
    }

    void theSinkPausesAndResumesAtItsTwoLevels()
    {
        QVERIFY(!mustHold(false, 300, false));
        QVERIFY(mustHold(false, 299, false));
        QVERIFY(mustHold(true, 1000, false));
        QVERIFY(!mustHold(true, 1001, false));
        QVERIFY(!mustHold(true, 10, true));
        QVERIFY(!mustHold(false, 10, true));
    }

    void answersOfAServer()
    {
        const auto row = [](const char *name, const FetchProgress &progress, const FetchResponse &response,
                            FetchAction action, qint64 skip = 0, qint64 length = -1) {
            const FetchDecision decision = judgeResponse(progress, response);
            QVERIFY2(decision.action == action && decision.skip == skip && decision.length == length, name);
        };
        const FetchProgress none;
        const FetchProgress half{500, 1000, "\"a\""};
        row("a file", none, {200, 1000, "", "\"a\""}, FetchAction::Deliver, 0, 1000);
        row("a file of unknown length", none, {200, -1, "", ""}, FetchAction::Deliver, 0, -1);
        row("the rest", half, {206, 500, "bytes 500-999/1000", "\"a\""}, FetchAction::Deliver, 0, 1000);
        row("a little more than the rest", half, {206, 600, "bytes 400-999/1000", ""}, FetchAction::Deliver, 100, 1000);
        row("the rest of a file of unknown length", half, {206, 500, "bytes 500-999/*", ""}, FetchAction::Deliver, 0,
            -1);
        row("less than the rest", half, {206, 400, "bytes 600-999/1000", ""}, FetchAction::Refused);
        row("a range without saying which", half, {206, 500, "", ""}, FetchAction::Retry);
        row("no ranges here: from the start", half, {200, 1000, "", "\"a\""}, FetchAction::Deliver, 500, 1000);
        row("another file by its tag", half, {200, 1000, "", "\"b\""}, FetchAction::Refused);
        row("another file by its length", half, {200, 999, "", ""}, FetchAction::Refused);
        row("another file in a range", half, {206, 400, "bytes 500-899/900", ""}, FetchAction::Refused);
        row("nothing behind the end, all here", {1000, 1000, ""}, {416, -1, "", ""}, FetchAction::Complete);
        row("nothing behind the end, length unknown", {1000, -1, ""}, {416, -1, "", ""}, FetchAction::Complete);
        row("the file became shorter", half, {416, -1, "", ""}, FetchAction::Refused);
        row("gone", none, {404, -1, "", ""}, FetchAction::Refused);
        row("gone in the middle", half, {410, -1, "", ""}, FetchAction::Refused);
        row("server's trouble", none, {500, -1, "", ""}, FetchAction::Retry);
        row("too many requests", half, {429, -1, "", ""}, FetchAction::Retry);
        row("elsewhere", none, {302, -1, "", ""}, FetchAction::Redirect);
        row("no content", none, {204, -1, "", ""}, FetchAction::Refused);
        row("choices that lead nowhere", none, {300, -1, "", ""}, FetchAction::Refused);
    }

    void retriesBackOffAndOnlyTheFirstContactIsLimited()
    {
        const FetchLimits limits;
        const FetchProgress none, half{100, 200, {}};
        QList<int> delays, urgent;
        for (int attempts = 1; attempts <= 7; ++attempts) {
            delays << *retryDelayMs(limits, half, {.attempts = attempts});
            urgent << *retryDelayMs(limits, half, {.attempts = attempts, .isUrgent = true});
        }
        QCOMPARE(delays, (QList<int>{250, 500, 1000, 2000, 4000, 5000, 5000}));
        QCOMPARE(urgent, (QList<int>{250, 500, 1000, 1000, 1000, 1000, 1000}));
        QCOMPARE(retryDelayMs(limits, half, {.attempts = 1000000, .elapsedMs = 1000000}), 5000);
        QCOMPARE(retryDelayMs(limits, half, {.attempts = 4, .isUrgent = true, .isHang = true}), 0);
        QCOMPARE(retryDelayMs(limits, half, {.askedMs = retryAfterMs(" 7 ")}), 7000);
        QCOMPARE(retryDelayMs(limits, half, {.askedMs = retryAfterMs("99999999")}), 30000);
        QCOMPARE(retryDelayMs(limits, half, {.askedMs = retryAfterMs("Sun, 22 Nov 2026 10:00:00 GMT")}), 250);
        QCOMPARE(retryDelayMs(limits, none, {.elapsedMs = 9750}), 250);
        QCOMPARE(retryDelayMs(limits, none, {.elapsedMs = 9751}), std::nullopt);
        QCOMPARE(retryDelayMs(limits, none, {.elapsedMs = 1, .askedMs = 10000}), std::nullopt);
        QList<int> idles;
        for (int hangs = 0; hangs < 4; ++hangs)
            idles << idleLimitMs(limits, true, false, hangs) << idleLimitMs(limits, true, true, hangs);
        QCOMPARE(idles, (QList<int>{2000, 3000, 2000, 3000, 6000, 9000, 2000, 3000}));
        QCOMPARE(idleLimitMs(limits, false, true, 0), 10000);
        QCOMPARE(strongEtag("\"x\""), QByteArray("\"x\""));
        QCOMPARE(strongEtag("W/\"x\""), QByteArray());
    }

    void onlyWebAddressesAreOpened()
    {
        for (const char *text : {"http://host/a.mp3", "HTTPS://host:8443/a%20b.mp3?x=1", " http://host/a\n"})
            QVERIFY2(httpaddress::parse(text).isValid(), text);
        for (const char *text : {"file:///etc/hostname", "/etc/hostname", "ftp://host/a", "http:///a", "http://", "",
                                 "data:audio/wav;base64,AA"})
            QVERIFY2(!httpaddress::parse(text).isValid(), text);
    }

    void redirectsStayOnTheWebAndNeverLeaveHttps()
    {
        const std::tuple<const char *, const char *, QByteArray> cases[] = {
            {"http://a/b/c", "http://x/y", "http://x/y"}, {"http://a/b/c", "d?e", "http://a/b/d?e"},
            {"http://a/b/c", "https://x/", "https://x/"}, {"https://a/b", "http://x/less-safe", ""},
            {"http://a/b", "file:///etc/passwd", ""},     {"http://a/b", "", ""},
        };
        for (const auto &[from, location, to] : cases)
            QCOMPARE(QByteArray(location) + " to " +
                         httpaddress::redirected(QUrl::fromEncoded(from), location).toEncoded(),
                     QByteArray(location) + " to " + to);
    }
};

QTEST_GUILESS_MAIN(PlaybackRulesTest)
#include "playback_rules_test.moc"
