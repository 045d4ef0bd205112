#include "transport.h"

#include "reply.h"
#include "webaddress.h"

#include <algorithm>
#include <cstdio>
#include <new>
#include <sodium.h>
#include <utility>

namespace velmora::ws {

namespace {
constexpr std::size_t maxHeaderBytes = 64 * 1024;
// A transfer that stays below this within the limit for silence stands still: it drips, and would use up the time in
// which it could be repeated.
constexpr std::size_t leastProgress = 2048;

// Names that are not found, too: a router that has just started answers so.
bool mayPass(CURLcode result)
{
    switch (result) {
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_CONNECT:
    case CURLE_OPERATION_TIMEDOUT:
    case CURLE_GOT_NOTHING:
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_PARTIAL_FILE:
    case CURLE_SSL_CONNECT_ERROR:
        return true;
    default:
        return false;
    }
}

// 32 hexadecimal digits.
std::string randomDigits()
{
    unsigned char bytes[16];
    randombytes_buf(bytes, sizeof bytes);
    char digits[2 * sizeof bytes + 1];
    return sodium_bin2hex(digits, sizeof digits, bytes, sizeof bytes);
}
} // namespace

Transport::Transport(const Config &config)
    : m_config(config)
{
}

Transport::~Transport()
{
    stop();
}

void Transport::wake()
{
    const std::lock_guard lock(m_mutex);
    m_isWoken = true;
    m_woken.notify_one();
    if (m_multi)
        m_curl->multi_wakeup(m_multi.get());
}

bool Transport::load()
{
    if (m_easy)
        return true;
    const Curl *const curl = Curl::get();
    if (!curl)
        return false;
    if (!m_server) {
        m_server = serviceAddress(m_config.server);
        if (m_server->empty() && !m_config.server.empty())
            std::fprintf(stderr, "libvelmora_ws: the configured server is no usable address\n");
    }
    if (m_server->empty())
        return false;
    const std::lock_guard lock(m_mutex);
    m_curl = curl;
    if (!m_multi)
        m_multi.reset(curl->multi_init());
    if (m_multi)
        m_easy.reset(curl->easy_init());
    return m_easy != nullptr;
}

void Transport::sleepUnloaded(std::optional<Clock::time_point> until)
{
    std::unique_lock lock(m_mutex);
    const auto isWoken = [this] { return m_isWoken; };
    if (until)
        m_woken.wait_until(lock, *until, isWoken);
    else
        m_woken.wait(lock, isWoken);
    m_isWoken = false;
}

// The first byte counts, because the service may have worked on the answer until now.
void Transport::received(std::size_t bytes)
{
    const bool isFirst = !std::exchange(m_hasBegun, true);
    m_sinceProgress += bytes;
    if (!isFirst && m_sinceProgress < leastProgress)
        return;
    m_sinceProgress = 0;
    m_lastProgress = Clock::now();
}

std::size_t Transport::takeBody(char *data, std::size_t size, std::size_t count, void *self)
{
    auto *transport = static_cast<Transport *>(self);
    const std::size_t bytes = size * count;
    if (transport->m_answer.body.size() + bytes > maxReplyBytes) {
        transport->m_answer.end = Answer::End::TooLarge;
        return CURL_WRITEFUNC_ERROR;
    }
    transport->received(bytes);
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
    transport->received(size * count);
    transport->m_headerBytes += size * count;
    if (transport->m_headerBytes > maxHeaderBytes) {
        transport->m_answer.end = Answer::End::TooLarge;
        return 0;
    }
    return size * count;
}

bool Transport::start(const char *function, const SecretText &token, const std::string &key, SecretText body,
                      std::optional<Clock::time_point> endsBy)
{
    if (m_config.server.empty() || !load())
        return false;
    CURL *easy = m_easy.get();
    m_curl->easy_reset(easy);
    m_answer = Answer();
    m_headerBytes = 0;
    m_sent = std::move(body);
    m_hasBegun = false;
    m_sinceProgress = 0;
    m_started = m_lastProgress = Clock::now();
    m_endsBy = endsBy;

    curl_slist *headers = nullptr;
    const auto addHeader = [this, &headers](const char *line) {
        if (curl_slist *longer = m_curl->slist_append(headers, line))
            headers = longer;
    };
    // "Expect:" alone removes curl's own, which would cost a round trip.
    for (const char *line : {"Content-Type: application/json", "Accept: application/json", "Expect:"})
        addHeader(line);
    if (!token.empty()) {
        SecretText line;
        line.reserve(64 + token.size());
        line.append("Authorization: Bearer ").append(token);
        addHeader(line.c_str());
    }
    // In the log of the service and of what stands before it. Each attempt has its own.
    addHeader(("X-Request-Id: " + randomDigits()).c_str());
    // libcurl sends a request again, with the same headers, when a kept connection ends before the answer.
    if (!key.empty())
        addHeader(("Velmora-Request-Key: " + key).c_str());
    m_headers.reset(headers);

    const std::string url = *m_server + "/v1/" + function;
    m_curl->easy_setopt(easy, CURLOPT_URL, url.c_str());
    m_curl->easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    m_curl->easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 0L);
    m_curl->easy_setopt(easy, CURLOPT_PROXY, ""); // no proxy, whatever the environment says
    m_curl->easy_setopt(easy, CURLOPT_HTTP_VERSION, long(CURL_HTTP_VERSION_1_1));
    m_curl->easy_setopt(easy, CURLOPT_USERAGENT, "libvelmora_ws/1");
    m_curl->easy_setopt(easy, CURLOPT_HTTPHEADER, m_headers.get());
    m_curl->easy_setopt(easy, CURLOPT_POST, 1L);
    m_curl->easy_setopt(easy, CURLOPT_POSTFIELDSIZE, long(m_sent.size()));
    m_curl->easy_setopt(easy, CURLOPT_POSTFIELDS, m_sent.c_str()); // not copied
    m_curl->easy_setopt(easy, CURLOPT_WRITEFUNCTION, takeBody);
    m_curl->easy_setopt(easy, CURLOPT_WRITEDATA, this);
    m_curl->easy_setopt(easy, CURLOPT_HEADERFUNCTION, takeHeader);
    m_curl->easy_setopt(easy, CURLOPT_HEADERDATA, this);
    m_curl->easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    // An aborted name lookup ends on a thread of its own. Joining that thread could take as long as the timeout of a
    // dead name server.
    m_curl->easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);
    m_curl->easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, long(m_config.connectTimeout.count()));
    m_curl->easy_setopt(easy, CURLOPT_SSL_VERIFYPEER, 1L);
    m_curl->easy_setopt(easy, CURLOPT_SSL_VERIFYHOST, 2L);
    m_curl->easy_setopt(easy, CURLOPT_SSLVERSION, long(CURL_SSLVERSION_TLSv1_2));
    if (!m_config.caFile.empty())
        m_curl->easy_setopt(easy, CURLOPT_CAINFO, m_config.caFile.c_str());

    m_isBusy = m_curl->multi_add_handle(m_multi.get(), easy) == CURLM_OK;
    return m_isBusy;
}

