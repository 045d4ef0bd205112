#include "server/logging/log.h"

#include <atomic>
#include <ctime>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace velmora::server::logs {

namespace {

using nlohmann::ordered_json;

std::atomic<Format> chosen = Format::Text;

// "2026-03-09T18:20:00.042Z"
std::string timeNow()
{
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    std::tm parts{};
    ::gmtime_r(&now.tv_sec, &parts);
    char text[40];
    const size_t length = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &parts);
    std::snprintf(text + length, sizeof text - length, ".%03ldZ", now.tv_nsec / 1'000'000);
    return text;
}

// In one call, so that lines of several threads do not mix.
void put(int file, std::string line)
{
    line += '\n';
    std::string_view rest = line;
    while (!rest.empty()) {
        const ssize_t count = ::write(file, rest.data(), rest.size());
        if (count < 0 && errno != EINTR)
            return;
        rest.remove_prefix(static_cast<size_t>(std::max<ssize_t>(count, 0)));
    }
}

std::string dumped(const ordered_json &line)
{
    return line.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

} // namespace

void setFormat(Format format)
{
    chosen = format;
}

void say(const std::string &text)
{
    put(STDOUT_FILENO,
        chosen == Format::Text ? text : dumped({{"time", timeNow()}, {"level", "info"}, {"message", text}}));
}

void warn(const std::string &text)
{
    warn(text, {});
}

void warn(const std::string &text, std::string_view requestId)
{
    if (chosen == Format::Text) {
        put(STDERR_FILENO, "velmora-server: " + text + (requestId.empty() ? "" : " (request ") +
                               std::string(requestId) + (requestId.empty() ? "" : ")"));
        return;
    }
    ordered_json line = {{"time", timeNow()}, {"level", "warning"}, {"message", text}};
    if (!requestId.empty())
        line["request"] = requestId;
    put(STDERR_FILENO, dumped(line));
}

void request(const RequestLine &line)
{
    const auto taken = std::chrono::duration_cast<std::chrono::milliseconds>(line.taken).count();
    const char *level = line.isFault ? "error" : "info";
    if (chosen == Format::Text) {
        std::string text = timeNow() + " " + level + " ";
        text.append(line.id).append(" ").append(line.function);
        text += " " + std::to_string(line.code) + " " + std::to_string(taken) + " ms";
        if (!line.account.empty())
            text.append(" account ").append(line.account);
        put(STDERR_FILENO, std::move(text));
        return;
    }
    ordered_json fields = {{"time", timeNow()},         {"level", level},    {"request", line.id},
                           {"function", line.function}, {"code", line.code}, {"milliseconds", taken}};
    if (!line.account.empty())
        fields["account"] = line.account;
    put(STDERR_FILENO, dumped(fields));
}

} // namespace velmora::server::logs
