// A telephone's browser as remote control of the real radio, through the real service.

#include "e2e/journey.h"
#include "e2e/webdriver.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

namespace {

QStringList demoAccount(const Journey &journey)
{
    QFile file(journey.root() + QStringLiteral("/server/demo-account.txt"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

bool signIn(WebDriver &browser, const Journey &journey)
{
    return browser.open(journey.serverUrl() + QStringLiteral("/account")) &&
           browser.type("input[name=email]", demoAccount(journey).value(0)) &&
           browser.type("input[name=password]", demoAccount(journey).value(1)) && browser.click("button");
}

} // namespace

class RemoteJourney : public QObject {
    Q_OBJECT
private slots:
    void theTelephonePressesChoosesAndTypes()
    {
        const QString secret = QStringLiteral("nine blue ladders");
        Journey journey;
        QVERIFY2(journey.startPlaying(), qPrintable(journey.problem()));
        WebDriver phone;
        QVERIFY2(phone.start(true), qPrintable(phone.problem()));
        QVERIFY(signIn(phone, journey));
        QTRY_COMPARE_WITH_TIMEOUT(phone.text("h1"), QStringLiteral("Your account"), 20000);
        QVERIFY(phone.open(journey.serverUrl() + QStringLiteral("/remote")));
        QTRY_COMPARE_WITH_TIMEOUT(phone.text("#station"), journey.label("stationNameLabel"), 20000);
        QVERIFY(!phone.text("#title").isEmpty());
        QDir().mkpath(QStringLiteral(JOURNEY_PICTURES));
        phone.screenshot(QStringLiteral(JOURNEY_PICTURES "/remote-page.png"));

        QVERIFY(phone.click("button.pause"));
        QVERIFY(journey.waitFor([](const QJsonObject &now) { return now.value("playback") == 6; }));
        QVERIFY(phone.click("button.pause"));
        QVERIFY(journey.waitFor(&Journey::isPlaying));
        QVERIFY(phone.click("button.volumedown"));
        QTRY_COMPARE_WITH_TIMEOUT(phone.text("#volume"), QStringLiteral("95"), 20000);
        const QString last = phone.text("#stationlist button:last-child");
        QVERIFY(last != journey.label("stationNameLabel"));
        QVERIFY(phone.click("#stationlist button:last-child"));
        QVERIFY(journey.waitFor(
            [&](const QJsonObject &now) { return now.value("labels").toObject().value("stationNameLabel") == last; }));
        QTRY_COMPARE_WITH_TIMEOUT(phone.text("#station"), last, 20000);

        // The telephone's keyboard types where the radio is typed in; a password is seen nowhere.
        QVERIFY(journey.openMenuEntry(3) && journey.waitForScreen("SelectUserDlg"));
        QVERIFY(journey.key({"up", "select"}));
        QVERIFY(journey.answerBox("Do you already have a Velmora account ? ", {"left", "select"}));
        QVERIFY(journey.waitForScreen("SignInDlg"));
        QTRY_VERIFY_WITH_TIMEOUT(phone.attribute("#typing", "hidden").isEmpty(), 20000);
        QVERIFY(phone.type("#text", "second@house.example"));
        QVERIFY(journey.waitFor([](const QJsonObject &now) {
            return now.value("labels").toObject().value("emailLineEdit") == QLatin1String("second@house.example");
        }));
        QVERIFY(phone.click("button[name=done]"));
        QTRY_COMPARE_WITH_TIMEOUT(phone.attribute("#text", "type"), QStringLiteral("password"), 20000);
        QVERIFY(phone.type("#text", secret));
        QVERIFY(phone.click("button[name=done]"));
        QVERIFY(journey.answerBox("Invalid username or password, please try again.", {"select"}));
        for (const QString &report :
             {journey.radioReport(), journey.serverReport(), QString::fromUtf8(QJsonDocument(journey.last()).toJson())})
            QVERIFY(!report.contains(secret) && !report.contains(secret.left(4)));

        // A session that ends takes its telephone with it.
        WebDriver other;
        QVERIFY2(other.start(), qPrintable(other.problem()));
        QVERIFY(signIn(other, journey));
        QTRY_COMPARE_WITH_TIMEOUT(other.text("h1"), QStringLiteral("Your account"), 20000);
        QVERIFY(other.open(journey.serverUrl() + QStringLiteral("/account/access")));
        QVERIFY(other.click("button[value='*']"));
        QTRY_VERIFY_WITH_TIMEOUT(phone.text("#note").startsWith("You are signed out"), 20000);
    }

    void aFirstStartWithAnAccountTakesThreePressesOfTheRadiosRemote_data()
    {
        QTest::addColumn<bool>("isFirefox");
        QTest::newRow("Chromium") << false;
        QTest::newRow("Firefox") << true;
    }
    void aFirstStartWithAnAccountTakesThreePressesOfTheRadiosRemote()
    {
        QFETCH(bool, isFirefox);
        Journey journey({.isSetUp = false});
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY(journey.waitForScreen("WelcomeDlg"));
        QVERIFY(journey.key({"select"}));                                                            // one
        QVERIFY(journey.answerBox("Do you already have a Velmora account ? ", {"right", "select"})); // three
        QVERIFY(journey.waitForScreen("InternetRadioDlg"));
        static const QRegularExpression code("is:    ([A-Z0-9]{8})$");
        const QString shown = code.match(journey.label("descriptionLabel3")).captured(1);
        WebDriver phone(isFirefox ? WebDriver::Browser::Firefox : WebDriver::Browser::Chromium);
        QVERIFY2(phone.start(true), qPrintable(phone.problem()));
        QVERIFY(phone.open(journey.serverUrl() + QStringLiteral("/activate")));
        QVERIFY(phone.type("input[name=code]", shown) && phone.click("button"));
        QVERIFY(phone.type("input[name=email]", demoAccount(journey).value(0)));
        QVERIFY(phone.type("input[name=password]", demoAccount(journey).value(1)));
        QVERIFY(phone.click("button") && phone.click("button[value=allow]"));
        QVERIFY(phone.click("a[href='/remote']"));
        // The rest is the telephone's: Continue.
        QTRY_COMPARE_WITH_TIMEOUT(phone.text("#focus").isEmpty(), false, 20000);
        QVERIFY(phone.click("button.select"));
        QVERIFY(journey.waitForScreen("VelmoraMainDlg", 40));
        QVERIFY(journey.waitForAudio(1));
    }
};

QTEST_GUILESS_MAIN(RemoteJourney)
#include "remote_test.moc"
