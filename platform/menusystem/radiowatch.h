#pragma once

#include <cstdint>
#include <optional>

namespace menusystem {

// Decides when the radio counts as hanging, and how it is terminated. All times are milliseconds of one clock; step()
// is called about twice a second and returns what to do now.
class RadioWatch {
public:
    enum class Action { Nothing, Ping, ReportHang, ReportStuckExit, Terminate, Kill };

    RadioWatch(std::int64_t now, std::int64_t hangMs, std::int64_t insistMs);

    void answered(std::int64_t now);
    // The radio was ordered to exit, or reports that it exits. The first call counts.
    void ending(std::int64_t now);
    // Terminate now: the sender of the order waits no longer.
    void insist(std::int64_t now);
    Action step(std::int64_t now);

    static constexpr std::int64_t pingMs = 5000;
    // The radio only announces its first SIGTERM.
    static constexpr std::int64_t secondTerminateMs = 1000;
    static constexpr std::int64_t killMs = 4000;

private:
    Action stepEnding(std::int64_t now);

    std::int64_t m_hangMs;
    std::int64_t m_insistMs;
    std::int64_t m_lastAnswer;
    std::int64_t m_lastPing;
    bool m_isReported = false;
    std::optional<std::int64_t> m_insistAt; // set when the radio is to end
    int m_insisted = 0;                     // number of termination steps done
};

} // namespace menusystem
