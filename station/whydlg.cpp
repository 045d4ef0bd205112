#include "station/whydlg.h"

#include "ui_whydlg.h"
#include "widgets/roundcorners.h"

#include <QDebug>
#include <QKeyEvent>

WhyDlg::WhyDlg(const QString &text, QWidget *parent)
    : VelmoraParentWidget(parent)
    , ui(new Ui::WhyDlg)
{
    qDebug("new WhyDlg");
    ui->setupUi(this);
    showRoundCorners(this);
    ui->whyLabel->setText(text);
    ui->doneBtn->setFocus(Qt::OtherFocusReason);
    connect(ui->doneBtn, &QPushButton::clicked, this, &WhyDlg::destroyedWindow);
    // By name: this folder does not know the player screen.
    if (parent && parent->metaObject()->indexOfSignal("signalDestoryDialog()") >= 0)
        connect(parent, SIGNAL(signalDestoryDialog()), this, SLOT(destroyedWindow()));
}

WhyDlg::~WhyDlg()
{
    qDebug("del WhyDlg");
    delete ui;
    emit signalDestroyedWindow();
}

void WhyDlg::destroyedWindow()
{
    qDebug("WhyDlg,destroyedWindow...");
    close();
    delete this;
}

void WhyDlg::keyReleaseEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Back && fgActionInvalid())
        destroyedWindow();
    else
        QDialog::keyReleaseEvent(event);
}

void WhyDlg::loseFocus(bool fgMsgbox)
{
    ui->doneBtn->clearFocus();
    VelmoraParentWidget::loseFocus(fgMsgbox);
}

void WhyDlg::resetFocus(bool fgMsgbox)
{
    ui->doneBtn->setFocus(Qt::OtherFocusReason);
    ui->doneBtn->setStyleSheet(QStringLiteral("border-image: url(:/images/Button_Focus_H.png);\ncolor: rgb(0, 0,0);"));
    VelmoraParentWidget::resetFocus(fgMsgbox);
}
