#pragma once

#include "app/playerdialog.h"

class QPushButton;

// What About and Why share: a card over the player screen with one button, which Select or a click chooses. That or
// Back ends it. GUI thread only.
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
    // Once the form stands: gives its button the focus. The button dies with the form, before this class's destructor.
    void useDoneButton(QPushButton *doneBtn);
    void keyReleaseEvent(QKeyEvent *event) override;

private:
    QPushButton *m_doneBtn = nullptr; // child
};
