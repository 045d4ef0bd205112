#pragma once

#include "server/accounts/accounts.h"
#include "server/accounts/lrutable.h"
#include "server/accounts/secrets.h"

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace velmora::server {

// What the service knows of one browser.
struct WebSession {
    AccountId account = 0;  // signed in as, 0 nobody
    std::string code;       // the radio's activation code that was entered
    bool isAllowed = false; // its radio has been allowed: a second tap on "Allow" gets the same answer
    AccountId byCode = 0;   // the account whose own code was entered: it may link a radio, and nothing else
    int64_t lastUsed = 0;   // Unix seconds
    int64_t since = 0;      // of the sign-in, Unix seconds
    std::string browser;    // what it says of itself at the sign-in, and where it was
    std::string address;
};

// A browser that is signed in, as its person sees it.
struct OpenSession {
    std::string id; // names the session to its person; does not open it
    WebSession session;
    bool isThisBrowser = false;
};

// "Firefox, Android" of a browser's User-Agent; empty when it names neither a known browser nor a known system.
std::string browserName(std::string_view userAgent);

// Browser sessions under the hash of their cookie: in memory, where a restart signs browsers out and nothing else; or
// in a store that several processes share. A browser of which nothing is known has a cookie and no session. Browsers
// that are signed in have a table of their own, which others cannot fill. Any thread.
class WebSessions {
public:
    static constexpr int64_t idleSeconds = 30 * 60;
    static constexpr size_t mostSignedIn = 10'000; // beyond it the one that was not used for the longest time goes
    static constexpr size_t mostOfAccount = 20;    // the same
    static constexpr size_t mostOthers = 10'000;   // the same

    // `formKey`: with the same key forms of before a restart are still good.
    // `store`: where they are kept, if it is shared.
    explicit WebSessions(Clock clock, std::string formKey = randomToken(), Store *store = nullptr);

    // Called whenever sessions have ended, without a lock. Set before the first session; any thread.
    void whenEnded(std::function<void()> ended) { m_ended = std::move(ended); }

    static std::string newCookie();
    static bool isCookie(const std::string &text);
    // Must come with everything that is posted from a page of this cookie's browser.
    std::string formToken(const std::string &cookie) const;

    // What is known of the cookie's browser; empty when nothing is (any more).
    WebSession find(const std::string &cookie);
    // Sets what is known of it.
    void keep(const std::string &cookie, const WebSession &session);
    // Gives the session a new cookie. Called at sign-in: a cookie that was known before becomes invalid.
    std::string renew(const std::string &cookie, const WebSession &session);
    void end(const std::string &cookie);
    // The browsers that are signed in to the account, the one used last in front.
    std::vector<OpenSession> ofAccount(AccountId account, const std::string &cookie);
    // False when the account has no such session.
    bool endOne(AccountId account, const std::string &id);
    // Ends all sessions of an account but that of this cookie.
    void endOfAccount(AccountId account, const std::string &keptCookie);

private:
    using Table = LruTable<std::string, WebSession>; // by the cookie's hash
    void put(const std::string &cookie, WebSession session);
    // Makes room for one more session of this account.
    void limitAccount(AccountId account);

    WebSession sharedFind(const std::string &cookie);
    void sharedPut(const std::string &cookie, const WebSession &session);
    std::vector<OpenSession> sharedOfAccount(AccountId account, const std::string &own);

    const Clock m_clock;
    std::function<void()> m_ended = [] {};
    const std::string m_formKey;
    Store *const m_store; // shared; null: in memory
    std::mutex m_mutex;   // guards the tables
    Table m_signedIn{mostSignedIn};
    Table m_others{mostOthers};
};

} // namespace velmora::server
