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
        screentest::prepare();
        screens.player();
        menu = new MenuDlg;
        QObject::connect(menu, &MenuDlg::itemCliecked, [this](int index) {
            indexes.append(index);
            wasVisible = menu && menu->isVisible();
        });
        QObject::connect(menu, &MenuDlg::signalDestroyedWindow, [this] { ++ends; });
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
    void theHighlightWrapsAround()
    {
        Rig rig;
        for (int i = 0; i < 10; ++i) {
            QCOMPARE(rig.highlighted(), QStringList(names.at(i)));
            QVERIFY(screentest::childWidget(rig.menu, qPrintable(names.at(i)))->hasFocus());
            rig.down(1);
        }
        QCOMPARE(rig.highlighted(), QStringList(names.first()));
        for (int i = 9; i >= 0; --i) {
            screentest::key(rig.menu, screentest::Up);
            QCOMPARE(rig.highlighted(), QStringList(names.at(i)));
        }
    }

    void everyEntryReportsItsIndexAndCloses()
    {
        const QList<QPair<int, QString>> entries = {
            {0, "Bookmark This Artist"},      {1, "Bookmark This Track"},  {2, "Do Not Play This Track For A Month"},
            {9, "Why Is This Track Playing"}, {3, "Create A New Station"}, {4, "Delete This Station"},
            {5, "Rename This Station"},       {6, "Switch User"},          {7, "Exit Velmora"}};
        for (int position = 0; position < entries.size(); ++position) {
            const auto &[index, text] = entries.at(position);
            const Row row(text);
            Rig rig;
            QCOMPARE(screentest::child<QPushButton>(rig.menu, qPrintable(names.at(position)))->text(), text);
            rig.down(position);
            screentest::key(rig.menu, screentest::Select);
            QCOMPARE(rig.indexes, QList<int>{index});
            QVERIFY(!rig.wasVisible);
            QCOMPARE(rig.menu.isNull(), index != 6); // signing out leaves the deletion to the close
            screentest::settle();
            QVERIFY(!rig.menu);
            QCOMPARE(rig.ends, 1);
        }
    }

    void backAndCloseReportNothing()
    {
        for (const bool isBack : {true, false}) {
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
        QTimer *timer = nullptr;
        for (QTimer *candidate : rig.menu->findChildren<QTimer *>())
            if (candidate->interval() == 32'400'000)
                timer = candidate;
        QVERIFY(timer && timer->isActive());
        timer->stop();
        rig.menu->loseFocus(false); // keys are refused now, but start the timer again
        screentest::key(rig.menu, screentest::Down);
        QVERIFY(timer->isActive());
        QCOMPARE(rig.highlighted(), QStringList("bookmarkArtisteBtn"));
        rig.menu->resetFocus(false);
        screentest::key(rig.menu, screentest::Down);
        QCOMPARE(rig.highlighted(), QStringList("bookmarkSongBtn"));
        QMetaObject::invokeMethod(rig.menu, "handletimer");
        QCOMPARE(rig.indexes, QList<int>{8});
        QVERIFY(!rig.wasVisible);
        screentest::settle();
        QVERIFY(!rig.menu);
    }

    void theMenuIgnoresNetworkEvents()
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
