#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

// The log of the program: one of a process, as its standard output and error are. No line holds a token, a password, a
// mail address or an address's parameters; whoever writes a line sees to that. Any thread.
namespace velmora::server::logs {

enum class Format {
    Text, // for people
    Json  // an object a line: time, level, and what the line is about
};

// Before there are other threads.
void setFormat(Format format);

// What the service tells the person who started it; on standard output.
void say(const std::string &text);
// What went wrong; on standard error.
void warn(const std::string &text);
// The same about one request; its id is in the line of the request, too.
void warn(const std::string &text, std::string_view requestId);

struct RequestLine {
    std::string_view id;
    std::string_view function; // of the interface, or the path of a page as the routes know it
    int code = 0;              // of the answer's body; of pages and media the HTTP status
    bool isFault = false;      // the service's own
    std::chrono::steady_clock::duration taken{};
    std::string_view account; // a keyed hash; empty: nobody's
};
// On standard error.
void request(const RequestLine &line);

} // namespace velmora::server::logs
