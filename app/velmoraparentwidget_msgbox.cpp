// The root widget: message boxes, the veil under them, and the words of service errors.
#include "app/velmoraparentwidget.h"

#include "app/errortexts.h"
#include "netcommon/ipc.h"
#include "widgets/msgboxdlg.h"

#include <QLabel>

#include <utility>

namespace {

QLabel *newVeil(QWidget *screen)
{
    auto *veil = new QLabel(screen);
    veil->setStyleSheet(QStringLiteral("border-image: url(:/images/mst_thumnail_mask.png);\n"));
    veil->setGeometry(screen->rect());
    veil->show();
    veil->raise();
    return veil;
}

} // namespace

void VelmoraParentWidget::setMsgBoxInfoType(int type)
{
    qDebug("VelmoraParentWidget,setMsgBoxInfoType.type=%d..", type);
    m_msgBoxInfoType = type;
}

int VelmoraParentWidget::showMsgbox(int type, const QString &text)
{
    qDebug("VelmoraParentWidget,showMsgbox...");
    destroyedMsgbox();
    loseFocus(true);

    const QPointer<VelmoraParentWidget> self(this);
    const QPointer<MsgboxDlg> box(new MsgboxDlg(type, text, this));
    m_msgbox = box;
    box->setProperty(netcommon::lastBoxProperty, std::exchange(m_isLastBox, false));
    switch (m_msgBoxInfoType) {
    case LABELS_YES_NO:
        box->setButtonText(tr("Yes"), tr("No"));
        break;
    case LABELS_ARTIST_TRACK:
        box->setButtonText(tr("Artist"), tr("Track"));
        break;
    case LABELS_HOME:
        box->setButtonText(tr("Home"), QString());
        break;
    default:
        break;
    }
    m_msgBoxInfoType = LABELS_DEFAULT;
    m_isBoxShown = true;
    dimUnder(box);
    const int result = box->exec();
    if (!self)
        return 0; // the screen was deleted with its box open
    m_isBoxDestroyed = box.isNull();
    m_isBoxShown = false;
    resetFocus(false);
    if (self)
        destroyedMsgbox();
    return result;
}

int VelmoraParentWidget::showLastMsgbox(int type, const QString &text)
{
    m_isLastBox = true;
    return showMsgbox(type, text);
}

// Dims a full-screen dialog while its box is open, so that the box is the only bright thing. Dialogs that are cards
// themselves and screens that are dimmed already stay as they are.
void VelmoraParentWidget::dimUnder(const QObject *box)
{
    if (!isVisible() || width() < 1280 || m_shadow)
        return;
    QLabel *veil = newVeil(this);
    connect(box, &QObject::destroyed, veil, &QWidget::hide);
    connect(box, &QObject::destroyed, veil, &QObject::deleteLater);
}

void VelmoraParentWidget::showShadow(bool fgShow)
{
    qDebug("VelmoraParentWidget,showShadow=%d.", fgShow);
    delete m_shadow.data();
    if (fgShow)
        m_shadow = newVeil(this);
}

void VelmoraParentWidget::destroyedMsgbox()
{
    qDebug("VelmoraParentWidget,destroyedMsgbox...");
    if (!m_msgbox)
        return;
    qDebug("VelmoraParentWidget,destroyedMsgbox.do..");
    m_isBoxShown = false;
    delete m_msgbox.data(); // its exec() returns 0 once control is back there
}

void VelmoraParentWidget::hideMsgbox()
{
    qDebug("VelmoraParentWidget,hideMsgbox...");
    if (!m_msgbox)
        return;
    m_isBoxShown = false;
    delete m_msgbox.data();
    resetFocus(false);
}

void VelmoraParentWidget::delMsgbox()
{
    qDebug("VelmoraParentWidget,delMsgbox...");
    if (!m_msgbox)
        return;
    qDebug("VelmoraParentWidget,delMsgbox.do..");
    // Counts as confirmed: showMsgbox() returns 1 and deletes the box itself.
    m_msgbox->deleteMsgBox();
}

bool VelmoraParentWidget::isMsgboxShown() const
{
    return m_isBoxShown;
}

bool VelmoraParentWidget::isBoxDestroyed() const
{
    return m_isBoxDestroyed;
}

QString VelmoraParentWidget::handleWSError(VLM_WS_EXT_ERRCODE_T code)
{
    qDebug("VelmoraParentWidget,handleWSError,VLM_WS_EXT_ERRCODE_T =%d", code);
    const errortexts::ErrorText text = errortexts::textOf(code);
    const QString words = tr(text.source);
    return text.endsWithContact ? words + QStringLiteral(VELMORA_SUPPORT_CONTACT) : words;
}

QString VelmoraParentWidget::messageFor(VLM_WS_EXT_ERRCODE_T code, const QString &fallback)
{
    const QString text = handleWSError(code);
    return text == VelmoraParentWidget::tr("NULL") ? fallback : text;
}

bool VelmoraParentWidget::isFatalMessageUp() const
{
    if (m_isErrorMsg)
        qDebug("Velmoraparent m_isErrorMsg is true.");
    return m_isErrorMsg;
}

void VelmoraParentWidget::showWarning(const QString &text)
{
    if (!isFatalMessageUp())
        showMsgbox(MSG_WARNING, text);
}

void VelmoraParentWidget::handleWSError(int errType)
{
    if (errType != VLM_WS_ERR_ACCOUNT_INACTIVE)
        return;
    const QString text = handleWSError(VLM_WS_ERR_ACCOUNT_INACTIVE);
    if (isFatalMessageUp())
        return;
    m_isErrorMsg = true;
    const QPointer<VelmoraParentWidget> self(this);
    showMsgbox(MSG_WARNING, text);
    if (self && !m_isBoxDestroyed)
        emit signalFatalErr(errType);
}
