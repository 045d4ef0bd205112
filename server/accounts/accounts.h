#pragma once

#include "server/accounts/loginthrottle.h"
#include "server/accounts/passwordhasher.h"
#include "server/accounts/secrets.h"

#include <optional>
#include <string>

namespace velmora::server {

class Connection;
class Store;

using AccountId = int64_t;

struct Account {
    AccountId id = 0;
    std::string userName; // as it was typed when the account was made; an e-mail address
    bool isActive = true;
    bool isExplicitFilterOn = false;
    bool hasExplicitPin = false;
    std::string passwordHash; // at the time when this was read
};

// Optional details of a person.
struct Profile {
    std::optional<int> birthYear;
    std::string gender;
    std::string zipCode;
    std::string countryCode;
    bool emailOptIn = false;
};

enum class CreateResult { Done, BadUserName, BadPassword, Taken };
// What a new password means for the radios of the account.
enum class Radios { End, Keep };
enum class LoginResult { Done, Wrong, Inactive, TooMany };

struct Login {
    LoginResult result = LoginResult::Wrong;
    Account account;    // when Done
    int retryAfter = 0; // when TooMany: seconds
};

// The people of this service. All functions may be called from any thread; those that look at a password take the time
// of one argon2id hash.
class Accounts {
public:
    static constexpr size_t shortestPassword = 8; // characters, as bytes of UTF-8
    static constexpr size_t longestPassword = 1024;

    Accounts(Store &store, PasswordHasher &hasher, Clock clock);

    // Done when such an account could be made, as far as the name and the password tell: never Taken.
    static CreateResult checkNew(const std::string &userName, const std::string &password);
    // Makes an account with this password's hash and sets the id when the result is Done. `furnish` adds what belongs
    // to every account, in the same transaction.
    CreateResult create(const std::string &userName, const std::string &passwordHash, const Profile &profile,
                        AccountId *id, const std::function<void(AccountId)> &furnish = {});
    // Checks a password, as often as LoginThrottle allows. An unknown account takes as long as a known one and is
    // Wrong. `network`: the caller's address, or the network that counts as one caller.
    Login login(const std::string &userName, const std::string &password, const std::string &network);

    // Whether the account still has the password that it was read with. Asked under the store's lock by who opens a
    // session: checking a password takes its time, and it may have been changed meanwhile.
    bool hasSamePassword(const Account &account);

    std::optional<Account> find(AccountId id);
    std::optional<Account> find(const std::string &userName);
    void setActive(AccountId id, bool isActive);

    // Ends what was let in by the old password, or by nobody knows whom: sessions, radios, grants, open codes and links
    // of mails. With Keep, radios that are linked stay so. The caller has checked who asks.
    CreateResult changePassword(AccountId id, const std::string &newPassword, Radios radios = Radios::End);

    // A token for a link in a mail: single-use, valid for so many seconds. It replaces older tokens of this purpose.
    std::string issueReset(AccountId id, const std::string &purpose, int64_t seconds, const std::string &value = {});
    // The account of the token, which stays valid: for showing the page.
    std::optional<AccountId> peekReset(const std::string &token, const std::string &purpose);
    // The account of the token, which is used up.
    std::optional<AccountId> redeemReset(const std::string &token, const std::string &purpose);
    // The value that was given to issueReset() with this purpose.
    std::string resetValue(const std::string &token, const std::string &purpose);

    // Taken when another account has this address.
    CreateResult changeUserName(AccountId id, const std::string &userName);

    void setExplicitFilter(AccountId id, bool isOn);
    // Done also when no PIN is set. Limited as login() is, but by itself. Sets no account.
    Login checkExplicitPin(AccountId id, const std::string &pin, const std::string &network);
    void setExplicitPin(AccountId id, const std::string &pin); // empty: none

    static bool isPassword(const std::string &text);
    static bool isPin(const std::string &text); // four to eight digits
    // Names are compared in this form: without case.
    static std::string foldedName(std::string name);

private:
    template <typename Value>
    std::optional<Account> findWhere(const std::string &condition, const Value &value, std::string *passwordHash);
    Store &m_store;
    PasswordHasher &m_hasher;
    Clock m_clock;
    LoginThrottle m_passwordThrottle; // by folded name
    LoginThrottle m_pinThrottle;      // by account id
};

// Purposes of reset tokens.
inline constexpr const char *passwordPurpose = "password";
inline constexpr const char *pinPurpose = "pin";
inline constexpr const char *addressPurpose = "address"; // its value: the new address

} // namespace velmora::server
