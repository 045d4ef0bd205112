#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace velmora::server {

// The tables that grow with time are kept by the day, and dropped by the day: never row by row. In PostgreSQL each day
// is a partition of its own; in SQLite the day comes first in the key, so that a day is one range at the front.
struct DailyTable {
    const char *name;
    int64_t keptDays; // before today
};

inline constexpr std::array dailyTables = {
    // Two days are needed: so long a track's token is valid. The others are for whoever looks into what was played.
    DailyTable{"plays", 7},
    // An answer is good for 24 hours.
    DailyTable{"request_answers", 1},
};

// Of one of them.
constexpr int64_t daysKept(std::string_view name)
{
    for (const DailyTable &table : dailyTables) {
        if (name == table.name)
            return table.keptDays;
    }
    return 0;
}

// Days since 1970 in UTC, of a time in seconds since then.
constexpr int64_t dayOf(int64_t seconds)
{
    constexpr int64_t daySeconds = 24 * 3600;
    return seconds / daySeconds - (seconds % daySeconds < 0 ? 1 : 0);
}

} // namespace velmora::server
