// A PC's keyboard as a remote control: the table, held keys, and the filter in an application of widgets.
#include "evdevremote.h"
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

#include <linux/input.h>

using namespace netcommon::keys;

namespace {

constexpr int red = 0x010000CB, green = 0x010000C0;

// Logs the keys that reach a dialog.
class KeyDialog : public QDialog {
public:
    // Up and active, with the focus on the child or itself.
    bool isUp(QWidget *focus = nullptr)
    {
        show();
        (focus ? focus : this)->setFocus();
        return QTest::qWaitForWindowActive(this);
    }
    void click(std::initializer_list<int> keys)
    {
        for (int key : keys)
            QTest::keyClick(windowHandle(), Qt::Key(key));
    }
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
    void theTable()
    {
        const auto row = [](const char *name, int pressed, const QString &text, int onScreens, int inField) {
            QVERIFY2(remoteKey({pressed, {}, text}, false) == onScreens, name);
            QVERIFY2(remoteKey({pressed, {}, text}, true) == inField, name);
        };
        const int select = 0x01010000, back = 0x01000061, home = 0x0100010A;
        row("return", Qt::Key_Return, "\r", select, select);
        row("enter", Qt::Key_Enter, "\r", select, select);
        row("escape", Qt::Key_Escape, "\x1b", back, back);
        row("backspace", Qt::Key_Backspace, "\b", back, Qt::Key_Backspace);
        row("home", Qt::Key_Home, "", home, Qt::Key_Home);
        row("house", Qt::Key_HomePage, "", home, home);
        row("delete", Qt::Key_Delete, "\x7f", Qt::Key_Delete, Qt::Key_Delete);
        row("F1", Qt::Key_F1, "", red, red);
        row("F2", Qt::Key_F2, "", green, green);
        row("F3", Qt::Key_F3, "", 0x01000116, 0x01000116);
        row("F4", Qt::Key_F4, "", 0x01000117, 0x01000117);
        row("red", Qt::Key_Red, "", red, red);
        row("arrow", Qt::Key_Left, "", 0x01000012, 0x01000012);
        row("letter", Qt::Key_A, "a", Qt::Key_A, Qt::Key_A);
        row("next", Qt::Key_MediaNext, "", Qt::Key_MediaNext, Qt::Key_MediaNext);
        row("pause", Qt::Key_MediaPause, "", Qt::Key_Pause, Qt::Key_Pause);
        row("menu", 0x010000DD, "", 0x010000DD, 0x010000DD);
        row("F10", Qt::Key_F10, "", 0x01000072, 0x01000072);
    }

    // Events and results: + a press, - a release; p and r are a press and a release marked as repeated.
    void aHeldKeyActsOnceUnlessItMoves()
    {
        const auto row = [](const char *name, int key, const char *events, const QString &passedOn) {
            HeldKeys held;
            QString seen;
            std::uint64_t time = 1000;
            for (const QChar event : QString(events)) {
                const bool isPress = event == u'+' || event == u'p';
                const Stroke stroke{key, {}, {}, event == u'p' || event == u'r', time += 40};
                for (const auto &delivery : isPress ? held.pressed(stroke, false) : held.released(stroke, false)) {
                    seen += QLatin1Char(delivery.isPress ? (delivery.isAutoRepeat ? 'p' : '+')
                                                         : (delivery.isAutoRepeat ? 'r' : '-'));
                    QVERIFY2(delivery.key == remoteKey({key, {}, {}}, false), name);
                }
            }
            QVERIFY2(seen == passedOn, qPrintable(QString(name) + ' ' + events + ": " + seen));
        };
        const std::tuple<const char *, int, bool> keys[] = {
            {"arrow", Qt::Key_Down, true}, {"page", Qt::Key_PageUp, true},    {"delete", Qt::Key_Delete, true},
            {"volume", Qt::Key_F9, true},  {"select", Qt::Key_Select, false}, {"return", Qt::Key_Return, false},
            {"back", Qt::Key_Back, false}, {"escape", Qt::Key_Escape, false}, {"colour", Qt::Key_F1, false},
            {"end", Qt::Key_End, false}};
        for (const auto &[name, key, moves] : keys) {
            for (const char *events : {"+rprp-", "+pp-", "+++-"}) // pairs, marked presses, plain presses
                row(name, key, events, moves ? "+rprp-" : "+-");
            if (!moves)
                row(name, key, "+-+-", "+-+-");
        }
    }

    void keysOfTheWindowAreTranslated()
    {
        KeyDialog dialog;
        QVERIFY(dialog.isUp());
        dialog.click({Qt::Key_Escape, Qt::Key_F1, Qt::Key_Left});
        QCOMPARE(dialog.log, both(Qt::Key_Back) + both(red) + both(Qt::Key_Left));
        QVERIFY(dialog.isVisible()); // Escape did not close it
    }

