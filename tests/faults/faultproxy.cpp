#include "faultproxy.h"

#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http.hpp>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <limits>
#include <list>
#include <map>
#include <mutex>
#include <optional>
#include <poll.h>
#include <random>
#include <set>
#include <sstream>
#include <stdexcept>
#include <sys/socket.h>
#include <thread>

namespace faults {

namespace {

namespace asio = boost::asio;
namespace http = boost::beast::http;
using boost::system::error_code;
using tcp = asio::ip::tcp;
using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;
using Kind = Fault::Kind;

constexpr auto lookTime = std::chrono::milliseconds(20);
constexpr int lowestPort = 20000;
constexpr int highestPort = 32000;
constexpr int portTries = 100;
constexpr size_t chunkBytes = 16 * 1024;
constexpr auto lateness = std::chrono::milliseconds(500);
constexpr int piecesPerSecond = 20; // of a slow body
constexpr const char *page = "<!DOCTYPE html><html><body><h1>Please sign in to the network</h1></body></html>";

bool isOfEverything(Kind kind)
{
    return kind == Kind::Outage || kind == Kind::DeadOutage || kind == Kind::Down;
}

// Acts while the body passes, not at the beginning of an exchange.
bool isOfBody(const Fault &fault)
{
    const bool isEnd = fault.kind == Kind::Close || fault.kind == Kind::Reset || fault.kind == Kind::Hang;
    return fault.kind == Kind::Slow || (isEnd && fault.amount >= 0);
}

std::string randomBytes(size_t size)
{
    static thread_local std::mt19937 generator(size);
    std::string bytes(size, '\0');
    std::generate(bytes.begin(), bytes.end(), [] { return char(generator()); });
    return bytes;
}

bool hasPeerLeft(tcp::socket &socket)
{
    pollfd watched{socket.native_handle(), POLLRDHUP, 0};
    return ::poll(&watched, 1, 0) > 0 && (watched.revents & (POLLRDHUP | POLLHUP | POLLERR));
}

// A program that the test starts must not inherit it: the port would stay taken while the proxy is down.
int closedOnExec()
{
    return ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
}

void closeByReset(tcp::socket &socket)
{
    error_code ignored;
    socket.set_option(tcp::socket::linger(true, 0), ignored);
    socket.close(ignored);
}

bool write(tcp::socket &socket, const std::string &bytes)
{
    error_code error;
    asio::write(socket, asio::buffer(bytes), error);
    return !error;
}

std::string wholeAnswer(int status, const char *type, const std::string &body, int retryAfter = 0)
{
    http::response<http::string_body> answer(http::int_to_status(status), 11);
    if (answer.result() == http::status::unknown)
        answer.result(status);
    answer.set(http::field::content_type, type);
    if (retryAfter > 0)
        answer.set(http::field::retry_after, std::to_string(retryAfter));
    answer.body() = body;
    answer.prepare_payload();
    std::ostringstream text;
    text << answer;
    return text.str();
}

} // namespace

class FaultProxy::Work {
public:
    Work()
        : m_acceptor(m_context)
    {
        // Not one that the kernel gives to clients: while the proxy is down, the radio's own socket could take it.
        std::random_device chance;
        std::uniform_int_distribution<int> ports(lowestPort, highestPort);
        for (int tries = 0; !listen(); ++tries) {
            if (tries == portTries)
                throw std::runtime_error("no free port for the fault proxy");
            m_port = ports(chance);
        }
        m_accepting = std::thread([this] { acceptLoop(); });
    }

    ~Work()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_isEnding = true;
        }
        m_changed.notify_all();
        m_accepting.join();
        shutAll();
        for (const auto &connection : m_connections)
            connection->thread.join();
    }

    Work(const Work &) = delete;
    Work &operator=(const Work &) = delete;

    int port() const { return m_port; }

    void begin(std::vector<Fault> faults)
    {
        const std::lock_guard lock(m_mutex);
        m_faults.clear();
        for (Fault &fault : faults) {
            const bool hasBegun = fault.since.empty();
            m_faults.push_back(
                {std::move(fault), ++m_numbers, 0, hasBegun ? std::optional(Clock::now()) : std::nullopt});
        }
    }

    bool isOver() const
    {
        const std::lock_guard lock(m_mutex);
        const auto now = Clock::now();
        return std::all_of(m_faults.begin(), m_faults.end(), [now](const Active &active) {
            const Fault &fault = active.fault;
            const bool isTimeOver =
                fault.lasts > 0 && active.begun && now >= *active.begun + Seconds(fault.from + fault.lasts);
            return isTimeOver || (fault.times > 0 && active.hits >= fault.times);
        });
    }

    int hits() const
    {
        const std::lock_guard lock(m_mutex);
        int sum = 0;
        for (const Active &active : m_faults)
            sum += active.hits;
        return sum;
    }

    int requests(const std::string &path) const
    {
        const std::lock_guard lock(m_mutex);
        int sum = 0;
        for (const auto &[asked, count] : m_requests)
            sum += asked.find(path) == std::string::npos ? 0 : count;
        return sum;
    }

    std::atomic<int> servicePort{0};
    std::atomic<int> mediaRate{0};

