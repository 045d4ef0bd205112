#pragma once

#include "democatalogue.h"

#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <variant>

namespace velmora::demo {

// The order in which the catalogue is made: one track of every style (requested styles first), then the advertisements,
// which are short, then the rest. Any thread.
class MakingOrder {
public:
    // `made` says which tracks already exist.
    MakingOrder(const std::vector<DemoTrack> &tracks, const std::function<bool(const DemoTrack &)> &made);

    // Requests music of these styles first; replaces earlier requests.
    void want(std::set<std::string> styles);

    struct Advertisements {};
    struct Track {
        DemoTrack track;
        bool isUrgent = false; // its style has nothing to play yet
    };
    // What to make next; empty when everything has been handed out.
    std::optional<std::variant<Track, Advertisements>> next();

private:
    std::mutex m_mutex; // guards everything below
    std::deque<DemoTrack> m_missing;
    std::set<std::string> m_heard; // styles of which a track exists or has been handed out
    std::set<std::string> m_wanted;
    bool m_hasAds = false;
};

// The folder that receives the demo catalogue:
//
//     music/<artist>/<album>/<number> <song>.flac, cover.png    tagged files, as a person would keep them
//     ads/<id>.flac, <id>.png
//     ads.json                                                  the advertisements
//
// Every file appears whole or not at all.
class DemoFolder {
public:
    DemoFolder(std::filesystem::path folder, std::vector<DemoTrack> tracks);

    // Makes the folders of all albums and writes ads.json: {"ads": [{"id", "file", "picture", "title", "line2",
    // "durationSeconds"}]}; paths relative to the folder. Removes what an interrupted run left. False when something
    // cannot be written.
    bool prepare();
    // Path of a track's file, relative to the folder.
    std::filesystem::path fileOf(const DemoTrack &track) const;
    bool has(const std::filesystem::path &file) const;

    // Makes the missing files in `order`. `report` gets each file's relative path and whether it could be made.
    void make(MakingOrder &order, const std::function<void(const std::filesystem::path &, bool)> &report);

private:
    std::filesystem::path pictureOf(const DemoTrack &track) const;
    bool makePicture(const std::string &id, const std::filesystem::path &file) const;

    std::filesystem::path m_folder;
    std::vector<DemoTrack> m_tracks;
};

} // namespace velmora::demo
