#pragma once

#include "server/accounts/secrets.h"
#include "server/store/connection.h"

#include <condition_variable>
#include <mutex>
#include <nlohmann/json.hpp>
#include <set>

namespace velmora::server {

class Store;

// Remembers for a day what requests with a key were answered, so that a repetition of one (the connection broke before
// its answer arrived) changes nothing and gets the first answer. Survives a restart.
//
// Keys and answers are secrets: the store keeps only the hash of a key, and every answer encrypted with its key. Any
// thread.
class RequestKeys {
public:
    static constexpr int64_t keptSeconds = 24 * 3600;
    static constexpr int mostOfOwner = 500; // a day; the next ones take the places of the oldest

    RequestKeys(Store &store, Clock clock);

    static bool isKey(std::string_view text); // 32 hexadecimal digits

    struct Request {
        std::string owner; // who may repeat it: a device, or a device and an account
        std::string key;
        std::string content; // function and body; a repetition has the same
        // The work does nothing slow, so the change and the answer are stored in one transaction: a program that is
        // killed between the two does not carry out the repetition a second time.
        bool isQuick = false;
        Durability durability = Durability::AtOnce; // of a quick one
    };
    // The remembered answer, or that of `work`, which is then remembered. A repetition that arrives while the first
    // request is being worked on waits for it. Throws ApiError (malformed) when the key came with another request, and
    // what `work` throws; nothing is remembered then.
    nlohmann::json once(const Request &request, const std::function<nlohmann::json()> &work);

private:
    nlohmann::json answered(const Request &request, const std::string &id, const std::function<nlohmann::json()> &work);
    std::optional<nlohmann::json> kept(const Request &request, const std::string &id);
    void keep(const Request &request, const std::string &id, const nlohmann::json &answer);

    Store &m_store;
    Clock m_clock;
    std::mutex m_mutex; // guards m_underWay
    std::condition_variable m_isDone;
    std::set<std::string> m_underWay; // ids of requests that are being worked on
};

} // namespace velmora::server
