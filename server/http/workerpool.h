#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

namespace velmora::server::http {

// Threads that work off queues of bounded length. Every caller has a queue, and the callers take turns: one that sends
// much waits for itself.
class WorkerPool {
public:
    WorkerPool(size_t threads, size_t mostQueued, size_t mostOfCaller);
    ~WorkerPool(); // stops

    // Refuses when the caller's queue, or all together, is full. The job throws nothing. Any thread.
    enum class Added { Yes, OfCallerTooMany, TooMany };
    Added add(const std::string &caller, std::function<void()> job);
    // Jobs that wait for a thread. Any thread.
    size_t queued();
    // Jobs that a thread works at. Any thread.
    size_t busy();
    // Drops what has not begun, waits for the rest.
    void stop();

private:
    void work();

    using Queue = std::deque<std::function<void()>>;
    // The next job; there is one.
    std::function<void()> takeNext();

    const size_t m_mostQueued;
    const size_t m_mostOfCaller;
    std::mutex m_mutex; // guards the queues and m_isEnding
    std::condition_variable m_wake;
    std::unordered_map<std::string, Queue> m_queues; // by caller; none is empty
    std::deque<std::string> m_turns;                 // the callers with a queue; the next in front
    size_t m_queued = 0;                             // jobs in all queues
    size_t m_busy = 0;                               // threads that have a job
    bool m_isEnding = false;
    std::vector<std::thread> m_threads;
};

} // namespace velmora::server::http
