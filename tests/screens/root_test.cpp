// The root widget: history and Back, message boxes, exit, idle check, network loss, screen saver, animation.
#include "fakes/fakeipc.h"
#include "fakes/fakenetwork.h"
#include "fakes/fakeplayback.h"
#include "fakes/fakescreens.h"
#include "fakes/screentest.h"
#include "screens/rootscreens.h"

#include "netcommon/playback.h"
#include "viewcomponent/bufferdlg.h"

#include <functional>
#include <QApplication>

namespace {

const QString exitQuestion = QStringLiteral("Are you sure you want to exit Velmora? ");
const QString lastWindowQuestion = QStringLiteral("You have reached the last window.") + exitQuestion;
const QString networkText = QStringLiteral("Unable to connect to network.");

// Runs `act` once, as soon as a box shows and `answers`, if any, have noted it.
void onBox(QObject *context, const std::function<void()> &act, const BoxAnswer *answers = nullptr)
{
    auto *timer = new QTimer(context);
    timer->callOnTimeout([timer, act, answers] {
        if (!screentest::visibleBox() || (answers && answers->shown() == 0))
            return;
        timer->stop();
        act();
    });
    timer->start(1);
}

// Runs the event loop; 99 when nothing ends it.
int execute()
{
    QTimer net;
    QObject::connect(&net, &QTimer::timeout, qApp, [] { QCoreApplication::exit(99); });
    net.start(10'000);
    return QApplication::exec();
}

QTimer *idleTimer(const VelmoraParentWidget &screen)
{
    return screen.findChild<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
}

} // namespace

class Root : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { screentest::prepare(); }
    void init()
    {
        FakeIpc::reset();
        FakePlayback::reset();
        m_context = std::make_unique<QObject>();
        m_screens = std::make_unique<FakeScreens>();
        m_screen = new ProbeScreen;
        m_screen->show();
    }
    void cleanup()
    {
        FakeNetwork::back();
        delete m_screen;
        m_screens.reset();
        m_context.reset();
        screentest::settle();
        QCOMPARE(screentest::livingScreens(), 0);
    }

    // --- history and Back

    void backRebuildsTheScreenOfTheNewestEntry()
    {
        const std::tuple<int, QStringList> cases[] = {
            {2, QStringList{"player"}},       // player
            {3, QStringList{"signIn"}},       // sign-in
            {4, QStringList{}},               // none
            {5, QStringList{"activation |"}}, // activation
            {6, QStringList{"selectUser 2"}}, // account selection
            {7, QStringList{}},               // unknown
        };
        for (const auto &[type, made] : cases) {
            const Row row(QStringLiteral("type %1").arg(type));
            cleanup(); // a fresh screen for each
            init();
            VelmoraParentWidget::recordHistroyUiType(VELMORA_UI_TYPE_NONE);
            VelmoraParentWidget::recordHistroyUiType(static_cast<_VELMORA_UI_TYPE_E>(type));
            emit m_screen->signalReturnBtn();
            QCOMPARE(m_screens->made(), made);
            QCOMPARE(VelmoraParentWidget::m_ui_type_queue.size(), 1);
            if (type == VELMORA_UI_TYPE_MAIN) {
                QVERIFY(PlayerPort::existing()->screen()->isVisible());
                QCOMPARE(m_screens->idleRestarts(), 1);
            } else if (m_screens->last()) {
                QVERIFY(m_screens->last()->isVisible());
            }
            screentest::settle();
            QVERIFY2(!m_screen, "the screen that was left is deleted");
        }
    }

    void backWhileABoxIsOpenNeitherClosesNorPops()
    {
        VelmoraParentWidget::recordHistroyUiType(VELMORA_UI_TYPE_SIGNIN);
        onBox(m_context.get(), [this] {
            emit m_screen->signalReturnBtn();
            m_screen->delMsgbox();
        });
        m_screen->showMsgbox(MSG_INFO, "text");
        QVERIFY(m_screen->isVisible());
        QCOMPARE(VelmoraParentWidget::m_ui_type_queue.size(), 1);
        QVERIFY(m_screens->made().isEmpty());
    }

