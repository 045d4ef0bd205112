#pragma once

#include <cstdint>
#include <optional>

namespace menusystem {

// When the radio counts as hanging, and how it is made to end. Fed with times in milliseconds on one clock; step() is
// called about once a second and says what is to be done now.
class RadioWatch {
public:
    enum class Action { Nothing, Ping, ReportHang, ReportStuckExit, Terminate, Kill };

    RadioWatch(std::int64_t now, std::int64_t hangMs, std::int64_t insistMs);

    void answered(std::int64_t now);
    // The radio has been told to end, or says that it ends. The first time counts.
    void ending(std::int64_t now);
    // Whoever asked will wait no longer.
    void insist(std::int64_t now);
    Action step(std::int64_t now);

    static constexpr std::int64_t pingMs = 5000;
    // A radio answers the first request to terminate by saying that it has heard it.
    static constexpr std::int64_t secondTerminateMs = 1000;
    static constexpr std::int64_t killMs = 4000;

private:
    Action stepEnding(std::int64_t now);

    std::int64_t m_hangMs;
    std::int64_t m_insistMs;
    std::int64_t m_lastAnswer;
    std::int64_t m_lastPing;
    bool m_isReported = false;
    std::optional<std::int64_t> m_insistAt; // once it is to end
    int m_insisted = 0;                     // how many steps of insisting are done
};

} // namespace menusystem
