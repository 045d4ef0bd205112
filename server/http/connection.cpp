#include "server/http/connection.h"

#include "server/http/conditions.h"
#include "server/http/peers.h"
#include "server/http/server.h"
#include "server/logging/log.h"

#include <algorithm>
#include <boost/asio/post.hpp>
#include <boost/beast/http/status.hpp>
#include <cerrno>
#include <sys/socket.h>

namespace velmora::server::http {

namespace asio = boost::asio;
using namespace std::chrono_literals;

namespace {

constexpr size_t pieceBytes = 128 * 1024;     // of a file, before another connection has its turn
constexpr size_t readAheadBytes = 512 * 1024; // by a worker, where the disk would be waited for
constexpr size_t mostLingering = 16 * 1024 * 1024;
constexpr auto paceTick = 100ms;
constexpr auto never = std::chrono::milliseconds::max();
constexpr std::string_view continueLine = "HTTP/1.1 100 Continue\r\n\r\n";

std::string headOf(const Response &response, bool isKeptAlive, bool sendsHsts)
{
    const auto status = static_cast<unsigned>(response.status);
    const auto reason = boost::beast::http::obsolete_reason(static_cast<boost::beast::http::status>(status));
    std::string head = "HTTP/1.1 " + std::to_string(status) + " " + std::string(reason) +
                       "\r\nDate: " + httpTime(std::time(nullptr)) + "\r\n";
    for (const auto &[name, value] : response.headers)
        head.append(name).append(": ").append(value).append("\r\n");
    if (status != 304 && status != 204) {
        const uint64_t length = response.file ? response.count : response.body.size();
        head += "Content-Length: " + std::to_string(length) + "\r\n";
    }
    if (sendsHsts)
        head += "Strict-Transport-Security: max-age=15552000\r\n";
    return head + (isKeptAlive ? "Connection: keep-alive\r\n\r\n" : "Connection: close\r\n\r\n");
}

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

template <typename Change>
void Connection::advanceAfter(Change change)
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

void Connection::drain()
{
    if (m_phase != Phase::Awaiting)
        return;
    m_pause->request->isWaitOver = true;
    advanceAfter([this] { askAgain(); });
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
                                                 : m_loop.functions;
    request->lane = lane;
    const bool isTaken = pool.add(request->network, [self = shared_from_this(), request, route = m_route]() mutable {
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
    if (!isTaken)
        refuse(503, *request);
}

// Holds the request and its socket until there is news. Not in a thread: a thousand may wait.
void Connection::await(std::shared_ptr<Request> request, const Response &response)
{
    releaseBody();
    if (m_phase == Phase::Ended)
        return;
    if (m_isFinishing) {
        end();
        return;
    }
    if (request->isWaitOver) {
        refuse(500, *request);
        return;
    }
    m_phase = Phase::Awaiting;
    if (!m_awaitsUntil)
        m_awaitsUntil = Clock::now() + response.waitAtMost;
    m_pause = Pause{std::move(request), response.wait};
    ++m_loop.awaiting;
    ++m_pauses;
    setWaiting(true);
    m_deadline = *m_awaitsUntil;
    if (m_deadline < m_timerAt)
        armTimer();
    watchWhileAwaiting();
    // Under the wait's lock, which end() takes before the loop goes: the loop is there.
    response.wait->onWake([weak = weak_from_this(), &io = m_loop.io, pause = m_pauses] {
        asio::post(io, [weak, pause] {
            const auto self = weak.lock();
            if (self && self->m_pause && self->m_pauses == pause)
                self->advanceAfter([&] { self->askAgain(); });
        });
    });
    if (m_loop.isDraining)
        drain();
}

// A caller that goes away while it waits is noticed.
void Connection::watchWhileAwaiting()
{
    m_socket.async_wait(asio::ip::tcp::socket::wait_read,
                        [self = shared_from_this(), pause = m_pauses](const boost::system::error_code &error) {
                            if (!self->m_pause || self->m_pauses != pause)
                                return;
                            if (error)
                                self->end();
                            else
                                self->advanceAfter([&] { self->readWhileAwaiting(); });
                        });
}

void Connection::readWhileAwaiting()
{
    const size_t limit = m_loop.settings.limits.headerBytes;
    const IoResult result = m_transport->read(m_loop.scratch);
    const bool isGone = result.state == IoState::Ended;
    if (isGone || m_input.size() + result.count > limit) {
        end();
        return;
    }
    m_input.append(m_loop.scratch.data(), result.count); // a request that follows
    watchWhileAwaiting();
}

void Connection::leaveAwaiting()
{
    if (!m_pause)
        return;
    m_pause->wait->forget();
    m_pause.reset();
    --m_loop.awaiting;
    boost::system::error_code ignored;
    m_socket.cancel(ignored);
}

void Connection::askAgain()
{
    const auto request = m_pause->request;
    leaveAwaiting();
    m_phase = Phase::Working;
    setWaiting(false);
    setDeadline(never);
    handOver(request, request->lane);
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

void Connection::respond(Response response)
{
    releaseBody();
    if (m_phase == Phase::Ended)
        return;
    m_parser.reset();
    m_awaitsUntil.reset();
    m_isKeptAlive = m_isKeptAlive && !m_isFinishing && !m_loop.isDraining;
    m_output = headOf(response, m_isKeptAlive, m_loop.settings.sendsHsts && m_isEncrypted == (m_loop.tls != nullptr));
    m_outputSent = 0;
    if (!m_isHead && response.status != 304) {
        m_output += response.body;
        if (response.file && response.count > 0) {
            m_transfer = std::make_unique<Transfer>();
            m_transfer->file = std::move(response.file);
            m_transfer->at = m_transfer->windowBegin = response.first;
            m_transfer->end = response.first + response.count;
            m_transfer->bytesPerSecond = response.bytesPerSecond;
        }
    }
    m_phase = Phase::Answering;
    setWaiting(false);
    setDeadline(m_loop.settings.limits.answerTime);
}

bool Connection::stepAnswering()
{
    while (m_outputSent < m_output.size()) {
        const IoResult result =
            m_transport->write(std::string_view(m_output).substr(m_outputSent), m_transfer != nullptr);
        if (result.state != IoState::Done) {
            waitFor(result.state);
            return false;
        }
        m_outputSent += result.count;
    }
    m_output = std::string();
    if (!m_transfer) {
        answerDone();
    } else if (m_isFinishing) {
        end();
    } else {
        m_phase = Phase::Streaming;
        setDeadline(m_loop.settings.limits.streamTime);
    }
    return true;
}

bool Connection::stepStreaming()
{
    Transfer &transfer = *m_transfer;
    if (transfer.isHeld)
        return false;
    uint64_t wanted = std::min<uint64_t>(transfer.end - transfer.at, pieceBytes);
    if (transfer.bytesPerSecond > 0)
        wanted = std::clamp<uint64_t>(static_cast<uint64_t>(transfer.bytesPerSecond) / 10, 1, wanted);
    if (transfer.at + wanted > transfer.knownCached && !transfer.file->isCached(transfer.at, wanted)) {
        readAhead(std::min<uint64_t>(transfer.end - transfer.at, readAheadBytes));
        return false;
    }
    const IoResult result = m_transport->send(*transfer.file, transfer.at, wanted);
    if (result.state != IoState::Done) {
        waitFor(result.state);
        return false;
    }
    if (result.count == 0) { // the file became shorter: a cut connection is not taken for the whole
        end();
        return false;
    }
    transfer.at += result.count;
    if (transfer.at == transfer.end) {
        m_transfer.reset();
        answerDone();
        return true;
    }
    if (transfer.bytesPerSecond > 0) {
        hold(paceTick);
        return false;
    }
    waitFor(IoState::WantsWrite); // also where more would fit: the others have their turn
    return false;
}

void Connection::hold(std::chrono::milliseconds time)
{
    m_transfer->isHeld = true;
    m_pace.expires_after(time);
    m_pace.async_wait([self = shared_from_this()](const boost::system::error_code &error) {
        if (error || !self->m_transfer)
            return;
        self->m_transfer->isHeld = false;
        self->advance();
    });
}

void Connection::readAhead(uint64_t count)
{
    m_transfer->isHeld = true;
    const bool isTaken = m_loop.readers.add(
        m_network, [self = shared_from_this(), file = m_transfer->file, at = m_transfer->at, count]() mutable {
            file->readAhead(at, count);
            asio::io_context &io = self->m_loop.io;
            asio::post(io, [self = std::move(self), end = at + count] {
                if (!self->m_transfer)
                    return;
                self->m_transfer->knownCached = end;
                self->m_transfer->isHeld = false;
                self->advance();
            });
        });
    if (!isTaken)
        hold(paceTick);
}

void Connection::answerDone()
{
    if (m_isKeptAlive && !m_isFinishing) {
        m_phase = Phase::Receiving;
        setWaiting(true);
        setDeadline(m_loop.settings.limits.idleTime);
        if (m_input.empty())
            m_input = std::string(); // an idle connection holds no memory
        return;
    }
    m_transport->finishSending();
    if (m_isFinishing) {
        end();
        return;
    }
    // Closing a socket with unread bytes would destroy an answer that is still on its way.
    m_input = std::string();
    m_outputSent = 0;
    m_phase = Phase::Lingering;
    setWaiting(true);
    setDeadline(m_loop.settings.limits.lingerTime);
}

bool Connection::stepLingering()
{
    const IoResult result = m_transport->read(m_loop.scratch);
    if (result.state == IoState::WantsRead || result.state == IoState::WantsWrite) {
        waitFor(result.state);
        return false;
    }
    m_outputSent += result.count; // counts what is thrown away now
    if (result.state == IoState::Ended || m_outputSent > mostLingering)
        end();
    return m_phase != Phase::Ended;
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
