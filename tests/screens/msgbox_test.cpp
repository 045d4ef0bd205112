// The message box: its look, and every answer that the remote's keys can give.
#include "fakes/fakeipc.h"
#include "fakes/screentest.h"
#include "widgets/msgboxdlg.h"

#include <QLabel>
#include <QPushButton>

#include <functional>

using screentest::child;

namespace {

const QString focusedLook = QStringLiteral("border-image: url(:/images/Btn_F.png);\ncolor: rgb(0, 0, 0);");
const QString unfocusedLook = QStringLiteral("border-image: url(:/images/Btn_N.png);\ncolor: rgb(255, 255, 255);");
const QString formLook = QStringLiteral("border-image: url(:/images/Button_Normal_H.png);\ncolor: rgb(255, 255, 255);");

constexpr int stillOpen = -1; // no key ended the box

} // namespace

class Msgbox : public QObject {
    Q_OBJECT
private slots:
    void init() { FakeIpc::reset(); }

    void keysAnswerTheBox()
    {
        struct Case {
            int kind;
            QList<int> keys;
            int result;
        };
        const int left = screentest::Left, right = screentest::Right, select = screentest::Select;
        const Case cases[] = {
            {3, {Qt::Key_Return}, 0}, // a question opens with Cancel
            {3, {select}, 0},
            {3, {left, Qt::Key_Return}, 1},
            {3, {left, left, select}, 1}, // stays on OK
            {3, {left, right, select}, 0},
            {3, {right, screentest::Up, screentest::Down, select}, 0}, // change nothing
            {3, {left, right, left}, stillOpen},
            {0, {Qt::Key_Return}, 1},
            {1, {left, right, select}, 1},
            {2, {left, right, select}, 1},
            {4, {right, select}, 1}, // looks like a question, but arrows lead to OK
        };
        for (const Case &c : cases) {
            QStringList names;
            for (const int key : c.keys)
                names.append(QKeySequence(key).toString());
            const Row row(QStringLiteral("kind %1, %2").arg(c.kind).arg(names.join(u' ')));
            MsgboxDlg box(c.kind, "text", nullptr);
            const auto press = [&] {
                for (const int key : c.keys)
                    screentest::key(&box, key);
            };
            QCOMPARE(run(box, press), c.result);
        }
    }

    void theBoxLooksAsDesignedAndItsLookFollowsTheFocus()
    {
        MsgboxDlg box(3, "<b>What?</b>", nullptr);
        QCOMPARE(QRect(box.pos(), box.size()), QRect(240, 175, 780, 339));
        auto *ok = child<QPushButton>(&box, "okBtn");
        auto *cancel = child<QPushButton>(&box, "cancelBtn");
        QCOMPARE(ok->geometry(), QRect(140, 230, 250, 45));
        QCOMPARE(cancel->geometry(), QRect(420, 230, 250, 45));
        QCOMPARE(child<QLabel>(&box, "contentLabel")->textFormat(), Qt::PlainText); // names are never taken for markup
        QCOMPARE(ok->styleSheet(), formLook);
        const int result = run(box, [&] {
            QCOMPARE(box.focusWidget(), cancel);
            QCOMPARE(cancel->styleSheet(), focusedLook);
            screentest::key(&box, screentest::Left);
            QCOMPARE(box.focusWidget(), ok);
            QCOMPARE(ok->styleSheet(), focusedLook);
            QCOMPARE(cancel->styleSheet(), unfocusedLook);
            screentest::key(&box, screentest::Right);
            QCOMPARE(cancel->styleSheet(), focusedLook);
            QCOMPARE(ok->styleSheet(), unfocusedLook);
            box.deleteMsgBox(); // counts as confirmed
        });
        QCOMPARE(result, 1);
    }

