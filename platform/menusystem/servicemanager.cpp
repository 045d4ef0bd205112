#include "servicemanager.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace menusystem {

namespace {

// The protocol of sd_notify(3), which is one datagram: libsystemd would bring its own libraries into this small
// program.
void tell(const char *state)
{
    const char *place = std::getenv("NOTIFY_SOCKET");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::size_t length = place ? std::strlen(place) : 0;
    if (length < 2 || length >= sizeof address.sun_path || (place[0] != '/' && place[0] != '@'))
        return;
    std::memcpy(address.sun_path, place, length);
    if (place[0] == '@') // an abstract name
        address.sun_path[0] = '\0';
    const int socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (socket < 0)
        return;
    ::sendto(socket, state, std::strlen(state), MSG_NOSIGNAL, reinterpret_cast<const sockaddr *>(&address),
             static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + length));
    ::close(socket);
}

} // namespace

ServiceManager::ServiceManager()
{
    tell("READY=1");
    QObject::connect(&m_timer, &QTimer::timeout, [] { tell("WATCHDOG=1"); });
    m_timer.start(2000);
}

ServiceManager::~ServiceManager()
{
    tell("STOPPING=1");
}

} // namespace menusystem
