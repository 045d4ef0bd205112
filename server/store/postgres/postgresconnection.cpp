#include "server/store/postgres/postgresconnection.h"

#include <libpq-fe.h>
#include <poll.h>

#include <array>
#include <cctype>
#include <charconv>
#include <stdexcept>

namespace velmora::server {

namespace {

// Types of parameters: the built-in ones have had these numbers in every version.
constexpr Oid typeInteger = 20; // bigint
constexpr Oid typeReal = 701;   // double precision
constexpr Oid typeText = 25;
constexpr Oid typeBytes = 17;
constexpr int mostTries = 3;
// The server ends a statement after five seconds if it was told so, which a pgbouncer leaves out outside transactions.
constexpr std::chrono::milliseconds statementTime{6000};
constexpr std::chrono::milliseconds cancelTime{2000};

using Type = StatementDriver::Type;

Oid oidOf(Type type)
{
    switch (type) {
    case Type::Integer:
        return typeInteger;
    case Type::Real:
        return typeReal;
    case Type::Text:
        return typeText;
    case Type::Bytes:
        return typeBytes;
    case Type::Unknown:
        break;
    }
    return InvalidOid;
}

// Only what certainly writes nothing: it may be sent twice.
bool isReading(const std::string &sql)
{
    const size_t begin = sql.find_first_not_of(" \n");
    return begin != std::string::npos && (sql.compare(begin, 6, "SELECT") == 0 || sql.compare(begin, 4, "WITH") == 0);
}

StoreError::Kind kindOf(const std::string &state)
{
    if (state.starts_with("23"))
        return StoreError::Kind::Constraint;
    if (state == "40001" || state == "40P01")
        return StoreError::Kind::Conflict;
    // A lost connection, a server that starts or stops, too many connections, a standby.
    if (state.empty() || state.starts_with("08") || state.starts_with("57P") || state == "53300" || state == "25006")
        return StoreError::Kind::Unavailable;
    return StoreError::Kind::Fault;
}

std::string firstLine(const char *text)
{
    const std::string whole = text ? text : "";
    return whole.substr(0, whole.find('\n'));
}

class PostgresStatement : public StatementDriver {
public:
    PostgresStatement(PostgresConnection &db, std::string_view sql)
        : m_db(db)
        , m_sql(sql)
    {
    }

    void bind(int index, int64_t value) override { put(index, Type::Integer, std::to_string(value)); }
    void bind(int index, double value) override
    {
        std::array<char, 32> digits{};
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
        put(index, Type::Real, std::string(digits.data(), end));
    }
    void bind(int index, std::string_view value) override { put(index, Type::Text, std::string(value)); }
    void bind(int index, const Blob &value) override { put(index, Type::Bytes, std::string(value.bytes)); }
    void bindNull(int index, Type type) override { at(index) = {type, true, {}}; }

    bool step() override
    {
        if (!m_result) {
            m_result = m_db.run(m_sql, m_parameters);
            m_row = -1;
        }
        if (m_row + 1 >= PQntuples(m_result.get()))
            return false;
        ++m_row;
        return true;
    }
    void reset() override
    {
        m_result.reset();
        m_parameters.clear();
    }

    int64_t integer(int column) const override
    {
        const std::string_view value = raw(column);
        if (value == "t")
            return 1;
        int64_t number = 0;
        std::from_chars(value.data(), value.data() + value.size(), number);
        return number;
    }
    double real(int column) const override
    {
        const std::string_view value = raw(column);
        double number = 0;
        std::from_chars(value.data(), value.data() + value.size(), number);
        return number;
    }
    std::string text(int column) const override { return std::string(raw(column)); }
    std::string blob(int column) const override
    {
        const std::string_view value = raw(column);
        if (PQftype(m_result.get(), column) != typeBytes || !value.starts_with("\\x"))
            return std::string(value);
        std::string bytes;
        for (size_t at = 2; at + 1 < value.size(); at += 2) {
            unsigned byte = 0;
            std::from_chars(value.data() + at, value.data() + at + 2, byte, 16);
            bytes += static_cast<char>(byte);
        }
        return bytes;
    }
    bool isNull(int column) const override { return PQgetisnull(m_result.get(), m_row, column) != 0; }

private:
    PostgresConnection::Parameter &at(int index)
    {
        if (m_parameters.size() < static_cast<size_t>(index))
            m_parameters.resize(static_cast<size_t>(index));
        return m_parameters[static_cast<size_t>(index) - 1];
    }
    void put(int index, Type type, std::string value) { at(index) = {type, false, std::move(value)}; }
    std::string_view raw(int column) const
    {
        return {PQgetvalue(m_result.get(), m_row, column),
                static_cast<size_t>(PQgetlength(m_result.get(), m_row, column))};
    }

