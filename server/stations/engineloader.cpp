#include "server/stations/engineloader.h"

#include "server/catalogue/mediatypes.h"
#include "server/catalogue/textfolding.h"
#include "server/library/halffloat.h"
#include "server/store/store.h"

#include <algorithm>
#include <functional>
#include <unordered_map>

namespace velmora::server {

namespace {

constexpr int pageSize = 1000; // ids: some 3 ms under the store's lock

// The folded name; empty unless it is plain ASCII.
std::string wordsOf(const std::string &name)
{
    const std::string folded = foldedText(name);
    const bool isPlain = std::all_of(folded.begin(), folded.end(), [](char c) { return c >= ' ' && c < 0x7f; });
    return isPlain ? folded : std::string();
}

// Numbers for values that the store keeps as text.
class Numbers {
public:
    int64_t of(const std::string &text)
    {
        return text.empty() ? 0 : m_numbers.try_emplace(text, static_cast<int64_t>(m_numbers.size()) + 1).first->second;
    }

private:
    std::unordered_map<std::string, int64_t> m_numbers;
};

class Styles {
public:
    explicit Styles(std::vector<engine::EngineStyle> &styles)
        : m_styles(styles)
    {
    }

    int of(const std::string &name)
    {
        const auto [entry, isNew] = m_places.try_emplace(name, static_cast<int>(m_styles.size()));
        if (isNew)
            m_styles.push_back({name, wordsOf(name)});
        return entry->second;
    }

private:
    std::vector<engine::EngineStyle> &m_styles;
    std::unordered_map<std::string, int> m_places;
};

// Calls `take` with every row of a query, page by page. The query's first column is an id, in ascending order; its
// parameters are the last id of the page before and the number of ids in a page.
void readPages(Store &store, const std::atomic<bool> &isStopping, const char *query,
               const std::function<void(const Statement &)> &take)
{
    int64_t last = 0;
    for (int ids = pageSize; ids == pageSize && !isStopping;) {
        ids = 0;
        const Store::Lock db = store.lock();
        Statement row = db->prepare(query);
        row.with(last, pageSize);
        while (row.step()) {
            ids += row.integer(0) != last ? 1 : 0;
            last = row.integer(0);
            take(row);
        }
    }
}

} // namespace

std::vector<int64_t> playingTracks(Store &store, const std::atomic<bool> &isStopping)
{
    std::vector<int64_t> ids;
    readPages(store, isStopping,
              "SELECT id FROM tracks WHERE id > ?1 AND is_playable = 1 AND kind = 'music' ORDER BY id LIMIT ?2",
              [&](const Statement &row) { ids.push_back(row.integer(0)); });
    return ids;
}

engine::EngineMusic loadEngineMusic(Store &store, const std::atomic<bool> &isStopping)
{
    engine::EngineMusic music;
    Numbers composers, works;
    Styles styles(music.styles);
    std::unordered_map<int64_t, size_t> places;
    std::vector<std::string> ownStyle; // by track; used when the track has no other style
    // What a better file of the recording replaced is read for those who named or rated it.
    readPages(
        store, isStopping,
        "SELECT id, artist_id, album_id, COALESCE(recording_id, 0), composer, work, movement, tempo, "
        "is_explicit, style, audio_type, is_playable FROM tracks WHERE id > ?1 AND (is_playable = 1 OR recording_id IS "
        "NOT NULL) AND kind = 'music' ORDER BY id LIMIT ?2",
        [&](const Statement &row) {
            if (row.integer(11) == 0) {
                music.replaced.push_back({row.integer(0), row.integer(1), row.integer(3)});
                return;
            }
            engine::EngineTrack track;
            track.id = row.integer(0);
            track.artist = row.integer(1);
            track.album = row.integer(2);
            track.recording = row.integer(3);
            track.work = works.of(row.text(5).empty() ? std::string() : row.text(4) + '\n' + row.text(5));
            // The composer counts only for a part of a work: two bands may play songs by the same writer in a row.
            track.composer = track.work ? composers.of(row.text(4)) : 0;
            track.movement = static_cast<int>(row.integer(6));
            track.tempo = static_cast<int>(row.integer(7));
            track.isExplicit = row.integer(8) != 0;
            track.needsTranscoding = !isPlayedByRadios(row.text(10));
            places[track.id] = music.tracks.size();
            music.tracks.push_back(std::move(track));
            ownStyle.push_back(row.text(9));
        });
    // A page is a number of tracks, so all styles of a track are on one page.
    readPages(
        store, isStopping,
        "SELECT t.id, s.name, ts.weight FROM (SELECT DISTINCT track_id AS id FROM track_styles WHERE track_id > "
        "?1 ORDER BY track_id LIMIT ?2) t JOIN track_styles ts ON ts.track_id = t.id JOIN styles s ON s.id = "
        "ts.style_id ORDER BY t.id",
        [&](const Statement &row) {
            const auto place = places.find(row.integer(0));
            if (place != places.end())
                music.tracks[place->second].tags.push_back({styles.of(row.text(1)), static_cast<float>(row.real(2))});
        });
    readPages(store, isStopping,
              "SELECT track_id, numbers, version FROM descriptors WHERE track_id > ?1 ORDER BY track_id LIMIT ?2",
              [&](const Statement &row) {
                  const auto place = places.find(row.integer(0));
                  media::Descriptor descriptor;
                  if (place != places.end() && row.integer(2) == media::descriptorVersion &&
                      readHalves(row.blob(1), descriptor))
                      music.tracks[place->second].descriptor = descriptor;
              });
    for (size_t track = 0; track < music.tracks.size(); ++track) {
        if (music.tracks[track].tags.empty() && !ownStyle[track].empty())
            music.tracks[track].tags = {{styles.of(ownStyle[track]), 1}};
    }
    return music;
}

} // namespace velmora::server
