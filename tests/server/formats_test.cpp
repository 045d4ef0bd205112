// Formats that radios do not decode: transcoding to FLAC, lists that never wait for it, the cache, hostile files.

#include "httpclient.h"
#include "server/library/library.h"
#include "serverfixture.h"
#include "soundfile.h"

#include <cmath>
#include <fcntl.h>
#include <fstream>
#include <random>
#include <sndfile.h>
#include <sys/stat.h>

namespace velmora::server {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr int rate = 16000;
constexpr double seconds = 22;

// Chords that change every half second; each seed has a different melody.
std::vector<float> melody(unsigned seed)
{
    std::mt19937 random(seed);
    std::vector<float> samples(static_cast<size_t>(seconds * rate));
    double hertz = 0;
    for (size_t i = 0; i < samples.size(); ++i) {
        if (i % (rate / 2) == 0)
            hertz = 110 * std::exp2(random() % 24 / 12.0);
        const double at = static_cast<double>(i) / rate;
        samples[i] = static_cast<float>(0.2 * std::sin(6.2831853 * hertz * at) + 0.02 * (random() % 1000) / 1000.0);
    }
    return samples;
}

std::vector<float> decoded(const std::string &flac)
{
    struct Source {
        const std::string &bytes;
        sf_count_t at = 0;
    } source{flac};
    SF_VIRTUAL_IO io{};
    io.get_filelen = [](void *user) { return static_cast<sf_count_t>(static_cast<Source *>(user)->bytes.size()); };
    io.tell = [](void *user) { return static_cast<Source *>(user)->at; };
    io.seek = [](sf_count_t offset, int whence, void *user) {
        auto *from = static_cast<Source *>(user);
        const auto size = static_cast<sf_count_t>(from->bytes.size());
        return from->at = offset + (whence == SEEK_SET ? 0 : whence == SEEK_CUR ? from->at : size);
    };
    io.read = [](void *buffer, sf_count_t count, void *user) {
        auto *from = static_cast<Source *>(user);
        const sf_count_t got = std::min(count, static_cast<sf_count_t>(from->bytes.size()) - from->at);
        std::memcpy(buffer, from->bytes.data() + from->at, static_cast<size_t>(got));
        from->at += got;
        return got;
    };
    SF_INFO info{};
    SNDFILE *sound = sf_open_virtual(&io, SFM_READ, &info, &source);
    if (!sound)
        return {};
    std::vector<float> samples(static_cast<size_t>(info.frames * info.channels));
    samples.resize(static_cast<size_t>(sf_read_float(sound, samples.data(), info.frames * info.channels)));
    sf_close(sound);
    return samples;
}

class FormatsTest : public ServerTest {
protected:
    FormatsTest()
    {
        fs::create_directory(m_music);
        clearCatalogue();
        m_listener = addAccount("listener@example.org");
        m_settings.say = [this](const std::string &line) {
            const std::lock_guard guard(m_mutex);
            m_lines += line + "\n";
        };
    }
    ~FormatsTest() override { stopLibrary(); }

    void startLibrary()
    {
        m_settings.dataDirectory = m_service->dataDirectory();
        m_settings.config.folders = {m_music};
        m_settings.workerProgram = VELMORA_MEDIA_PROGRAM;
        if (m_settings.formatsProgram.parent_path() != m_directory.path())
            m_settings.formatsProgram = VELMORA_FORMATS_PROGRAM;
        m_settings.tick = 50ms;
        m_settings.storePause = 100ms;
        m_library = std::make_unique<Library>(
            m_service->store, m_service->catalogue, [now = m_now] { return now->load(); }, m_settings);
        m_service->library = m_library.get();
        m_service->playlists.setTranscodes(&m_library->transcodes());
        m_library->start();
        ASSERT_TRUE(m_library->waitUntilDone(500s));
    }
    void stopLibrary()
    {
        m_server.reset();
        m_service->library = nullptr;
        m_service->playlists.setTranscodes(nullptr);
        m_library.reset();
    }
    Transcodes &transcodes() { return m_library->transcodes(); }

