#include "server/http/message.h"

#include <algorithm>
#include <charconv>
#include <random>
#include <strings.h>

namespace velmora::server::http {

namespace {

bool isSameName(std::string_view a, std::string_view b)
{
    return a.size() == b.size() && ::strncasecmp(a.data(), b.data(), a.size()) == 0;
}

} // namespace

std::string_view headerOf(const Headers &headers, std::string_view name)
{
    const auto found = std::find_if(headers.begin(), headers.end(),
                                    [&](const auto &header) { return isSameName(header.first, name); });
    return found == headers.end() ? std::string_view() : std::string_view(found->second);
}

std::string requestIdOf(std::string_view sent)
{
    constexpr size_t least = 8;
    constexpr size_t most = 64;
    if (sent.size() >= least && sent.size() <= most &&
        sent.find_first_not_of("0123456789abcdefABCDEF-") == std::string_view::npos)
        return std::string(sent);
    thread_local std::mt19937_64 numbers{std::random_device{}()};
    char text[33];
    std::snprintf(text, sizeof text, "%016llx%016llx", static_cast<unsigned long long>(numbers()),
                  static_cast<unsigned long long>(numbers()));
    return text;
}

std::string decoded(std::string_view text, bool isPath)
{
    std::string plain;
    plain.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        unsigned char byte = 0;
        if (text[i] == '%' && i + 2 < text.size() &&
            std::from_chars(text.data() + i + 1, text.data() + i + 3, byte, 16).ptr == text.data() + i + 3) {
            plain += static_cast<char>(byte);
            i += 2;
        } else {
            plain += text[i] == '+' && !isPath ? ' ' : text[i];
        }
    }
    return plain;
}

std::string Request::parameter(std::string_view name) const
{
    std::string_view rest = method == "POST" ? body : query;
    while (!rest.empty()) {
        const std::string_view field = rest.substr(0, rest.find('&'));
        rest.remove_prefix(std::min(field.size() + 1, rest.size()));
        const size_t equals = std::min(field.find('='), field.size());
        if (decoded(field.substr(0, equals), false) == name)
            return decoded(field.substr(std::min(equals + 1, field.size())), false);
    }
    return {};
}

std::string Request::cookie(std::string_view name) const
{
    std::string_view rest = header("Cookie");
    while (!rest.empty()) {
        std::string_view pair = rest.substr(0, rest.find(';'));
        rest.remove_prefix(std::min(pair.size() + 1, rest.size()));
        pair.remove_prefix(std::min(pair.find_first_not_of(' '), pair.size()));
        if (pair.size() > name.size() && pair.starts_with(name) && pair[name.size()] == '=')
            return std::string(pair.substr(name.size() + 1));
    }
    return {};
}

void Response::setHeader(std::string_view name, std::string value)
{
    std::erase_if(headers, [&](const auto &header) { return isSameName(header.first, name); });
    headers.emplace_back(name, std::move(value));
}

void Response::setContent(std::string content, std::string type)
{
    body = std::move(content);
    setHeader("Content-Type", std::move(type));
}

void Response::setFile(std::shared_ptr<const File> content, std::string type)
{
    file = std::move(content);
    first = 0;
    count = file->size();
    setHeader("Content-Type", std::move(type));
    setHeader("Accept-Ranges", "bytes");
    setHeader("ETag", file->etag());
    setHeader("Last-Modified", file->lastModified());
}

void Wait::wake()
{
    const std::lock_guard guard(m_mutex);
    m_isWoken = true;
    if (m_callback)
        std::exchange(m_callback, nullptr)();
}

void Wait::onWake(std::function<void()> callback)
{
    const std::lock_guard guard(m_mutex);
    if (m_isWoken)
        callback();
    else
        m_callback = std::move(callback);
}

void Wait::forget()
{
    const std::lock_guard guard(m_mutex);
    m_callback = nullptr;
}

Response Response::handledIn(Lane lane)
{
    Response response;
    response.lane = lane;
    return response;
}

Response Response::answeredAfter(std::shared_ptr<Wait> wait, std::chrono::milliseconds atMost)
{
    Response response;
    response.wait = std::move(wait);
    response.waitAtMost = atMost;
    return response;
}

Response Response::redirect(std::string address)
{
    Response response;
    response.status = 303;
    response.setHeader("Location", std::move(address));
    return response;
}

} // namespace velmora::server::http
