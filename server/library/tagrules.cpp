#include "server/library/tagrules.h"

#include "server/catalogue/textfolding.h"
#include "server/library/libraryconfig.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace velmora::server {

namespace {

constexpr size_t longestName = 200; // characters
constexpr size_t mostStyles = 6;    // of one track

bool contains(const auto &list, const std::string &text)
{
    return std::find(std::begin(list), std::end(list), text) != std::end(list);
}

std::string trimmed(std::string_view text)
{
    const size_t begin = text.find_first_not_of(" \t");
    const size_t end = text.find_last_not_of(" \t");
    return begin == std::string_view::npos ? std::string() : std::string(text.substr(begin, end - begin + 1));
}

std::string shortened(const std::string &text)
{
    return std::string(firstCharacters(text, longestName));
}

std::vector<std::string> parts(const std::string &text, std::string_view separators)
{
    std::vector<std::string> result;
    for (size_t at = 0; at <= text.size();) {
        const size_t end = std::min(text.find_first_of(separators, at), text.size());
        if (std::string part = trimmed(std::string_view(text).substr(at, end - at)); !part.empty())
            result.push_back(std::move(part));
        at = end + 1;
    }
    return result;
}

// The number that a text such as "03/12" or "1998-05-01" begins with; 0 when there is none.
int leadingNumber(const std::string &text, int most)
{
    int number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number > 0 && number <= most ? number : 0;
}

std::string lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return text;
}

// What stands before "feat." and its like.
std::string withoutGuests(const std::string &artist)
{
    const std::string low = lower(artist);
    for (const char *word : {" feat. ", " feat ", " ft. ", " ft ", " featuring ", " (feat", " (ft", "[feat"}) {
        const size_t at = low.find(word);
        if (at != std::string::npos && at > 0)
            return trimmed(std::string_view(artist).substr(0, at));
    }
    return artist;
}

std::string mainArtist(const std::string &tag, const std::function<bool(const std::string &)> &isArtist)
{
    const std::vector<std::string> several = parts(tag, ";");
    std::string artist = withoutGuests(several.empty() ? std::string() : several.front());
    // Names have these signs inside; they divide only where the part in front is known by itself.
    for (const char *sign : {" / ", "/", " & ", ", ", " and "}) {
        const size_t at = artist.find(sign);
        if (at == std::string::npos || at == 0)
            continue;
        if (std::string left = trimmed(std::string_view(artist).substr(0, at)); isArtist(left))
            return left;
    }
    return artist;
}

constexpr std::array noStyles = {"other", "unknown", "misc", "none", "various", "default", "music", "genre"};
constexpr std::array speechWords = {"audiobook", "audio book", "podcast",      "speech",     "spoken word",
                                    "comedy",    "horspiel",   "lecture",      "audiobooks", "podcasts",
                                    "horbuch",   "spoken",     "audio theatre"};

std::vector<std::string> stylesOf(const media::MediaTags &tags)
{
    std::vector<std::string> styles;
    for (const char *name : {"GENRE", "STYLE"}) {
        for (const std::string &value : tags.all(name)) {
            for (const std::string &part : parts(value, ";/,|")) {
                const std::string style = shortened(part);
                const std::string folded = foldedText(style);
                const bool isKnown = std::any_of(styles.begin(), styles.end(),
                                                 [&](const std::string &other) { return foldedText(other) == folded; });
                const bool isNumber = std::all_of(
                    style.begin(), style.end(), [](char c) { return (c >= '0' && c <= '9') || c == '(' || c == ')'; });
                if (!folded.empty() && !isNumber && !contains(noStyles, folded) && !isKnown &&
                    styles.size() < mostStyles)
                    styles.push_back(style);
            }
        }
    }
    return styles;
}

bool isSpeechFolder(const std::string &path)
{
    const std::vector<std::string> folders = parts(path, "/");
    return std::any_of(folders.begin(), folders.end() - (folders.empty() ? 0 : 1),
                       [](const std::string &folder) { return contains(speechWords, foldedText(folder)); });
}

struct PathFacts {
    std::string artist;
    std::string album;
    std::string song;
    int number = 0;
};

