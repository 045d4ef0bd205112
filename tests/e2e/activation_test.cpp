// A new account from the activation page: the radio shows a code, a browser without scripts enters it, and Continue
// starts the music.

#include "e2e/journey.h"
#include "e2e/webdriver.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSize>

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
        QVERIFY(
            browser.type("input[name=code]", QString(QChar(0xE009)) + QChar(u'a') + QChar(0xE000) + first.toLower()));
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

    // Each page, on a telephone and a desktop, dark and light: nothing for axe to find, nothing beyond the screen's
    // edge also at twice the size, and every control within reach of the Tab key.
    void everyPageIsForEverybody()
    {
        Journey journey;
        QVERIFY2(journey.startPlaying(), qPrintable(journey.problem()));
        QFile axeFile(QStringLiteral(JOURNEY_AXE));
        QVERIFY2(axeFile.open(QIODevice::ReadOnly), "axe-core is not there: ./test fetches it");
        const QString axe = QString::fromUtf8(axeFile.readAll());
        QFile account(journey.root() + QStringLiteral("/server/demo-account.txt"));
        QVERIFY(account.open(QIODevice::ReadOnly));
        const QString name = QString::fromUtf8(account.readLine()).trimmed();
        const QString secret = QString::fromUtf8(account.readLine()).trimmed();
        QVERIFY(journey.createAccount("pages@house.example", "eleven red kettles"));
        const QString reset = journey.reminderLink("pages@house.example");

        WebDriver browser;
        QVERIFY2(browser.start(true), qPrintable(browser.problem()));
        const auto look = [&](const QString &page) {
            browser.execute(axe + QStringLiteral("; window.axe = axe;"));
            for (const bool isLight : {false, true}) {
                // Only colours depend on the scheme.
                const auto what = isLight ? QStringLiteral("{runOnly: ['color-contrast']}") : QStringLiteral("{}");
                for (const QSize size : {QSize(390, 844), QSize(1280, 800)}) {
                    browser.setScreen(size.width(), size.height(), isLight);
                    const QString found = browser
                                              .execute(QStringLiteral("const r = await axe.run(%1); return "
                                                                      "r.violations.map(v => v.id + ': ' + v.nodes.map("
                                                                      "n => n.html).join()).join('; ');")
                                                           .arg(what))
                                              .toString(QStringLiteral("no answer"));
                    QVERIFY2(found.isEmpty(), qPrintable(page + QStringLiteral(": ") + found));
                    if (size.width() == 390)
                        browser.screenshot(QStringLiteral(JOURNEY_PICTURES "/page-%1-%2.png")
                                               .arg(page, isLight ? QStringLiteral("light") : QStringLiteral("dark")));
                }
            }
            for (const QSize size : {QSize(195, 422), QSize(640, 400)}) { // twice the size
                browser.setScreen(size.width(), size.height(), false);
                QCOMPARE(browser
                             .execute("const page = document.scrollingElement; return page.scrollWidth - "
                                      "page.clientWidth;")
                             .toInt(),
                         0);
            }
            const int controls =
                browser
                    .execute("document.activeElement.blur(); window.seen = new Set(); addEventListener('focusin', e => "
                             "seen.add(e.target.type === 'radio' ? e.target.name : e.target)); "
                             "return new Set([...document.querySelectorAll('a[href], button, select, "
                             "input:not([type=hidden])')]"
                             ".filter(e => e.checkVisibility()).map(e => e.type === 'radio' ? e.name : e)).size;")
                    .toInt();
            QVERIFY(browser.press(QString(controls + 2, QChar(0xE004)))); // Tab
            QCOMPARE(browser.execute("return seen.size;").toInt(), controls);
        };
        const auto open = [&](const QString &page, const QString &picture) {
            QVERIFY(browser.open(page.startsWith("http") ? page : journey.serverUrl() + page));
            look(picture);
        };
        QDir().mkpath(QStringLiteral(JOURNEY_PICTURES));
        open(QStringLiteral("/"), QStringLiteral("front"));
        for (const char *page : {"help", "activate", "sign-up", "forgot", "account", "mistyped"})
            open(QStringLiteral("/%1").arg(page), page);
        open(reset, QStringLiteral("reset"));
        // The keyboard alone; what was wrong is beside its field, which has the focus.
        QVERIFY(browser.open(journey.serverUrl() + QStringLiteral("/account")));
        QVERIFY(browser.press(name + QChar(0xE004) + QStringLiteral("wrong one") + QChar(0xE007)));
        QTRY_COMPARE_WITH_TIMEOUT(browser.title(), QStringLiteral("Please check: Sign in - Velmora"), 20000);
        QCOMPARE(browser
                     .execute("return document.getElementById(document.activeElement.getAttribute("
                              "'aria-describedby')).textContent;")
                     .toString(),
                 QStringLiteral("The e-mail address or the password is not right."));
        look(QStringLiteral("refused"));
        QVERIFY(browser.open(journey.serverUrl() + QStringLiteral("/house"))); // and back to it
        QVERIFY(browser.press(name + QChar(0xE004) + secret + QChar(0xE007)));
        QTRY_COMPARE_WITH_TIMEOUT(browser.text("h1"), QStringLiteral("This service"), 20000);
        look(QStringLiteral("house"));
        for (const char *page : {"account", "account/access", "account/children", "account/data", "account/delete",
                                 "library", "library/mails", "remote"})
            open(QStringLiteral("/%1").arg(page), QString(page).replace('/', '-'));
        QVERIFY(!browser.text("#title").isEmpty());
        open(QStringLiteral("/remote?language=ar"), QStringLiteral("remote-ar"));
    }

    void aForgottenPasswordIsReplacedThroughTheLinkOfTheReminder()
    {
        const QString fresh = QStringLiteral("four grey herons");
        Journey journey({.isSetUp = false});
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY2(journey.createAccount("third@house.example", "long forgotten"), qPrintable(journey.problem()));
        const QString link = journey.reminderLink("third@house.example");
        QVERIFY(link.startsWith(journey.serverUrl()));
        WebDriver browser(WebDriver::Browser::Firefox);
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
