#include "webaddress.h"

#include "curl.h"

#include <algorithm>
#include <memory>

namespace velmora::ws {

namespace {

struct UrlCleanup {
    void operator()(CURLU *url) const { Curl::get()->url_cleanup(url); }
};

// An address in its parts.
class Address {
public:
    // `flags`: of curl_url_set.
    Address(const std::string &text, unsigned flags)
        : m_curl(Curl::get())
        , m_url(m_curl ? m_curl->url() : nullptr)
        , m_isValid(m_url && m_curl->url_set(m_url.get(), CURLUPART_URL, text.c_str(), flags) == CURLUE_OK)
    {
    }

    bool isWeb() const
    {
        const std::string scheme = part(CURLUPART_SCHEME);
        return m_isValid && (scheme == "http" || scheme == "https") && !part(CURLUPART_HOST).empty();
    }
    bool has(CURLUPart which) const { return !part(which).empty(); }

private:
    std::string part(CURLUPart which) const
    {
        char *text = nullptr;
        if (!m_isValid || m_curl->url_get(m_url.get(), which, &text, 0) != CURLUE_OK)
            return {};
        std::string copy = text;
        m_curl->free(text);
        return copy;
    }

    const Curl *m_curl;
    std::unique_ptr<CURLU, UrlCleanup> m_url;
    bool m_isValid;
};

} // namespace

bool isWebAddress(const std::string &text)
{
    return Address(text, CURLU_ALLOW_SPACE).isWeb(); // the player encodes blanks
}

std::string serviceAddress(std::string text)
{
    while (text.ends_with('/'))
        text.pop_back();
    const Address address(text, 0);
    const bool hasMore = std::any_of(text.begin(), text.end(), [](char c) { return c == '?' || c == '#'; });
    return address.isWeb() && !address.has(CURLUPART_USER) && !hasMore ? text : std::string();
}

} // namespace velmora::ws