    void backWithAnEmptyHistoryAsksWhetherToExit()
    {
        BoxAnswer answers({BoxAnswer::Cancel, BoxAnswer::Cancel});
        emit m_screen->signalReturnBtn();
        emit m_screen->signalBlueBtn(); // the sentence about the last window was for Back only
        QCOMPARE(answers.texts(), QStringList({lastWindowQuestion, exitQuestion}));
        QCOMPARE(answers.buttons(), QStringList({"Yes|No", "Yes|No"}));
        QVERIFY(FakeIpc::exitRequests.isEmpty());
        QVERIFY(!m_screen->isEixt && m_screen->isVisible());
    }

    // --- exit

    void yesAsksTheMenuSystemForTheExit()
    {
        BoxAnswer answers({BoxAnswer::Ok});
        m_screen->m_isNetworkError = true;
        emit m_screen->signalBlueBtn();
        QCOMPARE(answers.texts(), QStringList{exitQuestion});
        QCOMPARE(FakeIpc::exitRequests, QList<bool>{true});
        QCOMPARE(FakeIpc::exitKinds, QStringList("wish"));
        QVERIFY(m_screen->isEixt);
        QVERIFY(m_screen->isVisible());
    }

    void anotherBlueKeyWhileAnExitIsUnderWayDoesNothing()
    {
        BoxAnswer answers({BoxAnswer::Nothing});
        onBox(
            m_context.get(),
            [this] {
                emit m_screen->signalBlueBtn();
                emit m_screen->signalReturnBtn();
                m_screen->delMsgbox();
            },
            &answers);
        emit m_screen->signalBlueBtn();
        QCOMPARE(answers.shown(), 1);
        QCOMPARE(FakeIpc::exitRequests.size(), 1);
    }

    void aRefusedExitSaysSoAndTheRadioStays()
    {
        FakeIpc::isHandedOver = false;
        BoxAnswer answers({BoxAnswer::Ok});
        m_screen->isEixt = true;
        emit m_screen->signalExit(false, true);
        QCOMPARE(answers.texts(), QStringList{"Can not exit Velmora,send exit Velmora signal failed!"});
        QVERIFY(answers.icon().contains("MsgBox_Error"));
        QVERIFY(!m_screen->isEixt && m_screen->isVisible());
    }

    void theMenuSystemsExitEndsTheEventLoopAndEveryScreen()
    {
        for (const bool isTogether : {true, false}) {
            const Row row(isTogether ? "told to all" : "told to the first screen, whose end takes the others along");
            cleanup(); // a fresh screen for each
            init();
            auto *hidden = new ProbeScreen;
            bool isAnsweredOutside = false;
            int answer = -1;
            QTimer::singleShot(0, hidden, [&] {
                const QPointer<ProbeScreen> guard(hidden);
                answer = hidden->showMsgbox(MSG_QUESTION, "question");
                isAnsweredOutside = !guard || (guard->isBoxDestroyed() && guard->isEixt);
            });
            onBox(m_context.get(), [this, isTogether] {
                if (isTogether)
                    FakeIpc::exitFromMenu();
                else
                    emit m_screen->signalExit(true, false);
            });
            QCOMPARE(execute(), 0);
            QCOMPARE(answer, 0);
            QVERIFY2(isAnsweredOutside, "a box that the exit took away was not answered with No");
            QVERIFY(!FakeIpc::responses.isEmpty());
            QCOMPARE(FakeIpc::responses.first(), 2);
            QVERIFY(FakeIpc::exitRequests.isEmpty());
            screentest::settle();
            QVERIFY(!m_screen);
        }
    }

    // --- message boxes

    void buttonLabelsHoldForTheNextBoxOnly()
    {
        BoxAnswer answers({BoxAnswer::Ok, BoxAnswer::Cancel, BoxAnswer::Ok, BoxAnswer::Ok, BoxAnswer::Ok});
        for (int labels : {LABELS_YES_NO, LABELS_DEFAULT, LABELS_ARTIST_TRACK, LABELS_HOME}) {
            if (labels != LABELS_DEFAULT)
                m_screen->setMsgBoxInfoType(labels);
            QCOMPARE(m_screen->showMsgbox(MSG_QUESTION, QString()), labels == LABELS_DEFAULT ? 0 : 1);
        }
        m_screen->setMsgBoxInfoType(LABELS_HOME);
        m_screen->showMsgbox(MSG_WARNING, QString());
        QCOMPARE(answers.buttons(), QStringList({"Yes|No", "OK|Cancel", "Artist|Track", "Home|Cancel", "Home"}));
    }

