#include "station/whydlg.h"

#include "ui_whydlg.h"

#include <QDebug>

WhyDlg::WhyDlg(const QString &text, QWidget *parent)
    : InfoDlg(parent)
    , ui(std::make_unique<Ui::WhyDlg>())
{
    qDebug("new WhyDlg");
    ui->setupUi(this);
    ui->whyLabel->setText(text);
    useDoneButton(ui->doneBtn);
    // Connected by name because station/ must not include the player screen.
    if (parent && parent->metaObject()->indexOfSignal("signalDestoryDialog()") >= 0)
        connect(parent, SIGNAL(signalDestoryDialog()), this, SLOT(destroyedWindow()));
}

WhyDlg::~WhyDlg()
{
    qDebug("del WhyDlg");
}
