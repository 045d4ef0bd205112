#pragma once

#include "server/http/file.h"

#include <chrono>
#include <functional>
#include <mutex>
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
// whose hashes are slow on purpose. Probes, which ask how the service is, are answered whatever the others wait for.
enum class Lane { Functions, Files, Passwords, Probes };

// Lets the answer to a request wait without a thread. The handler hands it to whoever will have news and returns it in
// its response; the handler is called again after wake(), or when the time is up. Any thread.
class Wait {
public:
    // Before or after the connection waits. Only the first call counts.
    void wake();

private:
    friend class Connection;
    // Called at the wake, once; at once when that was before. Must not call wake() or forget().
    void onWake(std::function<void()> callback);
    // No call begins after the return.
    void forget();

    std::mutex m_mutex;
    bool m_isWoken = false;
    std::function<void()> m_callback; // null: nobody waits
};

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
    bool isWaitOver = false;                         // the time of its wait is up: the handler must answer
    std::string id;                                  // for logs: requestIdOf()
    std::string route;                               // the path of its route; empty: no route matches
    bool isFromProxy = false;                        // it came from a trusted proxy
    bool isEncrypted = false;                        // it came through this server's TLS
    bool isLaneFull = false; // it is refused because too many requests of everybody wait, not of its caller alone

    std::string_view header(std::string_view name) const { return headerOf(headers, name); }
    // A field of the posted form, or of the query of any other method; decoded. Empty when there is none.
    std::string parameter(std::string_view name) const;
    // As the browser sent it; empty when there is none.
    std::string cookie(std::string_view name) const;
};

// What a handler answers: a text or a part of a file.
struct Response {
    // For logs and metrics, beside the request's route.
    struct Record {
        std::optional<int> code; // nothing: the status
        int64_t account = 0;     // whose request it was; 0: nobody's
    };
    Record record;
    std::optional<Lane> lane;                // no answer: the handler is to be called again by a thread of this lane
    std::shared_ptr<Wait> wait;              // no answer yet: the handler is to be called again after the wait
    std::chrono::milliseconds waitAtMost{0}; // all waits of the request together; the first one sets it
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
    static Response answeredAfter(std::shared_ptr<Wait> wait, std::chrono::milliseconds atMost);
};

// What names a request in the logs of everybody on its way: what the caller sent in X-Request-Id, if that is 8 to 64
// hexadecimal digits and hyphens, else a random one. A token or a name never has this form.
std::string requestIdOf(std::string_view sent);
// "%41+b" is "A b"; what is no valid escape stays as it is. In a path a plus sign is itself.
std::string decoded(std::string_view text, bool isPath);

} // namespace velmora::server::http
