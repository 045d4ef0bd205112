// The platform's widgets: the buffering animation, the style without a focus frame, the scroll bar.
#include "loaderpicture.h"

#include "viewcomponent/bufferdlg.h"
#include "viewcomponent/magicscrollbar.h"
#include "viewcomponent/mcommonstyle.h"

#include <QDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QSignalSpy>
#include <QStyleOptionFocusRect>
#include <QtTest>

using namespace viewcomponent;

namespace {

class Screen : public QDialog {
public:
    Screen()
        : button(new QPushButton(this))
    {
        resize(1280, 720);
        button->setAutoDefault(false);
        button->setFocusPolicy(Qt::ClickFocus);
        button->setFocus();
        show();
    }
    QPushButton *const button;
    QList<int> keys;

protected:
    void keyPressEvent(QKeyEvent *event) override { keys += event->key(); }
    void keyReleaseEvent(QKeyEvent *event) override { keys += -event->key(); }
};

} // namespace

class BufferDlgTest : public QObject {
    Q_OBJECT
private slots:
    void theCardLiesInTheMiddleOfTheScreen()
    {
        Screen screen;
        BufferDlg animation("Buffering...", &screen);
        animation.show();
        QVERIFY(!animation.isWindow());
        QCOMPARE(animation.geometry(), QRect(0, 0, 1280, 720));
        const auto *label = animation.findChild<QLabel *>(QStringLiteral("textLabel"));
        QVERIFY(label);
        QCOMPARE(label->text(), "Buffering...");
        QCOMPARE(QRect(label->mapTo(&screen, QPoint()), label->size()), QRect(450, 362, 380, 40));
        const auto *loader = animation.findChild<QLabel *>(QStringLiteral("animationLabel"));
        QCOMPARE(QRect(loader->mapTo(&screen, QPoint()), loader->size()), QRect(544, 328, 191, 21));
        // Around the card the screen is seen.
        const QImage with = screen.grab().toImage();
        animation.hide();
        const QImage without = screen.grab().toImage();
        QCOMPARE(with.copy(0, 0, 430, 720), without.copy(0, 0, 430, 720));
        QVERIFY(with.copy(430, 294, 420, 132) != without.copy(430, 294, 420, 132));
        screen.resize(1000, 700);
        QCOMPARE(animation.size(), QSize(1000, 700));
    }

    void theFramesTurn()
    {
        Screen screen;
        BufferDlg animation(QString(), &screen);
        animation.show();
        const auto *loader = animation.findChild<QLabel *>(QStringLiteral("animationLabel"));
        QSet<qint64> seen;
        QElapsedTimer clock;
        clock.start();
        QTRY_VERIFY_WITH_TIMEOUT(
            (seen.insert(loader->pixmap(Qt::ReturnByValue).cacheKey()), seen.size() == loaderFrames), 10000);
        QVERIFY2(clock.elapsed() >= 1600,
                 qPrintable(QString::number(clock.elapsed()))); // nine steps of 200 ms, less 10 %
    }

    void noKeyReachesAControlAndTheDialogSeesThem()
    {
        Screen screen;
        QVERIFY(QTest::qWaitForWindowActive(&screen));
        QSignalSpy clicks(screen.button, &QPushButton::clicked);
        BufferDlg animation(QString(), &screen);
        animation.show();
        QVERIFY(animation.hasFocus());
        QTest::keyClick(screen.windowHandle(), Qt::Key_Select);
        QCOMPARE(clicks.size(), 0);
        QCOMPARE(screen.keys, (QList<int>{Qt::Key_Select, -Qt::Key_Select}));
    }

    void theFocusReturnsUnlessItHasMoved()
    {
        for (const QByteArray way : {"hidden", "closed", "deleted", "moved on"}) {
            Screen screen;
            QPushButton other(&screen);
            other.show();
            QVERIFY(QTest::qWaitForWindowActive(&screen));
            auto *animation = new BufferDlg(QString(), &screen);
            animation->show();
            QVERIFY2(!screen.button->hasFocus(), way.constData());
            if (way == "moved on")
                other.setFocus();
            if (way == "deleted")
                delete animation;
            else
                way == "closed" ? (void)animation->close() : animation->hide();
            QVERIFY2((way == "moved on" ? &other : screen.button)->hasFocus(), way.constData());
        }
    }

    void theStyleDrawsNoFocusFrame()
    {
        const auto drawn = [](const QStyle &style) {
            QImage image(60, 30, QImage::Format_ARGB32);
            image.fill(Qt::transparent);
            QPainter painter(&image);
            QStyleOptionFocusRect option;
            option.rect = image.rect();
            option.state = QStyle::State_Enabled | QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange;
            style.drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter);
            painter.end();
            QImage empty(image.size(), image.format());
            empty.fill(Qt::transparent);
            return image != empty;
        };
        QVERIFY(drawn(*QApplication::style()));
        QVERIFY(!drawn(MCommonStyle()));
    }
};

QTEST_MAIN(BufferDlgTest)
#include "bufferdlg_test.moc"
