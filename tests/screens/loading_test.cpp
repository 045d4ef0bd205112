// The loading screen: every path from the start of the radio to the next screen.
#include "account/loadingdlg.h"
#include "screens/accountfixture.h"

#include <QLabel>

using screentest::child;

class Loading : public QObject {
    Q_OBJECT
private slots:
    void init() { m_fixture = std::make_unique<ScreenFixture>(); }
    void cleanup()
    {
        m_fixture.reset();
        screentest::settle();
        QCOMPARE(screentest::livingScreens(), 0);
    }

    void anAccountWithoutStationsMakesItsFirst()
    {
        ScreenFixture::storeAccounts({"someone@example.org"});
        ws().autoLogin("someone@example.org", FakeReply::stationList({}));
        open();
        QTRY_COMPARE(screens().made(), QStringList{"createStation 1"});
        QVERIFY(screens().last()->isVisible());
        QCOMPARE(VelmoraParentWidget::m_ui_type_queue, QQueue<_VELMORA_UI_TYPE_E>({VELMORA_UI_TYPE_SELECT_USER}));
        QTRY_VERIFY(!m_screen);
        emit screens().last()->signalReturnBtn();
        QCOMPARE(screens().made().last(), QStringLiteral("selectUser 2"));
    }

    void withoutAStoredLoginTheAccountSelectionFollows()
    {
        for (const int loginState : {0, 1}) {
            const Row row(loginState ? "accounts, but nobody logged in last" : "no account on this device");
            cleanup(); // a fresh screen for each
            init();
            if (loginState)
                ScreenFixture::settings().addAccount("someone@example.org", "0");
            ws().autoReply(VLM_WS_MSGID_PARTNER_LOGIN, VLM_WS_ERR_OK, FakeReply::partnerLogin());
            open();
            QTRY_COMPARE(screens().made(), QStringList{QStringLiteral("selectUser %1").arg(loginState)});
            QVERIFY(screens().last()->isVisible());
            QCOMPARE(ScreenFixture::settings().getLoginState(), QString::number(loginState));
            QCOMPARE(ws().count(VLM_WS_MSGID_USER_LOGIN), 0);
            QTRY_VERIFY(!m_screen);
        }
    }

    void aLastLoginWithASlotButNoNameStillLogsIn()
    {
        ScreenFixture::settings().addAccount("someone@example.org", "0");
        ScreenFixture::settings().setLastLogin(QString(), "3");
        ws().autoReply(VLM_WS_MSGID_PARTNER_LOGIN, VLM_WS_ERR_OK, FakeReply::partnerLogin());
        open();
        QTRY_COMPARE(ws().count(VLM_WS_MSGID_USER_LOGIN), 1);
        QVERIFY(ws().last(VLM_WS_MSGID_USER_LOGIN).params.last().toByteArray().endsWith("-3"));
    }

    void aRefusedLoginLeadsSilentlyToTheAccountSelection()
    {
        struct Case {
            const char *name;
            int failing, code;
        };
        const Case cases[] = {{"device not known", VLM_WS_MSGID_USER_LOGIN, 5105},
                              {"account inactive at login", VLM_WS_MSGID_USER_LOGIN, 5099},
                              {"account inactive at the list", VLM_WS_MSGID_GET_STATION_LIST, 5099}};
        for (const auto &[name, failing, code] : cases) {
            const Row row(name);
            cleanup(); // a fresh screen for each
            init();
            ScreenFixture::storeAccounts({"someone@example.org"});
            ws().autoLogin("someone@example.org", FakeReply::stationListOf({"one"}));
            ws().autoReply(failing, static_cast<VLM_WS_EXT_ERRCODE_T>(code));
            BoxAnswer answers({});
            open();
            QTRY_COMPARE(screens().made(), QStringList{"selectUser 1"});
            QCOMPARE(answers.shown(), 0);
            QCOMPARE(ScreenFixture::settings().getLoginState(), QStringLiteral("1"));
            QTRY_VERIFY(!m_screen);
        }
    }

    void anErrorEndsTheRadioWhenItsBoxIsAnswered()
    {
        open();
        {
            BoxAnswer answers({BoxAnswer::Ok});
            m_screen->displayError(VLM_WS_ERR_ERROR_CURL_FAILURE);
        }
        QCOMPARE(FakeIpc::exitKinds, QStringList("fault"));
        FakeIpc::reset();
        QTimer::singleShot(0, m_screen, [this] { m_screen->destroyedMsgbox(); });
        m_screen->displayError(VLM_WS_ERR_ERROR_CURL_FAILURE);
        QVERIFY(m_screen);
        QTimer::singleShot(0, m_screen, [this] { m_screen->close(); });
        m_screen->displayError(VLM_WS_ERR_ERROR_CURL_FAILURE);
        QVERIFY(!m_screen);
        QVERIFY(FakeIpc::exitRequests.isEmpty());
    }

    void everythingAfterAnErrorIsDropped()
    {
        ScreenFixture::storeAccounts({"someone@example.org"});
        open();
        m_screen->m_isErrorMsg = true;
        BoxAnswer answers({});
        ws().autoLogin("someone@example.org", FakeReply::stationListOf({"one"}));
        QTRY_COMPARE(ws().releases(), 3); // the list's handle too
        m_screen->displayError(VLM_WS_ERR_ERROR_CURL_FAILURE);
        QCOMPARE(answers.shown(), 0);
        QVERIFY(screens().made().isEmpty());
        QVERIFY(m_screen->isVisible());
    }

    void theAnimationShowsItsFramesInOrder()
    {
        open();
        auto shown = [this] {
            QString pictures;
            for (int n = 1; n <= 10; ++n) {
                auto *frame = child<QLabel>(m_screen, qPrintable(QStringLiteral("loadingAnimationLabel_%1").arg(n)));
                if (frame->isVisible())
                    pictures += frame->styleSheet();
            }
            return pictures;
        };
        QCOMPARE(shown(), QString());
        for (int turn = 0; turn < 12; ++turn) {
            m_screen->loadingAnimation();
            QCOMPARE(shown(), QStringLiteral("image: url(:/images/Loading_%1.png);").arg(turn % 10));
        }
        const auto isRunning = [this] {
            const auto timers = m_screen->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
            return std::any_of(timers.begin(), timers.end(),
                               [](QTimer *timer) { return timer->isActive() && timer->interval() == 200; });
        };
        QVERIFY(isRunning());
        m_screen->m_isErrorMsg = true;
        m_screen->displayError(VLM_WS_ERR_ERROR_CURL_FAILURE);
        QVERIFY2(!isRunning(), "an error stops it");
    }

private:
    FakeWs &ws() { return m_fixture->ws(); }
    FakeScreens &screens() { return m_fixture->screens(); }
    void open() { m_screen = m_fixture->show(new LoadingDlg); }

    std::unique_ptr<ScreenFixture> m_fixture;
    QPointer<LoadingDlg> m_screen;
};

QTEST_MAIN(Loading)
#include "loading_test.moc"
