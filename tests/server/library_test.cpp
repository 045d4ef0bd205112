// Own music: unusual folders, changes in them, missing folders, hostile files.

#include "server/demolibrary.h"
#include "server/library/library.h"
#include "server/media/reading.h"
#include "serverfixture.h"

#include <fcntl.h>
#include <fileref.h>
#include <fstream>
#include <id3v2framefactory.h>
#include <id3v2tag.h>
#include <mpegfile.h>
#include <random>
#include <sndfile.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <tag.h>

namespace velmora::server {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

struct Piece {
    std::string song;
    std::string artist;
    std::string album = "One Album";
    std::string style = "folk";
    double seconds = 22;
    unsigned seed = 0; // each seed gives a different piece; 0: derived from the song's name
};

// Chords that change every half second, with noise, in the format of the file's extension.
void writeMusic(const fs::path &file, const Piece &piece, std::string extension = {})
{
    constexpr int rate = 16000;
    if (extension.empty())
        extension = file.extension();
    SF_INFO info{};
    info.samplerate = rate;
    info.channels = 1;
    info.format = extension == ".flac"   ? SF_FORMAT_FLAC | SF_FORMAT_PCM_16
                  : extension == ".mp3"  ? SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III
                  : extension == ".ogg"  ? SF_FORMAT_OGG | SF_FORMAT_VORBIS
                  : extension == ".opus" ? SF_FORMAT_OGG | SF_FORMAT_OPUS
                  : extension == ".aiff" ? SF_FORMAT_AIFF | SF_FORMAT_PCM_16
                                         : SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    fs::create_directories(file.parent_path());
    SNDFILE *sound = sf_open(file.c_str(), SFM_WRITE, &info);
    ASSERT_NE(sound, nullptr) << file << sf_strerror(nullptr);
    sf_set_string(sound, SF_STR_TITLE, piece.song.c_str());
    sf_set_string(sound, SF_STR_ARTIST, piece.artist.c_str());
    sf_set_string(sound, SF_STR_ALBUM, piece.album.c_str());
    sf_set_string(sound, SF_STR_GENRE, piece.style.c_str());
    std::mt19937 random(piece.seed != 0 ? piece.seed : static_cast<unsigned>(std::hash<std::string>()(piece.song)));
    std::vector<float> samples(static_cast<size_t>(piece.seconds * rate));
    double hertz = 0;
    for (size_t i = 0; i < samples.size(); ++i) {
        if (i % (rate / 2) == 0)
            hertz = 110 * std::exp2(random() % 24 / 12.0);
        const double at = static_cast<double>(i) / rate;
        samples[i] = static_cast<float>(0.2 * std::sin(6.2831853 * hertz * at) + 0.1 * std::sin(9.42 * hertz * at) +
                                        0.02 * (random() % 1000) / 1000.0);
    }
    sf_writef_float(sound, samples.data(), static_cast<sf_count_t>(samples.size()));
    sf_close(sound);
}

void retag(const fs::path &file, const char *song)
{
    TagLib::FileRef tags(file.c_str());
    tags.tag()->setTitle(song);
    tags.tag()->setComment(std::string(3000, 'c'));
    ASSERT_TRUE(tags.save());
}

class LibraryTest : public ServerTest {
protected:
    Listening listening(const Station &station)
    {
        return Listening::ofAccount(m_service->store, station.accountId, station.token, *m_now);
    }
    LibraryTest()
    {
        fs::create_directory(m_music);
        // The fixture's own tracks would be in the way.
        clearCatalogue();
    }

