#include "server/remote/remotehub.h"

#include "server/accounts/secrets.h"

#include <algorithm>

namespace velmora::server {

namespace {

constexpr size_t mostWaiting = 200'000; // radios at one process

// Of a radio that has no record on the board.
constexpr const char *restingEpoch = "-";
// For so long after a telephone's first look a radio that waits at another process counts as there.
constexpr std::chrono::seconds answerTime{1};
// For so long after the last look a radio's record stays on the board.
constexpr std::chrono::seconds recordLife{60};

// Shorter than the time after which proxies and networks of telephones end a silent request.
constexpr std::chrono::seconds longOrdersWait{50};
constexpr std::chrono::seconds longLookWait{25};
// Who waits at another process cannot be seen; it asks again before the other side forgets it.
constexpr std::chrono::seconds sharedOrdersWait{3};
constexpr std::chrono::seconds sharedLookWait{5};

} // namespace

RemoteHub::RemoteHub(Now now, Store *store)
    : m_now(std::move(now))
    , m_waiting(mostWaiting)
{
    if (store && store->isShared()) {
        m_board = std::make_unique<RemoteBoard>(*store, [this](const std::string &radio) {
            wakeRadio(radio);
            wakeWatchers(radio);
        });
    }
}

std::chrono::seconds RemoteHub::ordersWait(const std::string &radio)
{
    return m_board && m_board->has(radio) ? sharedOrdersWait : longOrdersWait;
}

std::chrono::seconds RemoteHub::lookWait() const
{
    return m_board ? sharedLookWait : longLookWait;
}

bool RemoteHub::use(const std::string &key, bool isMade, const RemoteBoard::Work &work)
{
    if (m_board) {
        const bool isNew = isMade && !m_board->has(key);
        const bool isUsed = m_board->use(key, isMade, work);
        if (isNew)
            wakeRadio(key); // it may wait here, and says so
        return isUsed;
    }
    const auto now = m_now();
    const std::lock_guard guard(m_mutex);
    if (!isMade && !m_radios.find(key))
        return false;
    Radio &radio = m_radios.at(key);
    if (radio.epoch.empty())
        radio.epoch = randomToken(8);
    work(radio, now);
    return true;
}

std::shared_ptr<http::Wait> RemoteHub::exchangeWait(const std::string &key, const std::shared_ptr<http::Wait> &wait)
{
    const std::lock_guard guard(m_waitingMutex);
    return std::exchange(m_waiting.at(key).radio, wait).lock();
}

void RemoteHub::wakeRadio(const std::string &key)
{
    std::shared_ptr<http::Wait> woken;
    {
        const std::lock_guard guard(m_waitingMutex);
        if (Waiting *const waiting = m_waiting.find(key))
            woken = waiting->radio.lock();
    }
    if (woken)
        woken->wake();
}

void RemoteHub::wakeWatchers(const std::string &key)
{
    std::vector<Watcher> watchers;
    {
        const std::lock_guard guard(m_waitingMutex);
        if (Waiting *const waiting = m_waiting.find(key))
            watchers.swap(waiting->watchers);
    }
    for (const Watcher &watcher : watchers) {
        if (const auto wait = watcher.wait.lock())
            wait->wake();
    }
}

bool RemoteHub::hasWatchers(const std::string &key)
{
    const std::lock_guard guard(m_waitingMutex);
    Waiting *const waiting = m_waiting.find(key);
    if (!waiting)
        return false;
    std::erase_if(waiting->watchers, [](const Watcher &watcher) { return watcher.wait.expired(); });
    return !waiting->watchers.empty();
}

bool RemoteHub::addWatcher(const std::string &key, const std::string &session, const std::shared_ptr<http::Wait> &wait)
{
    const std::lock_guard guard(m_waitingMutex);
    std::vector<Watcher> &watchers = m_waiting.at(key).watchers;
    std::erase_if(watchers, [](const Watcher &watcher) { return watcher.wait.expired(); });
    const auto ofSession = [&](const Watcher &watcher) { return watcher.session == session; };
    if (static_cast<size_t>(std::count_if(watchers.begin(), watchers.end(), ofSession)) >= mostWatchersOfSession)
        return false;
    watchers.push_back({session, wait});
    return true;
}

bool RemoteHub::isHere(const Radio &radio, const std::string &key, Clock::time_point now)
{
    if (radio.askedAt && now - *radio.askedAt < grace)
        return true;
    if (m_board)
        return !radio.askedAt && now - radio.madeAt < answerTime;
    const std::lock_guard guard(m_waitingMutex);
    const Waiting *const waiting = m_waiting.find(key);
    return waiting && !waiting->radio.expired();
}

bool RemoteHub::isWatched(const Radio &radio, const std::string &key, Clock::time_point now)
{
    const std::chrono::seconds life = m_board ? sharedLookWait + grace : grace;
    return hasWatchers(key) || (radio.lookedAt && now - *radio.lookedAt < life);
}

bool RemoteHub::isOver(const Radio &radio, bool isWatched, Clock::time_point now) const
{
    return m_board && !isWatched && radio.orders.empty() &&
           now - std::max(radio.madeAt, radio.lookedAt.value_or(radio.madeAt)) > recordLife;
}

void RemoteHub::forgetExpired(Radio &radio, Clock::time_point now)
{
    while (!radio.orders.empty() && now - radio.orders.front().givenAt > orderLife)
        radio.orders.pop_front();
}

RemoteHub::Orders RemoteHub::restingOrders()
{
    Orders none;
    none.epoch = restingEpoch;
    return none;
}

RemoteHub::Orders RemoteHub::take(Radio &radio, const Ask &ask, bool isWatched, Clock::time_point now) const
{
    const uint64_t after = ask.epoch == radio.epoch ? ask.after : 0;
    forgetExpired(radio, now);
    // What has arrived is kept no longer: it may be a password.
    std::erase_if(radio.orders, [&](const Radio::Order &order) { return order.number <= after; });
    Orders taken;
    taken.epoch = radio.epoch;
    taken.last = radio.lastOrder;
    taken.isWatched = isWatched;
    taken.isReportWanted = radio.isReportWanted;
    for (const Radio::Order &order : radio.orders)
        taken.orders.push_back(order.text);
    return taken;
}

std::optional<RemoteHub::Orders> RemoteHub::ordersFor(const Ask &ask, const std::shared_ptr<http::Wait> &wait)
{
    std::optional<Orders> answer;
    bool isReplacing = false;
    bool wasHere = true;
    // The radio waits before its record is read: what changes after that wakes it.
    const std::shared_ptr<http::Wait> before = exchangeWait(ask.radio, wait);
    const bool isKnown = m_board ? m_board->has(ask.radio) : true;
    const bool isUsed = isKnown && use(ask.radio, !m_board, [&](Radio &radio, Clock::time_point now) {
                            answer.reset();
                            isReplacing =
                                ask.epoch.empty() && radio.channel != ask.channel; // a new run of the radio's program
                            wasHere = (radio.askedAt && now - *radio.askedAt < grace) || (!m_board && before);
                            if (isReplacing || radio.channel.empty())
                                radio.channel = ask.channel;
                            if (radio.channel != ask.channel) {
                                answer = Orders();
                                answer->isReplaced = true;
                                return After::Quiet;
                            }
                            const bool isSeen = isWatched(radio, ask.radio, now);
                            if (isOver(radio, isSeen, now)) {
                                answer = restingOrders();
                                return After::Gone;
                            }
                            radio.askedAt = now;
                            Orders taken = take(radio, ask, isSeen, now);
                            if (!taken.orders.empty() || isSeen != ask.knowsWatched || taken.isReportWanted ||
                                ask.epoch != radio.epoch) {
                                answer = std::move(taken);
                                radio.isReportWanted = false;
                            }
                            if (wasHere)
                                return After::Quiet;
                            ++radio.revision;
                            return After::News;
                        });
    if (!isUsed && (ask.epoch != restingEpoch || ask.knowsWatched))
        answer = restingOrders();
    if (answer)
        exchangeWait(ask.radio, answer->isReplaced ? before : nullptr);
    if (isReplacing && before)
        before->wake();
    if (!wasHere)
        wakeWatchers(ask.radio);
    return answer;
}

RemoteHub::Orders RemoteHub::noOrders(const Ask &ask)
{
    Orders answer = restingOrders();
    const std::shared_ptr<http::Wait> before = exchangeWait(ask.radio, nullptr);
    if (m_board && !m_board->has(ask.radio))
        return answer;
    use(ask.radio, !m_board, [&](Radio &radio, Clock::time_point now) {
        answer = Orders();
        answer.isReplaced = radio.channel != ask.channel;
        if (answer.isReplaced)
            return After::Quiet;
        radio.askedAt = now;
        answer = take(radio, ask, isWatched(radio, ask.radio, now), now);
        return After::Quiet;
    });
    if (answer.isReplaced)
        exchangeWait(ask.radio, before); // it is the other program that waits
    return answer;
}

bool RemoteHub::report(const std::string &key, std::string state)
{
    if (m_board && !m_board->has(key))
        return false;
    bool isSeen = false;
    use(key, false, [&](Radio &radio, Clock::time_point now) {
        isSeen = isWatched(radio, key, now);
        if (!isSeen)
            return After::Quiet;
        radio.state = state;
        radio.reportedAt = now;
        ++radio.revision;
        return After::News;
    });
    if (isSeen)
        wakeWatchers(key);
    return isSeen;
}

bool RemoteHub::isConnected(const std::string &key)
{
    bool isConnected = false;
    // A radio without a record may wait at another process, which answers for it.
    use(key, m_board != nullptr, [&](const Radio &radio, Clock::time_point now) {
        isConnected = isHere(radio, key, now);
        return After::Quiet;
    });
    return isConnected;
}

RemoteHub::Given RemoteHub::give(const std::string &key, std::string order, const std::string &page, uint64_t count)
{
    Given given = Given::Away;
    use(key, m_board != nullptr, [&](Radio &radio, Clock::time_point now) {
        given = Given::Away;
        if (!isHere(radio, key, now))
            return After::Quiet;
        forgetExpired(radio, now);
        given = Given::TooMany;
        if (radio.orders.size() >= mostOrders)
            return After::Quiet;
        if (!page.empty()) {
            if (!radio.pages.contains(page) && radio.pages.size() >= mostPagesOfRadio)
                radio.pages.clear(); // a browser repeats within seconds
            uint64_t &highest = radio.pages[page];
            given = Given::Repeated;
            if (count <= highest)
                return After::Quiet;
            highest = count;
        }
        radio.orders.push_back({++radio.lastOrder, now, order});
        given = Given::Done;
        return After::News;
    });
    if (given == Given::Done)
        wakeRadio(key);
    return given;
}

RemoteHub::View RemoteHub::viewOf(const Radio &radio, const std::string &key, Clock::time_point now)
{
    View view;
    view.isConnected = isHere(radio, key, now);
    // What was shown an hour ago is no news of a radio that has not been looked at since.
    view.state = view.isConnected ? radio.state : std::string();
    view.revision = radio.epoch + "." + std::to_string(radio.revision) + (view.isConnected ? "" : ".away");
    view.age = std::chrono::duration_cast<std::chrono::milliseconds>(now - radio.reportedAt);
    return view;
}

std::optional<RemoteHub::View> RemoteHub::look(const std::string &key, const std::string &session,
                                               const std::string &revision, const std::shared_ptr<http::Wait> &wait)
{
    std::optional<View> answer;
    bool wasWatched = hasWatchers(key);
    // The telephone waits before the record is read: what changes after that wakes it.
    const bool mayWait = addWatcher(key, session, wait);
    use(key, true, [&, hadWatchers = wasWatched](Radio &radio, Clock::time_point now) {
        answer.reset();
        const std::chrono::seconds life = m_board ? sharedLookWait + grace : grace;
        wasWatched = hadWatchers || (radio.lookedAt && now - *radio.lookedAt < life);
        if (!wasWatched) {
            radio.state.clear();
            radio.isReportWanted = true;
        }
        radio.lookedAt = now;
        View view = viewOf(radio, key, now);
        if (view.revision != revision || !mayWait)
            answer = std::move(view);
        return wasWatched ? After::Quiet : After::News;
    });
    if (!wasWatched)
        wakeRadio(key);
    return answer;
}

RemoteHub::View RemoteHub::lookNow(const std::string &key)
{
    View view;
    use(key, true, [&](const Radio &radio, Clock::time_point now) {
        view = viewOf(radio, key, now);
        return After::Quiet;
    });
    return view;
}

void RemoteHub::askEverybody()
{
    Waits woken;
    {
        const std::lock_guard guard(m_waitingMutex);
        m_waiting.forEach([&](const std::string &, const Waiting &waiting) {
            for (const Watcher &watcher : waiting.watchers) {
                if (auto wait = watcher.wait.lock())
                    woken.push_back(std::move(wait));
            }
        });
    }
    for (const auto &wait : woken)
        wait->wake();
}

} // namespace velmora::server
