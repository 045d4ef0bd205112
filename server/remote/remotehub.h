#pragma once

#include "server/accounts/lrutable.h"
#include "server/http/message.h"

#include <chrono>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace velmora::server {

// Where telephones and radios meet. A radio asks for its orders and waits until there are some; a telephone asks what
// its radio shows and waits until that changes. Both ask again and again, so nothing here knows a connection. Radios
// are known by the hash of their device key. Who may do what is decided by the callers, each time. Kept in memory:
// after a restart both sides ask again. Any thread.
class RemoteHub {
public:
    using Clock = std::chrono::steady_clock;
    using Now = std::function<Clock::time_point()>;

    static constexpr size_t mostRadios = 20'000;
    static constexpr size_t mostOrders = 64;           // of one radio; more are refused
    static constexpr size_t mostWatchersOfSession = 8; // more are answered at once
    static constexpr size_t mostPagesOfRadio = 64;     // whose counts are known
    // A key that was pressed while the radio was away must not act later.
    static constexpr std::chrono::seconds orderLife{4};
    // How long a side that has just been answered counts as there.
    static constexpr std::chrono::seconds grace{5};

    explicit RemoteHub(Now now = Clock::now);

    // --- the radio's side
    struct Ask {
        std::string radio;   // hash of its key
        std::string channel; // random, of one run of the radio's program
        std::string epoch;   // of the last answer; empty: none yet
        uint64_t after = 0;  // the number of the last order that arrived, within that epoch
        bool knowsWatched = false;
    };
    struct Orders {
        uint64_t last = 0;
        std::vector<std::string> orders; // as they were given, in their order
        bool isWatched = false;          // somebody looks: the radio is to report what changes
        bool isReportWanted = false;     // and what it shows now
        bool isReplaced = false;         // another program with the same key asks now
    };
    // What is new for the radio; nothing when it has to wait: `wait` is then woken when there is something.
    std::optional<Orders> ordersFor(const Ask &ask, const std::shared_ptr<http::Wait> &wait);
    // Ends a wait without news.
    Orders noOrders(const Ask &ask);
    const std::string &epoch() const { return m_epoch; }
    // What the radio shows now. False when nobody looks: nothing is kept.
    bool report(const std::string &radio, std::string state);

    // --- the telephone's side
    bool isConnected(const std::string &radio);
    enum class Given { Done, Away, TooMany, Repeated };
    // `page` and `count` tell an order that a browser sends twice: of one page each count acts once, and none that is
    // lower than one before. An empty page has no counts.
    Given give(const std::string &radio, std::string order, const std::string &page = {}, uint64_t count = 0);
    struct View {
        std::string revision;
        std::string state; // empty: none has come
        bool isConnected = false;
        std::chrono::milliseconds age{0}; // of the state
    };
    // What the radio shows, as soon as it is another one than at `revision`; nothing when the telephone has to wait.
    // `session` is whose browser asks.
    std::optional<View> look(const std::string &radio, const std::string &session, const std::string &revision,
                             const std::shared_ptr<http::Wait> &wait);
    View lookNow(const std::string &radio);

    // Somebody's right to look or press may have ended: everybody who waits is asked again.
    void askEverybody();

private:
    struct Order {
        uint64_t number = 0;
        Clock::time_point givenAt;
        std::string text;
    };
    struct Watcher {
        std::string session;
        std::weak_ptr<http::Wait> wait;
    };
    struct Radio {
        std::string channel;
        std::weak_ptr<http::Wait> wait; // expired: it does not wait now
        std::optional<Clock::time_point> askedAt;
        std::deque<Order> orders;
        uint64_t lastOrder = 0;
        std::map<std::string, uint64_t> pages; // the highest count of each
        std::vector<Watcher> watchers;
        std::optional<Clock::time_point> lookedAt;
        bool isReportWanted = false; // a look has begun, and the radio was not told yet
        std::string state;
        Clock::time_point reportedAt;
        uint64_t revision = 0;
    };
    using Waits = std::vector<std::shared_ptr<http::Wait>>;

    Orders take(Radio &radio, const Ask &ask, Clock::time_point now);
    bool isHere(const Radio &radio, Clock::time_point now) const;
    bool isWatched(Radio &radio, Clock::time_point now) const;
    View viewOf(Radio &radio, Clock::time_point now) const;
    static void wakeWatchers(Radio &radio, Waits *waits);
    static void forgetExpired(Radio &radio, Clock::time_point now);

    const Now m_now;
    const std::string m_epoch; // of this run: numbers begin anew
    std::mutex m_mutex;        // guards m_radios
    LruTable<std::string, Radio> m_radios{mostRadios};
};

} // namespace velmora::server