    // As the kernel's decoder of an infrared remote delivers them: a scan code, a key, a report.
    void theKernelsRemoteControlsPressTheRemotesKeys()
    {
        using netcommon::evdev::isRemote, netcommon::evdev::KeySet, netcommon::evdev::Reader;
        using Strokes = std::vector<netcommon::evdev::Stroke>;
        QByteArray recorded;
        const auto event = [&](int type, int code, int value) {
            input_event record{};
            record.type = std::uint16_t(type);
            record.code = std::uint16_t(code);
            record.value = value;
            recorded.append(reinterpret_cast<const char *>(&record), sizeof record);
        };
        const auto key = [&](int code, int value) {
            event(EV_MSC, MSC_SCAN, 0x800f041f);
            event(EV_KEY, code, value);
            event(EV_SYN, SYN_REPORT, 0);
        };
        for (const int value : {1, 2, 2, 0})
            key(KEY_DOWN, value);
        key(KEY_OK, 1);
        key(KEY_OK, 0);
        key(KEY_PROG1, 1); // no key of this remote
        key(KEY_RED, 1);
        event(EV_SYN, SYN_DROPPED, 0);
        event(EV_KEY, KEY_BLUE, 1); // incomplete
        event(EV_SYN, SYN_REPORT, 0);
        key(KEY_RED, 0);
        key(KEY_NUMERIC_7, 1);
        const int down = Qt::Key_Down, select = Qt::Key_Select;
        const Strokes expected{{down, true, false},  {down, true, true},    {down, true, true},
                               {down, false, false}, {select, true, false}, {select, false, false},
                               {red, true, false},   {red, false, false},   {Qt::Key_7, true, false}};
        for (const qsizetype piece : {recorded.size(), qsizetype(7)}) { // whole, and in parts of records
            Reader reader;
            Strokes strokes;
            for (qsizetype at = 0; at < recorded.size(); at += piece)
                for (const auto &stroke : reader.read(recorded.mid(at, piece)))
                    strokes.push_back(stroke);
            QVERIFY(strokes == expected);
        }
        const auto keys = [](std::initializer_list<int> codes) {
            KeySet set;
            for (const int code : codes)
                set.set(size_t(code));
            return set;
        };
        QVERIFY(isRemote(keys({KEY_OK, KEY_UP}), BUS_USB));
        QVERIFY(isRemote(keys({KEY_UP}), BUS_CEC));
        QVERIFY(!isRemote(keys({KEY_A, KEY_Z, KEY_SELECT}), BUS_USB)); // a keyboard
        QVERIFY(!isRemote(keys({KEY_POWER}), BUS_HOST));
    }

    void volumeKeysShowABarAndReachNoScreen()
    {
        KeyDialog dialog;
        dialog.resize(1280, 720);
        QPushButton button(&dialog);
        QVERIFY(dialog.isUp(&button));
        QTest::keyClick(dialog.windowHandle(), Qt::Key_F9);
        const auto *const bar = dialog.findChild<QWidget *>(QStringLiteral("volumeBar"));
        QVERIFY(bar && bar->isVisible());
        const QImage lower = dialog.grab(bar->geometry()).toImage();
        dialog.click({Qt::Key_VolumeUp});
        QVERIFY(dialog.grab(bar->geometry()).toImage() != lower);
        dialog.click({Qt::Key_VolumeMute, Qt::Key_F8});
        QCOMPARE(dialog.log, QStringList());
        QVERIFY(button.hasFocus());
        QTRY_VERIFY(!bar->isVisible());
        dialog.click({Qt::Key_Back});
        QCOMPARE(dialog.log, both(Qt::Key_Back));
    }

    void returnClicksTheFocusedButtonOnce()
    {
        KeyDialog dialog;
        QPushButton button(&dialog);
        QSignalSpy clicks(&button, &QPushButton::clicked);
        QVERIFY(dialog.isUp(&button));
        dialog.click({Qt::Key_Return});
        QCOMPARE(clicks.size(), 1);
        dialog.click({Qt::Key_Select});
        QCOMPARE(clicks.size(), 2);
    }

    void aFieldKeepsItsKeys()
    {
        KeyDialog dialog;
        QLineEdit field(&dialog);
        QVERIFY(dialog.isUp(&field));
        QTest::keyClick(dialog.windowHandle(), 'a');
        QTest::keyClick(dialog.windowHandle(), 'b');
        dialog.click({Qt::Key_Backspace, Qt::Key_Home});
        QTest::keyClick(dialog.windowHandle(), 'c');
        QCOMPARE(field.text(), "ca");
        dialog.click({Qt::Key_Delete});
        QCOMPARE(field.text(), "c");
        QVERIFY(dialog.log.filter(hex(Qt::Key_Back)).isEmpty());
        dialog.click({Qt::Key_Escape});
        QCOMPARE(dialog.log.filter(hex(Qt::Key_Back)), QStringList{"+" + hex(Qt::Key_Back)});
        QVERIFY(dialog.isVisible());
    }

    void aWidgetMayDeclareTextEntryAndAReleaseFollowsItsPress()
    {
        KeyDialog dialog;
        QVERIFY(dialog.isUp());
        dialog.setProperty("velmoraTextEntry", true);
        dialog.click({Qt::Key_Backspace});
        dialog.setProperty("velmoraTextEntry", false);
        QTest::keyPress(dialog.windowHandle(), Qt::Key_Backspace);
        dialog.setProperty("velmoraTextEntry", true);
        QTest::keyRelease(dialog.windowHandle(), Qt::Key_Backspace);
        QCOMPARE(dialog.log.replaceInStrings("\b", ""), both(Qt::Key_Backspace) + both(Qt::Key_Back));
    }
};

int main(int argc, char **argv)
{
    const QTemporaryDir settings;
    qputenv("VELMORA_DEVICE_CONF", QFile::encodeName(settings.filePath("device.conf")));
    QApplication application(argc, argv);
    delete netcommon::IpcThread::getInstance(); // the library is loaded for its filter
    RemoteKeysTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "remotekeys_test.moc"
