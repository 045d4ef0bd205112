#include "server/stations/enginekeeper.h"

#include "server/catalogue/catalogue.h"
#include "server/stations/engineloader.h"
#include "server/store/store.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace velmora::server {

namespace {

using SteadyClock = std::chrono::steady_clock;

// Up to so many tracks a view takes some ten milliseconds to build.
constexpr int64_t smallCatalogue = 500;
constexpr std::chrono::milliseconds lookInterval{500};
// Building takes at most this share of the time while the catalogue keeps changing.
constexpr int restFactor = 10;
constexpr std::chrono::seconds longestRest{600};

} // namespace

EngineKeeper::EngineKeeper(Store &store, Catalogue &catalogue)
    : m_store(store)
    , m_catalogue(catalogue)
{
    m_thread = std::thread([this] { keep(); });
}

EngineKeeper::~EngineKeeper()
{
    m_isStopping = true;
    {
        const std::lock_guard guard(m_mutex);
        m_changed.notify_all();
    }
    m_thread.join();
}

bool EngineKeeper::isLarge()
{
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT COUNT(*) FROM (SELECT 1 FROM tracks WHERE is_playable = 1 LIMIT ?1)");
    row.with(smallCatalogue + 1);
    return row.step() && row.integer(0) > smallCatalogue;
}

EngineKeeper::Index EngineKeeper::current()
{
    const std::lock_guard building(m_building);
    {
        const std::lock_guard guard(m_mutex);
        if (m_index && m_revision == m_catalogue.revision())
            return m_index;
    }
    if (!isLarge()) {
        const uint64_t revision = m_catalogue.revision();
        publish(build(engine::StyleShares::Votes::Taken), revision);
    }
    std::unique_lock guard(m_mutex);
    m_changed.wait(guard, [this] { return m_index || m_isStopping; });
    return m_index ? m_index
                   : std::make_shared<engine::EngineIndex>(engine::EngineMusic{}, engine::StyleShares::Votes::Ignored);
}

void EngineKeeper::keep()
{
    auto rest = SteadyClock::duration::zero();
    while (!m_isStopping) {
        bool isFirst = false;
        bool isOld = false;
        {
            std::unique_lock guard(m_mutex);
            isFirst = !m_index;
            isOld = isFirst || m_revision != m_catalogue.revision();
            if (!isOld) {
                m_changed.wait_for(guard, lookInterval, [this] { return m_isStopping.load(); });
                continue;
            }
            if (!isFirst)
                m_changed.wait_for(guard, rest, [this] { return m_isStopping.load(); });
        }
        try {
            if (m_isStopping || !isLarge()) { // a small one is built by who asks for it
                std::unique_lock guard(m_mutex);
                m_changed.wait_for(guard, lookInterval, [this] { return m_isStopping.load(); });
                continue;
            }
            const auto begin = SteadyClock::now();
            const uint64_t revision = m_catalogue.revision();
            // The first view comes in two steps, so that nobody waits for the longer one.
            if (isFirst)
                publish(build(engine::StyleShares::Votes::Ignored), revision);
            publish(build(engine::StyleShares::Votes::Taken), revision);
            rest = std::min<SteadyClock::duration>((SteadyClock::now() - begin) * restFactor, longestRest);
        } catch (const std::exception &error) {
            report(error.what());
            std::unique_lock guard(m_mutex);
            m_changed.wait_for(guard, longestRest / 10, [this] { return m_isStopping.load(); });
        }
    }
}

EngineKeeper::Index EngineKeeper::build(engine::StyleShares::Votes votes)
{
    return std::make_shared<engine::EngineIndex>(loadEngineMusic(m_store, m_isStopping), votes, &m_isStopping);
}

void EngineKeeper::publish(Index index, uint64_t revision)
{
    if (m_isStopping)
        return;
    const std::lock_guard guard(m_mutex);
    m_index = std::move(index);
    m_revision = revision;
    m_changed.notify_all();
}

void EngineKeeper::report(const char *what) const
{
    std::fprintf(stderr, "velmora-server: the stations' view of the music stays as it was: %s\n", what);
}

} // namespace velmora::server
