#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>

namespace velmora::server {

// What telephones and one radio have lately told each other.
struct RadioRecord {
    using Time = std::chrono::steady_clock::time_point; // or any other clock's that all who use the record share
    struct Order {
        uint64_t number = 0;
        Time givenAt;
        std::string text;
    };

    std::string epoch; // random, of this record: its numbers mean nothing in another one
    Time madeAt;
    std::string channel; // the run of the radio's program that gets the orders
    std::optional<Time> askedAt;
    std::deque<Order> orders;
    uint64_t lastOrder = 0;
    std::map<std::string, uint64_t> pages; // the highest count of each
    std::optional<Time> lookedAt;
    bool isReportWanted = false; // a look has begun, and the radio was not told yet
    std::string state;
    Time reportedAt;
    uint64_t revision = 0;
};

// For the store.
std::string textOf(const RadioRecord &record);
// Nothing when the text is none of textOf().
std::optional<RadioRecord> recordOf(const std::string &text);

} // namespace velmora::server
