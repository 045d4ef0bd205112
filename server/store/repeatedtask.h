#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace velmora::server {

// Calls a function again and again on a thread of its own, after a pause each time. An exception ends that call only:
// the next one tries again. The destructor waits for a call that is under way.
class RepeatedTask {
public:
    RepeatedTask(std::chrono::milliseconds pause, std::function<void()> work);
    ~RepeatedTask();
    RepeatedTask(const RepeatedTask &) = delete;
    RepeatedTask &operator=(const RepeatedTask &) = delete;

private:
    void run(std::chrono::milliseconds pause, const std::function<void()> &work);

    std::mutex m_mutex; // guards m_isEnding
    std::condition_variable m_end;
    bool m_isEnding = false;
    std::thread m_thread; // runs run()
};

} // namespace velmora::server
