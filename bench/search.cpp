// Search in a catalogue of 100,000 generated tracks by 8,000 artists, as the service does it.
#include "server/api/stationservice.h"

#include "bench/figures.h"
#include "tests/server/postgresserver.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <random>

using namespace velmora::server;

namespace {

// Words of two to four syllables, as varied as names; many share their first letters.
class Words {
public:
    std::string word()
    {
        static const char *const syllables[] = {"la", "ri", "mo",  "ven", "tor", "sil", "ka",  "du", "ber",  "an",
                                                "ne", "os", "tal", "wi",  "gra", "fel", "qui", "zo", "hart", "lun"};
        std::string text;
        for (int count = 2 + pick(3); count > 0; --count)
            text += syllables[pick(20)];
        text[0] = static_cast<char>(text[0] - 'a' + 'A');
        return text;
    }
    std::string phrase(int most)
    {
        std::string text = word();
        for (int more = pick(most); more > 0; --more)
            text += ' ' + word();
        return text;
    }
    int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(m_random); }

private:
    std::mt19937 m_random{20};
};

// Accounts in a file, or in the PostgreSQL of an address. False when nothing was found.
bool measure(const std::string &database, const std::string &where)
{
    char directory[] = "/tmp/velmora-bench-XXXXXX";
    if (!mkdtemp(directory))
        return false;
    std::vector<double> ms;
    std::map<std::string, std::vector<double>> msOfKind;
    size_t found = 0;
    {
        ServiceSettings settings;
        settings.dataDirectory = directory;
        settings.database = database;
        StationService service(settings);
        Words words;
        std::vector<std::string> artists, songs;
        for (int i = 0; i < 8000; ++i)
            artists.push_back(words.phrase(3));
        for (int batch = 0; batch < 20; ++batch) {
            std::vector<Track> tracks(5000);
            for (size_t i = 0; i < tracks.size(); ++i) {
                Track &track = tracks[i];
                track.publicId = "b" + std::to_string(batch) + "-" + std::to_string(i);
                track.song = words.phrase(4);
                track.artist = artists[static_cast<size_t>(words.pick(8000))];
                track.album = "Album " + std::to_string(words.pick(9));
                track.style = "folk";
                if (i % 50 == 0)
                    songs.push_back(track.song);
            }
            service.catalogue.put(tracks);
        }
        // What people type: whole names, prefixes of every length, one or two letters, inner parts, unknown texts.
        std::vector<std::pair<const char *, std::string>> texts;
        for (int i = 0; i < 500; ++i) {
            const std::string &song = songs[static_cast<size_t>(words.pick(static_cast<int>(songs.size())))];
            const std::string &artist = artists[static_cast<size_t>(words.pick(8000))];
            texts.insert(texts.end(),
                         {{"a whole song", song},
                          {"a whole artist", artist},
                          {"a song's beginning", song.substr(0, 2 + static_cast<size_t>(words.pick(5)))},
                          {"an artist's beginning", artist.substr(0, 2 + static_cast<size_t>(words.pick(4)))},
                          {"four letters inside", song.substr(song.size() / 2, 4)},
                          {"two beginnings", artist.substr(0, 3) + ' ' + song.substr(0, 3)},
                          {"one letter", song.substr(0, 1)},
                          {"nothing there", "xyzzy" + std::to_string(i)}});
        }
        texts.emplace_back("10,000 letters", std::string(10000, 'a'));
        for (const auto &[kind, text] : texts) {
            const auto begin = std::chrono::steady_clock::now();
            const SearchResult result = service.search.find(text);
            ms.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count());
            msOfKind[kind].push_back(ms.back());
            found += result.tracks.size() + result.artists.size();
        }
    }
    std::filesystem::remove_all(directory);
    if (found == 0)
        return false;
    figures::note("searches" + where, static_cast<double>(ms.size()), "");
    figures::note("search, median" + where, figures::median(ms), " ms");
    for (const auto &[kind, values] : msOfKind)
        figures::note("  of " + kind + ", 99th percentile" + where, figures::percentile(values, 0.99), " ms");
    figures::note("search, slowest" + where, figures::percentile(ms, 1), " ms");
    figures::print("search in 100,000 tracks, 99th percentile" + where, figures::percentile(ms, 0.99), " ms", 20);
    return true;
}

} // namespace

int main()
{
    if (!measure({}, {}))
        return 1;
    if (!velmora::PostgresServer::programs()) {
        figures::note("PostgreSQL", "not installed, not measured");
        return 0;
    }
    velmora::PostgresServer postgres;
    return measure(postgres.makeDatabase(), ", PostgreSQL") ? 0 : 1;
}
