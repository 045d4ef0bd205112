// The two information dialogs by themselves.
#include "fakes/fakescreens.h"
#include "fakes/logcapture.h"
#include "fakes/screentest.h"
#include "station/aboutdlg.h"
#include "station/whydlg.h"

#include <QLabel>
#include <QPushButton>

namespace {

// A parent as the player screen: it can take the explanation away.
class Parent : public QWidget {
    Q_OBJECT
signals:
    void signalDestoryDialog();
};

} // namespace

class Info : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { screentest::registerTypes(); }
    void aDialogEndsByItsButtonOrBack_data()
    {
        QTest::addColumn<bool>("isWhy");
        QTest::addColumn<int>("key");
        QTest::addColumn<bool>("ends");
        for (const bool isWhy : {false, true}) {
            const char *name = isWhy ? "why" : "about";
            QTest::addRow("%s, Select", name) << isWhy << int(screentest::Select) << true;
            QTest::addRow("%s, Back", name) << isWhy << int(screentest::Back) << true;
            QTest::addRow("%s, Escape", name) << isWhy << int(Qt::Key_Escape) << false;
            QTest::addRow("%s, Down", name) << isWhy << int(screentest::Down) << false;
        }
    }

    void aDialogEndsByItsButtonOrBack()
    {
        QFETCH(bool, isWhy);
        QFETCH(int, key);
        QFETCH(bool, ends);
        const LogCapture log;
        FakeScreens screens;
        QPointer<VelmoraParentWidget> dialog;
        if (isWhy)
            dialog = new WhyDlg("Because.");
        else
            dialog = new AboutDlg;
        QSignalSpy ended(dialog, SIGNAL(signalDestroyedWindow()));
        dialog->show();
        QTRY_VERIFY(screentest::childWidget(dialog, "doneBtn")->hasFocus());
        screentest::key(dialog, key);
        QCOMPARE(dialog.isNull(), ends); // at once
        QCOMPARE(ended.size(), ends ? 1 : 0);
        delete dialog;
    }

    void theParentTakesTheExplanationAway()
    {
        const LogCapture log;
        FakeScreens screens;
        Parent parent;
        QPointer<WhyDlg> why = new WhyDlg("Because.", &parent);
        QSignalSpy ended(why, SIGNAL(signalDestroyedWindow()));
        why->show();
        emit parent.signalDestoryDialog();
        QVERIFY(!why);
        QCOMPARE(ended.size(), 1);
    }

    void aLongExplanationWraps()
    {
        const LogCapture log;
        FakeScreens screens;
        WhyDlg why(QString("a warm and slow beat,").repeated(30));
        auto *label = screentest::child<QLabel>(&why, "whyLabel");
        QVERIFY(label->wordWrap());
        QVERIFY(label->heightForWidth(label->width()) <= label->height());
        QVERIFY(label->heightForWidth(label->width()) > 3 * label->fontMetrics().height());
        why.setAttribute(Qt::WA_DeleteOnClose, false);
    }

    void aBoxOverADialogGivesTheFocusBack()
    {
        const LogCapture log;
        FakeScreens screens;
        AboutDlg about;
        about.show();
        BoxAnswer answers({BoxAnswer::Ok});
        about.showMsgbox(MSG_INFO, "A box");
        QCOMPARE(about.focusWidget(), screentest::childWidget(&about, "doneBtn"));
        QVERIFY(about.fgActionInvalid());
    }
};

QTEST_MAIN(Info)
#include "info_test.moc"
