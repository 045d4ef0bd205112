// The canvas and the remote's keys on a real display server without a window manager, driven by a real keyboard.
#include "menu_fixture.h"

#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QStandardPaths>
#include <QtTest>

class CanvasX11Test : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        for (const char *program : {"Xvfb", "xdotool"})
            if (QStandardPaths::findExecutable(QString::fromLatin1(program)).isEmpty())
                QSKIP("Xvfb or xdotool is not installed");
    }

    void cleanup()
    {
        m_server.kill();
        m_server.waitForFinished();
    }

    void keysReachTheBoxAndThenTheScreenBelow()
    {
        QVERIFY(startServer("1280x720"));
        MenuFixture menu;
        QVERIFY(startSample(menu));
        QVERIFY(press({"key", "Return"}));
        QTRY_VERIFY2(menu.output().contains("clicked\n"), menu.output().constData());
        QVERIFY(press({"key", "F1"}));
        QTRY_COMPARE(menu.status()["focus"].toString(), "okBtn");
        QVERIFY(press({"key", "Return"}));
        QTRY_VERIFY2(menu.output().contains("box 1\n"), menu.output().constData());
        QTRY_COMPARE(menu.status()["focus"].toString(), "menuBtn");
        QVERIFY(press({"key", "Escape"}));
        QTRY_VERIFY2(menu.output().contains("press 01000061\nrelease 01000061\n"), menu.output().constData());
    }

    void aHeldBackActsOnceAndAHeldArrowMoves()
    {
        QVERIFY(startServer("1280x720"));
        MenuFixture menu;
        QVERIFY(startSample(menu));
        QVERIFY(press({"keydown", "Right"}));
        QTRY_VERIFY(menu.output().count("release 01000014\n") >= 3); // the server repeats it by itself
        QVERIFY(press({"keyup", "Right"}));
        QVERIFY(press({"keydown", "Escape"}));
        QTRY_VERIFY(menu.output().contains("press 01000061\n"));
        QTRY_VERIFY(menu.output().count("server's press 9\n") >= 3); // the server repeats this key too
        QVERIFY(!menu.output().contains("release 01000061\n"));
        QVERIFY(press({"keyup", "Escape"}));
        QTRY_VERIFY(menu.output().contains("release 01000061\n"));
        QCOMPARE(menu.output().count("press 01000061\n"), 1);
    }

    void withoutAnyScreenTheProgramEnds()
    {
        QVERIFY(startServer("1280x720"));
        MenuFixture menu;
        QVERIFY(startSample(menu));
        QCOMPARE(menu.command({"key", "stop"}).code, 0);
        const int code = menu.waitForEnd();
        QVERIFY2(code == 0, menu.errors().constData());
        QVERIFY2(menu.output().contains("thread ended 1\n"), menu.output().constData());
    }

    void theCanvasIsScaledAndLetterboxed()
    {
        const std::tuple<QString, QSize> cases[] = {
            {"1280x720", QSize(1280, 720)},   // 1
            {"1366x768", QSize(1365, 768)},   // 1.067
            {"1920x1200", QSize(1920, 1080)}, // 1.5
            {"3840x2160", QSize(3840, 2160)}, // 3
            {"1024x768", QSize(1024, 576)},   // smaller than the canvas: 0.8
            {"800x480", QSize(800, 450)},     // 0.625
        };
        for (const auto &[screen, picture] : cases) {
            QVERIFY(startServer(screen));
            MenuFixture menu;
            QVERIFY(startSample(menu));
            QCOMPARE(menu.command({"key", "red"}).code, 0);
            QTRY_COMPARE(menu.status()["focus"].toString(), "okBtn");
            const QString file = menu.path("picture.png");
            const Outcome outcome = menu.command({"screenshot", file});
            QVERIFY2(outcome.code == 0, outcome.errors.constData());
            const QImage image(file);
            QCOMPARE(image.size(), picture);
            // The same places on the canvas at each scale.
            const auto at = [&](int x, int y) {
                return image.pixelColor(x * picture.width() / 1280, y * picture.height() / 720);
            };
            QCOMPARE(at(1200, 650), QColor(0x20, 0x40, 0x60));
            QCOMPARE(at(250, 185), QColor(0x60, 0x30, 0x20));  // the box begins at 240, 175
            QCOMPARE(at(1010, 505), QColor(0x60, 0x30, 0x20)); // and ends at 1020, 514
            QVERIFY(at(1030, 520) != QColor(0x60, 0x30, 0x20));
        }
    }

    void theLargerPictureKeepsTheFocusInView()
    {
        for (const int height : {720, 1080}) {
            const int width = height * 16 / 9;
            QVERIFY(startServer(QStringLiteral("%1x%2").arg(width).arg(height)));
            MenuFixture menu;
            QVERIFY(QDir(menu.path({})).mkdir("settings"));
            QFile settings(menu.path("settings/device.conf"));
            QVERIFY(settings.open(QIODevice::WriteOnly) && settings.write("[screen]\nlarger = true\n") > 0);
            settings.close();
            QVERIFY(startSample(menu));
            // What is seen at a place of the canvas while its view begins at `from`, five quarters as large as usual.
            const auto at = [&](const QPoint &from, int x, int y) {
                const Outcome outcome = menu.command({"screenshot", menu.path("picture.png")});
                const QImage image(menu.path("picture.png"));
                if (outcome.code != 0 || image.size() != QSize(width, height))
                    return QColor();
                return image.pixelColor((x - from.x()) * width / 1024, (y - from.y()) * height / 576);
            };
            const QColor corner(0xF0, 0xF0, 0xF0);
            const QColor screen(0x20, 0x40, 0x60);
            const QColor box(0x60, 0x30, 0x20);
            QVERIFY(at({0, 0}, 1020, 570) == screen);
            QVERIFY(press({"key", "End"})); // to the control in the corner
            QTRY_COMPARE(at({256, 144}, 1190, 690), corner);
            QVERIFY(at({256, 144}, 1170, 690) == screen && at({256, 144}, 1270, 710) == screen);
            QVERIFY(press({"key", "F1"})); // a box at 240, 175
            QTRY_COMPARE(at({160, 95}, 250, 185), box);
            QVERIFY(at({160, 95}, 800, 170) == screen && at({160, 95}, 1010, 505) == box);
        }
    }

private:
    bool startServer(const QString &geometry)
    {
        cleanup(); // the screen before this one
        MenuFixture::prepare(m_server);
        m_server.start("Xvfb", {"-displayfd", "1", "-screen", "0", geometry + "x24", "-nolisten", "tcp", "-noreset"});
        QByteArray number;
        const bool started =
            QTest::qWaitFor([&] { return (number += m_server.readAllStandardOutput()).endsWith('\n'); }, 60000);
        qputenv("DISPLAY", ":" + number.trimmed());
        return started;
    }

    bool startSample(MenuFixture &menu)
    {
        qputenv("QT_QPA_PLATFORM", "xcb");
        return menu.start() && QTest::qWaitFor([&] { return menu.status()["focus"].toString() == "menuBtn"; }, 60000);
    }

    bool press(const QStringList &words) { return QProcess::execute("xdotool", words) == 0; }

    QProcess m_server;
};

QTEST_GUILESS_MAIN(CanvasX11Test)
#include "canvas_x11_test.moc"
