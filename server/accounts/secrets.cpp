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

// Base64url; empty when the text is something else.
Bytes unbase64(std::string_view text)
{
    Bytes bytes(text.size());
    size_t length = 0;
    const bool isValid = sodium_base642bin(bytes.data(), bytes.size(), text.data(), text.size(), nullptr, &length,
                                           nullptr, base64Variant) == 0;
    bytes.resize(isValid ? length : 0);
    return bytes;
}

constexpr size_t tokenNonceAt = 1; // after the front
constexpr size_t tokenTextAt = tokenNonceAt + crypto_aead_xchacha20poly1305_ietf_NPUBBYTES;

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
    if (sealedText.empty())
        return std::nullopt;
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

std::string sealedToken(std::string_view key, unsigned char front, std::string_view text)
{
    const auto cipherKey = boxKey(key);
    static_assert(sizeof cipherKey == crypto_aead_xchacha20poly1305_ietf_KEYBYTES);
    const auto nonceKey = boxKey(std::string(key) + "\nnonce");
    Bytes token(tokenTextAt + text.size() + crypto_aead_xchacha20poly1305_ietf_ABYTES);
    token[0] = front;
    // A nonce that follows from the text is never used for another one.
    std::string message(1, static_cast<char>(front));
    message.append(text);
    crypto_generichash(token.data() + tokenNonceAt, tokenTextAt - tokenNonceAt, bytesOf(message), message.size(),
                       nonceKey.data(), nonceKey.size());
    crypto_aead_xchacha20poly1305_ietf_encrypt(token.data() + tokenTextAt, nullptr, bytesOf(text), text.size(),
                                               token.data(), 1, nullptr, token.data() + tokenNonceAt, cipherKey.data());
    return base64(token);
}

std::optional<std::string> unsealedToken(std::string_view key, std::string_view token)
{
    const Bytes bytes = unbase64(token);
    if (bytes.size() < tokenTextAt + crypto_aead_xchacha20poly1305_ietf_ABYTES)
        return std::nullopt;
    std::string text(bytes.size() - tokenTextAt - crypto_aead_xchacha20poly1305_ietf_ABYTES, '\0');
    const bool isWhole =
        crypto_aead_xchacha20poly1305_ietf_decrypt(reinterpret_cast<unsigned char *>(text.data()), nullptr, nullptr,
                                                   bytes.data() + tokenTextAt, bytes.size() - tokenTextAt, bytes.data(),
                                                   1, bytes.data() + tokenNonceAt, boxKey(key).data()) == 0;
    return isWhole ? std::optional(text) : std::nullopt;
}

std::optional<unsigned char> tokenFront(std::string_view token)
{
    const Bytes bytes = unbase64(token);
    return bytes.size() > tokenTextAt ? std::optional(bytes[0]) : std::nullopt;
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
