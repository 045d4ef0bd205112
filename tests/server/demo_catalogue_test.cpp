// The catalogue's table and its files.

#include "demomusic/atomicfile.h"
#include "demomusic/demofolder.h"
#include "demomusic/flacfile.h"
#include "temporarydirectory.h"

#include <algorithm>
#include <cairo.h>
#include <cmath>
#include <csignal>
#include <FLAC/stream_decoder.h>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <numeric>
#include <set>
#include <sys/resource.h>
#include <thread>

using namespace velmora::demo;
using velmora::TemporaryDirectory;
namespace fs = std::filesystem;

namespace {

long entries(const TemporaryDirectory &directory)
{
    return std::distance(fs::directory_iterator(directory.path()), {});
}

std::string bytes(const fs::path &file)
{
    std::ifstream stream(file, std::ios::binary | std::ios::ate);
    std::string content(stream ? size_t(stream.tellg()) : 0, 0);
    stream.seekg(0).read(content.data(), std::streamsize(content.size()));
    return content;
}

// A decoded file and measurements of its samples.
struct Decoded {
    uint64_t promised = 0;
    unsigned rate = 0, channels = 0, bits = 0;
    std::vector<float> left, right;
    std::set<std::string> tags;
    bool whole = false; // to the end, and the checksum matches

