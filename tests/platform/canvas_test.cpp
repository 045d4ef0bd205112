// The canvas on a screen that is larger than it. The offscreen platform is given a screen of 1600 x 900.
#include "canvasgeometry.h"
#include "windoworder.h"

#include "viewcomponent/magicscrollbar.h"

#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QScreen>
#include <QTemporaryDir>
#include <QtTest>

using platform::WindowRank;

class CanvasTest : public QObject {
    Q_OBJECT
private slots:
    void theCanvasLiesInTheMiddle_data();
    void theCanvasLiesInTheMiddle();
    void dialogsLieAboveTheirScreensAndBoxesOnTop_data();
    void dialogsLieAboveTheirScreensAndBoxesOnTop();
    void aScreenIsPutOntoTheCanvas();
    void aMoveBeforeTheFirstShowCounts();
    void aMoveOfAShownDialogCounts();
    void aMoveOfAHiddenDialogCounts();
    void showingAgainDoesNotMove();
    void anUnmovedDialogStandsInTheMiddle();
    void childrenAreLeftAlone();
    void theUppermostWindowIsActive();
    void theOneBelowIsActiveAgain();
    void aWindowUnderABoxIsNotActivated();
};

namespace {

const QPoint origin(160, 90);

struct Screen : QDialog {
    explicit Screen(QWidget *parent = nullptr)
        : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint)
    {
        resize(1280, 720);
    }
};

} // namespace

void CanvasTest::theCanvasLiesInTheMiddle_data()
{
    QTest::addColumn<QRect>("screen");
    QTest::addColumn<QPoint>("canvas");
    QTest::newRow("the same") << QRect(0, 0, 1280, 720) << QPoint(0, 0);
    QTest::newRow("wide") << QRect(0, 0, 1720, 720) << QPoint(220, 0);
    QTest::newRow("high") << QRect(0, 0, 1280, 800) << QPoint(0, 40);
    QTest::newRow("second screen") << QRect(1920, 100, 1280, 800) << QPoint(1920, 140);
    QTest::newRow("small") << QRect(0, 0, 800, 800) << QPoint(0, 0);
    QTest::newRow("rounded down") << QRect(0, 0, 1279, 960) << QPoint(0, 0);
}

void CanvasTest::theCanvasLiesInTheMiddle()
{
    QFETCH(const QRect, screen);
    QFETCH(const QPoint, canvas);
    QCOMPARE(viewcomponent::canvasOn(screen), QRect(canvas, QSize(1280, 720)));
}

void CanvasTest::dialogsLieAboveTheirScreensAndBoxesOnTop_data()
{
    QTest::addColumn<QList<int>>("parents"); // in the order of showing
    QTest::addColumn<QList<int>>("modal");
    QTest::addColumn<QList<int>>("order");
    QTest::newRow("none") << QList<int>{} << QList<int>{} << QList<int>{};
    QTest::newRow("as shown") << QList<int>{-1, -1} << QList<int>{0, 0} << QList<int>{0, 1};
    QTest::newRow("dialog of the first") << QList<int>{-1, 0} << QList<int>{0, 0} << QList<int>{0, 1};
    QTest::newRow("screen shown again under its dialog") << QList<int>{1, -1} << QList<int>{0, 0} << QList<int>{1, 0};
    QTest::newRow("screen after a box") << QList<int>{-1, 0, -1} << QList<int>{0, 1, 0} << QList<int>{0, 2, 1};
    QTest::newRow("box of a box") << QList<int>{-1, 0, 1, -1} << QList<int>{0, 1, 0, 0} << QList<int>{0, 3, 1, 2};
}

void CanvasTest::dialogsLieAboveTheirScreensAndBoxesOnTop()
{
    QFETCH(const QList<int>, parents);
    QFETCH(const QList<int>, modal);
    QFETCH(const QList<int>, order);
    QList<WindowRank> ranks;
    for (int index = 0; index < parents.size(); ++index)
        ranks += WindowRank{parents[index], modal[index] != 0};
    QCOMPARE(platform::windowOrder(ranks), order);
}

