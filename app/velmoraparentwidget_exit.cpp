// The root widget: the ways out of the application: exit, idle check, network loss.
#include "app/velmoraparentwidget.h"

#include "app/playerport.h"
#include "netcommon/ipc.h"
#include "netcommon/playback.h"
#include "widgets/msgboxdlg.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace {
constexpr int idleRepeatMs = 3'000; // while nothing plays
}

QPointer<VelmoraParentWidget> VelmoraParentWidget::m_networkScreen;

void VelmoraParentWidget::exitVelmora()
{
    qDebug("VelmoraParentWidget,exitVelmora...");
    if (isEixt) {
        qDebug("VelmoraParentWidget,exitVelmora,isEixt is true,do nothing...");
        return;
    }
    isEixt = true;
    emit signalExit(false, false);
}

void VelmoraParentWidget::leaveAsWished()
{
    m_isExitWished = true;
    emit signalExit(false, true);
}

void VelmoraParentWidget::exitVelmora(bool isFromParent, bool isSystemError)
{
    qDebug("VelmoraParentWidget,exitVelmora,isFromParent=%d,isSystemError=%d...", isFromParent, isSystemError);
    const bool isWished = std::exchange(m_isExitWished, false) || !isSystemError;
    destroyedMsgbox();
    if (isFromParent) {
        answerParentExit();
        return;
    }
    const QPointer<VelmoraParentWidget> self(this);
    if (!isSystemError) {
        qDebug("VelmoraParentWidget,question exitVelmora...");
        QString question;
        if (m_isLastWindow)
            question = tr("You have reached the last window.");
        m_isLastWindow = false;
        question += tr("Are you sure you want to exit Velmora? ");
        setMsgBoxInfoType(LABELS_YES_NO);
        const bool isYes = showMsgbox(MSG_QUESTION, question) != 0;
        if (!self)
            return;
        if (!isYes || m_isBoxDestroyed) {
            if (!m_isExitGranted)
                isEixt = false;
            return;
        }
    }
    qDebug("VelmoraParentWidget,requestExit,m_isNetworkError=%d.", m_isNetworkError);
    qApp->setProperty(netcommon::exitWishProperty, isWished);
    m_isExitGranted = netcommon::Ipc::requestExit(m_isNetworkError);
    if (!self)
        return;
    if (!m_isExitGranted) {
        isEixt = false;
        qDebug("VelmoraParentWidget,exitVelmora,Can not exit Velmora,send exit Velmora signal failed.");
        // Not translated (deliberate).
        showMsgbox(MSG_ERROR, QStringLiteral("Can not exit Velmora,send exit Velmora signal failed!"));
        return;
    }
    qDebug("VelmoraParentWidget,exitVelmora,send exit Velmora signal ok!");
}

void VelmoraParentWidget::answerParentExit()
{
    if (isEixt && m_isExitGranted && isHidden())
        return; // a repeated order
    qDebug("VelmoraParentWidget,exitVelmora,signal is from parent...");
    // quit() closes visible windows only. A box closed by it would count as answered with No, and a hidden screen, with
    // the player's playback thread, would outlive the application.
    for (VelmoraParentWidget *screen : screens()) {
        screen->destroyedMsgbox();
        screen->isEixt = true; // so that its box is not shown again during the exit
        screen->m_isExitGranted = true;
    }
    for (VelmoraParentWidget *screen : screens())
        screen->close();
    qDebug("VelmoraParentWidget,exitVelmora,signal responseParent 2.");
    emit signalResponseParent(2);
    QCoreApplication::quit();
}

void VelmoraParentWidget::stopCurrentSong()
{
    PlayerPort *player = PlayerPort::existing();
    if (!player)
        return;
    if (player->screen() == this)
        emit signalTimeoutStop();
    else
        player->stopCurrentSong();
}

