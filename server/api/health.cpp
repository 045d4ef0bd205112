#include "server/api/health.h"

#include "server/api/stationservice.h"
#include "server/library/library.h"

#include <algorithm>

namespace velmora::server {

using nlohmann::json;

json healthOf(StationService &service)
{
    const Counts counts = service.catalogue.counts();
    json data = {{"status", "ready"}, {"tracks", counts.playable}, {"total", counts.total}};
    if (service.library) {
        const LibraryStatus library = service.library->status();
        const auto away =
            std::count_if(library.roots.begin(), library.roots.end(), [](const Root &root) { return !root.isPresent; });
        data["music"] = {{"folders", library.roots.size()},       {"foldersAway", away},
                         {"files", library.counts.files},         {"leftOut", library.counts.leftOut},
                         {"missing", library.counts.missing},     {"analysed", library.counts.analysed},
                         {"toAnalyse", library.counts.toAnalyse}, {"isScanning", !library.scanning.empty()},
                         {"isPaused", library.isPaused},          {"isWaiting", !library.problem.empty()}};
    }
    return {{"code", 0}, {"data", std::move(data)}};
}

} // namespace velmora::server
