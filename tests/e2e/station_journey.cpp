// New stations and new names, typed with five keys.

#include "e2e/journey.h"

namespace {

const QString stationList = QStringLiteral("stationListWidget");

int count(const QJsonObject &now, const QString &list)
{
    return now.value(QStringLiteral("lists")).toObject().value(list).toObject().value(QStringLiteral("count")).toInt();
}

bool isPlaying(const QJsonObject &now)
{
    return now.value(QStringLiteral("playback")).toInt() == 5
        && now.value(QStringLiteral("screen")).toString() == QLatin1String("VelmoraMainDlg")
        && now.value(QStringLiteral("box")).isNull();
}

bool openMenuEntry(Journey &journey, int upFromTop)
{
    if (!journey.waitFor(isPlaying) || !journey.key({QStringLiteral("right"), QStringLiteral("select")})
        || !journey.waitForScreen(QStringLiteral("MenuDlg")))
        return false;
    return journey.key(QStringList(upFromTop, QStringLiteral("up")) + QStringList(QStringLiteral("select")));
}

constexpr int createEntry = 6;
constexpr int renameEntry = 4;

} // namespace

class StationJourney : public QObject {
    Q_OBJECT
private slots:
    void anArtistIsTypedChosenAndHeard()
    {
        Journey journey;
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY(journey.waitForAudio(1));
        const int before = int(journey.rows(stationList).size());
        QVERIFY(openMenuEntry(journey, createEntry));
        QVERIFY(journey.waitForScreen(QStringLiteral("CreateStationDlg")));
        QCOMPARE(journey.label(QStringLiteral("searchLabelLineEdit")), QStringLiteral("Artist Or Track"));
        // "t" on the on-screen keyboard: four to the right; then Done: up to the last row, around to its end.
        QVERIFY(journey.key({QStringLiteral("right"), QStringLiteral("right"), QStringLiteral("right"),
                             QStringLiteral("right"), QStringLiteral("select")}));
        QVERIFY(journey.waitFor([](const QJsonObject &now) {
            return now.value(QStringLiteral("labels")).toObject().value(QStringLiteral("searchLabelLineEdit"))
                == QStringLiteral("t");
        }));
        journey.screenshot(QStringLiteral("create-typing"));
        QVERIFY(journey.key({QStringLiteral("up"), QStringLiteral("left"), QStringLiteral("left"), QStringLiteral("left"),
                             QStringLiteral("select")}));
        QVERIFY(journey.waitForBox(QStringLiteral("We found ")));
        QVERIFY(journey.key({QStringLiteral("left"), QStringLiteral("select")})); // Artist
        QVERIFY(journey.waitFor(
            [](const QJsonObject &now) { return count(now, QStringLiteral("searchResultListWidget")) > 1; }));
        QCOMPARE(journey.status().value(QStringLiteral("focus")).toString(), QStringLiteral("searchResultListWidget"));
        QVERIFY(journey.key({QStringLiteral("down")}));
        journey.screenshot(QStringLiteral("create-results"));
        const QString chosen = journey.rows(QStringLiteral("searchResultListWidget")).at(1);
        QTest::qWait(150); // the list answers to Select a moment after it came up
        QVERIFY(journey.key({QStringLiteral("select")}));
        QVERIFY(journey.waitFor([&](const QJsonObject &now) { return isPlaying(now) && count(now, stationList) == before + 1; }));
        QVERIFY(journey.label(QStringLiteral("stationNameLabel")).contains(chosen.left(15)));
        QVERIFY(journey.waitForAudio(2));
    }

    void aStationGetsANewNameAndKeepsIt()
    {
        Journey journey;
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY(journey.waitForAudio(1));
        QVERIFY(journey.key({QStringLiteral("top"), QStringLiteral("down"), QStringLiteral("down"), QStringLiteral("select")}));
        QVERIFY(journey.waitFor(isPlaying));
        QVERIFY(openMenuEntry(journey, renameEntry));
        QVERIFY(journey.waitForBox(QStringLiteral("Are you sure you want to rename station: \n")));
        QVERIFY(journey.key({QStringLiteral("left"), QStringLiteral("select")}));
        QVERIFY(journey.waitForScreen(QStringLiteral("RenameStationDlg")));
        // Clear, then a name typed on a PC keyboard; Enter confirms it.
        QVERIFY(journey.key({QStringLiteral("up"), QStringLiteral("select")}));
        QVERIFY(journey.key({QStringLiteral("text"), QString::fromUtf8("Größer als Rain")}));
        QVERIFY(journey.key({QStringLiteral("enter")}));
        QVERIFY(journey.waitForBox(QString::fromUtf8("Are you sure you want to rename this station as: \nGrößer als Rain?")));
        QVERIFY(journey.key({QStringLiteral("left"), QStringLiteral("select")}));
        QVERIFY(journey.waitFor([&](const QJsonObject &now) { return isPlaying(now); }));
        QVERIFY(journey.rows(stationList).contains(QString::fromUtf8("Größer als Rain")));
        QVERIFY(journey.waitForAudio(1));
    }

    void aServiceUnderMaintenanceSaysSoAndNothingIsLost()
    {
        Journey::Options options;
        options.serverOptions = {QStringLiteral("--fail"), QStringLiteral("createStation=5096")};
        Journey journey(options);
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY(journey.waitForAudio(1));
        QVERIFY(openMenuEntry(journey, createEntry));
        QVERIFY(journey.waitForScreen(QStringLiteral("CreateStationDlg")));
        QVERIFY(journey.key({QStringLiteral("text"), QStringLiteral("e")}));
        QVERIFY(journey.key({QStringLiteral("enter")}));
        QVERIFY(journey.waitForBox(QStringLiteral("We found ")));
        QVERIFY(journey.key({QStringLiteral("select")})); // Track
        QVERIFY(journey.waitFor(
            [](const QJsonObject &now) { return count(now, QStringLiteral("searchResultListWidget")) > 1; }));
        QTest::qWait(150);
        QVERIFY(journey.key({QStringLiteral("select")}));
        QVERIFY(journey.waitForBox(QStringLiteral("Velmora is conducting system maintenance.")));
        QVERIFY(journey.key({QStringLiteral("select")}));
        QVERIFY(journey.waitForNoBox());
        QVERIFY(count(journey.last(), QStringLiteral("searchResultListWidget")) > 1);
        QVERIFY(journey.key({QStringLiteral("back")}));
        QVERIFY(journey.waitForScreen(QStringLiteral("VelmoraMainDlg")));
        QVERIFY(journey.waitForAudio(1));
    }
};

QTEST_GUILESS_MAIN(StationJourney)
#include "station_journey.moc"
