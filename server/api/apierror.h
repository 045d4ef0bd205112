#pragma once

#include <exception>
#include <nlohmann/json.hpp>
#include <string>

namespace velmora::server {

// The results of docs/server-api.md.
enum class Code {
    Done = 0,
    Internal = 5000,
    Malformed = 5001,
    NoSuchMusic = 5002,
    VersionRefused = 5003,
    TooMany = 5004,
    NoSuchFunction = 5005,
    Maintenance = 5096,
    BadToken = 5097,
    BadLogin = 5098,
    Inactive = 5099,
    NotAuthorised = 5100,
    TooManyStations = 5101,
    NoSuchStation = 5102,
    NoSuchDevice = 5105,
    BadUserName = 5107,
    BadPassword = 5108,
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
