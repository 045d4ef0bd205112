#include "menusocket.h"

#include <QFile>

#include <cerrno>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace netcommon::menu {

namespace {

QString lastError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

bool fill(sockaddr_un &address, const QByteArray &path, QString *reason)
{
    address = {};
    address.sun_family = AF_UNIX;
    if (path.isEmpty() || path.size() >= int(sizeof address.sun_path)) {
        *reason = QStringLiteral("a socket's path has 1 to %1 characters: %2")
                      .arg(sizeof address.sun_path - 1)
                      .arg(QFile::decodeName(path));
        return false;
    }
    std::memcpy(address.sun_path, path.constData(), size_t(path.size()));
    return true;
}

int newSocket()
{
    const int descriptor = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor >= 0) {
        const int bytes = 2 * (maxTextBytes + int(sizeof(_NETWORK_MSG_T)));
        ::setsockopt(descriptor, SOL_SOCKET, SO_SNDBUF, &bytes, sizeof bytes);
    }
    return descriptor;
}

bool isOwnPeer(int descriptor)
{
    ucred peer{};
    socklen_t size = sizeof peer;
    return ::getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == ::geteuid();
}

int failed(int descriptor, QString *reason, const QString &text)
{
    *reason = text;
    if (descriptor >= 0)
        ::close(descriptor);
    return -1;
}

} // namespace

int connectTo(const QByteArray &path, QString *reason)
{
    sockaddr_un address;
    if (!fill(address, path, reason))
        return -1;
    const int descriptor = newSocket();
    if (descriptor < 0 || ::connect(descriptor, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0)
        return failed(descriptor, reason, lastError());
    if (!isOwnPeer(descriptor))
        return failed(descriptor, reason, QStringLiteral("it belongs to another user"));
    return descriptor;
}

int listenAt(const QByteArray &path, QString *reason)
{
    sockaddr_un address;
    if (!fill(address, path, reason))
        return -1;
    QString nobody;
    const int other = connectTo(path, &nobody);
    if (other >= 0)
        return failed(other, reason, QStringLiteral("another one runs there"));
    struct stat entry {};
    if (::lstat(path.constData(), &entry) == 0) {
        // The socket of a menu system that was killed is removed; anything else stays.
        if (!S_ISSOCK(entry.st_mode) || entry.st_uid != ::geteuid())
            return failed(-1, reason, QStringLiteral("something else is there"));
        ::unlink(path.constData());
    }
    const int descriptor = newSocket();
    const mode_t before = ::umask(0177);
    const bool bound =
        descriptor >= 0 && ::bind(descriptor, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0;
    const QString problem = lastError();
    ::umask(before);
    if (!bound || ::listen(descriptor, 16) != 0)
        return failed(descriptor, reason, bound ? lastError() : problem);
    return descriptor;
}

int acceptPeer(int listener)
{
    const int descriptor = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (descriptor >= 0 && !isOwnPeer(descriptor)) {
        ::close(descriptor);
        return -1;
    }
    return descriptor;
}

bool send(int descriptor, const _NETWORK_MSG_T &message, const QByteArray &text)
{
    if (descriptor < 0 || text.size() > maxTextBytes)
        return false;
    iovec parts[2] = {{const_cast<_NETWORK_MSG_T *>(&message), sizeof message},
                      {const_cast<char *>(text.constData()), size_t(text.size())}};
    msghdr header{};
    header.msg_iov = parts;
    header.msg_iovlen = text.isEmpty() ? 1 : 2;
    ssize_t sent = -1;
    do
        sent = ::sendmsg(descriptor, &header, MSG_NOSIGNAL | MSG_DONTWAIT);
    while (sent < 0 && errno == EINTR);
    return sent == ssize_t(sizeof message) + text.size();
}

Received receive(int descriptor, Packet &packet)
{
    QByteArray bytes(int(sizeof packet.message) + maxTextBytes, Qt::Uninitialized);
    ssize_t size = -1;
    // A peer that closes with something unread is reported once; what it has sent before is still there.
    do
        size = ::recv(descriptor, bytes.data(), size_t(bytes.size()), MSG_DONTWAIT);
    while (size < 0 && (errno == EINTR || errno == ECONNRESET));
    if (size < 0 && errno == EAGAIN)
        return Received::Nothing;
    if (size < ssize_t(sizeof packet.message))
        return Received::Closed;
    std::memcpy(&packet.message, bytes.constData(), sizeof packet.message);
    packet.text = bytes.mid(sizeof packet.message, int(size) - int(sizeof packet.message));
    return Received::Packet;
}

} // namespace netcommon::menu
