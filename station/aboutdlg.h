#pragma once

#include "app/velmoraparentwidget.h"

namespace Ui {
class AboutDlg;
}

// What the service is, over the player screen. Back or its one button ends it.
class AboutDlg : public VelmoraParentWidget {
    Q_OBJECT
public:
    explicit AboutDlg(QWidget *parent = nullptr);
    ~AboutDlg() override;

    void loseFocus(bool fgMsgbox) override;
    void resetFocus(bool fgMsgbox) override;

signals:
    void signalDestroyedWindow();

public slots:
    void destroyedWindow();

protected:
    void keyReleaseEvent(QKeyEvent *event) override;

private:
    Ui::AboutDlg *ui;
};
