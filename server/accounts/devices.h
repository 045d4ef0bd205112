#pragma once

#include "server/accounts/accounts.h"

#include <vector>

namespace velmora::server {

// A radio's slot that has been given to an account.
struct Device {
    std::string deviceId; // twelve upper-case hexadecimal digits, a hyphen, a slot digit
    AccountId accountId = 0;
    int64_t associatedAt = 0; // Unix seconds
    std::string name;         // what its owner calls it; may be empty
};

// Which device may act for which account. An identity is a hardware address, not a secret: a device proves itself by
// its key, which is bound when the device is associated. The same identity with another key is another device: a copied
// address, or a radio that has lost its state. It has no access to the first one's account and does not prevent its
// association. Only hashes of keys are stored. Any thread.
class Devices {
public:
    Devices(Store &store, Clock clock);

    // Gives the device to the account; another account's association ends.
    void associate(const std::string &deviceId, const std::string &keyHash, AccountId account);
    // Nothing when there is no such device, or not with this key.
    std::optional<Device> find(const std::string &deviceId, const std::string &keyHash);
    // Ends the association, its key and the sessions of that device at once. False when find() finds nothing.
    bool disassociate(const std::string &deviceId, const std::string &keyHash);

    // For the account page.
    std::vector<Device> ofAccount(AccountId account);
    // The hashes of the keys that the account's devices of that identity have.
    std::vector<std::string> keysOf(AccountId account, const std::string &deviceId);
    // The radios that the account has allowed on the activation page and that have not signed in since: their digits
    // and the hashes of their keys.
    std::vector<std::pair<std::string, std::string>> grantsOf(AccountId account);
    // False when the account has no such device, or the name is no name: 40 characters at most, none of them a control
    // character. An empty one takes the name away.
    bool rename(AccountId account, const std::string &deviceId, const std::string &name);
    // Ends this account's devices of that identity, whatever their keys; false when it has none.
    bool revoke(AccountId account, const std::string &deviceId);

    // Associates a device with the account that the activation page has granted it, and uses the grant up. For the
    // first login of a device that is not associated, with the digits and the key that asked for the code, before the
    // grant expires.
    std::optional<Device> takeGrant(const std::string &deviceId, const std::string &keyHash);

    // Whether the radio that a media address was made for may still be served: the account is active, and the radio is
    // linked to it or signed in. `radio` is a mark as radioMark() makes it; empty: the account alone decides.
    bool mayListen(AccountId account, const std::string &radio);
    static std::string radioMark(const std::string &keyHash);

    // How late a paused radio still learns that it was unlinked.
    static constexpr int64_t revokedSeconds = 30 * 24 * 3600;

    static bool isDeviceId(const std::string &text);
    static bool isDigits(const std::string &text);

private:
    void end(Connection &db, const std::string &deviceId, const std::string &keyHash);

    Store &m_store;
    Clock m_clock;
};

} // namespace velmora::server
