#pragma once

#include "request.h"

#include <deque>
#include <memory>
#include <mutex>
#include <unordered_map>

namespace velmora::ws {

// Owns every live request record, under way or completed. Any thread.
class Handles {
public:
    static Handles &instance(); // never destroyed: handles may be released while the process ends

    void add(std::unique_ptr<Request> request); // throws std::bad_alloc
    void markCompleted(HANDLE_T handle);
    // Gives a completed record back; false (nothing happened) when it is not one.
    bool release(HANDLE_T handle);
    // Frees a record that was handed to nobody.
    void drop(HANDLE_T handle);

private:
    struct Entry {
        std::unique_ptr<Request> request;
        bool isCompleted;
    };
    void retire(std::unique_ptr<Request> request);

    std::mutex m_mutex;
    std::unordered_map<HANDLE_T, Entry> m_live;
    // The emptied shells of the latest released records, so that their addresses are not handed out again at once and
    // a second release is recognised.
    std::deque<std::unique_ptr<Request>> m_retired;
};

} // namespace velmora::ws
