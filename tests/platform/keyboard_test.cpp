// The on-screen keyboard as a dialog uses it: the field holds the focus, keys arrive at the dialog, the dialog passes
// on what it allows.

#include "virtualkb/qtvirtualkbdlg.h"

#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

namespace {

const char prompt[] = "Type something...";

// A dialog like the radio's: it checks presses, then passes them to QDialog; the field passes everything but text to
// its dialog.
class Dialog : public QDialog {
public:
    explicit Dialog(bool fgPrompt = true)
        : field(new QLineEdit(this))
        , keyboard(new QtVirtualKbDlg(this))
    {
        resize(1280, 720);
        field->setReadOnly(fgPrompt);
        field->setText(QString::fromLatin1(fgPrompt ? prompt : "Old name"));
        keyboard->enableLineEdit(field, fgPrompt);
        keyboard->move(137, 280);
        keyboard->showWindow(false);
        connect(keyboard, &QtVirtualKbDlg::signalRestoreInitState, field,
                [this] { field->setText(QString::fromLatin1(prompt)); });
        connect(keyboard, &QtVirtualKbDlg::signalFirstKey, field, [this] { field->setReadOnly(false); });
        show();
    }

    void keyPressEvent(QKeyEvent *event) override
    {
        if (isRefusing)
            return;
        QDialog::keyPressEvent(event);
    }

    void keyReleaseEvent(QKeyEvent *event) override
    {
        if (event->key() == Qt::Key_Right)
            lastKeyAtRelease = keyboard->isLastKey();
        QDialog::keyReleaseEvent(event);
    }

    void press(std::initializer_list<int> keys)
    {
        for (int key : keys)
            QTest::keyClick(this, static_cast<Qt::Key>(key));
    }

    QLineEdit *field;
    QtVirtualKbDlg *keyboard;
    bool isRefusing = false;
    bool lastKeyAtRelease = false;
};

constexpr int R = Qt::Key_Right;
constexpr int L = Qt::Key_Left;
constexpr int U = Qt::Key_Up;
constexpr int D = Qt::Key_Down;
constexpr int S = Qt::Key_Select;

} // namespace

class KeyboardTest : public QObject {
    Q_OBJECT
private slots:
    void confirmingAnUntouchedPromptSendsNothing()
    {
        Dialog dialog;
        QSignalSpy sent(dialog.keyboard, &QtVirtualKbDlg::signalSendContext);
        dialog.press({U, L, S}); // row 4 from "q": Clear, then around to Done
        QCOMPARE(sent.size(), 1);
        QCOMPARE(sent.at(0).at(0).toString(), QString());
        dialog.press({D, S}); // Done -> the top row's nearest key
        dialog.press({U, S});
        QCOMPARE(sent.size(), 2);
        QCOMPARE(sent.at(1).at(0).toString(), dialog.field->text());
        QVERIFY(!dialog.field->text().isEmpty());
    }

    void anEmptiedFieldRestoresThePromptAndStartsOver()
    {
        Dialog dialog;
        QSignalSpy restored(dialog.keyboard, &QtVirtualKbDlg::signalRestoreInitState);
        QSignalSpy first(dialog.keyboard, &QtVirtualKbDlg::signalFirstKey);
        dialog.press({S, S});
        dialog.press({U, S}); // Clear
        QCOMPARE(restored.size(), 1);
        QCOMPARE(dialog.field->text(), QString::fromLatin1(prompt));
        dialog.press({S}); // Clear again: nothing to clear
        QCOMPARE(restored.size(), 1);
        dialog.press({D, S});
        QCOMPARE(dialog.field->text().size(), 1);
        QCOMPARE(first.size(), 2);
    }

    // A telephone's keyboard types as an input method of the keyboard widget.
    void anInputMethodTypesWholeTextsIntoTheBoundField()
    {
        Dialog dialog;
        const auto commit = [&](const QString &text) {
            QInputMethodQueryEvent where(Qt::ImQueryAll);
            QCoreApplication::sendEvent(dialog.keyboard, &where);
            QInputMethodEvent event;
            event.setCommitString(text, -where.value(Qt::ImCursorPosition).toInt(), 1000);
            QCoreApplication::sendEvent(dialog.keyboard, &event);
            return event.isAccepted();
        };
        const auto asked = [&](Qt::InputMethodQuery query) {
            QInputMethodQueryEvent event(query);
            QCoreApplication::sendEvent(dialog.keyboard, &event);
            return event.value(query);
        };
        QSignalSpy first(dialog.keyboard, &QtVirtualKbDlg::signalFirstKey);
        QSignalSpy restored(dialog.keyboard, &QtVirtualKbDlg::signalRestoreInitState);
        QSignalSpy sent(dialog.keyboard, &QtVirtualKbDlg::signalSendContext);
        QVERIFY(asked(Qt::ImSurroundingText).toString().isEmpty()); // the prompt is no text
        QVERIFY(commit({}));
        QCOMPARE(dialog.field->text(), QString::fromLatin1(prompt));
        QVERIFY(commit("Lämp"));
        QVERIFY(commit("Lamps"));
        QCOMPARE(dialog.field->text(), "Lamps");
        QCOMPARE(first.size(), 1);
        dialog.press({S}); // the highlight stands on Done
        QCOMPARE(sent.value(0).value(0).toString(), "Lamps");
        QVERIFY(commit({}));
        QCOMPARE(restored.size(), 1);
        QCOMPARE(dialog.field->text(), QString::fromLatin1(prompt));
        dialog.field->setEchoMode(QLineEdit::Password);
        QVERIFY(commit("open sesame"));
        QCOMPARE(dialog.field->text(), "open sesame");
        QVERIFY(asked(Qt::ImSurroundingText).toString().isEmpty());
        QVERIFY(asked(Qt::ImHints).toInt() & Qt::ImhHiddenText);
        dialog.keyboard->loseFocus();
        QVERIFY(!asked(Qt::ImEnabled).toBool() && !commit("x"));
        QCOMPARE(dialog.field->text(), "open sesame");
    }

