#pragma once

#include "server/accounts/accounts.h"

#include <mutex>
#include <nlohmann/json_fwd.hpp>
#include <vector>

namespace velmora::server {

// Tokens that carry, encrypted, what they stand for, so that the store keeps none of them. Each is valid for one
// account only. Every process of a service reads the keys from the store. Any thread.
class SealedTokens {
public:
    static constexpr size_t longest = 1024;               // characters
    static constexpr int64_t keySeconds = 30 * 24 * 3600; // a key seals so long, and opens so long again
    static constexpr int64_t lookSeconds = 60;            // after that another process's new key seals here, too

    SealedTokens(Store &store, Clock clock);

    // `kind` tells the tokens of tracks from those of ads and so on; the content is a JSON array. The same content
    // gives the same token while the key is the same.
    std::string seal(AccountId account, std::string_view kind, const nlohmann::json &content);
    // The content. Nothing when the token is no token of this kind for this account, or its key has ended.
    std::optional<nlohmann::json> open(AccountId account, std::string_view kind, const std::string &token);
    // Tokens are sealed with a new key from now on. The key of before still opens its tokens, the one before that none.
    void changeKey();

private:
    struct Key {
        unsigned char number = 0; // 1 to 255, then 1 again
        int64_t since = 0;
        std::string secret;
    };
    using Keys = std::vector<Key>; // the newest first, two at most

    Keys keys();
    // Looks into the store where it must: another process may have added the key just now.
    std::optional<Key> keyOf(unsigned char number);
    // Adds a key in the store unless there is a newer one than `number`.
    void addKey(int number);
    Keys read();
    void forget(); // the keys are read when they are needed next

    Store &m_store;
    Clock m_clock;
    std::mutex m_mutex; // guards the next two; never held while the store's lock is asked for
    Keys m_keys;
    int64_t m_readAt = 0;
};

} // namespace velmora::server
