#include "server/accounts/secrets.h"

#include <array>
#include <ctime>
#include <sodium.h>
#include <stdexcept>
#include <vector>

namespace velmora::server {

namespace {

constexpr int base64Variant = sodium_base64_VARIANT_URLSAFE_NO_PADDING;

std::string hexadecimal(const unsigned char *bytes, size_t count)
{
    std::string text(count * 2 + 1, '\0');
    sodium_bin2hex(text.data(), text.size(), bytes, count);
    text.pop_back();
    return text;
}

const unsigned char *bytesOf(std::string_view text)
{
    return reinterpret_cast<const unsigned char *>(text.data());
}

} // namespace

Clock systemClock()
{
    return [] { return static_cast<int64_t>(std::time(nullptr)); };
}

void initialiseSecrets()
{
    if (sodium_init() < 0)
        throw std::runtime_error("libsodium does not start");
}

std::string randomToken(int bytes)
{
    std::vector<unsigned char> random(static_cast<size_t>(bytes));
    randombytes_buf(random.data(), random.size());
    std::string text(sodium_base64_encoded_len(random.size(), base64Variant), '\0');
    sodium_bin2base64(text.data(), text.size(), random.data(), random.size(), base64Variant);
    text.pop_back();
    return text;
}

uint32_t randomBelow(uint32_t bound)
{
    return randombytes_uniform(bound);
}

std::string tokenHash(std::string_view token)
{
    std::array<unsigned char, crypto_hash_sha256_BYTES> hash{};
    crypto_hash_sha256(hash.data(), bytesOf(token), token.size());
    return hexadecimal(hash.data(), hash.size());
}

std::string keyedHash(std::string_view key, std::string_view message)
{
    crypto_auth_hmacsha256_state state;
    std::array<unsigned char, crypto_auth_hmacsha256_BYTES> hash{};
    crypto_auth_hmacsha256_init(&state, bytesOf(key), key.size());
    crypto_auth_hmacsha256_update(&state, bytesOf(message), message.size());
    crypto_auth_hmacsha256_final(&state, hash.data());
    return hexadecimal(hash.data(), hash.size());
}

bool equalSecrets(std::string_view a, std::string_view b)
{
    return a.size() == b.size() && sodium_memcmp(a.data(), b.data(), a.size()) == 0;
}

bool isToken(std::string_view text, int bytes)
{
    std::vector<unsigned char> decoded(static_cast<size_t>(bytes) + 3);
    size_t length = 0;
    const char *end = nullptr;
    return sodium_base642bin(decoded.data(), decoded.size(), text.data(), text.size(), nullptr, &length, &end,
                             base64Variant) == 0 &&
           end == text.data() + text.size() && length == static_cast<size_t>(bytes);
}

} // namespace velmora::server