    void aBoxBorrowsTheFocusOfTheScreen()
    {
        BoxAnswer answers({BoxAnswer::Ok});
        QVERIFY(m_screen->fgActionInvalid());
        onBox(m_context.get(), [this] {
            m_screen->notes += m_screen->fgActionInvalid() ? "may act" : "may not";
            m_screen->controlAnimation(false, "text"); // none under a box
        });
        m_screen->showMsgbox(MSG_INFO, QString());
        QVERIFY(m_screen->notes.startsWith("lose box") && m_screen->notes.endsWith("reset"));
        QVERIFY(!m_screen->notes.contains("may act"));
        QVERIFY(m_screen->fgActionInvalid() && !m_screen->isAnimationShown());
        QVERIFY(!m_screen->isMsgboxShown() && !m_screen->isBoxDestroyed());
    }

    void aDestroyedBoxIsNoAnswer()
    {
        const std::tuple<QString, int, bool> cases[] = {
            {"destroy", 0, true}, {"hide", 0, true}, {"replace", 0, true}, {"confirm", 1, false}, {"no", 0, false},
        };
        for (const auto &[how, result, isDestroyed] : cases) {
            const Row row(how);
            cleanup(); // a fresh screen for each
            init();
            onBox(m_context.get(), [this, how] {
                if (how == "destroy")
                    m_screen->destroyedMsgbox();
                else if (how == "hide")
                    m_screen->hideMsgbox();
                else if (how == "confirm")
                    m_screen->delMsgbox();
                else if (how == "no")
                    screentest::child<QPushButton>(screentest::visibleBox(), "cancelBtn")->click();
                else {
                    BoxAnswer inner({BoxAnswer::Ok});
                    QCOMPARE(m_screen->showMsgbox(MSG_INFO, QString()), 1);
                    QVERIFY(!m_screen->isBoxDestroyed());
                }
            });
            QCOMPARE(m_screen->showMsgbox(MSG_QUESTION, QString()), result);
            QCOMPARE(m_screen->isBoxDestroyed(), isDestroyed);
            QVERIFY(!screentest::visibleBox());
            QCOMPARE(screentest::livingScreens(), 1);
        }
    }

    void aDestroyedQuestionTriggersNoAction()
    {
        m_screens->player();
        FakePlayback::state = PLAYBACK_STATE_PLAYING;
        onBox(m_context.get(), [this] { m_screen->destroyedMsgbox(); });
        m_screen->NohandleTimeOut();
        onBox(m_context.get(), [this] { m_screen->destroyedMsgbox(); });
        emit m_screen->signalBlueBtn();
        onBox(m_context.get(), [this] { m_screen->destroyedMsgbox(); });
        m_screen->call("gotoHome");
        QVERIFY(FakeIpc::exitRequests.isEmpty());
        QCOMPARE(m_screens->playerNotes(), QStringList({"stop", "play"})); // another box was answered
        QVERIFY2(!m_screen->isEixt, "the blue key still works");
    }

    void everyQuestionSurvivesTheEndOfItsScreen()
    {
        const std::function<void()> questions[] = {
            [this] { emit m_screen->signalBlueBtn(); }, [this] { m_screen->NohandleTimeOut(); },
            [this] { m_screen->call("gotoHome"); },     [] { FakeNetwork::lost(); },
            [this] { m_screen->handleWSError(5099); },  [this] { m_screen->showMsgbox(MSG_QUESTION, QString()); }};
        for (const auto &ask : questions) {
            cleanup();
            init();
            FakePlayback::state = PLAYBACK_STATE_PLAYING;
            onBox(m_context.get(), [this] { m_screen->close(); });
            ask();
            QVERIFY(!m_screen && !screentest::visibleBox());
            QVERIFY(FakeIpc::exitRequests.isEmpty());
        }
    }

    // --- errors of the service

