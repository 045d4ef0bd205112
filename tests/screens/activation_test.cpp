// The activation screen.

#include "account/deviceactivation.h"
#include "account/internetradiodlg.h"
#include "screens/accountfixture.h"
#include "widgets/qrcode.h"

#include <QFile>
#include <QLabel>
#include <QPushButton>

using namespace screentest;

namespace {

const QString page = QStringLiteral("Please go to    http://radio.example/activate");

QPointer<InternetRadioDlg> open(ScreenFixture &fixture)
{
    return fixture.show(new InternetRadioDlg(deviceactivation::codeLine("K7MPQ2XD"), page));
}

QString code(QWidget *dialog)
{
    return child<QLabel>(dialog, "descriptionLabel3")->text();
}

QByteArray settingsFile()
{
    QFile file(device::settingsFile());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class ActivationTest : public QObject {
    Q_OBJECT
private slots:
    void aFailedNewCodeLeavesTheOldOne()
    {
        ScreenFixture fixture;
        fixture.ws().autoReply(VLM_WS_MSGID_USER_LOGIN, VLM_WS_ERR_DEVICE_NOT_FOUND);
        fixture.ws().autoReply(VLM_WS_MSGID_GENERATE_DEVICE_ACTIVATION_CODE, VLM_WS_ERR_INTERNAL);
        BoxAnswer box({BoxAnswer::Ok, BoxAnswer::Ok});
        const auto dialog = open(fixture);
        const auto *qrCode = child<QrCode>(dialog, "qrCode");
        QVERIFY(qrCode->isVisible() && !qrCode->isEmpty());
        QVERIFY2(dialog->childAt(qrCode->geometry().center()) == qrCode, "a camera does not see it");
        const QString both = deviceactivation::addressWithCode(page, code(dialog));
        QCOMPARE(both, QStringLiteral("http://radio.example/activate?code=K7MPQ2XD"));
        for (const QString &bad : {QStringLiteral("Please go to    "), QStringLiteral("Please go to    file:///etc"),
                                   QStringLiteral("Please go to    http://")})
            QVERIFY2(deviceactivation::addressWithCode(bad, code(dialog)).isEmpty(), qPrintable(bad));
        QVERIFY(deviceactivation::addressWithCode(page, QStringLiteral("Your activation code is:    ")).isEmpty());
        key(dialog, Select);
        QTRY_COMPARE(box.answered().value(1),
                     QStringLiteral("Generate device activation code failed,you could try again!"));
        QCOMPARE(code(dialog), QStringLiteral("Your activation code is:    K7MPQ2XD"));
    }

    void aFailedLoginRemovesTheAnimationAndKeepsTheSettings()
    {
        ScreenFixture fixture;
        fixture.storeAccounts({"anna@house.example"});
        const QByteArray before = settingsFile();
        fixture.ws().autoReply(VLM_WS_MSGID_USER_LOGIN, VLM_WS_ERR_ERROR_CURL_FAILURE);
        BoxAnswer box({BoxAnswer::Ok});
        const auto dialog = open(fixture);
        key(dialog, Select);
        QTRY_COMPARE(box.answered().size(), 1);
        QVERIFY(!dialog->isAnimationShown());
        QCOMPARE(settingsFile(), before);
        QTRY_VERIFY(child<QPushButton>(dialog, "okBtn")->hasFocus());
    }

    void aFinishedActivationStoresTheAccountWithTheFirstFreeSlot()
    {
        ScreenFixture fixture;
        fixture.storeAccounts({"anna@house.example"});
        fixture.ws().autoLogin("new@house.example", FakeReply::stationListOf({"one"}));
        const auto dialog = open(fixture);
        key(dialog, Select);
        QTRY_COMPARE(fixture.screens().stationCounts().size(), 1);
        QTRY_VERIFY(!dialog);
        QCOMPARE(fixture.ws().last(VLM_WS_MSGID_USER_LOGIN).params.at(3).toByteArray(), QByteArray("001A2B3C4D5E-1"));
        QCOMPARE(fixture.settings().getPassword("new@house.example"), QStringLiteral("1"));
        QCOMPARE(fixture.settings().getLastLogin().userName, QStringLiteral("new@house.example"));
        QCOMPARE(fixture.settings().getLastLogin().password, QStringLiteral("1"));
    }

    // A power cut runs no code, so the file itself is compared.
    void theSettingsDoNotChangeUntilTheActivationIsCompleted()
    {
        ScreenFixture fixture;
        fixture.storeAccounts({"anna@house.example"});
        const QByteArray before = settingsFile();
        QVERIFY(before.contains("anna@house.example"));
        fixture.ws().autoReply(VLM_WS_MSGID_USER_LOGIN, VLM_WS_ERR_DEVICE_NOT_FOUND);
        fixture.ws().autoReply(VLM_WS_MSGID_GENERATE_DEVICE_ACTIVATION_CODE, VLM_WS_ERR_OK,
                               FakeReply::activationCode("SECOND", "http://radio.example/activate"));
        VelmoraParentWidget::recordHistroyUiType(VELMORA_UI_TYPE_SELECT_USER);
        BoxAnswer box({BoxAnswer::Ok, BoxAnswer::Ok});
        const auto dialog = open(fixture);
        for (int refusals = 1; refusals <= 2; ++refusals) {
            key(dialog, Select);
            QTRY_COMPARE(fixture.ws().count(VLM_WS_MSGID_GENERATE_DEVICE_ACTIVATION_CODE), refusals);
            QTRY_VERIFY(!dialog->isAnimationShown());
            QCOMPARE(code(dialog), QStringLiteral("Your activation code is:    SECOND"));
            QCOMPARE(settingsFile(), before);
        }
        key(dialog, Back);
        QCOMPARE(fixture.screens().made(), QStringList("selectUser 2"));
        QCOMPARE(settingsFile(), before);
    }
};

QTEST_MAIN(ActivationTest)
#include "activation_test.moc"
