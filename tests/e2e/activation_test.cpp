// A new account from the activation page: the radio shows a code, a browser without scripts enters it, and Continue
// starts the music.

#include "e2e/journey.h"
#include "e2e/webdriver.h"

#include <QDir>
#include <QRegularExpression>

namespace {

QString codeOf(const QString &line)
{
    static const QRegularExpression code("is:    ([A-Z0-9]{8})$");
    return code.match(line).captured(1);
}

} // namespace

class ActivationJourney : public QObject {
    Q_OBJECT
private slots:
    void theCodeOnTheScreenTypedIntoTheBrowserEndsInMusic()
    {
        Journey journey({.isSetUp = false});
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY(journey.leaveWelcome("right", "InternetRadioDlg"));
        QCOMPARE(journey.label("descriptionLabel"),
                 QStringLiteral("Please go to    ") + journey.serverUrl() + QStringLiteral("/activate"));
        const QString first = codeOf(journey.label("descriptionLabel3"));
        QCOMPARE(first.size(), 8);
        // Continue before the page was used shows a new code; the old code stays valid.
        QVERIFY(journey.key({"select"}));
        QVERIFY(journey.answerBox("Please activate your device to continue.", {"select"}));
        QVERIFY(journey.waitFor([&](const QJsonObject &) {
            const QString code = codeOf(journey.label("descriptionLabel3"));
            return !code.isEmpty() && code != first;
        }));

        WebDriver browser;
        QVERIFY2(browser.start(), qPrintable(browser.problem()));
        QVERIFY(browser.open(journey.serverUrl() + QStringLiteral("/activate")));
        QDir().mkpath(QStringLiteral(JOURNEY_PICTURES));
        browser.screenshot(QStringLiteral(JOURNEY_PICTURES "/activate-page.png"));
        QVERIFY(browser.type("input[name=code]", "WRONGONE"));
        QVERIFY(browser.click("button"));
        QTRY_VERIFY_WITH_TIMEOUT(browser.text(".error").startsWith("This code is not valid"), 20000);
        QVERIFY(browser.type("input[name=code]", first.toLower()));
        QVERIFY(browser.click("button"));
        QVERIFY2(browser.type("form:last-of-type input[name=email]", "new@house.example"),
                 qPrintable(browser.text("main")));
        QVERIFY(browser.type("form:last-of-type input[name=password]", "eleven red kettles"));
        browser.screenshot(QStringLiteral(JOURNEY_PICTURES "/account-page.png"));
        QVERIFY(browser.click("button[value=create]"));
        QTRY_COMPARE_WITH_TIMEOUT(browser.text("h1"), QStringLiteral("Look into your mail"), 20000);
        browser.screenshot(QStringLiteral(JOURNEY_PICTURES "/mail-page.png"));
        QVERIFY(browser.open(journey.mailedLink("new@house.example", "confirm")));
        QVERIFY(browser.click("button"));
        QTRY_COMPARE_WITH_TIMEOUT(browser.text("h1"), QStringLiteral("Allow this radio?"), 20000);
        browser.screenshot(QStringLiteral(JOURNEY_PICTURES "/allow-page.png"));
        QVERIFY(browser.click("button[value=allow]"));
        QTRY_COMPARE_WITH_TIMEOUT(browser.text("h1"), QStringLiteral("Done"), 20000);
        browser.screenshot(QStringLiteral(JOURNEY_PICTURES "/done-page.png"));

        QVERIFY(journey.key({"select"})); // Continue
        // A new account has its starter stations and Tapestry, which plays.
        QVERIFY(journey.waitForScreen("VelmoraMainDlg", 40));
        QVERIFY(journey.waitForAudio(1));
        QCOMPARE(journey.label("userNameLabel"), QStringLiteral("new@house.example"));

        // The account page revokes the access.
        QVERIFY(browser.open(journey.serverUrl() + QStringLiteral("/account")));
        QVERIFY(browser.text(".hint").contains("-0, since"));
        QVERIFY(browser.click("button[value=remove]"));
        QTRY_COMPARE_WITH_TIMEOUT(browser.text("h1"), QStringLiteral("Remove this radio?"), 20000);
        QVERIFY(browser.click("button"));
        QTRY_COMPARE_WITH_TIMEOUT(browser.text("h1"), QStringLiteral("Your account"), 20000);
        QVERIFY(browser.text("button[value=remove]").isEmpty());
        QVERIFY(!journey.serverReport().contains(first));
        QVERIFY(!journey.radioReport().contains("eleven red kettles"));
    }

    void aForgottenPasswordIsReplacedThroughTheLinkOfTheReminder()
    {
        const QString fresh = QStringLiteral("four grey herons");
        Journey journey({.isSetUp = false});
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY2(journey.createAccount("third@house.example", "long forgotten"), qPrintable(journey.problem()));
        const QString link = journey.reminderLink("third@house.example");
        QVERIFY(link.startsWith(journey.serverUrl()));
        WebDriver browser;
        QVERIFY2(browser.start(), qPrintable(browser.problem()));
        QVERIFY(browser.open(link));
        QVERIFY(browser.type("input[name=new]", fresh));
        QVERIFY(browser.click("button"));
        QTRY_COMPARE_WITH_TIMEOUT(browser.text("h1"), QStringLiteral("The password was changed"), 20000);
        QVERIFY(browser.open(link)); // the link works once
        QTRY_COMPARE_WITH_TIMEOUT(browser.text("h1"), QStringLiteral("Too late"), 20000);

        QVERIFY(journey.leaveWelcome("left", "SignInDlg"));
        QVERIFY(journey.key({"text", "third@house.example", "enter", "text", fresh, "enter"}));
        QVERIFY(journey.waitForScreen("VelmoraMainDlg"));
        QVERIFY(journey.waitForAudio(1));
    }
};

QTEST_GUILESS_MAIN(ActivationJourney)
#include "activation_test.moc"
