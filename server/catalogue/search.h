#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace velmora::server {

class Store;

struct FoundTrack {
    int64_t id = 0;
    std::string song;
    std::string artist;
};

struct FoundArtist {
    int64_t id = 0;
    std::string name;
};

struct SearchResult {
    std::vector<FoundTrack> tracks;
    std::vector<FoundArtist> artists;
};

// Searches the catalogue without regard to case and diacritics: names that are the text first, then names with words
// that begin with the typed words, then names with the typed words inside. Any thread.
class Search {
public:
    static constexpr int mostResults = 50;        // of each kind
    static constexpr size_t mostCharacters = 256; // of the text are looked at
    static constexpr size_t mostWords = 12;

    explicit Search(Store &store);
    SearchResult find(const std::string &text);

private:
    Store &m_store;
};

} // namespace velmora::server