    void write(const std::string &name, const char *encoder, unsigned seed)
    {
        writeSoundFile(m_music / name, encoder, rate, melody(seed),
                       {{"title", name}, {"artist", "Artist of " + name}, {"album", "One Album"}, {"genre", "folk"}});
    }
    // A file that radios decode.
    void writeMelody(const std::string &name, unsigned seed, const std::string &song = {})
    {
        SF_INFO info{0, rate, 1, SF_FORMAT_WAV | SF_FORMAT_PCM_16, 0, 0};
        SNDFILE *wav = sf_open((m_music / name).c_str(), SFM_WRITE, &info);
        const std::vector<float> samples = melody(seed);
        sf_set_string(wav, SF_STR_TITLE, (song.empty() ? name : song).c_str());
        sf_set_string(wav, SF_STR_ARTIST, ("Artist of " + (song.empty() ? name : song)).c_str());
        sf_writef_float(wav, samples.data(), static_cast<sf_count_t>(samples.size()));
        sf_close(wav);
    }
    // An executable in place of velmora-media-formats.
    void useProgram(const char *script)
    {
        m_settings.formatsProgram = m_directory.path() / "formats";
        std::ofstream(m_settings.formatsProgram) << script;
        fs::permissions(m_settings.formatsProgram, fs::perms::owner_all);
    }
    int64_t trackAt(const std::string &path)
    {
        const Store::Lock db = m_service->store.lock();
        Statement row = db->prepare("SELECT COALESCE(track_id, 0) FROM files WHERE path = ?1");
        row.with(Blob{path});
        return row.step() ? row.integer(0) : 0;
    }
    std::string fate(const std::string &path)
    {
        const Store::Lock db = m_service->store.lock();
        Statement row = db->prepare("SELECT left_out FROM files WHERE path = ?1");
        row.with(Blob{path});
        return !row.step() ? "unknown" : row.text(0).empty() ? "plays" : row.text(0);
    }
    static bool until(const std::function<bool()> &isSo)
    {
        for (int i = 0; i < 10000; ++i) {
            if (isSo())
                return true;
            std::this_thread::sleep_for(20ms);
        }
        return false;
    }
    bool becomesReady(const std::string &path)
    {
        return until([&] { return transcodes().file(trackAt(path)).has_value(); });
    }
    HttpAnswer get(const std::string &address, const http::Headers &headers = {})
    {
        return httpGet(m_server->port(), address, headers);
    }
    std::string addressOf(const std::string &path)
    {
        const std::string id = m_service->catalogue.track(trackAt(path))->publicId;
        return m_service->addresses.path(MediaKind::Audio, id + ".flac", m_listener);
    }
    std::vector<fs::path> cached() const
    {
        std::vector<fs::path> files;
        for (const auto &entry : fs::directory_iterator(m_cache))
            files.push_back(entry.path());
        return files;
    }
    std::string lines()
    {
        const std::lock_guard guard(m_mutex);
        return m_lines;
    }

