#include "server/demolibrary.h"

#include <cerrno>
#include <cinttypes>
#include <csignal>
#include <cstdio>
#include <cstdlib>
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
    ::mkdir(musicIn(m_settings.folder).c_str(), 0700);
    removeFlatFiles(m_settings.folder);
    m_catalogue.setGrowing("demo", true);
    m_catalogue.whenWanted([this](const std::set<std::string> &styles) { wish(styles); });
    const bool isDescribed = startProgram() && readDescription();
    enterAds();
    m_thread = std::thread([this, isDescribed] { keep(isDescribed); });
}

void DemoLibrary::stop()
{
    m_catalogue.whenWanted({});
    {
        const std::lock_guard guard(m_mutex);
        m_isStopping = true;
        if (m_input >= 0)
            ::close(std::exchange(m_input, -1));
        if (m_pid > 0)
            ::kill(m_pid, SIGTERM);
    }
    m_wake.notify_all();
    if (m_thread.joinable())
        m_thread.join();
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
    pid_t pid = -1;
    const int result =
        ::posix_spawn(&pid, m_settings.program.c_str(), &files, &attributes, pointersTo(arguments).data(), environ);
    posix_spawn_file_actions_destroy(&files);
    posix_spawnattr_destroy(&attributes);
    ::close(output[1]);
    ::close(input[1]);
    m_output = ::fdopen(output[0], "r");
    m_hasMade = false;
    const std::lock_guard guard(m_mutex);
    m_input = input[0];
    m_pid = result == 0 ? pid : -1;
    if (m_isStopping && m_pid > 0)
        ::kill(m_pid, SIGTERM);
    sendWishes();
    return m_pid > 0 && m_output;
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

bool DemoLibrary::readDescription()
{
    std::vector<std::string> styles;
    while (const std::optional<std::string> line = readLine()) {
        if (line->starts_with("style "))
            styles.push_back(line->substr(6));
        if (std::sscanf(line->c_str(), "ready %" SCNd64 " %" SCNd64, &m_made, &m_total) == 2) {
            m_catalogue.expectStyles(styles);
            return true;
        }
    }
    return false;
}

void DemoLibrary::enterAds()
{
    const std::filesystem::path description = m_settings.folder / "ads.json";
    const auto whole = [this](const std::string &file) { return m_settings.folder / file; };
    std::vector<Ad> ads;
    std::ifstream stream(description);
    try {
        const json all = json::parse(stream);
        for (const json &entry : all.at("ads")) {
            const std::string audio = entry.at("file");
            std::error_code error;
            // A file appears whole or not at all, so one that is there is good.
            ads.push_back({0, entry.at("id"), entry.at("title"), entry.at("line2"), entry.at("durationSeconds"),
                           whole(audio), audioType, whole(entry.at("picture")),
                           std::filesystem::is_regular_file(whole(audio), error)});
        }
    } catch (const json::exception &) {
        m_say("demo catalogue: " + description.string() + " is missing or damaged");
        return;
    }
    m_adIds.clear();
    for (const Ad &ad : ads)
        m_adIds[ad.audioFile] = ad.publicId;
    m_catalogue.replaceAds(ads);
}

void DemoLibrary::keep(bool isDescribed)
{
    std::chrono::milliseconds pause = m_settings.firstPause;
    for (int restarts = 0;;) {
        const bool isWhole = isDescribed && follow();
        const int status = reap();
        if (m_hasMade) {
            restarts = 0;
            pause = m_settings.firstPause;
        }
        {
            const std::lock_guard guard(m_mutex);
            if (m_isStopping)
                break;
        }
        if (isWhole && status == 0)
            break;
        // Nobody waits for a track that was tried in vain, nor for a program that makes nothing.
        if (isWhole || !m_hasMade)
            m_catalogue.setGrowing("demo", false);
        const std::string program = m_settings.program.string();
        if (restarts++ == m_settings.mostRestarts) {
            m_say("demo catalogue: " + program + " keeps ending early; no more music is made");
            break;
        }
        m_say("demo catalogue: " + program + " has ended early; it is started again");
        if (!rest(pause))
            break;
        pause *= 2;
        isDescribed = startProgram() && readDescription();
    }
    m_catalogue.setGrowing("demo", false);
}

bool DemoLibrary::rest(std::chrono::milliseconds pause)
{
    std::unique_lock guard(m_mutex);
    return !m_wake.wait_for(guard, pause, [this] { return m_isStopping; });
}

bool DemoLibrary::follow()
{
    std::string last;
    while (const std::optional<std::string> line = readLine()) {
        last = *line;
        if (line->starts_with("made "))
            take(line->substr(5));
        else if (line->starts_with("failed "))
            m_say("demo catalogue: cannot make " + (m_settings.folder / line->substr(7)).string());
    }
    return last == "done";
}

int DemoLibrary::reap()
{
    if (m_output)
        std::fclose(std::exchange(m_output, nullptr));
    pid_t pid = -1;
    {
        const std::lock_guard guard(m_mutex);
        pid = m_pid;
        if (m_input >= 0)
            ::close(std::exchange(m_input, -1));
    }
    if (pid <= 0)
        return -1;
    // Its number stays its own until it is forgotten under the mutex: stop() never signals another process.
    siginfo_t ended{};
    while (::waitid(P_PID, static_cast<id_t>(pid), &ended, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
    }
    const std::lock_guard guard(m_mutex);
    int status = 0;
    ::waitpid(std::exchange(m_pid, -1), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void DemoLibrary::take(const std::string &file)
{
    m_hasMade = true;
    const auto ad = m_adIds.find(m_settings.folder / file);
    if (ad != m_adIds.end()) {
        m_catalogue.setAdPlayable(ad->second, true);
        return;
    }
    m_say("demo catalogue: " + std::to_string(++m_made) + " of " + std::to_string(m_total) + " tracks");
}

void DemoLibrary::wish(const std::set<std::string> &styles)
{
    const std::lock_guard guard(m_mutex);
    if (styles == m_wished)
        return;
    m_wished = styles;
    sendWishes();
}

void DemoLibrary::sendWishes()
{
    if (m_input < 0 || m_wished.empty())
        return;
    std::string lines;
    for (const std::string &style : m_wished) {
        if (style.find('\n') == std::string::npos && !style.empty())
            lines += style + '\n';
    }
    lines += '\n';
    // A program that does not read its wishes is not waited for.
    [[maybe_unused]] const ssize_t sent = ::send(m_input, lines.data(), lines.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
}

} // namespace velmora::server
