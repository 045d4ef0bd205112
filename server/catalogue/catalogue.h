#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace velmora::server {

class Store;

struct Track {
    int64_t id = 0;
    std::string publicId; // ASCII letters, digits, '-' and '_'; stands in media addresses
    int64_t artistId = 0;
    int64_t albumId = 0;
    std::string song;
    std::string artist;
    std::string album;
    std::string style;
    std::string mood;
    int tempo = 0; // beats a minute, 0 when it has none
    int year = 0;
    int durationSeconds = 0;
    std::filesystem::path audioFile;
    std::string audioType; // media type, as radios get it
    int bitrate = 0;       // bits a second
    std::filesystem::path pictureFile;
    bool isExplicit = false;
    bool needsTranscoding = false; // audioFile is of another type
    bool isPlayable = false;       // its audio file is there, whole
    bool isDemo = false;           // of the demo catalogue
    std::optional<double> gainDb;  // what brings it to -18 LUFS; nothing until it was measured
    std::optional<double> peak;    // highest sample, 1 is full scale
};

struct Ad {
    int64_t id = 0;
    std::string publicId;
    std::string title;
    std::string line2;
    int durationSeconds = 0;
    std::filesystem::path audioFile;
    std::string audioType;
    std::filesystem::path pictureFile;
    bool isPlayable = false;
};

// What a picture is called in addresses: the public id, and the extension of its type.
std::string pictureName(const std::string &publicId, const std::filesystem::path &file);
inline std::string pictureName(const Track &track)
{
    return pictureName(track.publicId, track.pictureFile);
}
inline std::string pictureName(const Ad &ad)
{
    return pictureName(ad.publicId, ad.pictureFile);
}

struct Counts {
    int64_t playable = 0;
    int64_t total = 0;
};

// What the service has to play. Artists and albums come into being with their tracks: an artist is told by the name, an
// album by artist and title. Any thread.
class Catalogue {
public:
    static constexpr double storedLoudness = -18; // LUFS that gains in the store lead to

    explicit Catalogue(Store &store);

    Store &store() { return m_store; } // of the music

    // Adds tracks or brings known ones (by public id) up to date, in one transaction; the ids inside are ignored. For a
    // large catalogue hand over thousands at a time. Throws StoreError; then none of them is there.
    void put(const std::vector<Track> &tracks);
    // These are the ads from now on; tokens issued for others end.
    void replaceAds(const std::vector<Ad> &ads);
    void setAdPlayable(const std::string &publicId, bool isPlayable);

    std::optional<Track> track(int64_t id);
    std::optional<Track> track(const std::string &publicId);
    std::vector<int64_t> playableAds(); // by id
    std::optional<Ad> ad(int64_t id);
    std::optional<Ad> ad(const std::string &publicId);
    std::string artistName(int64_t id); // empty when unknown
    // Styles to make stations of, at most thirty, in alphabetical order: those with at least twenty playing tracks by
    // at least three artists, the largest first; where there is none, the five largest; and those that are expected.
    std::vector<std::string> styles();
    std::vector<std::string> largestStyles(int most); // the same with another limit
    bool hasStyle(const std::string &style);
    // Styles of which music is going to be there: stations can be made of them before it is.
    void expectStyles(const std::vector<std::string> &names);
    // The name of any picture of the style or artist, for showing a station. Nothing when there is none.
    std::optional<std::string> pictureOfStyle(const std::string &style);
    std::optional<std::string> pictureOfArtist(int64_t artistId);
    Counts counts();
    // Whether more music is about to come, as its sources say.
    bool isGrowing();
    void setGrowing(const std::string &source, bool isGrowing);

    // What the gain of tracks brings them to, in LUFS; nothing: no track has a gain. Set before the service answers.
    void setLoudness(std::optional<double> loudness) { m_loudness = loudness; }

    // Counts the changes of the playable music; a copy made at a lower revision is out of date.
    uint64_t revision() const { return m_revision; }
    // To be called after tracks were changed directly in the store; wakes the threads in waitUntil().
    void noteChange();
    // The same when known tracks stopped playing or play again. Counted apart, because a copy that offers what is away
    // is of no use.
    void notePresence(int64_t tracks);
    uint64_t presenceChanges() const { return m_presenceChanges; } // tracks since the start

    // A listener waits for music of these styles: a source that makes files makes theirs first.
    void want(const std::set<std::string> &styles);
    // Every want() is passed on to this function, on the caller's thread. Empty: to nobody.
    void whenWanted(std::function<void(const std::set<std::string> &)> tell);
    // Waits while tracks become playable until it is enough, or the time is over; false then.
    bool waitUntil(const std::function<bool()> &isEnough, std::chrono::milliseconds longest);

private:
    template <typename Value>
    std::optional<Track> trackWhere(const char *condition, const Value &value);
    template <typename Value>
    std::optional<Ad> adWhere(const char *condition, const Value &value);

    Store &m_store;
    std::mutex m_mutex; // guards the next four; never held while the store's lock is asked for
    std::function<void(const std::set<std::string> &)> m_tellWanted;
    std::set<std::string> m_growing;                   // sources
    std::set<std::string> m_expected;                  // styles
    std::optional<std::vector<int64_t>> m_playableAds; // nothing: not read since the last change
    std::optional<double> m_loudness = storedLoudness;
    std::atomic<uint64_t> m_revision{0};
    std::atomic<uint64_t> m_presenceChanges{0};
    std::condition_variable m_becamePlayable;
};

} // namespace velmora::server
