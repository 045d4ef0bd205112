// New stations and new names, typed with five keys.

#include "e2e/journey.h"

namespace {

const QString stationList = QStringLiteral("stationListWidget");
const QString history = QStringLiteral("playListWidget");

int count(const QJsonObject &now, const QString &list)
{
    return now.value("lists").toObject().value(list).toObject().value("count").toInt();
}

bool isPlaying(const QJsonObject &now)
{
    return now.value("playback").toInt() == 5 && now.value("screen").toString() == QLatin1String("VelmoraMainDlg") &&
           now.value("box").isNull();
}

bool openMenuEntry(Journey &journey, int upFromTop)
{
    if (!journey.waitFor(isPlaying) || !journey.key({"right", "select"}) || !journey.waitForScreen("MenuDlg"))
        return false;
    return journey.key(QStringList(upFromTop, "up") + QStringList("select"));
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
        QVERIFY(journey.waitForScreen("CreateStationDlg"));
        QCOMPARE(journey.label("searchLabelLineEdit"), QStringLiteral("Artist Or Track"));
        // "t" on the on-screen keyboard: four to the right; then Done: up to the last row, around to its end.
        QVERIFY(journey.key({"right", "right", "right", "right", "select"}));
        QVERIFY(journey.waitFor([](const QJsonObject &now) {
            return now.value("labels").toObject().value("searchLabelLineEdit") == QStringLiteral("t");
        }));
        journey.screenshot("create-typing");
        QVERIFY(journey.key({"up", "left", "left", "left", "select"}));
        QVERIFY(journey.waitForBox("We found "));
        QVERIFY(journey.key({"left", "select"})); // Artist
        QVERIFY(journey.waitFor([](const QJsonObject &now) { return count(now, "searchResultListWidget") > 1; }));
        QCOMPARE(journey.status().value("focus").toString(), QStringLiteral("searchResultListWidget"));
        QVERIFY(journey.key({"down"}));
        journey.screenshot("create-results");
        const QString chosen = journey.rows("searchResultListWidget").at(1);
        QTest::qWait(150); // the list answers to Select a moment after it came up
        QVERIFY(journey.key({"select"}));
        QVERIFY(journey.waitFor(
            [&](const QJsonObject &now) { return isPlaying(now) && count(now, stationList) == before + 1; }));
        QVERIFY(journey.label("stationNameLabel").contains(chosen.left(15)));
        QVERIFY(journey.waitForAudio(2));
    }

    void aStationGetsANewNameAndKeepsIt()
    {
        Journey journey;
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY(journey.waitForAudio(1));
        QVERIFY(journey.key({"top", "down", "down", "select"}));
        // A second track in the history: the chosen station plays, not still the one before.
        QVERIFY(journey.waitFor([](const QJsonObject &now) { return isPlaying(now) && count(now, history) >= 2; }));
        QVERIFY(openMenuEntry(journey, renameEntry));
        QVERIFY(journey.waitForBox("Are you sure you want to rename station: \n"));
        QVERIFY(journey.key({"left", "select"}));
        QVERIFY(journey.waitForScreen("RenameStationDlg"));
        // Clear, then a name typed on a PC keyboard; Enter confirms it.
        QVERIFY(journey.key({"up", "select"}));
        QVERIFY(journey.key({"text", QString::fromUtf8("Größer als Rain")}));
        QVERIFY(journey.key({"enter"}));
        QVERIFY(journey.waitForBox(
            QString::fromUtf8("Are you sure you want to rename this station as: \nGrößer als Rain?")));
        QVERIFY(journey.key({"left", "select"}));
        QVERIFY(journey.waitFor([&](const QJsonObject &now) { return isPlaying(now); }));
        QVERIFY(journey.rows(stationList).contains(QString::fromUtf8("Größer als Rain")));
        QVERIFY(journey.waitForAudio(1));
    }

    void aServiceUnderMaintenanceSaysSoAndNothingIsLost()
    {
        Journey::Options options;
        options.serverOptions = {"--fail", "createStation=5096"};
        Journey journey(options);
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY(journey.waitForAudio(1));
        QVERIFY(openMenuEntry(journey, createEntry));
        QVERIFY(journey.waitForScreen("CreateStationDlg"));
        QVERIFY(journey.key({"text", "e"}));
        QVERIFY(journey.key({"enter"}));
        QVERIFY(journey.waitForBox("We found "));
        QVERIFY(journey.key({"select"})); // Track
        QVERIFY(journey.waitFor([](const QJsonObject &now) { return count(now, "searchResultListWidget") > 1; }));
        QTest::qWait(150);
        QVERIFY(journey.key({"select"}));
        QVERIFY(journey.waitForBox("Velmora is conducting system maintenance."));
        QVERIFY(journey.key({"select"}));
        QVERIFY(journey.waitForNoBox());
        QVERIFY(count(journey.last(), "searchResultListWidget") > 1);
        QVERIFY(journey.key({"back"}));
        QVERIFY(journey.waitForScreen("VelmoraMainDlg"));
        QVERIFY(journey.waitForAudio(1));
    }
};

QTEST_GUILESS_MAIN(StationJourney)
#include "station_journey.moc"
