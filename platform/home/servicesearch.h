#pragma once

#include "foundservice.h"

#include <QDBusConnection>
#include <QHash>
#include <QObject>
#include <QSet>

class QDBusMessage;

namespace home {

// Looks for the services of this network (DNS-SD, `_velmora._tcp`) through the system's Avahi. Without Avahi nothing is
// found. Every call is asynchronous. GUI thread.
class ServiceSearch : public QObject {
    Q_OBJECT
public:
    ServiceSearch(const QDBusConnection &bus, QObject *parent);
    ~ServiceSearch() override;

    void start(); // finds all of them anew
    void stop();
    // By name. At most twenty: more come from somebody who wants to hide the others.
    QList<FoundService> found() const;

signals:
    void changed();

private slots: // Avahi's signals
    void add(int card, int protocol, const QString &name, const QString &type, const QString &domain, uint flags);
    void remove(int card, int protocol, const QString &name, const QString &type, const QString &domain, uint flags);

private:
    void listen(bool isWanted);
    void free(const QString &browser);

    struct Entry {
        QSet<QPair<int, int>> places; // network card and protocol; gone when the last one is
        std::optional<FoundService> service;
    };
    QDBusConnection m_bus;
    QHash<QString, Entry> m_entries; // by the announced name
    QString m_browser;               // Avahi's object; empty: none
    int m_round = 0;                 // answers of earlier ones are dropped
    bool m_isWanted = false;
};

} // namespace home
