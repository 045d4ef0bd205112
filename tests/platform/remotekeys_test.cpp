// A PC's keyboard as a remote control: the table, held keys, and the filter in an application of widgets.
#include "remotekeytable.h"

#include "netcommon/ipcthread.h"

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>
#include <QWindow>

using namespace netcommon::keys;

namespace {

constexpr int red = 0x010000CB, green = 0x010000C0;

// Logs the keys that reach a dialog.
class KeyDialog : public QDialog {
public:
    QStringList log;

protected:
    void keyPressEvent(QKeyEvent *event) override { add('+', event); }
    void keyReleaseEvent(QKeyEvent *event) override { add('-', event); }

private:
    void add(char sign, const QKeyEvent *event)
    {
        log += QChar(QLatin1Char(sign)) + QString::number(event->key(), 16) +
               QLatin1String(event->isAutoRepeat() ? "r" : "") + event->text();
    }
};

QString hex(int key)
{
    return QString::number(key, 16);
}

QStringList both(int key)
{
    return {"+" + hex(key), "-" + hex(key)};
}

} // namespace

class RemoteKeysTest : public QObject {
    Q_OBJECT
private slots:
    void theTable_data()
    {
        QTest::addColumn<int>("pressed");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("onScreens");
        QTest::addColumn<int>("inField");
        const auto row = [](const char *name, int pressed, const QString &text, int onScreens, int inField) {
            QTest::newRow(name) << pressed << text << onScreens << inField;
        };
        const int select = 0x01010000, back = 0x01000061, home = 0x0100010A;
        row("return", Qt::Key_Return, "\r", select, select);
        row("enter", Qt::Key_Enter, "\r", select, select);
        row("escape", Qt::Key_Escape, "\x1b", back, back);
        row("backspace", Qt::Key_Backspace, "\b", back, Qt::Key_Backspace);
        row("home", Qt::Key_Home, "", home, Qt::Key_Home);
        row("end", Qt::Key_End, "", Qt::Key_End, Qt::Key_End);
        row("delete", Qt::Key_Delete, "\x7f", Qt::Key_Delete, Qt::Key_Delete);
        row("F1", Qt::Key_F1, "", red, red);
        row("F2", Qt::Key_F2, "", green, green);
        row("F3", Qt::Key_F3, "", 0x01000116, 0x01000116);
        row("F4", Qt::Key_F4, "", 0x01000117, 0x01000117);
        row("red", Qt::Key_Red, "", red, red);
        row("green", Qt::Key_Green, "", green, green);
        row("arrow", Qt::Key_Left, "", 0x01000012, 0x01000012);
        row("page", Qt::Key_PageDown, "", Qt::Key_PageDown, Qt::Key_PageDown);
        row("letter", Qt::Key_A, "a", Qt::Key_A, Qt::Key_A);
        row("play", Qt::Key_MediaPlay, "", Qt::Key_MediaPlay, Qt::Key_MediaPlay);
        row("next", Qt::Key_MediaNext, "", Qt::Key_MediaNext, Qt::Key_MediaNext);
        row("stop", Qt::Key_MediaStop, "", Qt::Key_MediaStop, Qt::Key_MediaStop);
        row("pause", Qt::Key_MediaPause, "", Qt::Key_Pause, Qt::Key_Pause);
        row("menu", 0x010000DD, "", 0x010000DD, 0x010000DD);
        row("select", select, "", select, select);
        row("back", back, "", back, back);
    }

    void theTable()
    {
        QFETCH(const int, pressed);
        QFETCH(const QString, text);
        QFETCH(const int, onScreens);
        QFETCH(const int, inField);
        QCOMPARE(remoteKey({pressed, {}, text}, false), onScreens);
        QCOMPARE(remoteKey({pressed, {}, text}, true), inField);
    }

    void aHeldKeyActsOnceUnlessItMoves_data()
    {
        // + a press, - a release, small p and r the same marked as repeated.
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("events");
        QTest::addColumn<QString>("passedOn");
        for (const auto &[name, key] :
             {std::pair{"arrow", int(Qt::Key_Down)}, {"page", int(Qt::Key_PageUp)}, {"delete", int(Qt::Key_Delete)}}) {
            QTest::addRow("%s, pairs", name) << key << "+rprp-"
                                             << "+rprp-";
            QTest::addRow("%s, marked presses", name) << key << "+pp-"
                                                      << "+rprp-";
            QTest::addRow("%s, plain presses", name) << key << "+++-"
                                                     << "+rprp-";
        }
        for (const auto &[name, key] : {std::pair{"select", int(Qt::Key_Select)},
                                        {"return", int(Qt::Key_Return)},
                                        {"back", int(Qt::Key_Back)},
                                        {"escape", int(Qt::Key_Escape)},
                                        {"colour", int(Qt::Key_F1)},
                                        {"end", int(Qt::Key_End)}}) {
            QTest::addRow("%s, pairs", name) << key << "+rprp-"
                                             << "+-";
            QTest::addRow("%s, marked presses", name) << key << "+pp-"
                                                      << "+-";
            QTest::addRow("%s, plain presses", name) << key << "+++-"
                                                     << "+-";
            QTest::addRow("%s, twice", name) << key << "+-+-"
                                             << "+-+-";
        }
    }

