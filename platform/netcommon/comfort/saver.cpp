#include "saver.h"

#include "netcommon/ipcthread.h"
#include "nowplaying.h"
#include "platform/netcommon/playback/playbackstatistics.h"
#include "platform/shared/windowstack.h"
#include "saverpicture.h"

#include <QDebug>

namespace netcommon {

using Look = SaverDecider::Look;
using platform::WindowStack;

Saver::Saver(std::function<qint64()> clock, QObject *parent)
    : QObject(parent)
    , m_clock(std::move(clock))
    , m_decider(m_clock())
{
    m_tick.setSingleShot(true);
    connect(&m_tick, &QTimer::timeout, this, &Saver::step);
    connect(&WindowStack::instance(), &WindowStack::changed, this, &Saver::step);
    m_tick.start(0);
}

void Saver::setMinutes(int minutes)
{
    m_minutes = minutes;
    step();
}

SaverDecider::Facts Saver::facts() const
{
    return {m_clock(), m_minutes, isPlayingScreen(WindowStack::instance().top()),
            statistics::playbackState() == PLAYBACK_STATE_PLAYING};
}

void Saver::step()
{
    const SaverDecider::Facts now = facts();
    const Look look = m_decider.step(now);
    if (look == Look::None)
        lift();
    else
        show(look);
    m_tick.start(int(m_decider.nextLook(now)));
}

void Saver::show(Look look)
{
    if (!m_picture) {
        qDebug("Saver,show");
        m_shownSince = m_clock();
        m_picture = new SaverPicture(WindowStack::instance().top());
        emit IpcThread::getInstance()->signalScreenSaver(true);
    }
    if (look == Look::Black)
        m_picture->showBlack();
    else
        m_picture->showTrack(nowPlaying(m_picture->parentWidget()), m_sleepText ? m_sleepText() : QString(),
                             m_clock() - m_shownSince);
}

void Saver::lift()
{
    if (!m_picture)
        return;
    qDebug("Saver,lift");
    delete m_picture;
    emit IpcThread::getInstance()->signalScreenSaver(false);
}

bool Saver::keyPressed()
{
    const bool wasShown = m_decider.keyPressed(m_clock());
    step();
    return wasShown;
}

void Saver::behind(const std::function<void()> &action)
{
    const bool isCovered = m_picture != nullptr;
    if (isCovered)
        emit IpcThread::getInstance()->signalScreenSaver(false);
    action();
    if (isCovered && m_picture)
        emit IpcThread::getInstance()->signalScreenSaver(true);
}

void Saver::fallAsleep()
{
    m_decider.fallAsleep();
    step();
}

} // namespace netcommon
