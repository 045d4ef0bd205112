#include "transport.h"

#include "reply.h"

#include <algorithm>
#include <new>

namespace velmora::ws {

namespace {
constexpr std::size_t maxHeaderBytes = 64 * 1024;
}

Transport::Transport(const Config &config)
    : m_config(config)
    , m_multi(curl_multi_init())
    , m_easy(curl_easy_init())
{
    if (!m_multi || !m_easy)
        throw std::bad_alloc();
}

Transport::~Transport()
{
    stop();
}

void Transport::wake()
{
    curl_multi_wakeup(m_multi.get());
}

std::size_t Transport::takeBody(char *data, std::size_t size, std::size_t count, void *self)
{
    auto *transport = static_cast<Transport *>(self);
    const std::size_t bytes = size * count;
    if (transport->m_answer.body.size() + bytes > maxReplyBytes) {
        transport->m_answer.end = Answer::End::TooLarge;
        return CURL_WRITEFUNC_ERROR;
    }
    transport->m_lastByte = Clock::now();
    try {
        transport->m_answer.body.append(data, bytes);
    } catch (const std::bad_alloc &) {
        return CURL_WRITEFUNC_ERROR;
    }
    return bytes;
}

std::size_t Transport::takeHeader(char *, std::size_t size, std::size_t count, void *self)
{
    auto *transport = static_cast<Transport *>(self);
    transport->m_lastByte = Clock::now();
    transport->m_headerBytes += size * count;
    if (transport->m_headerBytes > maxHeaderBytes) {
        transport->m_answer.end = Answer::End::TooLarge;
        return 0;
    }
    return size * count;
}

bool Transport::start(const char *function, const SecretText &token, SecretText body)
{
    if (m_config.server.empty())
        return false;
    CURL *easy = m_easy.get();
    curl_easy_reset(easy);
    m_answer = Answer();
    m_headerBytes = 0;
    m_sent = std::move(body);
    m_started = m_lastByte = Clock::now();

    curl_slist *headers = nullptr;
    // "Expect:" alone removes curl's own, which would cost a round trip.
    for (const char *line : {"Content-Type: application/json", "Accept: application/json", "Expect:"}) {
        if (curl_slist *longer = curl_slist_append(headers, line))
            headers = longer;
    }
    if (!token.empty()) {
        SecretText line;
        line.reserve(64 + token.size());
        line.append("Authorization: Bearer ").append(token);
        if (curl_slist *longer = curl_slist_append(headers, line.c_str()))
            headers = longer;
    }
    m_headers.reset(headers);

    const std::string url = m_config.server + "/v1/" + function;
    curl_easy_setopt(easy, CURLOPT_URL, url.c_str());
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 0L);
    curl_easy_setopt(easy, CURLOPT_PROXY, ""); // the configuration names no proxy, the environment shall not
    curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, long(CURL_HTTP_VERSION_1_1));
    curl_easy_setopt(easy, CURLOPT_USERAGENT, "libvelmora_ws/1");
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, m_headers.get());
    curl_easy_setopt(easy, CURLOPT_POST, 1L);
    curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE, long(m_sent.size()));
    curl_easy_setopt(easy, CURLOPT_POSTFIELDS, m_sent.c_str()); // not copied
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, takeBody);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, takeHeader);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, long(m_config.connectTimeout.count()));
    curl_easy_setopt(easy, CURLOPT_SSL_VERIFYPEER, 1L);
    curl_easy_setopt(easy, CURLOPT_SSL_VERIFYHOST, 2L);
    curl_easy_setopt(easy, CURLOPT_SSLVERSION, long(CURL_SSLVERSION_TLSv1_2));
    if (!m_config.caFile.empty())
        curl_easy_setopt(easy, CURLOPT_CAINFO, m_config.caFile.c_str());

    m_isBusy = curl_multi_add_handle(m_multi.get(), easy) == CURLM_OK;
    return m_isBusy;
}

bool Transport::isOverdue(Clock::time_point now) const
{
    return now >= m_lastByte + m_config.stallTimeout || now >= m_started + m_config.requestTimeout;
}

std::optional<Answer> Transport::run(std::optional<Clock::time_point> until)
{
    const auto now = Clock::now();
    if (m_isBusy) {
        const auto overdue = std::min(m_lastByte + m_config.stallTimeout, m_started + m_config.requestTimeout);
        until = until ? std::min(*until, overdue) : overdue;
    }
    int wait = 3'600'000; // wake() ends it
    if (until) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(*until - now).count();
        wait = static_cast<int>(std::clamp<long long>(left, 0, wait));
    }
    int running = 0;
    if (m_isBusy)
        curl_multi_perform(m_multi.get(), &running);
    if (!m_isBusy || running > 0) {
        curl_multi_poll(m_multi.get(), nullptr, 0, wait, nullptr);
        if (m_isBusy)
            curl_multi_perform(m_multi.get(), &running);
    }
    if (!m_isBusy)
        return {};

    int left = 0;
    while (CURLMsg *message = curl_multi_info_read(m_multi.get(), &left)) {
        if (message->msg != CURLMSG_DONE)
            continue;
        if (message->data.result == CURLE_OK) {
            m_answer.end = Answer::End::Complete;
            curl_easy_getinfo(m_easy.get(), CURLINFO_RESPONSE_CODE, &m_answer.httpStatus);
        }
        stop();
        return std::move(m_answer);
    }
    if (!isOverdue(Clock::now()))
        return {};
    stop();
    m_answer.end = Answer::End::Broken;
    return std::move(m_answer);
}

void Transport::stop()
{
    if (m_isBusy)
        curl_multi_remove_handle(m_multi.get(), m_easy.get());
    m_isBusy = false;
    m_headers.reset();
    forget(m_sent);
}

} // namespace velmora::ws
