#include "server/catalogue/demolibrary.h"

#include <algorithm>
#include <set>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora::server {

namespace {

// A file appears whole or not at all, so one that is there is good.
bool isMade(const std::filesystem::path &file)
{
    std::error_code error;
    return std::filesystem::is_regular_file(file, error);
}

constexpr int unhurried = 10; // niceness

constexpr const char *audioType = "audio/flac";

} // namespace

DemoLibrary::DemoLibrary(Catalogue &catalogue, DemoSource source, std::filesystem::path directory,
                         std::function<void(const std::string &)> say)
    : m_catalogue(catalogue)
    , m_source(std::move(source))
    , m_directory(std::move(directory))
    , m_say(std::move(say))
{
}

DemoLibrary::~DemoLibrary()
{
    m_isStopping = true;
    if (m_thread.joinable())
        m_thread.join();
}

void DemoLibrary::start()
{
    ::mkdir(m_directory.c_str(), 0700);
    removeUnfinished();
    enter();
    m_hasEnded = false;
    m_thread = std::thread([this] {
        makeMissing();
        m_hasEnded = true;
    });
}

bool DemoLibrary::stop(std::chrono::milliseconds longest)
{
    m_isStopping = true;
    const auto end = std::chrono::steady_clock::now() + longest;
    while (!m_hasEnded && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return m_hasEnded;
}

void DemoLibrary::removeUnfinished()
{
    // What a program that was killed was writing: a file's name with something after its extension.
    std::error_code error;
    for (const auto &entry : std::filesystem::directory_iterator(m_directory, error)) {
        const std::string name = entry.path().filename();
        if (name.find(".flac.") != std::string::npos || name.find(".png.") != std::string::npos)
            ::unlink(entry.path().c_str());
    }
}

void DemoLibrary::enter()
{
    std::vector<Track> tracks;
    std::vector<std::string> trackIds;
    for (const demo::DemoTrack &source : m_source.tracks) {
        Track track;
        track.publicId = source.id;
        track.song = source.song;
        track.artist = source.artist;
        track.album = source.album;
        track.style = source.style;
        track.mood = source.mood;
        track.tempo = source.tempo;
        track.year = source.year;
        track.durationSeconds = source.durationSeconds;
        track.audioFile = audioFile(source.id);
        track.audioType = audioType;
        track.bitrate = bitrateOf(source);
        track.pictureFile = pictureFile(source.id);
        track.isPlayable = isMade(audioFile(source.id));
        tracks.push_back(std::move(track));
        trackIds.push_back(source.id);
    }
    std::vector<Ad> ads;
    std::vector<std::string> adIds;
    for (const demo::DemoAd &source : m_source.ads) {
        ads.push_back({0, source.id, source.title, source.line2, source.durationSeconds, audioFile(source.id),
                       audioType, pictureFile(source.id), isMade(audioFile(source.id))});
        adIds.push_back(source.id);
    }
    m_catalogue.put(tracks);
    m_catalogue.put(ads);
    m_catalogue.keepOnly(trackIds, adIds);
}

void DemoLibrary::makeMissing()
{
    std::vector<const demo::DemoTrack *> missing;
    std::set<std::string> heard; // styles of which a track is there
    for (const demo::DemoTrack &track : m_source.tracks) {
        if (isMade(audioFile(track.id)))
            heard.insert(track.style);
        else
            missing.push_back(&track);
    }
    bool hasAds = false;
    while (!missing.empty() && !m_isStopping) {
        // A style that somebody waits for, else any that has nothing yet, else what comes next.
        const auto isSilent = [&](const demo::DemoTrack *track) { return !heard.contains(track->style); };
        auto next = std::find_if(missing.begin(), missing.end(), [&](const demo::DemoTrack *track) {
            return isSilent(track) && m_catalogue.isWanted(track->style);
        });
        if (next == missing.end())
            next = std::find_if(missing.begin(), missing.end(), isSilent);
        if (next == missing.end()) {
            // Every style has something: the rest is made without hurry. Advertisements are short and go first.
            if (!hasAds) {
                ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), unhurried);
                makeAds();
            }
            hasAds = true;
            next = missing.begin();
        }
        const demo::DemoTrack &track = **next;
        missing.erase(next);
        heard.insert(track.style);
        makePicture(track.id);
        if (makeTrack(track))
            m_say("demo catalogue: " + std::to_string(m_source.tracks.size() - missing.size()) + " of " +
                  std::to_string(m_source.tracks.size()) + " tracks");
        else
            m_say("demo catalogue: cannot make " + audioFile(track.id).string());
    }
    if (!hasAds)
        makeAds();
    for (const demo::DemoTrack &track : m_source.tracks) {
        if (!m_isStopping)
            makePicture(track.id);
    }
}

void DemoLibrary::makePicture(const std::string &id)
{
    if (!isMade(pictureFile(id)) && !m_source.renderPicture(id, pictureFile(id)))
        m_say("demo catalogue: cannot make " + pictureFile(id).string());
}

bool DemoLibrary::makeTrack(const demo::DemoTrack &track)
{
    if (!m_source.renderTrack(track, audioFile(track.id)))
        return false;
    m_catalogue.setTrackPlayable(track.id, true, bitrateOf(track));
    return true;
}

void DemoLibrary::makeAds()
{
    for (const demo::DemoAd &ad : m_source.ads) {
        if (m_isStopping)
            return;
        makePicture(ad.id);
        if (isMade(audioFile(ad.id)))
            continue;
        if (m_source.renderAd(ad, audioFile(ad.id)))
            m_catalogue.setAdPlayable(ad.id, true);
        else
            m_say("demo catalogue: cannot make " + audioFile(ad.id).string());
    }
}

int DemoLibrary::bitrateOf(const demo::DemoTrack &track) const
{
    std::error_code error;
    const auto size = std::filesystem::file_size(audioFile(track.id), error);
    return error || track.durationSeconds <= 0
               ? 0
               : static_cast<int>(size * 8 / static_cast<unsigned>(track.durationSeconds));
}

} // namespace velmora::server
