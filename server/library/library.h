#pragma once

#include "server/library/changewatch.h"
#include "server/library/folderwalk.h"
#include "server/library/libraryconfig.h"
#include "server/library/librarystore.h"
#include "server/library/rootprobe.h"
#include "server/library/transcodes.h"
#include "server/media/mediaworker.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <thread>

namespace velmora::server {

struct LibrarySettings {
    std::filesystem::path configFile;               // looked at again when it changes; empty: `config` stays as it is
    LibraryConfig config;                           // of the command line; folders and patterns of the file come on top
    std::optional<bool> isAnalysed;                 // of the command line, which wins
    std::vector<std::filesystem::path> demoFolders; // scanned like the others; their tracks are the demo catalogue's
    std::filesystem::path dataDirectory;            // covers/ and transcodes/ are made in it
    std::filesystem::path workerProgram = media::MediaWorker::besideThisProgram();
    // Where it is missing, music that radios do not decode does not play.
    std::filesystem::path formatsProgram = media::MediaWorker::besideThisProgram("velmora-media-formats");
    bool isAtRest = false; // nothing is scanned or noted; what is known plays, transcoded where it must be
    std::function<void(const std::string &)> say = [](const std::string &) {}; // a line for the log; any thread
    std::function<void()> looked = [] {}; // after a scan, else every few seconds; on the scanner thread
    size_t spareTranscodes = TranscodeSettings().spare;
    uint64_t reserveBytes = TranscodeSettings().reserveBytes; // that transcodes leave free on the disk
    std::chrono::milliseconds tick{2000};                     // how often configuration and changes are looked at
    std::chrono::milliseconds awayTick{30000};                // how often folders are looked for
    std::chrono::milliseconds storePause{60000};              // after the store refused something
};

// What the scanner saw.
struct LibraryChange {
    enum class Kind { New, Changed, Gone, Back };
    int64_t at = 0; // Unix seconds
    Kind kind = Kind::New;
    std::filesystem::path file;
};

struct LibraryStatus {
    std::vector<Root> roots;
    LibraryCounts counts;
    std::string configProblem;      // of the configuration file; the last good one is in force
    std::string problem;            // why nothing goes on; empty when it does
    std::filesystem::path scanning; // the folder that is looked through now; empty: none
    int64_t scannedFiles = 0;       // of the present or last scan of that folder
    int64_t scans = 0;              // whole rounds over all folders since the start
    int64_t changed = 0;            // files that were read in the last round
    int64_t vanished = 0;           // files that were found missing in the last round
    bool isPaused = false;
    bool isAnalysed = true;            // listening is on
    std::optional<double> secondsLeft; // of listening, as fast as it went so far; nothing until that is known
};

// The owner's music: looks through the folders, notices changes, has tags, pictures and sound read by workers, and
// keeps the catalogue. One thread scans, others listen. Methods: any thread.
class Library {
public:
    Library(Store &store, Catalogue &catalogue, Clock clock, LibrarySettings settings);
    ~Library(); // stops

    void start();
    // Begins to scan, after start() with `isAtRest`; spare transcodes are not made. On the thread of start().
    void endRest();
    // Returns once every thread has ended; a file that is being read is given up.
    void stop();

    LibraryStatus status();
    // Since the start, the latest first.
    std::vector<LibraryChange> recentChanges();
    void setPaused(bool isPaused);
    // Looks through all folders now; what failed is tried again.
    void rescan();
    LibraryStore &store() { return m_store; }
    Transcodes &transcodes() { return m_transcodes; }
    // Waits until a whole round has been made and all is listened to and pictured, for tests. False after `longest`.
    bool waitUntilDone(std::chrono::milliseconds longest, int64_t rounds = 1);

private:
    void prepareToScan();
    void startThreads();

