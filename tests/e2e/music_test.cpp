// An owner's folder of files becomes a station: scanned, typed, heard, rated, explained.

#include "e2e/journey.h"

#include <QDirIterator>

namespace {

const QString stationList = QStringLiteral("stationListWidget");

constexpr int createEntry = 6;
constexpr int whyEntry = 3; // from the first one downwards

} // namespace

class MusicJourney : public QObject {
    Q_OBJECT
private slots:
    void aFolderIsScannedAndAnArtistOfItIsTypedHeardRatedAndExplained()
    {
        // The house is let in: everything comes through TLS, with the service's own certificate.
        Journey journey({.serverOptions = {"--house", "--no-demo", "--demo-account", "--music", "ROOT/music"}});
        const QDir music(journey.root() + "/music");
        const QString from = QStringLiteral(JOURNEY_LIBRARY "/demo/music");
        QStringList files;
        QDirIterator found(from, {"*.flac", "*.png"}, QDir::Files, QDirIterator::Subdirectories);
        while (found.hasNext())
            files.append(found.next().mid(from.size() + 1));
        QVERIFY(files.size() > 24);
        const QString late = QStringLiteral("The Teaspoon Five");
        const auto copy = [&](bool isLate) {
            for (const QString &file : files) {
                const QString to = music.filePath(file);
                if (file.startsWith(late) == isLate &&
                    (!QDir().mkpath(QFileInfo(to).path()) || !QFile::copy(from + "/" + file, to)))
                    return false;
            }
            return true;
        };
        QVERIFY(copy(false));
        QVERIFY2(journey.startPlaying(), qPrintable(journey.problem()));
        QVERIFY2(!journey.serverReport().contains("demo catalogue"), "the music is the folder's alone");
        QVERIFY2(journey.serverUrl().startsWith("https://"), qPrintable(journey.serverUrl()));

        // Another artist comes into the folder while the radio plays.
        const int before = int(journey.rows(stationList).size());
        QVERIFY(copy(true));
        QVERIFY(journey.waitFor(
            [&](const QJsonObject &) { return journey.serverReport().contains("music: 24 files, 24 of"); }));
        QVERIFY(journey.openMenuEntry(createEntry));
        QVERIFY(journey.waitForScreen("CreateStationDlg"));
        QVERIFY(journey.key({"text", "Teaspoon"}));
        QVERIFY(journey.key({"enter"}));
        // No track is called so: the artists are shown at once.
        QVERIFY(
            journey.waitFor([](const QJsonObject &now) { return Journey::count(now, "searchResultListWidget") > 0; }));
        QVERIFY(journey.rows("searchResultListWidget").contains(late));
        QVERIFY(journey.keyUntil("select", [](const QJsonObject &now) {
            return now.value("screen").toString() != QLatin1String("CreateStationDlg");
        }));
        QVERIFY(journey.waitFor([&](const QJsonObject &now) {
            return Journey::isPlaying(now) && Journey::count(now, stationList) >= before + 1 &&
                   now.value("labels").toObject().value("stationNameLabel").toString().contains(late);
        }));
        QVERIFY(journey.waitForAudio(2));
        QVERIFY2(!journey.label("albumLabel").isEmpty(), "no advertisement");
        journey.screenshot("own-music");

        for (int i = 0; i < 8 && journey.status().value("focus").toString() != stationList; ++i)
            QVERIFY(journey.key({"left"}));
        QVERIFY(journey.openMenuEntry(0));
        QVERIFY(journey.answerBox("Add bookmark successful!", {"select"}));
        QVERIFY(journey.waitFor(Journey::isPlaying));
        QVERIFY(journey.key({"select"}));
        QVERIFY(journey.waitForScreen("MenuDlg"));
        QVERIFY(journey.key(QStringList(whyEntry, "down") + QStringList("select")));
        QVERIFY(journey.waitForScreen("WhyDlg"));
        QVERIFY(journey.label("whyLabel").contains(" because it features "));
        journey.screenshot("own-music-why");
        QVERIFY(journey.key({"select"}));
        QVERIFY(journey.waitFor(Journey::isPlaying));
        QVERIFY(journey.key({"green"}));
        QVERIFY(journey.waitFor([&](const QJsonObject &) { return journey.serverReport().contains("addFeedback 0"); }));
        QVERIFY(journey.waitForAudio(1));
    }
};

QTEST_GUILESS_MAIN(MusicJourney)
#include "music_test.moc"
