// Sign-in and the password reminder.

#include "account/emailpwddlg.h"
#include "account/loginfile.h"
#include "account/signindlg.h"
#include "fakes/fakekeyboard.h"
#include "screens/accountfixture.h"

#include <QFile>
#include <QLabel>
#include <QLineEdit>

using namespace screentest;

namespace {

const QString prompt = QStringLiteral("Enter your Velmora account...");

void writeLoginFile(const QByteArray &content)
{
    QFile file(device::loginFile());
    QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(file.errorString()));
    file.write(content);
}

QLineEdit *email(QWidget *dialog)
{
    return child<QLineEdit>(dialog, "emailLineEdit");
}

QLineEdit *password(QWidget *dialog)
{
    return child<QLineEdit>(dialog, "passwordLineEdit");
}

} // namespace

class SignInTest : public QObject {
    Q_OBJECT
private slots:
    void aFailedLoginKeepsTheAddressAndAsksAgain()
    {
        const std::pair<int, QString> cases[] = {
            {VLM_WS_ERR_INVALID_LOGIN, "Invalid username or password, please try again."},
            {5050, "Incorrect Login ,please try again!"}};
        for (const auto &[code, text] : cases) {
            ScreenFixture fixture;
            fixture.ws().autoReply(VLM_WS_MSGID_USER_LOGIN, static_cast<VLM_WS_EXT_ERRCODE_T>(code));
            BoxAnswer box({BoxAnswer::Ok});
            const auto dialog = fixture.show(new SignInDlg);
            dialog->showByAccount("anna@house.example");
            QCOMPARE(FakeKeyboard::field, password(dialog));
            FakeKeyboard::type("wrong");
            key(dialog, Red);
            QVERIFY(child<QLabel>(dialog, "greenContentLabel")->isHidden());
            FakeKeyboard::confirm();
            QTRY_COMPARE(box.answered(), QStringList(text));
            QCOMPARE(email(dialog)->text(), QStringLiteral("anna@house.example"));
            QCOMPARE(password(dialog)->text(), QString());
            QTRY_VERIFY(email(dialog)->hasFocus());
            QVERIFY(!FakeKeyboard::isPrompt);
            QVERIFY(!child<QLabel>(dialog, "greenContentLabel")->isHidden()); // the page of the letters
            QVERIFY(!dialog->isAnimationShown());
        }
    }

    void backLeavesThePasswordThenTheScreen()
    {
        ScreenFixture fixture;
        VelmoraParentWidget::recordHistroyUiType(VELMORA_UI_TYPE_SELECT_USER);
        const auto dialog = fixture.show(new SignInDlg);
        dialog->showByAccount("anna@house.example");
        key(dialog, Back); // arrives at the password field, which would swallow its release
        QCOMPARE(email(dialog)->text(), QStringLiteral("anna@house.example"));
        QCOMPARE(FakeKeyboard::field, email(dialog));
        QVERIFY(!email(dialog)->isReadOnly() && password(dialog)->isReadOnly()); // as they look
        QVERIFY(fixture.screens().made().isEmpty());
        key(dialog, Back);
        QCOMPARE(fixture.screens().made(), QStringList("selectUser 2"));
        QTRY_VERIFY(!dialog);
    }

    void anEmptyFormWithoutALoginFileIsReported()
    {
        ScreenFixture fixture;
        const auto dialog = fixture.show(new SignInDlg);
        BoxAnswer box({BoxAnswer::Ok});
        FakeKeyboard::confirm();
        QCOMPARE(box.texts(), QStringList("No information was entered.Please try again."));
    }

    void aLoginFromTheFileIsSentOnceHoweverOftenDoneIsPressed()
    {
        ScreenFixture fixture;
        writeLoginFile("a@b\r\nsecret\r\n");
        const auto dialog = fixture.show(new SignInDlg);
        BoxAnswer box({BoxAnswer::Ok});
        FakeKeyboard::confirm();
        FakeKeyboard::confirm();
        FakeKeyboard::type("x");
        FakeKeyboard::confirm();
        QCOMPARE(fixture.ws().count(VLM_WS_MSGID_USER_LOGIN), 1);
        QVERIFY(fixture.ws().completeNext(VLM_WS_MSGID_USER_LOGIN, VLM_WS_ERR_INVALID_LOGIN));
        QTRY_COMPARE(box.answered().size(), 1);
        FakeKeyboard::confirm(); // the address that the screen holds
        QCOMPARE(FakeKeyboard::field, password(dialog));
    }