    void aHeldKeyActsOnceUnlessItMoves()
    {
        QFETCH(const int, key);
        QFETCH(const QString, events);
        QFETCH(const QString, passedOn);
        HeldKeys held;
        QString seen;
        std::uint64_t time = 1000;
        for (const QChar event : events) {
            const bool isPress = event == u'+' || event == u'p';
            const Stroke stroke{key, {}, {}, event == u'p' || event == u'r', time += 40};
            for (const auto &delivery : isPress ? held.pressed(stroke, false) : held.released(stroke, false)) {
                seen += QLatin1Char(delivery.isPress ? (delivery.isAutoRepeat ? 'p' : '+')
                                                     : (delivery.isAutoRepeat ? 'r' : '-'));
                QCOMPARE(delivery.key, remoteKey({key, {}, {}}, false));
            }
        }
        QCOMPARE(seen, passedOn);
    }

    void keysOfTheWindowAreTranslated()
    {
        KeyDialog dialog;
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        QTest::keyClick(dialog.windowHandle(), Qt::Key_Escape);
        QTest::keyClick(dialog.windowHandle(), Qt::Key_F1);
        QTest::keyClick(dialog.windowHandle(), Qt::Key_Left);
        QCOMPARE(dialog.log, both(Qt::Key_Back) + both(red) + both(Qt::Key_Left));
        QVERIFY(dialog.isVisible()); // Escape did not close it
    }

    void returnClicksTheFocusedButtonOnce()
    {
        KeyDialog dialog;
        QPushButton button(&dialog);
        QSignalSpy clicks(&button, &QPushButton::clicked);
        dialog.show();
        button.setFocus();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        QTest::keyClick(dialog.windowHandle(), Qt::Key_Return);
        QCOMPARE(clicks.size(), 1);
        QTest::keyClick(dialog.windowHandle(), Qt::Key_Select);
        QCOMPARE(clicks.size(), 2);
    }

    void aFieldKeepsItsKeys()
    {
        KeyDialog dialog;
        QLineEdit field(&dialog);
        dialog.show();
        field.setFocus();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        QWindow *window = dialog.windowHandle();
        QTest::keyClick(window, 'a');
        QTest::keyClick(window, 'b');
        QTest::keyClick(window, Qt::Key_Backspace);
        QTest::keyClick(window, Qt::Key_Home);
        QTest::keyClick(window, 'c');
        QCOMPARE(field.text(), "ca");
        QTest::keyClick(window, Qt::Key_Delete);
        QCOMPARE(field.text(), "c");
        QVERIFY(dialog.log.filter(hex(Qt::Key_Back)).isEmpty());
        QTest::keyClick(window, Qt::Key_Escape);
        QCOMPARE(dialog.log.filter(hex(Qt::Key_Back)), QStringList{"+" + hex(Qt::Key_Back)});
        QVERIFY(dialog.isVisible());
    }

    void aWidgetMaySayThatItTakesText()
    {
        KeyDialog dialog;
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        dialog.setFocus();
        dialog.setProperty("velmoraTextEntry", true);
        QTest::keyClick(dialog.windowHandle(), Qt::Key_Backspace);
        dialog.setProperty("velmoraTextEntry", false);
        QTest::keyClick(dialog.windowHandle(), Qt::Key_Backspace);
        QCOMPARE(dialog.log.replaceInStrings("\b", ""), both(Qt::Key_Backspace) + both(Qt::Key_Back));
    }

    void theReleaseBelongsToItsPress()
    {
        KeyDialog dialog;
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        dialog.setFocus();
        QTest::keyPress(dialog.windowHandle(), Qt::Key_Backspace);
        dialog.setProperty("velmoraTextEntry", true);
        QTest::keyRelease(dialog.windowHandle(), Qt::Key_Backspace);
        QCOMPARE(dialog.log, both(Qt::Key_Back));
    }
};

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    delete netcommon::IpcThread::getInstance(); // the library is loaded for its filter
    RemoteKeysTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "remotekeys_test.moc"
