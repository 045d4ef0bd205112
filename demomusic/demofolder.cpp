#include "demofolder.h"

#include "atomicfile.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <sys/resource.h>

namespace velmora::demo {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

constexpr int unhurried = 10; // niceness after every style has something to play

// Makes a text usable as a file name.
std::string fileName(std::string text)
{
    std::replace(text.begin(), text.end(), '/', '_');
    return text;
}

fs::path albumFolder(const DemoTrack &track)
{
    return fs::path("music") / fileName(track.artist) / fileName(track.album);
}

fs::path adFile(const DemoAd &ad, const char *extension)
{
    return fs::path("ads") / (ad.id + extension);
}

// The name of an unfinished file goes on after its extension.
bool isUnfinished(const fs::path &file)
{
    const std::string name = file.filename();
    return name.find(".flac.") != std::string::npos || name.find(".png.") != std::string::npos ||
           name.find(".json.") != std::string::npos;
}

bool write(const std::string &text, const fs::path &file)
{
    AtomicFile target(file);
    return target.isOpen() && std::fwrite(text.data(), 1, text.size(), target.stream()) == text.size() &&
           target.commit();
}

} // namespace

MakingOrder::MakingOrder(const std::vector<DemoTrack> &tracks, const std::function<bool(const DemoTrack &)> &made)
{
    for (const DemoTrack &track : tracks) {
        if (made(track))
            m_heard.insert(track.style);
        else
            m_missing.push_back(track);
    }
}

void MakingOrder::want(std::set<std::string> styles)
{
    const std::lock_guard guard(m_mutex);
    m_wanted = std::move(styles);
}

std::optional<std::variant<MakingOrder::Track, MakingOrder::Advertisements>> MakingOrder::next()
{
    const std::lock_guard guard(m_mutex);
    const auto isSilent = [this](const DemoTrack &track) { return !m_heard.contains(track.style); };
    const auto isWanted = [&](const DemoTrack &track) { return isSilent(track) && m_wanted.contains(track.style); };
    auto found = std::find_if(m_missing.begin(), m_missing.end(), isWanted);
    if (found == m_missing.end())
        found = std::find_if(m_missing.begin(), m_missing.end(), isSilent);
    const bool isUrgent = found != m_missing.end();
    if (!isUrgent && !m_hasAds) {
        m_hasAds = true;
        return Advertisements{};
    }
    if (m_missing.empty())
        return std::nullopt;
    if (!isUrgent)
        found = m_missing.begin();
    Track result{*found, isUrgent};
    m_heard.insert(found->style);
    m_missing.erase(found);
    return result;
}

DemoFolder::DemoFolder(fs::path folder, std::vector<DemoTrack> tracks)
    : m_folder(std::move(folder))
    , m_tracks(std::move(tracks))
{
}

fs::path DemoFolder::fileOf(const DemoTrack &track) const
{
    char number[16];
    std::snprintf(number, sizeof number, "%02d ", track.number);
    return albumFolder(track) / (number + fileName(track.song) + ".flac");
}

fs::path DemoFolder::pictureOf(const DemoTrack &track) const
{
    return albumFolder(track) / "cover.png";
}

bool DemoFolder::has(const fs::path &file) const
{
    std::error_code error;
    return fs::is_regular_file(m_folder / file, error);
}

bool DemoFolder::prepare()
{
    std::error_code error;
    fs::create_directories(m_folder / "ads", error);
    std::vector<fs::path> unfinished;
    for (const auto &entry : fs::recursive_directory_iterator(m_folder, error)) {
        if (isUnfinished(entry.path()))
            unfinished.push_back(entry.path());
    }
    for (const fs::path &file : unfinished)
        fs::remove(file, error);

    for (const DemoTrack &track : m_tracks)
        fs::create_directories(m_folder / albumFolder(track), error);
    json list = json::array();
    for (const DemoAd &ad : ads())
        list.push_back({{"id", ad.id},
                        {"file", adFile(ad, ".flac")},
                        {"picture", adFile(ad, ".png")},
                        {"title", ad.title},
                        {"line2", ad.line2},
                        {"durationSeconds", ad.durationSeconds}});
    fs::remove(m_folder / "catalogue.json", error); // of earlier versions
    return write(json{{"ads", std::move(list)}}.dump(1) + "\n", m_folder / "ads.json");
}

bool DemoFolder::makePicture(const std::string &id, const fs::path &file) const
{
    return has(file) || renderPicture(id, m_folder / file);
}

void DemoFolder::make(MakingOrder &order, const std::function<void(const fs::path &, bool)> &report)
{
    while (const auto job = order.next()) {
        if (const auto *next = std::get_if<MakingOrder::Track>(&*job)) {
            if (!next->isUrgent)
                ::setpriority(PRIO_PROCESS, 0, unhurried);
            const fs::path file = fileOf(next->track);
            report(file,
                   makePicture(next->track.id, pictureOf(next->track)) && renderTrack(next->track, m_folder / file));
            continue;
        }
        for (const DemoAd &ad : ads()) {
            const fs::path file = adFile(ad, ".flac");
            if (!has(file))
                report(file, makePicture(ad.id, adFile(ad, ".png")) && renderAd(ad, m_folder / file));
        }
    }
}

} // namespace velmora::demo
