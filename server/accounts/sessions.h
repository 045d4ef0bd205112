#pragma once

#include "server/accounts/accounts.h"

namespace velmora::server {

struct TokenLifetimes {
    int64_t partnerSeconds = 24 * 3600;
    int64_t userSeconds = 4 * 3600;
};

enum class TokenKind { None, Partner, User };

// What a token stands for. A partner session belongs to a device key, a user session also to an account and, once it is
// known, to a device identity.
struct Session {
    TokenKind kind = TokenKind::None;
    std::string tokenHash;
    std::string keyHash;
    AccountId accountId = 0; // user sessions
    std::string deviceId;    // user sessions of an associated device
    bool isRevoked = false;  // the listener has unlinked the device: nothing is allowed, and the radio is told so
    std::string deviceModel; // partner sessions; what the device says of itself
};

// Sessions, stored as hashes of their tokens. Any thread.
class Sessions {
public:
    Sessions(Store &store, TokenLifetimes lifetimes, Clock clock);

    const TokenLifetimes &lifetimes() const { return m_lifetimes; }

    // Both return the token, of which only the hash is kept.
    std::string openPartner(const std::string &deviceKey, const std::string &deviceModel = {});
    // The key's hash is that of the partner session in which the login happened (empty for a browser).
    std::string openUser(AccountId account, const std::string &keyHash, const std::string &deviceId = {});
    // A user session whose token was handed out before, when the account was not made yet.
    void adoptUser(const std::string &tokenHash, AccountId account, const std::string &keyHash,
                   const std::string &deviceId);
    // Nothing when the token is unknown or has expired.
    std::optional<Session> find(const std::string &token);
    void close(const std::string &token);
    // Whether it has not been ended since it was found.
    bool isOpen(const Session &session);
    // From now on the session belongs to that device and ends with its association.
    void bindToDevice(const Session &session, const std::string &deviceId);

private:
    void add(const std::string &tokenHash, const char *kind, std::optional<AccountId> account,
             const std::string &keyHash, const std::optional<std::string> &deviceId, int64_t seconds,
             const std::string &deviceModel);

    Store &m_store;
    TokenLifetimes m_lifetimes;
    Clock m_clock;
};

} // namespace velmora::server
