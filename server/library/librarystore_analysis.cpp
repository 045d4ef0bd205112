// What listening to the files found, and the pictures of their albums.
#include "server/library/librarystore.h"

#include "server/catalogue/mediatypes.h"
#include "server/library/halffloat.h"
#include "server/library/playrules.h"
#include "server/store/store.h"

#include <cmath>

namespace velmora::server {

std::vector<ToAnalyse> LibraryStore::nextToAnalyse(size_t most, uint32_t randomStart)
{
    std::vector<ToAnalyse> result;
    const Store::Lock db = m_store.lock();
    const std::string select = "SELECT f.id, f.track_id, r.path, f.path, f.size, f.mtime_ns, f.inode, "
                               "COALESCE(t.seconds, 0), NOT " +
                               isPlayedByRadiosSql("t.audio_type") + " FROM files f ";
    const std::string rest = " f.analysis_version = 0 AND f.track_id IS NOT NULL AND f.missing_since IS NULL AND "
                             "f.left_out IN ('', 'duplicate') AND r.is_present AND r.is_configured LIMIT ?2";
    const std::string joins = "JOIN roots r ON r.id = f.root_id JOIN tracks t ON t.id = f.track_id WHERE ";
    const auto take = [&](const std::string &query, int64_t value) {
        Statement row = db->prepare(query);
        row.with(value, static_cast<int64_t>(most - result.size()));
        while (row.step())
            result.push_back({row.integer(0),
                              row.integer(1),
                              row.blob(2),
                              row.blob(3),
                              {row.integer(4), row.integer(5), row.integer(6)},
                              row.real(7),
                              row.integer(8) != 0});
    };
    // What a listener named, rated or is about to hear.
    take(
        select + joins +
            "f.track_id IN (SELECT track_id FROM feedback UNION SELECT CAST(target AS INTEGER) FROM seeds WHERE kind = "
            "'track' UNION SELECT r.value FROM stations, json_each(stations.recent) r) AND ?1 = ?1 AND" +
            rest,
        0);
    if (!result.empty())
        return result;
    // Any place in the table is as good as another, and near each other stand files of one artist.
    int64_t highest = 0;
    {
        Statement row = db->prepare("SELECT COALESCE(MAX(id), 0) FROM files");
        row.step();
        highest = row.integer(0);
    }
    if (highest == 0)
        return result;
    take(select + joins + "f.id > ?1 AND" + rest, static_cast<int64_t>(randomStart) % highest);
    if (result.empty())
        take(select + joins + "f.id > ?1 AND" + rest, 0);
    return result;
}

bool LibraryStore::isStill(Connection &db, const ToAnalyse &file)
{
    Statement row = db.prepare("SELECT 1 FROM files WHERE id = ?1 AND track_id = ?2 AND size = ?3 AND mtime_ns = ?4");
    row.with(file.fileId, file.trackId, file.stamp.size, file.stamp.mtimeNs);
    return row.step();
}

void LibraryStore::putAnalysis(const ToAnalyse &file, const media::MediaAnalysis &analysis, const std::string &leftOut)
{
    std::optional<double> gain;
    if (analysis.loudness)
        gain = gainFor(*analysis.loudness);
    {
        const Store::Lock db = m_store.lock();
        if (!isStill(*db, file))
            return;
        Transaction change(*db, Durability::Later);
        db->run("UPDATE tracks SET gain_db = COALESCE(?2, gain_db), peak = ?3, seconds = ?4, duration = ?5, kind = ?6, "
                "tempo = CASE WHEN ?7 > 0 THEN ?7 ELSE tempo END WHERE id = ?1",
                file.trackId, gain, analysis.peak, analysis.seconds,
                static_cast<int64_t>(std::lround(analysis.seconds)), kindFor(leftOut), analysis.tempo);
        if (analysis.numbers) {
            const std::string numbers = halves(*analysis.numbers);
            db->run(
                "INSERT INTO descriptors (track_id, version, numbers) VALUES (?1, ?2, ?3) ON CONFLICT (track_id) DO "
                "UPDATE SET version = ?2, numbers = ?3",
                file.trackId, media::descriptorVersion, Blob{numbers});
        }
        change.commit();
    }
    // After the numbers are stored: of two alike that are listened to at the same time, the later one finds the other.
    const int64_t same = analysis.numbers && leftOut.empty() ? sameRecordingAs(file.trackId, analysis) : 0;
    {
        const Store::Lock db = m_store.lock();
        if (!isStill(*db, file))
            return;
        Transaction change(*db, Durability::Later);
        db->run(
            "UPDATE files SET analysis_version = ?2, left_out = CASE WHEN ?3 = '' THEN left_out ELSE ?3 END, noted_at "
            "= CASE WHEN ?3 = '' THEN noted_at ELSE ?4 END WHERE id = ?1",
            file.fileId, media::descriptorVersion, leftOut, m_clock());
        if (same != 0)
            joinRecordings(*db, file.trackId, same);
        settleRecording(*db, file.trackId);
        change.commit();
    }
    m_catalogue.noteChange();
}

void LibraryStore::putAnalysisFailure(const ToAnalyse &file, const std::string &leftOut, const std::string &problem)
{
    {
        const Store::Lock db = m_store.lock();
        if (!isStill(*db, file))
            return;
        Transaction change(*db, Durability::Later);
        db->run("UPDATE files SET analysis_version = ?2, left_out = ?3, problem = ?4, noted_at = ?5 WHERE id = ?1",
                file.fileId, media::descriptorVersion, leftOut, problem, m_clock());
        settleRecording(*db, file.trackId);
        change.commit();
    }
    m_catalogue.noteChange();
}

void LibraryStore::forgetOldAnalyses()
{
    m_store.lock()->run("UPDATE files SET analysis_version = 0 WHERE analysis_version NOT IN (0, ?1)",
                        media::descriptorVersion);
    constexpr int64_t day = 24 * 3600;
    m_store.lock()->run(
        "UPDATE files SET worker_version = 0, analysis_version = 0 WHERE left_out = ?1 AND noted_at < ?2",
        leftout::slow, m_clock() - day);
}

std::vector<LibraryStore::AlbumToPicture> LibraryStore::albumsWithoutCover(size_t most)
{
    std::vector<AlbumToPicture> albums;
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare(
        // In this order: there are few such albums and many files.
        "SELECT a.id, a.public_id, r.path, f.path FROM albums a INDEXED BY albums_without_cover CROSS JOIN tracks t ON "
        "t.album_id = a.id CROSS JOIN files f ON f.track_id = t.id CROSS JOIN roots r ON r.id = f.root_id WHERE "
        "a.is_cover_looked_for = 0 AND f.missing_since IS NULL AND r.is_present AND r.is_configured AND f.left_out IN "
        "('', 'duplicate') GROUP BY a.id LIMIT ?1");
    row.with(static_cast<int64_t>(most));
    while (row.step())
        albums.push_back({row.integer(0), row.text(1), row.blob(2), row.blob(3)});
    return albums;
}

void LibraryStore::setCover(int64_t albumId, const std::filesystem::path &picture)
{
    const Store::Lock db = m_store.lock();
    Transaction change(*db, Durability::Later);
    db->run("UPDATE albums SET is_cover_looked_for = 1 WHERE id = ?1", albumId);
    db->run("UPDATE tracks SET picture_path = ?2 WHERE album_id = ?1", albumId, picture.string());
    change.commit();
}

void LibraryStore::retryFailures()
{
    m_store.lock()->run("UPDATE files SET worker_version = 0, analysis_version = 0 WHERE left_out IN ('damaged', "
                        "'crash', 'slow')");
    m_store.lock()->run("UPDATE albums SET is_cover_looked_for = 0 WHERE id IN (SELECT album_id FROM tracks WHERE "
                        "picture_path = '' AND source <> 'demo')");
}

} // namespace velmora::server
