// The message box: its looks, and every answer that the remote's keys can give.
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

constexpr int StillOpen = -1; // no key ended the box

} // namespace

class Msgbox : public QObject {
    Q_OBJECT
private slots:
    void init() { FakeIpc::reset(); }

    void keysAnswer_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<int>("result");
        const int left = screentest::Left, right = screentest::Right, select = screentest::Select;
        QTest::newRow("a question opens with Cancel: Enter at once says no") << 3 << QList<int>{Qt::Key_Return} << 0;
        QTest::newRow("Select at once says no") << 3 << QList<int>{select} << 0;
        QTest::newRow("Left then Enter says yes") << 3 << QList<int>{left, Qt::Key_Return} << 1;
        QTest::newRow("Left then Select says yes") << 3 << QList<int>{left, select} << 1;
        QTest::newRow("Left twice stays on OK") << 3 << QList<int>{left, left, select} << 1;
        QTest::newRow("Left, Right is back on Cancel") << 3 << QList<int>{left, right, select} << 0;
        QTest::newRow("Right changes nothing") << 3 << QList<int>{right, select} << 0;
        QTest::newRow("Up and Down change nothing") << 3 << QList<int>{screentest::Up, screentest::Down, select} << 0;
        QTest::newRow("arrows alone answer nothing") << 3 << QList<int>{left, right, left} << StillOpen;
        for (int kind = 0; kind < 3; ++kind) {
            QTest::addRow("kind %d: Enter is OK", kind) << kind << QList<int>{Qt::Key_Return} << 1;
            QTest::addRow("kind %d: Left and Right are ignored", kind) << kind << QList<int>{left, right, select} << 1;
        }
        QTest::newRow("a kind above 3 looks like a question but arrows lead to OK")
            << 4 << QList<int>{right, select} << 1;
    }
    void keysAnswer()
    {
        QFETCH(int, kind);
        QFETCH(QList<int>, keys);
        MsgboxDlg box(kind, "text", nullptr);
        QTEST(run(box,
                  [&] {
                      for (int key : keys)
                          screentest::key(&box, key);
                  }),
              "result");
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
        const std::tuple<int, QString> cases[] = {
            {0, "Error"},    // error
            {1, "Warning"},  // warning
            {2, "Info"},     // information
            {3, "Question"}, // question
        };
        for (const auto &[kind, icon] : cases) {
            MsgboxDlg box(kind, QString(), nullptr);
            box.show();
            QCOMPARE(child<QLabel>(&box, "infoIconLabel")->styleSheet(),
                     QStringLiteral("border-image: url(:/images/MsgBox_%1.png);").arg(icon));
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
        const std::tuple<int, bool, QByteArray> cases[] = {
            {3, false, QByteArray("cancelBtn")}, // question on Cancel
            {3, true, QByteArray("okBtn")},      // question on OK
            {1, false, QByteArray("okBtn")},     // one button
            {4, false, QByteArray("cancelBtn")}, // above a question
        };
        for (const auto &[kind, isLeftFirst, button] : cases) {
            MsgboxDlg box(kind, QString(), nullptr);
            run(box, [&] {
                if (isLeftFirst)
                    screentest::key(&box, screentest::Left);
                auto *owner = child<QPushButton>(&box, button.constData());
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

    void aNewLanguageEmptiesTheMessage()
    {
        MsgboxDlg box(3, "text", nullptr);
        auto *ok = child<QPushButton>(&box, "okBtn");
        auto *cancel = child<QPushButton>(&box, "cancelBtn");
        box.setButtonText("Home", QString()); // an empty one keeps its label
        QCOMPARE(ok->text() + cancel->text(), QStringLiteral("HomeCancel"));
        box.setButtonText(QString(), "No");
        QCOMPARE(ok->text() + cancel->text(), QStringLiteral("HomeNo"));
        QEvent event(QEvent::LanguageChange);
        QCoreApplication::sendEvent(&box, &event);
        QCOMPARE(child<QLabel>(&box, "contentLabel")->text(), QString());
        QCOMPARE(ok->text() + cancel->text(), QStringLiteral("OKCancel"));
    }

private:
    // Runs the box modally and `act` in it; its result, or StillOpen when it had to be taken away.
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
        return isOpen ? StillOpen : result;
    }
};

QTEST_MAIN(Msgbox)
#include "msgbox.moc"
