// An answer on its way to the caller: its head, a text, a file, the end of the connection.

#include "server/http/connection.h"

#include "server/http/conditions.h"
#include "server/http/server.h"

#include <algorithm>
#include <boost/asio/post.hpp>
#include <boost/beast/http/status.hpp>

namespace velmora::server::http {

namespace asio = boost::asio;
using namespace std::chrono_literals;

namespace {

constexpr size_t pieceBytes = 128 * 1024;     // of a file, before another connection has its turn
constexpr size_t readAheadBytes = 512 * 1024; // by a worker, where the disk would be waited for
constexpr size_t mostLingering = 16 * 1024 * 1024;
constexpr auto paceTick = 100ms;

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
} // namespace

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
    const auto added = m_loop.readers.add(
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
    if (added != WorkerPool::Added::Yes)
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
} // namespace velmora::server::http
