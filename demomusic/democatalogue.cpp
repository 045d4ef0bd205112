#include "democatalogue.h"

#include "arrangement.h"
#include "cataloguetable.h"
#include "flacfile.h"
#include "picture.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace velmora::demo {
namespace {

struct Sound {
    Room room;
    Mastering mastering;
    void (*arrange)(Arrangement &);
};

Sound sound(const Piece &piece)
{
    const double beat = 60.0 / piece.tempo;
    switch (piece.style) {
    case Style::SlowPiano:
        return {{2.4, 4200, 1.1, 0, 0}, {-18, 0, 2.5, 2}, arrangeSlowPiano};
    case Style::Folk:
        return {{1.1, 5200, 0.6, 0, 0}, {-17, 0, 2, 1}, arrangeFolk};
    case Style::Dance:
        return {{1.8, 6000, 0.9, beat * 0.75, 0.45}, {-15.5, 0.1, 1.5, 2.5}, arrangeDance};
    case Style::Drones:
        return {{6.5, 3600, 1.5, beat * 1.5, 0.55}, {-17.5, 0, 5, 1}, arrangeDrones};
    case Style::Swing:
        return {{0.9, 5000, 0.55, 0, 0}, {-17, 0, 1.5, 1}, arrangeSwing};
    case Style::Rock:
        break;
    }
    return {{1.2, 5500, 0.75, beat * 0.75, 0.3}, {-15.5, 0.1, 1.5, 1}, arrangeRock};
}

template <typename Entries>
auto *find(const Entries &entries, const std::string &id, std::string (*key)(const typename Entries::value_type &))
{
    const auto found =
        std::find_if(entries.begin(), entries.end(), [&](const auto &entry) { return key(entry) == id; });
    return found == entries.end() ? nullptr : &*found;
}

const TrackEntry *findTrack(const std::string &id)
{
    return find(
        trackEntries(), id, +[](const TrackEntry &entry) { return entry.track.id; });
}

const AdEntry *findAd(const std::string &id)
{
    return find(
        adEntries(), id, +[](const AdEntry &entry) { return entry.ad.id; });
}

} // namespace

const std::vector<DemoTrack> &tracks()
{
    static const std::vector<DemoTrack> result = [] {
        std::vector<DemoTrack> list;
        for (const TrackEntry &entry : trackEntries())
            list.push_back(entry.track);
        return list;
    }();
    return result;
}

const std::vector<DemoAd> &ads()
{
    static const std::vector<DemoAd> result = [] {
        std::vector<DemoAd> list;
        for (const AdEntry &entry : adEntries())
            list.push_back(entry.ad);
        return list;
    }();
    return result;
}

std::vector<DemoTrack> tracksInTurn(int mostOfStyle)
{
    // The order within a style: first by the number of the artist's earlier tracks, then by the artist's place.
    struct Turn {
        int round, artist;
        size_t index;
    };
    std::map<std::string, std::map<std::string, std::pair<int, int>>> seen; // style, artist: place, tracks so far
    std::map<std::string, std::vector<Turn>> styles;
    for (size_t i = 0; i < tracks().size(); ++i) {
        const DemoTrack &track = tracks()[i];
        auto &artists = seen[track.style];
        auto &[place, count] = artists.try_emplace(track.artist, int(artists.size()), 0).first->second;
        styles[track.style].push_back({count++, place, i});
    }
    std::vector<DemoTrack> result;
    for (auto &[style, turns] : styles)
        std::sort(turns.begin(), turns.end(), [](const Turn &a, const Turn &b) {
            return std::tie(a.round, a.artist) < std::tie(b.round, b.artist);
        });
    for (size_t turn = 0; turn < size_t(std::max(0, mostOfStyle)); ++turn) {
        const size_t before = result.size();
        for (const auto &[style, turns] : styles)
            if (turn < turns.size())
                result.push_back(tracks()[turns[turn].index]);
        if (result.size() == before)
            break;
    }
    return result;
}

bool renderTrack(const DemoTrack &track, const std::filesystem::path &flacFile)
{
    const TrackEntry *entry = findTrack(track.id);
    if (!entry)
        return false;
    const Sound how = sound(entry->piece);
    Mixer mixer(entry->track.durationSeconds, how.room);
    Arrangement arrangement(entry->piece, mixer);
    how.arrange(arrangement);
    mixer.master(how.mastering);
    return writeFlac(mixer.left(), mixer.right(),
                     {{"TITLE", entry->track.song},
                      {"ARTIST", entry->track.artist},
                      {"ALBUM", entry->track.album},
                      {"TRACKNUMBER", std::to_string(entry->track.number)},
                      {"DATE", std::to_string(entry->track.year)},
                      {"GENRE", entry->track.style},
                      {"MOOD", entry->track.mood},
                      {"BPM", std::to_string(entry->track.tempo)}},
                     flacFile);
}

bool renderAd(const DemoAd &ad, const std::filesystem::path &flacFile)
{
    const AdEntry *entry = findAd(ad.id);
    if (!entry)
        return false;
    Mixer mixer(entry->ad.durationSeconds, {1.3, 5500, 0.7, 0, 0});
    play(entry->jingle, mixer);
    mixer.master({-16.5, 0, 1});
    return writeFlac(mixer.left(), mixer.right(), {{"TITLE", entry->ad.title}}, flacFile);
}

bool renderPicture(const std::string &id, const std::filesystem::path &pngFile)
{
    if (const TrackEntry *entry = findTrack(id))
        return drawCover(entry->cover, pngFile);
    if (const AdEntry *entry = findAd(id))
        return drawSign(entry->ad.id, pngFile);
    return false;
}

} // namespace velmora::demo
