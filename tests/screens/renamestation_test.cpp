// Rename station: the question, refusal, failure, success.

#include "fakes/fakeipc.h"
#include "fakes/fakekeyboard.h"
#include "screens/accountfixture.h"
#include "station/renamestationdlg.h"

#include <QLabel>
#include <QLineEdit>
#include <virtualkb/qtvirtualkbdlg.h>

using namespace screentest;

namespace {

QPointer<RenameStationDlg> open(ScreenFixture &fixture, const QString &name = QStringLiteral("Rainy Sunday"))
{
    return fixture.show(new RenameStationDlg(name, "station-7"));
}

QLineEdit *field(QWidget *dialog)
{
    return child<QLineEdit>(dialog, "stationNameLineEdit");
}

QByteArray sentName(ScreenFixture &fixture)
{
    return fixture.ws().last(VLM_WS_MSGID_RENAME_STATION).params.value(0).toByteArray();
}

} // namespace

class RenameStationTest : public QObject {
    Q_OBJECT
private slots:
    void noKeepsTheDialogAndTheTypedName()
    {
        ScreenFixture fixture;
        const QString name(64, QLatin1Char('n'));
        const auto dialog = open(fixture, name);
        BoxAnswer box({BoxAnswer::Cancel});
        FakeKeyboard::confirm();
        QCOMPARE(box.texts(), QStringList(QStringLiteral("Are you sure you want to rename this station as: \n") +
                                          name.left(40) + QStringLiteral("...?")));
        QCOMPARE(field(dialog)->text(), name);
        QCOMPARE(fixture.ws().calls().size(), 0);
        QTRY_VERIFY(field(dialog)->hasFocus());
    }

    void anEmptyNameIsRefusedBeforeTheQuestionOneOfBlanksIsNot()
    {
        ScreenFixture fixture;
        const auto dialog = open(fixture, QString());
        {
            BoxAnswer box({BoxAnswer::Ok});
            FakeKeyboard::confirm();
            QCOMPARE(box.texts(), QStringList("Rename station failed, no station name supplied."));
        }
        FakeKeyboard::type("  ");
        BoxAnswer box({BoxAnswer::Ok});
        FakeKeyboard::confirm();
        QCOMPARE(box.shown(), 1);
        QCOMPARE(sentName(fixture), QByteArray("  "));
    }

    void aNameIsSentWholeAlthoughTheQuestionCutsIt()
    {
        ScreenFixture fixture;
        const QString name = QString(63, QLatin1Char('n')) + QChar(0xE9);
        const auto dialog = open(fixture, name);
        BoxAnswer box({BoxAnswer::Ok});
        FakeKeyboard::confirm();
        QVERIFY(box.texts().first().endsWith(QLatin1String("...?")));
        QCOMPARE(sentName(fixture), name.toUtf8());
        FakeKeyboard::clear();
        QVERIFY(field(dialog)->isReadOnly());
    }

    void everyFailureLeadsSomewhere()
    {
        enum class Way { BackToPlayer, SignOut, Exit };
        using enum Way;
        struct Case {
            int failing;
            VLM_WS_EXT_ERRCODE_T code;
            bool isAtOnce; // refused by the library
            QString text;
            Way way;
        };
        const QString inactive = QStringLiteral("Sorry,this account is no longer active.Please contact");
        const Case cases[] = {
            {VLM_WS_MSGID_RENAME_STATION, VLM_WS_ERR_INTERNAL, true, "Rename station failed,you could try again.",
             BackToPlayer},
            {VLM_WS_MSGID_RENAME_STATION, VLM_WS_ERR_INTERNAL, false, "Rename station list failed ,please try later!",
             BackToPlayer},
            {VLM_WS_MSGID_RENAME_STATION, VLM_WS_ERR_STATION_NOT_FOUND, false, "Station does not exist.", BackToPlayer},
            {VLM_WS_MSGID_RENAME_STATION, VLM_WS_ERR_ACCOUNT_INACTIVE, false, inactive, SignOut},
            {VLM_WS_MSGID_RENAME_STATION, VLM_WS_ERR_ERROR_CURL_FAILURE, false, "A network error has occurred.  Please",
             Exit},
            {VLM_WS_MSGID_GET_STATION_LIST, VLM_WS_ERR_INTERNAL, true, "Get station list failed!", Exit},
            {VLM_WS_MSGID_GET_STATION_LIST, VLM_WS_ERR_INTERNAL, false, "Get station list failed ,please try later!",
             Exit},
            {VLM_WS_MSGID_GET_STATION_LIST, VLM_WS_ERR_ACCOUNT_INACTIVE, false, inactive, SignOut}};
        for (const Case &c : cases) {
            const Row row(c.text);
            ScreenFixture fixture;
            fixture.screens().player();
            VelmoraParentWidget::recordHistroyUiType(VELMORA_UI_TYPE_MAIN);
            fixture.ws().autoReply(VLM_WS_MSGID_RENAME_STATION, VLM_WS_ERR_OK);
            if (c.isAtOnce)
                fixture.ws().failNext(c.failing, c.code);
            else
                fixture.ws().autoReply(c.failing, c.code);
            const auto dialog = open(fixture);
            BoxAnswer box({BoxAnswer::Ok, BoxAnswer::Ok});
            QSignalSpy exits(dialog.data(), &VelmoraParentWidget::signalExit);
            FakeKeyboard::confirm();
            QTRY_COMPARE(box.answered().size(), 2);
            QVERIFY2(box.texts().last().startsWith(c.text), qPrintable(box.texts().last()));
            QTRY_COMPARE(exits.size(), c.way == Exit ? 1 : 0);
            QCOMPARE(FakeIpc::exitKinds, QStringList(exits.size(), "fault"));
            QTRY_COMPARE(fixture.screens().signOuts(), c.way == SignOut ? 1 : 0);
            if (c.way != Exit) {
                QTRY_VERIFY(!dialog);
                QVERIFY(VelmoraParentWidget::m_ui_type_queue.isEmpty());
                QVERIFY(fixture.screens().player()->screen()->isVisible());
            }
        }
    }

    void theHintsFollowThePageAndTheColourKeysTheKeyboard()
    {
        ScreenFixture fixture;
        const auto dialog = open(fixture);
        auto *caps = child<QLabel>(dialog, "greenContentLabel");
        auto *number = child<QLabel>(dialog, "digitalContentLabel");
        QVERIFY(!caps->isHidden() && number->isHidden());
        key(dialog, Red);
        QVERIFY(caps->isHidden() && !number->isHidden());
        key(dialog, Red);
        QVERIFY(!caps->isHidden() && number->isHidden());
        QSignalSpy green(dialog.data(), &TextEntryDlg::signalGreenBtn);
        FakeKeyboard::current->m_isModeAble = false;
        key(dialog, Green);
        QCOMPARE(green.size(), 0);
        FakeKeyboard::current->m_isModeAble = true;
        key(dialog, Green);
        QCOMPARE(green.size(), 1);
    }

    void backLeavesEvenWhileARequestIsInFlight()
    {
        ScreenFixture fixture;
        fixture.screens().player();
        VelmoraParentWidget::recordHistroyUiType(VELMORA_UI_TYPE_MAIN);
        const auto dialog = open(fixture);
        BoxAnswer box({BoxAnswer::Ok});
        FakeKeyboard::confirm();
        QVERIFY(dialog->isAnimationShown());
        key(dialog, Back);
        QTRY_VERIFY(!dialog);
        QVERIFY(fixture.screens().player()->screen()->isVisible());
    }
};

QTEST_MAIN(RenameStationTest)
#include "renamestation_test.moc"
