#pragma once

#include "server/accounts/accounts.h"
#include "server/accounts/secrets.h"

#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace velmora::server {

// The state of one browser.
struct WebSession {
    std::string csrf;      // must come with everything that is posted
    AccountId account = 0; // signed in as, 0 nobody
    std::string code;      // activation code that was entered
    int64_t lastUsed = 0;  // Unix seconds
};

// Browser sessions, kept in memory under the hash of their cookie: a restart signs browsers out, nothing else. Any
// thread.
class WebSessions {
public:
    static constexpr int64_t idleSeconds = 30 * 60;
    static constexpr size_t most = 10'000; // beyond it the oldest goes

    explicit WebSessions(Clock clock);

    // The session of this cookie; nothing when there is none (any more).
    std::optional<WebSession> find(const std::string &cookie);
    // A new session; its cookie goes into `cookie`.
    WebSession make(std::string *cookie);
    // Changes what belongs to the cookie.
    void keep(const std::string &cookie, const WebSession &session);
    // Gives the session a new cookie. Called at sign-in: a cookie that was known before becomes invalid.
    std::string renew(const std::string &cookie, const WebSession &session);
    void end(const std::string &cookie);
    // Ends all sessions of an account but that of this cookie.
    void endOfAccount(AccountId account, const std::string &keptCookie);

private:
    void forgetOld();

    std::mutex m_mutex;
    Clock m_clock;
    std::map<std::string, WebSession> m_sessions; // by hash
};

} // namespace velmora::server
