// What a shared store holds of a person: the rows of all its tables, told apart by the tables' names.

#include "server/accounts/personaldata.h"
#include "server/store/store.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

namespace velmora::server {

namespace {

using nlohmann::json;

bool isTime(const std::string &column)
{
    return column.ends_with("_at") || column == "until" || column == "since" || column == "last_used";
}

// Numbers of the service's own, and what opens something.
bool isLeftOut(const std::string &column)
{
    return column.ends_with("_hash") || column.ends_with("_id") || column == "id" || column == "token" ||
           column == "code" || column == "by_code" || column == "slot" || column == "block" || column == "day" ||
           column == "number" || column == "radio";
}

std::string timeText(int64_t seconds)
{
    const std::time_t time = seconds;
    std::tm parts{};
    ::gmtime_r(&time, &parts);
    std::array<char, 32> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &parts);
    return text.data();
}

// The song and its artist; empty for a track that is no longer there.
json trackNamed(Store &music, int64_t id)
{
    const Store::Lock db = music.lock();
    Statement row =
        db->prepare("SELECT t.song, a.name FROM tracks t JOIN artists a ON a.id = t.artist_id WHERE t.id = ?1");
    row.with(id);
    return row.step() ? json{{"song", row.text(0)}, {"artist", row.text(1)}} : json::object();
}

std::string artistNamed(Store &music, int64_t id)
{
    const Store::Lock db = music.lock();
    Statement row = db->prepare("SELECT name FROM artists WHERE id = ?1");
    row.with(id);
    return row.step() ? row.text(0) : std::string();
}

// The id in a number or in a text.
int64_t idIn(const json &value)
{
    return value.is_number() ? value.get<int64_t>()
                             : std::strtoll(value.get_ref<const std::string &>().c_str(), nullptr, 10);
}

// The plays that a station remembers.
json playsIn(const std::string &block, Store &music)
{
    json plays = json::array();
    const json stored = json::parse('[' + block.substr(0, block.empty() ? 0 : block.size() - 1) + ']');
    for (const json &play : stored) {
        json shown = trackNamed(music, play.at(0));
        shown["begun"] = timeText(play.at(1));
        shown["ended"] = play.at(2) == 1 ? "ended" : play.at(2) == 2 ? "skipped" : "left";
        plays.push_back(std::move(shown));
    }
    return plays;
}

json readable(const json &row, Store &music)
{
    json shown = json::object();
    for (const auto &[column, value] : row.items()) {
        if (column == "device_id")
            shown["identity"] = value;
        else if (column == "track_id")
            shown.update(trackNamed(music, value.get<int64_t>()));
        else if (column == "target" && row.value("kind", "") == "track")
            shown.update(trackNamed(music, idIn(value)));
        else if (column == "target" && row.value("kind", "") == "artist")
            shown["artist"] = artistNamed(music, idIn(value));
        else if (column == "plays")
            shown[column] = playsIn(value.get<std::string>(), music);
        else if (column == "explicit_pin_hash")
            shown["hasPin"] = !value.is_null();
        else if (isTime(column) && value.is_number())
            shown[column] = timeText(value.get<int64_t>());
        else if (!isLeftOut(column))
            shown[column] = value;
    }
    return shown;
}

struct List {
    std::string table;
    std::string condition;
};

// The tables with rows of accounts, and those with rows of stations.
std::vector<List> listsOf(Connection &db)
{
    std::vector<List> lists;
    Statement row = db.prepare(
        "SELECT c.table_name, MAX(CASE c.column_name WHEN 'account_id' THEN 1 ELSE 0 END) FROM "
        "information_schema.columns c JOIN pg_class t ON t.oid = to_regclass(CAST(c.table_name AS TEXT)) WHERE "
        "c.table_schema = current_schema() AND NOT t.relispartition AND c.column_name IN ('account_id', 'station_id') "
        "GROUP BY c.table_name ORDER BY c.table_name");
    while (row.step())
        lists.push_back({row.text(0), row.integer(1) != 0
                                          ? "x.account_id = ?1"
                                          : "x.station_id IN (SELECT id FROM stations WHERE account_id = ?1)"});
    return lists;
}

} // namespace

void PersonalData::writeShared(AccountId account, std::FILE *out)
{
    // Stations go by their names.
    const auto query = [](const List &list) {
        return "SELECT CAST(to_jsonb(x) AS TEXT), s.name FROM " + list.table +
               " x LEFT JOIN stations s ON s.id = CAST("
               "to_jsonb(x) ->> 'station_id' AS BIGINT) WHERE " +
               list.condition;
    };
    std::vector<List> lists = {{"accounts", "x.id = ?1"}};
    {
        const Store::Lock db = m_store.lock();
        for (List &list : listsOf(*db))
            lists.push_back(std::move(list));
    }
    const char *begin = "{";
    for (const List &list : lists) {
        std::fprintf(out, "%s\"%s\":[", std::exchange(begin, ",\n"), list.table.c_str());
        const Store::Lock db = m_store.lock();
        Statement row = db->prepare(query(list));
        row.with(account);
        const char *before = "\n";
        while (row.step()) {
            json shown = readable(json::parse(row.text(0)), m_music);
            if (!row.isNull(1))
                shown["station"] = row.text(1);
            std::fprintf(out, "%s%s", std::exchange(before, ",\n"), shown.dump().c_str());
        }
        std::fputs("]", out);
    }
    std::fputs("}\n", out);
}

} // namespace velmora::server
