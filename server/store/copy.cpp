#include "server/store/copy.h"

#include "server/store/days.h"
#include "server/store/postgres/postgresdays.h"

#include <algorithm>
#include <functional>

namespace velmora::server {

namespace {

constexpr const char *markSetting = "copied rows";

struct Column {
    std::string name;
    std::string type; // as PostgreSQL calls it
};

struct Table {
    std::string name;
    std::vector<Column> columns;
    std::string key; // columns of the primary key, with commas

    std::string columnList() const
    {
        std::string list;
        for (const Column &column : columns)
            list += (list.empty() ? "" : ", ") + column.name;
        return list;
    }
    // The other engine's order of texts is another one unless it is that of bytes.
    std::string query(const char *collation) const
    {
        std::string order;
        for (const Column &column : columns) {
            if (("," + key + ",").find("," + column.name + ",") != std::string::npos)
                order += (order.empty() ? "" : ", ") + column.name + (column.type == "text" ? collation : "");
        }
        const std::string rows = name == "settings" ? std::string(" WHERE name <> '") + markSetting + "'" : "";
        return "SELECT " + columnList() + " FROM " + name + rows + " ORDER BY " + order;
    }
};

constexpr const char *fileOrder = "";
constexpr const char *postgresOrder = " COLLATE \"C\"";

// Tables in the order in which their rows can be added.
std::vector<Table> tablesOf(Connection &file, Connection &postgres)
{
    std::vector<Table> tables;
    Statement row = postgres.prepare(
        "SELECT c.table_name, c.column_name, c.data_type, (SELECT string_agg(CAST(k.column_name AS TEXT), ',') FROM "
        "information_schema.table_constraints p JOIN information_schema.key_column_usage k ON k.constraint_name = "
        "p.constraint_name AND k.table_name = p.table_name WHERE p.table_name = c.table_name AND p.table_schema = "
        "c.table_schema AND p.constraint_type = 'PRIMARY KEY') FROM information_schema.columns c JOIN pg_class t ON "
        "t.oid = to_regclass(CAST(c.table_name AS TEXT)) WHERE c.table_schema = current_schema() AND t.relpersistence "
        "= 'p' ORDER BY "
        "CASE c.table_name WHEN 'accounts' THEN 0 WHEN 'stations' THEN 1 ELSE 2 END, c.table_name, c.ordinal_position");
    while (row.step()) {
        const std::string name = row.text(0);
        if (file.number("SELECT COUNT(*) FROM sqlite_master WHERE type = 'table' AND name = ?1", name) == 0)
            continue; // PostgreSQL's alone
        if (tables.empty() || tables.back().name != name)
            tables.push_back({name, {}, row.text(3)});
        tables.back().columns.push_back({row.text(1), row.text(2)});
        if (file.number("SELECT COUNT(*) FROM pragma_table_info(?1) WHERE name = ?2", name, row.text(1)) == 0)
            throw StoreError("the file has no column " + name + "." + row.text(1));
    }
    return tables;
}

// A row as a text that differs when one of its values does.
std::string valuesOf(const Statement &row, const Table &table)
{
    std::string values;
    for (size_t i = 0; i < table.columns.size(); ++i) {
        const int column = static_cast<int>(i);
        std::string value = "NULL";
        if (!row.isNull(column)) {
            if (table.columns[i].type == "bigint")
                value = std::to_string(row.integer(column));
            else if (table.columns[i].type == "double precision")
                value = std::to_string(row.real(column));
            else
                value = '=' + row.blob(column);
        }
        values += std::to_string(value.size()) + ':' + value;
    }
    return values;
}

// The rows of a table, counted, with a number that changes with their content.
std::string fingerprint(Connection &db, const std::vector<Table> &tables, const char *order)
{
    size_t sum = 0;
    for (const Table &table : tables) {
        if (daysKept(table.name) != 0)
            continue; // its old days go by themselves
        Statement row = db.prepare(table.query(order));
        while (row.step())
            sum = sum * 31 + std::hash<std::string>()(table.name + valuesOf(row, table));
    }
    return std::to_string(sum);
}

int64_t copyRows(const Table &table, Connection &file, Connection &postgres)
{
    std::string places;
    for (size_t i = 1; i <= table.columns.size(); ++i)
        places += (i == 1 ? "?" : ", ?") + std::to_string(i);
    Statement put =
        postgres.prepare("INSERT INTO " + table.name + " (" + table.columnList() + ") VALUES (" + places + ")");
    Statement row = file.prepare(table.query(fileOrder));
    int64_t rows = 0;
    while (row.step()) {
        for (size_t i = 0; i < table.columns.size(); ++i) {
            const int column = static_cast<int>(i);
            const int place = column + 1;
            const std::string &type = table.columns[i].type;
            const bool isNull = row.isNull(column);
            if (type == "bigint")
                put.set(place, isNull ? std::nullopt : std::optional(row.integer(column)));
            else if (type == "double precision")
                put.set(place, isNull ? std::nullopt : std::optional(row.real(column)));
            else
                put.set(place, isNull ? std::nullopt : std::optional(row.text(column)));
        }
        try {
            put.step();
        } catch (const StoreError &error) {
            throw StoreError("row " + std::to_string(rows + 1) + " of " + table.name + ": " + error.what(),
                             error.kind());
        }
        put.reset();
        ++rows;
    }
    return rows;
}

void compareRows(const Table &table, Connection &file, Connection &postgres)
{
    Statement there = file.prepare(table.query(fileOrder));
    Statement here = postgres.prepare(table.query(postgresOrder));
    for (int64_t number = 1;; ++number) {
        const bool isMoreThere = there.step();
        const bool isMoreHere = here.step();
        if (!isMoreThere && !isMoreHere)
            return;
        if (isMoreThere != isMoreHere || valuesOf(there, table) != valuesOf(here, table))
            throw StoreError("row " + std::to_string(number) + " of " + table.name + " is not the same after copying");
    }
}

} // namespace

std::vector<CopiedTable> copyAccounts(Connection &file, Connection &postgres)
{
    const Transaction still(file); // nobody writes meanwhile; nothing is changed
    Transaction change(postgres, NameLock{"schema of velmora-server"});
    postgres.execute("SET LOCAL statement_timeout = 0");
    const std::vector<Table> tables = tablesOf(file, postgres);
    Statement mark = postgres.prepare("SELECT value FROM settings WHERE name = ?1");
    mark.with(markSetting);
    const bool isCopy = mark.step() && mark.text(0) == fingerprint(postgres, tables, postgresOrder);
    if (!isCopy && postgres.number("SELECT (SELECT COUNT(*) FROM accounts) + (SELECT COUNT(*) FROM settings)") != 0)
        throw std::runtime_error("the PostgreSQL has been used: copying would overwrite what is in it. Copy into an "
                                 "empty database");
    for (auto table = tables.rbegin(); table != tables.rend(); ++table)
        postgres.run("DELETE FROM " + table->name);
    for (const DailyTable &table : dailyTables) {
        Statement row = file.prepare(std::string("SELECT DISTINCT day FROM ") + table.name);
        while (row.step())
            makePostgresDay(postgres, table.name, row.integer(0));
    }
    std::vector<CopiedTable> copied;
    for (const Table &table : tables) {
        copied.push_back({table.name, copyRows(table, file, postgres)});
        compareRows(table, file, postgres);
        // Numbers that were given once are not given again.
        const bool isCounted = std::any_of(table.columns.begin(), table.columns.end(),
                                           [&](const Column &column) { return column.name == table.key; }) &&
                               postgres.number("SELECT CASE WHEN pg_get_serial_sequence(?1, ?2) IS NULL THEN 0 ELSE 1 "
                                               "END",
                                               table.name, table.key) != 0;
        if (isCounted) {
            const int64_t highest =
                std::max(file.number("SELECT MAX(" + table.key + ") FROM " + table.name),
                         file.number("SELECT seq FROM sqlite_sequence WHERE name = ?1", table.name));
            if (highest > 0)
                postgres.number("SELECT setval(pg_get_serial_sequence(?1, ?2), ?3)", table.name, table.key, highest);
        }
    }
    postgres.run("INSERT INTO settings (name, value) VALUES (?1, ?2)", markSetting,
                 fingerprint(postgres, tables, postgresOrder));
    change.commit();
    return copied;
}

} // namespace velmora::server
