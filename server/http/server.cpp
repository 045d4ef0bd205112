#include "server/http/server.h"

#include "server/http/connection.h"
#include "server/http/peers.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/v6_only.hpp>
#include <boost/asio/post.hpp>
#include <cerrno>
#include <csignal>
#include <netinet/tcp.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>
#include <unordered_map>
#include <unordered_set>

namespace velmora::server::http {

namespace asio = boost::asio;
using asio::ip::tcp;
using ErrorCode = boost::system::error_code;

namespace {

constexpr int mostUnaccepted = 4096;
constexpr int mostAcceptedAtOnce = 64;
// Bytes that the kernel keeps for a connection beyond what is on its way: many slow streams must not fill the memory.
constexpr int mostUnsent = 128 * 1024;
constexpr size_t ownDescriptors = 256; // for the database, logs, folders

// The soft limit protects programs that use select(); this one uses epoll.
size_t raisedDescriptorLimit()
{
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return 1024;
    const rlim_t before = std::exchange(limit.rlim_cur, limit.rlim_max);
    return ::setrlimit(RLIMIT_NOFILE, &limit) == 0 ? limit.rlim_cur : before;
}

} // namespace

class Server::Engine {
public:
    Engine(ServerSettings &&settings, Router &&router)
        : m_settings(std::move(settings))
        , m_router(std::move(router))
        , m_proxies(m_settings.trustedProxies)
        , m_tls(m_settings.tlsCertificate.empty() ? nullptr : tlsContext(m_settings.tlsCertificate, m_settings.tlsKey))
        , m_functions(m_settings.limits.workers, m_settings.limits.queued, m_settings.limits.queuedOfAddress)
        , m_files(m_settings.limits.fileWorkers, m_settings.limits.queued, m_settings.limits.queuedOfAddress)
        , m_passwords(m_settings.limits.passwordWorkers, m_settings.limits.queued, m_settings.limits.passwordsOfAddress)
        , m_probes(m_settings.limits.probeWorkers, m_settings.limits.queued, m_settings.limits.queuedOfAddress)
        , m_readers(m_settings.limits.fileWorkers, m_settings.limits.queued, m_settings.limits.queued)
        , m_loop{m_settings,
                 m_router,
                 m_proxies,
                 m_io,
                 m_functions,
                 m_files,
                 m_passwords,
                 m_probes,
                 m_readers,
                 m_tls.get(),
                 std::vector<char>(64 * 1024),
                 {},
                 0,
                 0,
                 false,
                 [this](Connection &ended) { forget(ended); }}
    {
        // A stream holds its socket and its file.
        const size_t descriptors = raisedDescriptorLimit();
        const size_t bearable = descriptors > 2 * ownDescriptors ? (descriptors - ownDescriptors) / 3 * 2 : 64;
        m_mostConnections = std::min(m_settings.limits.connections, bearable);
    }

    ~Engine() { stop(); }

    int bind()
    {
        ErrorCode error;
        tcp::resolver resolver(m_io);
        const auto endpoints = resolver.resolve(m_settings.host, std::to_string(m_settings.port),
                                                tcp::resolver::passive | tcp::resolver::numeric_service, error);
        for (const auto &entry : endpoints) {
            const tcp::endpoint endpoint = entry.endpoint();
            m_acceptor.close(error);
            // Not Asio's open() and async_accept(): programs that the server starts would inherit their sockets.
            const int listening = ::socket(endpoint.protocol().family(), SOCK_STREAM | SOCK_CLOEXEC, 0);
            if (listening < 0)
                continue;
            if (m_acceptor.assign(endpoint.protocol(), listening, error)) {
                ::close(listening);
                continue;
            }
            m_acceptor.native_non_blocking(true, error);
            // Old connections in TIME_WAIT do not block the port; another listener does.
            m_acceptor.set_option(tcp::acceptor::reuse_address(true), error);
            if (endpoint.address().is_v6())
                m_acceptor.set_option(asio::ip::v6_only(false), error);
            if (!m_acceptor.bind(endpoint, error) && !m_acceptor.listen(mostUnaccepted, error)) {
                m_protocol = endpoint.protocol();
                return m_acceptor.local_endpoint().port();
            }
        }
        throw std::runtime_error("cannot listen on " + m_settings.host + " port " + std::to_string(m_settings.port) +
                                 "; is another velmora-server running?");
    }

    void start()
    {
        accept();
        m_thread = std::thread([this] {
            // Writing to a connection that the other side has ended is an error (EPIPE), not a signal.
            sigset_t pipe;
            sigemptyset(&pipe);
            sigaddset(&pipe, SIGPIPE);
            pthread_sigmask(SIG_BLOCK, &pipe, nullptr);
            m_io.run();
        });
    }

    Load load()
    {
        return {m_connectionCount, m_functions.queued(), m_files.queued(), m_passwords.queued(),
                m_loop.awaiting,   m_functions.busy(),   m_files.busy(),   m_passwords.busy()};
    }

    bool readCertificateAgain()
    {
        if (m_settings.tlsCertificate.empty())
            return false;
        asio::post(m_io, [this, tls = tlsContext(m_settings.tlsCertificate, m_settings.tlsKey)] {
            m_tls = tls; // connections hold their context themselves
            m_loop.tls = m_tls.get();
        });
        return true;
    }