    const fs::path m_music = m_directory.path() / "music";
    const fs::path m_cache = m_service->dataDirectory() / "transcodes";
    AccountId m_listener = 0;
    LibrarySettings m_settings;
    std::unique_ptr<Library> m_library;
    std::mutex m_mutex; // guards the next one
    std::string m_lines;
};

TEST_F(FormatsTest, EveryFormatReachesTheRadioAsFlac)
{
    struct Format {
        const char *name;
        const char *encoder;
        bool isLossless;
    };
    const Format formats[] = {{"a.m4a", "aac", false},   {"b.m4a", "alac", true},   {"c.wma", "wmav2", false},
                              {"d.wv", "wavpack", true}, {"e.tta", "tta", true},    {"f.aiff", "pcm_s16be", true},
                              {"g.aac", "aac", false},   {"h.wma", "wmav1", false}, {"i.spx", "libspeex", false}};
    unsigned seed = 0;
    for (const Format &format : formats)
        write(format.name, format.encoder, ++seed);
    std::ofstream(m_music / "j.ape", std::ios::binary) << silentApe(seconds);
    startLibrary();
    listen();
    EXPECT_EQ(fate("j.ape"), "plays");
    EXPECT_TRUE(becomesReady("j.ape"));
    seed = 0;
    for (const Format &format : formats) {
        ++seed;
        SCOPED_TRACE(format.name);
        ASSERT_EQ(fate(format.name), "plays");
        const std::optional<Track> track = m_service->catalogue.track(trackAt(format.name));
        if (fs::path(format.name).extension() != ".tta") { // libav writes no tags into it
            EXPECT_EQ(track->song, format.name);
            EXPECT_EQ(track->artist, std::string("Artist of ") + format.name);
        }
        ASSERT_TRUE(becomesReady(format.name));
        const std::string address = addressOf(format.name);
        const HttpAnswer answer = get(address);
        ASSERT_EQ(answer.status, 200);
        EXPECT_EQ(answer.header("Content-Type"), "audio/flac");
        EXPECT_NEAR(std::stod(answer.header("Velmora-Gain")), *track->gainDb, 0.01);
        EXPECT_NEAR(std::stod(answer.header("Velmora-Peak")), 0.22, format.isLossless ? 0.01 : 0.2);
        EXPECT_EQ(get(address, {{"Range", "bytes=1000-1999"}}).body, answer.body.substr(1000, 1000));
        EXPECT_EQ(get(address.substr(0, address.size() - 1)).status, 403);

        const std::vector<float> samples = decoded(answer.body);
        const std::vector<float> original = melody(seed);
        EXPECT_NEAR(static_cast<double>(samples.size()), static_cast<double>(original.size()), 0.2 * rate);
        double worst = 0;
        double power = 0;
        for (size_t i = 0; i < std::min(samples.size(), original.size()); ++i) {
            worst = std::max(worst, static_cast<double>(std::abs(samples[i] - original[i])));
            power += samples[i] * samples[i] / static_cast<double>(samples.size());
        }
        EXPECT_NEAR(std::sqrt(power), 0.142, 0.01);
        EXPECT_TRUE(!format.isLossless || worst < 2.0 / 32768) << worst;
    }
    // The same recording in a format that radios decode: that file plays.
    writeMelody("k.wav", 2, "b.m4a");
    m_library->rescan();
    ASSERT_TRUE(m_library->waitUntilDone(500s, 2));
    EXPECT_EQ(fate("k.wav"), "plays");
    EXPECT_EQ(fate("b.m4a"), "duplicate");
}

TEST_F(FormatsTest, AListBeginsWithWhatIsReadyAndWaitsForNothing)
{
    for (const char *name : {"a.m4a", "b.m4a", "c.m4a", "d.m4a", "e.m4a"})
        write(name, "aac", static_cast<unsigned>(name[0]));
    m_settings.spareTranscodes = 0;
    m_settings.config.isAnalysed = false;
    startLibrary();
    const std::string user = newListener();
    const std::string station = tapestryToken(user);
    EXPECT_EQ(call("getPlaylist", {{"stationToken", station}}, user).code, 5000) << "nothing is ready";
    EXPECT_TRUE(until([&] { return call("getPlaylist", {{"stationToken", station}}, user).code == 0; }));
    for (int list = 0; list < 8; ++list) {
        const std::shared_ptr<const Transcodes::Ids> ready = transcodes().ready();
        const json entries = this->list("getPlaylist", {{"stationToken", station}}, user, "entries");
        ASSERT_EQ(entries.size(), 4u);
        const std::string first = entries.at(0).at("track").at("songName");
        EXPECT_TRUE(ready->contains(trackAt(first)) || transcodes().ready()->contains(trackAt(first))) << first;
    }

    // A program that never answers: ready tracks play, the others stay without a transcode.
    stopLibrary();
    fs::remove_all(m_cache);
    writeMelody("w.wav", 70);
    useProgram("#!/bin/sh\nexec sleep 900\n");
    startLibrary();
    listen();
    std::set<std::string> others;
    for (int list = 0; list < 6; ++list) {
        const json entries = this->list("getPlaylist", {{"stationToken", station}}, user, "entries");
        ASSERT_EQ(entries.size(), 4u);
        EXPECT_EQ(entries.at(0).at("track").at("songName"), "w.wav");
        others.insert(entries.at(1).at("track").at("songName"));
    }
    EXPECT_GT(others.size(), 1u) << "later tracks may still be transcoded in time";
    EXPECT_EQ(get(addressOf("a.m4a")).status, 503);

    // An unusable program: tracks that need it are left out of lists for a while.
    stopLibrary();
    useProgram("#!/bin/sh\nexit 0\n");
    startLibrary();
    transcodes().prepare({trackAt("a.m4a")});
    EXPECT_TRUE(until([&] { return transcodes().isHeldUp(); }));
    for (const json &entry : this->list("getPlaylist", {{"stationToken", station}}, user, "entries"))
        EXPECT_EQ(entry.at("track").at("songName"), "w.wav");
    EXPECT_NE(lines().find("formats cannot be started"), std::string::npos) << lines();
    EXPECT_EQ(fate("a.m4a"), "plays") << "the file is not to blame";
    setPlayable(m_service->catalogue.track(trackAt("w.wav"))->publicId, false);
    EXPECT_TRUE(until([&] {
        return call("getPlaylist", {{"stationToken", station}}, user).code == 5002;
    })) << "nobody is told to wait for what cannot be made";
}

TEST_F(FormatsTest, TheCacheIsBoundedOutlivesRestartsAndFollowsItsSources)
{
    for (const char *name : {"a.m4a", "b.m4a", "c.m4a"})
        write(name, "aac", static_cast<unsigned>(name[0]));
    m_settings.spareTranscodes = 0;
    startLibrary();
    const auto pathOf = [&](const char *name) { return transcodes().file(trackAt(name)).value_or(""); };
    ASSERT_TRUE(becomesReady("a.m4a"));
    ASSERT_TRUE(becomesReady("b.m4a"));
    const uint64_t size = fs::file_size(pathOf("b.m4a"));
    constexpr uint64_t beforehand = 23 * 192'000; // room that is kept free for the next transcode
    transcodes().setMostBytes(beforehand + size * 3 / 2);
    ASSERT_FALSE(pathOf("b.m4a").empty());
    ASSERT_FALSE(pathOf("a.m4a").empty());
    transcodes().prepare({trackAt("c.m4a")});
    ASSERT_TRUE(until([&] { return transcodes().ready()->contains(trackAt("c.m4a")); }));
    EXPECT_EQ(*transcodes().ready(), (Transcodes::Ids{trackAt("a.m4a"), trackAt("c.m4a")}))
        << "b was used least recently";
    EXPECT_EQ(cached().size(), 2u);

    // After a kill, partial transcodes are removed; whole ones stay and are not made again.
    const auto stampOf = [](const fs::path &file) {
        struct stat status {};
        ::stat(file.c_str(), &status);
        return std::pair(status.st_ino, status.st_mtim.tv_nsec);
    };
    const fs::path before = pathOf("a.m4a");
    const auto stamp = stampOf(before);
    stopLibrary();
    std::ofstream(before.string() + ".part") << "fLaC half of it";
    std::ofstream(m_cache / "unknown.1.2.1.flac") << "fLaC";
    startLibrary();
    EXPECT_TRUE(until([&] { return cached().size() == 2; }));
    EXPECT_TRUE(until([&] { return pathOf("a.m4a") == before; }));
    EXPECT_EQ(stampOf(before), stamp);

    // A changed source; a transcode that somebody deleted.
    const auto contentOf = [](const fs::path &file) {
        std::ifstream stream(file, std::ios::binary);
        return decoded({std::istreambuf_iterator<char>(stream), {}});
    };
    const std::vector<float> old = contentOf(before);
    EXPECT_NEAR(static_cast<double>(old.size()), seconds * rate, 0.2 * rate);
    writeSoundFile(m_music / "a.m4a", "aac", rate, melody(99), {{"title", "a.m4a"}, {"artist", "Artist of a.m4a"}});
    m_library->rescan();
    ASSERT_TRUE(m_library->waitUntilDone(500s, 2));
    ASSERT_TRUE(becomesReady("a.m4a"));
    EXPECT_NE(contentOf(pathOf("a.m4a")), old);
    EXPECT_TRUE(until([&] { return !fs::exists(before); }));
    fs::remove_all(m_cache);
    EXPECT_TRUE(becomesReady("a.m4a"));

    // A full disk: it is logged, and no partial file stays. With room again, transcoding works.
    stopLibrary();
    fs::remove_all(m_cache);
    m_settings.reserveBytes = uint64_t(1) << 62;
    startLibrary();
    transcodes().prepare({trackAt("a.m4a")});
    EXPECT_TRUE(until([&] { return transcodes().isHeldUp() && lines().find("is full") != std::string::npos; }));
    EXPECT_TRUE(cached().empty());
    EXPECT_EQ(fate("a.m4a"), "plays");
    stopLibrary();
    m_settings.reserveBytes = 0;
    startLibrary();
    EXPECT_TRUE(becomesReady("a.m4a"));
}

TEST_F(FormatsTest, AHostileFileHarmsNoOtherFile)
{
    write("cut.m4a", "aac", 1);
    fs::resize_file(m_music / "cut.m4a", fs::file_size(m_music / "cut.m4a") / 2);
    write("good.m4a", "aac", 2);
    write("good.wma", "wmav2", 3);
    write("good.aac", "aac", 4);
    write("good.wv", "wavpack", 5);
    // Three days of sound in 400 kB.
    std::ofstream(m_music / "endless.ape", std::ios::binary) << silentApe(3 * 24 * 3600.0);
    std::ofstream(m_music / "noise.aac") << std::string(50000, '\xff');
    startLibrary();
    EXPECT_EQ(fate("cut.m4a"), "damaged");
    EXPECT_EQ(fate("noise.aac"), "damaged");
    EXPECT_EQ(fate("endless.ape"), "long");
    EXPECT_EQ(fate("good.m4a"), "plays");

    auto worker = std::make_unique<media::MediaWorker>(VELMORA_FORMATS_PROGRAM, media::transcodingRole);
    const fs::path to = m_directory.path() / "transcoded";
    std::string problem;
    uint64_t bytes = 0;
    const auto transcode = [&](const fs::path &file, const char *place, uint64_t most) {
        const int from = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
        const int written = ::open(place, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        const media::Outcome outcome = worker->transcode(from, written, seconds, most, &bytes, &problem);
        ::close(from);
        ::close(written);
        return outcome;
    };
    EXPECT_EQ(transcode(m_music / "endless.ape", to.c_str(), 50'000), media::Outcome::Refused);
    EXPECT_LE(fs::file_size(to), 50'000u);
    EXPECT_EQ(transcode(m_music / "good.m4a", "/dev/full", 1 << 30), media::Outcome::NoRoom) << problem;
    // The reading process cannot write, even through a writable descriptor.
    auto reader = std::make_unique<media::MediaWorker>(VELMORA_FORMATS_PROGRAM);
    std::swap(worker, reader);
    EXPECT_NE(transcode(m_music / "good.m4a", to.c_str(), 1 << 30), media::Outcome::Done);
    EXPECT_EQ(fs::file_size(to), 0u);
    std::swap(worker, reader);

    std::mt19937 random(12);
    const char *seeds[] = {"good.m4a", "good.wma", "good.aac", "good.wv"};
    int answered = 0;
    for (int i = 0; i < 80; ++i) {
        std::ifstream stream(m_music / seeds[i % 4], std::ios::binary);
        std::string content{std::istreambuf_iterator<char>(stream), {}};
        for (int change = 0; change < 1 + i / 4; ++change)
            content[random() % (i % 8 < 4 ? 600 : content.size())] = static_cast<char>(random());
        const fs::path mutant = m_directory.path() / "mutant";
        std::ofstream(mutant, std::ios::binary) << content;
        const media::Outcome outcome = transcode(mutant, to.c_str(), 1 << 26);
        answered += outcome == media::Outcome::Done || outcome == media::Outcome::Refused;
        EXPECT_NE(outcome, media::Outcome::NoWorker) << i;
        EXPECT_NE(outcome, media::Outcome::TooSlow) << i;
    }
    EXPECT_GE(answered, 78);
}

TEST_F(FormatsTest, TagsMarkedAsLatinOneAreReadInTheirRealEncoding)
{
    std::ifstream stream(fs::path(VELMORA_SOURCE_DIR) / "tests/data/audio/bare-2600ms.mp3", std::ios::binary);
    const std::string sound{std::istreambuf_iterator<char>(stream), {}};
    media::MediaWorker worker(VELMORA_MEDIA_PROGRAM);
    const auto read = [&](const std::string &title, const std::string &artist) {
        std::string frames;
        for (const auto &[name, text] : {std::pair("TIT2", title), std::pair("TPE1", artist)}) {
            frames += name + std::string("\0\0\0", 3) + static_cast<char>(text.size() + 1);
            frames += std::string("\0\0\0", 3) + text;
        }
        const fs::path file = m_directory.path() / "tagged.mp3";
        std::ofstream(file, std::ios::binary)
            << std::string("ID3\3\0\0\0\0\0", 9) << static_cast<char>(frames.size()) << frames << sound;
        const int opened = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
        media::MediaTags tags;
        std::string problem;
        EXPECT_EQ(worker.readTags(opened, &tags, &problem), media::Outcome::Done) << problem;
        ::close(opened);
        return tags.first("TITLE") + "|" + tags.first("ARTIST");
    };
    EXPECT_EQ(read("\xd2\xe8\xf5\xe0\xff \xe2\xee\xe4\xe0", "\xd5\xee\xf0 \xcb\xe8\xf8\xe0\xe9\xed\xe8\xea\xee\xe2"),
              "Тихая вода|Хор Лишайников");
    EXPECT_EQ(read("\x90\xc3\x82\xa9\x82\xc8\x90\x85", "\x91\xdb\x82\xcc\x8d\x87\x8f\xa5\x92\x63"),
              "静かな水|苔の合唱団");
    EXPECT_EQ(read("Тихая вода", "Æther"), "Тихая вода|Æther") << "UTF-8";
    EXPECT_EQ(read("Gr\xfc"
                   "ne Stra\xdf"
                   "e",
                   "Bj\xf6rn M\xfcller"),
              "Grüne Straße|Björn Müller");
}

} // namespace
} // namespace velmora::server
