#include "server/api/mediaroads.h"

#include <algorithm>

namespace velmora::server {

namespace {

// The file's path in the folder; empty when it is elsewhere.
std::string pathIn(const std::filesystem::path &folder, const std::filesystem::path &file)
{
    const std::filesystem::path plain = file.lexically_normal();
    const auto [end, rest] = std::mismatch(folder.begin(), folder.end(), plain.begin(), plain.end());
    std::filesystem::path relative;
    for (auto part = rest; end == folder.end() && part != plain.end(); ++part)
        relative /= *part;
    return relative.string();
}

} // namespace

std::optional<http::Response> MediaRoads::answer(const http::Request &request, const std::filesystem::path &file,
                                                 const std::string &mediaType, int64_t now) const
{
    for (const MediaRoad &road : roads) {
        const std::string name = pathIn(road.folder, file);
        if (name.empty() || (road.kind == MediaRoad::Kind::Accelerated && !request.isFromProxy))
            continue;
        http::Response response;
        if (road.kind == MediaRoad::Kind::Accelerated) {
            response.setHeader("X-Accel-Redirect", percentEncoded(road.target + "/" + name, true));
            response.setHeader("Content-Type", mediaType);
            response.setHeader("Cache-Control", "private, max-age=43200");
        } else {
            response.status = 302;
            response.setHeader("Location",
                               presignedAddress(road.target, name, storeKey, storeRegion, now, storeSeconds));
            response.setHeader("Cache-Control", "no-store");
        }
        return response;
    }
    return std::nullopt;
}

} // namespace velmora::server
