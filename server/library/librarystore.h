#pragma once

#include "server/accounts/accounts.h"
#include "server/catalogue/catalogue.h"
#include "server/library/folderwalk.h"
#include "server/library/tagrules.h"

#include <map>
#include <set>
#include <unordered_map>

namespace velmora::server {

// Why a file does not play. Kept in files.left_out by these names; empty: it plays.
namespace leftout {
inline constexpr const char *damaged = "damaged";     // its sound cannot be read
inline constexpr const char *crash = "crash";         // reading it ended the worker, twice
inline constexpr const char *slow = "slow";           // reading it took too long, twice
inline constexpr const char *empty = "empty";         // no bytes
inline constexpr const char *shortPiece = "short";    // under 20 seconds
inline constexpr const char *longPiece = "long";      // over 15 minutes, classical music over 30
inline constexpr const char *speech = "speech";       // an audio book, a podcast
inline constexpr const char *duplicate = "duplicate"; // a better file of the same recording plays
inline constexpr const char *kind = "kind";           // radios do not decode it, and nothing transcodes it
} // namespace leftout

struct Root {
    int64_t id = 0;
    std::filesystem::path path;
    std::string source; // "demo", "folder"
    bool isPresent = false;
    int64_t awaySince = 0; // Unix seconds, 0 when it is not away
    std::string problem;   // why it is away, for people
    int64_t scannedAt = 0; // end of the last whole scan, 0 never
};

// What the store knows of a file.
struct KnownFile {
    int64_t id = 0;
    FileStamp stamp;
    int64_t trackId = 0; // 0: none
    bool isMissing = false;
    int workerVersion = 0;
    int64_t notedAt = 0;
};

// A file whose tags were read, or that could not be read.
struct ReadFile {
    std::string path;
    FileStamp stamp;
    int64_t knownId = 0; // of its row, 0: it is new
    std::string leftOut;
    std::string problem; // more about it, for people
    bool hasTags = false;
    media::MediaTags tags;
    TrackFacts facts;
    std::filesystem::path picture; // for its track until its album has a cover; empty: none
};

// A file that is to be listened to.
struct ToAnalyse {
    int64_t fileId = 0;
    int64_t trackId = 0;
    std::filesystem::path root;
    std::string path;
    FileStamp stamp; // of the file that the track was made from
    double seconds = 0;
    bool needsTranscoding = false; // of a kind that velmora-media does not decode
};

struct LibraryCounts {
    int64_t files = 0;
    int64_t playing = 0;   // offered to stations
    int64_t leftOut = 0;   // by a rule
    int64_t missing = 0;   // gone from their folder
    int64_t toAnalyse = 0; // still to be listened to
    int64_t analysed = 0;
    double secondsToAnalyse = 0;             // of music
    std::map<std::string, int64_t> byReason; // of left-out files
};

struct LeftOutFile {
    std::filesystem::path root;
    std::string path;
    std::string reason;
    std::string problem;
    int64_t notedAt = 0;
};

// The library's part of the store. Every method is short enough for a request to wait for it. Any thread; throws
// StoreError, and has then changed nothing.
class LibraryStore {
public:
    static constexpr size_t mostInBatch = 15;

    LibraryStore(Store &store, Catalogue &catalogue, Clock clock);

    // Whether music that radios do not decode can be transcoded. Where that changed, its files are read again. Called
    // before a scan.
    void setHasFormats(bool hasFormats);
    // These are the roots from now on; others are kept with all that is theirs, but nothing of them plays.
    void setRoots(const std::vector<std::pair<std::filesystem::path, std::string>> &pathsAndSources);
    std::vector<Root> roots();
    // Makes the tracks of the root playable or not, piece by piece.
    void setPresent(const Root &root, bool isPresent, const std::string &problem);
    void setScanned(int64_t rootId);
    bool hasFiles(int64_t rootId);

