#pragma once

#include <cstddef>
#include <semaphore>
#include <string>

namespace velmora::server {

// The cost of one hash. The service uses the defaults, tests less.
struct PasswordCost {
    unsigned long long passes = 2;
    size_t memoryBytes = 64ull * 1024 * 1024;
};

// argon2id. Any thread; at most two hashes run at a time, the others wait, so that many logins at once cannot take all
// the memory of a small machine.
class PasswordHasher {
public:
    explicit PasswordHasher(PasswordCost cost = {});

    // Throws std::runtime_error when there is not enough memory.
    std::string hash(const std::string &secret);
    bool verify(const std::string &storedHash, const std::string &secret);
    // Takes as long as verify() and is always false: for an account that does not exist.
    bool verifyNothing(const std::string &secret);

private:
    PasswordCost m_cost;
    std::counting_semaphore<2> m_atOnce{2};
    std::string m_nobodysHash;
};

} // namespace velmora::server
