#pragma once

#include "tests/server/httpclient.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <sys/types.h>
#include <vector>

// The service as a process of its own, and a caller of it. For benchmarks; errors are exceptions.
namespace bench {

// Seconds.
double since(std::chrono::steady_clock::time_point begin);

// A folder that is removed at the end.
class ScratchFolder {
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder &) = delete;
    ScratchFolder &operator=(const ScratchFolder &) = delete;

    const std::filesystem::path path;
};

// velmora-server on a free port of this machine, with a small demo catalogue. Ends with this program.
class Server {
public:
    // `cores`: as taskset takes them; empty: all.
    explicit Server(const std::filesystem::path &data, const std::vector<std::string> &options = {},
                    const std::string &cores = {});
    ~Server();
    Server(const Server &) = delete;
    Server &operator=(const Server &) = delete;

    void kill(); // as a crash
    void untilMusicIsMade();
    double megabytes(const char *line = "VmRSS") const; // of /proc/PID/status
    double
    megabytesFor(const std::function<void()> &work) const; // at its peak, beyond what was held before // resident
    double cpuSeconds() const;
    size_t sockets() const;
    int port() const { return m_port; }

private:
    // Waits for a line of its output.
    std::string lineWith(const std::string &text);
    void end(int signal);

    pid_t m_pid = -1;
    FILE *m_output = nullptr;
    int m_port = 0;
};

// Some of them on one store, behind a balancer whose word about the callers they take; without a demo catalogue.
class Servers {
public:
    // `database`: a PostgreSQL's address; empty: a file in the folder, which one process alone may use.
    Servers(const std::filesystem::path &data, const std::string &database, size_t processes);

    void start(); // again, after kill(), on the same ports
    void kill();
    void stop() { m_servers.clear(); }
    const std::vector<int> &ports() const { return m_ports; }
    double cpuSeconds() const;

private:
    const std::filesystem::path m_data;
    const std::string m_database;
    std::vector<int> m_ports;
    std::vector<std::unique_ptr<Server>> m_servers;
};

// As many as the system lets this program have.
void allowManyConnections();

// Opens the link that the service has written to this address into the outbox of its data folder: makes the account.
void openSignUpLink(velmora::server::HttpClient &client, const std::filesystem::path &data, const std::string &address);

// Calls a function of the service's interface and returns its data; anything but code 0 is an exception.
nlohmann::json call(velmora::server::HttpClient &client, const std::string &function, const nlohmann::json &parameters,
                    const std::string &token);

} // namespace bench
