#pragma once

#include "server/accounts/accounts.h"

namespace velmora::server {

// An account that somebody wants and that is made when the link of a mail is opened.
struct SignUp {
    std::string userName;
    std::string passwordHash;
    Profile profile;
    // The device that asked; empty for a browser. With the account its session begins to work, and it is associated
    // when it gave an identity.
    std::string sessionHash;
    std::string keyHash;
    std::string deviceId;
    std::string invitationHash{}; // of the invitation that allows it; empty: none
};

// The sign-ups whose links are still valid. Tokens are stored as hashes. Any thread.
class SignUps {
public:
    static constexpr int64_t linkSeconds = 3600;

    SignUps(Store &store, Clock clock);

    // The token for the link: single-use.
    std::string add(const SignUp &signUp);
    // Nothing when the token is unknown, used up or has expired.
    std::optional<SignUp> find(const std::string &token);
    // The same, and uses it up.
    std::optional<SignUp> take(const std::string &token);

private:
    std::optional<SignUp> read(const std::string &token, const std::string &query);

    Store &m_store;
    Clock m_clock;
};

} // namespace velmora::server
