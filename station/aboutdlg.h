#pragma once

#include "station/infodlg.h"

#include <memory>

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
    const std::unique_ptr<Ui::AboutDlg> ui;
};
