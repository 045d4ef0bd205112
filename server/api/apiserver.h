#pragma once

#include "server/api/dispatcher.h"
#include "server/api/mediaroads.h"
#include "server/api/metrics.h"
#include "server/api/returntimes.h"
#include "server/http/server.h"
#include "server/store/storeprobe.h"

#include <atomic>

namespace velmora::server {

struct ListenSettings {
    std::string host = "127.0.0.1";       // an address or a name, IPv6 without brackets
    int port = 7480;                      // 0 picks one
    std::filesystem::path tlsCertificate; // PEM, the chain; with the key: HTTPS
    std::filesystem::path tlsKey;
    // The service made its certificate itself: a browser warns, and its person decides each time. Programs of this
    // machine may do without TLS.
    bool isCertificateOwn = false;
    std::string publicUrl; // what the radio and browsers reach, when that is not where the server listens
    // For trying out how a radio behaves: every media stream gets no more than this. 0: no limit.
    int64_t throttleBytesPerSecond = 0;
    bool logsRequests = true; // one line a request on standard error
    // Adds further pages (paths other than /v1, /media, /health, /ready and /metrics) before the server listens.
    std::function<void(http::Router &)> addPages;
    std::function<http::Response(const http::Request &)> pageNotFound; // what browsers see; optional
    // Reverse proxies whose X-Forwarded-For is believed; addresses.
    std::vector<std::string> trustedProxies;
    MediaRoads roads; // of the files that somebody else sends
    http::Limits limits;
};

// The HTTP side of the service: functions, media, /health, /ready, /metrics.
class ApiServer {
public:
    ApiServer(StationService &service, ListenSettings settings);
    ~ApiServer(); // stops

    // Is listening when it returns. Throws std::runtime_error, with a text for the person who started the program.
    void start();
    // From now on not ready; every answer ends its connection. New connections are still answered. Any thread.
    void drain();
    // Ends streams and idle connections at once; answers in preparation are finished, for at most five seconds.
    void stop();

    // http::Server::readCertificateAgain().
    bool readCertificateAgain() { return m_server->readCertificateAgain(); }

    int port() const { return m_port; }
    // Where it listens, as an address a person can type.
    std::string url() const;
    Dispatcher &dispatcher() { return m_dispatcher; }

    static bool isLoopback(const std::string &host);

private:
    http::Router router();
    http::Response answerFunction(const http::Request &request);
    std::string mediaBaseFor(const http::Request &request) const;
    http::Response answerMedia(const http::Request &request);
    http::Response health() const;
    http::Response ready();
    http::Response metrics(const http::Request &request);
    // To what is no request of ours, or is beyond the limits.
    http::Response refusal(int status, const http::Request &request);
    // What a refused caller is asked to wait.
    std::chrono::seconds pauseFor(const http::Request &refused);
    void noteStart(const http::Request &request, AccountId account, int64_t track);
    http::Response fileResponse(const http::Request &request, const std::filesystem::path &file,
                                const std::string &mediaType) const;
    // Counts and logs an answer.
    void answered(const http::Request &request, http::Response &response);
    std::string accountMark(AccountId account) const;

    StationService &m_service;
    ListenSettings m_settings;
    Dispatcher m_dispatcher;
    Metrics m_metrics;
    ReturnTimes m_returnTimes;  // of functions and pages
    const std::string m_logKey; // of the marks that stand for accounts in the log
    std::atomic<bool> m_isDraining = false;
    StoreProbe m_storeProbe;
    std::unique_ptr<http::Server> m_server; // while it listens
    int m_port = 0;
};

} // namespace velmora::server
