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

    void withoutAStoredLoginTheAccountSelectionFollows_data()
    {
        QTest::addColumn<bool>("isAccountStored");
        QTest::addColumn<int>("loginState");
        QTest::newRow("no account on this device") << false << 0;
        QTest::newRow("accounts, but nobody logged in last") << true << 1;
    }
    void withoutAStoredLoginTheAccountSelectionFollows()
    {
        QFETCH(bool, isAccountStored);
        QFETCH(int, loginState);
        if (isAccountStored)
            ScreenFixture::settings().addAccount(QStringLiteral("someone@example.org"), QStringLiteral("0"));
        ws().autoReply(VLM_WS_MSGID_PARTNER_LOGIN, VLM_WS_ERR_OK, FakeReply::partnerLogin());
        open();
        QTRY_COMPARE(screens().made(), QStringList{QStringLiteral("selectUser %1").arg(loginState)});
        QVERIFY(screens().last()->isVisible());
        QCOMPARE(ScreenFixture::settings().getLoginState(), QString::number(loginState));
        QCOMPARE(ws().count(VLM_WS_MSGID_USER_LOGIN), 0);
        QTRY_VERIFY(!m_screen);
    }

    void aLastLoginWithASlotButNoNameStillLogsIn()
    {
        ScreenFixture::settings().addAccount(QStringLiteral("someone@example.org"), QStringLiteral("0"));
        ScreenFixture::settings().setLastLogin(QString(), QStringLiteral("3"));
        ws().autoReply(VLM_WS_MSGID_PARTNER_LOGIN, VLM_WS_ERR_OK, FakeReply::partnerLogin());
        open();
        QTRY_COMPARE(ws().count(VLM_WS_MSGID_USER_LOGIN), 1);
        QVERIFY(ws().last(VLM_WS_MSGID_USER_LOGIN).params.last().toByteArray().endsWith("-3"));
    }

    void aRefusedLoginLeadsSilentlyToTheAccountSelection_data()
    {
        QTest::addColumn<int>("failing");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("next");
        QTest::newRow("device not known") << int(VLM_WS_MSGID_USER_LOGIN) << 5105 << "selectUser 1";
        QTest::newRow("account inactive at login") << int(VLM_WS_MSGID_USER_LOGIN) << 5099 << "selectUser 1";
        QTest::newRow("account inactive at the list") << int(VLM_WS_MSGID_GET_STATION_LIST) << 5099 << "selectUser 1";
    }
    void aRefusedLoginLeadsSilentlyToTheAccountSelection()
    {
        QFETCH(int, failing);
        QFETCH(int, code);
        QFETCH(QString, next);
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

    void anErrorIsShownAndEndsTheRadio_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("text");
        QTest::newRow("network")
            << -504 << "A network error has occurred.  Please check your network connection and try again.";
        QTest::newRow("code without words") << 5000 << "Connect to Velmora failed!";
        QTest::newRow("wrong password") << 5098 << "Invalid username or password, please try again.";
    }
    void anErrorIsShownAndEndsTheRadio()
    {
        QFETCH(int, code);
        QFETCH(QString, text);
        ws().autoReply(VLM_WS_MSGID_PARTNER_LOGIN, static_cast<VLM_WS_EXT_ERRCODE_T>(code));
        BoxAnswer answers({BoxAnswer::Ok});
        open();
        QTRY_COMPARE(FakeIpc::exitRequests(), QList<bool>{false});
        QCOMPARE(answers.texts(), QStringList{text});
        QVERIFY(answers.icon().contains("MsgBox_Error"));
        QVERIFY2(screens().made().isEmpty() && m_screen->isVisible(), "the radio waits for its end");
    }

    void aRequestThatCannotBeMadeIsAnErrorToo()
    {
        ws().failNext(VLM_WS_MSGID_PARTNER_LOGIN, VLM_WS_ERR_NOT_INITIALISED);
        BoxAnswer answers({BoxAnswer::Ok});
        open();
        QTRY_COMPARE(FakeIpc::exitRequests().size(), 1);
        QCOMPARE(answers.texts(), QStringList{"Connect to Velmora failed!"});
    }

    void anErrorBoxTakenAwayDoesNotEndTheRadio()
    {
        open();
        QTimer::singleShot(0, m_screen, [this] {
            QTRY_VERIFY(screentest::visibleBox());
            m_screen->destroyedMsgbox();
        });
        m_screen->displayError(VLM_WS_ERR_ERROR_CURL_FAILURE);
        QVERIFY(FakeIpc::exitRequests().isEmpty());
    }

    void aScreenClosedUnderItsErrorBoxEndsQuietly()
    {
        open();
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

    void theFormIsLaidOutAsDesigned()
    {
        open();
        QCOMPARE(m_screen->size(), QSize(1280, 720));
        QCOMPARE(m_screen->windowTitle(), QStringLiteral("Dialog"));
        auto *logo = child<QLabel>(m_screen, "logolabel");
        QCOMPARE(logo->geometry(), QRect(0, 0, 1280, 720));
        QCOMPARE(logo->styleSheet(), QStringLiteral("image: url(:/images/LOGO_Full.png);"));
        QCOMPARE(child<QLabel>(m_screen, "loadingAnimationLabel_7")->geometry(), QRect(550, 555, 191, 21));
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
