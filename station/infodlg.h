#pragma once

#include "app/playerdialog.h"

class QPushButton;

// Common part of About and Why: a card over the player screen with one button. The button or Back closes it. GUI thread
// only.
class InfoDlg : public PlayerDialog {
    Q_OBJECT
public:
    explicit InfoDlg(QWidget *parent);
    ~InfoDlg() override;

    void loseFocus(bool fgMsgbox) override;
    void resetFocus(bool fgMsgbox) override;

public slots:
    void destroyedWindow(); // closes and deletes this dialog at once

protected:
    // Called once the form exists; gives its button the focus. The form deletes the button before this class's
    // destructor runs.
    void useDoneButton(QPushButton *doneBtn);
    void keyReleaseEvent(QKeyEvent *event) override;

private:
    QPushButton *m_doneBtn = nullptr; // child
};
