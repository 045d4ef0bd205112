#include "server/demolibrary.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <nlohmann/json.hpp>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velmora::server {

namespace {

using nlohmann::json;

constexpr const char *audioType = "audio/flac";

// A file appears whole or not at all, so one that is there is good.
bool isMade(const std::filesystem::path &file)
{
    std::error_code error;
    return std::filesystem::is_regular_file(file, error);
}

// What versions before the music had a folder of its own have made.
void removeFlatFiles(const std::filesystem::path &folder)
{
    std::error_code error;
    for (const auto &entry : std::filesystem::directory_iterator(folder, error)) {
        const std::string name = entry.path().filename();
        if (name.find(".flac") != std::string::npos || name.find(".png") != std::string::npos)
            ::unlink(entry.path().c_str());
    }
}

// Arguments as exec takes them; valid as long as the texts are.
std::vector<char *> pointersTo(std::vector<std::string> &texts)
{
    std::vector<char *> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string &text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

DemoLibrary::DemoLibrary(Catalogue &catalogue, Settings settings, std::function<void(const std::string &)> say)
    : m_catalogue(catalogue)
    , m_settings(std::move(settings))
    , m_say(std::move(say))
{
}

DemoLibrary::~DemoLibrary()
{
    stop();
}

void DemoLibrary::start()
{
    ::mkdir(m_settings.folder.c_str(), 0700);
    removeFlatFiles(m_settings.folder);
    const bool isDescribed = startProgram() && readLine() == "ready";
    if (!isDescribed)
        m_say("demo catalogue: " + m_settings.program.string() + " does not run; no more music is made");
    enter();
    if (!isDescribed)
        return;
    m_catalogue.whenWanted([this](const std::set<std::string> &styles) { wish(styles); });
    m_thread = std::thread([this] { follow(); });
}

void DemoLibrary::stop()
{
    m_catalogue.whenWanted({});
    {
        const std::lock_guard guard(m_mutex);
        if (m_input >= 0)
            ::close(std::exchange(m_input, -1));
    }
    if (m_pid > 0)
        ::kill(m_pid, SIGTERM);
    if (m_thread.joinable())
        m_thread.join();
    if (m_output)
        std::fclose(std::exchange(m_output, nullptr));
    if (m_pid > 0)
        ::waitpid(std::exchange(m_pid, -1), nullptr, 0);
}

bool DemoLibrary::startProgram()
{
    int output[2];
    int input[2];
    if (::pipe2(output, O_CLOEXEC) != 0)
        return false;
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, input) != 0) {
        ::close(output[0]);
        ::close(output[1]);
        return false;
    }
    std::vector<std::string> arguments = {m_settings.program, "--each", std::to_string(m_settings.tracksOfStyle),
                                          "--attended", m_settings.folder};
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, input[1], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&files, output[1], STDOUT_FILENO);
    // The service holds its ending signals back in all threads; a child would inherit that.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    const int result =
        ::posix_spawn(&m_pid, m_settings.program.c_str(), &files, &attributes, pointersTo(arguments).data(), environ);
    posix_spawn_file_actions_destroy(&files);
    posix_spawnattr_destroy(&attributes);
    ::close(output[1]);
    ::close(input[1]);
    m_output = ::fdopen(output[0], "r");
    m_input = input[0];
    if (result != 0)
        m_pid = -1;
    return result == 0 && m_output;
}

std::optional<std::string> DemoLibrary::readLine()
{
    char *buffer = nullptr;
    size_t size = 0;
    const ssize_t length = m_output ? ::getline(&buffer, &size, m_output) : -1;
    std::optional<std::string> line;
    if (length > 0)
        line = std::string(buffer, static_cast<size_t>(length) - (buffer[length - 1] == '\n' ? 1 : 0));
    std::free(buffer);
    return line;
}

