#pragma once

#include "station/infodlg.h"

namespace Ui {
class WhyDlg;
}

// Why the current track plays. Its parent's signalDestoryDialog() (spelled so) ends it too.
class WhyDlg : public InfoDlg {
    Q_OBJECT
public:
    explicit WhyDlg(const QString &text, QWidget *parent = nullptr);
    ~WhyDlg() override;

private:
    Ui::WhyDlg *ui;
};
