#include "server/accounts/passwordhasher.h"

#include <array>
#include <sodium.h>
#include <stdexcept>

namespace velmora::server {

namespace {

class Turn {
public:
    explicit Turn(std::counting_semaphore<2> &semaphore)
        : m_semaphore(semaphore)
    {
        m_semaphore.acquire();
    }
    ~Turn() { m_semaphore.release(); }
    Turn(const Turn &) = delete;
    Turn &operator=(const Turn &) = delete;

private:
    std::counting_semaphore<2> &m_semaphore;
};

template <size_t Bytes>
std::string randomBase64()
{
    std::array<unsigned char, Bytes> random{};
    randombytes_buf(random.data(), random.size());
    std::string text(sodium_base64_ENCODED_LEN(Bytes, sodium_base64_VARIANT_ORIGINAL_NO_PADDING), '\0');
    sodium_bin2base64(text.data(), text.size(), random.data(), random.size(),
                      sodium_base64_VARIANT_ORIGINAL_NO_PADDING);
    text.pop_back();
    return text;
}

// A hash of this cost that no known secret has: salt and result are random.
std::string hashOfNothing(PasswordCost cost)
{
    return "$argon2id$v=19$m=" + std::to_string(cost.memoryBytes / 1024) + ",t=" + std::to_string(cost.passes) +
           ",p=1$" + randomBase64<crypto_pwhash_SALTBYTES>() + "$" + randomBase64<32>();
}

} // namespace

PasswordHasher::PasswordHasher(PasswordCost cost)
    : m_cost(cost)
    , m_nobodysHash(hashOfNothing(cost))
{
}

std::string PasswordHasher::hash(const std::string &secret)
{
    const Turn turn(m_atOnce);
    std::string text(crypto_pwhash_STRBYTES, '\0');
    if (crypto_pwhash_str_alg(text.data(), secret.data(), secret.size(), m_cost.passes, m_cost.memoryBytes,
                              crypto_pwhash_ALG_ARGON2ID13) != 0)
        throw std::runtime_error("no memory to hash a password");
    text.resize(text.find('\0'));
    return text;
}

bool PasswordHasher::verify(const std::string &storedHash, const std::string &secret)
{
    const Turn turn(m_atOnce);
    return crypto_pwhash_str_verify(storedHash.c_str(), secret.data(), secret.size()) == 0;
}

bool PasswordHasher::verifyNothing(const std::string &secret)
{
    verify(m_nobodysHash, secret);
    return false;
}

} // namespace velmora::server