void VelmoraParentWidget::playCurrentSong()
{
    PlayerPort *player = PlayerPort::existing();
    if (!player)
        return;
    if (player->screen() == this)
        emit signalTimeoutPlay();
    else
        player->playCurrentSong();
}

void VelmoraParentWidget::NohandleTimeOut()
{
    qDebug("VelmoraParentWidget,NohandleTimeOut...");
    auto *playback = netcommon::Playback::getInstance();
    const int state = playback ? playback->getPbcState() : int(PLAYBACK_STATE_STOPPED);
    m_idleTimer->stop();
    if (isCovered())
        return; // the screen on top asks; this timer is restarted when this screen is shown again
    // A paused track counts as playing, because the water line pauses too, not only the listener.
    if (m_isAnimation || (state != PLAYBACK_STATE_PLAYING && state != PLAYBACK_STATE_PAUSED)) {
        m_idleTimer->start(idleRepeatMs);
        return;
    }
    stopCurrentSong();
    setMsgBoxInfoType(LABELS_YES_NO);
    const QPointer<VelmoraParentWidget> self(this);
    // The blanks around the words are deliberate.
    const bool isYes = showMsgbox(MSG_QUESTION, tr("    Are you still there ? ")) != 0;
    if (!self)
        return;
    // Another box replaced the question: the music goes on, unless the application is about to end.
    const bool isReplaced = m_isBoxDestroyed;
    if (isReplaced && (isEixt || m_isExitGranted || m_isErrorMsg))
        return;
    if (isYes || isReplaced) {
        runTimer();
        playCurrentSong();
    } else {
        leaveAsWished();
    }
}

// True when another screen is shown in place of this one, as a station dialog is in place of the player.
bool VelmoraParentWidget::isCovered() const
{
    const QList<VelmoraParentWidget *> all = screens();
    return !isVisible() &&
           std::any_of(all.begin(), all.end(), [](const VelmoraParentWidget *screen) { return screen->isVisible(); });
}

// Every living screen learns of the loss, but only one box tells the listener: the visible screen's, or that of the
// first notified screen while none is visible.
bool VelmoraParentWidget::isNetworkBoxMine() const
{
    if (m_networkScreen)
        return m_networkScreen == this;
    if (isVisible())
        return true;
    const QList<VelmoraParentWidget *> all = screens();
    return std::none_of(all.begin(), all.end(), [](const VelmoraParentWidget *screen) { return screen->isVisible(); });
}

void VelmoraParentWidget::handleNetworkEvent(NETWORk_EVENT_T event)
{
    qDebug("VelmoraParentWidget,handleNetworkEvent=%d.", event);
    if (event == NETWORK_EVENT_CONNECTED) {
        m_isNetworkError = false;
        controlAnimation(true);
        if (m_networkScreen && !m_networkScreen->isMsgboxShown())
            m_networkScreen.clear();
        return;
    }
    if (event != NETWORK_EVENT_DISCONNECTED)
        return;
    stopCurrentSong();
    destroyedMsgbox();
    m_isErrorMsg = true;
    if (!isNetworkBoxMine()) {
        qDebug("VelmoraParentWidget,handleNetworkEvent,another screen shows it.");
        m_isNetworkError = true;
        return;
    }
    m_networkScreen = this;
    setMsgBoxInfoType(LABELS_HOME);
    const QPointer<VelmoraParentWidget> self(this);
    showLastMsgbox(MSG_WARNING, tr("Unable to connect to network."));
    if (!self)
        return;
    m_isNetworkError = true;
    if (!m_isBoxDestroyed)
        emit signalExit(false, true);
}

void VelmoraParentWidget::gotoHome()
{
    qDebug("VelmoraParentWidget,gotoHome...");
    setMsgBoxInfoType(LABELS_HOME);
    const QPointer<VelmoraParentWidget> self(this);
    showLastMsgbox(MSG_WARNING, tr("There may be network congestion."));
    if (self && !m_isBoxDestroyed)
        emit signalExit(false, true);
}