    // Scanner thread.
    void scanLoop();
    void applyConfig();
    // The folders that are to be looked through now; `isAll`: each of them.
    std::set<int64_t> dueRoots(bool isAll);
    bool scanRound(const std::set<int64_t> &due, bool isAll); // false when it was stopped
    bool lookAtRoots(const std::set<int64_t> &due);
    bool scanRoot(const Root &root, int folder);
    ReadFile readFile(int folder, const FoundFile &found, int64_t knownId);
    // Of these files of one folder, those whose texts were guessed, read again with what all of them say. The paths are
    // in the root, which is open as `folder`.
    std::vector<ReadFile> readGuesses(const Root &root, int folder, const std::vector<FoundFile> &files);
    void noteChanges();
    void remember(LibraryChange::Kind kind, const std::filesystem::path &file);
    // Reads the files that were written, except those of a root that is being looked through.
    void readFresh(int64_t exceptRoot);
    void refreshCounts();
    void report(bool isLast);

    // Watcher thread: a folder that does not answer is away, also while the scanner waits for it.
    void watchRoots();

    // Listener threads.
    void listenLoop(int number);
    void setListeners(int count);
    std::optional<ToAnalyse> nextToAnalyse();
    std::optional<LibraryStore::AlbumToPicture> nextAlbum();
    void listen(media::MediaWorker &worker, media::MediaWorker &formats, const ToAnalyse &file);
    // As JPEG, from inside the file or from beside it; empty when there is none.
    std::string coverOf(media::MediaWorker &worker, const std::filesystem::path &music);
    std::filesystem::path writeCover(const std::string &name, const std::string &jpeg);
    void picture(media::MediaWorker &worker, const LibraryStore::AlbumToPicture &album);
    bool isAway(const std::filesystem::path &root);
    bool isIdle();

    static constexpr size_t mostChanges = 200;

    LibraryStore m_store;
    Catalogue &m_catalogue;
    Clock m_clock;
    Transcodes m_transcodes;
    LibrarySettings m_settings;
    std::atomic<bool> m_isAtRest;                  // until endRest(), if it is at first
    LibraryConfig m_config;                        // in force; scanner thread
    std::string m_configText;                      // stamp of the file that it came from; scanner thread
    bool m_isConfigured = false;                   // scanner thread, once it runs
    RootProbe m_probe;                             // scanner thread
    std::unique_ptr<media::MediaWorker> m_worker;  // scanner thread
    bool m_hasFormats = false;                     // formatsProgram is there; set by start()
    std::unique_ptr<media::MediaWorker> m_formats; // scanner thread; null without that program
    uint64_t m_folderNumber = 0;                   // of the folder whose files are read; scanner thread
    ChangeWatch m_changes;                         // scanner thread, but for ring()
    struct RootState {
        std::chrono::steady_clock::time_point scanned;                // never: the epoch
        std::optional<std::chrono::steady_clock::time_point> changed; // and not scanned since
    };
    std::map<int64_t, RootState> m_rootStates;         // scanner thread
    std::set<std::pair<int64_t, std::string>> m_fresh; // files that were written, by root; scanner thread

    std::mutex m_mutex; // guards what follows
    std::condition_variable m_wake;
    LibraryStatus m_status;
    std::deque<LibraryChange> m_recent; // the latest first
    std::deque<ToAnalyse> m_files;
    std::deque<LibraryStore::AlbumToPicture> m_albums;
    std::set<int64_t> m_inWork;               // files being listened to
    std::set<int64_t> m_albumsInWork;         // albums being pictured
    std::map<int64_t, FileStamp> m_skipped;   // files that could not be read since the last round, as they were then
    std::set<media::MediaWorker *> m_workers; // to be interrupted at the end
    double m_musicHeard = 0;                  // seconds of music
    double m_timeListened = 0;                // seconds of all listeners together
    int m_listening = 0;                      // threads that listen; further ones wait
    bool m_isRescanWanted = false;
    bool m_isRound = false; // all folders are being looked through
    std::atomic<bool> m_isStopping{false};

    std::condition_variable m_watcherWake; // with m_mutex
    std::thread m_scanner;
    std::thread m_watcher;
    std::vector<std::thread> m_listeners; // scanner thread, until that has ended
};

} // namespace velmora::server