private:
    struct Active {
        Fault fault;
        int number = 0; // never used again
        int hits = 0;
        std::optional<Clock::time_point> begun; // empty: its request has not come
    };

    struct Connection {
        explicit Connection(tcp::socket accepted)
            : radio(std::move(accepted))
        {
        }
        tcp::socket radio; // closed by its thread only
        Clock::time_point born = Clock::now();
        std::atomic<bool> isDone{false};
        std::thread thread;
    };

    // One request and its answer.
    struct Exchange {
        http::request<http::string_body> request;
        std::string path;
        std::set<int> hit; // faults that have counted it, by number
        std::optional<Fault> head;
        size_t delivered = 0; // of the body
    };

    bool listen()
    {
        if (m_port == 0)
            return false;
        const tcp::endpoint place(asio::ip::address_v4::loopback(), static_cast<unsigned short>(m_port));
        error_code error;
        m_acceptor.assign(place.protocol(), closedOnExec());
        m_acceptor.set_option(tcp::acceptor::reuse_address(true));
        m_acceptor.bind(place, error);
        if (!error)
            m_acceptor.listen(tcp::acceptor::max_listen_connections, error);
        m_acceptor.non_blocking(true);
        if (error)
            m_acceptor.close();
        return !error;
    }

    void acceptLoop()
    {
        while (!isEnding()) {
            const bool isDown = blackout(Clock::time_point::max()) == Blackout::Down;
            if (isDown && m_acceptor.is_open()) {
                m_acceptor.close();
                shutAll();
            } else if (!isDown && !m_acceptor.is_open()) {
                listen();
            }
            reap();
            if (!m_acceptor.is_open()) {
                sleep(lookTime);
                continue;
            }
            pollfd watched{m_acceptor.native_handle(), POLLIN, 0};
            if (::poll(&watched, 1, int(lookTime.count())) <= 0)
                continue;
            const int descriptor = ::accept4(m_acceptor.native_handle(), nullptr, nullptr, SOCK_CLOEXEC);
            if (descriptor < 0)
                continue;
            tcp::socket accepted(m_context, tcp::v4(), descriptor);
            auto connection = std::make_shared<Connection>(std::move(accepted));
            connection->thread = std::thread([this, connection] {
                serve(*connection);
                error_code ignored;
                const std::lock_guard lock(m_mutex);
                connection->radio.close(ignored);
                connection->isDone = true;
            });
            const std::lock_guard lock(m_mutex);
            m_connections.push_back(connection);
        }
    }

    void reap()
    {
        std::list<std::shared_ptr<Connection>> done;
        {
            const std::lock_guard lock(m_mutex);
            for (auto it = m_connections.begin(); it != m_connections.end();) {
                const auto next = std::next(it);
                if ((*it)->isDone)
                    done.splice(done.end(), m_connections, it);
                it = next;
            }
        }
        for (const auto &connection : done)
            connection->thread.join();
    }

    void shutAll()
    {
        const std::lock_guard lock(m_mutex);
        for (const auto &connection : m_connections) {
            error_code ignored;
            if (connection->radio.is_open())
                connection->radio.shutdown(tcp::socket::shutdown_both, ignored);
        }
    }

    void serve(Connection &connection)
    {
        boost::beast::flat_buffer buffer;
        error_code error;
        do {
            Exchange exchange;
            http::request_parser<http::string_body> parser;
            http::read(connection.radio, buffer, parser, error);
            if (error)
                return;
            exchange.request = parser.release();
            exchange.path = std::string(exchange.request.target());
            arrived(exchange.path);
            if (!passBlackout(connection))
                return;
            exchange.head = take(exchange, [](const Fault &fault) { return !isOfBody(fault); });
            if (!answer(connection, exchange) || !exchange.request.keep_alive())
                return;
        } while (true);
    }

    void arrived(const std::string &path)
    {
        const std::lock_guard lock(m_mutex);
        ++m_requests[path.substr(0, path.find('?'))];
        for (Active &active : m_faults)
            if (!active.begun && path.find(active.fault.since) != std::string::npos)
                active.begun = Clock::now();
    }

    // The first fault that acts on the exchange now and is wanted; it counts as a hit, once an exchange.
    template <class Wanted>
    std::optional<Fault> take(Exchange &exchange, Wanted isWanted)
    {
        const std::lock_guard lock(m_mutex);
        const auto now = Clock::now();
        for (Active &active : m_faults) {
            const bool isKnown = exchange.hit.contains(active.number);
            if (isOfEverything(active.fault.kind) || !isWanted(active.fault) || !isActive(active, now, isKnown) ||
                exchange.path.find(active.fault.path) == std::string::npos)
                continue;
            if (!isKnown) {
                ++active.hits;
                exchange.hit.insert(active.number);
            }
            return active.fault;
        }
        return {};
    }

    static bool isActive(const Active &active, Clock::time_point now, bool isKnown)
    {
        const Fault &fault = active.fault;
        if (!active.begun || now < *active.begun + Seconds(fault.from))
            return false;
        if (fault.lasts > 0 && now >= *active.begun + Seconds(fault.from + fault.lasts))
            return false;
        return isKnown || fault.times == 0 || active.hits < fault.times;
    }

    // True: the radio may send its next request over the same connection.
    bool answer(Connection &connection, Exchange &exchange)
    {
        tcp::socket &radio = connection.radio;
        if (exchange.head) {
            const Fault &fault = *exchange.head;
            switch (fault.kind) {
            case Kind::Delay:
                sleep(std::chrono::milliseconds(fault.amount));
                break;
            case Kind::Hang:
                hang(radio);
                return false;
            case Kind::Close:
                return false;
            case Kind::Reset:
                reset(radio);
                return false;
            case Kind::Status:
                return write(radio, wholeAnswer(fault.amount, "text/html", page, fault.retryAfter));
            case Kind::Html:
                return write(radio, wholeAnswer(200, "text/html", page));
            case Kind::Garbage:
                return write(radio, wholeAnswer(200, typeOf(exchange), randomBytes(5000)));
            case Kind::Noise:
                write(radio, randomBytes(300));
                return false;
            case Kind::Empty:
                return write(radio, wholeAnswer(200, typeOf(exchange), {}));
            case Kind::Code: {
                std::string body = "{\"code\":" + std::to_string(fault.amount);
                if (fault.retryAfter > 0)
                    body += ",\"data\":{\"retryAfter\":" + std::to_string(fault.retryAfter) + "}";
                return write(radio, wholeAnswer(200, typeOf(exchange), body + "}"));
            }
            case Kind::RangesRefused:
                if (exchange.request.count(http::field::range) > 0)
                    return write(radio, wholeAnswer(416, "text/plain", {}));
                break;
            case Kind::NoRanges:
                exchange.request.erase(http::field::range);
                break;
            default:
                break;
            }
        }
        return relay(connection, exchange);
    }

    static const char *typeOf(const Exchange &exchange)
    {
        if (exchange.path.find("/media/audio") != std::string::npos)
            return "audio/flac";
        return exchange.path.find("/media/") != std::string::npos ? "image/png" : "application/json; charset=utf-8";
    }

    bool relay(Connection &connection, Exchange &exchange)
    {
        error_code error;
        tcp::socket service(m_context, tcp::v4(), closedOnExec());
        service.connect({asio::ip::address_v4::loopback(), static_cast<unsigned short>(servicePort.load())}, error);
        const bool isKept = exchange.request.keep_alive();
        exchange.request.keep_alive(false);
        if (!error)
            http::write(service, exchange.request, error);
        exchange.request.keep_alive(isKept);
        boost::beast::flat_buffer buffer;
        http::response_parser<http::buffer_body> parser;
        parser.body_limit(boost::none);
        if (!error)
            http::read_header(service, buffer, parser, error);
        if (error)
            return false; // no service: the radio sees what it would see without us
        auto &head = parser.get().base();
        head.set(http::field::connection, isKept ? "keep-alive" : "close");
        size_t limit = std::numeric_limits<size_t>::max(); // bytes of the body that the header promises
        if (exchange.head && parser.content_length()) {
            const size_t length = *parser.content_length();
            if (exchange.head->kind == Kind::Longer) {
                head.set(http::field::content_length, std::to_string(length + size_t(exchange.head->amount)));
            } else if (exchange.head->kind == Kind::Shorter) {
                limit = std::min(length, size_t(exchange.head->amount));
                head.set(http::field::content_length, std::to_string(limit));
            } else if (exchange.head->kind == Kind::NoRanges) {
                head.erase(http::field::accept_ranges);
            }
        }
        std::ostringstream text;
        text << head;
        if (!passBlackout(connection) || !write(connection.radio, text.str()))
            return false;
        std::vector<char> bytes(chunkBytes);
        auto due = Clock::now(); // of the next piece
        while (!parser.is_done()) {
            const int rate = rateOf(exchange);
            const size_t wanted =
                rate > 0 ? std::clamp<size_t>(size_t(rate / piecesPerSecond), 1, chunkBytes) : chunkBytes;
            parser.get().body() = {bytes.data(), wanted, true};
            http::read_some(service, buffer, parser, error);
            if (error == http::error::need_buffer)
                error = {};
            const size_t got = wanted - parser.get().body().size;
            if (error || !send(connection, exchange, {bytes.data(), std::min(got, limit - exchange.delivered)}))
                return false;
            // On a busy machine a piece may be late; the next ones catch up.
            const auto now = Clock::now();
            due = rate > 0 ? std::max(due, now - lateness) +
                                 std::chrono::duration_cast<Clock::duration>(Seconds(double(got) / rate))
                           : now;
            if (due > now && !sleep(due - now))
                return false;
        }
        const bool hasLied = exchange.head && exchange.head->kind == Kind::Longer;
        return !hasLied;
    }

    // A piece of the body, as far as the faults let it pass. False: the connection is to end.
    bool send(Connection &connection, Exchange &exchange, std::string piece)
    {
        if (!passBlackout(connection))
            return false;
        const size_t end = exchange.delivered + piece.size();
        const auto cut = take(exchange, [end](const Fault &fault) {
            return isOfBody(fault) && fault.kind != Kind::Slow && end > size_t(fault.amount);
        });
        if (cut)
            piece.resize(size_t(cut->amount) > exchange.delivered ? size_t(cut->amount) - exchange.delivered : 0);
        exchange.delivered += piece.size();
        if (!write(connection.radio, piece))
            return false;
        if (!cut)
            return true;
        if (cut->kind == Kind::Hang)
            hang(connection.radio);
        else if (cut->kind == Kind::Reset)
            reset(connection.radio);
        return false;
    }

    int rateOf(Exchange &exchange)
    {
        const auto slow = take(exchange, [](const Fault &fault) { return fault.kind == Kind::Slow; });
        if (slow)
            return slow->amount;
        return exchange.path.find("/media/audio") == std::string::npos ? 0 : mediaRate.load();
    }

    enum class Blackout { None, Waits, Dead, Down };

    // For a connection that was made at `born`.
    Blackout blackout(Clock::time_point born) const
    {
        const std::lock_guard lock(m_mutex);
        const auto now = Clock::now();
        Blackout found = Blackout::None;
        for (const Active &active : m_faults) {
            if (!isOfEverything(active.fault.kind) || !active.begun)
                continue;
            const bool isNow = isActive(active, now, true);
            const auto start = *active.begun + Seconds(active.fault.from);
            if (active.fault.kind == Kind::Down && isNow)
                return Blackout::Down;
            if (active.fault.kind == Kind::DeadOutage && now >= start && born < start)
                found = Blackout::Dead;
            else if (isNow && found == Blackout::None)
                found = Blackout::Waits;
        }
        return found;
    }

    // Waits until bytes may pass. False: they never will.
    bool passBlackout(Connection &connection)
    {
        while (true) {
            switch (blackout(connection.born)) {
            case Blackout::None:
                return true;
            case Blackout::Down:
                return false;
            case Blackout::Dead:
                hang(connection.radio);
                return false;
            case Blackout::Waits:
                if (hasPeerLeft(connection.radio) || !sleep(lookTime))
                    return false;
            }
        }
    }

    void hang(tcp::socket &radio)
    {
        while (!hasPeerLeft(radio) && sleep(lookTime)) {
        }
    }

    void reset(tcp::socket &radio)
    {
        const std::lock_guard lock(m_mutex); // shutAll reads it
        closeByReset(radio);
    }

    // False: the proxy ends.
    bool sleep(Seconds time)
    {
        std::unique_lock lock(m_mutex);
        return !m_changed.wait_for(lock, time, [this] { return m_isEnding; });
    }

    bool isEnding() const
    {
        const std::lock_guard lock(m_mutex);
        return m_isEnding;
    }

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isEnding = false;
    std::vector<Active> m_faults;
    int m_numbers = 0;                     // of faults so far
    std::map<std::string, int> m_requests; // by path
    std::list<std::shared_ptr<Connection>> m_connections;
    asio::io_context m_context; // never runs: all operations block
    tcp::acceptor m_acceptor;   // accept thread only
    int m_port = 0;             // kept while the proxy is down
    std::thread m_accepting;
};

FaultProxy::FaultProxy()
    : m_work(std::make_unique<Work>())
{
}

FaultProxy::~FaultProxy() = default;

int FaultProxy::port() const
{
    return m_work->port();
}

void FaultProxy::setService(int port)
{
    m_work->servicePort = port;
}

void FaultProxy::setMediaRate(int bytesPerSecond)
{
    m_work->mediaRate = bytesPerSecond;
}

void FaultProxy::begin(std::vector<Fault> faults)
{
    m_work->begin(std::move(faults));
}

bool FaultProxy::isOver() const
{
    return m_work->isOver();
}

int FaultProxy::hits() const
{
    return m_work->hits();
}

int FaultProxy::requests(const std::string &path) const
{
    return m_work->requests(path);
}

} // namespace faults
