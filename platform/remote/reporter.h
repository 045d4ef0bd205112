#pragma once

#include "servicecalls.h"

#include <condition_variable>
#include <thread>

namespace remote {

// Whether a telephone has to be told: something else than the time has changed, or the time otherwise than by passing.
// `seconds` lie between the two.
bool isNews(const QJsonObject &before, const QJsonObject &now, double seconds);

// Tells the service what the radio shows, while a telephone looks: it asks the menu system again and again and reports
// what has changed. A thread of its own; it sleeps while nobody looks.
class Reporter {
public:
    Reporter(const velmora::ws::Config &config, SessionToken &token, QByteArray menuSocket);
    ~Reporter();

    // The service has said so; `isWanted`: it knows nothing yet. Any thread.
    void setWatched(bool isWatched, bool isWanted);
    bool isWatched() const;
    // A key was pressed: what it changes is looked for at once. Any thread.
    void lookSoon();

private:
    void run();
    bool sleep(); // false: the end
    void look();
    void pause();
    QByteArray askMenu();

    const QByteArray m_menuSocket;
    SessionToken &m_token;
    ServiceCalls m_calls;
    mutable std::mutex m_mutex; // guards the four below
    std::condition_variable m_wake;
    bool m_isEnding = false;
    bool m_isWatched = false;
    bool m_isWanted = false;
    std::chrono::steady_clock::time_point m_quickUntil;
    // The thread's own:
    int m_menu = -1; // socket; -1: not connected
    QJsonObject m_reported;
    std::chrono::steady_clock::time_point m_reportedAt;
    std::thread m_thread; // the last member
};

} // namespace remote
