#include "config.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <pwd.h>
#include <string_view>
#include <unistd.h>

namespace velmora::ws {

namespace {

// Ignored in a program that runs with another user's rights.
std::string environment(const char *name)
{
    const char *value = secure_getenv(name);
    return value ? value : "";
}

std::string trimmed(std::string_view text)
{
    const auto first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos)
        return {};
    return std::string(text.substr(first, text.find_last_not_of(" \t\r") - first + 1));
}

std::filesystem::path defaultStateDir()
{
    if (const std::string state = environment("XDG_STATE_HOME"); state.starts_with('/'))
        return std::filesystem::path(state) / "velmora-ws";
    std::string home = environment("HOME");
    if (home.empty()) {
        char buffer[4096];
        passwd entry{};
        passwd *found = nullptr;
        if (getpwuid_r(geteuid(), &entry, buffer, sizeof buffer, &found) == 0 && found && found->pw_dir)
            home = found->pw_dir;
    }
    if (!home.starts_with('/'))
        return {};
    return std::filesystem::path(home) / ".local/state/velmora-ws";
}

// Applies one setting of the file. False: an unknown setting, or an unusable value.
bool apply(Config &config, const std::string &key, const std::string &value)
{
    const auto milliseconds = [&value](std::chrono::milliseconds &target, int least = 1) {
        int number = 0;
        const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
        if (error != std::errc() || end != value.data() + value.size() || number < least)
            return false;
        target = std::chrono::milliseconds(number);
        return true;
    };
    if (key == "server") {
        config.server = value;
        return true;
    }
    if (key == "ca_file") {
        config.caFile = value;
        return true;
    }
    if (key == "state_dir") {
        if (!value.starts_with('/'))
            return false;
        config.stateDir = value;
        return true;
    }
    if (key == "connect_timeout_ms")
        return milliseconds(config.connectTimeout);
    if (key == "stall_timeout_ms")
        return milliseconds(config.stallTimeout);
    if (key == "request_timeout_ms")
        return milliseconds(config.requestTimeout);
    if (key == "retry_for_ms")
        return milliseconds(config.retry.forTime, 0);
    if (key == "start_retry_for_ms")
        return milliseconds(config.retry.forTimeAtStart, 0);
    if (key == "retry_pause_ms")
        return milliseconds(config.retry.firstPause);
    return false;
}

void readFile(Config &config, const std::string &file)
{
    std::ifstream in(file);
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        const std::string text = trimmed(line);
        if (text.empty() || text.starts_with('#'))
            continue;
        const auto equals = text.find('=');
        if (equals == std::string::npos ||
            !apply(config, trimmed(text.substr(0, equals)), trimmed(text.substr(equals + 1))))
            std::fprintf(stderr, "libvelmora_ws: %s:%d: not a usable setting, left out\n", file.c_str(), number);
    }
}

} // namespace

std::vector<std::string> configurationFiles()
{
    const std::string named = environment("VELMORA_WS_CONF");
    if (!named.empty())
        return {named};
    return {"/usr/share/velmora/ws.conf", "/etc/velmora/ws.conf"};
}

Config loadConfig(const std::vector<std::string> &files)
{
    Config config;
    config.stateDir = defaultStateDir();
    for (const std::string &file : files)
        readFile(config, file);

    constexpr const char *variables[][2] = {
        {"VELMORA_WS_SERVER", "server"}, {"VELMORA_WS_STATE_DIR", "state_dir"}, {"VELMORA_WS_CA_FILE", "ca_file"}};
    for (const auto &[variable, key] : variables) {
        if (const std::string value = environment(variable); !value.empty() && !apply(config, key, value))
            std::fprintf(stderr, "libvelmora_ws: %s is not usable, left out\n", variable);
    }
    return config;
}

} // namespace velmora::ws
