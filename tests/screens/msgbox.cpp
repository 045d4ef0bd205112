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
        MsgboxDlg box(kind, QStringLiteral("text"), nullptr);
        QTEST(run(box,
                  [&] {
                      for (int key : keys)
                          screentest::key(&box, key);
                  }),
              "result");
    }

    void theFormIsLaidOutAsDesigned()
    {
        MsgboxDlg box(3, QStringLiteral("What?"), nullptr);
        QCOMPARE(box.pos(), QPoint(240, 175));
        QCOMPARE(box.size(), QSize(780, 339));
        QVERIFY(box.windowFlags().testFlag(Qt::FramelessWindowHint));
        QCOMPARE(box.styleSheet(), QStringLiteral("QWidget#MsgboxDlg {border-image: url(:/images/DialogBox_Bg.png);}\n"
                                                  "QWidget#MsgboxDlg {border-width: 35px;}\n"
                                                  "QWidget#MsgboxDlg {background-color: rgba(255, 255, 255, 0);};"));
        auto *ok = child<QPushButton>(&box, "okBtn");
        auto *cancel = child<QPushButton>(&box, "cancelBtn");
        auto *content = child<QLabel>(&box, "contentLabel");
        QCOMPARE(ok->geometry(), QRect(140, 230, 250, 45));
        QCOMPARE(cancel->geometry(), QRect(420, 230, 250, 45));
        QCOMPARE(content->geometry(), QRect(140, 20, 601, 201));
        QCOMPARE(child<QLabel>(&box, "infoIconLabel")->geometry(), QRect(40, 90, 91, 91));
        QCOMPARE(content->text(), QStringLiteral("What?"));
        QVERIFY(content->wordWrap());
        QCOMPARE(content->font().family(), QStringLiteral("Arial"));
        QCOMPARE(content->font().pointSize(), 20);
        QCOMPARE(ok->font().pointSize(), 18);
        QCOMPARE(ok->focusPolicy(), Qt::ClickFocus);
        QCOMPARE(ok->styleSheet(), formLook);
        QCOMPARE(cancel->styleSheet(), focusedLook);
        QCOMPARE(box.focusWidget(), cancel);
    }

    void theBackgroundIsDrawnOnATranslucentWindow()
    {
        MsgboxDlg box(1, QString(), nullptr);
        box.show();
        box.setStyleSheet(QStringLiteral("QWidget#MsgboxDlg {background-color: red; border-radius: 20px;}"));
        const QImage drawn = box.grab().toImage();
        QCOMPARE(drawn.pixelColor(390, 10), QColor(Qt::red));
        QVERIFY(box.testAttribute(Qt::WA_TranslucentBackground));
    }

    void theKindChoosesIconAndButtons_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("icon");
        QTest::newRow("error") << 0 << "Error";
        QTest::newRow("warning") << 1 << "Warning";
        QTest::newRow("information") << 2 << "Info";
        QTest::newRow("question") << 3 << "Question";
    }
    void theKindChoosesIconAndButtons()
    {
        QFETCH(int, kind);
        QFETCH(QString, icon);
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

    void theLookFollowsTheFocus()
    {
        MsgboxDlg box(3, QString(), nullptr);
        auto *ok = child<QPushButton>(&box, "okBtn");
        auto *cancel = child<QPushButton>(&box, "cancelBtn");
        run(box, [&] {
            screentest::key(&box, screentest::Left);
            QCOMPARE(box.focusWidget(), ok);
            QCOMPARE(ok->styleSheet(), focusedLook);
            QCOMPARE(cancel->styleSheet(), unfocusedLook);
            screentest::key(&box, screentest::Right);
            QCOMPARE(box.focusWidget(), cancel);
            QCOMPARE(cancel->styleSheet(), focusedLook);
            QCOMPARE(ok->styleSheet(), unfocusedLook);
        });
    }

    void textsReplaceTheLabelsUnlessEmpty()
    {
        MsgboxDlg box(3, QString(), nullptr);
        box.setButtonText(QStringLiteral("Home"), QString());
        QCOMPARE(child<QPushButton>(&box, "okBtn")->text(), QStringLiteral("Home"));
        QCOMPARE(child<QPushButton>(&box, "cancelBtn")->text(), QStringLiteral("Cancel"));
        box.setButtonText(QString(), QStringLiteral("No"));
        QCOMPARE(child<QPushButton>(&box, "okBtn")->text(), QStringLiteral("Home"));
        QCOMPARE(child<QPushButton>(&box, "cancelBtn")->text(), QStringLiteral("No"));
    }

    void namesAreNeverTakenForMarkup()
    {
        MsgboxDlg box(1, QStringLiteral("<b>Radio</b>"), nullptr);
        QCOMPARE(child<QLabel>(&box, "contentLabel")->textFormat(), Qt::PlainText);
    }

    void deletingTheBoxCountsAsConfirmed()
    {
        MsgboxDlg box(3, QString(), nullptr);
        QCOMPARE(run(box, [&] { box.deleteMsgBox(); }), 1);
    }

    void theScreenSaverBorrowsTheFocusOfTheRightButton_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<bool>("isLeftFirst");
        QTest::addColumn<QByteArray>("button");
        QTest::newRow("question on Cancel") << 3 << false << QByteArray("cancelBtn");
        QTest::newRow("question on OK") << 3 << true << QByteArray("okBtn");
        QTest::newRow("one button") << 1 << false << QByteArray("okBtn");
        QTest::newRow("above a question") << 4 << false << QByteArray("cancelBtn");
    }
    void theScreenSaverBorrowsTheFocusOfTheRightButton()
    {
        QFETCH(int, kind);
        QFETCH(bool, isLeftFirst);
        QFETCH(QByteArray, button);
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

    void aNewLanguageEmptiesTheMessage()
    {
        MsgboxDlg box(3, QStringLiteral("text"), nullptr);
        box.setButtonText(QStringLiteral("Yes"), QStringLiteral("No"));
        QEvent event(QEvent::LanguageChange);
        QCoreApplication::sendEvent(&box, &event);
        QCOMPARE(child<QLabel>(&box, "contentLabel")->text(), QString());
        QCOMPARE(child<QPushButton>(&box, "okBtn")->text(), QStringLiteral("OK"));
        QCOMPARE(child<QPushButton>(&box, "cancelBtn")->text(), QStringLiteral("Cancel"));
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