    void drain()
    {
        asio::post(m_io, [this] {
            m_loop.isDraining = true;
            const std::vector<Connection *> all(m_connections.begin(), m_connections.end());
            for (Connection *connection : all)
                connection->drain();
        });
    }

    void stop()
    {
        if (m_thread.joinable()) {
            asio::post(m_io, [this] { beginEnd(); });
            m_thread.join();
        }
        m_functions.stop();
        m_files.stop();
        m_passwords.stop();
        m_probes.stop();
        m_readers.stop();
    }

private:
    void accept()
    {
        m_acceptor.async_wait(tcp::acceptor::wait_read, [this](const ErrorCode &) {
            if (m_isEnding)
                return;
            if (acceptWaiting()) {
                accept();
                return;
            }
            // No descriptor or no memory is left; both pass.
            m_retry.expires_after(std::chrono::milliseconds(50));
            m_retry.async_wait([this](const ErrorCode &cancelled) {
                if (!cancelled)
                    accept();
            });
        });
    }

    // Some of those that wait, before the connections have their turn. False when the system has no means for more.
    bool acceptWaiting()
    {
        for (int i = 0; i < mostAcceptedAtOnce; ++i) {
            const int accepted = ::accept4(m_acceptor.native_handle(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
            if (accepted < 0 && errno == EAGAIN)
                return true;
            if (accepted < 0 && (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM))
                return false;
            if (accepted < 0)
                continue; // the caller has gone
            try {
                ErrorCode error;
                tcp::socket socket(m_io);
                if (socket.assign(m_protocol, accepted, error))
                    ::close(accepted);
                else
                    admit(std::move(socket));
            } catch (const std::bad_alloc &) {
                return false;
            }
        }
        return true;
    }

    void admit(tcp::socket socket)
    {
        ErrorCode error;
        const tcp::endpoint peer = socket.remote_endpoint(error);
        const auto address = error ? std::nullopt : normalAddress(peer.address().to_string());
        if (!address)
            return;
        const std::string network = networkOf(*address);
        const auto others = m_ofNetwork.find(network);
        if (others != m_ofNetwork.end() && others->second >= m_settings.limits.connectionsOfAddress &&
            !m_proxies.contains(*address))
            return;
        // The connection that has waited longest makes room.
        if (m_connections.size() >= m_mostConnections && !m_loop.waiting.empty())
            m_loop.waiting.front()->end();
        if (m_connections.size() >= m_mostConnections)
            return;
        socket.native_non_blocking(true, error);
        socket.set_option(tcp::no_delay(true), error);
        ::setsockopt(socket.native_handle(), IPPROTO_TCP, TCP_NOTSENT_LOWAT, &mostUnsent, sizeof mostUnsent);
        const auto connection = std::make_shared<Connection>(m_loop, std::move(socket), *address, network);
        size_t &count = m_ofNetwork[network];
        m_connections.insert(connection.get());
        m_connectionCount = m_connections.size();
        ++count;
        connection->start();
    }

    void forget(Connection &ended)
    {
        m_connections.erase(&ended);
        m_connectionCount = m_connections.size();
        const auto found = m_ofNetwork.find(ended.network());
        if (found != m_ofNetwork.end() && --found->second == 0)
            m_ofNetwork.erase(found);
        if (m_isEnding && m_connections.empty())
            m_io.stop();
    }

    void beginEnd()
    {
        ErrorCode error;
        m_isEnding = true;
        m_acceptor.close(error);
        m_retry.cancel();
        const std::vector<Connection *> all(m_connections.begin(), m_connections.end());
        for (Connection *connection : all)
            connection->finish();
        if (m_connections.empty()) {
            m_io.stop();
            return;
        }
        m_retry.expires_after(m_settings.limits.endTime);
        m_retry.async_wait([this](const ErrorCode &) {
            const std::vector<Connection *> late(m_connections.begin(), m_connections.end());
            for (Connection *connection : late)
                connection->end();
        });
    }

    const ServerSettings m_settings;
    const Router m_router;
    const TrustedProxies m_proxies;
    std::shared_ptr<SSL_CTX> m_tls; // null: no TLS; once it runs, of the event loop's thread
    asio::io_context m_io{1};
    tcp::acceptor m_acceptor{m_io};
    tcp m_protocol = tcp::v4();       // of what it accepts
    asio::steady_timer m_retry{m_io}; // of accepting; at the end, the limit for answers
    std::unordered_set<Connection *> m_connections;
    std::atomic<size_t> m_connectionCount = 0;           // for other threads
    std::unordered_map<std::string, size_t> m_ofNetwork; // connections
    size_t m_mostConnections = 0;
    bool m_isEnding = false;
    WorkerPool m_functions;
    WorkerPool m_files;
    WorkerPool m_passwords;
    WorkerPool m_probes;
    WorkerPool m_readers;
    Loop m_loop;
    std::thread m_thread; // the event loop
};

Server::Server(ServerSettings settings, Router router)
    : m_engine(std::make_unique<Engine>(std::move(settings), std::move(router)))
{
}

Server::~Server() = default;

int Server::bind()
{
    return m_engine->bind();
}

void Server::start()
{
    m_engine->start();
}

Load Server::load() const
{
    return m_engine->load();
}

void Server::drain()
{
    m_engine->drain();
}

bool Server::readCertificateAgain()
{
    return m_engine->readCertificateAgain();
}

void Server::stop()
{
    m_engine->stop();
}

} // namespace velmora::server::http