    Library &library()
    {
        if (!m_library) {
            m_settings.dataDirectory = m_service->dataDirectory();
            if (m_settings.config.folders.empty() && m_settings.configFile.empty())
                m_settings.config.folders = {m_music};
            m_settings.workerProgram = VELMORA_MEDIA_PROGRAM;
            m_settings.tick = 50ms;
            m_settings.awayTick = 100ms;
            m_settings.storePause = 100ms;
            m_library = std::make_unique<Library>(
                m_service->store, m_service->catalogue, [now = m_now] { return now->load(); }, m_settings);
            m_library->start();
        }
        return *m_library;
    }
    void scan()
    {
        const bool isRunning = m_library != nullptr;
        const int64_t before = isRunning ? m_library->status().scans : 0;
        if (isRunning)
            library().rescan();
        ASSERT_TRUE(library().waitUntilDone(500s, before + 1));
    }
    void restart()
    {
        m_library.reset();
        library();
    }
    // Why a file is left out, by its name; "plays" when it is not.
    std::string fate(const std::string &path)
    {
        const Store::Lock db = m_service->store.lock();
        Statement row = db->prepare("SELECT left_out, missing_since IS NOT NULL FROM files WHERE path = ?1");
        row.with(Blob{path});
        if (!row.step())
            return "unknown";
        return row.integer(1) != 0 ? "missing" : row.text(0).empty() ? "plays" : row.text(0);
    }
    int64_t trackAt(const std::string &path)
    {
        const Store::Lock db = m_service->store.lock();
        Statement row = db->prepare("SELECT COALESCE(track_id, 0) FROM files WHERE path = ?1");
        row.with(Blob{path});
        return row.step() ? row.integer(0) : 0;
    }
    bool isDescribed(int64_t track)
    {
        const Store::Lock db = m_service->store.lock();
        Statement row = db->prepare("SELECT 1 FROM descriptors WHERE track_id = ?1");
        row.with(track);
        return row.step();
    }
    int64_t playing() { return m_service->catalogue.counts().playable; }
    static bool until(const std::function<bool()> &isSo)
    {
        for (int i = 0; i < 25000; ++i) {
            if (isSo())
                return true;
            std::this_thread::sleep_for(20ms);
        }
        return false;
    }

