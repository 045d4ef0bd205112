#include "fakes/fakenetwork.h"

#include "netcommon/networknotify.h"

namespace netcommon {

struct NetworkNotify::Private {};

NetworkNotify::NetworkNotify()
    : d(nullptr)
{
    Q_UNUSED(d);
}

static NetworkNotify *notifyInstance = nullptr;

NetworkNotify::~NetworkNotify()
{
    notifyInstance = nullptr;
}

NetworkNotify *NetworkNotify::getInstance()
{
    if (!notifyInstance)
        notifyInstance = new NetworkNotify;
    return notifyInstance;
}

} // namespace netcommon

void FakeNetwork::lost()
{
    emit netcommon::NetworkNotify::getInstance()->signalSendNetowrkEvent(NETWORK_EVENT_DISCONNECTED);
}

void FakeNetwork::back()
{
    emit netcommon::NetworkNotify::getInstance()->signalSendNetowrkEvent(NETWORK_EVENT_CONNECTED);
}
