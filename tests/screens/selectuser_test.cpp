// Account selection: rows, focus, choosing, deleting, adding an account.

#include "account/selectuserdlg.h"
#include "screens/accountfixture.h"

#include <QPushButton>

using namespace screentest;

namespace {

const QStringList threeNames = {"anna@house.example", "ben.with.a.name.too.long.for.its.row@summer.house.example",
                                "cleo@house.example"};
const QStringList fiveNames = threeNames + QStringList{"dora@house.example", "emil@house.example"};

QPointer<SelectUserDlg> open(ScreenFixture &fixture, int loginState = 1)
{
    return fixture.show(new SelectUserDlg(loginState));
}

void keys(SelectUserDlg *dialog, std::initializer_list<int> codes)
{
    for (int code : codes)
        key(dialog, code);
}

QString focusedName(SelectUserDlg *dialog)
{
    return dialog->focusWidget() ? dialog->focusWidget()->objectName() : QString();
}

} // namespace

class SelectUserTest : public QObject {
    Q_OBJECT
private slots:
    void arrowsFollowTheTable()
    {
        struct Case {
            int accounts;
            std::initializer_list<int> codes;
            const char *focused;
        };
        const Case cases[] = {
            {3, {}, "userListBtn_1"},
            {3, {Right}, "userListDelBtn_1"},
            {3, {Right, Right}, "userListDelBtn_1"},
            {3, {Right, Left}, "userListBtn_1"},
            {3, {Down, Down}, "userListBtn_3"},
            {3, {Down, Down, Down}, "userListBtn_3"},
            {3, {Right, Down}, "userListDelBtn_2"},
            {3, {Up}, "newUserBtn"},
            {3, {Up, Up, Left, Right}, "newUserBtn"},
            {3, {Up, Down}, "userListBtn_1"},
            {5, {Up}, "userListBtn_1"}, // five accounts: nothing to add
            {5, {Down, Down, Down, Down, Down}, "userListBtn_5"},
        };
        for (const Case &c : cases) {
            ScreenFixture fixture;
            fixture.storeAccounts(fiveNames.mid(0, c.accounts));
            const auto dialog = open(fixture);
            keys(dialog, c.codes);
            QCOMPARE(focusedName(dialog), QLatin1String(c.focused));
            QCOMPARE(dialog->findChildren<QPushButton *>(QRegularExpression(QStringLiteral("userListBtn_."))).size(),
                     5);
            QVERIFY(child<QPushButton>(dialog, "userListBtn_5")->isHidden() == (c.accounts < 5));
        }
    }

    void aStoredAccountLogsInAndThePlayerOpens()
    {
        ScreenFixture fixture;
        fixture.storeAccounts(threeNames);
        fixture.ws().autoLogin(threeNames.at(1).toUtf8(), FakeReply::stationListOf({"one", "two"}));
        const auto dialog = open(fixture);
        VelmoraParentWidget::recordHistroyUiType(VELMORA_UI_TYPE_SIGNIN);
        keys(dialog, {Down, Select});
        QTRY_COMPARE(fixture.screens().stationCounts().size(), 1);
        QVERIFY(VelmoraParentWidget::m_ui_type_queue.isEmpty());
        QCOMPARE(fixture.ws().last(VLM_WS_MSGID_USER_LOGIN).params.at(3).toByteArray(), QByteArray("001A2B3C4D5E-1"));
        QCOMPARE(fixture.settings().getLastLoginName(), threeNames.at(1));
        QTRY_VERIFY(!dialog);
    }

