#include "server/http/workerpool.h"

namespace velmora::server::http {

WorkerPool::WorkerPool(size_t threads, size_t mostQueued, size_t mostOfCaller)
    : m_mostQueued(mostQueued)
    , m_mostOfCaller(mostOfCaller)
{
    for (size_t i = 0; i < threads; ++i)
        m_threads.emplace_back([this] { work(); });
}

WorkerPool::~WorkerPool()
{
    stop();
}

WorkerPool::Added WorkerPool::add(const std::string &caller, std::function<void()> job)
{
    {
        const std::lock_guard guard(m_mutex);
        if (m_isEnding || m_queued >= m_mostQueued)
            return Added::TooMany;
        const auto [queue, isNew] = m_queues.try_emplace(caller);
        if (queue->second.size() >= m_mostOfCaller)
            return Added::OfCallerTooMany;
        queue->second.push_back(std::move(job));
        if (isNew)
            m_turns.push_back(caller);
        ++m_queued;
    }
    m_wake.notify_one();
    return Added::Yes;
}

size_t WorkerPool::queued()
{
    const std::lock_guard guard(m_mutex);
    return m_queued;
}

size_t WorkerPool::busy()
{
    const std::lock_guard guard(m_mutex);
    return m_busy;
}

void WorkerPool::stop()
{
    std::unordered_map<std::string, Queue> dropped; // destroyed without the lock
    {
        const std::lock_guard guard(m_mutex);
        m_isEnding = true;
        dropped.swap(m_queues);
        m_turns.clear();
        m_queued = 0;
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
        m_wake.wait(lock, [this] { return m_isEnding || m_queued > 0; });
        if (m_queued == 0)
            return;
        std::function<void()> job = takeNext();
        ++m_busy;
        lock.unlock();
        job();
        job = nullptr; // what it holds is destroyed without the lock
        lock.lock();
        --m_busy;
    }
}

std::function<void()> WorkerPool::takeNext()
{
    std::string caller = std::move(m_turns.front());
    m_turns.pop_front();
    const auto queue = m_queues.find(caller);
    std::function<void()> job = std::move(queue->second.front());
    queue->second.pop_front();
    --m_queued;
    if (queue->second.empty())
        m_queues.erase(queue);
    else
        m_turns.push_back(std::move(caller));
    return job;
}

} // namespace velmora::server::http
