#include "service/velmoranextlimit.h"

#include <QDebug>

VelmoraNextLimit *VelmoraNextLimit::m_instance = nullptr;

namespace {

std::function<QTime()> &clockOfTests()
{
    static std::function<QTime()> clock;
    return clock;
}

QTime currentTime()
{
    return clockOfTests() ? clockOfTests()() : QTime::currentTime();
}

} // namespace

VelmoraNextLimit *VelmoraNextLimit::getInstance()
{
    if (!m_instance)
        m_instance = new VelmoraNextLimit;
    return m_instance;
}

VelmoraNextLimit *VelmoraNextLimit::existing()
{
    return m_instance;
}

VelmoraNextLimit::VelmoraNextLimit()
{
    qDebug("new VelmoraNextLimit\n");
}

VelmoraNextLimit::~VelmoraNextLimit()
{
    qDebug("del VelmoraNextLimit..");
    m_instance = nullptr;
}

void VelmoraNextLimit::setClock(std::function<QTime()> clock)
{
    clockOfTests() = std::move(clock);
}

bool VelmoraNextLimit::isAllowedNext(const QString &stationToken)
{
    qDebug("VelmoraNextLimit,isAllowedNext,stationToken=\"%s\"", qUtf8Printable(stationToken));
    const QTime now = currentTime();
    const skiprules::Answer answer = skiprules::ask(m_queue, stationToken, now);
    if (answer.count < skiprules::maxSkips) {
        qDebug("VelmoraNextLimit,isAllowedNext,count < 6.count=%d", answer.count);
        return true;
    }
    const QTime first = m_queue.at(answer.first).timeStamp;
    qDebug("VelmoraNextLimit,isAllowedNext...curtimeStamp = %d:%d:%d", now.hour(), now.minute(), now.second());
    qDebug("VelmoraNextLimit,isAllowedNext...fsttimeStamp = %d:%d:%d", first.hour(), first.minute(), first.second());
    qDebug("VelmoraNextLimit,isAllowedNext,count>=6.count=%d", answer.count);
    if (answer.isFirstExpired)
        m_queue.removeAt(answer.first);
    return answer.isAllowed;
}

void VelmoraNextLimit::addIntoQueue(const QString &stationToken)
{
    const QTime now = currentTime();
    qDebug("VelmoraNextLimit,addIntoQueue...");
    qDebug("VelmoraNextLimit,addIntoQueue...timeStamp = %d:%d:%d", now.hour(), now.minute(), now.second());
    m_queue.append({stationToken, now});
}

void VelmoraNextLimit::checkOverdue()
{
    const QTime now = currentTime();
    // After a removal the walk steps over the record that moved up (deliberate).
    for (int i = 0; i < m_queue.size(); ++i) {
        if (!skiprules::isOverdue(m_queue.at(i), now))
            continue;
        qDebug("VelmoraNextLimit,checkOverdue,remove item.timeCnt=%d,recordTimeCnt=%d", skiprules::secondsOfDay(now),
               skiprules::secondsOfDay(m_queue.at(i).timeStamp));
        m_queue.removeAt(i);
    }
}
