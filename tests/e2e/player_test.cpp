// An evening on the player screen, with the remote alone.

#include "e2e/journey.h"

namespace {

const QString stationList = QStringLiteral("stationListWidget");
const QString history = QStringLiteral("playListWidget");

QString text(const QJsonObject &now, const char *label)
{
    return now.value("labels").toObject().value(QLatin1String(label)).toString();
}

// An audio ad has no album.
bool isTrack(const QJsonObject &now)
{
    return Journey::isPlaying(now) && !text(now, "albumLabel").isEmpty();
}

// If an ad plays, waits for its end.
bool waitForTrack(Journey &journey)
{
    return journey.waitFor(isTrack, 40);
}

} // namespace

class PlayerJourney : public QObject {
    Q_OBJECT
private slots:
    void anotherStationIsChosenAndItsMusicPlays()
    {
        Journey journey;
        QVERIFY2(journey.startPlaying(), qPrintable(journey.problem()));
        const QStringList rows = journey.rows(stationList);
        const int playing = journey.row(stationList);
        const int next = playing + 1 < rows.size() ? playing + 1 : 0;
        QVERIFY(journey.key({"down", "select"}));
        QVERIFY(journey.waitFor([&](const QJsonObject &now) {
            return Journey::isPlaying(now) && Journey::count(now, history) == 2 &&
                   text(now, "stationNameLabel").left(20) == rows.at(next).left(20);
        }));
        QVERIFY(journey.waitForAudio(1));
        // It is now the last station, so the next start plays it.
        QVERIFY(journey.exits());
    }

    void skippingPastTheLimitShowsAMessage()
    {
        Journey journey;
        QVERIFY2(journey.startPlaying(), qPrintable(journey.problem()));
        int skips = 0;
        for (; skips < 6; ++skips) {
            QVERIFY(waitForTrack(journey));
            const int before = Journey::count(journey.last(), history);
            QVERIFY(journey.key({"next"}));
            QVERIFY(journey.waitFor([&](const QJsonObject &now) {
                return Journey::isPlaying(now) && Journey::count(now, history) > before;
            }));
        }
        QVERIFY(waitForTrack(journey));
        QVERIFY(journey.key({"next"}));
        QVERIFY(journey.answerBox(
            QStringLiteral(
                "Unfortunately,our music licenses force us to limit the number of tracks you may skip each hour."),
            {"select"}));
        QVERIFY(journey.waitForNoBox());
        QCOMPARE(journey.status().value("focus").toString(), stationList);
        QVERIFY(journey.waitForAudio(1)); // the track plays on
    }

    void thumbsBookmarkAndTheReasonReachTheService()
    {
        Journey journey;
        QVERIFY2(journey.startPlaying(), qPrintable(journey.problem()));
        QVERIFY(waitForTrack(journey));
        // thumbs up stays on the track
        QVERIFY(journey.key({"green"}));
        QVERIFY(journey.waitFor([&](const QJsonObject &) { return journey.serverReport().contains("addFeedback"); }));
        QVERIFY(journey.waitFor(isTrack));
        QCOMPARE(journey.rows(history).size(), 1);
        // bookmark
        QVERIFY(journey.openMenuEntry(0));
        QVERIFY(journey.answerBox("Add bookmark successful!", {"select"}));
        QVERIFY(journey.waitFor(Journey::isPlaying));
        QCOMPARE(journey.last().value("focus").toString(), QStringLiteral("menuBtn"));
        // why
        QVERIFY(journey.key({"select"}));
        QVERIFY(journey.waitForScreen("MenuDlg"));
        QVERIFY(journey.key({"down", "down", "down", "select"}));
        QVERIFY(journey.waitForScreen("WhyDlg"));
        const QString why = journey.label("whyLabel");
        QVERIFY(why.startsWith("Based on what you've told us so far, we're playing "));
        QVERIFY(why.contains(" because it features "));
        journey.screenshot("why");
        QVERIFY(journey.key({"select"}));
        QVERIFY(journey.waitForScreen("VelmoraMainDlg"));
        // thumbs down leaves the track at once
        QVERIFY(waitForTrack(journey));
        const QString disliked = text(journey.last(), "songLabel");
        const int before = Journey::count(journey.last(), history);
        QVERIFY(journey.key({"red"}));
        QVERIFY(journey.waitFor(
            [&](const QJsonObject &now) { return Journey::isPlaying(now) && Journey::count(now, history) > before; }));
        QVERIFY(text(journey.last(), "songLabel") != disliked);
        QVERIFY(journey.waitForAudio(1));
    }

    void deletingThePlayingStationStartsTheNextOne()
    {
        Journey journey;
        QVERIFY2(journey.startPlaying(), qPrintable(journey.problem()));
        const int row = 1;
        QVERIFY(journey.key({"top"}));
        QVERIFY(journey.key({"down", "select"}));
        QVERIFY(journey.waitFor(
            [&](const QJsonObject &now) { return Journey::isPlaying(now) && Journey::count(now, history) >= 2; }));
        QCOMPARE(journey.row(stationList), row);
        const QStringList before = journey.rows(stationList);
        QVERIFY(journey.openMenuEntry(5)); // around the end to "Delete This Station"
        QVERIFY(journey.answerBox("Are you sure you want to delete station: \n", {"left", "select"}));
        QVERIFY(journey.waitFor([&](const QJsonObject &now) {
            return Journey::isPlaying(now) && Journey::count(now, stationList) == before.size() - 1 &&
                   Journey::count(now, history) >= 3;
        }));
        QCOMPARE(journey.row(stationList), row);
        QVERIFY(journey.waitForAudio(1));
    }

    void switchingTheUserEndsTheMusicAndShowsTheAccounts()
    {
        Journey journey;
        QVERIFY2(journey.startPlaying(), qPrintable(journey.problem()));
        QVERIFY(journey.openMenuEntry(3));
        QVERIFY(journey.waitForScreen("SelectUserDlg"));
        QCOMPARE(journey.last().value("playback").toInt(), 4);
        QCOMPARE(journey.label("userListBtn_1"), QStringLiteral("listener@velmora.invalid"));
        QVERIFY(journey.key({"select"}));
        QVERIFY(journey.waitForScreen("VelmoraMainDlg"));
        QVERIFY(journey.waitForAudio(1));
    }

    void aSlowServiceBuffersAndPlaybackResumes()
    {
        // The link is slower than the tracks: the radio pauses below three seconds and resumes above seven.
        Journey journey({.serverOptions = {"--throttle", "30000"}});
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY(journey.waitFor([](const QJsonObject &now) { return now.value("playback").toInt() == 6; }, 60));
        const double heard = journey.last().value("audioSeconds").toDouble();
        QVERIFY(journey.waitFor(
            [&](const QJsonObject &now) {
                return now.value("playback").toInt() == 5 && now.value("audioSeconds").toDouble() > heard + 2;
            },
            60));
    }
};

QTEST_GUILESS_MAIN(PlayerJourney)
#include "player_test.moc"
