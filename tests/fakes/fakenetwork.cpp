#include "fakes/fakenetwork.h"

#include "netcommon/networknotify.h"

namespace netcommon {

struct NetworkNotify::Private {};

NetworkNotify::NetworkNotify()
    : d(nullptr)
{
    Q_UNUSED(d);
}

NetworkNotify::~NetworkNotify() = default;

NetworkNotify *NetworkNotify::getInstance()
{
    static NetworkNotify *instance = new NetworkNotify;
    return instance;
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
