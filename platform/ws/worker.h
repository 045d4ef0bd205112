#pragma once

#include "callerlimits.h"
#include "commands.h"
#include "config.h"
#include "pace.h"
#include "reply.h"
#include "request.h"
#include "retry.h"
#include "transport.h"

#include <atomic>
#include <deque>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace velmora::ws {

// The thread of the library. It sends the requests one at a time, in the order in which they were made, and runs the
// callbacks. A request whose session is known to be closed waits for a login, even one that was made after it. A
// request that failed for a passing reason is sent again after a pause, in which others may be sent.
class Worker : public std::enable_shared_from_this<Worker> {
public:
    explicit Worker(const Config &config); // throws
    void start();

    // Any thread. False: ended already. `outHandle` (may be null) is written before the worker can see the request.
    bool add(std::unique_ptr<Request> request, HANDLE_T *outHandle);

    // Aborts the transfer and ends the thread; no callback begins after the return. Called from a callback it returns
    // at once, and the thread ends when the callback has returned. May be called once.
    void end();

private:
    struct Job {
        uint64_t number; // counts the requests
        HANDLE_T handle;
        Request *request; // owned by Handles
        const Command *command;
        std::string key;                           // of a change: the same whenever it is sent
        std::string station;                       // of getPlaylist
        std::optional<Clock::time_point> loginDue; // when its partner login, or the one before it, may be sent
        bool isBeyondLimit = false;                // a playlist that is not asked for any more
        bool hasRenewed = false;                   // the partner session was renewed for this job
        bool isRenewing = false;                   // its own partner login is under way
        Token tokenSent = Token::None;
        Retry retry;
        std::optional<Clock::time_point> retryDue; // while it pauses: when it may be sent again
    };
    struct Session {
        SecretText token;
        Clock::time_point expires;
        bool isOpen(Clock::time_point now) const { return !token.empty() && now < expires; }
        void close() { forget(token); }
    };

    void loop();
    void accept();
    bool sendNext();                                                           // false: none can go before m_nextDue
    std::optional<Clock::time_point> dueTime(Job &job, Clock::time_point now); // empty: held back by a waiting login
    void send(Job job, Clock::time_point now);
    void finish(const Answer &answer);
    void finishRenewal(Job job, const Answer &answer);
    bool retries(Job &job, const Answer &answer, const Reply &reply); // true: `job` was taken and waits
    void putBack(Job job);
    void complete(const Job &job, VLM_WS_EXT_ERRCODE_T code, void *record);
    void dropAll();

    Token tokenFor(const Job &job) const;
    Session *session(Token token);
    bool mustRenew(const Job &job, Clock::time_point now) const;
    bool isHeld(const Job &job, Clock::time_point now) const;
    bool isBehindRetry(const Job &job) const;
    const SecretText &deviceKey();

    const Config m_config;
    Transport m_transport;
    std::thread m_thread;

    std::mutex m_mutex; // guards m_incoming
    std::deque<Request *> m_incoming;
    std::atomic<bool> m_isEnding = false;

    // The worker thread's own:
    uint64_t m_requests = 0;
    std::list<Job> m_waiting;   // in the order of their numbers
    bool m_hasAnswered = false; // the service has, at least once
    std::optional<Clock::time_point> m_nextDue;
    std::optional<Job> m_current;
    Session m_partner;
    Session m_user;
    LoginPace m_loginPace;
    PlaylistPace m_playlistPace;
    RenewalLimit m_renewalLimit;
    PlaylistLimit m_playlistLimit;
    SecretText m_deviceKey;
};

} // namespace velmora::ws
