// A new account made on the activation page: the radio shows a code, a browser without scripts types it, Continue plays.

#include "e2e/journey.h"
#include "e2e/webdriver.h"

#include <QDir>
#include <QRegularExpression>

namespace {

QString codeOf(const QString &line)
{
    static const QRegularExpression code(QStringLiteral("is:    ([A-Z0-9]{8})$"));
    return code.match(line).captured(1);
}

bool openActivation(Journey &journey)
{
    return journey.waitForScreen(QStringLiteral("WelcomeDlg")) && journey.key({QStringLiteral("select")})
        && journey.waitForBox(QStringLiteral("Do you already have a Velmora account ? "))
        && journey.key({QStringLiteral("right"), QStringLiteral("select")})
        && journey.waitForScreen(QStringLiteral("InternetRadioDlg"));
}

} // namespace

class ActivationJourney : public QObject {
    Q_OBJECT
private slots:
    void theCodeOnTheScreenTypedIntoTheBrowserEndsInMusic()
    {
        Journey::Options options;
        options.isSetUp = false;
        Journey journey(options);
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY(openActivation(journey));
        QCOMPARE(journey.label(QStringLiteral("descriptionLabel")),
                 QStringLiteral("Please go to    ") + journey.serverUrl() + QStringLiteral("/activate"));
        const QString first = codeOf(journey.label(QStringLiteral("descriptionLabel3")));
        QCOMPARE(first.size(), 8);
        // Continue before the page was used: a new code, and the old one is still good.
        QVERIFY(journey.key({QStringLiteral("select")}));
        QVERIFY(journey.waitForBox(QStringLiteral("Please activate your device to continue.")));
        QVERIFY(journey.key({QStringLiteral("select")}));
        QVERIFY(journey.waitFor([&](const QJsonObject &) {
            const QString code = codeOf(journey.label(QStringLiteral("descriptionLabel3")));
            return !code.isEmpty() && code != first;
        }));

        WebDriver browser;
        QVERIFY2(browser.start(), qPrintable(browser.problem()));
        QVERIFY(browser.open(journey.serverUrl() + QStringLiteral("/activate")));
        QDir().mkpath(QStringLiteral(JOURNEY_PICTURES));
        browser.screenshot(QStringLiteral(JOURNEY_PICTURES "/activate-page.png"));
        QVERIFY(browser.type(QStringLiteral("input[name=code]"), QStringLiteral("WRONGONE")));
        QVERIFY(browser.click(QStringLiteral("button")));
        QTRY_VERIFY_WITH_TIMEOUT(
            browser.text(QStringLiteral(".error")).startsWith(QStringLiteral("This code is not valid")), 20000);
        QVERIFY(browser.type(QStringLiteral("input[name=code]"), first.toLower()));
        QVERIFY(browser.click(QStringLiteral("button")));
        QVERIFY2(browser.type(QStringLiteral("form:last-of-type input[name=email]"), QStringLiteral("new@house.example")),
                 qPrintable(browser.text(QStringLiteral("main"))));
        QVERIFY(browser.type(QStringLiteral("form:last-of-type input[name=password]"),
                             QStringLiteral("eleven red kettles")));
        browser.screenshot(QStringLiteral(JOURNEY_PICTURES "/account-page.png"));
        QVERIFY(browser.click(QStringLiteral("button[value=create]")));
        QTRY_COMPARE_WITH_TIMEOUT(browser.text(QStringLiteral("h1")), QStringLiteral("Allow this radio?"), 20000);
        QVERIFY(browser.click(QStringLiteral("button")));
        QTRY_COMPARE_WITH_TIMEOUT(browser.text(QStringLiteral("h1")), QStringLiteral("Done"), 20000);
        browser.screenshot(QStringLiteral(JOURNEY_PICTURES "/done-page.png"));

        QVERIFY(journey.key({QStringLiteral("select")})); // Continue
        // A new account has Tapestry, which plays.
        QVERIFY(journey.waitForScreen(QStringLiteral("VelmoraMainDlg"), 40));
        QVERIFY(journey.waitForAudio(1));
        QCOMPARE(journey.label(QStringLiteral("userNameLabel")), QStringLiteral("new@house.example"));

        // The account page takes the access away again.
        QVERIFY(browser.open(journey.serverUrl() + QStringLiteral("/account")));
        QVERIFY(browser.text(QStringLiteral(".device p")).contains(QStringLiteral("-0, since")));
        QVERIFY(browser.click(QStringLiteral(".device button")));
        QTRY_VERIFY_WITH_TIMEOUT(browser.text(QStringLiteral(".device p")).isEmpty(), 20000);
        QVERIFY(!journey.serverReport().contains(first));
        QVERIFY(!journey.radioReport().contains(QStringLiteral("eleven red kettles")));
    }

    void aForgottenPasswordIsReplacedThroughTheLinkOfTheReminder()
    {
        const QString fresh = QStringLiteral("four grey herons");
        Journey::Options options;
        options.isSetUp = false;
        Journey journey(options);
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY2(journey.createAccount(QStringLiteral("third@house.example"), QStringLiteral("long forgotten")),
                 qPrintable(journey.problem()));
        const QString link = journey.reminderLink(QStringLiteral("third@house.example"));
        QVERIFY(link.startsWith(journey.serverUrl()));
        WebDriver browser;
        QVERIFY2(browser.start(), qPrintable(browser.problem()));
        QVERIFY(browser.open(link));
        QVERIFY(browser.type(QStringLiteral("input[name=new]"), fresh));
        QVERIFY(browser.click(QStringLiteral("button")));
        QTRY_COMPARE_WITH_TIMEOUT(browser.text(QStringLiteral("h1")), QStringLiteral("The password was changed"), 20000);
        QVERIFY(browser.open(link)); // it opens once
        QTRY_COMPARE_WITH_TIMEOUT(browser.text(QStringLiteral("h1")), QStringLiteral("Too late"), 20000);

        QVERIFY(journey.waitForScreen(QStringLiteral("WelcomeDlg")));
        QVERIFY(journey.key({QStringLiteral("select")}));
        QVERIFY(journey.waitForBox(QStringLiteral("Do you already have a Velmora account ? ")));
        QVERIFY(journey.key({QStringLiteral("left"), QStringLiteral("select")}));
        QVERIFY(journey.waitForScreen(QStringLiteral("SignInDlg")));
        QVERIFY(journey.key({QStringLiteral("text"), QStringLiteral("third@house.example"), QStringLiteral("enter"),
                             QStringLiteral("text"), fresh, QStringLiteral("enter")}));
        QVERIFY(journey.waitForScreen(QStringLiteral("VelmoraMainDlg")));
        QVERIFY(journey.waitForAudio(1));
    }
};

QTEST_GUILESS_MAIN(ActivationJourney)
#include "activation_journey.moc"
