#include "server/http/server.h"

#include "server/http/connection.h"
#include "server/http/peers.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/v6_only.hpp>
#include <boost/asio/post.hpp>
#include <csignal>
#include <netinet/tcp.h>
#include <sys/resource.h>
#include <unordered_map>
#include <unordered_set>

namespace velmora::server::http {

namespace asio = boost::asio;
using asio::ip::tcp;
using ErrorCode = boost::system::error_code;

namespace {

constexpr int mostUnaccepted = 4096;
// Bytes that the kernel keeps for a connection beyond what is on its way: many slow streams must not fill the memory.
constexpr int mostUnsent = 128 * 1024;
constexpr size_t ownDescriptors = 256; // for the database, logs, folders

// The soft limit is made for programs that use select(); the hard one is the system's word.
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
        , m_functions(m_settings.limits.workers, m_settings.limits.queued)
        , m_files(m_settings.limits.fileWorkers, m_settings.limits.queued)
        , m_readers(m_settings.limits.fileWorkers, m_settings.limits.queued)
        , m_loop{m_settings, m_router,    m_proxies,
                 m_io,       m_functions, m_files,
                 m_readers,  m_tls.get(), std::vector<char>(64 * 1024),
                 {},         0,           [this](Connection &ended) { forget(ended); }}
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
            if (m_acceptor.open(endpoint.protocol(), error))
                continue;
            // A port whose last connections still fade away may be taken; one with a listener may not.
            m_acceptor.set_option(tcp::acceptor::reuse_address(true), error);
            if (endpoint.address().is_v6())
                m_acceptor.set_option(asio::ip::v6_only(false), error);
            if (!m_acceptor.bind(endpoint, error) && !m_acceptor.listen(mostUnaccepted, error))
                return m_acceptor.local_endpoint().port();
        }
        throw std::runtime_error("cannot listen on " + m_settings.host + " port " + std::to_string(m_settings.port) +
                                 "; is another velmora-server running?");
    }

    void start()
    {
        accept();
        m_thread = std::thread([this] {
            // A connection that the other side has left is an error of its own, no signal for the program.
            sigset_t pipe;
            sigemptyset(&pipe);
            sigaddset(&pipe, SIGPIPE);
            pthread_sigmask(SIG_BLOCK, &pipe, nullptr);
            m_io.run();
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
        m_readers.stop();
    }

private:
    void accept()
    {
        m_acceptor.async_accept([this](const ErrorCode &error, tcp::socket socket) {
            if (m_isEnding)
                return;
            if (!error && take(std::move(socket))) {
                accept();
                return;
            }
            // No descriptor or no memory is left, or the caller has gone; all that passes.
            m_retry.expires_after(std::chrono::milliseconds(50));
            m_retry.async_wait([this](const ErrorCode &cancelled) {
                if (!cancelled)
                    accept();
            });
        });
    }

    // False when the memory does not suffice.
    bool take(tcp::socket socket)
    {
        try {
            admit(std::move(socket));
            return true;
        } catch (const std::bad_alloc &) {
            return false;
        }
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
        // Whoever has waited longest makes room.
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
        ++count;
        connection->start();
    }

    void forget(Connection &ended)
    {
        m_connections.erase(&ended);
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
    const std::shared_ptr<SSL_CTX> m_tls; // null: no TLS
    asio::io_context m_io{1};
    tcp::acceptor m_acceptor{m_io};
    asio::steady_timer m_retry{m_io}; // of accepting; at the end, the limit for answers
    std::unordered_set<Connection *> m_connections;
    std::unordered_map<std::string, size_t> m_ofNetwork; // connections
    size_t m_mostConnections = 0;
    bool m_isEnding = false;
    WorkerPool m_functions;
    WorkerPool m_files;
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

void Server::stop()
{
    m_engine->stop();
}

} // namespace velmora::server::http
