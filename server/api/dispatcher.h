#pragma once

#include "server/api/requestkeys.h"
#include "server/api/routes.h"

#include <atomic>
#include <map>
#include <mutex>

namespace velmora::server {

struct Answer {
    int httpStatus = 200;
    Code code = Code::Done;
    nlohmann::json body;
    AccountId account = 0; // whose session it was; 0: nobody's
};

// From the text of a request to the text of its answer, without a network. Any thread.
class Dispatcher {
public:
    explicit Dispatcher(StationService &service);

    // For trying out how a radio behaves: the function answers this code, so many times (0: always).
    void failOnPurpose(const std::string &function, int code, int times);

    // "POST /v1/<function>" as it arrived.
    struct Request {
        std::string version;
        std::string function;
        std::string body;
        std::string authorization;  // the header; empty when there is none
        std::string key;            // the header Velmora-Request-Key; empty when there is none
        std::string address;        // where the caller is; limits count the network it belongs to
        std::string id = {};        // http::requestIdOf()
        std::string mediaBase = {}; // Call::mediaBase; empty: MediaAddresses::base()
    };
    Answer answer(const Request &request);
    // Whether answer() takes the time of a hash, for a request of this function with this body.
    static bool isSlow(const std::string &function, const std::string &body);
    // The answer to something that is no request.
    static Answer refusal(int httpStatus, Code code, const std::string &message);

private:
    // The body of the answer.
    nlohmann::json call(const Route &route, const Request &request, const Parameters &parameters, AccountId *account);
    // What was read with it goes into `listening`.
    Session checkedSession(const Route &route, const std::string &authorization, const Parameters &parameters,
                           std::optional<Listening> *listening);
    void throwFailureOnPurpose(const std::string &function);

    StationService &m_service;
    CallLimits m_limits;
    RequestKeys m_requestKeys;
    struct Failure {
        int code = 0;
        int left = 0; // 0: for ever
    };
    std::mutex m_mutex; // guards m_failures
    std::map<std::string, Failure> m_failures;
};

} // namespace velmora::server
