#pragma once

#include "server/accounts/accounts.h"

namespace velmora::server {

// The codes that a radio shows and a person types into the activation page. Stored only as keyed hashes. Any thread.
class ActivationCodes {
public:
    static constexpr int codeLength = 8;
    static constexpr int64_t codeSeconds = 15 * 60;
    static constexpr int64_t grantSeconds = 15 * 60; // from the page's end to the radio's login
    static constexpr int mostOfOneDevice = 3;        // unexpired; a further one ends the oldest
    static constexpr const char *alphabet = "ABCDEFGHJKMNPQRSTUVWXYZ23456789"; // nothing that looks like something else

    ActivationCodes(Store &store, std::string hashKey, Clock clock);

    // Twelve digits and the hash of the key of the device that asks; what it says of itself, and where it is.
    std::string issueForDevice(const std::string &digits, const std::string &keyHash, const std::string &model = {},
                               const std::string &address = {});
    // For a listener who uses it on the activation page instead of signing in.
    std::string issueForAccount(AccountId account);

    // What a code stands for: a device that asks for access, or an account.
    struct Subject {
        std::string digits; // of issueForDevice(), as are these up to the address
        std::string keyHash;
        std::string model;
        std::string address;
        AccountId accountId = 0; // of issueForAccount()
        int64_t issuedAt = 0;    // Unix seconds
    };
    // Looks a code up without using it, for showing the page. Blanks, hyphens and lower case do not matter. The page
    // limits how often one address may try.
    std::optional<Subject> find(const std::string &code);
    // The page is completed: uses the code up and grants the device to the account (see Devices::takeGrant). False
    // when the code is not (or no longer) a device's.
    bool grant(const std::string &code, AccountId account);
    // The person has denied it: this code and the device's others end.
    void deny(const std::string &code);
    // Uses up a code of issueForAccount() and says whose it was.
    std::optional<AccountId> redeemForAccount(const std::string &code);

    static std::string normalised(const std::string &typed);

private:
    std::string issue(const Subject &subject);
    // Without a transaction of its own.
    void endCodesOf(Connection &db, const Subject &device);
    std::string hashOf(const std::string &code) const;

    Store &m_store;
    std::string m_hashKey;
    Clock m_clock;
};

} // namespace velmora::server
