#include "server/catalogue/search.h"

#include "server/catalogue/searchtext.h"
#include "server/store/store.h"

#include <set>

namespace velmora::server {

namespace {

// Runs one query after another until there are enough different rows. A query may repeat all rows of the queries before
// it, so each asks for twice as many.
class Collector {
public:
    template <typename Take>
    void add(Statement query, Take take)
    {
        while (m_seen.size() < Search::mostResults && query.step()) {
            if (m_seen.insert(query.integer(0)).second)
                take(query);
        }
    }

private:
    std::set<int64_t> m_seen;
};

} // namespace

Search::Search(Store &store)
    : m_store(store)
{
}

SearchResult Search::find(const std::string &text)
{
    SearchResult result;
    std::vector<std::string> words = foldedWords(firstCharacters(text, mostCharacters));
    if (words.empty())
        return result;
    if (words.size() > mostWords)
        words.resize(mostWords);
    std::string whole;
    for (const std::string &word : words)
        whole.append(whole.empty() ? "" : " ").append(word);

    const Store::Lock db = m_store.lock();
    Collector tracks;
    const auto takeTrack = [&](const Statement &row) {
        result.tracks.push_back({row.integer(0), row.text(1), row.text(2)});
    };
    const auto trackQuery = [&](const char *source, const std::string &value) {
        Statement query = db->prepare(std::string("SELECT t.id, t.song, a.name FROM ") + source + " LIMIT ?2");
        query.with(value, 2 * mostResults);
        return query;
    };
    constexpr const char *exactTracks = "tracks t JOIN artists a ON a.id = t.artist_id WHERE t.folded = ?1";
    constexpr const char *indexedTracks = "track_search s CROSS JOIN tracks t ON t.id = s.rowid JOIN artists a ON a.id "
                                          "= t.artist_id WHERE track_search MATCH ?1";
    tracks.add(trackQuery(exactTracks, whole), takeTrack);
    for (const Match match : {Match::WordBeginnings, Match::Anywhere})
        tracks.add(trackQuery(indexedTracks, trackExpression(words, match)), takeTrack);

    Collector artists;
    const auto takeArtist = [&](const Statement &row) { result.artists.push_back({row.integer(0), row.text(1)}); };
    const auto artistQuery = [&](const char *source, const std::string &value) {
        Statement query = db->prepare(std::string("SELECT a.id, a.name FROM ") + source + " LIMIT ?2");
        query.with(value, 2 * mostResults);
        return query;
    };
    artists.add(artistQuery("artists a WHERE a.folded = ?1", whole), takeArtist);
    for (const Match match : {Match::WordBeginnings, Match::Anywhere})
        artists.add(artistQuery("artist_search s CROSS JOIN artists a ON a.id = s.rowid WHERE artist_search MATCH ?1",
                                artistExpression(words, match)),
                    takeArtist);
    return result;
}

} // namespace velmora::server
