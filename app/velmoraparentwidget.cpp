// The root widget: life, history and Back, focus flag, timers, animation.
#include "app/velmoraparentwidget.h"

#include "app/playerport.h"
#include "app/screenfactory.h"
#include "netcommon/ipcthread.h"
#include "netcommon/networknotify.h"
#include "netcommon/playback.h"
#include "service/velmorawebservice.h"
#include "viewcomponent/bufferdlg.h"
#include "widgets/msgboxdlg.h"

#include <QApplication>
#include <QKeyEvent>

namespace {
constexpr int idleLimitMs = 28'800'000; // 8 hours
}

QQueue<_VELMORA_UI_TYPE_E> VelmoraParentWidget::m_ui_type_queue;

VelmoraParentWidget::VelmoraParentWidget(QWidget *parent, Qt::WindowFlags flags)
    : QDialog(parent, flags | Qt::Dialog) // without the dialog flag a screen with a parent would not be a window
    , m_idleTimer(new QTimer(this))
{
    qDebug("new VelmoraParentWidget..");
    setAttribute(Qt::WA_DeleteOnClose);
    connect(this, &VelmoraParentWidget::signalExit, this, qOverload<bool, bool>(&VelmoraParentWidget::exitVelmora));
    connect(m_idleTimer, &QTimer::timeout, this, &VelmoraParentWidget::NohandleTimeOut);
    connect(this, &VelmoraParentWidget::signalBlueBtn, this, qOverload<>(&VelmoraParentWidget::exitVelmora));
    connect(this, &VelmoraParentWidget::signalReturnBtn, this, &VelmoraParentWidget::returnToLastWindow);
    connectPlatform();
}

void VelmoraParentWidget::connectPlatform()
{
    if (auto *ipc = netcommon::IpcThread::getInstance()) {
        connect(ipc, &netcommon::IpcThread::signalExit, this, qOverload<bool, bool>(&VelmoraParentWidget::exitVelmora));
        connect(ipc, &netcommon::IpcThread::signalScreenSaver, this, &VelmoraParentWidget::handleScreenSaver);
        connect(this, &VelmoraParentWidget::signalResponseParent, ipc, &netcommon::IpcThread::responseParent);
    }
    if (auto *playback = netcommon::Playback::getInstance())
        connect(playback, &netcommon::Playback::signalBufferState, this, &VelmoraParentWidget::handleBufferState);
    if (auto *notify = netcommon::NetworkNotify::getInstance())
        connect(notify, &netcommon::NetworkNotify::signalSendNetowrkEvent, this,
                &VelmoraParentWidget::handleNetworkEvent);
}

VelmoraParentWidget::~VelmoraParentWidget()
{
    qDebug("del VelmoraParentWidget..");
    qDebug("del VelmoraParentWidget..done");
}

bool VelmoraParentWidget::event(QEvent *event)
{
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
        event->accept();
        return true;
    }
    return QDialog::event(event);
}

// --- navigation history

void VelmoraParentWidget::recordHistroyUiType(_VELMORA_UI_TYPE_E e_ui_type)
{
    qDebug("VelmoraParentWidget,recordHistroyUiType,e_ui_type=%d", e_ui_type);
    m_ui_type_queue.enqueue(e_ui_type);
}

void VelmoraParentWidget::delUiType()
{
    if (m_ui_type_queue.isEmpty()) {
        qDebug("VelmoraParentWidget,delUiType,size = 0.");
        return;
    }
    m_ui_type_queue.removeLast();
}

void VelmoraParentWidget::clearAllRecordHistroyUiType()
{
    qDebug("VelmoraParentWidget,clearAllRecordHistroyUiType...");
    m_ui_type_queue.clear();
    qDebug("VelmoraParentWidget,clearAllRecordHistroyUiType..done.");
}

static void rebuildScreen(_VELMORA_UI_TYPE_E type)
{
    ScreenFactory *factory = ScreenFactory::instance();
    if (!factory)
        return;
    VelmoraParentWidget *screen = nullptr;
    switch (type) {
    case VELMORA_UI_TYPE_MAIN:
        if (PlayerPort *player = factory->player()) {
            player->screen()->show();
            player->restartIdleTimer();
        }
        return;
    case VELMORA_UI_TYPE_SIGNIN:
        screen = factory->signIn();
        break;
    case VELMORA_UI_TYPE_ACTIVATION:
        screen = factory->activation(QString(), QString());
        break;
    case VELMORA_UI_TYPE_SELECT_USER:
        screen = factory->selectUser(2);
        break;
    case VELMORA_UI_TYPE_NONE:
        break;
    }
    if (screen)
        screen->show();
}

