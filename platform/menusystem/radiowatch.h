#pragma once

#include <cstdint>
#include <optional>

namespace menusystem {

// Decides when the radio counts as hanging, when a message box has been shown long enough, and how the radio is
// terminated. All times are milliseconds of one clock; step() is called about twice a second and returns what to do
// now.
class RadioWatch {
public:
    enum class Action { Nothing, Ping, ReportHang, Abort, LeaveBox, ReportStuckExit, Terminate, Kill };
    struct Limits {
        std::int64_t hangMs = 30000;
        std::int64_t insistMs = 10000;
        bool isSupervised = false; // a hanging radio is ended, and nobody needs to close its last message box
    };

    RadioWatch(std::int64_t now, const Limits &limits);

    void answered(std::int64_t now);
    // The message box that is open.
    enum class Box {
        None,
        Last,  // the radio asks for its exit when it is closed
        Notice // the music has ended, and a message says why
    };
    void shows(std::int64_t now, Box box);
    // The process was stopped by a signal: it cannot answer.
    void stopped(std::int64_t now);
    // The crash reporter has parked the process.
    void parked(std::int64_t now);
    // The radio was ordered to exit, or reports that it exits. The first call counts.
    void ending(std::int64_t now);
    // Terminate now: the sender of the order waits no longer.
    void insist(std::int64_t now);
    Action step(std::int64_t now);
    // It hangs or is parked, and is being ended for that.
    bool isGivenUp() const { return m_killAt.has_value(); }

    static constexpr std::int64_t pingMs = 5000;
    static constexpr std::int64_t supervisedPingMs = 1000; // last boxes are noticed by the answers
    // The radio only announces its first SIGTERM.
    static constexpr std::int64_t secondTerminateMs = 1000;
    static constexpr std::int64_t killMs = 4000;
    // How long the crash reporter may take for its dump.
    static constexpr std::int64_t dumpMs = 1000;
    static constexpr std::int64_t restOfDumpMs = 300;
    // A person has so long to read the last message box. Then the waiting page says what happens next.
    static constexpr std::int64_t lastBoxMs = 3000;
    // If nobody has closed a message for so long after the music ended, nobody is there to start it again.
    static constexpr std::int64_t noticeMs = 60000;

private:
    Action stepEnding(std::int64_t now);

    Limits m_limits;
    std::int64_t m_lastAnswer;
    std::int64_t m_lastPing;
    bool m_isReported = false;
    Box m_box = Box::None;
    std::int64_t m_boxSince = 0;            // when there is a box
    std::optional<std::int64_t> m_insistAt; // set when the radio is to end
    int m_insisted = 0;                     // number of termination steps done
    std::optional<std::int64_t> m_killAt;   // set when it is given up
    bool m_isKilled = false;
};

} // namespace menusystem
