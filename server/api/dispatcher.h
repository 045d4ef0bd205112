#pragma once

#include "server/api/routes.h"

#include <atomic>
#include <map>
#include <mutex>

namespace velmora::server {

struct Answer {
    int httpStatus = 200;
    Code code = Code::done;
    nlohmann::json body;
    std::string function; // as it may stand in a log: a function's name or "unknown"
};

// From the text of a request to the text of its answer, without a network. Any thread.
class Dispatcher {
public:
    explicit Dispatcher(StationService &service);

    // For trying out how a radio behaves: the function answers this code, so many times (0: always).
    void failOnPurpose(const std::string &function, int code, int times);

    // The parts of "POST /v1/<function>", the body, the Authorization header and the caller's address.
    Answer answer(const std::string &version, const std::string &function, const std::string &body,
                  const std::string &authorization, const std::string &address);
    // For what never became a request.
    static Answer refusal(int httpStatus, Code code, const std::string &message);

private:
    nlohmann::json call(const Route &route, const Parameters &parameters, const std::string &authorization,
                        const std::string &address);
    Session checkedSession(const Route &route, const std::string &authorization);
    void throwFailureOnPurpose(const std::string &function);

    StationService &m_service;
    CallLimits m_limits;
    struct Failure {
        int code = 0;
        int left = 0; // 0: for ever
    };
    std::mutex m_mutex; // guards m_failures
    std::map<std::string, Failure> m_failures;
};

} // namespace velmora::server
