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
    const Store::Lock db = m_store.lock();
    json answer;
    {
        Transaction change(*db, NameLock{"request " + id});
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
    const Store::Lock db = m_store.lock();
    Statement row = db->prepare("SELECT content_hash, answer FROM request_answers WHERE id = ?1 AND answered_at > ?2");
    row.with(id, m_clock() - keptSeconds);
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
    const Store::Lock db = m_store.lock();
    Transaction change(*db);
    if (!db->isShared())
        db->run("DELETE FROM request_answers WHERE answered_at <= ?1", now - keptSeconds);
    // One that is too old makes place; one that another process has kept meanwhile stays.
    db->run("INSERT INTO request_answers (id, owner, content_hash, answer, answered_at) VALUES (?1, ?2, ?3, ?4, ?5) "
            "ON CONFLICT (id) DO UPDATE SET owner = ?2, content_hash = ?3, answer = ?4, answered_at = ?5 WHERE "
            "request_answers.answered_at <= ?6",
            id, owner, keyedHash(request.key, request.content), sealed(request.key, text), now, now - keptSeconds);
    db->run("DELETE FROM request_answers WHERE owner = ?1 AND number NOT IN (SELECT number FROM request_answers WHERE "
            "owner = ?1 ORDER BY number DESC LIMIT ?2)",
            owner, mostOfOwner);
    if (!db->isShared())
        db->run("DELETE FROM request_answers WHERE number <= (SELECT MAX(number) FROM request_answers) - ?1",
                mostAltogether);
    change.commit();
}

} // namespace velmora::server
