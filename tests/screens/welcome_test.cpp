// The welcome screen: its button, and Back.
#include "account/welcomedlg.h"
#include "screens/accountfixture.h"

#include <QPushButton>

using screentest::child;

class Welcome : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        m_fixture = std::make_unique<ScreenFixture>();
        m_screen = m_fixture->show(new WelcomeDlg);
    }
    void cleanup()
    {
        m_fixture.reset();
        screentest::settle();
        QCOMPARE(screentest::livingScreens(), 0);
    }

    void backAsksAndNoStaysAndSelectGoesOn()
    {
        BoxAnswer answers({BoxAnswer::Cancel});
        screentest::key(m_screen, screentest::Back);
        QCOMPARE(answers.texts(),
                 QStringList{"You have reached the last window.Are you sure you want to exit Velmora? \n"});
        QCOMPARE(answers.buttons(), QStringList{"Yes|No"});
        QVERIFY(answers.icon().contains("MsgBox_Question"));
        QVERIFY(FakeIpc::exitRequests.isEmpty());
        QVERIFY(m_screen->isVisible());
        QCOMPARE(m_screen->focusWidget(), button());
        QVERIFY(button()->styleSheet().contains("Button_Focus_H"));
        screentest::key(m_screen, screentest::Select); // still alive
        QCOMPARE(m_fixture->screens().made(), QStringList{"loading"});
        QCOMPARE(ScreenFixture::settings().getWelcomeCheck(), QStringLiteral("1"));
        QTRY_VERIFY(!m_screen);
    }

    void aDestroyedQuestionNeitherLeavesNorBlocksKeys()
    {
        QTimer::singleShot(0, m_screen, [this] { m_screen->destroyedMsgbox(); });
        screentest::keyRelease(m_screen, screentest::Back);
        QVERIFY(FakeIpc::exitRequests.isEmpty());
        QVERIFY(m_screen->fgActionInvalid());
        {
            BoxAnswer answers({BoxAnswer::Ok});
            screentest::key(m_screen, screentest::Back);
            QCOMPARE(answers.shown(), 1);
            QCOMPARE(FakeIpc::exitKinds, QStringList("wish"));
        }
        QTimer::singleShot(0, m_screen, [this] { m_screen->close(); }); // under its question
        screentest::keyRelease(m_screen, screentest::Back);
        QVERIFY(!m_screen);
        QCOMPARE(FakeIpc::exitRequests.size(), 1);
    }

    void keysUnderABoxAreInvalid()
    {
        QTimer::singleShot(0, m_screen, [this] {
            QTest::ignoreMessage(QtDebugMsg, "WelcomeDlg,keyPressEvent,action invalid");
            QTest::ignoreMessage(QtDebugMsg, "WelcomeDlg,keyReleaseEvent,action invalid");
            QTest::keyPress(m_screen, Qt::Key(screentest::Select));
            QTest::keyRelease(m_screen, Qt::Key(screentest::Back));
            QVERIFY2(button()->styleSheet().contains("Button_Normal_H"), "only the box is amber");
            m_screen->delMsgbox();
        });
        m_screen->showMsgbox(MSG_INFO, "text");
        QVERIFY(m_fixture->screens().made().isEmpty());
    }

    void everyKeyRestartsTheIdleTimer()
    {
        const auto timers = m_screen->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
        QCOMPARE(timers.size(), 1);
        QVERIFY(!timers.first()->isActive());
        screentest::keyPress(m_screen, screentest::TopMenu);
        QVERIFY(timers.first()->isActive());
        m_screen->stopTimer();
        screentest::keyRelease(m_screen, screentest::Down);
        QCOMPARE(timers.first()->interval(), 28'800'000);
        QVERIFY(timers.first()->isActive());
    }

    void arrowsAndOtherKeysLeaveTheFocusOnTheButton()
    {
        for (int key : {int(screentest::Left), int(screentest::Up), int(screentest::Right), int(screentest::Down),
                        int(Qt::Key_Tab), int(Qt::Key_Escape), int(screentest::TopMenu)})
            screentest::key(m_screen, key);
        QCOMPARE(m_screen->focusWidget(), button());
        QVERIFY(m_screen->isVisible());
        QVERIFY(m_fixture->screens().made().isEmpty());
    }

private:
    QPushButton *button() { return child<QPushButton>(m_screen, "activateBtn"); }

    std::unique_ptr<ScreenFixture> m_fixture;
    QPointer<WelcomeDlg> m_screen;
};

QTEST_MAIN(Welcome)
#include "welcome_test.moc"
