// The track menu by itself: its keys, the indexes that it reports, its end, its timers.
#include "fakes/fakenetwork.h"
#include "fakes/fakescreens.h"
#include "fakes/logcapture.h"
#include "fakes/screentest.h"
#include "station/menudlg.h"

#include <QPushButton>

namespace {

const QStringList names = {"bookmarkArtisteBtn", "bookmarkSongBtn",  "sleepBtn",   "whyBtn",  "createstationBtn",
                           "deletestationBtn",   "renamestationBtn", "signoutBtn", "exitBtn", "closeBtn"};

struct Rig {
    Rig()
    {
        screens.player();
        menu = new MenuDlg;
        QObject::connect(menu, &MenuDlg::itemCliecked, [this](int index) {
            indexes.append(index);
            wasVisible = menu && menu->isVisible();
        });
        QObject::connect(menu, &MenuDlg::signalDestroyedWindow, [this] { ++ends; });
        menu->move(450, 215);
        menu->show();
        if (!QTest::qWaitForWindowActive(menu))
            qFatal("the window does not become active");
    }
    ~Rig() { delete menu; }

    QStringList highlighted() const
    {
        QStringList found;
        for (const QString &name : names)
            if (screentest::childWidget(menu, qPrintable(name))->styleSheet() ==
                "border-image: url(:/images/Button_Focus_H.png);\ncolor: rgb(0, 0,0);")
                found.append(name);
        return found;
    }
    void down(int times) const
    {
        for (int i = 0; i < times; ++i)
            screentest::key(menu, screentest::Down);
    }

    LogCapture log;
    FakeScreens screens;
    QPointer<MenuDlg> menu;
    QList<int> indexes;
    int ends = 0;
    bool wasVisible = false;
};

} // namespace

class Menu : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { screentest::registerTypes(); }
    void theHighlightGoesRound()
    {
        Rig rig;
        for (int i = 0; i < 11; ++i) {
            QCOMPARE(rig.highlighted(), QStringList(names.at(i % 10)));
            QVERIFY(screentest::childWidget(rig.menu, qPrintable(names.at(i % 10)))->hasFocus());
            rig.down(1);
        }
        for (int i = 11; i > 0; --i) {
            screentest::key(rig.menu, screentest::Up);
            QCOMPARE(rig.highlighted(), QStringList(names.at((i - 1 + 10) % 10 == 0 ? 0 : (i - 1) % 10)));
        }
        screentest::key(rig.menu, screentest::Up);
        QCOMPARE(rig.highlighted(), QStringList("closeBtn"));
    }

    void everyEntryReportsItsIndexAndCloses_data()
    {
        QTest::addColumn<int>("position");
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("text");
        const QList<QPair<int, const char *>> entries = {
            {0, "Bookmark This Artist"},      {1, "Bookmark This Track"},  {2, "Do Not Play This Track For A Month"},
            {9, "Why Is This Track Playing"}, {3, "Create A New Station"}, {4, "Delete This Station"},
            {5, "Rename This Station"},       {6, "Switch User"},          {7, "Exit Velmora"}};
        for (int i = 0; i < entries.size(); ++i)
            QTest::newRow(entries.at(i).second)
                << i << entries.at(i).first << QString::fromLatin1(entries.at(i).second);
    }

    void everyEntryReportsItsIndexAndCloses()
    {
        QFETCH(int, position);
        QFETCH(int, index);
        QFETCH(QString, text);
        Rig rig;
        QCOMPARE(screentest::child<QPushButton>(rig.menu, qPrintable(names.at(position)))->text(), text);
        QCOMPARE(screentest::childWidget(rig.menu, qPrintable(names.at(position)))->geometry(),
                 QRect(15, 12 + 46 * position, 371, 41));
        rig.down(position);
        screentest::key(rig.menu, screentest::Select);
        QCOMPARE(rig.indexes, QList<int>{index});
        QVERIFY(!rig.wasVisible);
        QCOMPARE(rig.menu.isNull(), index != 6); // signing out leaves the deletion to the close
        screentest::settle();
        QVERIFY(!rig.menu);
        QCOMPARE(rig.ends, 1);
    }

    void backAndCloseReportNothing()
    {
        const bool cases[] = {
            true,  // Back
            false, // Close Menu
        };
        for (const auto &isBack : cases) {
            Rig rig;
            if (isBack) {
                screentest::keyPress(rig.menu, screentest::Back);
            } else {
                rig.down(9);
                screentest::key(rig.menu, screentest::Select);
            }
            screentest::settle();
            QVERIFY(!rig.menu);
            QVERIFY(rig.indexes.isEmpty());
            QCOMPARE(rig.ends, 1);
            QCOMPARE(rig.screens.idleRestarts(), 1);
        }
    }

    void nineHoursWithoutAKeyReportEight()
    {
        Rig rig;
        const auto timers = rig.menu->findChildren<QTimer *>();
        const auto closing = std::find_if(timers.begin(), timers.end(),
                                          [](const QTimer *timer) { return timer->interval() == 32'400'000; });
        QVERIFY(closing != timers.end());
        QVERIFY((*closing)->isActive());
        QMetaObject::invokeMethod(rig.menu, "handletimer");
        QCOMPARE(rig.indexes, QList<int>{8});
        QVERIFY(!rig.wasVisible);
        screentest::settle();
        QVERIFY(!rig.menu);
    }

    void everyKeyReleaseRestartsTheTimer()
    {
        Rig rig;
        QTimer *timer = nullptr;
        for (QTimer *candidate : rig.menu->findChildren<QTimer *>())
            if (candidate->interval() == 32'400'000)
                timer = candidate;
        QVERIFY(timer);
        timer->stop();
        rig.menu->loseFocus(false); // keys are refused now
        screentest::key(rig.menu, screentest::Down);
        QVERIFY(timer->isActive());
        QCOMPARE(rig.highlighted(), QStringList("bookmarkArtisteBtn"));
        rig.menu->resetFocus(false);
        screentest::key(rig.menu, screentest::Down);
        QCOMPARE(rig.highlighted(), QStringList("bookmarkSongBtn"));
    }

    void theNetworkIsThePlayersBusiness()
    {
        Rig rig;
        BoxAnswer answers({BoxAnswer::Ok});
        FakeNetwork::lost();
        screentest::settle();
        QVERIFY(!rig.menu->m_isNetworkError && !rig.menu->m_isErrorMsg);
    }

    void aReceiverMayDeleteTheMenu()
    {
        Rig rig;
        QObject::connect(rig.menu, &MenuDlg::itemCliecked, [&rig] { delete rig.menu; });
        screentest::key(rig.menu, screentest::Select);
        QVERIFY(!rig.menu);
        QCOMPARE(rig.ends, 1);
    }
};

QTEST_MAIN(Menu)
#include "menu_test.moc"
