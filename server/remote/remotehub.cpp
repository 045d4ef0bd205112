#include "server/remote/remotehub.h"

#include "server/accounts/secrets.h"

#include <algorithm>

namespace velmora::server {

namespace {

void wakeAll(const std::vector<std::shared_ptr<http::Wait>> &waits)
{
    for (const auto &wait : waits)
        wait->wake();
}

} // namespace

RemoteHub::RemoteHub(Now now)
    : m_now(std::move(now))
    , m_epoch(randomToken(8))
{
}

bool RemoteHub::isHere(const Radio &radio, Clock::time_point now) const
{
    return !radio.wait.expired() || (radio.askedAt && now - *radio.askedAt < grace);
}

bool RemoteHub::isWatched(Radio &radio, Clock::time_point now) const
{
    std::erase_if(radio.watchers, [](const Watcher &watcher) { return watcher.wait.expired(); });
    return !radio.watchers.empty() || (radio.lookedAt && now - *radio.lookedAt < grace);
}

void RemoteHub::forgetExpired(Radio &radio, Clock::time_point now)
{
    while (!radio.orders.empty() && now - radio.orders.front().givenAt > orderLife)
        radio.orders.pop_front();
}

RemoteHub::Orders RemoteHub::take(Radio &radio, const Ask &ask, Clock::time_point now)
{
    const uint64_t after = ask.epoch == m_epoch ? ask.after : 0;
    forgetExpired(radio, now);
    // What has arrived is kept no longer: it may be a password.
    std::erase_if(radio.orders, [&](const Order &order) { return order.number <= after; });
    Orders taken;
    taken.last = radio.lastOrder;
    taken.isWatched = isWatched(radio, now);
    taken.isReportWanted = radio.isReportWanted;
    for (const Order &order : radio.orders)
        taken.orders.push_back(order.text);
    return taken;
}

std::optional<RemoteHub::Orders> RemoteHub::ordersFor(const Ask &ask, const std::shared_ptr<http::Wait> &wait)
{
    Waits woken;
    std::optional<Orders> answer;
    {
        const auto now = m_now();
        const std::lock_guard guard(m_mutex);
        Radio &radio = m_radios.at(ask.radio);
        const bool wasHere = isHere(radio, now);
        const auto before = radio.wait.lock();
        if (ask.epoch.empty() && radio.channel != ask.channel) {
            radio.channel = ask.channel; // a new run of the radio's program
            if (before)
                woken.push_back(before);
        }
        if (radio.channel.empty())
            radio.channel = ask.channel;
        if (radio.channel != ask.channel) {
            answer = Orders();
            answer->isReplaced = true;
        } else {
            radio.askedAt = now;
            Orders taken = take(radio, ask, now);
            const bool isNews = !taken.orders.empty() || taken.isWatched != ask.knowsWatched || taken.isReportWanted ||
                                ask.epoch != m_epoch;
            if (isNews) {
                answer = std::move(taken);
                radio.wait.reset();
                radio.isReportWanted = false;
            } else {
                radio.wait = wait;
            }
        }
        if (!wasHere)
            wakeWatchers(radio, &woken);
    }
    wakeAll(woken);
    return answer;
}

RemoteHub::Orders RemoteHub::noOrders(const Ask &ask)
{
    const auto now = m_now();
    const std::lock_guard guard(m_mutex);
    Radio &radio = m_radios.at(ask.radio);
    if (radio.channel != ask.channel) {
        Orders replaced;
        replaced.isReplaced = true;
        return replaced;
    }
    radio.wait.reset();
    radio.askedAt = now;
    return take(radio, ask, now);
}

bool RemoteHub::report(const std::string &key, std::string state)
{
    Waits woken;
    {
        const auto now = m_now();
        const std::lock_guard guard(m_mutex);
        Radio *const radio = m_radios.find(key);
        if (!radio || !isWatched(*radio, now))
            return false;
        radio->state = std::move(state);
        radio->reportedAt = now;
        wakeWatchers(*radio, &woken);
    }
    wakeAll(woken);
    return true;
}

bool RemoteHub::isConnected(const std::string &key)
{
    const auto now = m_now();
    const std::lock_guard guard(m_mutex);
    const Radio *const radio = m_radios.find(key);
    return radio && isHere(*radio, now);
}

RemoteHub::Given RemoteHub::give(const std::string &key, std::string order, const std::string &page, uint64_t count)
{
    std::shared_ptr<http::Wait> woken;
    {
        const auto now = m_now();
        const std::lock_guard guard(m_mutex);
        Radio *const radio = m_radios.find(key);
        if (!radio || !isHere(*radio, now))
            return Given::Away;
        forgetExpired(*radio, now);
        if (radio->orders.size() >= mostOrders)
            return Given::TooMany;
        if (!page.empty()) {
            if (!radio->pages.contains(page) && radio->pages.size() >= mostPagesOfRadio)
                radio->pages.clear(); // a browser repeats within seconds
            uint64_t &highest = radio->pages[page];
            if (count <= highest)
                return Given::Repeated;
            highest = count;
        }
        radio->orders.push_back({++radio->lastOrder, now, std::move(order)});
        woken = radio->wait.lock();
    }
    if (woken)
        woken->wake();
    return Given::Done;
}

RemoteHub::View RemoteHub::viewOf(Radio &radio, Clock::time_point now) const
{
    View view;
    view.isConnected = isHere(radio, now);
    // What was shown an hour ago is no news of a radio that has not been looked at since.
    view.state = view.isConnected ? radio.state : std::string();
    view.revision = m_epoch + "." + std::to_string(radio.revision) + (view.isConnected ? "" : ".away");
    view.age = std::chrono::duration_cast<std::chrono::milliseconds>(now - radio.reportedAt);
    return view;
}

std::optional<RemoteHub::View> RemoteHub::look(const std::string &key, const std::string &session,
                                               const std::string &revision, const std::shared_ptr<http::Wait> &wait)
{
    Waits woken;
    std::optional<View> answer;
    {
        const auto now = m_now();
        const std::lock_guard guard(m_mutex);
        Radio &radio = m_radios.at(key);
        const bool wasWatched = isWatched(radio, now);
        if (!wasWatched) {
            radio.state.clear();
            radio.isReportWanted = true;
        }
        radio.lookedAt = now;
        View view = viewOf(radio, now);
        if (view.revision != revision) {
            answer = std::move(view);
        } else {
            const auto ofSession = [&](const Watcher &watcher) { return watcher.session == session; };
            const auto others = std::count_if(radio.watchers.begin(), radio.watchers.end(), ofSession);
            if (static_cast<size_t>(others) >= mostWatchersOfSession)
                answer = std::move(view);
            else
                radio.watchers.push_back({session, wait});
        }
        if (!wasWatched) {
            if (auto radioWaits = radio.wait.lock())
                woken.push_back(std::move(radioWaits));
        }
    }
    wakeAll(woken);
    return answer;
}

RemoteHub::View RemoteHub::lookNow(const std::string &key)
{
    const auto now = m_now();
    const std::lock_guard guard(m_mutex);
    return viewOf(m_radios.at(key), now);
}

void RemoteHub::wakeWatchers(Radio &radio, Waits *waits)
{
    ++radio.revision;
    for (const Watcher &watcher : radio.watchers) {
        if (auto wait = watcher.wait.lock())
            waits->push_back(std::move(wait));
    }
    radio.watchers.clear();
}

void RemoteHub::askEverybody()
{
    Waits woken;
    {
        const std::lock_guard guard(m_mutex);
        m_radios.forEach([&](const std::string &, const Radio &radio) {
            for (const Watcher &watcher : radio.watchers) {
                if (auto wait = watcher.wait.lock())
                    woken.push_back(std::move(wait));
            }
        });
    }
    wakeAll(woken);
}

} // namespace velmora::server
