#include "handles.h"

namespace velmora::ws {

namespace {
// The address sanitizer itself delays the reuse of freed addresses and reports reads of them.
#ifdef __SANITIZE_ADDRESS__
constexpr std::size_t retiredLimit = 0;
#else
constexpr std::size_t retiredLimit = 64;
#endif
constexpr uint32_t noCommand = 0xffffffff;
} // namespace

Handles &Handles::instance()
{
    static Handles *handles = new Handles;
    return *handles;
}

void Handles::add(std::unique_ptr<Request> request)
{
    const HANDLE_T handle = request->handle();
    std::lock_guard lock(m_mutex);
    m_live.emplace(handle, Entry{std::move(request), false});
}

void Handles::markCompleted(HANDLE_T handle)
{
    std::lock_guard lock(m_mutex);
    if (auto it = m_live.find(handle); it != m_live.end())
        it->second.isCompleted = true;
}

bool Handles::release(HANDLE_T handle)
{
    std::lock_guard lock(m_mutex);
    auto it = m_live.find(handle);
    if (it == m_live.end() || !it->second.isCompleted)
        return false;
    std::unique_ptr<Request> request = std::move(it->second.request);
    m_live.erase(it);
    retire(std::move(request));
    return true;
}

void Handles::drop(HANDLE_T handle)
{
    std::lock_guard lock(m_mutex);
    m_live.erase(handle);
}

void Handles::retire(std::unique_ptr<Request> request)
{
    if (retiredLimit == 0)
        return;
    request->record = {noCommand, nullptr, nullptr};
    {
        Arena memory = std::move(request->memory); // wiped and freed here; only the shell stays
    }
    m_retired.push_back(std::move(request));
    if (m_retired.size() > retiredLimit)
        m_retired.pop_front();
}

} // namespace velmora::ws
