#pragma once

#include "transport.h"

#include <QByteArray>
#include <QJsonObject>

#include <atomic>
#include <mutex>

namespace remote {

// What the service has answered.
struct ServiceAnswer {
    enum class Kind {
        Answered, // `code` and `data` are the service's
        Absent,   // no service there, or none that knows this function
        Failed    // no connection, a cut, a time limit, a page of a gateway
    };
    Kind kind = Kind::Failed;
    int code = 0;
    QJsonObject data;
};

// Reads the text of an answer.
ServiceAnswer readAnswer(long httpStatus, const QByteArray &body);

// Calls functions of the service, one at a time, over a kept connection, with the certificates and limits of the
// client library. One thread, except stop().
class ServiceCalls {
public:
    // An answer may take as long as `patience`.
    ServiceCalls(velmora::ws::Config config, std::chrono::seconds patience);

    ServiceAnswer call(const char *function, const velmora::ws::SecretText &token, velmora::ws::SecretText body);
    // Ends the call under way and lets no other begin.
    void stop();

private:
    std::atomic<bool> m_isStopped = false;
    velmora::ws::Transport m_transport;
};

// The token of the radio's session with the service; it never leaves this process. Any thread.
class SessionToken {
public:
    velmora::ws::SecretText get() const;
    void set(velmora::ws::SecretText token);
    // The service has refused this one: forgotten, unless there is another one already.
    void refuse(const velmora::ws::SecretText &token);

private:
    mutable std::mutex m_mutex;
    velmora::ws::SecretText m_token;
};

} // namespace remote
