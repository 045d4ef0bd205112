#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace velmora::server::http {

// Threads that work off a queue of bounded length.
class WorkerPool {
public:
    WorkerPool(size_t threads, size_t mostQueued);
    ~WorkerPool(); // stops

    // False when the queue is full. The job throws nothing. Any thread.
    bool add(std::function<void()> job);
    // Drops what has not begun, waits for the rest.
    void stop();

private:
    void work();

    const size_t m_mostQueued;
    std::mutex m_mutex; // guards the queue and m_isEnding
    std::condition_variable m_wake;
    std::deque<std::function<void()>> m_queue;
    bool m_isEnding = false;
    std::vector<std::thread> m_threads;
};

} // namespace velmora::server::http
