// The two information dialogs by themselves.
#include "fakes/fakescreens.h"
#include "fakes/logcapture.h"
#include "fakes/screentest.h"
#include "station/aboutdlg.h"
#include "station/whydlg.h"

namespace {

// A parent that can close the explanation, as the player screen can.
class Parent : public QWidget {
    Q_OBJECT
signals:
    void signalDestoryDialog();
};

} // namespace

class Info : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { screentest::prepare(); }
    void aDialogEndsByItsButtonOrBack()
    {
        struct Case {
            const char *name;
            int key;
            bool ends;
        };
        const Case cases[] = {{"Select", screentest::Select, true},
                              {"Back", screentest::Back, true},
                              {"Escape", Qt::Key_Escape, false},
                              {"Down", screentest::Down, false}};
        for (const bool isWhy : {false, true}) {
            for (const auto &[name, key, ends] : cases) {
                const Row row(QStringLiteral("%1, why %2").arg(name).arg(isWhy));
                const LogCapture log;
                FakeScreens screens;
                QPointer<PlayerDialog> dialog;
                if (isWhy)
                    dialog = new WhyDlg("Because.");
                else
                    dialog = new AboutDlg;
                QSignalSpy ended(dialog.data(), &PlayerDialog::signalDestroyedWindow);
                dialog->show();
                QTRY_VERIFY(screentest::childWidget(dialog, "doneBtn")->hasFocus());
                screentest::key(dialog, key);
                QCOMPARE(dialog.isNull(), ends); // at once
                QCOMPARE(ended.size(), ends ? 1 : 0);
                delete dialog;
            }
        }
    }

    void theParentClosesTheExplanation()
    {
        const LogCapture log;
        FakeScreens screens;
        Parent parent;
        QPointer<WhyDlg> why = new WhyDlg("Because.", &parent);
        QSignalSpy ended(why.data(), &PlayerDialog::signalDestroyedWindow);
        why->show();
        emit parent.signalDestoryDialog();
        QVERIFY(!why);
        QCOMPARE(ended.size(), 1);
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
