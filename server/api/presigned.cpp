#include "server/api/presigned.h"

#include "server/accounts/secrets.h"

#include <ctime>
#include <sodium.h>
#include <vector>

namespace velmora::server {

namespace {

std::string hmac(const std::string &key, const std::string &message)
{
    crypto_auth_hmacsha256_state state;
    std::string result(crypto_auth_hmacsha256_BYTES, '\0');
    crypto_auth_hmacsha256_init(&state, reinterpret_cast<const unsigned char *>(key.data()), key.size());
    crypto_auth_hmacsha256_update(&state, reinterpret_cast<const unsigned char *>(message.data()), message.size());
    crypto_auth_hmacsha256_final(&state, reinterpret_cast<unsigned char *>(result.data()));
    return result;
}

std::string hex(const std::string &bytes)
{
    std::vector<char> text(2 * bytes.size() + 1);
    return sodium_bin2hex(text.data(), text.size(), reinterpret_cast<const unsigned char *>(bytes.data()),
                          bytes.size());
}

} // namespace

std::string percentEncoded(const std::string &text, bool isSlashKept)
{
    constexpr const char *digits = "0123456789ABCDEF";
    std::string encoded;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        const bool isPlain = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '-' ||
                             c == '_' || c == '.' || c == '~' || (c == '/' && isSlashKept);
        if (isPlain)
            encoded += c;
        else
            encoded.append({'%', digits[byte >> 4], digits[byte & 15]});
    }
    return encoded;
}

std::string presignedAddress(const std::string &base, const std::string &name, const StoreKey &key,
                             const std::string &region, int64_t now, int64_t seconds)
{
    const std::time_t time = now;
    std::tm parts{};
    gmtime_r(&time, &parts);
    char stamp[20];
    std::strftime(stamp, sizeof stamp, "%Y%m%dT%H%M%SZ", &parts);
    const std::string day(stamp, 8);
    const size_t hostAt = base.find("://") + 3;
    const size_t pathAt = std::min(base.find('/', hostAt), base.size());
    const std::string host = base.substr(hostAt, pathAt - hostAt);
    const std::string path = percentEncoded(base.substr(pathAt) + "/" + name, true);
    const std::string scope = day + "/" + region + "/s3/aws4_request";
    // In the order of the names, as the signature wants them.
    const std::string query =
        "X-Amz-Algorithm=AWS4-HMAC-SHA256&X-Amz-Credential=" + percentEncoded(key.id + "/" + scope, false) +
        "&X-Amz-Date=" + stamp + "&X-Amz-Expires=" + std::to_string(seconds) + "&X-Amz-SignedHeaders=host";
    const std::string request = "GET\n" + path + "\n" + query + "\nhost:" + host + "\n\nhost\nUNSIGNED-PAYLOAD";
    std::string signing = hmac("AWS4" + key.secret, day);
    for (const std::string &step : {region, std::string("s3"), std::string("aws4_request")})
        signing = hmac(signing, step);
    const std::string text = std::string("AWS4-HMAC-SHA256\n") + stamp + "\n" + scope + "\n" + tokenHash(request);
    return base.substr(0, pathAt) + path + "?" + query + "&X-Amz-Signature=" + hex(hmac(signing, text));
}

} // namespace velmora::server
