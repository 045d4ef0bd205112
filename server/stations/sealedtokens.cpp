#include "server/stations/sealedtokens.h"

#include "server/store/store.h"

#include <nlohmann/json.hpp>
#include <sstream>

namespace velmora::server {

namespace {

using nlohmann::json;

// A line a key: number, since when, the key.
constexpr const char *keysSetting = "token keys";
constexpr size_t mostKeys = 2;

} // namespace

SealedTokens::SealedTokens(Store &store, Clock clock)
    : m_store(store)
    , m_clock(std::move(clock))
{
}

SealedTokens::Keys SealedTokens::read()
{
    Keys keys;
    std::istringstream text(m_store.setting(keysSetting));
    Key key;
    for (int number = 0; keys.size() < mostKeys && text >> number >> key.since >> key.secret;) {
        key.number = static_cast<unsigned char>(number);
        keys.push_back(key);
    }
    return keys;
}

void SealedTokens::addKey(int number)
{
    const Store::Lock db = m_store.lock();
    Transaction change(*db, NameLock{keysSetting});
    Keys keys = read();
    if ((keys.empty() ? 0 : keys.front().number) == number) {
        const auto next = static_cast<unsigned char>(number == 255 ? 1 : number + 1);
        keys.insert(keys.begin(), {next, m_clock(), randomToken()});
        keys.resize(std::min(keys.size(), mostKeys));
        std::string text;
        for (const Key &key : keys)
            text += std::to_string(key.number) + ' ' + std::to_string(key.since) + ' ' + key.secret + '\n';
        m_store.setSetting(keysSetting, text);
    }
    change.commit();
}

SealedTokens::Keys SealedTokens::keys()
{
    const int64_t now = m_clock();
    {
        const std::lock_guard guard(m_mutex);
        if (!m_keys.empty() && now >= m_readAt && now < m_readAt + lookSeconds)
            return m_keys;
    }
    Keys keys = read();
    if (keys.empty() || now >= keys.front().since + keySeconds) {
        addKey(keys.empty() ? 0 : keys.front().number);
        keys = read();
    }
    const std::lock_guard guard(m_mutex);
    m_keys = keys;
    m_readAt = now;
    return keys;
}

std::optional<SealedTokens::Key> SealedTokens::keyOf(unsigned char number)
{
    for (const bool isSecondLook : {false, true}) {
        if (isSecondLook)
            forget();
        for (const Key &key : keys()) {
            if (key.number == number)
                return key;
        }
    }
    return std::nullopt;
}

void SealedTokens::forget()
{
    const std::lock_guard guard(m_mutex);
    m_keys.clear();
}

void SealedTokens::changeKey()
{
    addKey(keys().front().number);
    forget();
}

std::string SealedTokens::seal(AccountId account, std::string_view kind, const json &content)
{
    const Key key = keys().front();
    const json all = {kind, account, content};
    return sealedToken(key.secret, key.number, all.dump(-1, ' ', false, json::error_handler_t::replace));
}

std::optional<json> SealedTokens::open(AccountId account, std::string_view kind, const std::string &token)
{
    const std::optional<unsigned char> number = token.size() <= longest ? tokenFront(token) : std::nullopt;
    if (!number)
        return std::nullopt;
    const std::optional<Key> key = keyOf(*number);
    const std::optional<std::string> text = key ? unsealedToken(key->secret, token) : std::nullopt;
    if (!text)
        return std::nullopt;
    json all = json::parse(*text, nullptr, false);
    // The text is the service's own, of this version or of another one.
    if (all.is_array() && all.size() == 3 && all[0] == kind && all[1] == account && all[2].is_array())
        return std::move(all[2]);
    return std::nullopt;
}

} // namespace velmora::server
