// Signing in by typing, from a stick and with a second account; removing an account.

#include "e2e/journey.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

const QString demoName = QStringLiteral("listener@velmora.invalid");

QStringList demoAccount(const Journey &journey)
{
    QFile file(journey.root() + QStringLiteral("/server/demo-account.txt"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

bool typeAndConfirm(Journey &journey, const QString &text)
{
    return journey.key({"text", text}) && journey.key({"enter"});
}

bool switchUser(Journey &journey)
{
    return journey.openMenuEntry(3) && journey.waitForScreen("SelectUserDlg");
}

} // namespace

class AccountJourney : public QObject {
    Q_OBJECT
private slots:
    void aWrongPasswordThenTheRightOneEndsInMusic()
    {
        Journey journey({.isSetUp = false});
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY(journey.leaveWelcome("left", "SignInDlg"));
        QVERIFY(typeAndConfirm(journey, demoName));
        QVERIFY(typeAndConfirm(journey, "not the password"));
        QVERIFY(journey.answerBox("Invalid username or password, please try again.", {"select"}));
        QVERIFY(journey.waitForNoBox());
        QCOMPARE(journey.label("emailLineEdit"), demoName); // nothing typed is lost
        QVERIFY(journey.key({"enter"}));                    // Done: the kept address is the right one
        QVERIFY(typeAndConfirm(journey, demoAccount(journey).value(1)));
        QVERIFY(journey.waitForScreen("VelmoraMainDlg"));
        QVERIFY(journey.waitForAudio(1));
        QVERIFY(!journey.radioReport().contains(demoAccount(journey).value(1)));
        QVERIFY(!journey.serverReport().contains(demoAccount(journey).value(1)));
    }

    void aStickWithTheAccountNeedsNoTyping()
    {
        Journey journey({.isSetUp = false});
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY(journey.waitForScreen("WelcomeDlg"));
        const QStringList account = demoAccount(journey);
        const QString path = journey.root() + QStringLiteral("/device/mnt/sda1/velmora_login.ini");
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write((account.value(0) + QStringLiteral("\r\n") + account.value(1) + QStringLiteral("\r\n")).toUtf8());
        file.close();
        QVERIFY(journey.leaveWelcome("left", "SignInDlg"));
        QVERIFY(journey.key({"up", "left", "select"})); // Done at once
        QVERIFY(journey.waitForScreen("VelmoraMainDlg"));
        QVERIFY(journey.waitForAudio(1));
    }

    void aSecondPersonSignsInBesideTheFirstSwitchesAndIsRemovedAgain()
    {
        const QString second = QStringLiteral("second@house.example");
        const QString secret = QStringLiteral("nine blue ladders");
        Journey journey;
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY2(journey.createAccount(second, secret), qPrintable(journey.problem()));
        QVERIFY(journey.waitForAudio(1));
        QVERIFY(switchUser(journey));
        QVERIFY(journey.key({"up", "select"})); // New username
        QVERIFY(journey.answerBox("Do you already have a Velmora account ? ", {"left", "select"}));
        QVERIFY(journey.waitForScreen("SignInDlg"));
        QVERIFY(typeAndConfirm(journey, second));
        QVERIFY(typeAndConfirm(journey, secret));
        QVERIFY(journey.waitForScreen("VelmoraMainDlg"));
        QCOMPARE(journey.label("userNameLabel"), second);
        QVERIFY(journey.waitForAudio(1));
        QVERIFY(switchUser(journey));
        QCOMPARE(journey.status().value("focus").toString(), QStringLiteral("userListBtn_2"));
        QVERIFY(journey.key({"up", "select"}));
        QVERIFY(journey.waitForScreen("VelmoraMainDlg"));
        QCOMPARE(journey.label("userNameLabel"), demoName);
        QVERIFY(journey.waitForAudio(1));
        QVERIFY(switchUser(journey));
        QVERIFY(journey.key({"down", "right", "select"}));
        QVERIFY(journey.answerBox(QStringLiteral("Are you sure you want to delete the user: ") + second,
                                  {"left", "select"}));
        QVERIFY(journey.waitFor([](const QJsonObject &now) {
            const QJsonObject labels = now.value("labels").toObject();
            return now.value("box").isNull() && labels.contains("userListBtn_1") && !labels.contains("userListBtn_2");
        }));
    }

    void aSixthAccountCannotBeAdded()
    {
        Journey journey({.isSetUp = false});
        QString settings = "[Welcome]\nisCheck=1\n[Account]\nsize=5\n";
        for (int i = 1; i <= 5; ++i)
            settings += QStringLiteral("%1\\userName=person%1@house.example\n%1\\password=%2\n").arg(i).arg(i - 1);
        QVERIFY(journey.writeSettings(settings.toUtf8()));
        QVERIFY2(journey.start(), qPrintable(journey.problem()));
        QVERIFY(journey.waitForScreen("SelectUserDlg")); // there are accounts, but no last login
        QCOMPARE(journey.label("userListBtn_5"), QStringLiteral("person5@house.example"));
        QVERIFY(journey.key({"up"}));
        QCOMPARE(journey.status().value("focus").toString(), QStringLiteral("userListBtn_1"));
        // The service does not know this device: the radio asks for the password, and Back returns.
        QVERIFY(journey.key({"down", "select"}));
        QVERIFY(journey.waitForScreen("SignInDlg"));
        QCOMPARE(journey.label("emailLineEdit"), QStringLiteral("person2@house.example"));
        QVERIFY(journey.key({"back", "back"}));
        QVERIFY(journey.waitForScreen("SelectUserDlg"));
    }

    void anAccountIsRemovedAlsoWhenTheServiceHasForgottenTheDevice()
    {
        Journey journey({.serverOptions = {"--fail", "disassociateDevice=5105"}});
        QVERIFY2(journey.startPlaying(), qPrintable(journey.problem()));
        QVERIFY(switchUser(journey));
        QVERIFY(journey.key({"right", "select"}));
        QVERIFY(journey.answerBox(QStringLiteral("Are you sure you want to delete the user: ") + demoName,
                                  {"left", "select"}));
        QVERIFY(journey.waitFor(
            [](const QJsonObject &now) { return now.value("focus").toString() == QLatin1String("newUserBtn"); }));
    }
};

QTEST_GUILESS_MAIN(AccountJourney)
#include "account_test.moc"