    void aStoredAccountWithoutAPasswordAndARefusedOneGoToSignIn()
    {
        for (const bool hasPassword : {false, true}) {
            ScreenFixture fixture;
            fixture.settings().addAccount(threeNames.first(), hasPassword ? QStringLiteral("0") : QString());
            fixture.ws().autoReply(VLM_WS_MSGID_USER_LOGIN, VLM_WS_ERR_DEVICE_NOT_FOUND);
            const auto dialog = open(fixture);
            keys(dialog, {Select});
            QTRY_COMPARE(fixture.screens().made(), QStringList("signInFor " + threeNames.first()));
            QCOMPARE(VelmoraParentWidget::m_ui_type_queue.last(), VELMORA_UI_TYPE_SELECT_USER);
            QCOMPARE(fixture.ws().count(VLM_WS_MSGID_USER_LOGIN), hasPassword ? 1 : 0);
        }
    }

    void aFailedLoginIsAWarningAndTheScreenStays()
    {
        const std::pair<int, QString> cases[] = {
            {VLM_WS_ERR_INVALID_LOGIN, "Invalid username or password, please try again."},
            {5050, "Incorrect login,please try again!"}};
        for (const auto &[code, text] : cases) {
            ScreenFixture fixture;
            fixture.storeAccounts(threeNames);
            fixture.ws().autoReply(VLM_WS_MSGID_USER_LOGIN, static_cast<VLM_WS_EXT_ERRCODE_T>(code));
            const auto dialog = open(fixture);
            BoxAnswer box({BoxAnswer::Ok});
            keys(dialog, {Down, Select});
            QTRY_COMPARE(box.answered(), QStringList(text));
            QCOMPARE(focusedName(dialog), QStringLiteral("userListBtn_2"));
            QVERIFY(!dialog->isAnimationShown());
            QVERIFY(fixture.screens().made().isEmpty());
        }
    }

    void answeringNoShowsACodeAndKeepsTheLastLogin()
    {
        ScreenFixture fixture;
        fixture.storeAccounts(threeNames);
        fixture.ws().autoReply(VLM_WS_MSGID_GENERATE_DEVICE_ACTIVATION_CODE, VLM_WS_ERR_OK,
                               FakeReply::activationCode("K7MPQ2XD", "http://radio.example/activate"));
        BoxAnswer box({BoxAnswer::Cancel});
        const auto dialog = open(fixture);
        keys(dialog, {Up, Select});
        QTRY_COMPARE(fixture.screens().made(), QStringList("activation Your activation code is:    K7MPQ2XD|"
                                                           "Please go to    http://radio.example/activate"));
        QCOMPARE(fixture.ws().last(VLM_WS_MSGID_GENERATE_DEVICE_ACTIVATION_CODE).params.at(0).toByteArray(),
                 QByteArray("001A2B3C4D5E"));
        QCOMPARE(fixture.settings().getLastLogin().userName, threeNames.first());
        QCOMPARE(fixture.settings().getLastLogin().password, QStringLiteral("0"));
    }

    void aCodeThatIsRefusedIsAWarning()
    {
        for (bool isRefusedAtOnce : {true, false}) {
            ScreenFixture fixture;
            fixture.storeAccounts(threeNames);
            if (isRefusedAtOnce)
                fixture.ws().failNext(VLM_WS_MSGID_GENERATE_DEVICE_ACTIVATION_CODE, VLM_WS_ERR_NOT_INITIALISED);
            else
                fixture.ws().autoReply(VLM_WS_MSGID_GENERATE_DEVICE_ACTIVATION_CODE, VLM_WS_ERR_INTERNAL);
            BoxAnswer box({BoxAnswer::Cancel, BoxAnswer::Ok});
            const auto dialog = open(fixture);
            keys(dialog, {Up, Select});
            QTRY_COMPARE(box.answered().value(1),
                         isRefusedAtOnce
                             ? QStringLiteral("Can not generate device activation code!")
                             : QStringLiteral("Generate device activation code failed,you could try again!"));
            QCOMPARE(fixture.settings().getLastLoginName(), threeNames.first());
            QVERIFY(dialog);
        }
    }

