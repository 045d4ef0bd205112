#pragma once

#include "app/velmoraparentwidget.h"

namespace Ui {
class WhyDlg;
}

// Why the current track plays, over the player screen. Back, its one button or its parent's signalDestoryDialog()
// (spelled so) ends it.
class WhyDlg : public VelmoraParentWidget {
    Q_OBJECT
public:
    explicit WhyDlg(const QString &text, QWidget *parent = nullptr);
    ~WhyDlg() override;

    void loseFocus(bool fgMsgbox) override;
    void resetFocus(bool fgMsgbox) override;

signals:
    void signalDestroyedWindow();

public slots:
    void destroyedWindow();

protected:
    void keyReleaseEvent(QKeyEvent *event) override;

private:
    Ui::WhyDlg *ui;
};
