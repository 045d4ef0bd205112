#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <vector>

namespace velmora::server {

class Connection;

// What tells one album from another. `folder` is empty but for compilations: two of them may share artist and title.
struct AlbumKey {
    int64_t artistId = 0;
    std::string title;
    std::string folder;
    int year = 0; // of a new album; not part of the comparison
};

// Finds or makes the artists and albums of a batch of tracks, remembering what it has seen. Used within one
// transaction, on the thread that holds the store's lock.
class Owners {
public:
    explicit Owners(Connection &db)
        : m_db(db)
    {
    }

    // Names are compared folded, so "Café Noir" and "CAFE NOIR" are one artist; the first spelling stays.
    int64_t artist(const std::string &name);
    // One that nobody names: a different one for every place, never found by a search.
    int64_t unknownArtist(const std::string &name, const std::string &place);
    int64_t album(const AlbumKey &key);
    // The style's name as it was spelt first: "Hip Hop" and "hip-hop" are one style.
    std::string style(const std::string &name);
    // Replaces the styles of a track; all have the same weight.
    void setStyles(int64_t trackId, const std::vector<std::string> &styles);

private:
    Connection &m_db;
    std::map<std::string, int64_t> m_artists;
    std::map<std::tuple<int64_t, std::string, std::string>, int64_t> m_albums;
};

} // namespace velmora::server
