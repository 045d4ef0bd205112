// Files of one recording: which of them plays, and how they are found.
#include "server/library/librarystore.h"

#include "server/library/halffloat.h"
#include "server/store/store.h"

#include <algorithm>
#include <cmath>

namespace velmora::server {

namespace {

// Two encodings of one recording are nearer to each other than this; other music is not.
constexpr double sameRecording = 0.4;
constexpr double sameRecordingByName = 0.6;
constexpr double sameDuration = 1.5; // seconds
constexpr int64_t scaleTracks = 50;  // fewer say nothing about how much numbers differ

} // namespace

void LibraryStore::refresh(Connection &db, int64_t trackId)
{
    db.run("UPDATE tracks SET is_playable = EXISTS (SELECT 1 FROM files f JOIN roots r ON r.id = f.root_id WHERE "
           "f.track_id = ?1 AND f.missing_since IS NULL AND f.left_out = '' AND r.is_present AND r.is_configured) "
           "WHERE id = ?1",
           trackId);
}

void LibraryStore::settleRecording(Connection &db, int64_t trackId)
{
    int64_t recording = 0;
    {
        Statement row = db.prepare("SELECT COALESCE(recording_id, 0) FROM tracks WHERE id = ?1");
        row.with(trackId);
        if (row.step())
            recording = row.integer(0);
    }
    if (recording != 0) {
        // Of the files that are there the best one plays.
        struct Copy {
            int64_t fileId = 0;
            int64_t trackId = 0;
        };
        std::vector<Copy> copies;
        {
            Statement row = db.prepare(
                "SELECT f.id, f.track_id FROM tracks t JOIN files f ON f.track_id = t.id JOIN roots r ON r.id = "
                "f.root_id "
                "WHERE t.recording_id = ?1 AND f.missing_since IS NULL AND f.left_out IN ('', 'duplicate') AND "
                "r.is_present AND r.is_configured ORDER BY f.quality DESC, f.id");
            row.with(recording);
            while (row.step())
                copies.push_back({row.integer(0), row.integer(1)});
        }
        for (size_t i = 0; i < copies.size(); ++i) {
            const char *reason = i == 0 ? "" : leftout::duplicate;
            db.run(
                "UPDATE files SET left_out = ?2, problem = '', noted_at = CASE WHEN left_out = ?2 THEN noted_at ELSE "
                "?3 END WHERE id = ?1",
                copies[i].fileId, reason, m_clock());
        }
        std::vector<int64_t> tracks;
        {
            Statement row = db.prepare("SELECT id FROM tracks WHERE recording_id = ?1");
            row.with(recording);
            while (row.step())
                tracks.push_back(row.integer(0));
        }
        for (const int64_t track : tracks)
            refresh(db, track);
    }
    refresh(db, trackId);
}

void LibraryStore::joinRecordings(Connection &db, int64_t trackId, int64_t otherId)
{
    Statement row =
        db.prepare("SELECT COALESCE((SELECT recording_id FROM tracks WHERE id = ?2), (SELECT recording_id "
                   "FROM tracks WHERE id = ?1), MIN(?1, ?2)), (SELECT recording_id FROM tracks WHERE id = ?1)");
    row.with(trackId, otherId);
    row.step();
    const int64_t recording = row.integer(0);
    const int64_t old = row.isNull(1) ? -1 : row.integer(1);
    row.reset();
    db.run("UPDATE tracks SET recording_id = ?1 WHERE id IN (?2, ?3) OR recording_id = ?4", recording, trackId, otherId,
           old);
}

int64_t LibraryStore::sameRecordingAs(int64_t trackId, const media::MediaAnalysis &analysis)
{
    // How much each number differs within the library, from a sample.
    media::Descriptor mean{};
    media::Descriptor spread{};
    media::Descriptor numbers{};
    int64_t sampled = 0;
    {
        const Store::Lock db = m_store.lock();
        Statement row = db->prepare("SELECT numbers FROM descriptors WHERE version = ?1 LIMIT 256");
        row.with(media::descriptorVersion);
        while (row.step()) {
            if (!readHalves(row.blob(0), numbers))
                continue;
            ++sampled;
            for (size_t i = 0; i < numbers.size(); ++i) {
                mean[i] += numbers[i];
                spread[i] += numbers[i] * numbers[i];
            }
        }
    }
    for (size_t i = 0; i < mean.size() && sampled > 0; ++i) {
        mean[i] /= static_cast<float>(sampled);
        spread[i] = std::sqrt(std::max(1e-6f, spread[i] / static_cast<float>(sampled) - mean[i] * mean[i]));
    }
    const auto isSame = [&](bool hasSameName) {
        // In a small library every difference looks large or small; then the names must say it too.
        if (sampled < scaleTracks)
            return hasSameName;
        double sum = 0;
        for (size_t i = 0; i < numbers.size(); ++i) {
            const double apart = ((*analysis.numbers)[i] - numbers[i]) / spread[i];
            sum += apart * apart;
        }
        const double distance = std::sqrt(sum / static_cast<double>(numbers.size()));
        return distance < (hasSameName ? sameRecordingByName : sameRecording);
    };
    // In pieces: requests get the lock between them, however many tracks are as long as this one.
    double afterSeconds = analysis.seconds - sameDuration;
    int64_t afterId = 0;
    for (bool isMore = true; isMore;) {
        isMore = false;
        const Store::Lock db = m_store.lock();
        Statement row = db->prepare("SELECT t.id, t.seconds, d.numbers, t.folded = own.folded AND t.artist_id = "
                                    "own.artist_id FROM tracks own JOIN tracks t ON (t.seconds, t.id) > (?2, ?3) AND "
                                    "t.seconds <= ?4 AND t.id <> own.id JOIN descriptors d ON d.track_id = t.id WHERE "
                                    "own.id = ?1 AND t.kind = 'music' AND d.version = ?5 ORDER BY t.seconds, t.id "
                                    "LIMIT 200");
        row.with(trackId, afterSeconds, afterId, analysis.seconds + sameDuration, media::descriptorVersion);
        while (row.step()) {
            isMore = true;
            afterId = row.integer(0);
            afterSeconds = row.real(1);
            if (readHalves(row.blob(2), numbers) && isSame(row.integer(3) != 0))
                return afterId;
        }
    }
    return 0;
}

} // namespace velmora::server