    double decibels(double from, double to) const
    {
        double sum = 0;
        size_t count = 0;
        for (size_t i = size_t(from * rate); i < std::min(left.size(), size_t(to * rate)); ++i, count += 2)
            sum += double(left[i] * left[i] + right[i] * right[i]);
        return 10 * std::log10(sum / double(std::max<size_t>(1, count)) + 1e-12);
    }
    float peak() const
    {
        float most = 0;
        for (size_t i = 0; i < left.size(); ++i)
            most = std::max({most, std::abs(left[i]), std::abs(right[i])});
        return most;
    }
};

FLAC__StreamDecoderWriteStatus write(const FLAC__StreamDecoder *, const FLAC__Frame *frame,
                                     const FLAC__int32 *const channels[], void *client)
{
    auto *decoded = static_cast<Decoded *>(client);
    for (unsigned i = 0; i < frame->header.blocksize; ++i) {
        decoded->left.push_back(float(channels[0][i]) / 32768.0f);
        decoded->right.push_back(float(channels[1][i]) / 32768.0f);
    }
    return FLAC__STREAM_DECODER_WRITE_STATUS_CONTINUE;
}

void metadata(const FLAC__StreamDecoder *, const FLAC__StreamMetadata *block, void *client)
{
    auto *decoded = static_cast<Decoded *>(client);
    if (block->type == FLAC__METADATA_TYPE_VORBIS_COMMENT) {
        const auto &comment = block->data.vorbis_comment;
        for (const auto *it = comment.comments; it != comment.comments + comment.num_comments; ++it)
            decoded->tags.emplace(reinterpret_cast<const char *>(it->entry), it->length);
        return;
    }
    decoded->promised = block->data.stream_info.total_samples;
    decoded->rate = block->data.stream_info.sample_rate;
    decoded->channels = block->data.stream_info.channels;
    decoded->bits = block->data.stream_info.bits_per_sample;
}

void failed(const FLAC__StreamDecoder *, FLAC__StreamDecoderErrorStatus status, void *)
{
    ADD_FAILURE() << FLAC__StreamDecoderErrorStatusString[status];
}

Decoded decode(const fs::path &file)
{
    Decoded decoded;
    FLAC__StreamDecoder *decoder = FLAC__stream_decoder_new();
    FLAC__stream_decoder_set_md5_checking(decoder, true);
    FLAC__stream_decoder_set_metadata_respond(decoder, FLAC__METADATA_TYPE_VORBIS_COMMENT);
    if (FLAC__stream_decoder_init_file(decoder, file.c_str(), write, metadata, failed, &decoded) ==
        FLAC__STREAM_DECODER_INIT_STATUS_OK) {
        const bool processed = FLAC__stream_decoder_process_until_end_of_stream(decoder);
        decoded.whole = FLAC__stream_decoder_finish(decoder) && processed;
    }
    FLAC__stream_decoder_delete(decoder);
    return decoded;
}

void expectSound(const Decoded &sound, int seconds)
{
    EXPECT_TRUE(sound.whole);
    EXPECT_EQ(sound.rate, 44100u);
    EXPECT_EQ(sound.channels, 2u);
    EXPECT_EQ(sound.bits, 16u);
    EXPECT_EQ(sound.promised, uint64_t(seconds) * 44100);
    EXPECT_EQ(sound.left.size(), sound.promised);
    EXPECT_LE(sound.peak(), 0.8913f); // never above -1 dB
    EXPECT_GE(sound.peak(), 0.5f);    // nor below -6
    EXPECT_NEAR(sound.decibels(0, seconds), -19, 3);
    const double sum = std::accumulate(sound.left.begin(), sound.left.end(), 0.0);
    EXPECT_LT(std::abs(sum / double(sound.left.size())), 0.001) << "a DC offset";
    EXPECT_LT(sound.decibels(seconds - 0.05, seconds), -80) << "ends in silence";
}

TEST(catalogue, hasSixStylesOfFourArtistsWithFourTracksEachAndTheyTakeTurns)
{
    std::map<std::string, std::map<std::string, int>> styles;
    std::set<std::string> moods;
    for (const DemoTrack &track : tracks()) {
        ++styles[track.style][track.artist];
        moods.insert(track.mood);
    }
    EXPECT_EQ(styles.size(), 6u);
    for (const auto &[style, artists] : styles) {
        EXPECT_GE(artists.size(), 4u) << style;
        for (const auto &[artist, count] : artists)
            EXPECT_GE(count, 4) << artist;
    }
    EXPECT_TRUE(moods.size() >= 4 && moods.size() <= 6) << moods.size();
    // Each of the six styles once, then again by other artists.
    std::set<std::string> heardStyles, heardArtists;
    for (const DemoTrack &track : tracksInTurn(2)) {
        heardStyles.insert(track.style);
        heardArtists.insert(track.artist);
        EXPECT_EQ(heardStyles.size(), std::min<size_t>(heardArtists.size(), 6)) << track.id;
    }
    EXPECT_EQ(heardArtists.size(), 12u);
    EXPECT_EQ(tracksInTurn(1000).size(), tracks().size());
}

TEST(catalogue, aRequestedStyleComesFirstThenATrackOfEachStyleThenAdsThenTheRest)
{
    const auto order = [](const char *wanted, const char *made) {
        std::vector<DemoTrack> tracks;
        for (const char *id : {"a1", "b1", "c1", "a2", "b2", "a3"}) {
            tracks.emplace_back().id = id;
            tracks.back().style = id[0];
        }
        MakingOrder making(tracks, [&](const DemoTrack &track) { return track.id == made; });
        making.want({wanted});
        std::string result;
        while (const auto job = making.next()) {
            const auto *next = std::get_if<MakingOrder::Track>(&*job);
            result += (next ? next->track.id + (next->isUrgent ? "!" : "") : "ads") + " ";
        }
        return result;
    };
    EXPECT_EQ(order("", ""), "a1! b1! c1! ads a2 b2 a3 ");
    EXPECT_EQ(order("c", ""), "c1! a1! b1! ads a2 b2 a3 ");
    EXPECT_EQ(order("a", "a2"), "b1! c1! ads a1 b2 a3 ") << "a style with a track is not urgent";
}

TEST(catalogue, idsLengthsYearsTemposAndNamesAreInTheirBounds)
{
    std::set<std::string> ids;
    const auto take = [&](const std::string &id) {
        EXPECT_TRUE(!id.empty() && ids.insert(id).second) << id;
        EXPECT_EQ(id.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-"), std::string::npos) << id;
    };
    const auto isForeign = [](const std::string &text) {
        return std::any_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
    };
    int foreignArtists = 0, foreignSongs = 0, longSongs = 0; // they exercise search and marquee
    for (const DemoTrack &track : tracks()) {
        take(track.id);
        EXPECT_TRUE(track.durationSeconds >= 60 && track.durationSeconds <= 100) << track.id;
        EXPECT_TRUE(track.tempo >= 50 && track.tempo <= 160) << track.id;
        EXPECT_GE(track.year, 1990) << track.id;
        EXPECT_FALSE(track.song.empty() || track.artist.empty() || track.album.empty() || track.mood.empty());
        foreignArtists += isForeign(track.artist);
        foreignSongs += isForeign(track.song);
        longSongs += track.song.size() > 60;
    }
    EXPECT_TRUE(foreignArtists >= 1 && foreignSongs >= 2 && longSongs >= 1);
    EXPECT_GE(ads().size(), 4u);
    for (const DemoAd &ad : ads()) {
        take(ad.id);
        EXPECT_TRUE(ad.durationSeconds >= 5 && ad.durationSeconds <= 12) << ad.id;
        EXPECT_FALSE(ad.title.empty() || ad.line2.empty());
    }
}

TEST(files, aTrackIsTheSameBytesFromTwoThreadsAtOnce)
{
    TemporaryDirectory directory;
    const DemoTrack &track = tracks().back();
    bool first = false, second = false;
    {
        std::jthread one([&] { first = renderTrack(track, directory / "a.flac"); });
        std::jthread two([&] { second = renderTrack(track, directory / "b.flac"); });
    }
    ASSERT_TRUE(first && second);
    EXPECT_EQ(bytes(directory / "a.flac"), bytes(directory / "b.flac"));
}

TEST(files, everyAdvertisementSounds)
{
    TemporaryDirectory directory;
    for (const DemoAd &ad : ads()) {
        SCOPED_TRACE(ad.id);
        ASSERT_TRUE(renderAd(ad, directory / "ad.flac"));
        expectSound(decode(directory / "ad.flac"), ad.durationSeconds);
    }
}

TEST(files, oneTrackOfEachStyleSoundsFromTheFirstSecondsToTheLast)
{
    TemporaryDirectory directory;
    std::set<std::string> styles;
    for (const DemoTrack &track : tracks()) {
        if (!styles.insert(track.style).second)
            continue;
        SCOPED_TRACE(track.id);
        ASSERT_TRUE(renderTrack(track, directory / "track.flac"));
        const Decoded sound = decode(directory / "track.flac");
        expectSound(sound, track.durationSeconds);
        EXPECT_TRUE(sound.tags.contains("TITLE=" + track.song) && sound.tags.contains("ARTIST=" + track.artist));
        for (double at = 2; at < track.durationSeconds - 6; at += 2)
            EXPECT_GT(sound.decibels(at, at + 2), -42) << "silence at " << at;
    }
}

TEST(files, picturesAreSquareAndShownByAllTracksOfAnAlbum)
{
    TemporaryDirectory directory;
    std::map<std::string, std::string> albums;
    std::set<std::string> different;
    std::vector<std::string> ids;
    for (const DemoTrack &track : tracks())
        ids.push_back(track.id);
    for (const DemoAd &ad : ads())
        ids.push_back(ad.id);
    for (const std::string &id : ids) {
        const fs::path file = directory / (id + ".png");
        ASSERT_TRUE(renderPicture(id, file)) << id;
        cairo_surface_t *surface = cairo_image_surface_create_from_png(file.c_str());
        EXPECT_EQ(cairo_surface_status(surface), CAIRO_STATUS_SUCCESS) << id;
        EXPECT_EQ(cairo_image_surface_get_width(surface), 480) << id;
        EXPECT_EQ(cairo_image_surface_get_height(surface), 480) << id;
        cairo_surface_destroy(surface);
        different.insert(bytes(file));
    }
    for (const DemoTrack &track : tracks()) {
        const std::string picture = bytes(directory / (track.id + ".png"));
        EXPECT_EQ(albums.try_emplace(track.album, picture).first->second, picture) << track.id;
    }
    EXPECT_EQ(different.size(), albums.size() + ads().size()) << "albums and advertisements have pictures of their own";
}

TEST(files, anInterruptedFolderIsCompletedAndItsUnfinishedFilesRemoved)
{
    TemporaryDirectory directory;
    const fs::path root = directory / "demo";
    const std::vector<DemoTrack> two = {tracks().front(), tracksInTurn(1).back()};
    DemoFolder folder(root, two);
    ASSERT_TRUE(folder.prepare());
    const fs::path made = folder.fileOf(two[0]), missing = folder.fileOf(two[1]);
    std::ofstream(root / made) << "there";
    std::ofstream(root / (made.string() + ".Xy12Zq")) << "unfinished";
    for (const DemoAd &ad : ads())
        std::ofstream(root / "ads" / (ad.id + ".flac")) << "there";
    ASSERT_TRUE(folder.prepare());
    EXPECT_FALSE(fs::exists(root / (made.string() + ".Xy12Zq")));
    EXPECT_NE(bytes(root / "ads.json").find("\"file\": \"ads/" + ads().front().id + ".flac\""), std::string::npos);
    MakingOrder order(two, [&](const DemoTrack &track) { return folder.has(folder.fileOf(track)); });
    std::vector<fs::path> reported;
    folder.make(order, [&](const fs::path &file, bool isMade) {
        EXPECT_TRUE(isMade);
        reported.push_back(file);
    });
    EXPECT_EQ(reported, std::vector{missing});
    EXPECT_EQ(bytes(root / made), "there");
    EXPECT_EQ(bytes(root / missing).substr(0, 4), "fLaC");
    EXPECT_EQ(bytes((root / missing).parent_path() / "cover.png").substr(1, 3), "PNG");
    EXPECT_TRUE(missing.string().starts_with("music/" + two[1].artist + "/" + two[1].album + "/01 "));
}

TEST(files, whatCannotBeMadeIsRefusedAndLeavesNothingBehind)
{
    TemporaryDirectory directory;
    DemoTrack unknown = tracks().front();
    unknown.id = "unknown";
    EXPECT_FALSE(renderTrack(unknown, directory / "a.flac"));
    EXPECT_FALSE(renderAd({"unknown", "", "", 5}, directory / "a.flac"));
    EXPECT_FALSE(renderPicture("unknown", directory / "a.png"));
    // A directory in the file's place: the temporary file can be written, but not renamed.
    ASSERT_TRUE(fs::create_directory(directory / "taken"));
    std::ofstream(directory / "taken/inside") << "kept";
    for (const char *place : {"taken", "missing/a"}) {
        EXPECT_FALSE(renderAd(ads().front(), directory / place)) << place;
        EXPECT_FALSE(renderPicture(ads().front().id, directory / place)) << place;
    }
    EXPECT_EQ(entries(directory), 1);
    EXPECT_EQ(bytes(directory / "taken/inside"), "kept");
}

TEST(files, aFullDiskIsNoticedAndLeavesTheOldFile)
{
    TemporaryDirectory directory;
    const fs::path file = directory / "a.flac";
    std::ofstream(file) << "old";
    // A limit on the size of files stands in for a full disk.
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{60000, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const bool written = renderAd(ads().front(), file);
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_FALSE(written);
    EXPECT_EQ(bytes(file), "old");
    EXPECT_EQ(entries(directory), 1);
}

TEST(files, samplesBeyondFullScaleAreClippedNotWrapped)
{
    TemporaryDirectory directory;
    const Buffer loud{0, 2, -2, 1, -1, 0.5f};
    ASSERT_TRUE(writeFlac(loud, loud, {}, directory / "a.flac"));
    const Decoded sound = decode(directory / "a.flac");
    ASSERT_EQ(sound.left.size(), 6u);
    EXPECT_EQ(sound.left[0], 0); // silence stays silent
    EXPECT_NEAR(sound.left[1], 1, 1e-4);
    EXPECT_NEAR(sound.left[2], -1, 1e-4);
    EXPECT_NEAR(sound.left[5], 0.5, 1e-4);
}

TEST(files, severalWritersOfOneFileDoNotDisturbEachOther)
{
    TemporaryDirectory directory;
    const fs::path file = directory / "a";
    {
        AtomicFile first(file), second(file), dropped(file);
        ASSERT_TRUE(first.isOpen() && second.isOpen() && dropped.isOpen());
        std::fputs("first", first.stream());
        std::fputs("second", second.stream());
        std::fputs("dropped", dropped.stream());
        EXPECT_FALSE(fs::exists(file));
        EXPECT_TRUE(second.commit());
        EXPECT_EQ(bytes(file), "second");
        EXPECT_TRUE(first.commit());
        EXPECT_FALSE(first.commit()) << "once only";
    }
    EXPECT_EQ(bytes(file), "first");
    EXPECT_EQ(entries(directory), 1);
    EXPECT_EQ(fs::status(file).permissions() & (fs::perms::group_all | fs::perms::others_all), fs::perms::none);
}

} // namespace
