// The loading screen: every road from the start of the radio to the screen that follows.
#include "account/loadingdlg.h"
#include "screens/accountfixture.h"

#include <QLabel>

using screentest::child;

class Loading : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        screentest::registerTypes();
        QApplication::setQuitOnLastWindowClosed(false);
    }
    void init() { m_fixture = std::make_unique<ScreenFixture>(); }
    void cleanup()
    {
        delete m_screen;
        m_fixture.reset();
        screentest::settle();
        QCOMPARE(screentest::livingScreens(), 0);
    }

    void aStoredAccountReachesThePlayerWithItsStations()
    {
        ScreenFixture::storeAccounts({"someone@example.org"});
        ws().autoLogin("someone@example.org", FakeReply::stationListOf({"tapestry", "one", "two"}));
        VelmoraParentWidget::recordHistroyUiType(VELMORA_UI_TYPE_SIGNIN);
        open();
        QTRY_COMPARE(screens().stationCounts().size(), 1);
        QCOMPARE(screens().made(), QStringList{"player"});
        QVERIFY(screens().stationCounts().first() > 0);
        QVERIFY(PlayerPort::existing()->screen()->isVisible());
        QVERIFY(VelmoraParentWidget::m_ui_type_queue.isEmpty());
        QTRY_VERIFY(!m_screen);
        QCOMPARE(ws().commands(),
                 QList<int>({VLM_WS_MSGID_PARTNER_LOGIN, VLM_WS_MSGID_USER_LOGIN, VLM_WS_MSGID_GET_STATION_LIST}));
        QCOMPARE(ws().last(VLM_WS_MSGID_USER_LOGIN).params.first().toByteArray(), QByteArray("deviceId"));
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
        const std::tuple<bool, int> cases[] = {
            {false, 0}, // no account on this device
            {true, 1},  // accounts, but nobody logged in last
        };
        for (const auto &[isAccountStored, loginState] : cases) {
            cleanup(); // a fresh screen for each
            init();
            if (isAccountStored)
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
        const std::tuple<int, int, QString> cases[] = {
            {int(VLM_WS_MSGID_USER_LOGIN), 5105, "selectUser 1"},       // device not known
            {int(VLM_WS_MSGID_USER_LOGIN), 5099, "selectUser 1"},       // account inactive at login
            {int(VLM_WS_MSGID_GET_STATION_LIST), 5099, "selectUser 1"}, // account inactive at the list
        };
        for (const auto &[failing, code, next] : cases) {
            cleanup(); // a fresh screen for each
            init();
            ScreenFixture::storeAccounts({"someone@example.org"});
            ws().autoLogin("someone@example.org", FakeReply::stationListOf({"one"}));
            ws().autoReply(failing, static_cast<VLM_WS_EXT_ERRCODE_T>(code));
            BoxAnswer answers({});
            open();
            QTRY_COMPARE(screens().made(), QStringList{next});
            QCOMPARE(answers.shown(), 0);
            QCOMPARE(ScreenFixture::settings().getLoginState(), QStringLiteral("1"));
            QTRY_VERIFY(!m_screen);
        }
    }

    void anErrorIsShownAndEndsTheRadio()
    {
        const std::tuple<int, QString> cases[] = {
            {-504, "A network error has occurred.  Please check your network connection and try again."}, // network
            {5000, "Connect to Velmora failed!"},                      // code without words
            {5098, "Invalid username or password, please try again."}, // wrong password
        };
        for (const auto &[code, text] : cases) {
            cleanup(); // a fresh screen for each
            init();
            ws().autoReply(VLM_WS_MSGID_PARTNER_LOGIN, static_cast<VLM_WS_EXT_ERRCODE_T>(code));
            BoxAnswer answers({BoxAnswer::Ok});
            open();
            QTRY_COMPARE(FakeIpc::exitRequests(), QList<bool>{false});
            QCOMPARE(answers.texts(), QStringList{text});
            QVERIFY(answers.icon().contains("MsgBox_Error"));
            QVERIFY2(screens().made().isEmpty() && m_screen->isVisible(), "the radio waits for its end");
        }
    }

    void anErrorBoxThatWasNotAnsweredDoesNotEndTheRadio()
    {
        open();
        QTimer::singleShot(0, m_screen, [this] { m_screen->destroyedMsgbox(); });
        m_screen->displayError(VLM_WS_ERR_ERROR_CURL_FAILURE);
        QVERIFY(m_screen);
        QTimer::singleShot(0, m_screen, [this] { m_screen->close(); });
        m_screen->displayError(VLM_WS_ERR_ERROR_CURL_FAILURE);
        QVERIFY(!m_screen);
        QVERIFY(FakeIpc::exitRequests().isEmpty());
    }

    void underAnErrorEverythingLaterIsDropped()
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

    void theAnimationShowsOneFrameAfterTheOther()
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
        const auto timers = m_screen->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
        const auto running =
            std::find_if(timers.begin(), timers.end(), [](QTimer *timer) { return timer->isActive(); });
        QVERIFY(running != timers.end());
        QCOMPARE((*running)->interval(), 200);
        m_screen->m_isErrorMsg = true;
        m_screen->displayError(VLM_WS_ERR_ERROR_CURL_FAILURE);
        QVERIFY2(!(*running)->isActive(), "an error stops it");
    }

private:
    FakeWs &ws() { return m_fixture->ws(); }
    FakeScreens &screens() { return m_fixture->screens(); }
    void open()
    {
        m_screen = new LoadingDlg;
        m_screen->show();
    }

    std::unique_ptr<ScreenFixture> m_fixture;
    QPointer<LoadingDlg> m_screen;
};

QTEST_MAIN(Loading)
#include "loading.moc"
