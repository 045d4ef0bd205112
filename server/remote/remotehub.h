#pragma once

#include "server/accounts/lrutable.h"
#include "server/http/message.h"
#include "server/remote/remoteboard.h"

#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace velmora::server {

// Where telephones and radios meet. A radio asks for its orders and waits until there are some; a telephone asks what
// its radio shows and waits until that changes. Both ask again and again, so nothing here knows a connection. Radios
// are known by the hash of their device key. Who may do what is decided by the callers, each time. Any thread.
//
// The records are kept in memory, where after a restart both sides ask again; or, where several processes share a
// store, in a RemoteBoard, so that a telephone reaches a radio that waits at another process.
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

    // `store`: where the records are, if it is shared; `now` is then the database's.
    explicit RemoteHub(Now now = Clock::now, Store *store = nullptr);

    // --- the radio's side
    struct Ask {
        std::string radio;   // hash of its key
        std::string channel; // random, of one run of the radio's program
        std::string epoch;   // of the last answer; empty: none yet
        uint64_t after = 0;  // the number of the last order that arrived, within that epoch
        bool knowsWatched = false;
    };
    struct Orders {
        std::string epoch; // of the record that `last` counts in
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
    // How long a radio waits.
    std::chrono::seconds ordersWait(const std::string &radio);
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
    // How long a telephone waits.
    std::chrono::seconds lookWait() const;

    // Somebody's right to look or press may have ended: everybody who waits at this process is asked again. At others
    // they ask again within seconds.
    void askEverybody();

private:
    using Radio = RadioRecord;
    using After = RemoteBoard::After;
    struct Watcher {
        std::string session;
        std::weak_ptr<http::Wait> wait;
    };
    // Who waits at this process.
    struct Waiting {
        std::weak_ptr<http::Wait> radio;
        std::vector<Watcher> watchers;
    };
    using Waits = std::vector<std::shared_ptr<http::Wait>>;

    bool use(const std::string &key, bool isMade, const RemoteBoard::Work &work);
    // The radio waits with this one now; returns the one before.
    std::shared_ptr<http::Wait> exchangeWait(const std::string &key, const std::shared_ptr<http::Wait> &wait);
    void wakeRadio(const std::string &key);
    void wakeWatchers(const std::string &key);
    bool hasWatchers(const std::string &key);
    // False when too many of the session wait already.
    bool addWatcher(const std::string &key, const std::string &session, const std::shared_ptr<http::Wait> &wait);

    Orders take(Radio &radio, const Ask &ask, bool isWatched, Clock::time_point now) const;
    bool isHere(const Radio &radio, const std::string &key, Clock::time_point now);
    bool isWatched(const Radio &radio, const std::string &key, Clock::time_point now);
    // Whether the record may go, because telephones have left the radio alone.
    bool isOver(const Radio &radio, bool isWatched, Clock::time_point now) const;
    View viewOf(const Radio &radio, const std::string &key, Clock::time_point now);
    static Orders restingOrders();
    static void forgetExpired(Radio &radio, Clock::time_point now);

    const Now m_now;
    std::mutex m_mutex; // guards m_radios
    LruTable<std::string, Radio> m_radios{mostRadios};
    std::mutex m_waitingMutex; // guards m_waiting; taken last
    LruTable<std::string, Waiting> m_waiting;
    std::unique_ptr<RemoteBoard> m_board; // instead of m_radios; null: there is one process. Its thread ends first
};

} // namespace velmora::server
