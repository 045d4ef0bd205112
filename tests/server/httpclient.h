#pragma once

#include "server/http/message.h"

#include <openssl/types.h>

namespace velmora::server {

struct HttpAnswer {
    int status = 0; // 0: the connection ended instead
    http::Headers headers;
    std::string body;

    std::string header(std::string_view name) const { return std::string(http::headerOf(headers, name)); }
};

// One connection to 127.0.0.1, byte by byte; can send malformed requests. Waits at most twenty seconds.
class HttpClient {
public:
    enum class Tls { None, Newest, Version11, Version12, WithoutForwardSecrecy };

    // `from` is an address of this machine; empty: the usual one.
    explicit HttpClient(int port, const std::string &from = {}, Tls tls = Tls::None);
    ~HttpClient();
    HttpClient(const HttpClient &) = delete;
    HttpClient &operator=(const HttpClient &) = delete;

    bool isEncrypted() const { return m_ssl != nullptr; } // the handshake succeeded
    std::string tlsVersion() const;
    std::string cipher() const;
    std::string peerName() const; // the common name in the certificate of the other side
    // False when the other side has gone.
    bool send(std::string_view bytes);
    // The next answer; for a HEAD request its headers only.
    HttpAnswer receive(bool isHead = false);
    // Everything until the end of the connection; nothing when it does not end in time.
    std::optional<std::string> rest();
    // At most so many bytes; 0 at the end.
    size_t read(size_t most);
    // Reads what has already arrived, at most so many bytes; without TLS only. 0: nothing yet, or the end.
    size_t readSome(size_t most) const;
    // Whether the other side has ended the connection, as far as is known.
    bool isOver() const;
    void finishSending() const;

private:
    bool more();

    int m_socket = -1;
    std::shared_ptr<SSL> m_ssl;
    std::string m_input;
};

// A request on a connection of its own.
HttpAnswer httpRequest(int port, const std::string &method, const std::string &path, const http::Headers &headers = {},
                       const std::string &body = {});
inline HttpAnswer httpGet(int port, const std::string &path, const http::Headers &headers = {})
{
    return httpRequest(port, "GET", path, headers);
}
inline HttpAnswer httpPost(int port, const std::string &path, const std::string &body,
                           const http::Headers &headers = {})
{
    return httpRequest(port, "POST", path, headers, body);
}

} // namespace velmora::server
