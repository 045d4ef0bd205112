#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace velmora::server {

// Unix seconds. The service's only clock, so that a test can turn it.
using Clock = std::function<int64_t()>;
Clock systemClock();

// Initialises libsodium. To be called once, before there are other threads. Throws std::runtime_error.
void initialiseSecrets();

// A random token of so many bytes, base64url without padding.
std::string randomToken(int bytes = 32);
// Uniform in [0, bound); bound > 0.
uint32_t randomBelow(uint32_t bound);
// SHA-256 as 64 hexadecimal digits: what is stored of a token that is itself 32 random bytes.
std::string tokenHash(std::string_view token);
// HMAC-SHA-256 as 64 hexadecimal digits: for signatures, and for codes so short that a plain hash could be guessed.
std::string keyedHash(std::string_view key, std::string_view message);
// Encrypts and authenticates a text with a key that is itself a random text. Base64url.
std::string sealed(std::string_view key, std::string_view text);
// The text; nothing when the key is another one or the sealed text was changed.
std::optional<std::string> unsealed(std::string_view key, std::string_view sealedText);
// The same for a short text that stands in an interface. `front` can be read without the key and cannot be changed. The
// same text and front give the same bytes, so whoever sees two of them knows whether they are equal, and nothing else.
std::string sealedToken(std::string_view key, unsigned char front, std::string_view text);
std::optional<std::string> unsealedToken(std::string_view key, std::string_view token);
// The front; nothing when the token is no sealed one.
std::optional<unsigned char> tokenFront(std::string_view token);
// Compares in constant time.
bool equalSecrets(std::string_view a, std::string_view b);
// Whether the text is base64url of exactly so many bytes.
bool isToken(std::string_view text, int bytes);

} // namespace velmora::server