    void theLinesOfALoginFileAreReadWithinTheDevicesLimits()
    {
        struct Case {
            QByteArray content;
            QByteArray email;
            QByteArray password;
        };
        const QByteArray forty(40, 'x');
        const Case cases[] = {{"a@b\r\nsecret\r\n", "a@b", "secret"},
                              {"a@b\nsecret\n", "a@b\n", "secret\n"},
                              {"a@b\r\nsecret", "a@b", "secret"},
                              {forty + "\r\nsecret\r\n", forty.left(31), forty.mid(31)},
                              {QByteArray(30, 'x') + "\r\nsecret\r\n", QByteArray(30, 'x'), "\n"},
                              {"", "", ""}};
        ScreenFixture fixture;
        for (const Case &c : cases) {
            writeLoginFile(c.content);
            const auto file = LoginFile::read(device::loginFile());
            QVERIFY(file);
            QCOMPARE(file->email, c.email);
            QCOMPARE(file->password, c.password);
        }
    }

    void anEmptiedAddressRestoresItsPromptAndNeverThePasswords()
    {
        ScreenFixture fixture;
        const auto dialog = fixture.show(new SignInDlg);
        FakeKeyboard::type("x");
        QVERIFY(!email(dialog)->isReadOnly());
        FakeKeyboard::clear();
        QCOMPARE(email(dialog)->text(), prompt);
        QVERIFY(email(dialog)->isReadOnly());
        FakeKeyboard::type("a@b");
        FakeKeyboard::confirm();
        FakeKeyboard::type("y");
        FakeKeyboard::clear();
        QCOMPARE(password(dialog)->text(), QString());
        QCOMPARE(email(dialog)->text(), QStringLiteral("a@b"));
    }

    void theLastTypedCharacterOfAPasswordShowsForASecond()
    {
        ScreenFixture fixture;
        QFile sheet(":velmora.qss");
        QVERIFY(sheet.open(QIODevice::ReadOnly));
        qApp->setStyleSheet(QString::fromUtf8(sheet.readAll()));
        const auto dialog = fixture.show(new SignInDlg);
        dialog->showByAccount("anna@house.example");
        FakeKeyboard::type("ab");
        QVERIFY(password(dialog)->displayText().endsWith(QLatin1Char('b')));
        QVERIFY(!password(dialog)->displayText().startsWith(QLatin1Char('a')));
        QTRY_VERIFY(!password(dialog)->displayText().contains(QLatin1Char('b')));
        qApp->setStyleSheet(QString());
    }

    void theReminderReturnsToSignInSilentlyOrWithItsWords()
    {
        const std::pair<int, QString> cases[] = {
            {0, QString()},
            {VLM_WS_ERR_MAINTENANCE, "Velmora is conducting system maintenance. You"},
            {VLM_WS_ERR_INTERNAL, "Please check the email address your provided for instructions on "
                                  "retrieving your Velmora password."}};
        for (const auto &[code, text] : cases) {
            ScreenFixture fixture;
            fixture.ws().autoReply(VLM_WS_MSGID_EMAIL_PASSWORD, static_cast<VLM_WS_EXT_ERRCODE_T>(code));
            BoxAnswer box({BoxAnswer::Ok});
            const auto dialog = fixture.show(new EmailPwdDlg);
            FakeKeyboard::type("anna@house.example");
            FakeKeyboard::confirm();
            QTRY_COMPARE(fixture.screens().made(), QStringList("signIn"));
            QVERIFY2(box.texts().join(u'|').startsWith(text) && box.shown() == !text.isEmpty(), qPrintable(text));
            QTRY_VERIFY(!dialog);
        }
        ScreenFixture fixture; // a reminder that cannot be sent stays
        fixture.ws().failNext(VLM_WS_MSGID_EMAIL_PASSWORD, VLM_WS_ERR_NOT_INITIALISED);
        BoxAnswer box({BoxAnswer::Ok});
        const auto dialog = fixture.show(new EmailPwdDlg);
        FakeKeyboard::type("a@b");
        FakeKeyboard::confirm();
        QCOMPARE(box.texts(), QStringList("Can not get the password because of system error!"));
        QCOMPARE(email(dialog)->text(), QStringLiteral("a@b"));
        QVERIFY(fixture.screens().made().isEmpty());
    }
};

QTEST_MAIN(SignInTest)
#include "signin_test.moc"
