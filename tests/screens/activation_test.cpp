// The activation screen.

#include "account/deviceactivation.h"
#include "account/internetradiodlg.h"
#include "screens/accountfixture.h"

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

} // namespace

class ActivationTest : public QObject {
    Q_OBJECT
private slots:
    void init() { deviceactivation::forgetReservation(); }

    void aFailedNewCodeLeavesTheOldOne()
    {
        ScreenFixture fixture;
        fixture.ws().autoReply(VLM_WS_MSGID_USER_LOGIN, VLM_WS_ERR_DEVICE_NOT_FOUND);
        fixture.ws().autoReply(VLM_WS_MSGID_GENERATE_DEVICE_ACTIVATION_CODE, VLM_WS_ERR_INTERNAL);
        BoxAnswer box({BoxAnswer::Ok, BoxAnswer::Ok});
        const auto dialog = open(fixture);
        key(dialog, Select);
        QTRY_COMPARE(box.answered().value(1),
                     QStringLiteral("Generate device activation code failed,you could try again!"));
        QCOMPARE(code(dialog), QStringLiteral("Your activation code is:    K7MPQ2XD"));
    }

    void aFailedLoginDoesNotHideTheScreenBehindItsAnimation()
    {
        ScreenFixture fixture;
        fixture.ws().autoReply(VLM_WS_MSGID_USER_LOGIN, VLM_WS_ERR_ERROR_CURL_FAILURE);
        BoxAnswer box({BoxAnswer::Ok});
        const auto dialog = open(fixture);
        key(dialog, Select);
        QTRY_COMPARE(box.answered().size(), 1);
        QVERIFY(!dialog->isAnimationShown());
        QTRY_VERIFY(child<QPushButton>(dialog, "okBtn")->hasFocus());
    }

    void aFinishedActivationStoresTheAccountWithItsSlot()
    {
        ScreenFixture fixture;
        fixture.storeAccounts({"anna@house.example"});
        deviceactivation::reserveSlot();
        fixture.ws().autoLogin("new@house.example", FakeReply::stationListOf({"one"}));
        const auto dialog = open(fixture);
        key(dialog, Select);
        QTRY_COMPARE(fixture.screens().stationCounts().size(), 1);
        QTRY_VERIFY(!dialog);
        QCOMPARE(fixture.settings().getPassword("new@house.example"), QStringLiteral("1"));
        QCOMPARE(fixture.settings().getLastLoginName(), QStringLiteral("new@house.example"));
        deviceactivation::giveSlotBack(); // nothing is reserved any more
        QCOMPARE(fixture.settings().getLastLoginName(), QStringLiteral("new@house.example"));
    }

    void backGivesTheLastLoginBack()
    {
        ScreenFixture fixture;
        fixture.storeAccounts({"anna@house.example"});
        deviceactivation::reserveSlot();
        QCOMPARE(fixture.settings().getLastLoginName(), QString());
        VelmoraParentWidget::recordHistroyUiType(VELMORA_UI_TYPE_SELECT_USER);
        const auto dialog = open(fixture);
        key(dialog, Back);
        QCOMPARE(fixture.screens().made(), QStringList("selectUser 2"));
        QCOMPARE(fixture.settings().getLastLogin().userName, QStringLiteral("anna@house.example"));
        QCOMPARE(fixture.settings().getLastLogin().password, QStringLiteral("0"));
    }
};

QTEST_MAIN(ActivationTest)
#include "activation_test.moc"
