// An evening on the player screen, with the remote alone.

#include "e2e/journey.h"

namespace {

const QString stationList = QStringLiteral("stationListWidget");
const QString history = QStringLiteral("playListWidget");

bool isPlaying(const QJsonObject &now)
{
    return now.value(QStringLiteral("playback")).toInt() == 5
        && now.value(QStringLiteral("screen")).toString() == QLatin1String("VelmoraMainDlg")
        && now.value(QStringLiteral("box")).isNull();
}

int count(const QJsonObject &now, const QString &list)
{
    return now.value(QStringLiteral("lists")).toObject().value(list).toObject().value(QStringLiteral("count")).toInt();
}

QString text(const QJsonObject &now, const char *label)
{
    return now.value(QStringLiteral("labels")).toObject().value(QLatin1String(label)).toString();
}

// An audio ad has no album.
bool isTrack(const QJsonObject &now)
{
    return isPlaying(now) && !text(now, "albumLabel").isEmpty();
}

// Waits until an ad, should one be playing, is over.
bool waitForTrack(Journey &journey)
{
    return journey.waitFor(isTrack, 40);
}

bool openMenu(Journey &journey)
{
    return journey.waitFor(isPlaying) && journey.key({QStringLiteral("right"), QStringLiteral("select")})
        && journey.waitForScreen(QStringLiteral("MenuDlg"));
}

} // namespace

class PlayerJourney : public QObject {
    Q_OBJECT
private slots:
    void anotherStationIsChosenAndItsMusicPlays()
    {
        Journey journey;
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY(journey.waitForAudio(1));
        const QStringList rows = journey.rows(stationList);
        const int playing = journey.row(stationList);
        const int next = playing + 1 < rows.size() ? playing + 1 : 0;
        QVERIFY(journey.key({QStringLiteral("down"), QStringLiteral("select")}));
        QVERIFY(journey.waitFor([&](const QJsonObject &now) {
            return isPlaying(now) && count(now, history) == 2 && text(now, "stationNameLabel").left(20) == rows.at(next).left(20);
        }));
        QVERIFY(journey.waitForAudio(1));
        // It is the last station: the next start begins with it.
        QVERIFY(journey.menu({QStringLiteral("exit")}));
        QVERIFY(journey.waitForEnd());
    }

    void skippingEndsAtTheLimitInWords()
    {
        Journey journey;
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY(journey.waitForAudio(1));
        int skips = 0;
        for (; skips < 6; ++skips) {
            QVERIFY(waitForTrack(journey));
            const int before = count(journey.last(), history);
            QVERIFY(journey.key({QStringLiteral("next")}));
            QVERIFY(journey.waitFor(
                [&](const QJsonObject &now) { return isPlaying(now) && count(now, history) > before; }));
        }
        QVERIFY(waitForTrack(journey));
        QVERIFY(journey.key({QStringLiteral("next")}));
        QVERIFY(journey.waitForBox(QStringLiteral(
            "Unfortunately,our music licenses force us to limit the number of tracks you may skip each hour.")));
        QVERIFY(journey.key({QStringLiteral("select")}));
        QVERIFY(journey.waitForNoBox());
        QCOMPARE(journey.status().value(QStringLiteral("focus")).toString(), stationList);
        QVERIFY(journey.waitForAudio(1)); // the track plays on
    }

    void thumbsBookmarkAndTheReasonReachTheService()
    {
        Journey journey;
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY(journey.waitForAudio(1));
        QVERIFY(waitForTrack(journey));
        // thumbs up stays on the track
        QVERIFY(journey.key({QStringLiteral("green")}));
        QVERIFY(journey.waitFor(
            [&](const QJsonObject &) { return journey.serverReport().contains(QStringLiteral("addFeedback")); }));
        QVERIFY(journey.waitFor(isTrack));
        QCOMPARE(journey.rows(history).size(), 1);
        // bookmark
        QVERIFY(openMenu(journey));
        QVERIFY(journey.key({QStringLiteral("select")}));
        QVERIFY(journey.waitForBox(QStringLiteral("Add bookmark successful!")));
        QVERIFY(journey.key({QStringLiteral("select")}));
        QVERIFY(journey.waitFor(isPlaying));
        QCOMPARE(journey.last().value(QStringLiteral("focus")).toString(), QStringLiteral("menuBtn"));
        // why
        QVERIFY(journey.key({QStringLiteral("select")}));
        QVERIFY(journey.waitForScreen(QStringLiteral("MenuDlg")));
        QVERIFY(journey.key({QStringLiteral("down"), QStringLiteral("down"), QStringLiteral("down"),
                             QStringLiteral("select")}));
        QVERIFY(journey.waitForScreen(QStringLiteral("WhyDlg")));
        const QString why = journey.label(QStringLiteral("whyLabel"));
        QVERIFY(why.startsWith(QStringLiteral("Based on what you've told us so far, we're playing ")));
        QVERIFY(why.contains(QStringLiteral(" because it features ")));
        journey.screenshot(QStringLiteral("why"));
        QVERIFY(journey.key({QStringLiteral("select")}));
        QVERIFY(journey.waitForScreen(QStringLiteral("VelmoraMainDlg")));
        // thumbs down leaves the track at once
        QVERIFY(waitForTrack(journey));
        const QString disliked = text(journey.last(), "songLabel");
        const int before = count(journey.last(), history);
        QVERIFY(journey.key({QStringLiteral("red")}));
        QVERIFY(journey.waitFor(
            [&](const QJsonObject &now) { return isPlaying(now) && count(now, history) > before; }));
        QVERIFY(text(journey.last(), "songLabel") != disliked);
        QVERIFY(journey.waitForAudio(1));
    }

