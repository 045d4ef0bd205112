#pragma once

#include "arena.h"
#include "config.h"
#include "curl.h"
#include "pace.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace velmora::ws {

struct Answer {
    enum class End { Complete, Broken, TooLarge };
    End end = End::Broken;
    bool mayPass = false; // a broken one: no connection, a cut, or a time limit; the same request may succeed later
    long httpStatus = 0;
    std::chrono::seconds retryAfter{0}; // of the header of this name; 0: not said
    std::string body;
};

// One HTTP transfer at a time over a kept connection. Used by one thread, except wake(). No network library is loaded
// before the first transfer.
class Transport {
public:
    explicit Transport(const Config &config);
    ~Transport();
    Transport(const Transport &) = delete;
    Transport &operator=(const Transport &) = delete;

    // Ends run() early. Any thread.
    void wake();

    // Sends POST /v1/<function>; an empty token or key sends none. `endsBy` is a time limit beside the configured ones.
    // False: could not even be begun, and never can be.
    bool start(const char *function, const SecretText &token, const std::string &key, SecretText body,
               std::optional<Clock::time_point> endsBy = {});
    bool isBusy() const { return m_isBusy; }

    // Waits for the network, wake() or `until`, then works on the transfer. Returns the answer when it has ended.
    std::optional<Answer> run(std::optional<Clock::time_point> until);

    // Aborts the transfer.
    void stop();

private:
    static std::size_t takeBody(char *data, std::size_t size, std::size_t count, void *self);
    static std::size_t takeHeader(char *data, std::size_t size, std::size_t count, void *self);
    void received(std::size_t bytes);
    Clock::time_point overdue() const; // when the transfer under way is given up
    bool load();
    void sleepUnloaded(std::optional<Clock::time_point> until);

    // CURL and CURLM are both void.
    struct EasyCleanup {
        void operator()(CURL *easy) const { Curl::get()->easy_cleanup(easy); }
    };
    struct MultiCleanup {
        void operator()(CURLM *multi) const { Curl::get()->multi_cleanup(multi); }
    };
    struct ListCleanup {
        void operator()(curl_slist *list) const { Curl::get()->slist_free_all(list); }
    };

    const Config m_config;
    const Curl *m_curl = nullptr;
    std::optional<std::string> m_server; // valid once loaded; empty text: not usable
    std::mutex m_mutex;                  // guards what wake() needs: m_isWoken, and m_multi against being set
    std::condition_variable m_woken;
    bool m_isWoken = false; // while there is no m_multi
    // The multi handle keeps the connection; the easy handle must go first.
    std::unique_ptr<CURLM, MultiCleanup> m_multi;
    std::unique_ptr<CURL, EasyCleanup> m_easy;
    // Of the transfer under way:
    std::unique_ptr<curl_slist, ListCleanup> m_headers;
    SecretText m_sent;
    Answer m_answer;
    std::size_t m_headerBytes = 0;
    Clock::time_point m_started;
    bool m_hasBegun = false;         // a byte has come
    std::size_t m_sinceProgress = 0; // bytes since m_lastProgress
    Clock::time_point m_lastProgress;
    std::optional<Clock::time_point> m_endsBy;
    bool m_isBusy = false;
};

} // namespace velmora::ws
