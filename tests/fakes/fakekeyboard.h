#pragma once

#include <QPointer>
#include <QString>

class QLineEdit;
class QtVirtualKbDlg;

// Drives the fake on-screen keyboard: the newest living QtVirtualKbDlg, which forgets what an older one was told. GUI
// thread only. It takes no keys by itself: the test types and confirms.
class FakeKeyboard {
public:
    static QPointer<QtVirtualKbDlg> current;

    // --- what the dialog asked for
    static QPointer<QLineEdit> field; // bound now; null when none or gone
    static bool isPrompt;             // the bound field shows its prompt
    static bool isHighlighted;

    // --- what the listener does
    static void type(const QString &text); // the first key of a prompt raises signalFirstKey and empties the field
    static void clear();                   // deletes everything: back to prompt state, signalRestoreInitState
    static void confirm();                 // signalSendContext with the field's text, empty in prompt state
    static bool isLastKey;                 // the key at the right end is the highlighted one
};
