#pragma once

#include <cstdint>
#include <deque>
#include <optional>

namespace menusystem {

// What velmora-home shows.
enum class Page { Home, Waiting, Again, Stopped, Service };
const char *nameOf(Page page); // as `velmora-home --page` takes it

// How a run of the radio ended.
enum class Ending {
    Wish,       // a person's: the question answered with Yes, `velmora-menu exit`, a signal to the menu system
    House,      // a person's: the house key
    Fault,      // every other orderly end
    Crash,      // by a signal, by a code without the exit notice, parked by its crash reporter, or hanging
    NotStarted, // the program is missing
};

// What the menu system does next.
struct Next {
    enum class Kind { Radio, Page, Pause, Quit, Restart, SwitchOff };
    Kind kind = Kind::Quit;
    menusystem::Page page = menusystem::Page::Home; // with Kind::Page
    int pauseMs = 0;                                // with Kind::Pause; the radio follows
    bool operator==(const Next &) const = default;
};

// Decides what follows the end of the radio, or of a page. All times are milliseconds of one clock. One thread.
class Supervisor {
public:
    // `isKiosk`: nothing is behind the radio, so a person who leaves it comes to Home.
    explicit Supervisor(bool isKiosk);

    // `hasPlayed`: music was heard in this run. `ranMs`: how long the run lasted.
    Next radioEnded(Ending ending, bool hasPlayed, std::int64_t ranMs, std::int64_t now);
    // `status`: the page's exit status, none after a crash or a hang. `shownMs`: from its first message to its end.
    Next pageEnded(Page page, std::optional<int> status, std::int64_t shownMs);

    // Exit statuses of velmora-home.
    static constexpr int startRadio = 0, quit = 20, restart = 21, switchOff = 22;

    static constexpr int maxFaults = 3; // in a row, with a healthy service
    static constexpr int maxCrashes = 5;
    static constexpr std::int64_t crashWindowMs = 10 * 60 * 1000;
    // A page that waited for the service for at most so long found it healthy at once.
    static constexpr std::int64_t healthyMs = 3000;
    // A run of this length was a good one, also if the platform library does not report music.
    static constexpr std::int64_t goodRunMs = 2 * 60 * 1000;

private:
    bool m_isKiosk;
    int m_faults = 0;                   // in a row
    int m_pauses = 0;                   // in a row, because a page failed
    std::deque<std::int64_t> m_crashes; // within the window, oldest first
};

} // namespace menusystem
