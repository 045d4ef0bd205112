#pragma once

#include "server/http/limits.h"
#include "server/http/router.h"

namespace velmora::server::http {

struct ServerSettings {
    std::string host = "127.0.0.1";       // an address or a name, IPv6 without brackets; "::" takes IPv4 too
    int port = 0;                         // 0 picks one
    std::filesystem::path tlsCertificate; // PEM, the chain; with the key: HTTPS
    std::filesystem::path tlsKey;
    std::vector<std::string> unencrypted;    // callers with these addresses, in usual spelling, may do without TLS
    std::vector<std::string> trustedProxies; // addresses
    bool sendsHsts = false;                  // tells browsers to stay with https
    Limits limits;
    // The answer to what no handler sees: unknown paths, broken requests, limits. The request holds as much as was
    // read. Event loop's thread; quick.
    std::function<Response(int status, const Request &request)> refusal;
    // Every answer, refusals too, before it is sent; optional. A worker's or the event loop's thread; quick.
    std::function<void(const Request &request, Response &response)> answered;
};

// What the server holds at a moment.
struct Load {
    size_t connections = 0;
    size_t functions = 0; // requests that wait for a thread, by lane
    size_t files = 0;
    size_t passwords = 0;
    size_t awaiting = 0;      // requests that wait for news, without a thread
    size_t busyFunctions = 0; // threads that answer at this moment, by lane
    size_t busyFiles = 0;
    size_t busyPasswords = 0;
};

// An HTTP/1.1 server: one thread for all connections, two pools that answer.
class Server {
public:
    Server(ServerSettings settings, Router router);
    ~Server(); // stops

    // Takes the port and returns it. Throws std::runtime_error, with a text for the person who started the program.
    int bind();
    // Answers from now on.
    void start();
    // Any thread.
    Load load() const;
    // New connections get the certificate that the files hold now; the others keep theirs. Throws std::runtime_error,
    // and nothing changes, when certificate and key cannot be used. False without
    // TLS. Any thread, between start() and stop().
    bool readCertificateAgain();
    // Says to everybody that no request follows on this connection: answers end theirs, requests that wait for news are
    // answered. New connections are still taken. Any thread, before stop().
    void drain();
    // Takes no more connections, ends streams and idle connections at once, lets answers in preparation end within
    // `endTime`, and waits for the threads.
    void stop();

private:
    class Engine;
    std::unique_ptr<Engine> m_engine;
};

} // namespace velmora::server::http