    const fs::path m_music = m_directory.path() / "music";
    LibrarySettings m_settings;
    std::unique_ptr<Library> m_library;
};

TEST_F(LibraryTest, AFolderWithEveryOddityBecomesItsMusic)
{
    const std::string notUtf8 = "caf\xe9 \xff.flac";
    const std::string longName = std::string(250, 'n') + ".flac";
    writeMusic(m_music / "Lichen Choir/Moss/01 - Stone.flac", {"Stone", "Lichen Choir"});
    writeMusic(m_music / "a.mp3", {"Fern", "Lichen Choir feat. Somebody"});
    writeMusic(m_music / "b.ogg", {"Bark", "Paper Harbour"});
    writeMusic(m_music / "c.opus", {"Root", "Paper Harbour"});
    writeMusic(m_music / "d.wav", {"Reed", "Paper Harbour"});
    writeMusic(m_music / "lie.mp3", {"Really Vorbis", "Paper Harbour"}, ".ogg");
    writeMusic(m_music / notUtf8, {"Odd Name", "Paper Harbour"});
    writeMusic(m_music / longName, {"Long Name", "Paper Harbour"});
    writeMusic(m_music / "Nobody/Untold/07 - Path Title.wav", {"", "", "", ""});
    writeMusic(m_music / "jingle.flac", {"Jingle", "Paper Harbour", "One Album", "folk", 6});
    writeMusic(m_music / "book.flac", {"Chapter", "Reader", "Book", "Audiobook"});
    writeMusic(m_music / "e.aiff", {"Other Kind", "Paper Harbour"});
    writeMusic(m_music / ".hidden/h.flac", {"Hidden", "H"});
    writeMusic(m_music / "ignored/i.flac", {"Ignored", "I"});
    writeMusic(m_music / "skip me/s.flac", {"Skipped", "S"});
    std::ofstream(m_music / "ignored/.nomedia");
    std::ofstream(m_music / "empty.mp3");
    std::ofstream(m_music / "noise.mp3") << std::string(100000, '\x55');
    std::ofstream(m_music / "notes.txt") << "no music";
    fs::create_symlink(m_music, m_music / "Nobody/loop");
    fs::create_symlink("nowhere", m_music / "dangling.flac");
    ASSERT_EQ(::mkfifo((m_music / "pipe.mp3").c_str(), 0600), 0);
    fs::copy_file(m_music / "a.mp3", m_music / "copy of a.mp3");
    m_settings.config.folders = {m_music};
    m_settings.config.excluded = {"skip*"};
    scan();

    const std::map<std::string, std::string> expected = {{"Lichen Choir/Moss/01 - Stone.flac", "plays"},
                                                         {"a.mp3", "plays"},
                                                         {"b.ogg", "plays"},
                                                         {"c.opus", "plays"},
                                                         {"d.wav", "plays"},
                                                         {"lie.mp3", "plays"},
                                                         {notUtf8, "plays"},
                                                         {longName, "plays"},
                                                         {"Nobody/Untold/07 - Path Title.wav", "plays"},
                                                         {"jingle.flac", "short"},
                                                         {"book.flac", "speech"},
                                                         {"e.aiff", "kind"},
                                                         {".hidden/h.flac", "unknown"},
                                                         {"ignored/i.flac", "unknown"},
                                                         {"skip me/s.flac", "unknown"},
                                                         {"empty.mp3", "empty"},
                                                         {"noise.mp3", "damaged"},
                                                         {"notes.txt", "unknown"},
                                                         {"dangling.flac", "unknown"},
                                                         {"pipe.mp3", "unknown"},
                                                         {"copy of a.mp3", "duplicate"}};
    for (const auto &[path, reason] : expected)
        EXPECT_EQ(fate(path), reason) << printable(path);
    EXPECT_EQ(playing(), 9);
    const std::optional<Track> untagged = m_service->catalogue.track(trackAt("Nobody/Untold/07 - Path Title.wav"));
    EXPECT_EQ(untagged->song + "/" + untagged->artist + "/" + untagged->album, "Path Title/Nobody/Untold");
    EXPECT_EQ(m_service->catalogue.track(trackAt("a.mp3"))->artist, "Lichen Choir");
    EXPECT_EQ(m_service->catalogue.track(trackAt("lie.mp3"))->audioType, "audio/ogg");

    // A listener finds the music, makes a station from it and hears it.
    const std::string user = newListener();
    const json artists = data("search", {{"text", "paper harb"}}, user).at("artists");
    ASSERT_EQ(artists.size(), 1u);
    const std::string station =
        data("createStation", {{"musicToken", artists[0]["musicToken"]}}, user).at("station").at("stationToken");
    listen();
    const json track = firstTrack(user, station);
    const std::string address = track.at("audioUrl");
    const HttpAnswer answer = httpGet(m_server->port(), address.substr(m_service->addresses.base().size()));
    ASSERT_EQ(answer.status, 200);
    EXPECT_GT(answer.body.size(), 10000u);
    const double gain = std::stod(answer.header("Velmora-Gain"));
    EXPECT_TRUE(gain > -15 && gain < 9) << gain;
    EXPECT_NEAR(std::stod(answer.header("Velmora-Peak")), 0.3, 0.1);
    const Store::Lock db = m_service->store.lock();
    Statement numbers = db->prepare("SELECT COUNT(*) FROM descriptors WHERE length(numbers) = 288");
    numbers.step();
    EXPECT_GE(numbers.integer(0), 9);
}

TEST_F(LibraryTest, MovedRetaggedAndReplacedFilesKeepTheirThumbs)
{
    for (const char *song : {"One", "Two", "Three", "Four"})
        writeMusic(m_music / (std::string(song) + ".flac"), {song, "Lichen Choir"});
    writeMusic(m_music / "v.ogg", {"Vorbis", "Lichen Choir"});
    scan();
    const int64_t one = trackAt("One.flac");
    const int64_t two = trackAt("Two.flac"), three = trackAt("Three.flac");
    const int64_t four = trackAt("Four.flac"), vorbis = trackAt("v.ogg");
    scan();
    EXPECT_EQ(library().status().changed, 0) << "unchanged files are not read again";

    // A moved file; changed tags, which shift the audio within the file; two files that swap names; a deleted file.
    retag(m_music / "One.flac", "One, Renamed");
    retag(m_music / "v.ogg", "Vorbis, Renamed");
    fs::create_directory(m_music / "sub");
    fs::rename(m_music / "v.ogg", m_music / "sub/w.ogg");
    fs::rename(m_music / "One.flac", m_music / "sub/1.flac");
    fs::rename(m_music / "Two.flac", m_music / "x");
    fs::rename(m_music / "Three.flac", m_music / "Two.flac");
    fs::rename(m_music / "x", m_music / "Three.flac");
    fs::rename(m_music / "Four.flac", m_directory.path() / "Four.flac");
    scan();
    EXPECT_EQ(trackAt("sub/1.flac"), one);
    EXPECT_EQ(trackAt("sub/w.ogg"), vorbis);
    EXPECT_EQ(m_service->catalogue.track(vorbis)->song, "Vorbis, Renamed");
    EXPECT_EQ(trackAt("Two.flac"), three);
    EXPECT_EQ(trackAt("Three.flac"), two);
    EXPECT_EQ(fate("Four.flac"), "missing");
    EXPECT_FALSE(m_service->catalogue.track(four)->isPlayable);
    EXPECT_EQ(playing(), 4);
    restart();
    scan();
    EXPECT_EQ(library().status().changed, 0);
    fs::rename(m_directory.path() / "Four.flac", m_music / "sub/again.flac");
    scan();
    EXPECT_EQ(trackAt("sub/again.flac"), four);

    // A better encoding of the same song keeps its track; another song in its place does not.
    writeMusic(m_music / "Two.flac", {"Three", "Lichen Choir", "One Album", "folk", 22, 77});
    fs::copy_file(m_music / "Three.flac", m_directory.path() / "kept.flac");
    writeMusic(m_music / "Three.flac", {"Something Else", "Lichen Choir"});
    scan();
    EXPECT_EQ(trackAt("Two.flac"), three);
    EXPECT_NE(trackAt("Three.flac"), two);
    EXPECT_FALSE(m_service->catalogue.track(two)->isPlayable);
    fs::rename(m_directory.path() / "kept.flac", m_music / "back.flac");
    scan();
    EXPECT_EQ(trackAt("back.flac"), two);
    EXPECT_TRUE(m_service->catalogue.track(two)->isPlayable);

    // A song that was away takes its place back from another one.
    const int64_t guest = trackAt("Three.flac");
    fs::rename(m_music / "back.flac", m_directory.path() / "kept.flac");
    scan();
    fs::rename(m_directory.path() / "kept.flac", m_music / "Three.flac");
    scan();
    EXPECT_EQ(trackAt("Three.flac"), two);
    EXPECT_FALSE(m_service->catalogue.track(guest)->isPlayable) << "it has no file";
    fs::rename(m_music / "Three.flac", m_music / "back.flac");
    scan();
    EXPECT_EQ(trackAt("back.flac"), two);

    // Two files swap names, and only one of them has been analysed.
    library().setPaused(true);
    {
        const Store::Lock db = m_service->store.lock();
        db->run("DELETE FROM descriptors WHERE track_id = ?1", one);
        db->run("UPDATE files SET analysis_version = 0 WHERE track_id = ?1", one);
    }
    fs::rename(m_music / "back.flac", m_music / "x");
    fs::rename(m_music / "sub/1.flac", m_music / "back.flac");
    fs::rename(m_music / "x", m_music / "sub/1.flac");
    library().setPaused(false);
    scan();
    EXPECT_EQ(trackAt("back.flac"), one);
    EXPECT_EQ(trackAt("sub/1.flac"), two);
    EXPECT_TRUE(isDescribed(one));
    EXPECT_TRUE(isDescribed(two));
}

TEST_F(LibraryTest, TheBestPresentFileOfARecordingPlays)
{
    const Piece piece{"Twice", "Lichen Choir", "One Album", "folk", 24, 5};
    writeMusic(m_music / "a.ogg", piece);
    writeMusic(m_music / "b.flac", piece);
    fs::copy_file(m_music / "b.flac", m_music / "c.flac");
    scan();
    EXPECT_EQ(playing(), 1);
    EXPECT_EQ(fate("a.ogg"), "duplicate");
    EXPECT_EQ(fate("b.flac"), "plays");
    // What a listener said of the file that no longer plays is said of the recording.
    const std::string user = newListener();
    const int64_t replaced = trackAt("a.ogg"), plays = trackAt("b.flac");
    const auto thumb = [&](int64_t track) {
        m_service->store.lock()->run("INSERT INTO feedback (account_id, station_id, track_id, is_positive, given_at) "
                                     "SELECT account_id, id, ?1, 0, 1 FROM stations",
                                     track);
    };
    const auto isRated = [&](int64_t track) {
        const Store::Lock db = m_service->store.lock();
        Statement row = db->prepare("SELECT 1 FROM feedback WHERE track_id = ?1");
        row.with(track);
        return row.step();
    };
    thumb(replaced);
    const Station station = m_service->stations.list(idOf()).at(0);
    EXPECT_TRUE(m_service->playlists.next(listening(station)).empty()) << "nothing else is there";
    fs::rename(m_music / "a.ogg", m_directory.path() / "a.ogg");
    scan();
    *m_now += 91 * 24 * 3600;
    scan();
    EXPECT_EQ(fate("a.ogg"), "unknown");
    EXPECT_TRUE(isRated(plays));
    fs::rename(m_directory.path() / "a.ogg", m_music / "a.ogg");
    scan();
    fs::remove(m_music / "b.flac");
    fs::remove(m_music / "c.flac");
    scan();
    EXPECT_EQ(fate("a.ogg"), "plays");
    EXPECT_EQ(playing(), 1);
}

TEST_F(LibraryTest, AMissingFolderLosesNothingAndFoldersComeAndGoWithoutARestart)
{
    const fs::path second = m_directory.path() / "second";
    const fs::path config = m_directory.path() / "server.conf";
    writeMusic(m_music / "a.flac", {"Stays", "Lichen Choir"});
    writeMusic(second / "b.flac", {"Added", "Paper Harbour"});
    const auto configure = [&](const std::string &text) {
        std::ofstream(config.string() + ".new") << "[library]\n" << text;
        fs::rename(config.string() + ".new", config);
    };
    configure("music = " + m_music.string() + "\n");
    m_settings.configFile = config;
    scan();
    const int64_t stays = trackAt("a.flac");
    EXPECT_EQ(playing(), 1);
    configure("music = " + m_music.string() + "\nmusic=" + second.string() + "\n");
    EXPECT_TRUE(until([&] { return playing() == 2; }));
    configure("music = nonsense\n");
    EXPECT_TRUE(until([&] { return !library().status().configProblem.empty(); }));
    EXPECT_EQ(playing(), 2) << "a configuration that cannot be read changes nothing";

    fs::rename(m_music, m_directory.path() / "unplugged");
    EXPECT_TRUE(until([&] { return playing() == 1; }));
    EXPECT_EQ(fate("a.flac"), "plays") << "a folder that is away is not deleted";
    listen();
    const std::string id = m_service->catalogue.track(stays)->publicId;
    const std::string address = m_service->addresses.path(MediaKind::Audio, id + ".flac", addAccount());
    EXPECT_EQ(httpGet(m_server->port(), address).status, 503);
    // A mount point without its disk is an empty folder.
    fs::create_directory(m_music);
    EXPECT_TRUE(until([&] {
        const std::vector<Root> roots = library().status().roots;
        return std::any_of(roots.begin(), roots.end(),
                           [](const Root &root) { return root.problem.find("empty") != std::string::npos; });
    }));
    EXPECT_EQ(fate("a.flac"), "plays");
    fs::remove(m_music);
    fs::rename(m_directory.path() / "unplugged", m_music);
    EXPECT_TRUE(until([&] { return playing() == 2; }));
    EXPECT_EQ(trackAt("a.flac"), stays);
    configure("music = " + second.string() + "\n");
    EXPECT_TRUE(until([&] { return playing() == 1 && !m_service->catalogue.track(stays)->isPlayable; }));
}

TEST_F(LibraryTest, TheDemoCatalogueAndOwnMusicPlaySideBySideAndAdsFollowTheDemoOnly)
{
    const fs::path folder = m_directory.path() / "demo", program = m_directory.path() / "program";
    for (const char *song : {"Own One", "Own Two", "Own Three"})
        writeMusic(m_music / (std::string(song) + ".flac"), {song, std::string("By ") + song, "Own", "Polka"});
    // The program writes a track once somebody wants its style.
    writeMusic(m_directory.path() / "wanted.flac", {"Made", "The Makers", "Made Up", "Small-Band Swing"});
    std::ofstream(program) << "#!/bin/sh\nfor folder; do :; done\n"
                           << R"(mkdir -p "$folder/music/album"; echo >"$folder/ad.flac"
echo '{"ads": [{"id": "an-ad", "file": "ad.flac", "picture": "", "title": "T", "line2": "", "durationSeconds": 8}]}' \
  >"$folder/ads.json"
echo style Small-Band Swing; echo ready 0 1; read style; mv "$folder/../wanted.flac" "$folder/music/album/01 Made.flac"
echo made music/album/01 Made.flac; cat >/dev/null
)";
    fs::permissions(program, fs::perms::owner_all);
    DemoLibrary demo(m_service->catalogue, {program, folder}, [](const std::string &) {});
    demo.start();
    m_settings.demoFolders = {DemoLibrary::musicIn(folder)};
    scan();
    EXPECT_EQ(playing(), 3);
    const std::string user = newListener();
    Station own, made;
    const auto create = [&](const char *style, Station *station) {
        return m_service->stations.create(idOf(), {MusicKind::Style, style}, station);
    };
    EXPECT_EQ(create("Polka", &own), StationResult::Done);
    EXPECT_EQ(create("Small-Band Swing", &made), StationResult::Done) << "a style without any track yet";
    m_service->catalogue.want(m_service->playlists.styles(listening(made)));
    ASSERT_TRUE(until([&] { return playing() == 4; })) << "a new file is read without a full scan";
    EXPECT_EQ(library().status().scans, 1);
    EXPECT_TRUE(m_service->catalogue.track(trackAt("album/01 Made.flac"))->isDemo);
    int ads = 0, misplaced = 0, demoTracks = 0;
    for (int list = 0; list < 20; ++list) {
        const std::vector<PlaylistEntry> entries = m_service->playlists.next(listening(list % 2 ? own : made));
        for (size_t i = 0; i < entries.size(); ++i) {
            demoTracks += entries[i].track && entries[i].track->track.isDemo;
            ads += entries[i].ad.has_value();
            misplaced += entries[i].ad && !entries[i - 1].track->track.isDemo;
        }
    }
    EXPECT_TRUE(ads > 0 && demoTracks > 0) << ads << " " << demoTracks;
    EXPECT_EQ(misplaced, 0);
}