    void aMessageIsBrokenAndBeginsWhereItsLanguageBegins()
    {
        const auto ink = [](const QString &text) {
            MsgboxDlg box(1, text, nullptr);
            box.show();
            const QImage picture = box.grab(child<QLabel>(&box, "contentLabel")->geometry()).toImage();
            QRect found;
            for (int y = 0; y < picture.height(); ++y)
                for (int x = 0; x < picture.width(); ++x)
                    if (qGray(picture.pixel(x, y)) > 200)
                        found |= QRect(x, y, 1, 1);
            return found;
        };
        QVERIFY(ink("a short one").left() < 10);
        const QString rightToLeft(10, QChar(0x05E9));
        QVERIFY(ink(rightToLeft).right() > 590);
        QCOMPARE(ink(rightToLeft + " \n" + rightToLeft + ' '), ink(rightToLeft + '\n' + rightToLeft));
        const auto inkHeight = [&ink](int letters) { return ink(QString(letters, QLatin1Char('M'))).height() - 1; };
        QVERIFY(inkHeight(10) < 30);
        QVERIFY(inkHeight(64) > 60);
        // More than there is room for: whole lines, and dots on the baseline of the last.
        QVERIFY(inkHeight(400) > 150 && inkHeight(400) <= 190);
    }

    void theBackgroundIsDrawnOnATranslucentWindow()
    {
        MsgboxDlg box(1, QString(), nullptr);
        box.show();
        box.setStyleSheet("QWidget#MsgboxDlg {background-color: red; border-radius: 20px;}");
        const QImage drawn = box.grab().toImage();
        QCOMPARE(drawn.pixelColor(390, 10), QColor(Qt::red));
        QVERIFY(box.testAttribute(Qt::WA_TranslucentBackground));
    }

    void theKindChoosesIconAndButtons()
    {
        const QStringList icons = {"Error", "Warning", "Info", "Question"};
        for (int kind = 0; kind < icons.size(); ++kind) {
            const Row row(icons.at(kind));
            MsgboxDlg box(kind, QString(), nullptr);
            box.show();
            QCOMPARE(child<QLabel>(&box, "infoIconLabel")->styleSheet(),
                     QStringLiteral("border-image: url(:/images/MsgBox_%1.png);").arg(icons.at(kind)));
            QCOMPARE(child<QPushButton>(&box, "cancelBtn")->isVisible(), kind == 3);
            if (kind != 3) {
                auto *ok = child<QPushButton>(&box, "okBtn");
                QCOMPARE(ok->pos(), QPoint(260, 230));
                QCOMPARE(ok->styleSheet(), focusedLook);
                QCOMPARE(box.focusWidget(), ok);
            }
        }
    }

    void theScreenSaverBorrowsTheFocusOfTheRightButton()
    {
        const std::tuple<int, bool, const char *> cases[] = {
            {3, false, "cancelBtn"}, {3, true, "okBtn"}, {1, false, "okBtn"}, {4, false, "cancelBtn"}};
        for (const auto &[kind, isLeftFirst, button] : cases) {
            const Row row(QStringLiteral("kind %1 on %2").arg(kind).arg(button));
            MsgboxDlg box(kind, QString(), nullptr);
            run(box, [&, isFirst = isLeftFirst, name = button] {
                if (isFirst)
                    screentest::key(&box, screentest::Left);
                auto *owner = child<QPushButton>(&box, name);
                const QString cancelLook = child<QPushButton>(&box, "cancelBtn")->styleSheet();
                QCOMPARE(box.focusWidget(), owner);
                FakeIpc::screenSaver(true);
                QVERIFY(!owner->hasFocus() && box.focusWidget() != owner);
                FakeIpc::screenSaver(false);
                QCOMPARE(box.focusWidget(), owner);
                QCOMPARE(child<QPushButton>(&box, "cancelBtn")->styleSheet(), cancelLook);
            });
        }
    }

private:
    // Runs the box modally and `act` in it; its result, or stillOpen when it had to be taken away.
    static int run(MsgboxDlg &box, const std::function<void()> &act)
    {
        bool isOpen = false;
        QTimer::singleShot(0, &box, [&] {
            act();
            isOpen = box.isVisible();
            if (isOpen)
                box.reject();
        });
        const int result = box.exec();
        return isOpen ? stillOpen : result;
    }
};

QTEST_MAIN(Msgbox)
#include "msgbox_test.moc"
