#pragma once

#include <boost/asio/io_context.hpp>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace bench {

// Kept connections to the processes of a service, as a load balancer keeps them: requests of many radios share them,
// and each process gets every so manieth. One thread: the loop's.
class Balancer {
public:
    struct Request {
        std::string function; // empty: asks for the service's health
        std::string body, token, key;
        std::string address; // of the radio, passed on
    };
    struct Answer {
        int status = 0;         // 0: there is no connection, or it was cut, or it took too long
        bool isRefused = false; // nobody listens
        int retryAfter = 0;     // seconds, of the header
        std::string body;
    };
    using Done = std::function<void(Answer)>;

    // At most so many connections in all; more requests wait.
    Balancer(boost::asio::io_context &io, std::vector<int> ports, size_t mostConnections);
    ~Balancer();
    Balancer(const Balancer &) = delete;
    Balancer &operator=(const Balancer &) = delete;

    void send(Request request, Done done);

private:
    class Connection;
    struct Process {
        int port = 0;
        std::vector<std::shared_ptr<Connection>> idle;
    };
    struct Waiting {
        Request request;
        Done done;
    };

    void begin(Waiting waiting);
    enum class End { Kept, Closed, Broken };
    void ended(const std::shared_ptr<Connection> &connection, size_t process, End end);

    boost::asio::io_context &m_io;
    std::vector<Process> m_processes;
    size_t m_next = 0;
    const size_t m_mostConnections;
    size_t m_busy = 0;
    std::deque<Waiting> m_waiting;
};

} // namespace bench
