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

using Bytes = std::vector<unsigned char>;

std::string base64(const Bytes &bytes)
{
    std::string text(sodium_base64_encoded_len(bytes.size(), base64Variant), '\0');
    sodium_bin2base64(text.data(), text.size(), bytes.data(), bytes.size(), base64Variant);
    text.pop_back();
    return text;
}

std::array<unsigned char, crypto_secretbox_KEYBYTES> boxKey(std::string_view key)
{
    std::array<unsigned char, crypto_secretbox_KEYBYTES> result{};
    crypto_generichash(result.data(), result.size(), bytesOf(key), key.size(), nullptr, 0);
    return result;
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
    Bytes random(static_cast<size_t>(bytes));
    randombytes_buf(random.data(), random.size());
    return base64(random);
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

std::string sealed(std::string_view key, std::string_view text)
{
    Bytes box(crypto_secretbox_NONCEBYTES + crypto_secretbox_MACBYTES + text.size());
    randombytes_buf(box.data(), crypto_secretbox_NONCEBYTES);
    crypto_secretbox_easy(box.data() + crypto_secretbox_NONCEBYTES, bytesOf(text), text.size(), box.data(),
                          boxKey(key).data());
    return base64(box);
}

std::optional<std::string> unsealed(std::string_view key, std::string_view sealedText)
{
    Bytes box(sealedText.size());
    size_t length = 0;
    if (sodium_base642bin(box.data(), box.size(), sealedText.data(), sealedText.size(), nullptr, &length, nullptr,
                          base64Variant) != 0 ||
        length < crypto_secretbox_NONCEBYTES + crypto_secretbox_MACBYTES)
        return std::nullopt;
    std::string text(length - crypto_secretbox_NONCEBYTES - crypto_secretbox_MACBYTES, '\0');
    const bool isWhole = crypto_secretbox_open_easy(
                             reinterpret_cast<unsigned char *>(text.data()), box.data() + crypto_secretbox_NONCEBYTES,
                             length - crypto_secretbox_NONCEBYTES, box.data(), boxKey(key).data()) == 0;
    return isWhole ? std::optional(text) : std::nullopt;
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
