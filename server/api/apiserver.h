#pragma once

#include "server/api/dispatcher.h"

#include <functional>
#include <thread>

namespace httplib {
class Server;
struct Request;
struct Response;
} // namespace httplib

namespace velmora::server {

struct ListenSettings {
    std::string host = "127.0.0.1";       // an address or a name, IPv6 without brackets
    int port = 7480;                      // 0 picks one
    std::filesystem::path tlsCertificate; // PEM, the chain; with the key: HTTPS
    std::filesystem::path tlsKey;
    std::string publicUrl; // what the radio and browsers reach, when that is not where the server listens
    // For trying out how a radio behaves: every media stream gets no more than this. 0: no limit.
    int64_t throttleBytesPerSecond = 0;
    bool logsRequests = true; // one line a request on standard error: function, code, milliseconds
    // Adds further pages (paths other than /v1, /media and /health) before the server listens.
    std::function<void(httplib::Server &)> addPages;
};

// The HTTP side of the service: functions, media, /health. Answers on its own pool of threads.
class ApiServer {
public:
    ApiServer(StationService &service, ListenSettings settings);
    ~ApiServer(); // stops

    // Is listening when it returns. Throws std::runtime_error, with a text for the person who started the program.
    void start();
    // Ends all connections, also those in the middle of a track, and waits for the threads: well under a second.
    void stop();

    int port() const { return m_port; }
    // Where it listens, as an address a person can type.
    std::string url() const;
    Dispatcher &dispatcher() { return m_dispatcher; }

    static bool isLoopback(const std::string &host);

private:
    void addRoutes();
    void answerMedia(const httplib::Request &request, httplib::Response &response);
    void noteStart(const httplib::Request &request);
    void streamMedia(const httplib::Request &request, httplib::Response &response, const std::filesystem::path &file,
                     const std::string &mediaType);
    void log(const std::string &function, int code, std::chrono::steady_clock::time_point since) const;
    void endConnections() const;

    StationService &m_service;
    ListenSettings m_settings;
    Dispatcher m_dispatcher;
    std::unique_ptr<httplib::Server> m_server;
    std::thread m_thread; // accepts connections; the pool is the server's
    int m_port = 0;
    std::atomic<bool> m_isStopping{false};
    std::atomic<bool> m_hasEnded{false}; // the accepting thread has left
};

} // namespace velmora::server