TEST_F(LibraryTest, CoversComeFromTagsOrTheFolderAndHostileOnesAreRefused)
{
    const std::string png("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\xff\xff\0\0\xff\xff\x08\x02\0\0\0", 29);
    EXPECT_THROW(media::scaledCover(png), std::runtime_error) << "a decompression bomb";
    EXPECT_THROW(media::scaledCover(png + "acTL"), std::runtime_error) << "an animation";
    EXPECT_THROW(media::scaledCover("GIF89a"), std::runtime_error);
    const fs::path artwork = fs::path(VELMORA_SOURCE_DIR) / "resources/images/NoThumbnail.png";
    writeMusic(m_music / "A/a.flac", {"A", "Lichen Choir", "With"});
    writeMusic(m_music / "B/b.flac", {"B", "Lichen Choir", "Without"});
    writeMusic(m_music / "C/c.flac", {"C", "Lichen Choir", "Damaged"});
    fs::copy_file(artwork, m_music / "A/Folder.PNG");
    std::ofstream(m_music / "C/cover.jpg") << "\xff\xd8\xff\xe0 no picture";
    scan();
    const fs::path picture = m_service->catalogue.track(trackAt("A/a.flac"))->pictureFile;
    ASSERT_EQ(picture.extension(), ".jpg");
    std::ifstream file(picture, std::ios::binary);
    const std::string jpeg{std::istreambuf_iterator<char>(file), {}};
    EXPECT_TRUE(jpeg.starts_with("\xff\xd8\xff"));
    EXPECT_EQ(media::scaledCover(jpeg).substr(0, 3), "\xff\xd8\xff") << "it can be decoded";
    EXPECT_EQ(m_service->catalogue.track(trackAt("B/b.flac"))->pictureFile, "");
    EXPECT_EQ(m_service->catalogue.track(trackAt("C/c.flac"))->pictureFile, "");

    // A new picture in the folder of unchanged music.
    const auto bytesOf = [](const fs::path &name) {
        std::ifstream stream(name, std::ios::binary);
        return std::string{std::istreambuf_iterator<char>(stream), {}};
    };
    fs::copy_file(artwork.parent_path() / "AlbumIcon@3x.png", m_music / "A/Folder.PNG",
                  fs::copy_options::overwrite_existing);
    scan();
    EXPECT_EQ(library().status().changed, 0);
    EXPECT_NE(bytesOf(picture), jpeg);
    fs::remove_all(m_music / "B"); // what plays now has a cover
    fs::remove_all(m_music / "C");
    scan();
    listen();
    const std::string user = newListener();
    EXPECT_NE(firstTrack(user, tapestryToken(user)).at("albumArtUrl").dump().find("/media/"), std::string::npos);
    EXPECT_NE(m_service->catalogue.pictureOfArtist(m_service->catalogue.track(trackAt("A/a.flac"))->artistId)
                  .value_or("")
                  .find(".jpg"),
              std::string::npos);
}

