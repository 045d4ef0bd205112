// The scrolling image list: keys, bars, marquee, and what a marquee step paints.
#include "fakes/logcapture.h"
#include "fakes/screentest.h"
#include "widgets/imagelistwidget.h"
#include "widgets/imagelistwidgetitem.h"

#include <QApplication>
#include <QFile>
#include <QPaintEvent>

namespace {

// Counts the rectangles that a widget is asked to paint, and its timer events.
class Watch : public QObject {
public:
    explicit Watch(QWidget *watched) { watched->installEventFilter(this); }
    bool eventFilter(QObject *, QEvent *event) override
    {
        timeouts += event->type() == QEvent::Timer ? 1 : 0;
        if (event->type() != QEvent::Paint)
            return false;
        ++paints;
        rectangles += static_cast<QPaintEvent *>(event)->region().rectCount();
        return false;
    }
    int timeouts = 0;
    int paints = 0;
    int rectangles = 0; // painted
};

// A window with a list of rows as the player's: 324 x 52, nine of them seen.
class Rig {
public:
    explicit Rig(int rows, const QString &wideText = {})
        : list(&window)
    {
        window.resize(400, 500);
        list.setGeometry(20, 10, 324, 468);
        list.setFont(QFont("Arial", 20));
        list.setFrameShape(QFrame::NoFrame);
        list.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        list.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        list.setPageSize(9);
        for (int i = 0; i < rows; ++i) {
            auto *item = new QListWidgetItem(wideText.isEmpty() ? "Row " + QString::number(i) : wideText);
            item->setSizeHint(QSize(324, 52));
            item->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
            list.addItem(item);
        }
        list.setCurrentRow(0);
        window.show();
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window))
            qFatal("the window does not become active");
        list.setFocus();
    }

    ImageListWidgetItem *label() { return list.findChild<ImageListWidgetItem *>(); }
    bool isRunning() { return !label()->isHidden(); }
    // Rows that carry the focused bar: exactly one while the list has the focus.
    QList<int> lit() const
    {
        QList<int> rows;
        for (int row = 0; row < list.count(); ++row)
            if (list.item(row)->background().texture().cacheKey() == QPixmap(":/images/FocusBar.png").cacheKey())
                rows.append(row);
        return rows;
    }

    LogCapture log;
    QWidget window;
    ImageListWidget list;
};

// A text of exactly this width; empty if there is none.
QString textOfWidth(const QFontMetrics &metrics, int width)
{
    QString base;
    while (metrics.horizontalAdvance(base) < width - 48)
        base += QLatin1Char('m');
    const QString letters = QStringLiteral("abcdefghijklmnopqrstuvwxyz.");
    for (const QChar a : letters)
        for (const QChar b : letters)
            for (const QChar c : letters)
                if (metrics.horizontalAdvance(base + a + b + c) == width)
                    return base + a + b + c;
    return QString();
}

const QString wide = "A row that is far too wide for its place";

} // namespace