void VelmoraParentWidget::returnToLastWindow()
{
    qDebug("VelmoraParentWidget,returnToLastWindow...");
    qDebug("VelmoraParentWidget,returnToLastWindow.size=%d..", int(m_ui_type_queue.size()));
    if (m_ui_type_queue.isEmpty()) {
        qDebug("VelmoraParentWidget,returnToLastWindow,exit Velmora.");
        if (isEixt) {
            qDebug("VelmoraParentWidget,returnToLastWindow,isEixt is true,do nothing...");
            return;
        }
        m_isLastWindow = true;
        emit signalExit(false, false);
        return;
    }
    for (const _VELMORA_UI_TYPE_E type : std::as_const(m_ui_type_queue))
        qDebug("VelmoraParentWidget,returnToLastWindow.window=%d..", type);
    if (isMsgboxShown())
        return;
    close(); // deletes this screen as soon as control is back in the event loop
    rebuildScreen(m_ui_type_queue.last());
    delUiType();
}

void VelmoraParentWidget::retire(QObject *login)
{
    const QObject *service = VelmoraWebService::getInstance();
    if (login) {
        disconnect(service, nullptr, login, nullptr);
        disconnect(login, nullptr, this, nullptr);
    }
    disconnect(service, nullptr, this, nullptr);
    stopTimer();
    controlAnimation(true);
    destroyedMsgbox();
    close();
}

QList<VelmoraParentWidget *> VelmoraParentWidget::screens()
{
    QList<VelmoraParentWidget *> found;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *screen = qobject_cast<VelmoraParentWidget *>(widget))
            found.append(screen);
    }
    return found;
}

// --- focus

void VelmoraParentWidget::loseFocus(bool fgMsgbox)
{
    Q_UNUSED(fgMsgbox)
    qDebug("VelmoraParentWidget,loseFocus...");
    m_isLoseFocus = true;
}

void VelmoraParentWidget::resetFocus(bool fgMsgbox)
{
    Q_UNUSED(fgMsgbox)
    qDebug("VelmoraParentWidget,resetFocus...");
    m_isLoseFocus = false;
    if (m_bufferDlg)
        m_bufferDlg->setFocus(Qt::OtherFocusReason); // no control may be clicked before the animation ends
}

bool VelmoraParentWidget::fgActionInvalid()
{
    if (m_isLoseFocus) {
        qDebug("VelmoraParentWidget,lose focus,return.");
        return false;
    }
    if (!m_isAnimation) {
        qDebug("VelmoraParentWidget,fgActionInvalid.return true..");
        return true;
    }
    qDebug("VelmoraParentWidget,show animation,return.");
    return false;
}

void VelmoraParentWidget::handleScreenSaver(bool fgEnter)
{
    qDebug("VelmoraParentWidget,handleScreenSaver..fgEnter=%d.", fgEnter);
    if (isMsgboxShown()) {
        qDebug("VelmoraParentWidget,handleScreenSaver.msgbox is show,do nothing.");
        return;
    }
    qDebug("VelmoraParentWidget,handleScreenSaver.not show message,handle focus.");
    if (fgEnter)
        loseFocus(false);
    else
        resetFocus(false);
}

// --- animation

void VelmoraParentWidget::controlAnimation(bool fgHide, const QString &text)
{
    qDebug("VelmoraParentWidget,controlAnimation,fgHide=%d.", fgHide);
    if (fgHide) {
        if (m_bufferDlg) {
            // The animation has the focus: it goes back to where it was, unless the screen has moved it in between.
            QWidget *focused = focusWidget();
            const bool isFocusOurs = !focused || focused == m_bufferDlg || m_bufferDlg->isAncestorOf(focused);
            m_bufferDlg->close();
            m_bufferDlg->deleteLater(); // it may be handling a key event now
            m_bufferDlg.clear();
            if (isFocusOurs && m_focusUnderAnimation)
                m_focusUnderAnimation->setFocus(Qt::OtherFocusReason);
        }
        m_focusUnderAnimation.clear();
        m_isAnimation = false;
        return;
    }
    if (isMsgboxShown()) {
        qDebug("VelmoraParentWidget,controlAnimation,messagebox show");
        return;
    }
    if (!m_bufferDlg) {
        m_focusUnderAnimation = focusWidget();
        m_bufferDlg = new viewcomponent::BufferDlg(text, this);
        m_bufferDlg->show();
    }
    m_isAnimation = true;
}

bool VelmoraParentWidget::isAnimationShown() const
{
    return m_isAnimation;
}

void VelmoraParentWidget::startAniTimer()
{
    qDebug("VelmoraParentWidget,startAniTimer...");
    if (!m_isNetworkError)
        return;
    qDebug("VelmoraParentWidget,startAniTimer,start timer...");
    controlAnimation(false, tr("Buffering..."));
}

void VelmoraParentWidget::handleBufferState(bool isLow)
{
    qDebug("VelmoraParentWidget,handleBufferState,isLow=%d", isLow);
}

// --- idle timer

void VelmoraParentWidget::runTimer()
{
    if (m_idleTimer->isActive())
        m_idleTimer->stop();
    m_idleTimer->start(idleLimitMs);
}

void VelmoraParentWidget::stopTimer()
{
    m_idleTimer->stop();
}

void VelmoraParentWidget::resetNohandleTimeOut()
{
    qDebug("VelmoraParentWidget,resetNohandleTimeOut...");
}
