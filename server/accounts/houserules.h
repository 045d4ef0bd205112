#pragma once

#include "server/accounts/accounts.h"

#include <vector>

namespace velmora::server {

// Who may make an account.
enum class SignUpRule { House, Invited, Nobody };

// A link that lets one person make an account.
struct Invitation {
    std::string id; // names the invitation to its owner; does not open it
    std::string guest;
    int64_t expiresAt = 0; // Unix seconds
};

// What the owner of the service has decided. Kept in the store and read each time, so that another process may change
// it. Any thread.
class HouseRules {
public:
    static constexpr int64_t invitationSeconds = 7 * 24 * 3600;
    static constexpr int mostInvitations = 50;
    static constexpr size_t longestGuest = 40; // characters

    HouseRules(Store &store, Clock clock);

    // The account that was made the owner or, without one, the oldest active account; 0 when there is no account.
    AccountId owner();
    void setOwner(AccountId account);

    SignUpRule signUpRule();
    void setSignUpRule(SignUpRule rule);
    // Whether somebody without an invitation may sign up. `isInHouse`: the request comes from the house's network. The
    // first account of a service may be made from anywhere.
    bool maySignUp(bool isInHouse);
    // The same of a link that is opened later: the address no longer counts.
    bool isOpen();

    // The token of a new invitation, for a link: it lets one account be made within invitationSeconds. Nothing when
    // there are too many invitations or the guest's name is no name.
    std::optional<std::string> invite(const std::string &guest);
    // Valid ones, the newest first.
    std::vector<Invitation> invitations();
    // False also when nobody may sign up.
    bool isInvited(const std::string &tokenHash);
    // The same, and uses the invitation up.
    bool takeInvitation(const std::string &tokenHash);
    void endInvitation(const std::string &id);

    // After the owner's own music every n-th list of four has one advertisement; 0: none.
    int listsPerAd();
    void setListsPerAd(int lists); // 0 to mostListsPerAd
    static constexpr int mostListsPerAd = 4;

private:
    Store &m_store;
    Clock m_clock;
};

} // namespace velmora::server
