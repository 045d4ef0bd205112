// New stations and new names, typed with five keys.

#include "e2e/journey.h"

namespace {

const QString stationList = QStringLiteral("stationListWidget");
const QString history = QStringLiteral("playListWidget");

constexpr int createEntry = 6;
constexpr int renameEntry = 4;

} // namespace

class StationJourney : public QObject {
    Q_OBJECT
private slots:
    void anArtistIsTypedChosenAndHeard()
    {
        Journey journey;
        QVERIFY2(journey.startPlaying(), qPrintable(journey.problem()));
        const int before = int(journey.rows(stationList).size());
        QVERIFY(journey.openMenuEntry(createEntry));
        QVERIFY(journey.waitForScreen("CreateStationDlg"));
        QCOMPARE(journey.label("searchLabelLineEdit"), QStringLiteral("Artist Or Track"));
        // "t" on the on-screen keyboard: four to the right; then Done: up to the last row, around to its end.
        QVERIFY(journey.key({"right", "right", "right", "right", "select"}));
        QVERIFY(journey.waitFor([](const QJsonObject &now) {
            return now.value("labels").toObject().value("searchLabelLineEdit") == QStringLiteral("t");
        }));
        journey.screenshot("create-typing");
        QVERIFY(journey.key({"up", "left", "left", "left", "select"}));
        QVERIFY(journey.answerBox("We found ", {"left", "select"})); // Artist
        QVERIFY(
            journey.waitFor([](const QJsonObject &now) { return Journey::count(now, "searchResultListWidget") > 1; }));
        QCOMPARE(journey.status().value("focus").toString(), QStringLiteral("searchResultListWidget"));
        QVERIFY(journey.key({"down"}));
        journey.screenshot("create-results");
        const QString chosen = journey.rows("searchResultListWidget").at(1);
        QVERIFY(journey.keyUntil("select", [](const QJsonObject &now) {
            return now.value("screen").toString() != QLatin1String("CreateStationDlg");
        }));
        QVERIFY(journey.waitFor([&](const QJsonObject &now) {
            const QString station = now.value("labels").toObject().value("stationNameLabel").toString();
            return Journey::isPlaying(now) && Journey::count(now, stationList) == before + 1 &&
                   station.contains(chosen.left(15));
        }));
        QVERIFY(journey.waitForAudio(2));
    }

    void aStationGetsANewNameAndKeepsIt()
    {
        Journey journey;
        QVERIFY2(journey.startPlaying(), qPrintable(journey.problem()));
        QVERIFY(journey.key({"top", "down", "down", "select"}));
        // A second track in the history shows that the chosen station plays, no longer the previous one.
        QVERIFY(journey.waitFor(
            [](const QJsonObject &now) { return Journey::isPlaying(now) && Journey::count(now, history) >= 2; }));
        QVERIFY(journey.openMenuEntry(renameEntry));
        QVERIFY(journey.answerBox("Are you sure you want to rename station: \n", {"left", "select"}));
        QVERIFY(journey.waitForScreen("RenameStationDlg"));
        // Clear, then a name typed on a PC keyboard; Enter confirms it.
        QVERIFY(journey.key({"up", "select"}));
        QVERIFY(journey.key({"text", QString::fromUtf8("Größer als Rain")}));
        QVERIFY(journey.key({"enter"}));
        QVERIFY(
            journey.answerBox(QString::fromUtf8("Are you sure you want to rename this station as: \nGrößer als Rain?"),
                              {"left", "select"}));
        QVERIFY(journey.waitFor(Journey::isPlaying));
        QVERIFY(journey.rows(stationList).contains(QString::fromUtf8("Größer als Rain")));
        QVERIFY(journey.waitForAudio(1));
    }

    void maintenanceIsReportedAndNothingIsLost()
    {
        Journey journey({.serverOptions = {"--fail", "createStation=5096"}});
        QVERIFY2(journey.startPlaying(), qPrintable(journey.problem()));
        QVERIFY(journey.openMenuEntry(createEntry));
        QVERIFY(journey.waitForScreen("CreateStationDlg"));
        QVERIFY(journey.key({"text", "e"}));
        QVERIFY(journey.key({"enter"}));
        QVERIFY(journey.answerBox("We found ", {"select"})); // Track
        QVERIFY(
            journey.waitFor([](const QJsonObject &now) { return Journey::count(now, "searchResultListWidget") > 1; }));
        QVERIFY(journey.keyUntil("select", [](const QJsonObject &now) { return now.value("box").isString(); }));
        QVERIFY(journey.answerBox("Velmora is conducting system maintenance.", {"select"}));
        QVERIFY(journey.waitForNoBox());
        QVERIFY(Journey::count(journey.last(), "searchResultListWidget") > 1);
        QVERIFY(journey.key({"back"}));
        QVERIFY(journey.waitForScreen("VelmoraMainDlg"));
        QVERIFY(journey.waitForAudio(1));
    }
};

QTEST_GUILESS_MAIN(StationJourney)
#include "station_test.moc"
