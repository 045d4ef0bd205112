#include "server/remote/remoteboard.h"

#include "server/accounts/secrets.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

namespace velmora::server {

namespace {

using nlohmann::json;
using Time = RadioRecord::Time;

constexpr std::chrono::milliseconds pollEvery{100};
constexpr int64_t overlap = 5000; // milliseconds that a commit may come after the version that it was given

// The store is a PostgreSQL: no other one is shared.
constexpr const char *databaseTime = "CAST(EXTRACT(EPOCH FROM clock_timestamp()) * 1000 AS BIGINT)";

int64_t numberOf(Time time)
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
}

Time timeOf(int64_t number)
{
    return Time(std::chrono::milliseconds(number));
}

json numberOf(const std::optional<Time> &time)
{
    return time ? json(numberOf(*time)) : json();
}

std::optional<Time> optionalTimeOf(const json &value)
{
    return value.is_null() ? std::nullopt : std::optional(timeOf(value.get<int64_t>()));
}

} // namespace

std::string textOf(const RadioRecord &record)
{
    json orders = json::array();
    for (const RadioRecord::Order &order : record.orders)
        orders.push_back({order.number, numberOf(order.givenAt), order.text});
    return json{{"epoch", record.epoch},
                {"made", numberOf(record.madeAt)},
                {"channel", record.channel},
                {"asked", numberOf(record.askedAt)},
                {"orders", std::move(orders)},
                {"last", record.lastOrder},
                {"pages", record.pages},
                {"looked", numberOf(record.lookedAt)},
                {"wanted", record.isReportWanted},
                {"state", record.state},
                {"reported", numberOf(record.reportedAt)},
                {"revision", record.revision}}
        .dump();
}

std::optional<RadioRecord> recordOf(const std::string &text)
{
    try {
        const json read = json::parse(text);
        RadioRecord record;
        read.at("epoch").get_to(record.epoch);
        record.madeAt = timeOf(read.at("made").get<int64_t>());
        read.at("channel").get_to(record.channel);
        record.askedAt = optionalTimeOf(read.at("asked"));
        for (const json &order : read.at("orders"))
            record.orders.push_back(
                {order.at(0).get<uint64_t>(), timeOf(order.at(1).get<int64_t>()), order.at(2).get<std::string>()});
        read.at("last").get_to(record.lastOrder);
        read.at("pages").get_to(record.pages);
        record.lookedAt = optionalTimeOf(read.at("looked"));
        read.at("wanted").get_to(record.isReportWanted);
        read.at("state").get_to(record.state);
        record.reportedAt = timeOf(read.at("reported").get<int64_t>());
        read.at("revision").get_to(record.revision);
        return record;
    } catch (const json::exception &) {
        return std::nullopt;
    }
}

RemoteBoard::RemoteBoard(Store &store, Changed changed)
    : m_store(store)
    , m_key(store.settingOnce("remote key", [] { return randomToken(); }))
    , m_changed(std::move(changed))
    , m_poll(pollEvery, [this] { poll(); })
{
}

bool RemoteBoard::has(const std::string &radio)
{
    const std::lock_guard guard(m_mutex);
    return m_known.find(radio) != nullptr;
}

bool RemoteBoard::learn(const std::string &radio, int64_t found, int64_t left)
{
    const std::lock_guard guard(m_mutex);
    const int64_t *const known = m_known.find(radio);
    const bool isNews = found != 0 && (!known || *known != found);
    if (left == 0)
        m_known.erase(radio);
    else
        m_known.at(radio) = left;
    return isNews;
}

bool RemoteBoard::use(const std::string &radio, bool isMade, const Work &work)
{
    int64_t version = 0;
    int64_t found = 0;
    const bool isUsed = repeated(m_store, [&] {
        const Store::Lock db = m_store.lock();
        Transaction change(*db, NameLock{"remote " + radio}, Durability::Later);
        std::string content;
        int64_t now = 0;
        {
            Statement row = db->prepare(std::string("SELECT version, content, ") + databaseTime +
                                        " FROM (SELECT 1) AS one LEFT JOIN remote_radios ON radio = ?1");
            row.with(radio);
            row.step();
            version = found = row.integer(0);
            content = row.text(1);
            now = row.integer(2);
        }
        const std::string before = unsealed(m_key, content).value_or("");
        std::optional<RadioRecord> record = recordOf(before);
        if (!record && !isMade) {
            version = 0;
            return false;
        }
        After after = After::Quiet;
        if (!record) {
            record.emplace();
            record->epoch = randomToken(8);
            record->madeAt = timeOf(now);
            after = After::News;
        }
        after = std::max(after, work(*record, timeOf(now)));
        if (after == After::Gone) {
            db->run("DELETE FROM remote_radios WHERE radio = ?1", radio);
            version = 0;
        } else if (const std::string text = textOf(*record); text != before) {
            if (after == After::News)
                version = std::max(version + 1, now);
            db->run("INSERT INTO remote_radios (radio, version, content) VALUES (?1, ?2, ?3) ON CONFLICT (radio) DO "
                    "UPDATE SET version = ?2, content = ?3",
                    radio, version, sealed(m_key, text));
        }
        change.commit();
        return true;
    });
    if (learn(radio, found, version))
        m_changed(radio); // poll() will not see it any more
    return isUsed;
}

void RemoteBoard::poll()
{
    std::vector<std::string> changed;
    {
        const Store::Lock db = m_store.lock();
        Statement row = db->prepare("SELECT radio, version FROM remote_radios WHERE version > ?1");
        row.with(m_newest - overlap);
        const std::lock_guard guard(m_mutex);
        while (row.step()) {
            const int64_t version = row.integer(1);
            m_newest = std::max(m_newest, version);
            if (std::exchange(m_known.at(row.text(0)), version) != version)
                changed.push_back(row.text(0));
        }
    }
    for (const std::string &radio : changed)
        m_changed(radio);
}

} // namespace velmora::server