Clock::time_point Transport::overdue() const
{
    const auto limit = std::min(m_lastProgress + m_config.stallTimeout, m_started + m_config.requestTimeout);
    return m_endsBy ? std::min(limit, *m_endsBy) : limit;
}

std::optional<Answer> Transport::run(std::optional<Clock::time_point> until)
{
    if (!m_multi) {
        sleepUnloaded(until);
        return {};
    }
    const auto now = Clock::now();
    if (m_isBusy)
        until = until ? std::min(*until, overdue()) : overdue();
    int wait = 3'600'000; // wake() ends it
    if (until) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(*until - now).count();
        wait = static_cast<int>(std::clamp<long long>(left, 0, wait));
    }
    int running = 0;
    if (m_isBusy)
        m_curl->multi_perform(m_multi.get(), &running);
    if (!m_isBusy || running > 0) {
        m_curl->multi_poll(m_multi.get(), nullptr, 0, wait, nullptr);
        if (m_isBusy)
            m_curl->multi_perform(m_multi.get(), &running);
    }
    if (!m_isBusy)
        return {};

    int left = 0;
    while (CURLMsg *message = m_curl->multi_info_read(m_multi.get(), &left)) {
        if (message->msg != CURLMSG_DONE)
            continue;
        if (message->data.result == CURLE_OK) {
            m_answer.end = Answer::End::Complete;
            m_curl->easy_getinfo(m_easy.get(), CURLINFO_RESPONSE_CODE, &m_answer.httpStatus);
            curl_off_t seconds = 0;
            m_curl->easy_getinfo(m_easy.get(), CURLINFO_RETRY_AFTER, &seconds);
            m_answer.retryAfter = std::chrono::seconds(seconds);
        }
        m_answer.mayPass = mayPass(message->data.result);
        stop();
        return std::move(m_answer);
    }
    if (Clock::now() < overdue())
        return {};
    stop();
    m_answer.end = Answer::End::Broken;
    m_answer.mayPass = true;
    return std::move(m_answer);
}

void Transport::stop()
{
    if (m_isBusy)
        m_curl->multi_remove_handle(m_multi.get(), m_easy.get());
    m_isBusy = false;
    m_headers.reset();
    forget(m_sent);
}

} // namespace velmora::ws