    void anInactiveAccountIsShownOnceAndReported()
    {
        BoxAnswer answers({BoxAnswer::Ok});
        QSignalSpy fatal(m_screen, &VelmoraParentWidget::signalFatalErr);
        const QString text = m_screen->handleWSError(VLM_WS_ERR_ACCOUNT_INACTIVE);
        QVERIFY2(text.contains(" listener support at ") && text.section(" at ", 1).contains('@'), qPrintable(text));
        m_screen->handleWSError(5098); // handleWSError knows one code only
        m_screen->handleWSError(5099);
        m_screen->handleWSError(5099);
        QCOMPARE(answers.shown(), 1);
        QVERIFY(answers.icon().contains("MsgBox_Warning"));
        QCOMPARE(fatal.count(), 1);
        QCOMPARE(fatal.first().first().toInt(), 5099);
        QVERIFY(m_screen->m_isErrorMsg);
    }

    // --- idle check

    void theIdleCheckAsksOnlyWhileATrackGoesOn()
    {
        const std::tuple<int, bool, bool> cases[] = {
            {PLAYBACK_STATE_STOPPED, false, false},
            {PLAYBACK_STATE_PLAYING, false, true},
            {PLAYBACK_STATE_PAUSED, false, true},
            {PLAYBACK_STATE_PLAYING, true, false},
            {0, false, false}, // nothing yet
        };
        for (const auto &[state, isAnimation, asks] : cases) {
            const Row row(QStringLiteral("state %1, animation %2").arg(state).arg(isAnimation));
            cleanup(); // a fresh screen for each
            init();
            m_screens->player();
            FakePlayback::state = state;
            m_screen->runTimer();
            QCOMPARE(idleTimer(*m_screen)->interval(), 28'800'000);
            if (isAnimation)
                m_screen->controlAnimation(false, "text");
            BoxAnswer answers({BoxAnswer::Ok});
            m_screen->NohandleTimeOut();
            QCOMPARE(answers.texts(), asks ? QStringList{"    Are you still there ? "} : QStringList{});
            QVERIFY(idleTimer(*m_screen)->isActive());
            QCOMPARE(idleTimer(*m_screen)->interval(), asks ? 28'800'000 : 3'000);
            QCOMPARE(m_screens->playerNotes(), asks ? QStringList({"stop", "play"}) : QStringList{});
        }
    }

    void anUnansweredIdleQuestionEndsTheRadio()
    {
        PlayerPort *player = m_screens->player();
        player->screen()->show();
        FakePlayback::state = PLAYBACK_STATE_PLAYING;
        player->screen()->runTimer();
        BoxAnswer answers({BoxAnswer::Cancel});
        QVERIFY(QMetaObject::invokeMethod(idleTimer(*player->screen()), "timeout"));
        QCOMPARE(answers.buttons(), QStringList{"Yes|No"});
        QCOMPARE(m_screens->playerNotes(), QStringList{"own stop"}); // the player is told by its own signal
        QCOMPARE(FakeIpc::exitKinds, QStringList("wish"));           // only a person answers No
        QVERIFY(!idleTimer(*player->screen())->isActive());
    }

    // --- network

    void theVisibleScreenReportsALossOnce()
    {
        for (const bool isOlderHidden : {false, true}) {
            cleanup();
            init();
            PlayerPort *player = m_screens->player(); // hidden
            ProbeScreen newer;
            m_screen->setVisible(!isOlderHidden);
            newer.setVisible(isOlderHidden);
            BoxAnswer answers({BoxAnswer::Ok, BoxAnswer::Ok});
            QWidget *owner = nullptr;
            onBox(m_context.get(), [&owner] { owner = screentest::visibleBox()->parentWidget(); });
            FakeNetwork::lost();
            QCOMPARE(answers.texts(), QStringList{networkText});
            QCOMPARE(answers.buttons(), QStringList{"Home"});
            QVERIFY(answers.icon().contains("MsgBox_Warning"));
            QCOMPARE(owner, isOlderHidden ? &newer : m_screen.data());
            QCOMPARE(FakeIpc::exitRequests, QList<bool>{true});
            QCOMPARE(FakeIpc::exitKinds, QStringList("fault"));
            for (VelmoraParentWidget *screen : {static_cast<VelmoraParentWidget *>(m_screen), player->screen(),
                                                static_cast<VelmoraParentWidget *>(&newer)})
                QVERIFY(screen->m_isErrorMsg && screen->m_isNetworkError);
            QVERIFY(m_screens->playerNotes().contains("stop") && m_screens->playerNotes().contains("own stop"));
        }
    }

    void aLossClosesAnOpenQuestion()
    {
        BoxAnswer answers({BoxAnswer::Nothing, BoxAnswer::Ok});
        onBox(
            m_context.get(), [] { FakeNetwork::lost(); }, &answers);
        emit m_screen->signalBlueBtn();
        QCOMPARE(answers.texts(), QStringList({exitQuestion, networkText}));
        QCOMPARE(FakeIpc::exitRequests, QList<bool>{true}); // one, by the network box
        QVERIFY(!screentest::visibleBox());
    }

    void aLossAfterARecoveryIsReportedAgain()
    {
        FakeIpc::isHandedOver = false; // the radio stays
        BoxAnswer answers({BoxAnswer::Ok, BoxAnswer::Ok, BoxAnswer::Ok, BoxAnswer::Ok});
        FakeNetwork::lost();
        QVERIFY(m_screen->m_isNetworkError);
        FakeNetwork::back();
        QVERIFY(!m_screen->m_isNetworkError);
        m_screen->hide();
        ProbeScreen next;
        next.show();
        FakeNetwork::lost();
        QCOMPARE(answers.texts().count(networkText), 2);
    }

    void congestionIsReportedAndRequestsTheExit()
    {
        BoxAnswer answers({BoxAnswer::Ok});
        m_screen->call("gotoHome");
        QCOMPARE(answers.texts(), QStringList{"There may be network congestion."});
        QCOMPARE(answers.buttons(), QStringList{"Home"});
        QCOMPARE(FakeIpc::exitKinds, QStringList("fault"));
    }

    // --- screen saver, animation

    void theScreenSaverTakesTheFocusUnlessABoxIsOpen()
    {
        FakeIpc::screenSaver(true);
        QVERIFY(!m_screen->fgActionInvalid());
        FakeIpc::screenSaver(false);
        QVERIFY(m_screen->fgActionInvalid());
        QCOMPARE(m_screen->notes, QStringList({"lose", "reset"}));
        m_screen->notes.clear();
        onBox(m_context.get(), [this] {
            m_screen->notes.clear();
            FakeIpc::screenSaver(true);
            FakeIpc::screenSaver(false);
            m_screen->notes += "end";
            m_screen->delMsgbox();
        });
        m_screen->showMsgbox(MSG_INFO, QString());
        QCOMPARE(m_screen->notes.first(), QStringLiteral("end"));
    }

    void theAnimationKeepsKeysFromTheScreen()
    {
        QSignalSpy clicks(m_screen->button, &QPushButton::clicked);
        m_screen->controlAnimation(false, "Delete station...");
        QVERIFY(m_screen->isAnimationShown());
        QVERIFY(!m_screen->fgActionInvalid());
        QVERIFY(m_screen->focusWidget() != m_screen->button);
        screentest::key(m_screen, screentest::Select);
        QCOMPARE(clicks.size(), 0);
        m_screen->button->setFocus(); // as a screen does when its focus returns
        FakeIpc::screenSaver(false);
        QVERIFY(m_screen->focusWidget() != m_screen->button);
        m_screen->controlAnimation(false, "again"); // one at a time
        QCOMPARE(m_screen->findChildren<viewcomponent::BufferDlg *>().size(), 1);
        m_screen->controlAnimation(true);
        screentest::settle();
        QVERIFY(m_screen->fgActionInvalid());
        QCOMPARE(m_screen->focusWidget(), m_screen->button);
        screentest::key(m_screen, screentest::Select);
        QCOMPARE(clicks.size(), 1);
        QCOMPARE(m_screen->findChildren<viewcomponent::BufferDlg *>().size(), 0);
    }

    void theNetworkComingBackEndsTheAnimation()
    {
        m_screen->call("startAniTimer");
        QVERIFY2(!m_screen->isAnimationShown(), "only while the network is down");
        m_screen->m_isNetworkError = true;
        m_screen->call("startAniTimer");
        QVERIFY(m_screen->isAnimationShown());
        FakeNetwork::back();
        QVERIFY(!m_screen->isAnimationShown());
    }

private:
    std::unique_ptr<QObject> m_context;
    std::unique_ptr<FakeScreens> m_screens;
    QPointer<ProbeScreen> m_screen;
};

QTEST_MAIN(Root)
#include "root_test.moc"
