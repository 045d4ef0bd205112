#include "server/store/storeprobe.h"

#include "server/store/store.h"

namespace velmora::server {

StoreProbe::StoreProbe(Store &store)
    : m_store(store)
    , m_thread([this] { read(); })
{
}

StoreProbe::~StoreProbe()
{
    {
        const std::lock_guard guard(m_mutex);
        m_isEnding = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

bool StoreProbe::isAnswering()
{
    std::unique_lock guard(m_mutex);
    const uint64_t own = m_begun + 1;
    m_wanted = own;
    m_changed.notify_all();
    return m_changed.wait_for(guard, longest, [&] { return m_done >= own; }) && m_isGood;
}

void StoreProbe::read()
{
    std::unique_lock guard(m_mutex);
    while (true) {
        m_changed.wait(guard, [this] { return m_isEnding || m_wanted > m_begun; });
        if (m_isEnding)
            return;
        const uint64_t number = ++m_begun;
        guard.unlock();
        bool isGood = true;
        try {
            m_store.setting("ready");
        } catch (const StoreError &) {
            isGood = false;
        }
        guard.lock();
        m_done = number;
        m_isGood = isGood;
        m_changed.notify_all();
    }
}

} // namespace velmora::server
