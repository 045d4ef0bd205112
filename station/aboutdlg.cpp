#include "station/aboutdlg.h"

#include "ui_aboutdlg.h"

#include <QDebug>

AboutDlg::AboutDlg(QWidget *parent)
    : InfoDlg(parent)
    , ui(std::make_unique<Ui::AboutDlg>())
{
    qDebug("new AboutDlg");
    ui->setupUi(this);
    useDoneButton(ui->doneBtn);
}

AboutDlg::~AboutDlg()
{
    qDebug("del AboutDlg");
}
