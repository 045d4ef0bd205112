// Rules of own music: which answers of the worker count, what a track is called, and the library's configuration.

#include "server/library/halffloat.h"
#include "server/library/libraryconfig.h"
#include "server/library/tagrules.h"
#include "server/media/mediafacts.h"

#include <cmath>
#include <gtest/gtest.h>

namespace velmora::server {
namespace {

TEST(LibraryRulesTest, ImpossibleAnswersOfTheWorkerAreRefused)
{
    const auto isBelieved = [](double seconds, float number, const std::string &container) {
        media::FieldWriter writer;
        writer.bytes(media::Key::Container, container);
        writer.number(media::Key::Seconds, seconds);
        writer.number(media::Key::Rate, 44100);
        writer.number(media::Key::Channels, 2);
        media::Descriptor numbers{};
        numbers[7] = number;
        writer.bytes(media::Key::Numbers, {reinterpret_cast<const char *>(numbers.data()), sizeof numbers});
        const auto fields = media::readFields(writer.all());
        return fields && media::tagsOf(*fields) && media::analysisOf(*fields);
    };
    EXPECT_TRUE(isBelieved(180, 3.5f, "flac"));
    EXPECT_FALSE(isBelieved(NAN, 3.5f, "flac"));
    EXPECT_FALSE(isBelieved(-1, 3.5f, "flac"));
    EXPECT_FALSE(isBelieved(180, NAN, "flac"));
    EXPECT_FALSE(isBelieved(180, 1e6f, "flac"));
    EXPECT_FALSE(isBelieved(180, 3.5f, "../x"));
    EXPECT_FALSE(media::readFields(std::string("\1\0\xff\xff\xff\xff", 6)));
    for (const float value : {0.0f, 1.0f, -2.5f, 65504.0f, 6.0e-8f, 0.333251953125f})
        EXPECT_NEAR(fromHalf(toHalf(value)), value, std::abs(value) / 1000 + 3e-8);
}

TEST(LibraryRulesTest, ArtistAndTitleComeFromTagsOrThePath)
{
    const auto facts = [](const std::vector<std::pair<std::string, std::string>> &tags, const std::string &path) {
        media::MediaTags read;
        read.tags = tags;
        return factsOf(read, path, [](const std::string &name) { return name == "Ada Reed"; });
    };
    const auto artist = [&](const std::string &tag) { return facts({{"ARTIST", tag}}, "x.mp3").artist; };
    EXPECT_EQ(artist("Ada Reed feat. Bo"), "Ada Reed");
    EXPECT_EQ(artist("Ada Reed & Bo"), "Ada Reed");
    EXPECT_EQ(artist("Salt & Smoke"), "Salt & Smoke") << "a name with such a sign inside";
    EXPECT_EQ(artist("Bo; Cy"), "Bo");
    EXPECT_EQ(artist("Various Artists"), unknownArtist);
    const TrackFacts disc = facts({}, "Ada Reed/Low Tide/CD 2/03 - Ebb.flac");
    EXPECT_EQ(disc.artist + "|" + disc.album + "|" + disc.song, "Ada Reed|Low Tide|Ebb");
    EXPECT_EQ(disc.number, 3);
    const TrackFacts flat = facts({}, "Ada Reed - Ebb.mp3");
    EXPECT_EQ(flat.artist + "|" + flat.song, "Ada Reed|Ebb");
    const TrackFacts work =
        facts({{"ARTIST", "The Hall Players"}, {"COMPOSER", "Ina Holm"}, {"GENRE", "Classical"}}, "x.flac");
    EXPECT_EQ(work.artist + "|" + work.albumArtist, "Ina Holm|The Hall Players");
    EXPECT_EQ(facts({{"GENRE", "Folk; (17)/Other, FOLK|Ambient"}}, "x").styles,
              (std::vector<std::string>{"Folk", "Ambient"}));
    EXPECT_TRUE(facts({{"ALBUMARTIST", "Various"}, {"ARTIST", "Bo"}}, "x.mp3").isCompilation);
    EXPECT_TRUE(facts({}, "Audiobooks/Reader/01.mp3").isSpeech);
    EXPECT_FALSE(facts({}, "Reader/Comedy.mp3").isSpeech) << "a song may be called so";
    std::vector<ConfigProblem> problems;
    const LibraryConfig config =
        takeLibraryConfig(parseConfigFile("# mine\n[library]\nmusic = /a b/\nexclude=*.tmp\nworkers = 2\nanalysis=off\n"
                                          "rescan-minutes = 60 /mnt//s x/\n[service]\nlisten = anything\n"),
                          &problems);
    EXPECT_TRUE(problems.empty());
    EXPECT_EQ(config, (LibraryConfig{Reach::Machine, {"/a b"}, {"*.tmp"}, 15, {{"/mnt/s x", 60}}, 2, false}));
    takeLibraryConfig(
        parseConfigFile("music=/a\n[library]\nmusic=a\nworkers=many\nworkers\n[other]\nx=1\n[house]\nx=1\n"),
        &problems);
    std::vector<int> lines;
    for (const ConfigProblem &problem : problems)
        lines.push_back(problem.line);
    EXPECT_EQ(lines, (std::vector<int>{1, 3, 4, 5, 6, 9})) << "all that is wrong is said at once";
}

} // namespace
} // namespace velmora::server
