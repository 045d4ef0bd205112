#include "bench/balancer.h"

#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http.hpp>
#include <charconv>
#include <optional>

namespace bench {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
using ErrorCode = boost::system::error_code;

namespace {

constexpr std::chrono::seconds patience{20}; // as radios have it

} // namespace

class Balancer::Connection : public std::enable_shared_from_this<Connection> {
public:
    Connection(Balancer &balancer, size_t process)
        : m_balancer(balancer)
        , m_process(process)
        , m_stream(balancer.m_io)
    {
    }

    void send(Request request, Done done)
    {
        m_done = std::move(done);
        m_request = {};
        m_request.version(11);
        m_request.set(http::field::host, "radio");
        if (request.function.empty()) {
            m_request.method(http::verb::get);
            m_request.target("/health");
        } else {
            m_request.method(http::verb::post);
            m_request.target("/v1/" + request.function);
            m_request.set(http::field::authorization, "Bearer " + request.token);
            m_request.body() = std::move(request.body);
        }
        m_request.set("X-Forwarded-For", request.address);
        if (!request.key.empty())
            m_request.set("Velmora-Request-Key", request.key);
        m_request.prepare_payload();
        m_stream.expires_after(patience);
        if (m_isOpen) {
            write();
            return;
        }
        const auto port = static_cast<unsigned short>(m_balancer.m_processes[m_process].port);
        m_stream.async_connect(asio::ip::tcp::endpoint(asio::ip::address_v4::loopback(), port),
                               [self = shared_from_this()](const ErrorCode &error) {
                                   if (error) {
                                       self->fail(error == asio::error::connection_refused);
                                       return;
                                   }
                                   self->m_isOpen = true;
                                   ErrorCode ignored;
                                   self->m_stream.socket().set_option(asio::ip::tcp::no_delay(true), ignored);
                                   self->write();
                               });
    }

private:
    void write()
    {
        http::async_write(m_stream, m_request, [self = shared_from_this()](const ErrorCode &error, size_t) {
            if (error)
                self->fail(false);
            else
                self->read();
        });
    }

    void read()
    {
        m_answer = {};
        http::async_read(m_stream, m_buffer, m_answer, [self = shared_from_this()](const ErrorCode &error, size_t) {
            if (error) {
                self->fail(false);
                return;
            }
            Answer answer;
            answer.status = static_cast<int>(self->m_answer.result_int());
            const auto retryAfter = self->m_answer[http::field::retry_after];
            std::from_chars(retryAfter.data(), retryAfter.data() + retryAfter.size(), answer.retryAfter);
            answer.body = std::move(self->m_answer.body());
            self->finish(std::move(answer), self->m_answer.keep_alive() ? End::Kept : End::Closed);
        });
    }

    void fail(bool isRefused)
    {
        Answer answer;
        answer.isRefused = isRefused;
        finish(std::move(answer), End::Broken);
    }

    void finish(Answer answer, End end)
    {
        m_stream.expires_never();
        const Done done = std::move(m_done);
        m_balancer.ended(shared_from_this(), m_process, end);
        done(std::move(answer));
    }

    Balancer &m_balancer;
    const size_t m_process;
    beast::tcp_stream m_stream;
    beast::flat_buffer m_buffer;
    http::request<http::string_body> m_request;
    http::response<http::string_body> m_answer;
    Done m_done;
    bool m_isOpen = false;
};

Balancer::Balancer(asio::io_context &io, std::vector<int> ports, size_t mostConnections)
    : m_io(io)
    , m_mostConnections(mostConnections)
{
    for (const int port : ports)
        m_processes.push_back({port, {}});
}

Balancer::~Balancer() = default;

void Balancer::send(Request request, Done done)
{
    if (m_busy < m_mostConnections)
        begin({std::move(request), std::move(done)});
    else
        m_waiting.push_back({std::move(request), std::move(done)});
}

void Balancer::begin(Waiting waiting)
{
    ++m_busy;
    const size_t process = m_next++ % m_processes.size();
    auto &idle = m_processes[process].idle;
    std::shared_ptr<Connection> connection;
    if (idle.empty()) {
        connection = std::make_shared<Connection>(*this, process);
    } else {
        connection = std::move(idle.back());
        idle.pop_back();
    }
    connection->send(std::move(waiting.request), std::move(waiting.done));
}

void Balancer::ended(const std::shared_ptr<Connection> &connection, size_t process, End end)
{
    --m_busy;
    if (end == End::Kept)
        m_processes[process].idle.push_back(connection);
    else if (end == End::Broken)
        m_processes[process].idle.clear(); // the process has ended, and the others with it
    if (!m_waiting.empty() && m_busy < m_mostConnections) {
        Waiting next = std::move(m_waiting.front());
        m_waiting.pop_front();
        begin(std::move(next));
    }
}

} // namespace bench