class ImageList : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        if (QPixmap(":/images/FocusBar.png").isNull())
            QSKIP("the images are not linked in");
        QFile style(":/velmora.qss");
        QVERIFY(style.open(QIODevice::ReadOnly));
        qApp->setStyleSheet(QString::fromUtf8(style.readAll()));
    }
    void keysMoveTheCursorAndItsBar()
    {
        const int last = 29;
        struct Case {
            const char *name;
            int from, key, to;
        };
        const Case cases[] = {
            {"down", 3, Qt::Key_Down, 4},
            {"down on the last row", last, Qt::Key_Down, 0},
            {"up", 3, Qt::Key_Up, 2},
            {"up on the first row", 0, Qt::Key_Up, last},
            {"end", 3, Qt::Key_End, last},
            {"end on the last row", last, Qt::Key_End, last},
            {"home", 3, Qt::Key_Home, 0},
            {"home on the first row", 0, Qt::Key_Home, 0},
            {"the remote's home key", 3, Qt::Key_MenuPB, 0},
            {"page down from the top", 0, Qt::Key_PageDown, 8},
            {"page down in the middle", 12, Qt::Key_PageDown, 20},
            {"page down near the end", 25, Qt::Key_PageDown, last},
            {"page down on the last row", last, Qt::Key_PageDown, last},
            {"page up from the bottom", last, Qt::Key_PageUp, 21},
            {"page up near the top", 3, Qt::Key_PageUp, 0},
            {"page up on the first row", 0, Qt::Key_PageUp, 0},
            {"left", 3, Qt::Key_Left, 3},
            {"right", 3, Qt::Key_Right, 3},
        };
        for (const auto &[name, from, key, to] : cases) {
            const Row row(name);
            Rig rig(30, wide);
            while (rig.list.currentRow() != from)
                screentest::key(&rig.window, Qt::Key_Down);
            screentest::key(&rig.window, key);
            QCOMPARE(rig.list.currentRow(), to);
            QCOMPARE(rig.lit(), QList<int>{to});
            QVERIFY(rig.isRunning());
            QCOMPARE(rig.label()->y(), rig.list.visualItemRect(rig.list.item(to)).y());
            for (int i = 0; i < rig.list.count(); ++i)
                QCOMPARE(rig.list.item(i)->text(), i == to ? QString() : wide);
        }
    }

    void keysOnAnEmptyListAreHarmless()
    {
        Rig rig(0);
        for (const int key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_End, Qt::Key_PageDown, Qt::Key_PageUp, Qt::Key_Select})
            screentest::key(&rig.window, key);
        rig.list.ensureFocusVisible();
        rig.list.clearCurrentItemText();
        QCOMPARE(rig.list.currentItemText(), QString());
        QVERIFY(!rig.isRunning());
    }

    void digitsAndLettersDoNotMoveTheCursor()
    {
        Rig rig(5);
        rig.list.item(3)->setText("5 oceans");
        rig.list.item(2)->setText("sea");
        QTest::keyClick(&rig.list, Qt::Key_5, Qt::NoModifier);
        QTest::keyClick(&rig.list, 's');
        QCOMPARE(rig.list.currentRow(), 0);
    }

    void threeBarsShowTheFocus()
    {
        Rig rig(3);
        const auto bar = [&rig](int row) { return rig.list.item(row)->background().texture().cacheKey(); };
        const auto key = [](const char *name) { return QPixmap(QString::fromLatin1(name)).cacheKey(); };
        QCOMPARE(bar(0), key(":/images/FocusBar.png"));
        QVERIFY(rig.list.hasFocus());
        rig.list.clearFocus();
        QCOMPARE(bar(0), key(":/images/FocusBar_Selected.png"));
        QVERIFY(!rig.list.hasFocus());
        rig.list.setFocus();
        screentest::key(&rig.window, Qt::Key_Down);
        QCOMPARE(bar(0), key(":/images/FocusBar_Transparent.png"));
        QCOMPARE(bar(1), key(":/images/FocusBar.png"));
    }

    void onlyTextsFrom251PixelsScroll()
    {
        Rig rig(1);
        const QString text = textOfWidth(rig.list.fontMetrics(), 250);
        QCOMPARE(rig.list.fontMetrics().horizontalAdvance(text), 250);
        rig.list.item(0)->setText(text);
        rig.list.checkScroll();
        QVERIFY(!rig.isRunning());
        const QString wider = textOfWidth(rig.list.fontMetrics(), 251);
        QCOMPARE(rig.list.fontMetrics().horizontalAdvance(wider), 251);
        rig.list.item(0)->setText(wider);
        rig.list.checkScroll();
        QVERIFY(rig.isRunning());
    }

    void theListReturnsTheTextOfARowWithAMarquee()
    {
        Rig rig(2, wide);
        QVERIFY(rig.isRunning());
        QCOMPARE(rig.list.item(0)->text(), QString());
        QCOMPARE(rig.list.currentItemText(), wide);
        screentest::key(&rig.window, Qt::Key_Down);
        QCOMPARE(rig.list.item(0)->text(), wide);
        rig.list.clearFocus();
        QVERIFY(!rig.isRunning());
        QCOMPARE(rig.list.item(1)->text(), wide);
        QCOMPARE(rig.list.currentItemText(), wide);
    }

    void theLabelLiesOverTheRow()
    {
        Rig rig(3, wide);
        screentest::key(&rig.window, Qt::Key_Down);
        QCOMPARE(rig.label()->geometry(), QRect(40, 52, 254, 52));
        QCOMPARE(rig.label()->font().family(), QStringLiteral("Arial"));
        QCOMPARE(rig.label()->font().pointSize(), 20);
        QVERIFY(rig.label()->sizeHint().width() > rig.list.fontMetrics().horizontalAdvance(wide));
        // Its picture: the row's bar and black letters, nothing of what lies under the list.
        const QImage image = rig.label()->grab().toImage();
        const QImage bar = QPixmap(":/images/FocusBar.png").toImage();
        QCOMPARE(image.pixelColor(150, 8).rgb(), bar.pixelColor(190, 8).rgb());
        int black = 0;
        for (int x = 0; x < image.width(); ++x)
            black += image.pixelColor(x, 26).lightness() < 60;
        QVERIFY(black > 10);
    }

    void aMarqueeTurnEndsWithAPause()
    {
        Rig rig(1, wide);
        auto *label = rig.label();
        auto *pause = label->findChild<QTimer *>();
        QVERIFY(pause && pause->isActive() && pause->isSingleShot());
        QCOMPARE(pause->interval(), 1000);
        pause->stop();
        // A short text, so that the test can wait for its whole turn.
        label->setText("ab");
        const int width = label->fontMetrics().horizontalAdvance("ab");
        Watch watch(label);
        label->startTimerEngine();
        QTRY_VERIFY(pause->isActive());
        QCOMPARE(watch.timeouts, width);
    }

    void aStepPaintsTheLabelAloneInOneRectangle()
    {
        Rig rig(3, wide);
        auto *label = rig.label();
        screentest::settle(); // what the rig's own changes lead to has been painted
        Watch labelWatch(label);
        Watch listWatch(rig.list.viewport());
        Watch windowWatch(&rig.window);
        label->startTimerEngine();
        QTRY_VERIFY(labelWatch.paints >= 10);
        label->stopScroll();
        QVERIFY(labelWatch.paints <= labelWatch.timeouts + 1);
        QCOMPARE(labelWatch.rectangles, labelWatch.paints);
        QCOMPARE(listWatch.paints, 0);
        QCOMPARE(windowWatch.paints, 0);
    }

    // No letter is sliced: at rest the beginning is whole and the end fades, on the way both edges do. A right-to-left
    // name is the same picture from the other side.
    void aTextFadesWhereItIsCut()
    {
        for (const bool isRightToLeft : {false, true}) {
            const Row row(isRightToLeft ? "right to left" : "left to right");
            Rig rig(1, isRightToLeft ? QString(30, QChar(0x05E9)) : QString(30, QLatin1Char('H')));
            auto *label = rig.label();
            QVERIFY(rig.isRunning());
            label->findChild<QTimer *>()->stop();
            // The darkest pixel in the columns at that distance from the edge at which the text begins.
            const auto darkest = [&](int from, int to) {
                const QImage picture = label->grab().toImage();
                int value = 255;
                for (int i = from; i < to; ++i)
                    for (int y = 0; y < picture.height(); ++y)
                        value = qMin(value, qGray(picture.pixel(isRightToLeft ? picture.width() - 1 - i : i, y)));
                return value;
            };
            const int last = label->width() - 1;
            QVERIFY(darkest(0, 8) < 60 && darkest(20, 60) < 60);
            QVERIFY(darkest(last - 1, last + 1) > 90);
            Watch watch(label);
            label->startTimerEngine();
            QTRY_VERIFY(watch.timeouts >= 3);
            QVERIFY(darkest(0, 2) > 90 && darkest(last - 1, last + 1) > 90);
            QVERIFY(darkest(20, 60) < 60);
            label->stopScroll();
        }
    }
};

QTEST_MAIN(ImageList)
#include "imagelist_test.moc"
