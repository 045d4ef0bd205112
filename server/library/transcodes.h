#pragma once

#include "server/catalogue/catalogue.h"
#include "server/media/mediaworker.h"

#include <deque>
#include <memory>
#include <thread>
#include <unordered_map>
#include <unordered_set>

namespace velmora::server {

struct ToAnalyse;

struct TranscodeSettings {
    std::filesystem::path directory;    // made when it does not exist; nothing else lies in it
    std::filesystem::path program;      // velmora-media-formats
    uint64_t mostBytes = 4ull << 30;    // of all transcodes together
    uint64_t reserveBytes = 256u << 20; // that stay free on the disk, for the store above all
    size_t spare = 24;                  // tracks that are transcoded before anybody asks, so that a station can begin
    std::chrono::milliseconds pause{60000};                                    // after the disk was full
    std::function<void(const std::string &)> say = [](const std::string &) {}; // a line for the log; any thread
    // A file that cannot be transcoded, the reason (see leftout) and words for people. Throws StoreError. On the
    // transcoding thread.
    std::function<void(const ToAnalyse &file, const char *reason, const std::string &problem)> leaveOut;
};

// Music of types that radios do not decode, as FLAC: each track is transcoded once, ahead of its turn, by a worker, and
// kept in a folder of bounded size from which the least recently used goes. A transcode belongs to one state of its
// source; it is written beside its place and renamed when it is whole and on the disk, so that whatever has its name is
// whole. Methods: any thread.
class Transcodes {
public:
    using Ids = std::unordered_set<int64_t>;

    Transcodes(Store &store, Catalogue &catalogue);
    ~Transcodes(); // stops

    // Takes over what the folder holds. Without the program nothing is ever ready.
    void start(TranscodeSettings settings);
    void stop();
    void setMostBytes(uint64_t bytes);

    // Tracks with a transcode, which may be out of date.
    std::shared_ptr<const Ids> ready();
    // Whether no more tracks become ready for the time being: a full disk, no program.
    bool isHeldUp();
    // Has them transcoded, the first one first. Tracks that need it not or have it are no harm; those that failed a
    // short while ago are not tried.
    void prepare(const std::vector<int64_t> &tracks);
    // Whether a track is being transcoded or will be at once.
    bool isPreparing();
    // Whether the track could not be transcoded a short while ago: its file is away or has changed, or the disk was
    // full.
    bool hasFailed(int64_t track);
    // The whole transcode of the track's present source. Nothing when there is none: then it is made next.
    std::optional<std::filesystem::path> file(int64_t track);

private:
    struct Source {
        int64_t fileId = 0;
        int64_t trackId = 0;
        std::filesystem::path path;
        int64_t size = 0;
        int64_t mtimeNs = 0;
        double seconds = 0;
        std::string name; // of its transcode
    };
    struct Entry {
        std::string name;
        uint64_t bytes = 0;
        uint64_t lastUse = 0; // counts uses, of all entries
    };

    void loop();
    std::optional<Source> sourceOf(int64_t track);
    void takeOver();
    std::optional<int64_t> next(); // waits; nothing when it is time to stop
    std::optional<int64_t> nextSpare();
    bool transcode(const Source &source); // whether the transcode is there now
    bool write(const Source &source, int from, const std::filesystem::path &part);
    void leaveOut(const Source &source, const char *reason, const std::string &problem);
    void keep(const Source &source, uint64_t bytes);
    // Removes the least recently used until so many bytes more fit. Under m_mutex.
    void makeRoom(uint64_t bytes);
    bool touch(Entry &entry);            // false when somebody has deleted it
    void changed();                      // under m_mutex
    bool isPutOff(int64_t track);        // under m_mutex
    bool holdUp(const std::string &why); // false

    Store &m_store;
    Catalogue &m_catalogue;
    TranscodeSettings m_settings;                 // set before the thread starts
    std::unique_ptr<media::MediaWorker> m_worker; // transcoding thread; interrupted under m_mutex
    std::vector<int64_t> m_candidates;            // for spares; transcoding thread
    std::chrono::steady_clock::time_point m_candidatesRead;

    std::mutex m_mutex; // guards what follows
    std::condition_variable m_wake;
    std::unordered_map<int64_t, Entry> m_entries; // by track
    std::shared_ptr<const Ids> m_ready = std::make_shared<Ids>();
    std::deque<int64_t> m_wanted;
    std::unordered_map<int64_t, std::chrono::steady_clock::time_point> m_putOff; // tracks that failed, and until when
    bool m_isBusy = false;
    uint64_t m_bytes = 0;
    uint64_t m_mostBytes = 0;
    uint64_t m_uses = 0;
    std::chrono::steady_clock::time_point m_heldUpUntil;
    std::string m_heldUpWhy; // said once; empty when all went well
    bool m_hasProgram = false;
    bool m_isStopping = false;

    std::thread m_thread;
};

} // namespace velmora::server
