// The roots, and the files as they stand in them.
#include "server/library/librarystore.h"

#include "server/catalogue/mediatypes.h"
#include "server/catalogue/searchtext.h"
#include "server/store/store.h"

#include <algorithm>

namespace velmora::server {

namespace {

constexpr size_t rowsUnderLock = 50;

} // namespace

LibraryStore::LibraryStore(Store &store, Catalogue &catalogue, Clock clock)
    : m_store(store)
    , m_catalogue(catalogue)
    , m_clock(std::move(clock))
{
}

void LibraryStore::setHasFormats(bool hasFormats)
{
    m_hasFormats = hasFormats;
    const std::string now = hasFormats ? "1" : "0";
    if (m_store.setting("library formats") == now)
        return;
    // A long statement at the only occasions: that program is installed or removed.
    m_store.lock()->run("UPDATE files SET worker_version = 0 WHERE left_out = 'kind' OR track_id IN (SELECT id FROM "
                        "tracks WHERE NOT " +
                        isPlayedByRadiosSql("audio_type") + ")");
    m_store.setSetting("library formats", now);
}

void LibraryStore::setRoots(const std::vector<std::pair<std::filesystem::path, std::string>> &pathsAndSources)
{
    {
        const Store::Lock db = m_store.lock();
        Transaction change(*db);
        db->run("UPDATE roots SET is_configured = 0");
        for (const auto &[path, source] : pathsAndSources)
            db->run("INSERT INTO roots (path, source) VALUES (?1, ?2) ON CONFLICT (path) DO UPDATE SET source = ?2, "
                    "is_configured = 1",
                    Blob{path.native()}, source);
        change.commit();
    }
    std::vector<Root> gone;
    {
        const Store::Lock db = m_store.lock();
        Statement row = db->prepare("SELECT id FROM roots WHERE is_configured = 0 AND is_present = 1");
        while (row.step())
            gone.push_back({row.integer(0), {}, {}, false, 0, {}, 0});
    }
    for (const Root &root : gone)
        setPresent(root, false, "it is no longer in the configuration");
}

std::vector<Root> LibraryStore::roots()
{
    std::vector<Root> roots;
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT id, path, source, is_present, COALESCE(away_since, 0), problem, "
                                "COALESCE(scanned_at, 0) FROM roots WHERE is_configured = 1 ORDER BY path");
    while (row.step())
        roots.push_back({row.integer(0), row.blob(1), row.text(2), row.integer(3) != 0, row.integer(4), row.text(5),
                         row.integer(6)});
    return roots;
}

void LibraryStore::setPresent(const Root &root, bool isPresent, const std::string &problem)
{
    {
        const Store::Lock db = m_store.lock();
        db->run("UPDATE roots SET is_present = ?2, problem = ?3, away_since = CASE WHEN ?2 THEN NULL ELSE "
                "COALESCE(away_since, ?4) END WHERE id = ?1",
                root.id, isPresent, problem, m_clock());
    }
    for (int64_t after = 0;;) {
        std::vector<int64_t> tracks;
        {
            const Store::Lock db = m_store.lock();
            Transaction change(*db);
            {
                Statement row =
                    db->prepare("SELECT id, track_id FROM files WHERE root_id = ?1 AND id > ?2 AND track_id "
                                "IS NOT NULL ORDER BY id LIMIT ?3");
                row.with(root.id, after, static_cast<int64_t>(rowsUnderLock));
                while (row.step()) {
                    after = row.integer(0);
                    tracks.push_back(row.integer(1));
                }
            }
            for (const int64_t track : tracks)
                settleRecording(*db, track);
            change.commit();
        }
        m_catalogue.notePresence(static_cast<int64_t>(tracks.size()));
        if (tracks.size() < rowsUnderLock)
            break;
    }
}

void LibraryStore::setScanned(int64_t rootId)
{
    m_store.lock()->run("UPDATE roots SET scanned_at = ?2 WHERE id = ?1", rootId, m_clock());
}

bool LibraryStore::hasFiles(int64_t rootId)
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT 1 FROM files WHERE root_id = ?1 AND missing_since IS NULL LIMIT 1");
    row.with(rootId);
    return row.step();
}

std::unordered_map<std::string, KnownFile> LibraryStore::files(int64_t rootId)
{
    std::unordered_map<std::string, KnownFile> files;
    // In pieces, by the row number and by no other index: requests get the lock between them.
    for (int64_t after = 0;;) {
        const Store::Lock db = m_store.lock();
        Statement row =
            db->prepare("SELECT id, path, size, mtime_ns, inode, COALESCE(track_id, 0), missing_since IS NOT "
                        "NULL, worker_version, noted_at FROM files WHERE +root_id = ?1 AND id > ?2 ORDER BY "
                        "id LIMIT 500");
        row.with(rootId, after);
        const int64_t before = after;
        while (row.step()) {
            after = row.integer(0);
            files[row.blob(1)] = {after,
                                  {row.integer(2), row.integer(3), row.integer(4)},
                                  row.integer(5),
                                  row.integer(6) != 0,
                                  static_cast<int>(row.integer(7)),
                                  row.integer(8)};
        }
        if (after == before)
            return files;
    }
}

bool LibraryStore::isArtist(const std::string &name)
{
    const std::string folded = foldedText(name);
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT 1 FROM artists WHERE folded = ?1 LIMIT 1");
    row.with(folded);
    return !folded.empty() && row.step();
}

void LibraryStore::setMissing(const std::vector<int64_t> &fileIds, bool isMissing, bool isKept)
{
    for (size_t begin = 0; begin < fileIds.size(); begin += rowsUnderLock) {
        const Store::Lock db = m_store.lock();
        Transaction change(*db);
        for (size_t i = begin; i < std::min(begin + rowsUnderLock, fileIds.size()); ++i) {
            Statement row =
                db->prepare("UPDATE files SET is_kept = CASE WHEN missing_since IS NULL THEN ?4 ELSE is_kept END, "
                            "missing_since = CASE WHEN ?2 THEN COALESCE(missing_since, ?3) ELSE NULL END WHERE id = ?1 "
                            "RETURNING COALESCE(track_id, 0)");
            row.with(fileIds[i], isMissing, m_clock(), isKept);
            const int64_t track = row.step() ? row.integer(0) : 0;
            row.reset();
            if (track != 0)
                settleRecording(*db, track);
        }
        change.commit();
    }
    if (!fileIds.empty())
        m_catalogue.notePresence(static_cast<int64_t>(fileIds.size()));
}

void LibraryStore::keepPaused(bool isPaused)
{
    m_store.setSetting("library paused", isPaused ? "1" : "0");
}

bool LibraryStore::isPaused() const
{
    return m_store.setting("library paused") == "1";
}

} // namespace velmora::server