void CanvasTest::aScreenIsPutOntoTheCanvas()
{
    Screen screen;
    screen.show();
    QCOMPARE(screen.pos(), origin);
    QCOMPARE(qApp->property("velmoraCanvas").toRect(), QRect(origin, QSize(1280, 720)));
}

void CanvasTest::aMoveBeforeTheFirstShowCounts()
{
    Screen screen;
    Screen box(&screen);
    box.resize(780, 339);
    box.move(240, 175);
    screen.show();
    box.show();
    QCOMPARE(box.pos(), origin + QPoint(240, 175));
}

void CanvasTest::aMoveOfAShownDialogCounts()
{
    Screen screen;
    screen.move(0, 0);
    screen.show();
    screen.move(10, 20);
    QCOMPARE(screen.pos(), origin + QPoint(10, 20));
    screen.move(0, 0);
    QCOMPARE(screen.pos(), origin);
}

void CanvasTest::aMoveOfAHiddenDialogCounts()
{
    Screen screen;
    screen.show();
    screen.hide();
    screen.move(30, 40);
    screen.show();
    QCOMPARE(screen.pos(), origin + QPoint(30, 40));
}

void CanvasTest::showingAgainDoesNotMove()
{
    Screen screen;
    screen.move(30, 40);
    for (int round = 0; round < 3; ++round) {
        screen.show();
        QCOMPARE(screen.pos(), origin + QPoint(30, 40));
        screen.hide();
    }
}

void CanvasTest::anUnmovedDialogStandsInTheMiddle()
{
    Screen dialog;
    dialog.resize(400, 200);
    dialog.show();
    QCOMPARE(dialog.pos(), origin + QPoint(440, 260));
}

void CanvasTest::childrenAreLeftAlone()
{
    Screen screen;
    QWidget child(&screen);
    child.move(5, 6);
    screen.show();
    child.move(7, 8);
    QCOMPARE(child.pos(), QPoint(7, 8));
}

void CanvasTest::theUppermostWindowIsActive()
{
    Screen screen;
    screen.show();
    QTRY_COMPARE(QApplication::activeWindow(), &screen);
    Screen dialog(&screen);
    dialog.show();
    QTRY_COMPARE(QApplication::activeWindow(), &dialog);
}

void CanvasTest::theOneBelowIsActiveAgain()
{
    Screen screen;
    QWidget field(&screen);
    field.setFocusPolicy(Qt::ClickFocus);
    screen.show();
    field.setFocus();
    {
        Screen box(&screen);
        box.setModal(true);
        box.show();
        QTRY_COMPARE(QApplication::activeWindow(), &box);
    }
    QTRY_COMPARE(QApplication::activeWindow(), &screen);
    QTRY_COMPARE(QApplication::focusWidget(), &field);
}

void CanvasTest::aWindowUnderABoxIsNotActivated()
{
    Screen screen;
    screen.show();
    Screen box(&screen);
    box.setModal(true);
    box.show();
    QTRY_COMPARE(QApplication::activeWindow(), &box);
    Screen late; // shown while the box is up
    late.show();
    QTRY_COMPARE(QApplication::activeWindow(), &box);
}

int main(int argc, char **argv)
{
    const QTemporaryDir directory;
    QFile screens(directory.filePath(QStringLiteral("screens.json")));
    if (!screens.open(QIODevice::WriteOnly))
        return 1;
    screens.write(R"({"screens": [{"name": "tv", "x": 0, "y": 0, "width": 1600, "height": 900,
                      "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
    screens.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + screens.fileName().toLocal8Bit());
    QApplication application(argc, argv);
    application.setQuitOnLastWindowClosed(false);
    if (QGuiApplication::primaryScreen()->size() != QSize(1600, 900))
        qFatal("the offscreen platform has not taken its screen");
    const viewcomponent::MagicScrollBar library; // the library is loaded for its filter
    CanvasTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "canvas_test.moc"
