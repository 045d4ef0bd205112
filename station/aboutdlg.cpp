#include "station/aboutdlg.h"

#include "ui_aboutdlg.h"
#include "widgets/roundcorners.h"

#include <QDebug>
#include <QKeyEvent>

AboutDlg::AboutDlg(QWidget *parent)
    : VelmoraParentWidget(parent)
    , ui(new Ui::AboutDlg)
{
    qDebug("new AboutDlg");
    ui->setupUi(this);
    showRoundCorners(this);
    ui->doneBtn->setFocus(Qt::OtherFocusReason);
    connect(ui->doneBtn, &QPushButton::clicked, this, &AboutDlg::destroyedWindow);
}

AboutDlg::~AboutDlg()
{
    qDebug("del AboutDlg");
    delete ui;
    emit signalDestroyedWindow();
}

void AboutDlg::destroyedWindow()
{
    qDebug("AboutDlg,destroyedWindow...");
    close();
    delete this;
}

void AboutDlg::keyReleaseEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Back && fgActionInvalid())
        destroyedWindow();
    else
        QDialog::keyReleaseEvent(event);
}

void AboutDlg::loseFocus(bool fgMsgbox)
{
    ui->doneBtn->clearFocus();
    VelmoraParentWidget::loseFocus(fgMsgbox);
}

void AboutDlg::resetFocus(bool fgMsgbox)
{
    ui->doneBtn->setFocus(Qt::OtherFocusReason);
    ui->doneBtn->setStyleSheet(QStringLiteral("border-image: url(:/images/Button_Focus_H.png);\ncolor: rgb(0, 0,0);"));
    VelmoraParentWidget::resetFocus(fgMsgbox);
}
