#pragma once

#include <cstddef>
#include <list>
#include <unordered_map>
#include <utility>

namespace velmora::server {

// A table of bounded size: a new entry takes the place of the one that was not used for the longest time. Not
// thread-safe.
template <typename Key, typename Value>
class LruTable {
public:
    explicit LruTable(size_t most)
        : m_most(most)
    {
    }

    // The value, which counts as used now; null when there is none. Valid until the table changes.
    Value *find(const Key &key)
    {
        const auto found = m_places.find(key);
        if (found == m_places.end())
            return nullptr;
        m_entries.splice(m_entries.begin(), m_entries, found->second);
        return &found->second->second;
    }
    // The same; makes the value when there is none.
    Value &at(const Key &key)
    {
        if (Value *value = find(key))
            return *value;
        if (m_entries.size() >= m_most) {
            m_places.erase(m_entries.back().first);
            m_entries.pop_back();
        }
        m_entries.emplace_front(key, Value());
        m_places[key] = m_entries.begin();
        return m_entries.front().second;
    }
    void erase(const Key &key)
    {
        const auto found = m_places.find(key);
        if (found == m_places.end())
            return;
        m_entries.erase(found->second);
        m_places.erase(found);
    }
    // The one used last comes first.
    template <typename Predicate>
    void eraseIf(Predicate predicate)
    {
        for (auto entry = m_entries.begin(); entry != m_entries.end();) {
            const auto next = std::next(entry);
            if (predicate(entry->first, entry->second)) {
                m_places.erase(entry->first);
                m_entries.erase(entry);
            }
            entry = next;
        }
    }
    // The same order.
    template <typename Visitor>
    void forEach(Visitor visitor) const
    {
        for (const auto &[key, value] : m_entries)
            visitor(key, value);
    }
    size_t size() const { return m_entries.size(); }

private:
    using Entries = std::list<std::pair<Key, Value>>;
    const size_t m_most;
    Entries m_entries; // the one used last in front
    std::unordered_map<Key, typename Entries::iterator> m_places;
};

} // namespace velmora::server