TEST_F(LibraryTest, AFileGoneForNinetyDaysIsForgottenUnlessManyVanishedTogether)
{
    writeMusic(m_music / "one.flac", {"One", "Lichen Choir"});
    writeMusic(m_music / "stays.flac", {"Stays", "Paper Harbour"});
    for (int i = 0; i < 60; ++i)
        std::ofstream(m_music / ("many" + std::to_string(i) + ".mp3")) << "no sound";
    scan();
    const auto files = [&] { return library().store().counts().files; };
    EXPECT_EQ(files(), 62);
    fs::remove(m_music / "one.flac");
    scan();
    const std::vector<LibraryChange> recent = library().recentChanges();
    EXPECT_TRUE(recent.front().kind == LibraryChange::Kind::Gone && recent.front().file == m_music / "one.flac");
    EXPECT_TRUE(recent.back().kind == LibraryChange::Kind::New);
    for (int i = 0; i < 60; ++i)
        fs::remove(m_music / ("many" + std::to_string(i) + ".mp3"));
    scan();
    EXPECT_EQ(library().store().counts().missing, 61);
    *m_now += 89 * 24 * 3600;
    scan();
    EXPECT_EQ(files(), 62);
    *m_now += 2 * 24 * 3600;
    scan();
    EXPECT_EQ(files(), 61) << "sixty at once look like a fault and not like a decision";
    EXPECT_EQ(fate("one.flac"), "unknown");
    EXPECT_TRUE(m_service->search.find("lichen").artists.empty());
    EXPECT_EQ(library().store().dropAllMissing(), 60);
    EXPECT_EQ(playing(), 1);

    // What once took too long has another chance a day later.
    m_service->store.lock()->run("UPDATE files SET left_out = 'slow', noted_at = ?1", m_now->load());
    restart();
    ASSERT_TRUE(library().waitUntilDone(500s, 1));
    EXPECT_EQ(fate("stays.flac"), "slow");
    *m_now += 25 * 3600;
    restart();
    ASSERT_TRUE(library().waitUntilDone(500s, 1));
    EXPECT_EQ(fate("stays.flac"), "plays");
}

