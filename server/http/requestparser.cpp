#include "server/http/requestparser.h"

#include <algorithm>
#include <boost/beast/http/basic_parser.hpp>
#include <strings.h>

namespace velmora::server::http {

namespace {

namespace beast = boost::beast::http;
using Error = boost::beast::error_code;
using Text = boost::beast::string_view;

bool isEqual(std::string_view a, std::string_view b)
{
    return a.size() == b.size() && ::strncasecmp(a.data(), b.data(), a.size()) == 0;
}

} // namespace

// The library's grammar of HTTP/1, writing into our request.
class RequestParser::Grammar : public beast::basic_parser<true> {
public:
    explicit Grammar(const Limits &limits)
        : m_limits(limits)
    {
        header_limit(static_cast<uint32_t>(limits.headerBytes));
        body_limit(boost::none); // ours differs from route to route
        eager(false);
    }

    Request request;
    int version = 0; // 10 or 11
    size_t mostBody = 0;
    int status = 0; // why we stopped the parsing; 0: the grammar did

private:
    Error stop(int why)
    {
        status = why;
        return beast::error::bad_field;
    }

    void on_request_impl(beast::verb method, Text name, Text target, int number, Error &error) override
    {
        version = number;
        if (target.size() + name.size() > m_limits.requestLine) {
            error = stop(414);
            return;
        }
        if (method == beast::verb::unknown) {
            error = stop(501);
            return;
        }
        std::string_view text(target.data(), target.size());
        // A proxy may send the whole address: "http://host/path".
        if (const size_t scheme = text.find("://"); !text.starts_with('/') && scheme != std::string_view::npos) {
            const size_t slash = text.find('/', scheme + 3);
            text = slash == std::string_view::npos ? "/" : text.substr(slash);
        }
        const size_t question = std::min(text.find('?'), text.size());
        request.method.assign(name.data(), name.size());
        request.path = decoded(text.substr(0, question), true);
        request.query = text.substr(std::min(question + 1, text.size()));
        const bool isPath = request.path.starts_with('/') || request.path == "*";
        if (!isPath || request.path.find('\0') != std::string::npos)
            error = stop(400);
    }

    void on_field_impl(beast::field, Text name, Text value, Error &error) override
    {
        if (is_header_done())
            return; // a trailer; none means anything here
        if (request.headers.size() >= m_limits.headerCount)
            error = stop(431);
        else
            request.headers.emplace_back(name, value);
    }

    size_t append(Text part, Error &error)
    {
        if (part.size() > mostBody - std::min(request.body.size(), mostBody)) {
            error = stop(413);
            return 0;
        }
        request.body.append(part.data(), part.size());
        return part.size();
    }

    void on_response_impl(int, Text, int, Error &) override {}
    void on_header_impl(Error &) override {}
    void on_body_init_impl(const boost::optional<uint64_t> &, Error &) override {}
    size_t on_body_impl(Text part, Error &error) override { return append(part, error); }
    void on_chunk_header_impl(uint64_t size, Text, Error &error) override
    {
        if (size > mostBody)
            error = stop(413);
    }
    size_t on_chunk_body_impl(uint64_t, Text part, Error &error) override { return append(part, error); }
    void on_finish_impl(Error &) override {}

    const Limits &m_limits;
};

RequestParser::RequestParser(const Limits &limits)
    : m_limits(limits)
    , m_grammar(std::make_unique<Grammar>(limits))
{
}

RequestParser::~RequestParser() = default;

RequestParser::State RequestParser::fail(int status)
{
    m_failure = status;
    return State::Failed;
}

RequestParser::State RequestParser::take(std::string &input)
{
    Error error;
    while (!m_grammar->is_done()) {
        // The grammar takes for granted that five bytes follow the start of a last chunk, and may meet four where a
        // trailer drips in. Any unfinished chunked body still lacks five, so waiting for the fifth is always right.
        const bool isCutLastChunk = m_isHeaderDone && m_grammar->chunked() && input.size() == 4;
        if (input.empty() || isCutLastChunk)
            return State::NeedsMore;
        const size_t used = m_grammar->put(boost::asio::const_buffer(input.data(), input.size()), error);
        input.erase(0, used);
        if (error == beast::error::need_more) {
            if (input.size() < m_limits.headerBytes)
                return State::NeedsMore;
            // The line of a chunk or a trailer without an end is as bad as such a header.
            const bool isFirstLine = m_grammar->request.path.empty();
            return fail(m_isHeaderDone ? 400 : isFirstLine ? 414 : 431);
        }
        if (error == beast::error::header_limit)
            return fail(m_grammar->request.path.empty() ? 414 : 431);
        if (error == beast::error::bad_version)
            return fail(505);
        if (error)
            return fail(m_grammar->status != 0 ? m_grammar->status : 400);
        if (m_grammar->is_header_done() && !m_isHeaderDone) {
            m_isHeaderDone = true;
            m_grammar->eager(true);
            return checkHeaders();
        }
    }
    return State::Done;
}

RequestParser::State RequestParser::checkHeaders()
{
    const Headers &headers = m_grammar->request.headers;
    const auto count = [&](std::string_view name) {
        return std::count_if(headers.begin(), headers.end(),
                             [&](const auto &header) { return isEqual(header.first, name); });
    };
    // Where proxies could disagree about the end of a request, it is refused.
    const std::string_view coding = headerOf(headers, "Transfer-Encoding");
    const bool isChunked = count("Transfer-Encoding") > 0;
    if (count("Host") > 1 || (count("Host") == 0 && m_grammar->version == 11) || count("Content-Length") > 1)
        return fail(400);
    if (isChunked && (count("Content-Length") > 0 || m_grammar->version < 11))
        return fail(400);
    if (isChunked && (count("Transfer-Encoding") > 1 || !isEqual(coding, "chunked")))
        return fail(501);
    const std::string_view encoding = headerOf(headers, "Content-Encoding");
    if (!encoding.empty() && !isEqual(encoding, "identity"))
        return fail(415);
    const std::string_view expectation = headerOf(headers, "Expect");
    if (!expectation.empty() && !isEqual(expectation, "100-continue"))
        return fail(417);
    return State::HeadersRead;
}

Request &RequestParser::request()
{
    return m_grammar->request;
}

bool RequestParser::isKeptAlive() const
{
    return m_grammar->keep_alive();
}

bool RequestParser::isContinueExpected() const
{
    return m_grammar->version == 11 && !headerOf(m_grammar->request.headers, "Expect").empty() && !m_grammar->is_done();
}

bool RequestParser::hasBody() const
{
    return !m_grammar->is_done();
}

size_t RequestParser::expectedBody() const
{
    if (!hasBody())
        return 0;
    const auto length = m_grammar->content_length();
    if (!length)
        return m_grammar->mostBody;
    return *length > SIZE_MAX ? SIZE_MAX : static_cast<size_t>(*length);
}

void RequestParser::setMostBody(size_t bytes)
{
    m_grammar->mostBody = bytes;
}

} // namespace velmora::server::http
