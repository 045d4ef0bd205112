#include "server/http/transport.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <stdexcept>
#include <sys/sendfile.h>
#include <sys/socket.h>

namespace velmora::server::http {

namespace {

class PlainTransport : public Transport {
public:
    explicit PlainTransport(int socket)
        : m_socket(socket)
    {
    }

    IoState handshake() override { return IoState::Done; }

    IoResult read(std::span<char> buffer) override
    {
        const ssize_t count = ::recv(m_socket, buffer.data(), buffer.size(), 0);
        return count == 0 ? IoResult{IoState::Ended, 0} : result(count, IoState::WantsRead);
    }

    IoResult write(std::string_view text, bool isMore) override
    {
        const int flags = MSG_NOSIGNAL | (isMore ? MSG_MORE : 0);
        return result(::send(m_socket, text.data(), text.size(), flags), IoState::WantsWrite);
    }

    IoResult send(const File &file, uint64_t offset, size_t count) override
    {
        off_t position = static_cast<off_t>(offset);
        return result(::sendfile(m_socket, file.descriptor(), &position, count), IoState::WantsWrite);
    }

    void finishSending() override { ::shutdown(m_socket, SHUT_WR); }

private:
    static IoResult result(ssize_t count, IoState wish)
    {
        if (count >= 0)
            return {IoState::Done, static_cast<size_t>(count)};
        return {errno == EAGAIN || errno == EINTR ? wish : IoState::Ended, 0};
    }

    const int m_socket;
};

class TlsTransport : public Transport {
public:
    TlsTransport(int socket, SSL_CTX *context)
        : m_socket(socket)
        , m_ssl(SSL_new(context), &SSL_free)
    {
        if (!m_ssl || SSL_set_fd(m_ssl.get(), socket) != 1)
            throw std::bad_alloc();
        SSL_set_accept_state(m_ssl.get());
    }

    IoState handshake() override
    {
        ERR_clear_error();
        return result(SSL_do_handshake(m_ssl.get())).state;
    }

    IoResult read(std::span<char> buffer) override
    {
        ERR_clear_error();
        return result(SSL_read(m_ssl.get(), buffer.data(), static_cast<int>(buffer.size())));
    }

    IoResult write(std::string_view text, bool) override
    {
        ERR_clear_error();
        return result(SSL_write(m_ssl.get(), text.data(), static_cast<int>(std::min(text.size(), mostAtOnce))));
    }

    IoResult send(const File &file, uint64_t offset, size_t count) override
    {
        // After WantsWrite the same record is read again: OpenSSL requires the same content on a retry.
        std::array<char, mostAtOnce> buffer;
        const size_t wanted = std::min(count, buffer.size());
        const size_t got = file.read(offset, buffer.data(), wanted);
        return got < wanted ? IoResult{IoState::Done, 0} : write({buffer.data(), got}, true);
    }

    void finishSending() override
    {
        ERR_clear_error();
        SSL_shutdown(m_ssl.get());
        ::shutdown(m_socket, SHUT_WR);
    }

private:
    static constexpr size_t mostAtOnce = 16 * 1024; // one record

    IoResult result(int count)
    {
        if (count > 0)
            return {IoState::Done, static_cast<size_t>(count)};
        switch (SSL_get_error(m_ssl.get(), count)) {
        case SSL_ERROR_WANT_READ:
            return {IoState::WantsRead, 0};
        case SSL_ERROR_WANT_WRITE:
            return {IoState::WantsWrite, 0};
        default:
            return {IoState::Ended, 0};
        }
    }

    const int m_socket;
    const std::unique_ptr<SSL, decltype(&SSL_free)> m_ssl;
};

} // namespace

std::unique_ptr<Transport> Transport::plain(int socket)
{
    return std::make_unique<PlainTransport>(socket);
}

std::unique_ptr<Transport> Transport::tls(int socket, SSL_CTX *context)
{
    return std::make_unique<TlsTransport>(socket, context);
}

std::shared_ptr<SSL_CTX> tlsContext(const std::filesystem::path &certificate, const std::filesystem::path &key)
{
    std::shared_ptr<SSL_CTX> context(SSL_CTX_new(TLS_server_method()), &SSL_CTX_free);
    if (!context || SSL_CTX_set_min_proto_version(context.get(), TLS1_2_VERSION) != 1 ||
        SSL_CTX_set_cipher_list(context.get(), "ECDHE+AESGCM:ECDHE+CHACHA20") != 1)
        throw std::runtime_error("TLS cannot be set up");
    if (SSL_CTX_use_certificate_chain_file(context.get(), certificate.c_str()) != 1 ||
        SSL_CTX_use_PrivateKey_file(context.get(), key.c_str(), SSL_FILETYPE_PEM) != 1 ||
        SSL_CTX_check_private_key(context.get()) != 1)
        throw std::runtime_error("cannot use the certificate " + certificate.string() + " with the key " +
                                 key.string());
    // Session tickets would be encrypted with a key that lives as long as the program, which forward secrecy forbids.
    SSL_CTX_set_options(context.get(), SSL_OP_NO_TICKET | SSL_OP_NO_RENEGOTIATION | SSL_OP_NO_COMPRESSION |
                                           SSL_OP_CIPHER_SERVER_PREFERENCE | SSL_OP_IGNORE_UNEXPECTED_EOF);
    SSL_CTX_set_num_tickets(context.get(), 0);
    SSL_CTX_set_session_cache_mode(context.get(), SSL_SESS_CACHE_OFF);
    // Buffers of idle connections go.
    SSL_CTX_set_mode(context.get(),
                     SSL_MODE_RELEASE_BUFFERS | SSL_MODE_ENABLE_PARTIAL_WRITE | SSL_MODE_ACCEPT_MOVING_WRITE_BUFFER);
    return context;
}

} // namespace velmora::server::http