// The bytes of Windows-1251, called Latin-1 in the file.
void tagInOldRussian(const fs::path &file, const std::u16string &song, const std::u16string &artist)
{
    const auto text = [](const std::u16string &cyrillic) {
        TagLib::ByteVector bytes;
        for (const char16_t letter : cyrillic)
            bytes.append(static_cast<char>(letter < 0x80 ? letter : letter - 0x410 + 0xc0));
        return TagLib::String(bytes, TagLib::String::Latin1);
    };
    TagLib::MPEG::File tags(file.c_str());
    TagLib::ID3v2::Tag *tag = tags.ID3v2Tag(true);
    TagLib::ID3v2::FrameFactory::instance()->setDefaultTextEncoding(TagLib::String::Latin1);
    tag->setTitle(text(song));
    tag->setArtist(text(artist));
    tag->setAlbum({});
    ASSERT_TRUE(tags.save(TagLib::MPEG::File::ID3v2));
}

TEST_F(LibraryTest, OldTextsAreReadInTheCharacterSetOfTheirFolder)
{
    const std::vector<std::pair<std::u16string, std::string>> songs = {
        {u"Мы", "Мы"},     {u"Лето", "Лето"}, {u"Тихий вечер", "Тихий вечер"},
        {u"Шум", "Шум"},   {u"Эхо", "Эхо"},   {u"Дорога домой", "Дорога домой"},
        {u"Юг", "Юг"},     {u"Снег", "Снег"}, {u"Последний поезд", "Последний поезд"},
        {u"Ночь", "Ночь"}, {u"Щука", "Щука"}, {u"Белые облака", "Белые облака"}};
    const auto write = [&](size_t i) {
        const fs::path file = m_music / "old" / (std::to_string(i) + ".mp3");
        writeMusic(file, {std::to_string(i), "x"});
        tagInOldRussian(file, songs[i].first, u"Хор");
    };
    const auto nameOf = [&](size_t i) {
        const auto track = m_service->catalogue.track(trackAt("old/" + std::to_string(i) + ".mp3"));
        return track ? track->song + " / " + track->artist : std::string();
    };
    for (size_t i = 1; i < songs.size(); ++i)
        write(i);
    scan();
    for (size_t i = 1; i < songs.size(); ++i)
        EXPECT_EQ(nameOf(i), songs[i].second + " / Хор");
    write(0); // comes later, by itself
    EXPECT_TRUE(until([&] { return nameOf(0) == songs[0].second + " / Хор"; })) << nameOf(0);
}

