#include "widgets/msgboxdlg.h"

#include "netcommon/ipcthread.h"
#include "ui_msgboxdlg.h"
#include "widgets/roundcorners.h"

#include <QKeyEvent>

namespace {

constexpr int LastOneButtonKind = 2;
constexpr int Question = 3;

const char *const FocusedLook = "border-image: url(:/images/Btn_F.png);\ncolor: rgb(0, 0, 0);";
const char *const NormalLook = "border-image: url(:/images/Btn_N.png);\ncolor: rgb(255, 255, 255);";

QString iconStyle(int kind)
{
    static const char *const icons[] = {"MsgBox_Error", "MsgBox_Warning", "MsgBox_Info", "MsgBox_Question"};
    return QStringLiteral("border-image: url(:/images/%1.png);").arg(QLatin1String(icons[qBound(0, kind, Question)]));
}

} // namespace

MsgboxDlg::MsgboxDlg(int kind, const QString &text, QWidget *parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint)
    , ui(new Ui::MsgboxDlg)
    , m_msgType(kind)
{
    qDebug("New MsgboxDlg...");
    ui->setupUi(this);
    showRoundCorners(this);
    move(240, 175);

    ui->contentLabel->setText(text);
    // A line break at the end is not a line: those before it stay level with the icon.
    if (text.endsWith(QLatin1Char('\n')))
        ui->contentLabel->setContentsMargins(0, ui->contentLabel->fontMetrics().lineSpacing(), 0, 0);
    ui->infoIconLabel->setStyleSheet(iconStyle(kind));
    ui->okBtn->setStyle(&m_style);
    connect(ui->okBtn, &QPushButton::clicked, this, &QDialog::accept);
    if (auto *ipc = netcommon::IpcThread::getInstance())
        connect(ipc, &netcommon::IpcThread::signalScreenSaver, this, &MsgboxDlg::handleScreenSaver);

    if (kind <= LastOneButtonKind)
        setUpOneButton();
    else
        setUpQuestion();
}

void MsgboxDlg::setUpOneButton()
{
    ui->cancelBtn->hide();
    ui->okBtn->setFocus(Qt::OtherFocusReason);
    ui->okBtn->setStyleSheet(QLatin1String(FocusedLook));
    ui->okBtn->move(260, 230);
}

void MsgboxDlg::setUpQuestion()
{
    ui->cancelBtn->setFocus(Qt::OtherFocusReason);
    m_focusIndex = 1;
    ui->cancelBtn->setStyle(&m_style);
    ui->cancelBtn->setStyleSheet(QLatin1String(FocusedLook));
    connect(ui->cancelBtn, &QPushButton::clicked, this, &QDialog::reject);
}

MsgboxDlg::~MsgboxDlg()
{
    qDebug("Del MsgboxDlg...");
    // The buttons draw with m_style: they go before it does.
    delete ui->okBtn;
    delete ui->cancelBtn;
    delete ui;
    qDebug("Del MsgboxDlg.done..");
}

void MsgboxDlg::setButtonText(const QString &okText, const QString &cancelText)
{
    if (!okText.isEmpty())
        ui->okBtn->setText(okText);
    if (!cancelText.isEmpty())
        ui->cancelBtn->setText(cancelText);
}

void MsgboxDlg::deleteMsgBox()
{
    qDebug("MsgboxDlg,deleteMsgBox");
    accept();
}

void MsgboxDlg::moveFocus(QPushButton *from, QPushButton *to, int toIndex)
{
    from->setStyleSheet(QLatin1String(NormalLook));
    to->setFocus(Qt::OtherFocusReason);
    to->setStyleSheet(QLatin1String(FocusedLook));
    m_focusIndex = toIndex;
}

void MsgboxDlg::keyReleaseEvent(QKeyEvent *event)
{
    qDebug("MsgboxDlg,keyReleaseEvent,event->key=%0x,m_focusIndex=%d.", static_cast<unsigned>(event->key()),
           m_focusIndex);
    // Only the value 3 is a question here, while the screen saver takes every value above 2 for one: deliberate.
    if (m_msgType != Question) {
        ui->okBtn->setFocus(Qt::OtherFocusReason);
        m_focusIndex = 0;
    } else if (event->key() == Qt::Key_Left) {
        if (m_focusIndex == 1)
            moveFocus(ui->cancelBtn, ui->okBtn, 0);
        else if (m_focusIndex == 0)
            ui->okBtn->setFocus(Qt::OtherFocusReason);
    } else if (event->key() == Qt::Key_Right) {
        if (m_focusIndex == 0)
            moveFocus(ui->okBtn, ui->cancelBtn, 1);
        else if (m_focusIndex == 1)
            ui->cancelBtn->setFocus(Qt::OtherFocusReason);
    }
    QDialog::keyReleaseEvent(event);
}

void MsgboxDlg::handleScreenSaver(bool fgEnter)
{
    qDebug("MsgboxDlg,handleScreenSaver=%d..", fgEnter);
    QPushButton *button = m_msgType > LastOneButtonKind && m_focusIndex != 0 ? ui->cancelBtn : ui->okBtn;
    if (fgEnter)
        button->clearFocus();
    else
        button->setFocus(Qt::OtherFocusReason);
}

void MsgboxDlg::changeEvent(QEvent *event)
{
    // The message goes with the texts of the form (deliberate).
    if (event->type() == QEvent::LanguageChange)
        ui->retranslateUi(this);
    QDialog::changeEvent(event);
}
