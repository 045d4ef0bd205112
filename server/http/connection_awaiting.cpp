// Requests that wait for news, without a thread.

#include "server/http/connection.h"

#include "server/http/server.h"

#include <boost/asio/post.hpp>

namespace velmora::server::http {

namespace asio = boost::asio;

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

void Connection::drain()
{
    if (m_phase != Phase::Awaiting)
        return;
    m_pause->request->isWaitOver = true;
    advanceAfter([this] { askAgain(); });
}
} // namespace velmora::server::http
