#pragma once

#include "viewcomponent/mcommonstyle.h"

#include <QDialog>

#include <memory>

class QPushButton;

namespace Ui {
class MsgboxDlg;
}

// The modal message box. Screens show it through VelmoraParentWidget::showMsgbox(), which owns it. GUI thread only.
class MsgboxDlg : public QDialog {
    Q_OBJECT
public:
    // kind: 0 error, 1 warning, 2 information, each with one button. Above 2: a question with two buttons, Cancel
    // focused.
    MsgboxDlg(int kind, const QString &text, QWidget *parent);
    ~MsgboxDlg() override;

    void setButtonText(const QString &okText, const QString &cancelText); // an empty text leaves its button as it is
    void deleteMsgBox();                                                  // ends the box as if OK had been pressed

public slots:
    void handleScreenSaver(bool fgEnter);

protected:
    void keyReleaseEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void setUpOneButton();
    void setUpQuestion();
    void alignMessage();
    void paintMessage();
    void moveFocus(QPushButton *from, QPushButton *to, int toIndex);

    std::unique_ptr<Ui::MsgboxDlg> ui;
    const int m_msgType;
    int m_focusIndex = 0; // 0 okBtn, 1 cancelBtn
    viewcomponent::MCommonStyle m_style;
};
