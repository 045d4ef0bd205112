#pragma once

#include "server/api/presigned.h"
#include "server/http/message.h"

#include <filesystem>
#include <vector>

namespace velmora::server {

// Who sends the files of one folder in place of the service. Every request still comes to the service first, which
// checks the signature, the account and the radio, and then only says where the file is.
struct MediaRoad {
    enum class Kind {
        Accelerated, // the reverse proxy: X-Accel-Redirect with `target` before the file's path in the folder
        Store        // an S3-compatible store: a redirect to a presigned address below `target`
    };
    Kind kind = Kind::Accelerated;
    std::string target;           // "/files/music"; "https://store.example/bucket"
    std::filesystem::path folder; // absolute, plain
};

// Plain values after the service has started; any thread.
struct MediaRoads {
    // A presigned address need only live until the radio follows the redirect, or asks again after a break.
    static constexpr int64_t storeSeconds = 900;

    std::vector<MediaRoad> roads; // the first whose folder holds the file counts
    StoreKey storeKey;
    std::string storeRegion = "us-east-1"; // the usual one where a store has none

    // Where the file is, for this request. Nothing: the service sends it itself. A proxy's road is taken only by
    // requests that came through a trusted proxy.
    std::optional<http::Response> answer(const http::Request &request, const std::filesystem::path &file,
                                         const std::string &mediaType, int64_t now) const;
};

} // namespace velmora::server
