#pragma once

#include "app/velmoraparentwidget.h"

#include <memory>

namespace Ui {
class WelcomeDlg;
}

// The greeting of a device that was never set up. "Activate Velmora" records that it was seen and goes on to the
// loading screen. Back asks whether to exit.
class WelcomeDlg : public VelmoraParentWidget {
    Q_OBJECT
public:
    explicit WelcomeDlg(QWidget *parent = nullptr);
    ~WelcomeDlg() override;

    void loseFocus(bool fgMsgbox) override;
    void resetFocus(bool fgMsgbox) override;

public slots:
    void activateVelmora();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;

private:
    void askToLeave();

    std::unique_ptr<Ui::WelcomeDlg> ui;
};