    void aHeldDeleteGoesOnUntilSelectIsReleased()
    {
        Dialog dialog(false);
        dialog.press({U, L, L}); // Clear -> Done -> Delete
        QTest::keyPress(&dialog, Qt::Key_Select);
        QTRY_VERIFY(dialog.field->text().size() <= 4);
        QTest::keyRelease(&dialog, Qt::Key_Select);
        const QString left = dialog.field->text();
        // The same key held on another keyboard deletes twice; by then this one would have.
        Dialog held(false);
        held.press({U, L, L});
        QTest::keyPress(&held, Qt::Key_Select);
        QTRY_VERIFY(held.field->text().size() <= 4);
        QCOMPARE(dialog.field->text(), left);
    }

    void arrowsWrapAroundOnEveryEdge()
    {
        const std::pair<std::vector<int>, const char *> cases[] = {
            {{L, S}, "p"},       {{L, R, S}, "q"}, // right-most key; the dialog takes no focus, so it wraps around
            {{D, D, S}, "z"},    {{D, D, D, D, S}, "q"}, {{U, R, S}, ".com"},
            {{U, R, R, S}, " "}, {{L, U, U, S}, "_"},    {{L, D, S}, "@"}};
        for (const auto &[keys, typed] : cases) {
            Dialog dialog;
            for (int key : keys) {
                dialog.press({key});
                QCoreApplication::processEvents(); // the wrap follows the release
            }
            QCOMPARE(dialog.field->text(), QString::fromLatin1(typed));
        }
    }

    void onlyAFurtherRightLeavesTheRightMostKey()
    {
        Dialog dialog;
        for (int i = 0; i < 9; ++i)
            dialog.press({R});
        QVERIFY(!dialog.lastKeyAtRelease); // this key press has just reached the last key
        QTRY_VERIFY(dialog.keyboard->isLastKey());
        dialog.press({R});
        QVERIFY(dialog.lastKeyAtRelease);
    }

    void redChangesThePageAndGreenTheCapitals()
    {
        Dialog dialog;
        QSignalSpy pages(dialog.keyboard, &QtVirtualKbDlg::signalPageNum);
        dialog.keyboard->changeMode();
        dialog.press({S});
        QVERIFY(dialog.keyboard->m_isModeAble);
        dialog.keyboard->changePage();
        QVERIFY(!dialog.keyboard->m_isModeAble);
        // A key shows what it types, also where texts run from right to left.
        const QImage leftToRight = dialog.keyboard->grab().toImage();
        dialog.keyboard->setLayoutDirection(Qt::RightToLeft);
        QCOMPARE(dialog.keyboard->grab().toImage(), leftToRight);
        dialog.keyboard->changeMode(); // no effect on this page
        dialog.press({S});
        dialog.keyboard->changePage();
        dialog.press({S});
        dialog.keyboard->changeMode();
        dialog.press({S});
        QCOMPARE(dialog.field->text(), QStringLiteral("Q1Qq"));
        QCOMPARE(pages.size(), 2);
        QCOMPARE(pages.at(0).at(0).toInt(), 2);
        QCOMPARE(pages.at(1).at(0).toInt(), 1);
    }

    void noKeyArrivesWhileTheDialogRefusesOrTheHighlightIsAway()
    {
        Dialog dialog;
        dialog.isRefusing = true;
        dialog.press({S});
        dialog.isRefusing = false;
        dialog.keyboard->loseFocus();
        dialog.press({S});
        dialog.keyboard->restoreFocus();
        emit dialog.keyboard->signalChangeHighlight(false);
        dialog.press({S});
        QCOMPARE(dialog.field->text(), QString::fromLatin1(prompt));
        emit dialog.keyboard->signalChangeHighlight(true);
        dialog.press({S});
        QCOMPARE(dialog.field->text(), QStringLiteral("q"));
    }

    void aPcKeyboardNeverAppendsToAPrompt()
    {
        Dialog dialog;
        dialog.press({S});
        dialog.field->setFocus();
        QTest::keyClick(dialog.field, Qt::Key_Backspace); // empty: the prompt is back, the field still writable
        QCOMPARE(dialog.field->text(), QString::fromLatin1(prompt));
        QTest::keyClick(dialog.field, Qt::Key_Backspace);
        QCOMPARE(dialog.field->text(), QString::fromLatin1(prompt));
        QTest::keyClick(dialog.field, Qt::Key_X);
        QCOMPARE(dialog.field->text(), QStringLiteral("x"));
    }
};

QTEST_MAIN(KeyboardTest)
#include "keyboard_test.moc"
