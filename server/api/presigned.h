#pragma once

#include <cstdint>
#include <string>

namespace velmora::server {

// Who asks an S3-compatible store for something.
struct StoreKey {
    std::string id;
    std::string secret;
};

// An address that lets whoever has it read one object of an S3-compatible store for a while: signature version 4 in the
// query (AWS4-HMAC-SHA256), path style, over the host alone.
//   base: "https://store.example:9000/bucket/folder", without a slash at the end and without escapes
//   name: of the object below it, plain: "a b/c.flac"
//   now: Unix seconds; seconds: how long the address lives, 1 to 604800
std::string presignedAddress(const std::string &base, const std::string &name, const StoreKey &key,
                             const std::string &region, int64_t now, int64_t seconds);

// Percent-encoding of all but letters, digits, "-._~" and, if it may stay, the slash.
std::string percentEncoded(const std::string &text, bool isSlashKept);

} // namespace velmora::server
