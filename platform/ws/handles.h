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
    // Frees a completed record. False, without effect, for any other handle.
    bool release(HANDLE_T handle);
    // Frees a record that no caller has received.
    void drop(HANDLE_T handle);

private:
    struct Entry {
        std::unique_ptr<Request> request;
        bool isCompleted;
    };
    void retire(std::unique_ptr<Request> request);

    std::mutex m_mutex;
    std::unordered_map<HANDLE_T, Entry> m_live;
    // The empty shells of the latest released records. They keep their addresses from being used again at once, so that
    // a second release is recognised.
    std::deque<std::unique_ptr<Request>> m_retired;
};

} // namespace velmora::ws