TEST_F(LibraryTest, DamagedFilesHarmNoOthersAndTheWorkerIsConfined)
{
    writeMusic(m_directory.path() / "seed.flac", {"Seed", "S", "S", "folk", 1});
    writeMusic(m_directory.path() / "seed.mp3", {"Seed", "S", "S", "folk", 1});
    writeMusic(m_directory.path() / "seed.ogg", {"Seed", "S", "S", "folk", 1});
    std::mt19937 random(11);
    media::MediaWorker worker(VELMORA_MEDIA_PROGRAM);
    int answered = 0;
    for (int i = 0; i < 90; ++i) {
        const fs::path seed = m_directory.path() / (i % 3 == 0 ? "seed.flac" : i % 3 == 1 ? "seed.mp3" : "seed.ogg");
        std::ifstream stream(seed, std::ios::binary);
        std::string bytes{std::istreambuf_iterator<char>(stream), {}};
        for (int change = 0; change < 1 + i / 4; ++change)
            bytes[random() % (i % 2 == 0 ? 400 : bytes.size())] = static_cast<char>(random());
        if (i % 5 == 0)
            bytes.resize(random() % bytes.size());
        const fs::path mutant = m_directory.path() / "mutant";
        std::ofstream(mutant, std::ios::binary) << bytes;
        FileStamp stamp;
        const int file = openRegular(AT_FDCWD, mutant, &stamp);
        media::MediaTags tags;
        media::MediaAnalysis analysis;
        std::string problem;
        for (const media::Outcome outcome :
             {worker.readTags(file, &tags, &problem), worker.analyse(file, 1, &analysis, &problem)}) {
            answered += outcome == media::Outcome::Done || outcome == media::Outcome::Refused;
            EXPECT_NE(outcome, media::Outcome::NoWorker) << i << problem;
            EXPECT_NE(outcome, media::Outcome::TooSlow) << i;
        }
        ::close(file);
    }
    EXPECT_GE(answered, 170);

    std::ifstream children("/proc/thread-self/children");
    std::string child;
    ASSERT_TRUE(children >> child);
    std::ifstream status("/proc/" + child + "/status");
    const std::string lines{std::istreambuf_iterator<char>(status), {}};
    EXPECT_NE(lines.find("Seccomp:\t2"), std::string::npos);
    EXPECT_NE(lines.find("NoNewPrivs:\t1"), std::string::npos);

    // The file is not to blame when the worker exits at once; it is when the worker is killed.
    media::MediaTags tags;
    std::string problem;
    const int file = ::open((m_directory.path() / "seed.flac").c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(media::MediaWorker("/bin/true").readTags(file, &tags, &problem), media::Outcome::NoWorker);
    EXPECT_EQ(media::MediaWorker("/nowhere").readTags(file, &tags, &problem), media::Outcome::NoWorker);
    const fs::path killed = m_directory.path() / "killed";
    std::ofstream(killed) << "#!/bin/sh\nkill -9 $$\n";
    fs::permissions(killed, fs::perms::owner_all);
    EXPECT_EQ(media::MediaWorker(killed).readTags(file, &tags, &problem), media::Outcome::Crashed);
    ::close(file);
}

} // namespace
} // namespace velmora::server
