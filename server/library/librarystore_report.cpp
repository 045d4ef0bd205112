// What the page of the library shows.
#include "server/library/librarystore.h"

#include "server/store/store.h"

namespace velmora::server {

LibraryCounts LibraryStore::counts()
{
    LibraryCounts counts;
    // In pieces: requests get the lock between them.
    for (int64_t after = 0;;) {
        const Store::Lock db = m_store.lock();
        Statement row = db->prepare("SELECT f.id, f.left_out, f.missing_since IS NOT NULL, f.analysis_version, "
                                    "COALESCE(t.seconds, 0), COALESCE(t.is_playable, 0), f.track_id IS NOT NULL FROM "
                                    "files f JOIN roots r ON r.id = f.root_id LEFT JOIN tracks t ON t.id = f.track_id "
                                    "WHERE f.id > ?1 AND r.is_configured ORDER BY f.id LIMIT 2000");
        row.with(after);
        const int64_t before = after;
        while (row.step()) {
            after = row.integer(0);
            const std::string leftOut = row.text(1);
            const bool isMissing = row.integer(2) != 0;
            ++counts.files;
            counts.missing += isMissing;
            counts.playing += row.integer(5);
            if (!leftOut.empty()) {
                ++counts.leftOut;
                ++counts.byReason[leftOut];
            }
            if (row.integer(3) != 0) {
                ++counts.analysed;
            } else if (!isMissing && row.integer(6) != 0 && (leftOut.empty() || leftOut == leftout::duplicate)) {
                ++counts.toAnalyse;
                counts.secondsToAnalyse += row.real(4);
            }
        }
        if (after == before)
            return counts;
    }
}

std::vector<LeftOutFile> LibraryStore::leftOutFiles(const std::string &reason, int64_t first, int most)
{
    std::vector<LeftOutFile> files;
    const Store::Lock db = m_store.lock();
    Statement row =
        db->prepare("SELECT r.path, f.path, f.left_out, f.problem, f.noted_at FROM files f JOIN roots r ON "
                    "r.id = f.root_id WHERE f.left_out <> '' AND r.is_configured AND (?1 = '' OR f.left_out = "
                    "?1) ORDER BY f.left_out, f.id DESC LIMIT ?3 OFFSET ?2");
    row.with(reason, first, most);
    while (row.step())
        files.push_back({row.blob(0), row.blob(1), row.text(2), row.text(3), row.integer(4)});
    return files;
}

} // namespace velmora::server