    void withFiveAccountsEitherAnswerOnlyWarns()
    {
        for (const BoxAnswer::Answer answer : {BoxAnswer::Ok, BoxAnswer::Cancel}) {
            ScreenFixture fixture;
            fixture.storeAccounts(fiveNames);
            BoxAnswer box({answer, BoxAnswer::Ok});
            const auto dialog = open(fixture, 0);
            QTRY_COMPARE(box.answered().value(1),
                         QStringLiteral("We only keep max 5 accounts,you could delete one to continue."));
            QVERIFY(fixture.screens().made().isEmpty());
            QCOMPARE(fixture.ws().count(VLM_WS_MSGID_GENERATE_DEVICE_ACTIVATION_CODE), 0);
        }
    }

    void deletingAsksThenForgetsTheRowAlsoWhenTheServiceDoesNotKnowIt()
    {
        for (const auto code : {VLM_WS_ERR_OK, VLM_WS_ERR_DEVICE_NOT_FOUND, VLM_WS_ERR_INTERNAL}) {
            ScreenFixture fixture;
            fixture.storeAccounts(threeNames);
            fixture.ws().autoReply(VLM_WS_MSGID_DISASSOCIATE_DEVICE, code);
            BoxAnswer box({BoxAnswer::Cancel, BoxAnswer::Ok, BoxAnswer::Ok});
            const auto dialog = open(fixture);
            QCOMPARE(child<QPushButton>(dialog, "userListBtn_2")->text(), threeNames.at(1)); // however long
            keys(dialog, {Down, Right, Select});
            QTRY_VERIFY(!visibleBox());
            QCOMPARE(fixture.settings().getAllUserName(), threeNames); // No
            QVERIFY(!child<QPushButton>(dialog, "userListDelBtn_2")->isDown());
            keys(dialog, {Select});
            QCOMPARE(box.texts().first(), "Are you sure you want to delete the user: " + threeNames.at(1));
            if (code == VLM_WS_ERR_INTERNAL) {
                QTRY_COMPARE(box.answered().size(), 3);
                QVERIFY(box.texts().last().startsWith("Disassociate device failed because of network error."));
                QCOMPARE(fixture.settings().getAllUserName(), threeNames);
            } else {
                QTRY_COMPARE(fixture.settings().getAllUserName(), QStringList({threeNames.at(0), threeNames.at(2)}));
                QTRY_COMPARE(focusedName(dialog), QStringLiteral("userListBtn_1"));
                QCOMPARE(child<QPushButton>(dialog, "userListBtn_2")->text(), threeNames.at(2));
            }
            QCOMPARE(fixture.ws().last(VLM_WS_MSGID_DISASSOCIATE_DEVICE).params.at(0).toByteArray(),
                     QByteArray("001A2B3C4D5E-1"));
        }
    }

    void aDestroyedQuestionIsNoAnswer()
    {
        ScreenFixture fixture;
        fixture.storeAccounts(threeNames);
        BoxAnswer box({BoxAnswer::Nothing});
        const auto dialog = open(fixture);
        destroyNextBox(dialog);
        keys(dialog, {Up, Select}); // returns when the box is gone
        QVERIFY(!visibleBox());
        settle();
        QCOMPARE(fixture.ws().calls().size(), 0);
        QVERIFY(fixture.screens().made().isEmpty());
    }

    void theFocusedControlLooksUnfocusedUnderABox()
    {
        ScreenFixture fixture;
        fixture.storeAccounts(threeNames);
        const auto dialog = open(fixture);
        auto *row = child<QPushButton>(dialog, "userListBtn_1");
        QVERIFY(row->styleSheet().contains(QLatin1String("large_p")));
        FakeIpc::screenSaver(true);
        QVERIFY(row->styleSheet().contains(QLatin1String("large_n")));
        QVERIFY(!row->hasFocus());
        FakeIpc::screenSaver(false);
        QVERIFY(row->styleSheet().contains(QLatin1String("large_p")));
        QCOMPARE(focusedName(dialog), QStringLiteral("userListBtn_1"));
    }
};

QTEST_MAIN(SelectUserTest)
#include "selectuser_test.moc"
