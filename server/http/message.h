#pragma once

#include "server/http/file.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmora::server::http {

// In the order in which they came or go.
using Headers = std::vector<std::pair<std::string, std::string>>;
// The first header of this name, in any case of letters; empty when there is none.
std::string_view headerOf(const Headers &headers, std::string_view name);

// Which threads answer. A folder that does not react must not keep the functions waiting, and neither must passwords,
// whose hashes are slow on purpose.
enum class Lane { Functions, Files, Passwords };

// A request whose body has arrived. A plain value; any thread.
struct Request {
    std::string method; // "GET", "HEAD", "POST" and so on
    std::string path;   // decoded; begins with a slash, or is "*"
    std::string query;  // as it arrived, without the question mark
    Headers headers;
    std::string body;
    std::string address;             // of the caller, without a port; behind a trusted proxy the one that it names
    std::string network;             // what counts as one caller in limits: networkOf(address)
    Lane lane = Lane::Functions;     // whose thread handles it
    std::vector<std::string> pieces; // what matched the asterisks of the route
    std::chrono::steady_clock::time_point arrivedAt; // the end of its headers

    std::string_view header(std::string_view name) const { return headerOf(headers, name); }
    // A field of the posted form, or of the query of any other method; decoded. Empty when there is none.
    std::string parameter(std::string_view name) const;
    // As the browser sent it; empty when there is none.
    std::string cookie(std::string_view name) const;
};

// What a handler answers: a text or a part of a file.
struct Response {
    std::optional<Lane> lane; // no answer: the handler is to be called again by a thread of this lane
    int status = 200;
    Headers headers;
    std::string body;
    std::shared_ptr<const File> file; // sent in place of `body`
    uint64_t first = 0;               // the part of the file
    uint64_t count = 0;
    int64_t bytesPerSecond = 0; // the file is not sent faster than this; 0: no limit

    // Replaces a header of the same name.
    void setHeader(std::string_view name, std::string value);
    void setContent(std::string content, std::string type);
    // The whole file, with ETag and Last-Modified; conditional requests and ranges are answered from these.
    void setFile(std::shared_ptr<const File> content, std::string type);
    static Response redirect(std::string address);
    static Response handledIn(Lane lane);
};

// "%41+b" is "A b"; what is no valid escape stays as it is. In a path a plus sign is itself.
std::string decoded(std::string_view text, bool isPath);

} // namespace velmora::server::http
