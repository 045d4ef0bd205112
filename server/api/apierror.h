#pragma once

#include <exception>
#include <nlohmann/json.hpp>
#include <string>

namespace velmora::server {

// The results of docs/server-api.md.
enum class Code {
    done = 0,
    internal = 5000,
    malformed = 5001,
    noSuchMusic = 5002,
    versionRefused = 5003,
    tooMany = 5004,
    noSuchFunction = 5005,
    maintenance = 5096,
    badToken = 5097,
    badLogin = 5098,
    inactive = 5099,
    notAuthorised = 5100,
    tooManyStations = 5101,
    noSuchStation = 5102,
    noSuchDevice = 5105,
    badUserName = 5107,
    badPassword = 5108,
};

// Ends a function with a code. The message is English, for logs, and never carries what the caller sent.
class ApiError : public std::exception {
public:
    ApiError(Code code, std::string message, nlohmann::json data = nullptr)
        : m_code(code)
        , m_message(std::move(message))
        , m_data(std::move(data))
    {
    }
    Code code() const { return m_code; }
    const nlohmann::json &data() const { return m_data; } // null when there is none
    const char *what() const noexcept override { return m_message.c_str(); }

private:
    Code m_code;
    std::string m_message;
    nlohmann::json m_data;
};

} // namespace velmora::server
