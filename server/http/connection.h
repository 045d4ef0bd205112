#pragma once

#include "server/http/requestparser.h"
#include "server/http/router.h"
#include "server/http/transport.h"
#include "server/http/workerpool.h"

#include <atomic>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <list>

namespace velmora::server::http {

class Connection;
struct ServerSettings;
class TrustedProxies;

// What the connections of one server share. Used by the event loop's thread only, but for the pools.
struct Loop {
    const ServerSettings &settings;
    const Router &router;
    const TrustedProxies &proxies;
    boost::asio::io_context &io;
    WorkerPool &functions;
    WorkerPool &files;
    WorkerPool &passwords;
    WorkerPool &probes;
    WorkerPool &readers;                      // bring parts of files into memory
    SSL_CTX *tls = nullptr;                   // null: no TLS
    std::vector<char> scratch;                // what is read passes through it
    std::list<Connection *> waiting;          // for something from the caller; the longest first
    size_t bodyBytes = 0;                     // reserved for bodies
    std::atomic<size_t> awaiting = 0;         // requests in Phase::Awaiting; for other threads, too
    bool isDraining = false;                  // no connection is kept after its answer
    std::function<void(Connection &)> forget; // called once, at a connection's end
};

// One caller's connection: reads a request, has it answered, sends the answer, reads the next. Lives as long as
// something refers to it: a wait for the socket, a timer, a job of a worker. Event loop's thread.
class Connection : public std::enable_shared_from_this<Connection> {
public:
    using Clock = std::chrono::steady_clock;

    // `address` of the other end; `network` is what counts as one caller.
    Connection(Loop &loop, boost::asio::ip::tcp::socket socket, std::string address, std::string network);
    ~Connection();

    void start();
    const std::string &network() const { return m_network; }
    // Ends at once, except that an answer which is prepared or sent from memory is finished.
    void finish();
    void end();
    // A request that waits for news is answered now.
    void drain();

private:
    enum class Phase {
        Handshake, // TLS, or the first byte of a caller who may do without
        Receiving, // a request; before its first byte the connection is idle
        Working,   // a worker has it
        Awaiting,  // news; no thread has it
        Answering, // the head of an answer, and its text
        Streaming, // a file
        Lingering, // the last answer is out; what still arrives is thrown away
        Ended
    };

    // Goes on as far as the socket allows. What throws ends this connection alone.
    void advance();
    void advanceAfter(const std::function<void()> &change);
    // Each step returns true when another may follow at once.
    bool step();
    bool chooseTransport();
    bool stepHandshake();
    bool stepReceiving();
    bool stepAnswering();
    bool stepStreaming();
    bool stepLingering();
    // Each returns true when the phase has changed.
    bool parse();
    bool headersRead();
    void work();
    void handOver(std::shared_ptr<Request> request, Lane lane);
    void await(std::shared_ptr<Request> request, const Response &response);
    void watchWhileAwaiting();
    void readWhileAwaiting();
    void leaveAwaiting();
    void askAgain();

    void answered(const Request &request, Response &response) const;
    void refuse(int status, const Request &request);
    void respond(Response response);
    void answerDone();
    void readAhead(uint64_t count);
    void hold(std::chrono::milliseconds time);

    void waitFor(IoState state);
    void setWaiting(bool isWaiting);
    static constexpr auto never = std::chrono::milliseconds::max();
    void setDeadline(std::chrono::milliseconds fromNow);
    void armTimer();
    void timeIsUp();
    void releaseBody();

    Loop &m_loop;
    boost::asio::ip::tcp::socket m_socket;
    boost::asio::steady_timer m_timer; // for the deadline
    boost::asio::steady_timer m_pace;  // between pieces of a throttled file
    const std::string m_address;
    const std::string m_network;
    std::unique_ptr<Transport> m_transport;
    Phase m_phase = Phase::Handshake;

    std::string m_input;                     // arrived and not yet understood; at most `headerBytes`
    std::unique_ptr<RequestParser> m_parser; // from a request's first byte to its end
    const Route *m_route = nullptr;          // of the request, once its headers are read
    size_t m_reservedBody = 0;               // of `bodyBytes`
    std::string m_output;                    // the head of the answer, and its text
    size_t m_outputSent = 0;
    bool m_isEncrypted = false; // known once there is a transport
    bool m_isHead = false;      // the answer has no body
    bool m_isKeptAlive = false; // another request may follow
    bool m_isFinishing = false; // no request follows

    struct Transfer { // of a file
        std::shared_ptr<const File> file;
        uint64_t at = 0;
        uint64_t end = 0;
        uint64_t knownCached = 0; // up to here
        uint64_t windowBegin = 0; // where it was when the deadline was set
        int64_t bytesPerSecond = 0;
        bool isHeld = false; // by the pace, or by a worker that reads ahead
    };
    std::unique_ptr<Transfer> m_transfer;

    struct Pause { // of a request that awaits news
        std::shared_ptr<Request> request;
        std::shared_ptr<Wait> wait;
    };
    std::optional<Pause> m_pause;                   // in Phase::Awaiting only
    std::optional<Clock::time_point> m_awaitsUntil; // from the first wait of a request to its answer
    unsigned m_pauses = 0;                          // tells a pause from earlier ones

    Clock::time_point m_deadline = Clock::time_point::max();
    Clock::time_point m_timerAt = Clock::time_point::max();
    bool m_isSocketAwaited = false;
    bool m_isListed = false; // in Loop::waiting, at m_place
    std::list<Connection *>::iterator m_place;
};

} // namespace velmora::server::http
