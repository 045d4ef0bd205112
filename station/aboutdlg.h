#pragma once

#include "station/infodlg.h"

namespace Ui {
class AboutDlg;
}

// What the service is.
class AboutDlg : public InfoDlg {
    Q_OBJECT
public:
    explicit AboutDlg(QWidget *parent = nullptr);
    ~AboutDlg() override;

private:
    Ui::AboutDlg *ui;
};