    PostgresConnection &m_db;
    const std::string m_sql;
    std::vector<PostgresConnection::Parameter> m_parameters;
    PostgresConnection::Result m_result; // null before the first step
    int m_row = -1;
};

} // namespace

std::string withDollars(std::string_view sql)
{
    std::string text;
    char quote = 0;
    for (size_t i = 0; i < sql.size(); ++i) {
        const char c = sql[i];
        if (quote != 0)
            quote = c == quote ? '\0' : quote;
        else if (c == '\'' || c == '"')
            quote = c;
        const bool isParameter =
            quote == 0 && c == '?' && i + 1 < sql.size() && std::isdigit(static_cast<unsigned char>(sql[i + 1])) != 0;
        text += isParameter ? '$' : c;
    }
    return text;
}

bool PostgresAddress::isOne(const std::string &text)
{
    return text.starts_with("postgresql:") || text.starts_with("postgres:");
}

PostgresAddress PostgresAddress::of(const std::string &text)
{
    PostgresAddress address;
    const size_t question = std::min(text.find('?'), text.size());
    std::string forLibrary = text.substr(0, question);
    char separator = '?';
    for (size_t at = question; at < text.size();) {
        const size_t end = std::min(text.find('&', at + 1), text.size());
        const std::string parameter = text.substr(at + 1, end - at - 1);
        if (parameter.starts_with("pool=")) {
            const char *last = parameter.data() + parameter.size();
            const auto [stop, error] = std::from_chars(parameter.data() + 5, last, address.connections);
            if (error != std::errc() || stop != last || address.connections < 1 ||
                address.connections > mostConnections)
                throw std::runtime_error("pool= in the database's address is a number from 1 to " +
                                         std::to_string(mostConnections));
        } else if (parameter.starts_with("prepared=")) {
            if (parameter != "prepared=off" && parameter != "prepared=on")
                throw std::runtime_error("prepared= in the database's address is on or off");
            address.isPrepared = parameter == "prepared=on";
        } else {
            forLibrary += separator + parameter;
            separator = '&';
        }
        at = end;
    }
    char *problem = nullptr;
    const std::unique_ptr<PQconninfoOption, decltype(&PQconninfoFree)> options(
        PQconninfoParse(forLibrary.c_str(), &problem), &PQconninfoFree);
    if (!options) {
        // The library's text may repeat the address, and that a password.
        PQfreemem(problem);
        throw std::runtime_error(
            "the database's address is not postgresql://[user@][host][:port]/database[?parameters]");
    }
    for (const PQconninfoOption *option = options.get(); option->keyword; ++option) {
        if (!option->val || *option->val == '\0')
            continue;
        const std::string name = option->keyword;
        if (name == "password" || name == "sslpassword")
            throw std::runtime_error("a password does not belong into the database's address, which other users can "
                                     "see: write it into a file of yours alone and name that with passfile=");
        address.parameters.emplace_back(name, option->val);
    }
    return address;
}

void PostgresConnection::ResultCloser::operator()(pg_result *result) const
{
    PQclear(result);
}

void PostgresConnection::Closer::operator()(pg_conn *handle) const
{
    PQfinish(handle);
}

bool PostgresConnection::isLost() const
{
    return !m_handle || PQstatus(m_handle.get()) != CONNECTION_OK;
}

void PostgresConnection::connect()
{
    m_prepared.clear();
    m_handle.reset();
    // Plans that are made once do not change under load; nothing here is worth compiling.
    std::string options = "-c jit=off -c plan_cache_mode=force_generic_plan -c statement_timeout=5000";
    std::vector<const char *> names;
    std::vector<const char *> values;
    const auto add = [&](const char *name, const char *value) {
        names.push_back(name);
        values.push_back(value);
    };
    // The later ones count.
    add("connect_timeout", "5");
    add("tcp_user_timeout", "10000");
    add("keepalives_idle", "30");
    add("application_name", "velmora-server");
    for (const auto &[name, value] : m_address.parameters) {
        if (name == "options")
            options += ' ' + value;
        else
            add(name.c_str(), value.c_str());
    }
    add("client_encoding", "UTF8");
    if (m_address.isPrepared) // pgbouncer refuses them
        add("options", options.c_str());
    names.push_back(nullptr);
    values.push_back(nullptr);
    m_handle.reset(PQconnectdbParams(names.data(), values.data(), 0));
    if (isLost()) {
        const std::string problem = m_handle ? firstLine(PQerrorMessage(m_handle.get())) : "no memory";
        throw StoreError("no connection to PostgreSQL: " + problem, StoreError::Kind::Unavailable);
    }
    PQsetNoticeProcessor(
        m_handle.get(), [](void *, const char *) {}, nullptr);
}

void PostgresConnection::revive()
{
    if (!isLost()) {
        // Something is said to a connection that rests when the server ends it, and seldom else.
        pollfd socket{PQsocket(m_handle.get()), POLLIN, 0};
        if (::poll(&socket, 1, 0) <= 0)
            return;
    }
    connect();
}

void PostgresConnection::check(const pg_result *result) const
{
    const ExecStatusType status = result ? PQresultStatus(result) : PGRES_FATAL_ERROR;
    if (status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK || status == PGRES_EMPTY_QUERY)
        return;
    const char *state = result ? PQresultErrorField(result, PG_DIAG_SQLSTATE) : nullptr;
    const char *message = result ? PQresultErrorField(result, PG_DIAG_MESSAGE_PRIMARY) : nullptr;
    // The detail of an error holds values.
    const std::string text = message ? std::string(message) : firstLine(PQerrorMessage(m_handle.get()));
    throw StoreError("the database refuses: " + text + (state ? " (" + std::string(state) + ")" : ""),
                     kindOf(state && !isLost() ? state : ""));
}

PostgresConnection::Result PostgresConnection::simple(const std::string &script)
{
    Result result(PQexec(m_handle.get(), script.c_str()));
    check(result.get());
    return result;
}

PostgresConnection::Result PostgresConnection::send(const std::string &sql, const std::vector<Parameter> &parameters)
{
    const size_t count = parameters.size();
    std::vector<const char *> values(count);
    std::vector<int> lengths(count);
    std::vector<int> formats(count);
    std::vector<Oid> types(count);
    std::string key = sql;
    for (size_t i = 0; i < count; ++i) {
        const Parameter &parameter = parameters[i];
        values[i] = parameter.isNull ? nullptr : parameter.value.c_str();
        lengths[i] = static_cast<int>(parameter.value.size());
        types[i] = oidOf(parameter.type);
        // As bytes, so that a NUL in a text is refused and ends nothing.
        formats[i] = parameter.type == Type::Text || parameter.type == Type::Bytes ? 1 : 0;
        key += static_cast<char>(static_cast<int>(parameter.type) + 1);
    }
    const int number = static_cast<int>(count);
    int isSent = 0;
    if (m_address.isPrepared) {
        auto prepared = m_prepared.find(key);
        if (prepared == m_prepared.end()) {
            const std::string name = "s" + std::to_string(m_prepared.size());
            const Result made(PQprepare(m_handle.get(), name.c_str(), withDollars(sql).c_str(), number, types.data()));
            check(made.get());
            prepared = m_prepared.emplace(key, name).first;
        }
        isSent = PQsendQueryPrepared(m_handle.get(), prepared->second.c_str(), number, values.data(), lengths.data(),
                                     formats.data(), 0);
    } else {
        isSent = PQsendQueryParams(m_handle.get(), withDollars(sql).c_str(), number, types.data(), values.data(),
                                   lengths.data(), formats.data(), 0);
    }
    if (isSent == 0)
        check(nullptr);
    Result result = receive();
    check(result.get());
    return result;
}

bool PostgresConnection::hasArrived(std::chrono::steady_clock::time_point until)
{
    while (true) {
        const int toSend = PQflush(m_handle.get());
        if (toSend < 0 || PQisBusy(m_handle.get()) == 0)
            return true; // or lost, which the result says
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - std::chrono::steady_clock::now());
        if (left.count() <= 0)
            return false;
        const int events = toSend > 0 ? POLLIN | POLLOUT : POLLIN;
        pollfd socket{PQsocket(m_handle.get()), static_cast<short>(events), 0};
        ::poll(&socket, 1, static_cast<int>(left.count()));
        if ((socket.revents & ~POLLOUT) != 0 && PQconsumeInput(m_handle.get()) == 0)
            return true;
    }
}

