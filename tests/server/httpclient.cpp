#include "httpclient.h"

#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <netinet/in.h>
#include <openssl/ssl.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace velmora::server {

namespace {

sockaddr_in addressOf(const std::string &text, int port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    ::inet_pton(AF_INET, text.c_str(), &address.sin_addr);
    return address;
}

int versionOf(HttpClient::Tls tls)
{
    switch (tls) {
    case HttpClient::Tls::Version11:
        return TLS1_1_VERSION;
    case HttpClient::Tls::Version12:
    case HttpClient::Tls::WithoutForwardSecrecy:
        return TLS1_2_VERSION;
    default:
        return 0; // the newest
    }
}

} // namespace

HttpClient::HttpClient(int port, const std::string &from, Tls tls)
    : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    const timeval limit{20, 0};
    ::setsockopt(m_socket, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    ::setsockopt(m_socket, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
    const sockaddr_in source = addressOf(from, 0);
    const sockaddr_in target = addressOf("127.0.0.1", port);
    if ((!from.empty() && ::bind(m_socket, reinterpret_cast<const sockaddr *>(&source), sizeof source) != 0) ||
        ::connect(m_socket, reinterpret_cast<const sockaddr *>(&target), sizeof target) != 0)
        throw std::runtime_error("cannot connect to port " + std::to_string(port));
    if (tls == Tls::None)
        return;
    const std::shared_ptr<SSL_CTX> context(SSL_CTX_new(TLS_client_method()), &SSL_CTX_free);
    // Everything that OpenSSL supports, so that the server has to choose.
    SSL_CTX_set_cipher_list(context.get(), tls == Tls::WithoutForwardSecrecy ? "kRSA" : "ALL:@SECLEVEL=0");
    SSL_CTX_set_max_proto_version(context.get(), versionOf(tls));
    m_ssl = std::shared_ptr<SSL>(SSL_new(context.get()), &SSL_free);
    SSL_set_fd(m_ssl.get(), m_socket);
    if (SSL_connect(m_ssl.get()) != 1)
        m_ssl.reset();
}

HttpClient::~HttpClient()
{
    ::close(m_socket);
}

std::string HttpClient::tlsVersion() const
{
    return SSL_get_version(m_ssl.get());
}

std::string HttpClient::cipher() const
{
    return SSL_get_cipher_name(m_ssl.get());
}

std::string HttpClient::peerName() const
{
    const std::unique_ptr<X509, decltype(&X509_free)> certificate(SSL_get1_peer_certificate(m_ssl.get()), &X509_free);
    std::array<char, 256> name{};
    X509_NAME_get_text_by_NID(X509_get_subject_name(certificate.get()), NID_commonName, name.data(), name.size());
    return name.data();
}

bool HttpClient::send(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = m_ssl ? SSL_write(m_ssl.get(), bytes.data(), static_cast<int>(bytes.size()))
                                    : ::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count <= 0)
            return false;
        bytes.remove_prefix(static_cast<size_t>(count));
    }
    return true;
}

bool HttpClient::more()
{
    std::array<char, 64 * 1024> buffer;
    const ssize_t count = m_ssl ? SSL_read(m_ssl.get(), buffer.data(), static_cast<int>(buffer.size()))
                                : ::recv(m_socket, buffer.data(), buffer.size(), 0);
    if (count > 0)
        m_input.append(buffer.data(), static_cast<size_t>(count));
    return count > 0;
}

HttpAnswer HttpClient::receive(bool isHead)
{
    size_t end = m_input.find("\r\n\r\n");
    for (; end == std::string::npos; end = m_input.find("\r\n\r\n")) {
        if (!more())
            return {};
    }
    HttpAnswer answer;
    answer.status = std::stoi(m_input.substr(m_input.find(' ') + 1));
    size_t at = m_input.find("\r\n") + 2;
    while (at < end + 2) {
        const size_t lineEnd = m_input.find("\r\n", at);
        const size_t colon = m_input.find(':', at);
        answer.headers.emplace_back(m_input.substr(at, colon - at), m_input.substr(colon + 2, lineEnd - colon - 2));
        at = lineEnd + 2;
    }
    m_input.erase(0, end + 4);
    const std::string length = answer.header("Content-Length");
    const size_t count = isHead || length.empty() ? 0 : std::stoul(length);
    while (m_input.size() < count && more()) {
    }
    answer.body = m_input.substr(0, count);
    m_input.erase(0, count);
    return answer;
}

std::optional<std::string> HttpClient::rest()
{
    errno = 0;
    while (more()) {
    }
    return errno == EAGAIN ? std::nullopt : std::optional(std::exchange(m_input, {}));
}

size_t HttpClient::read(size_t most)
{
    if (m_input.empty() && !more())
        return 0;
    const size_t count = std::min(most, m_input.size());
    m_input.erase(0, count);
    return count;
}

size_t HttpClient::readSome(size_t most) const
{
    const ssize_t count = ::recv(m_socket, nullptr, most, MSG_DONTWAIT | MSG_TRUNC);
    return count > 0 ? static_cast<size_t>(count) : 0;
}

bool HttpClient::isOver() const
{
    char byte = 0;
    const ssize_t count = ::recv(m_socket, &byte, 1, MSG_DONTWAIT | MSG_PEEK);
    return count >= 0 || errno != EAGAIN; // an answer that has arrived announces the end
}

void HttpClient::finishSending() const
{
    ::shutdown(m_socket, SHUT_WR);
}

HttpAnswer httpRequest(int port, const std::string &method, const std::string &path, const http::Headers &headers,
                       const std::string &body)
{
    HttpClient client(port);
    std::string request = method + " " + path + " HTTP/1.1\r\nConnection: close\r\n";
    if (http::headerOf(headers, "Host").empty())
        request += "Host: 127.0.0.1\r\n";
    for (const auto &[name, value] : headers)
        request.append(name).append(": ").append(value).append("\r\n");
    if (method == "POST")
        request += "Content-Length: " + std::to_string(body.size()) + "\r\n";
    client.send(request + "\r\n" + body);
    return client.receive(method == "HEAD");
}

} // namespace velmora::server
