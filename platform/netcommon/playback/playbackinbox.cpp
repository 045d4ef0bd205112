#include "playbackinbox.h"

#include <chrono>

namespace netcommon {

std::optional<PlaybackEvent> PlaybackInbox::next(QDeadlineTimer deadline)
{
    std::unique_lock lock(m_mutex);
    const auto arrived = [this] { return !m_events.empty(); };
    if (deadline.isForever())
        m_arrived.wait(lock, arrived);
    else if (!m_arrived.wait_for(lock, std::chrono::nanoseconds(deadline.remainingTimeNSecs()), arrived))
        return std::nullopt;
    PlaybackEvent event = std::move(m_events.front());
    m_events.pop_front();
    return event;
}

} // namespace netcommon
