#pragma once

#include "server/http/file.h"

#include <memory>
#include <openssl/types.h>
#include <span>
#include <string_view>

namespace velmora::server::http {

enum class IoState {
    Done,       // so many bytes went over
    WantsRead,  // not before the socket can be read
    WantsWrite, // not before it can be written
    Ended       // by the other side, or broken
};

struct IoResult {
    IoState state = IoState::Done;
    size_t count = 0;
};

// The bytes of one connection, plain or through TLS. Never waits. Owns no socket. One thread.
class Transport {
public:
    static std::unique_ptr<Transport> plain(int socket);
    static std::unique_ptr<Transport> tls(int socket, SSL_CTX *context);
    virtual ~Transport() = default;
    Transport() = default;
    Transport(const Transport &) = delete;
    Transport &operator=(const Transport &) = delete;

    // Called until it is done; the first thing on a connection.
    virtual IoState handshake() = 0;
    virtual IoResult read(std::span<char> buffer) = 0;
    // `isMore`: something follows at once.
    virtual IoResult write(std::string_view text, bool isMore) = 0;
    // Part of a file. Done with 0 bytes: the file has become shorter.
    virtual IoResult send(const File &file, uint64_t offset, size_t count) = 0;
    // Says that nothing more comes.
    virtual void finishSending() = 0;
};

// TLS 1.2 and 1.3 with forward secrecy. Throws std::runtime_error when certificate and key cannot be used.
std::shared_ptr<SSL_CTX> tlsContext(const std::filesystem::path &certificate, const std::filesystem::path &key);

} // namespace velmora::server::http
