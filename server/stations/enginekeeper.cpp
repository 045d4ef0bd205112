#include "server/stations/enginekeeper.h"

#include "server/catalogue/catalogue.h"
#include "server/logging/log.h"
#include "server/stations/engineloader.h"
#include "server/store/store.h"

#include <algorithm>
#include <chrono>

namespace velmora::server {

namespace {

using SteadyClock = std::chrono::steady_clock;

// A view of at most so many tracks is built in about ten milliseconds.
constexpr int64_t smallCatalogue = 500;
constexpr std::chrono::milliseconds lookInterval{500};
// Building takes at most this share of the time while the catalogue keeps changing, and half of it while folders come
// and go.
constexpr int restFactor = 10;
constexpr std::chrono::seconds longestRest{600};
// So many tracks, or this share of the view, must come or go for that.
constexpr uint64_t manyChanges = 50;
constexpr size_t largeShare = 100;

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
        build(engine::StyleShares::Votes::Taken);
    }
    std::unique_lock guard(m_mutex);
    m_changed.wait(guard, [this] { return m_index || m_isStopping; });
    return m_index ? m_index
                   : std::make_shared<engine::EngineIndex>(engine::EngineMusic{}, engine::StyleShares::Votes::Ignored);
}

void EngineKeeper::keep()
{
    auto built = SteadyClock::duration::zero();
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
                rest(guard, built);
        }
        try {
            if (m_isStopping || !isLarge()) { // the caller builds a small one
                std::unique_lock guard(m_mutex);
                m_changed.wait_for(guard, lookInterval, [this] { return m_isStopping.load(); });
                continue;
            }
            const auto begin = SteadyClock::now();
            // The first view is built in two steps, so that no caller waits for the longer one.
            if (isFirst)
                build(engine::StyleShares::Votes::Ignored);
            build(engine::StyleShares::Votes::Taken);
            built = SteadyClock::now() - begin;
        } catch (const std::exception &error) {
            report(error.what());
            std::unique_lock guard(m_mutex);
            m_changed.wait_for(guard, longestRest / 10, [this] { return m_isStopping.load(); });
        }
    }
}

EngineKeeper::Duration EngineKeeper::restFor(Duration built, uint64_t presence, size_t tracks)
{
    const bool isMuch = presence >= std::max<uint64_t>(manyChanges, tracks / largeShare);
    return isMuch ? built : std::min<Duration>(built * restFactor, longestRest);
}

void EngineKeeper::rest(std::unique_lock<std::mutex> &guard, Duration built)
{
    const auto begin = SteadyClock::now();
    const auto isOver = [&] {
        const uint64_t presence = m_catalogue.presenceChanges() - m_presence;
        return SteadyClock::now() - begin >= restFor(built, presence, m_index->size());
    };
    while (!m_isStopping && !isOver())
        m_changed.wait_for(guard, lookInterval, [this] { return m_isStopping.load(); });
}

void EngineKeeper::build(engine::StyleShares::Votes votes)
{
    const uint64_t revision = m_catalogue.revision();
    const uint64_t presence = m_catalogue.presenceChanges();
    auto index = std::make_shared<engine::EngineIndex>(loadEngineMusic(m_store, m_isStopping), votes, &m_isStopping);
    if (m_isStopping)
        return;
    const std::lock_guard guard(m_mutex);
    m_index = std::move(index);
    m_revision = revision;
    m_presence = presence;
    m_absent.reset();
    ++m_views;
    m_changed.notify_all();
}

unsigned EngineKeeper::views()
{
    const std::lock_guard guard(m_mutex);
    return m_views;
}

EngineKeeper::Absent EngineKeeper::absent()
{
    {
        const std::lock_guard guard(m_mutex);
        if (!m_absent || m_absentAt == m_catalogue.presenceChanges())
            return m_absent;
    }
    return findAbsent();
}

EngineKeeper::Absent EngineKeeper::findAbsent()
{
    const uint64_t presence = m_catalogue.presenceChanges();
    Index index;
    {
        const std::lock_guard guard(m_mutex);
        index = m_index;
    }
    if (!index)
        return nullptr;
    const std::vector<int64_t> playing = playingTracks(m_store, m_isStopping);
    auto absent = std::make_shared<std::unordered_set<int64_t>>();
    auto next = playing.begin();
    for (engine::Position track = 0; track < index->size(); ++track) { // both are in the order of the ids
        const int64_t id = index->facts(track).id;
        next = std::find_if(next, playing.end(), [&](int64_t other) { return other >= id; });
        if (next == playing.end() || *next != id)
            absent->insert(id);
    }
    const std::lock_guard guard(m_mutex);
    if (m_index == index) {
        m_absent = absent;
        m_absentAt = presence;
    }
    return absent;
}

void EngineKeeper::report(const char *what) const
{
    logs::warn(std::string("cannot update the engine's index, the old one stays: ") + what);
}

} // namespace velmora::server
