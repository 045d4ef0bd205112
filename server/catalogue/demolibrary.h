#pragma once

#include "server/catalogue/catalogue.h"
#include "server/demo/democatalogue.h"

#include <atomic>
#include <functional>
#include <thread>

namespace velmora::server {

// Where the demo catalogue's music comes from; a test gives its own.
struct DemoSource {
    std::vector<demo::DemoTrack> tracks;
    std::vector<demo::DemoAd> ads;
    std::function<bool(const demo::DemoTrack &, const std::filesystem::path &)> renderTrack;
    std::function<bool(const demo::DemoAd &, const std::filesystem::path &)> renderAd;
    std::function<bool(const std::string &, const std::filesystem::path &)> renderPicture;
};

// Puts the demo catalogue into the service: enters it at once, and makes the files that are missing on a thread of its
// own, a track of every style first, so that every station soon has something to play.
class DemoLibrary {
public:
    // `say` gets a line of progress after every track, on that thread.
    DemoLibrary(Catalogue &catalogue, DemoSource source, std::filesystem::path directory,
                std::function<void(const std::string &)> say);
    ~DemoLibrary(); // stops and waits for the file that is being made

    // Throws StoreError.
    void start();
    // Asks the thread to end after the file that it is making. True when it has ended within the time.
    bool stop(std::chrono::milliseconds longest);

private:
    void removeUnfinished();
    void enter();
    void makeMissing();
    bool makeTrack(const demo::DemoTrack &track);
    void makeAds();
    void makePicture(const std::string &id);
    std::filesystem::path audioFile(const std::string &id) const { return m_directory / (id + ".flac"); }
    std::filesystem::path pictureFile(const std::string &id) const { return m_directory / (id + ".png"); }
    // Size over duration; 0 when there is no file.
    int bitrateOf(const demo::DemoTrack &track) const;

    Catalogue &m_catalogue;
    DemoSource m_source;
    std::filesystem::path m_directory;
    std::function<void(const std::string &)> m_say;
    std::atomic<bool> m_isStopping{false};
    std::atomic<bool> m_hasEnded{true};
    std::thread m_thread;
};

} // namespace velmora::server