// "Artist/Album/01 - Title.mp3", "Artist - Title.mp3"
PathFacts factsOfPath(const std::string &path)
{
    PathFacts facts;
    std::vector<std::string> names = parts(printable(path), "/");
    if (names.empty())
        return facts;
    std::string name = names.back();
    names.pop_back();
    name.resize(std::min(name.rfind('.'), name.size()));
    if (name.find(' ') == std::string::npos)
        std::replace(name.begin(), name.end(), '_', ' ');
    // A number of one to three digits and what divides it from the name.
    size_t digits = 0;
    while (digits < name.size() && name[digits] >= '0' && name[digits] <= '9')
        ++digits;
    if (digits >= 1 && digits <= 3 && digits < name.size()) {
        const size_t next = name.find_first_not_of(" .-_)", digits);
        if (next != std::string::npos && next > digits) {
            facts.number = leadingNumber(name.substr(0, digits), 999);
            name = name.substr(next);
        }
    }
    const size_t dash = name.find(" - ");
    if (names.size() >= 2) {
        facts.artist = names[names.size() - 2];
        facts.album = names.back();
        // "CD 1" is no album.
        const std::string disc = foldedText(facts.album);
        if ((disc.starts_with("cd") || disc.starts_with("disc")) && disc.size() <= 7 && names.size() >= 3) {
            facts.album = facts.artist;
            facts.artist = names[names.size() - 3];
        }
        facts.song = name;
    } else if (dash != std::string::npos && dash > 0) {
        facts.artist = trimmed(std::string_view(name).substr(0, dash));
        facts.song = trimmed(std::string_view(name).substr(dash + 3));
        facts.album = names.empty() ? std::string() : names.back();
    } else {
        facts.song = name;
        facts.album = names.empty() ? std::string() : names.back();
    }
    return facts;
}

} // namespace

bool isVariousArtists(const std::string &name)
{
    constexpr std::array names = {"various artists",
                                  "various",
                                  "va",
                                  "v a",
                                  "verschiedene interpreten",
                                  "verschiedene",
                                  "artistes divers",
                                  "varios artistas",
                                  "diverse",
                                  "various artist",
                                  "sampler"};
    return contains(names, foldedText(name));
}

TrackFacts factsOf(const media::MediaTags &tags, const std::string &path,
                   const std::function<bool(const std::string &)> &isArtist)
{
    const PathFacts inPath = factsOfPath(path);
    TrackFacts facts;
    facts.song = shortened(tags.first("TITLE"));
    facts.album = shortened(tags.first("ALBUM"));
    facts.composer = shortened(tags.first("COMPOSER"));
    facts.work = shortened(tags.first("WORK"));
    facts.movement = leadingNumber(tags.first("MOVEMENTNUMBER"), 999);
    facts.disc = leadingNumber(tags.first("DISCNUMBER"), 999);
    facts.number = leadingNumber(tags.first("TRACKNUMBER"), 9999);
    facts.year = leadingNumber(tags.first("ORIGINALDATE"), 9999);
    if (facts.year == 0)
        facts.year = leadingNumber(tags.first("DATE"), 9999);
    facts.styles = stylesOf(tags);
    facts.mood = shortened(tags.first("MOOD"));
    facts.tempo = leadingNumber(tags.first("BPM"), 400);
    facts.isExplicit = tags.first("ITUNESADVISORY") == "1" || tags.first("ITUNESADVISORY") == "4";

    const std::string albumArtist = tags.first("ALBUMARTIST");
    facts.isCompilation = tags.first("COMPILATION") == "1" || isVariousArtists(albumArtist);
    if (!isVariousArtists(albumArtist))
        facts.albumArtist = shortened(mainArtist(albumArtist, isArtist));
    facts.artist = shortened(mainArtist(tags.first("ARTIST"), isArtist));
    if (isVariousArtists(facts.artist))
        facts.artist.clear();
    if (facts.artist.empty())
        facts.artist = facts.albumArtist;

    const auto isClassical = [](const std::string &style) { return foldedText(style) == "classical"; };
    facts.isClassical = !facts.work.empty() || std::any_of(facts.styles.begin(), facts.styles.end(), isClassical);
    if (facts.isClassical && !facts.composer.empty()) {
        if (facts.albumArtist.empty())
            facts.albumArtist = facts.artist;
        facts.artist = mainArtist(facts.composer, isArtist);
    }
    if (facts.artist.empty() && !isVariousArtists(inPath.artist))
        facts.artist = shortened(inPath.artist);
    if (facts.artist.empty()) {
        facts.artist = unknownArtist;
        facts.isUnknownArtist = true;
    }
    if (facts.song.empty())
        facts.song = shortened(inPath.song.empty() ? "Unnamed" : inPath.song);
    if (facts.album.empty())
        facts.album = shortened(inPath.album);
    if (facts.number == 0)
        facts.number = inPath.number;
    facts.isSpeech = lower(path).ends_with(".m4b") || tags.first("PODCAST") == "1" || isSpeechFolder(path) ||
                     std::any_of(facts.styles.begin(), facts.styles.end(),
                                 [](const std::string &style) { return contains(speechWords, foldedText(style)); });
    return facts;
}

} // namespace velmora::server