PostgresConnection::Result PostgresConnection::receive()
{
    const auto now = std::chrono::steady_clock::now();
    if (!hasArrived(now + statementTime)) {
        const std::unique_ptr<PGcancel, decltype(&PQfreeCancel)> cancel(PQgetCancel(m_handle.get()), &PQfreeCancel);
        std::array<char, 256> problem{};
        if (!cancel || PQcancel(cancel.get(), problem.data(), problem.size()) == 0 ||
            !hasArrived(now + statementTime + cancelTime)) {
            m_handle.reset(); // it does not answer any more
            throw StoreError("the database does not answer", StoreError::Kind::Unavailable);
        }
    }
    Result last;
    while (Result next{PQgetResult(m_handle.get())})
        last = std::move(next);
    return last;
}

PostgresConnection::Result PostgresConnection::run(const std::string &sql, const std::vector<Parameter> &parameters)
{
    if (isLost() && !m_isInTransaction)
        connect();
    if (isLost())
        throw StoreError("the connection was lost in a transaction", StoreError::Kind::Unavailable);
    for (int tries = 1;; ++tries) {
        try {
            Result result = send(sql, parameters);
            if (const std::string_view command = PQcmdStatus(result.get()); !command.starts_with("SELECT")) {
                m_changes = 0;
                const std::string_view rows = PQcmdTuples(result.get());
                std::from_chars(rows.data(), rows.data() + rows.size(), m_changes);
            }
            return result;
        } catch (const StoreError &error) {
            const bool mayRepeat = !m_isInTransaction &&
                                   (error.isConflict() ? tries < mostTries : isLost() && isReading(sql) && tries == 1);
            if (!mayRepeat)
                throw;
        }
        if (isLost())
            connect();
    }
}

