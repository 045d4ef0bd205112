// The radio's end of the channel through which telephones press its keys. The menu system starts it and names its
// socket in the environment; it ends with the menu system.

#include "menumessages.h"
#include "orderschannel.h"

#include <cstdio>
#include <cstdlib>
#include <sodium.h>

int main()
{
    const QByteArray socket = qgetenv(netcommon::menu::socketVariable);
    if (socket.isEmpty()) {
        std::fprintf(stderr, "velmora-remote: is started by velmora-menu\n");
        return 2;
    }
    const velmora::ws::Config config = velmora::ws::loadConfig();
    if (config.server.empty() || config.stateDir.empty())
        return 0; // no service, no telephones
    if (sodium_init() < 0)
        return 1;
    remote::OrdersChannel(config, socket).run();
}
