#pragma once

#include "app/velmoraparentwidget.h"

class QLineEdit;
class QtVirtualKbDlg;

// What all screens with an on-screen keyboard share: the keyboard, its signals and the colour keys. GUI thread only.
class TextEntryDlg : public VelmoraParentWidget {
    Q_OBJECT
public:
    explicit TextEntryDlg(QWidget *parent = nullptr);

signals:
    void signalRetuenBtn(); // the spelling is deliberate
    void signalRedBtn();
    void signalGreenBtn();
    void signalChangeHighlight(bool highlight); // false while a message box covers the screen

protected:
    // Makes the keyboard, binds it to `field`, places it and shows it. Makes the connections that are the same for
    // every screen; the screen itself connects signalSendContext, signalRestoreInitState and signalFirstKey.
    void makeKeyboard(QLineEdit *field, bool fgPrompt, const QPoint &place);
    void keyPressEvent(QKeyEvent *event) override; // red: page, green: capitals; the rest goes to the keyboard

    QtVirtualKbDlg *m_keyboard = nullptr; // child
};
