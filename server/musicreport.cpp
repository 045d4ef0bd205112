#include "server/musicreport.h"

#include "server/api/stationservice.h"
#include "server/engine/engineindex.h"
#include "server/library/library.h"
#include "server/stations/engineloader.h"

#include <cstdio>

namespace velmora::server {

namespace {

constexpr int namesOfReason = 20;
constexpr int stylesShown = 15;
constexpr int recordingsShown = 20;

std::string percent(float share)
{
    char text[16];
    std::snprintf(text, sizeof text, "%.0f %%", static_cast<double>(share) * 100);
    return text;
}

std::string folders(LibraryStore &library)
{
    std::string text = "Folders\n";
    for (const Root &root : library.roots())
        text += "  " + printable(root.path.native()) + (root.isPresent ? "\n" : ", away: " + root.problem + "\n");
    return text;
}

std::string leftOut(LibraryStore &library, const LibraryCounts &counts)
{
    std::string text = "Does not play: " + std::to_string(counts.leftOut) + " files\n";
    for (const auto &[reason, count] : counts.byReason) {
        text += "  " + reason + ": " + std::to_string(count) + "\n";
        for (const LeftOutFile &file : library.leftOutFiles(reason, 0, namesOfReason))
            text += "    " + printable((file.root / file.path).native()) +
                    (file.problem.empty() ? "\n" : ": " + file.problem + "\n");
        if (count > namesOfReason)
            text += "    ... (the page /library has all)\n";
    }
    return text;
}

std::string recordings(Store &store)
{
    std::string text;
    const Store::Lock db = store.lock();
    Statement row =
        db->prepare("SELECT MIN(t.song), MIN(a.name), COUNT(*), COUNT(*) OVER () FROM tracks t JOIN artists "
                    "a ON a.id = t.artist_id WHERE t.recording_id IS NOT NULL GROUP BY t.recording_id HAVING "
                    "COUNT(*) > 1 ORDER BY COUNT(*) DESC, 1 LIMIT ?1");
    row.with(recordingsShown);
    while (row.step()) {
        if (text.empty())
            text = "Recordings that are there more than once: " + row.text(3) + "\n";
        text += "  " + row.text(0) + " by " + row.text(1) + ": " + row.text(2) + " files\n";
    }
    return text;
}

std::string styles(Store &store)
{
    std::string text = "Styles\n";
    const Store::Lock db = store.lock();
    Statement row = db->prepare("SELECT name, tracks FROM styles WHERE tracks > 0 ORDER BY tracks DESC, name LIMIT ?1");
    row.with(stylesShown);
    while (row.step())
        text += "  " + row.text(0) + ": " + row.text(1) + " tracks\n";
    return text;
}

std::string agreement(Store &store)
{
    const std::atomic<bool> isStopping{false};
    const engine::EngineIndex index(loadEngineMusic(store, isStopping), engine::StyleShares::Votes::Taken);
    return "Tags and sound agree: " + percent(index.shares().agreement()) +
           " (0 %: no more than by chance; 100 %: whenever tracks sound alike)\nStations trust the sound: " +
           percent(index.shares().soundTrust());
}

} // namespace

std::string musicReport(StationService &service)
{
    LibraryStore library(service.catalogueStore, service.catalogue, service.clock);
    const LibraryCounts counts = library.counts();
    return folders(library) + "Files: " + std::to_string(counts.files) + ", of which " +
           std::to_string(counts.playing) + " play and " + std::to_string(counts.missing) + " are missing\n" +
           leftOut(library, counts) + recordings(service.catalogueStore) + styles(service.catalogueStore) +
           agreement(service.catalogueStore);
}

} // namespace velmora::server