void DemoLibrary::enter()
{
    std::vector<Track> tracks;
    std::vector<std::string> trackIds;
    std::vector<Ad> ads;
    std::vector<std::string> adIds;
    std::ifstream file(path("catalogue.json"));
    try {
        const json catalogue = json::parse(file);
        for (const json &entry : catalogue.at("tracks")) {
            const std::string audio = entry.at("file");
            Track track;
            track.publicId = entry.at("id");
            track.song = entry.at("song");
            track.artist = entry.at("artist");
            track.album = entry.at("album");
            track.style = entry.at("style");
            track.mood = entry.at("mood");
            track.tempo = entry.at("tempo");
            track.year = entry.at("year");
            track.durationSeconds = entry.at("durationSeconds");
            track.audioFile = path(audio);
            track.audioType = audioType;
            track.bitrate = bitrateOf(audio, track.durationSeconds);
            track.pictureFile = path(entry.at("picture"));
            track.isPlayable = isMade(track.audioFile);
            m_entries[audio] = {track.publicId, track.durationSeconds, false};
            m_made += track.isPlayable ? 1 : 0;
            trackIds.push_back(track.publicId);
            tracks.push_back(std::move(track));
        }
        for (const json &entry : catalogue.at("ads")) {
            const std::string audio = entry.at("file");
            Ad ad{
                0,           entry.at("id"), entry.at("title"),         entry.at("line2"),  entry.at("durationSeconds"),
                path(audio), audioType,      path(entry.at("picture")), isMade(path(audio))};
            m_entries[audio] = {ad.publicId, ad.durationSeconds, true};
            adIds.push_back(ad.publicId);
            ads.push_back(std::move(ad));
        }
    } catch (const json::exception &) {
        m_say("demo catalogue: " + path("catalogue.json").string() + " is missing or damaged");
        return;
    }
    m_total = static_cast<int>(tracks.size());
    m_catalogue.put(tracks);
    m_catalogue.put(ads);
    m_catalogue.keepOnly(trackIds, adIds);
}

void DemoLibrary::follow()
{
    std::string last;
    while (const std::optional<std::string> line = readLine()) {
        last = *line;
        if (line->starts_with("made "))
            take(line->substr(5));
        else if (line->starts_with("failed "))
            m_say("demo catalogue: cannot make " + path(line->substr(7)).string());
    }
    const std::lock_guard guard(m_mutex);
    if (last != "done" && m_input >= 0) // otherwise it was stopped
        m_say("demo catalogue: " + m_settings.program.string() + " has ended early; no more music is made");
}

void DemoLibrary::take(const std::string &file)
{
    const auto found = m_entries.find(file);
    if (found == m_entries.end())
        return;
    const Entry &entry = found->second;
    if (entry.isAd) {
        m_catalogue.setAdPlayable(entry.id, true);
        return;
    }
    m_catalogue.setTrackPlayable(entry.id, true, bitrateOf(file, entry.durationSeconds));
    ++m_made;
    m_say("demo catalogue: " + std::to_string(m_made) + " of " + std::to_string(m_total) + " tracks");
}

void DemoLibrary::wish(const std::set<std::string> &styles)
{
    std::string lines;
    for (const std::string &style : styles) {
        if (style.find('\n') == std::string::npos && !style.empty())
            lines += style + '\n';
    }
    const std::lock_guard guard(m_mutex);
    if (m_input < 0 || styles == m_wished)
        return;
    m_wished = styles;
    lines += '\n';
    // A program that does not read its wishes is not waited for.
    [[maybe_unused]] const ssize_t sent = ::send(m_input, lines.data(), lines.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
}

int DemoLibrary::bitrateOf(const std::string &file, int durationSeconds) const
{
    std::error_code error;
    const auto size = std::filesystem::file_size(path(file), error);
    return error || durationSeconds <= 0 ? 0 : static_cast<int>(size * 8 / static_cast<unsigned>(durationSeconds));
}

} // namespace velmora::server