    void deletingThePlayingStationStartsTheOneThatMovesUp()
    {
        Journey journey;
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY(journey.waitForAudio(1));
        const int row = 1;
        QVERIFY(journey.key({QStringLiteral("top")}));
        QVERIFY(journey.key({QStringLiteral("down"), QStringLiteral("select")}));
        QVERIFY(journey.waitFor([&](const QJsonObject &now) { return isPlaying(now) && count(now, history) >= 2; }));
        QCOMPARE(journey.row(stationList), row);
        const QStringList before = journey.rows(stationList);
        QVERIFY(openMenu(journey));
        QVERIFY(journey.key({QStringLiteral("up"), QStringLiteral("up"), QStringLiteral("up"), QStringLiteral("up"),
                             QStringLiteral("up"), QStringLiteral("select")})); // around the end to "Delete This Station"
        QVERIFY(journey.waitForBox(QStringLiteral("Are you sure you want to delete station: \n")));
        QVERIFY(journey.key({QStringLiteral("left"), QStringLiteral("select")}));
        QVERIFY(journey.waitFor([&](const QJsonObject &now) {
            return isPlaying(now) && count(now, stationList) == before.size() - 1 && count(now, history) >= 3;
        }));
        QCOMPARE(journey.row(stationList), row);
        QVERIFY(journey.waitForAudio(1));
    }

    void switchingTheUserEndsTheMusicAndShowsTheAccounts()
    {
        Journey journey;
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY(journey.waitForAudio(1));
        QVERIFY(openMenu(journey));
        QVERIFY(journey.key({QStringLiteral("up"), QStringLiteral("up"), QStringLiteral("up"), QStringLiteral("select")}));
        QVERIFY(journey.waitForScreen(QStringLiteral("SelectUserDlg")));
        QCOMPARE(journey.last().value(QStringLiteral("playback")).toInt(), 4);
        QCOMPARE(journey.label(QStringLiteral("userListBtn_1")), QStringLiteral("listener@velmora.invalid"));
        QVERIFY(journey.key({QStringLiteral("select")}));
        QVERIFY(journey.waitForScreen(QStringLiteral("VelmoraMainDlg")));
        QVERIFY(journey.waitForAudio(1));
    }

    void aSlowServiceBuffersAndGoesOn()
    {
        Journey::Options options;
        // Less than the tracks need: the radio pauses under three seconds and goes on above seven.
        options.serverOptions = {QStringLiteral("--throttle"), QStringLiteral("40000")};
        Journey journey(options);
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY(journey.waitFor(
            [](const QJsonObject &now) { return now.value(QStringLiteral("playback")).toInt() == 6; }, 60));
        const double heard = journey.last().value(QStringLiteral("audioSeconds")).toDouble();
        QVERIFY(journey.waitFor(
            [&](const QJsonObject &now) {
                return now.value(QStringLiteral("playback")).toInt() == 5
                    && now.value(QStringLiteral("audioSeconds")).toDouble() > heard + 2;
            },
            60));
    }

    void fastKeysNeitherCrashNorSilenceIt()
    {
        Journey journey;
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY(journey.waitForAudio(1));
        const qint64 pid = journey.radioPid();
        for (int round = 0; round < 55; ++round) { // six hundred keys, a minute of ten a second
            QVERIFY(journey.key({QStringLiteral("next"), QStringLiteral("down"), QStringLiteral("select"),
                                 QStringLiteral("pause"), QStringLiteral("right"), QStringLiteral("select"),
                                 QStringLiteral("back"), QStringLiteral("pause"), QStringLiteral("left"),
                                 QStringLiteral("next"), QStringLiteral("back")}));
        }
        // Whatever is open now: out of it, and music.
        for (int tries = 0; tries < 20 && !isPlaying(journey.status()); ++tries) {
            const QJsonObject now = journey.last();
            if (now.value(QStringLiteral("box")).isString())
                journey.key({QStringLiteral("select")});
            else if (now.value(QStringLiteral("screen")).toString() != QLatin1String("VelmoraMainDlg"))
                journey.key({QStringLiteral("back")});
            else if (now.value(QStringLiteral("playback")).toInt() == 6)
                journey.key({QStringLiteral("play")});
            QTest::qWait(500);
        }
        QCOMPARE(journey.radioPid(), pid);
        QVERIFY(journey.waitFor(isPlaying));
        QVERIFY(journey.waitForAudio(2));
    }
};

QTEST_GUILESS_MAIN(PlayerJourney)
#include "player_journey.moc"
