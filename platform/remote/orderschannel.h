#pragma once

#include "reporter.h"

#include <filesystem>

namespace remote {

// Asks the service for orders of telephones, waits until there are some, and passes them on to the menu system. The
// radio opens the connection, so it works through any router and nothing listens in the radio. The session is opened
// with the radio's device key, which the client library keeps in its state folder.
class OrdersChannel {
public:
    OrdersChannel(const velmora::ws::Config &config, const QByteArray &menuSocket);
    ~OrdersChannel();

    // Until the process ends.
    [[noreturn]] void run();

private:
    using Pause = std::chrono::milliseconds;
    // Each returns how long to wait before the next call.
    Pause signIn();
    Pause ask();
    Pause failed();
    void passOn(const QJsonObject &order);

    const velmora::ws::Config m_config;
    const QByteArray m_menuSocket;
    const QByteArray m_channel; // random: tells this run from others
    ServiceCalls m_calls;
    SessionToken m_token;
    Reporter m_reporter;
    QString m_epoch; // of the service's numbers; empty: not known
    qint64 m_last = 0;
    Pause m_pause{0}; // after the next failure
    int m_menu = -1;  // socket; -1: not connected
};

} // namespace remote