void PostgresConnection::execute(const std::string &script)
{
    if (isLost() && !m_isInTransaction)
        connect();
    simple(script);
}

std::unique_ptr<StatementDriver> PostgresConnection::compile(std::string_view sql)
{
    return std::make_unique<PostgresStatement>(*this, sql);
}

void PostgresConnection::begin(Durability durability)
{
    std::string script = "BEGIN";
    if (durability == Durability::Later)
        script += "; SET LOCAL synchronous_commit = off";
    if (!m_address.isPrepared) // what a connection of our own has from its start
        script += "; SET LOCAL statement_timeout = 5000";
    if (isLost())
        connect();
    try {
        simple(script);
    } catch (const StoreError &) {
        if (!isLost())
            throw;
        connect(); // nothing was sent that counts
        simple(script);
    }
    m_isInTransaction = true;
}

void PostgresConnection::commit()
{
    const Result result = simple("COMMIT");
    if (const std::string_view command = PQcmdStatus(result.get()); command != "COMMIT")
        throw StoreError("a statement of the transaction had failed: nothing was changed");
    m_isInTransaction = false;
}

void PostgresConnection::rollBack() noexcept
{
    m_isInTransaction = false;
    if (!isLost())
        PQclear(PQexec(m_handle.get(), "ROLLBACK"));
}

void PostgresConnection::lockAccount(int64_t account)
{
    // Rows that belong to the account can be added meanwhile: they do not need its row for themselves.
    number("SELECT id FROM accounts WHERE id = ?1 FOR NO KEY UPDATE", account);
}

void PostgresConnection::lockName(const std::string &name)
{
    number("SELECT pg_advisory_xact_lock(hashtextextended(?1, 0))", name);
}

} // namespace velmora::server
