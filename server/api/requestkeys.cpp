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
    {
        const Store::Lock db = m_store.lock();
        Statement row = db->prepare("SELECT content_hash, answer FROM request_answers WHERE id = ?1 AND "
                                    "answered_at > ?2");
        row.with(id, m_clock() - keptSeconds);
        if (row.step()) {
            if (!equalSecrets(row.text(0), keyedHash(request.key, request.content)))
                throw ApiError(Code::Malformed, "the request key was used for another request");
            if (const std::optional<std::string> text = unsealed(request.key, row.text(1)))
                return json::parse(*text);
            throw ApiError(Code::Internal, "a remembered answer is damaged");
        }
    }
    if (!request.isQuick) {
        json answer = work();
        keep(request, id, answer);
        return answer;
    }
    const Store::Lock db = m_store.lock();
    json answer;
    {
        Transaction change(*db);
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

void RequestKeys::keep(const Request &request, const std::string &id, const json &answer)
{
    const std::string text = answer.dump(-1, ' ', false, json::error_handler_t::replace);
    const std::string owner = tokenHash(request.owner);
    const int64_t now = m_clock();
    const Store::Lock db = m_store.lock();
    Transaction change(*db);
    db->run("DELETE FROM request_answers WHERE answered_at <= ?1", now - keptSeconds);
    db->run("INSERT INTO request_answers (id, owner, content_hash, answer, answered_at) VALUES (?1, ?2, ?3, ?4, ?5)",
            id, owner, keyedHash(request.key, request.content), sealed(request.key, text), now);
    db->run("DELETE FROM request_answers WHERE number IN (SELECT number FROM request_answers WHERE owner = ?1 "
            "ORDER BY number DESC LIMIT -1 OFFSET ?2)",
            owner, mostOfOwner);
    db->run("DELETE FROM request_answers WHERE number <= (SELECT MAX(number) FROM request_answers) - ?1",
            mostAltogether);
    change.commit();
}

} // namespace velmora::server
