#include "server/store/repeatedtask.h"

#include <exception>
#include <utility>

namespace velmora::server {

RepeatedTask::RepeatedTask(std::chrono::milliseconds pause, std::function<void()> work)
    : m_thread([this, pause, work = std::move(work)] { run(pause, work); })
{
}

RepeatedTask::~RepeatedTask()
{
    {
        const std::lock_guard guard(m_mutex);
        m_isEnding = true;
    }
    m_end.notify_all();
    m_thread.join();
}

void RepeatedTask::run(std::chrono::milliseconds pause, const std::function<void()> &work)
{
    std::unique_lock guard(m_mutex);
    while (!m_end.wait_for(guard, pause, [this] { return m_isEnding; })) {
        guard.unlock();
        try {
            work();
        } catch (const std::exception &) {
            // Most often the database is away.
        }
        guard.lock();
    }
}

} // namespace velmora::server
