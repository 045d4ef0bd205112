// The canvas on a larger screen: the offscreen platform gets a screen of 1600 x 900.
#include "canvasgeometry.h"
#include "platform/shared/windoworder.h"

#include "viewcomponent/magicscrollbar.h"

#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QScreen>
#include <QTemporaryDir>
#include <QtTest>

using platform::WindowRank;

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

class CanvasTest : public QObject {
    Q_OBJECT
private slots:

    void theCanvasIsCentred()
    {
        const std::tuple<QRect, QRect> cases[] = {
            {QRect(0, 0, 1280, 720), QRect(0, 0, 1280, 720)},           // the same
            {QRect(0, 0, 1720, 720), QRect(220, 0, 1280, 720)},         // wide
            {QRect(0, 0, 1280, 800), QRect(0, 40, 1280, 720)},          // high
            {QRect(1920, 100, 1280, 800), QRect(1920, 140, 1280, 720)}, // second screen
            {QRect(0, 0, 1024, 768), QRect(0, 96, 1024, 576)},          // small
            {QRect(50, 0, 800, 480), QRect(50, 15, 800, 450)},          // smaller
            {QRect(0, 0, 1279, 960), QRect(0, 0, 1280, 720)},           // rounded down: nothing is shrunk for a pixel
        };
        for (const auto &[screen, canvas] : cases) {
            const double factor = viewcomponent::shrinkFactor(screen.size());
            QCOMPARE(viewcomponent::placedOn(screen, viewcomponent::shrunk(viewcomponent::canvasSize, factor)), canvas);
        }
    }

    void theLargerPictureMovesAsLittleAsItMust()
    {
        QCOMPARE(viewcomponent::viewSize({1024, 640}, 1), QSize(1024, 640)); // nothing of a higher screen stays black
        QCOMPARE(viewcomponent::viewSize({819, 614}, 0.8), QSize(1024, 720));
        const std::tuple<QPoint, QRect, QPoint> cases[] = {
            {{0, 0}, {100, 100, 200, 40}, {0, 0}},         // is in it
            {{0, 0}, {500, 470, 200, 40}, {0, 14}},        // with a margin of 80
            {{0, 0}, {1180, 700, 100, 20}, {256, 144}},    // up to the edges
            {{256, 144}, {300, 200, 100, 20}, {220, 120}}, // back
            {{256, 144}, {0, 0, 10, 10}, {0, 0}},
            {{100, 100}, {130, 110, 1000, 500}, {118, 72}}, // a smaller margin
            {{100, 100}, {0, 0, 1280, 720}, {100, 100}},    // does not fit
            {{100, 100}, {0, 690, 1280, 10}, {100, 144}},
        };
        for (const auto &[from, wanted, to] : cases)
            QCOMPARE(viewcomponent::revealed({from, QSize(1024, 576)}, wanted).topLeft(), to);
    }

    // in the order of showing
    void dialogsLieAboveTheirScreensAndBoxesOnTop()
    {
        const std::tuple<QList<int>, QList<int>, QList<int>> cases[] = {
            {QList<int>{}, QList<int>{}, QList<int>{}},                        // none
            {QList<int>{-1, -1}, QList<int>{0, 0}, QList<int>{0, 1}},          // as shown
            {QList<int>{-1, 0}, QList<int>{0, 0}, QList<int>{0, 1}},           // dialog of the first
            {QList<int>{1, -1}, QList<int>{0, 0}, QList<int>{1, 0}},           // screen shown again under its dialog
            {QList<int>{-1, 0, -1}, QList<int>{0, 1, 0}, QList<int>{0, 2, 1}}, // screen after a box
            {QList<int>{-1, 0, 1, -1}, QList<int>{0, 1, 0, 0}, QList<int>{0, 3, 1, 2}}, // box of a box
        };
        for (const auto &[parents, modal, order] : cases) {
            QList<WindowRank> ranks;
            for (int index = 0; index < parents.size(); ++index)
                ranks += WindowRank{parents[index], modal[index] != 0};
            QCOMPARE(platform::windowOrder(ranks), order);
        }
    }

    void aMoveBeforeTheFirstShowCounts()
    {
        Screen screen;
        Screen box(&screen);
        box.resize(780, 339);
        box.move(240, 175);
        screen.show();
        box.show();
        QCOMPARE(box.pos(), origin + QPoint(240, 175));
    }

    void aMoveOfAShownDialogCounts()
    {
        Screen screen;
        QWidget child(&screen);
        screen.show();
        QCOMPARE(screen.pos(), origin);
        QCOMPARE(qApp->property("velmoraCanvas").toRect(), QRect(origin, QSize(1280, 720)));
        screen.move(10, 20);
        QCOMPARE(screen.pos(), origin + QPoint(10, 20));
        screen.hide();
        screen.move(30, 40); // a move of a hidden window counts, and counts once
        for (int round = 0; round < 3; ++round) {
            screen.show();
            QCOMPARE(screen.pos(), origin + QPoint(30, 40));
            screen.hide();
        }
        child.move(7, 8);
        QCOMPARE(child.pos(), QPoint(7, 8)); // no window: left alone
    }

    void anUnmovedDialogIsCentred()
    {
        Screen dialog;
        dialog.resize(400, 200);
        dialog.show();
        QCOMPARE(dialog.pos(), origin + QPoint(440, 260));
    }

    void theWindowBelowBecomesActiveAgain()
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

    void aWindowUnderABoxIsNotActivated()
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
};

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
