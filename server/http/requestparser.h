#pragma once

#include "server/http/limits.h"
#include "server/http/message.h"

#include <memory>

namespace velmora::server::http {

// Reads one request out of the bytes of a connection. Holds no more than the limits allow.
class RequestParser {
public:
    explicit RequestParser(const Limits &limits);
    ~RequestParser();
    RequestParser(const RequestParser &) = delete;
    RequestParser &operator=(const RequestParser &) = delete;

    enum class State {
        NeedsMore, // of the headers, or of the body
        HeadersRead,
        Done,
        Failed // the status says why
    };
    // Takes bytes from the front of `input`. Stops once when the headers are read; the next call goes on.
    State take(std::string &input);

    int failure() const { return m_failure; } // HTTP status
    // Valid once the headers are read.
    Request &request();
    bool isKeptAlive() const;
    bool isContinueExpected() const;
    bool hasBody() const; // or says that one follows
    // The length of the body where it is known beforehand, else the largest that is taken.
    size_t expectedBody() const;
    // Set after the headers were read.
    void setMostBody(size_t bytes);

private:
    class Grammar;
    State fail(int status);
    State checkHeaders();

    const Limits &m_limits;
    std::unique_ptr<Grammar> m_grammar;
    int m_failure = 0;
    bool m_isHeaderDone = false;
};

} // namespace velmora::server::http
