#pragma once

#include "menumessages.h"

#include <QByteArray>
#include <QString>

// The local socket between radio, menu system and the menu's commands. Every function may be used on any thread; a
// descriptor belongs to the caller.
namespace netcommon::menu {

struct Packet {
    _NETWORK_MSG_T message{};
    QByteArray text; // at most maxTextBytes
};

inline constexpr int maxTextBytes = 128 * 1024;

enum class Received { Packet, Nothing, Closed };

// Connects to the owner's own menu system; -1 and a reason when there is none, or when it belongs to somebody else.
int connectTo(const QByteArray &path, QString *reason);
// A listening socket that only the owner can reach; it replaces one that nobody listens to any more. -1 and a reason
// when the path is too long or cannot be created, or when another process listens there.
int listenAt(const QByteArray &path, QString *reason);
// The next peer, -1 when there is none. A peer that runs as another user is dropped.
int acceptPeer(int listener);

// False when the message was not sent; errno is EPIPE when the peer is gone, EAGAIN when the socket's buffer is full.
// Never blocks and raises no signal.
bool send(int descriptor, const _NETWORK_MSG_T &message, const QByteArray &text = {});
// Never blocks. A packet without a whole record counts as the end of the connection.
Received receive(int descriptor, Packet &packet);

} // namespace netcommon::menu
