#include "widgets/msgboxdlg.h"

#include "netcommon/ipcthread.h"
#include "ui_msgboxdlg.h"
#include "widgets/roundcorners.h"

#include <QKeyEvent>
#include <QPainter>
#include <QRegularExpression>
#include <QTextOption>

namespace {

constexpr int lastOneButtonKind = 2;
constexpr int question = 3;
constexpr int iconBelowMiddle = 8; // the icon's middle lies that far below the message area's

constexpr char focusedLook[] = "border-image: url(:/images/Btn_F.png);\ncolor: rgb(0, 0, 0);";
constexpr char normalLook[] = "border-image: url(:/images/Btn_N.png);\ncolor: rgb(255, 255, 255);";

QString iconStyle(int kind)
{
    static const char *const icons[] = {"MsgBox_Error", "MsgBox_Warning", "MsgBox_Info", "MsgBox_Question"};
    return QStringLiteral("border-image: url(:/images/%1.png);").arg(QLatin1String(icons[qBound(0, kind, question)]));
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
    ui->contentLabel->installEventFilter(this);
    alignMessage();
    ui->infoIconLabel->setStyleSheet(iconStyle(kind));
    ui->okBtn->setStyle(&m_style);
    connect(ui->okBtn, &QPushButton::clicked, this, &QDialog::accept);
    if (auto *ipc = netcommon::IpcThread::getInstance())
        connect(ipc, &netcommon::IpcThread::signalScreenSaver, this, &MsgboxDlg::handleScreenSaver);

    if (kind <= lastOneButtonKind)
        setUpOneButton();
    else
        setUpQuestion();
}

// Moves the message down to the middle of the icon, as far as its lines leave room.
void MsgboxDlg::alignMessage()
{
    const QString text = ui->contentLabel->text();
    const QFontMetrics metrics = ui->contentLabel->fontMetrics();
    // A line break at the end does not count as a line.
    const int emptyLine = text.endsWith(QLatin1Char('\n')) ? metrics.lineSpacing() : 0;
    const QRect room(QPoint(), ui->contentLabel->size());
    const int free = room.height() - metrics.boundingRect(room, Qt::TextWordWrap | Qt::TextWrapAnywhere, text).height();
    ui->contentLabel->setContentsMargins(0, emptyLine + qBound(0, free, 2 * iconBelowMiddle), 0, 0);
}

// Replaces the label's own painting, which breaks lines at blanks only and would cut a long address or name.
void MsgboxDlg::paintMessage()
{
    QLabel *label = ui->contentLabel;
    QPainter painter(label);
    painter.setPen(label->palette().color(label->foregroundRole()));
    static const QRegularExpression blanksAtLineEnd(QStringLiteral(" +(?=\\n|$)"));
    QString text = label->text();
    text.remove(blanksAtLineEnd);                            // they would push a right-to-left line beyond the edge
    QTextOption option(Qt::AlignVCenter | Qt::AlignLeading); // left, or right where the text runs so
    option.setTextDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    const QRectF room(label->contentsRect());
    while (text.size() > 1 &&
           painter.boundingRect(QRectF(room.topLeft(), QSizeF(room.width(), 0)), text, option).height() > room.height())
        text = text.left(text.size() - 2) + QChar(0x2026);
    painter.drawText(room, text, option);
}

bool MsgboxDlg::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != ui->contentLabel || event->type() != QEvent::Paint)
        return QDialog::eventFilter(watched, event);
    paintMessage();
    return true;
}

void MsgboxDlg::setUpOneButton()
{
    ui->cancelBtn->hide();
    ui->okBtn->setFocus(Qt::OtherFocusReason);
    ui->okBtn->setStyleSheet(QLatin1String(focusedLook));
    ui->okBtn->move(260, 230);
}

void MsgboxDlg::setUpQuestion()
{
    ui->cancelBtn->setFocus(Qt::OtherFocusReason);
    m_focusIndex = 1;
    ui->cancelBtn->setStyle(&m_style);
    ui->cancelBtn->setStyleSheet(QLatin1String(focusedLook));
    connect(ui->cancelBtn, &QPushButton::clicked, this, &QDialog::reject);
}

MsgboxDlg::~MsgboxDlg()
{
    qDebug("Del MsgboxDlg...");
    // The buttons draw with m_style, so they are deleted before it.
    delete ui->okBtn;
    delete ui->cancelBtn;
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
    from->setStyleSheet(QLatin1String(normalLook));
    to->setFocus(Qt::OtherFocusReason);
    to->setStyleSheet(QLatin1String(focusedLook));
    m_focusIndex = toIndex;
}

void MsgboxDlg::keyReleaseEvent(QKeyEvent *event)
{
    qDebug("MsgboxDlg,keyReleaseEvent,event->key=%0x,m_focusIndex=%d.", static_cast<unsigned>(event->key()),
           m_focusIndex);
    // Only the value 3 is a question here; for the screen saver every value above 2 is one (deliberate).
    if (m_msgType != question) {
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
    QPushButton *button = m_msgType > lastOneButtonKind && m_focusIndex != 0 ? ui->cancelBtn : ui->okBtn;
    if (fgEnter)
        button->clearFocus();
    else
        button->setFocus(Qt::OtherFocusReason);
}

void MsgboxDlg::changeEvent(QEvent *event)
{
    // This also clears the message (deliberate).
    if (event->type() == QEvent::LanguageChange)
        ui->retranslateUi(this);
    QDialog::changeEvent(event);
}
