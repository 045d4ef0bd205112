#include "server/http/workerpool.h"

namespace velmora::server::http {

WorkerPool::WorkerPool(size_t threads, size_t mostQueued)
    : m_mostQueued(mostQueued)
{
    for (size_t i = 0; i < threads; ++i)
        m_threads.emplace_back([this] { work(); });
}

WorkerPool::~WorkerPool()
{
    stop();
}

bool WorkerPool::add(std::function<void()> job)
{
    {
        const std::lock_guard guard(m_mutex);
        if (m_isEnding || m_queue.size() >= m_mostQueued)
            return false;
        m_queue.push_back(std::move(job));
    }
    m_wake.notify_one();
    return true;
}

void WorkerPool::stop()
{
    std::deque<std::function<void()>> dropped; // destroyed without the lock
    {
        const std::lock_guard guard(m_mutex);
        m_isEnding = true;
        dropped.swap(m_queue);
    }
    m_wake.notify_all();
    for (std::thread &thread : m_threads) {
        if (thread.joinable())
            thread.join();
    }
}

void WorkerPool::work()
{
    std::unique_lock lock(m_mutex);
    while (true) {
        m_wake.wait(lock, [this] { return m_isEnding || !m_queue.empty(); });
        if (m_queue.empty())
            return;
        std::function<void()> job = std::move(m_queue.front());
        m_queue.pop_front();
        lock.unlock();
        job();
        job = nullptr; // what it holds is destroyed without the lock
        lock.lock();
    }
}

} // namespace velmora::server::http
