#include "server/api/requestkeys.h"

#include "server/api/apierror.h"
#include "server/store/store.h"

#include <algorithm>

namespace velmora::server {

namespace {

using nlohmann::json;

constexpr size_t keyDigits = 32;

bool isDone(const json &answer)
{
    return answer.at("code") == 0;
}

} // namespace

RequestKeys::RequestKeys(Store &store, Clock clock)
    : m_store(store)
    , m_clock(std::move(clock))
{
}

bool RequestKeys::isKey(std::string_view text)
{
    return text.size() == keyDigits && text.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
}

json RequestKeys::once(const Request &request, const std::function<json()> &work)
{
    const std::string id = tokenHash(request.owner + '\n' + request.key);
    {
        std::unique_lock guard(m_mutex);
        m_isDone.wait(guard, [&] { return !m_underWay.contains(id); });
        m_underWay.insert(id);
    }
    const auto leave = [this, &id](const void *) {
        {
            const std::lock_guard guard(m_mutex);
            m_underWay.erase(id);
        }
        m_isDone.notify_all();
    };
    const std::unique_ptr<const RequestKeys, decltype(leave)> left(this, leave);
    return answered(request, id, work);
}

json RequestKeys::answered(const Request &request, const std::string &id, const std::function<json()> &work)
{
    if (std::optional<json> first = kept(request, id))
        return *std::move(first);
    if (!request.isQuick) {
        json answer = work();
        keep(request, id, answer);
        // Another process may have done the same meanwhile, and been first.
        return kept(request, id).value_or(std::move(answer));
    }
    m_store.reachDay(m_clock());
    const Store::Lock db = m_store.lock();
    json answer;
    {
        Transaction change(*db, NameLock{"request " + id}, request.durability);
        if (db->isShared()) {
            if (std::optional<json> first = kept(request, id))
                return *std::move(first);
        }
        answer = work();
        if (isDone(answer)) {
            keep(request, id, answer);
            change.commit();
            return answer;
        }
    }
    keep(request, id, answer); // what a refused request had begun is rolled back
    return answer;
}

std::optional<json> RequestKeys::kept(const Request &request, const std::string &id)
{
    const int64_t now = m_clock();
    const Store::Lock db = m_store.lock();
    // Two processes may have answered it on both sides of midnight: the first answer counts.
    Statement row = db->prepare("SELECT content_hash, answer FROM request_answers WHERE day IN (?3, ?4) AND "
                                "owner = ?1 AND id = ?2 AND answered_at > ?5 ORDER BY day LIMIT 1");
    row.with(tokenHash(request.owner), id, dayOf(now) - 1, dayOf(now), now - keptSeconds);
    if (!row.step())
        return std::nullopt;
    if (!equalSecrets(row.text(0), keyedHash(request.key, request.content)))
        throw ApiError(Code::Malformed, "the request key was used for another request");
    if (const std::optional<std::string> text = unsealed(request.key, row.text(1)))
        return json::parse(*text);
    throw ApiError(Code::Internal, "a remembered answer is damaged");
}

void RequestKeys::keep(const Request &request, const std::string &id, const json &answer)
{
    const std::string text = answer.dump(-1, ' ', false, json::error_handler_t::replace);
    const std::string owner = tokenHash(request.owner);
    const int64_t now = m_clock();
    const int64_t today = dayOf(now);
    m_store.reachDay(now);
    const Store::Lock db = m_store.lock();
    Transaction change(*db);
    int64_t number = 1; // of the owner's answers of the day; two processes may give the same
    bool isFull = false;
    {
        Statement row = db->prepare("SELECT COALESCE(MAX(number), 0) + 1, COUNT(*) FROM request_answers WHERE "
                                    "day = ?1 AND owner = ?2");
        row.with(today, owner);
        if (row.step()) {
            number = row.integer(0);
            isFull = row.integer(1) >= mostOfOwner;
        }
    }
    const std::string hash = keyedHash(request.key, request.content);
    // One that another process has kept meanwhile stays.
    if (isFull && !kept(request, id))
        db->run("UPDATE request_answers SET id = ?3, number = ?4, content_hash = ?5, answer = ?6, answered_at = ?7 "
                "WHERE day = ?1 AND owner = ?2 AND id = (SELECT id FROM request_answers WHERE day = ?1 AND owner = ?2 "
                "ORDER BY number, id LIMIT 1)",
                today, owner, id, number, hash, sealed(request.key, text), now);
    else
        db->run("INSERT INTO request_answers (day, owner, id, number, content_hash, answer, answered_at) VALUES (?1, "
                "?2, ?3, ?4, ?5, ?6, ?7) ON CONFLICT (day, owner, id) DO NOTHING",
                today, owner, id, number, hash, sealed(request.key, text), now);
    change.commit();
}

} // namespace velmora::server
