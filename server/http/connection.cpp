#include "server/http/connection.h"

#include "server/http/conditions.h"
#include "server/http/peers.h"
#include "server/http/server.h"
#include "server/logging/log.h"

#include <algorithm>
#include <boost/asio/post.hpp>
#include <cerrno>
#include <sys/socket.h>

namespace velmora::server::http {

namespace asio = boost::asio;

namespace {

constexpr std::string_view continueLine = "HTTP/1.1 100 Continue\r\n\r\n";

// All headers of this name, as one list.
std::string listOf(const Headers &headers, std::string_view name)
{
    std::string list;
    for (const auto &header : headers) {
        if (!headerOf({header}, name).empty())
            list += (list.empty() ? "" : ",") + header.second;
    }
    return list;
}

} // namespace

Connection::Connection(Loop &loop, asio::ip::tcp::socket socket, std::string address, std::string network)
    : m_loop(loop)
    , m_socket(std::move(socket))
    , m_timer(loop.io)
    , m_pace(loop.io)
    , m_address(std::move(address))
    , m_network(std::move(network))
{
}

Connection::~Connection() = default;

void Connection::advance()
{
    advanceAfter([] {});
}

void Connection::advanceAfter(const std::function<void()> &change)
{
    const auto self = shared_from_this();
    try {
        change();
        while (step()) {
        }
    } catch (const std::exception &error) { // out of memory, most likely; the others go on
        logs::warn(std::string("a connection was ended: ") + error.what());
        end();
    }
}

void Connection::start()
{
    advanceAfter([this] {
        setWaiting(true);
        setDeadline(m_loop.settings.limits.headerTime);
    });
}

void Connection::end()
{
    if (m_phase == Phase::Ended)
        return;
    m_phase = Phase::Ended;
    const auto self = shared_from_this();
    leaveAwaiting();
    setWaiting(false);
    releaseBody();
    m_timer.cancel();
    m_pace.cancel();
    m_transfer.reset();
    m_transport.reset();
    boost::system::error_code ignored;
    m_socket.close(ignored);
    m_loop.forget(*this);
}

void Connection::finish()
{
    m_isFinishing = true;
    if (m_phase != Phase::Working && m_phase != Phase::Answering)
        end();
}

bool Connection::step()
{
    if (m_isSocketAwaited)
        return false;
    switch (m_phase) {
    case Phase::Handshake:
        return stepHandshake();
    case Phase::Receiving:
        return stepReceiving();
    case Phase::Answering:
        return stepAnswering();
    case Phase::Streaming:
        return stepStreaming();
    case Phase::Lingering:
        return stepLingering();
    case Phase::Working:
    case Phase::Awaiting:
    case Phase::Ended:
        break;
    }
    return false;
}

// False while a caller who may do without TLS has sent nothing.
bool Connection::chooseTransport()
{
    constexpr char handshakeRecord = 0x16; // the first byte of TLS; no request begins with it
    const int socket = m_socket.native_handle();
    const auto &unencrypted = m_loop.settings.unencrypted;
    m_isEncrypted = m_loop.tls != nullptr;
    if (m_isEncrypted && std::find(unencrypted.begin(), unencrypted.end(), m_address) != unencrypted.end()) {
        char first = handshakeRecord;
        if (::recv(socket, &first, 1, MSG_PEEK) < 0 && (errno == EAGAIN || errno == EINTR)) {
            waitFor(IoState::WantsRead);
            return false;
        }
        m_isEncrypted = first == handshakeRecord;
    }
    m_transport = m_isEncrypted ? Transport::tls(socket, m_loop.tls) : Transport::plain(socket);
    return true;
}

bool Connection::stepHandshake()
{
    if (!m_transport && !chooseTransport())
        return false;
    const IoState state = m_transport->handshake();
    if (state != IoState::Done) {
        waitFor(state);
        return false;
    }
    m_phase = Phase::Receiving;
    return true;
}

bool Connection::stepReceiving()
{
    if ((m_parser || !m_input.empty()) && parse())
        return true;
    const size_t room =
        m_loop.settings.limits.headerBytes - std::min(m_input.size(), m_loop.settings.limits.headerBytes);
    const IoResult result = m_transport->read(std::span(m_loop.scratch).first(std::min(room, m_loop.scratch.size())));
    if (result.state != IoState::Done) {
        waitFor(result.state);
        return false;
    }
    m_input.append(m_loop.scratch.data(), result.count);
    return true;
}

bool Connection::parse()
{
    if (!m_parser) {
        // An empty line before a request is tolerated.
        if (m_input.starts_with("\r\n"))
            m_input.erase(0, 2);
        if (m_input.empty() || m_input == "\r")
            return false;
        m_parser = std::make_unique<RequestParser>(m_loop.settings.limits);
        m_parser->request().arrivedAt = Clock::now();
        setWaiting(true);
        setDeadline(m_loop.settings.limits.headerTime);
    }
    switch (m_parser->take(m_input)) {
    case RequestParser::State::NeedsMore:
        return false;
    case RequestParser::State::HeadersRead:
        return headersRead();
    case RequestParser::State::Done:
        work();
        return true;
    case RequestParser::State::Failed:
        break;
    }
    refuse(m_parser->failure(), m_parser->request());
    return true;
}

bool Connection::headersRead()
{
    const Limits &limits = m_loop.settings.limits;
    Request &request = m_parser->request();
    request.arrivedAt = Clock::now();
    request.address = m_loop.proxies.callerBehind(m_address, listOf(request.headers, "X-Forwarded-For"));
    request.network = networkOf(request.address);
    request.isFromProxy = m_loop.proxies.contains(m_address);
    request.isEncrypted = m_isEncrypted;
    request.id = requestIdOf(headerOf(request.headers, "X-Request-Id"));
    m_isHead = request.method == "HEAD";
    m_isKeptAlive = m_parser->isKeptAlive();
    m_route = m_loop.router.find(request);
    if (!m_route) {
        m_isKeptAlive = m_isKeptAlive && !m_parser->hasBody(); // nobody reads it
        refuse(404, request);
        return true;
    }
    request.route = m_route->path;
    m_parser->setMostBody(m_route->mostBody);
    const size_t body = m_parser->expectedBody();
    if (body > m_route->mostBody || m_loop.bodyBytes + body > limits.bodies) {
        m_isKeptAlive = false;
        refuse(body > m_route->mostBody ? 413 : 503, request);
        return true;
    }
    m_reservedBody = body;
    m_loop.bodyBytes += body;
    setDeadline(limits.bodyTime);
    if (m_parser->isContinueExpected() && m_input.empty()) {
        // The send buffer of a socket that has nothing to send takes 25 bytes at once.
        const IoResult result = m_transport->write(continueLine, false);
        if (result.count != continueLine.size())
            end();
    }
    return true;
}

void Connection::work()
{
    m_phase = Phase::Working;
    setWaiting(false);
    setDeadline(never);
    auto request = std::make_shared<Request>(std::move(m_parser->request()));
    m_parser.reset();
    handOver(std::move(request), m_route->lane);
}

void Connection::handOver(std::shared_ptr<Request> request, Lane lane)
{
    WorkerPool &pool = lane == Lane::Files       ? m_loop.files
                       : lane == Lane::Passwords ? m_loop.passwords
                       : lane == Lane::Probes    ? m_loop.probes
                                                 : m_loop.functions;
    request->lane = lane;
    const auto added = pool.add(request->network, [self = shared_from_this(), request, route = m_route]() mutable {
        auto response = std::make_shared<Response>();
        bool isDone = true;
        try {
            *response = route->handler(*request);
            if (!response->lane && !response->wait) {
                applyConditions(*request, *response);
                self->answered(*request, *response);
            }
        } catch (const std::exception &error) {
            logs::warn(route->path + ": " + error.what(), request->id);
            isDone = false;
        }
        asio::io_context &io = self->m_loop.io;
        asio::post(io, [self = std::move(self), request, response, isDone] {
            self->advanceAfter([&] {
                if (isDone && response->lane)
                    self->handOver(request, *response->lane);
                else if (isDone && response->wait)
                    self->await(request, *response);
                else if (isDone)
                    self->respond(std::move(*response));
                else
                    self->refuse(500, *request);
            });
        });
    });
    if (added == WorkerPool::Added::Yes)
        return;
    request->isLaneFull = added == WorkerPool::Added::TooMany;
    refuse(503, *request);
}

void Connection::refuse(int status, const Request &request)
{
    m_isHead = request.method == "HEAD";
    if (m_parser && m_parser->failure() != 0)
        m_isKeptAlive = false;
    Response response = m_loop.settings.refusal(status, request);
    answered(request, response);
    respond(std::move(response));
}

void Connection::answered(const Request &request, Response &response) const
{
    if (m_loop.settings.answered)
        m_loop.settings.answered(request, response);
}

void Connection::waitFor(IoState state)
{
    if (state == IoState::Ended) {
        end();
        return;
    }
    m_isSocketAwaited = true;
    const auto direction =
        state == IoState::WantsRead ? asio::ip::tcp::socket::wait_read : asio::ip::tcp::socket::wait_write;
    m_socket.async_wait(direction, [self = shared_from_this()](const boost::system::error_code &error) {
        self->m_isSocketAwaited = false;
        if (error)
            self->end();
        else
            self->advance();
    });
}

void Connection::setWaiting(bool isWaiting)
{
    if (m_isListed)
        m_loop.waiting.erase(m_place);
    m_isListed = isWaiting;
    if (isWaiting)
        m_place = m_loop.waiting.insert(m_loop.waiting.end(), this);
}

void Connection::setDeadline(std::chrono::milliseconds fromNow)
{
    m_deadline = fromNow == never ? Clock::time_point::max() : Clock::now() + fromNow;
    if (m_deadline < m_timerAt)
        armTimer();
}

void Connection::armTimer()
{
    // A deadline that moves away leaves the timer as it is: it is set again when it fires.
    m_timerAt = m_deadline;
    m_timer.expires_at(m_timerAt);
    m_timer.async_wait([weak = weak_from_this()](const boost::system::error_code &error) {
        const auto self = weak.lock();
        if (error || !self || self->m_phase == Phase::Ended)
            return;
        self->m_timerAt = Clock::time_point::max();
        if (self->m_deadline <= Clock::now())
            self->advanceAfter([&] { self->timeIsUp(); });
        else if (self->m_deadline != Clock::time_point::max())
            self->armTimer();
    });
}

void Connection::timeIsUp()
{
    if (m_phase == Phase::Awaiting) {
        m_pause->request->isWaitOver = true;
        askAgain();
        return;
    }
    if (m_phase == Phase::Receiving && m_parser) {
        m_isKeptAlive = false;
        refuse(408, m_parser->request());
        // The socket is waited for to be read; the answer goes out at once, or not at all.
        m_transport->write(m_output, false);
        m_transport->finishSending();
    } else if (m_phase == Phase::Streaming) {
        const Limits &limits = m_loop.settings.limits;
        uint64_t least = limits.streamBytes;
        if (m_transfer->bytesPerSecond > 0)
            least = std::min<uint64_t>(least, static_cast<uint64_t>(m_transfer->bytesPerSecond) *
                                                  static_cast<uint64_t>(limits.streamTime.count()) / 2000);
        if (m_transfer->at - m_transfer->windowBegin >= least) {
            m_transfer->windowBegin = m_transfer->at;
            setDeadline(limits.streamTime);
            return;
        }
        // The system gives up what it still wanted to send: nobody reads it.
        boost::system::error_code ignored;
        m_socket.set_option(asio::socket_base::linger(true, 0), ignored);
    }
    end();
}

void Connection::releaseBody()
{
    m_loop.bodyBytes -= m_reservedBody;
    m_reservedBody = 0;
}

} // namespace velmora::server::http