    std::unordered_map<std::string, KnownFile> files(int64_t rootId);
    std::optional<KnownFile> file(int64_t rootId, const std::string &path);
    // Tracks that lie in this root but were entered without its files get their files' rows, to be read again; those
    // without a file are dropped.
    void adoptTracks(const std::filesystem::path &root);
    // All or none of at most mostInBatch files. `isGone` tells whether a path of a root holds that file no longer; a
    // file with the same sound that is gone hands its track over. Returns how many tracks are new.
    int put(int64_t rootId, const std::vector<ReadFile> &files,
            const std::function<bool(const Root &, const std::string &path, const FileStamp &)> &isGone);
    // Files that are kept are not dropped by dropOldMissing().
    void setMissing(const std::vector<int64_t> &fileIds, bool isMissing, bool isKept = false);
    // Drops files that have been missing for 90 days, or all that are missing; a track goes with its last file, and
    // with it its thumbs. Returns how many files were dropped.
    int64_t dropOldMissing();
    int64_t dropAllMissing();
    bool isArtist(const std::string &name);

    // Files to listen to: those that listeners wait for first, then any.
    std::vector<ToAnalyse> nextToAnalyse(size_t most, uint32_t randomStart);
    // Both change nothing when the file is another by now.
    void putAnalysis(const ToAnalyse &file, const media::MediaAnalysis &analysis, const std::string &leftOut);
    void putAnalysisFailure(const ToAnalyse &file, const std::string &leftOut, const std::string &problem);
    // Of an older version: everything is listened to again. So is what took too long, a day later: the disk or the
    // machine may have been slow.
    void forgetOldAnalyses();

    struct AlbumToPicture {
        int64_t id = 0;
        std::string publicId;
        std::filesystem::path root;
        std::string path; // of one of its files
    };
    std::vector<AlbumToPicture> albumsWithoutCover(size_t most);
    std::unordered_map<std::string, FileStamp> coverFiles(int64_t rootId);
    // A picture beside the music came, changed, or went (no stamp): the albums of its folder look for covers again.
    void noteCoverFile(int64_t rootId, const std::string &path, const std::optional<FileStamp> &stamp);
    // Empty: it has none.
    void setCover(int64_t albumId, const std::filesystem::path &picture);

    LibraryCounts counts();
    // Of a reason, or of any when that is empty; the newest first.
    std::vector<LeftOutFile> leftOutFiles(const std::string &reason, int64_t first, int most);
    void keepPaused(bool isPaused); // over restarts
    bool isPaused() const;
    // Forgets the tries of files that failed, so that the next scan reads them again.
    void retryFailures();

private:
    int64_t putTrack(Connection &db, int64_t rootId, const ReadFile &file, int64_t trackId);
    bool isStill(Connection &db, const ToAnalyse &file);
    void keepReplaced(Connection &db, int64_t fileId);
    // A file of the store with the same sound as one that was read.
    struct SoundHolder {
        int64_t fileId = 0;
        Root root;
        std::string path;
        FileStamp stamp;
    };
    std::vector<SoundHolder> holdersOfSounds(const std::vector<ReadFile> &files);
    // The track that the file's place or sound had so far; 0: none. `gone`: files whose place no longer holds them.
    int64_t takeOver(Connection &db, int64_t rootId, const ReadFile &file, const std::set<int64_t> &gone);
    void settleRecording(Connection &db, int64_t trackId);
    void refresh(Connection &db, int64_t trackId);
    int64_t dropMissing(int64_t before, bool isKeptToo);
    static void drop(Connection &db, int64_t trackId); // with thumbs and all that hangs on it
    // What listeners said of the track counts for another one of its recording, if there is one.
    static void inherit(Connection &db, int64_t trackId);
    static void dropUnused(Connection &db); // albums and artists without tracks
    void joinRecordings(Connection &db, int64_t trackId, int64_t otherId);
    // A track with this sound, 0: none. Takes the lock itself, again and again.
    int64_t sameRecordingAs(int64_t trackId, const media::MediaAnalysis &analysis);

    Store &m_store;
    Catalogue &m_catalogue;
    Clock m_clock;
    std::atomic<bool> m_hasFormats{false};
};

} // namespace velmora::server
