#pragma once

#include "station/infodlg.h"

#include <memory>

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
    const std::unique_ptr<Ui::WhyDlg> ui;
};
