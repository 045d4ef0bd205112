#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QList>
#include <QPair>
#include <QString>

#include <optional>

namespace home {

// A service of this network as it announces itself. Anybody in the network can announce one: nothing of this is trusted
// before a person has said yes.
struct FoundService {
    QString name;    // for people; empty: the address was typed
    QString host;    // as "kitchen.local"; empty: none that can be used
    QString address; // IPv4, or IPv6 other than link-local, without brackets
    int port = 0;
    bool isEncrypted = false;

    // `isNamed`: by its host, which stays the same when the address changes.
    QString url(bool isNamed) const;
    bool operator==(const FoundService &) const = default;
};

using Networks = QList<QPair<QHostAddress, int>>; // as QHostAddress::isInSubnet() takes them
// Those that this machine is in.
Networks ownNetworks();

// Nothing when the announcement is not usable: an address that is neither private nor of one of `networks`, a
// link-local IPv6 address, which needs the name of a network card beside it, no port, or no word about encryption.
// `texts` are the strings of its TXT record.
std::optional<FoundService> foundService(const QString &name, const QString &host, const QString &address, int port,
                                         const QList<QByteArray> &texts, const Networks &networks);

} // namespace home
