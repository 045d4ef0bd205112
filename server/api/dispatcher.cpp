#include "server/api/dispatcher.h"

#include "server/http/peers.h"
#include "server/logging/log.h"
#include "server/store/store.h"

namespace velmora::server {

namespace {

using nlohmann::json;

constexpr const char *currentVersion = "v1";

bool accepts(Access access, TokenKind kind)
{
    switch (access) {
    case Access::Nobody:
        return true;
    case Access::Partner:
        return kind == TokenKind::Partner;
    case Access::User:
        return kind == TokenKind::User;
    case Access::PartnerOrUser:
        return kind != TokenKind::None;
    }
    return false;
}

// Does what may be done twice once more when it lost its connection to the database.
template <typename Work>
auto repeatedWhenLost(Store &store, const Work &work)
{
    try {
        return repeated(store, work);
    } catch (const StoreError &error) {
        if (!error.isUnavailable())
            throw;
    }
    return repeated(store, work);
}

json failure(Code code, const std::string &message, const json &data)
{
    json body = {{"code", static_cast<int>(code)}, {"message", message}};
    if (!data.is_null())
        body["data"] = data;
    return body;
}

} // namespace

Dispatcher::Dispatcher(StationService &service)
    : m_service(service)
    , m_limits(service.store)
    , m_requestKeys(service.store, service.clock)
{
}

void Dispatcher::failOnPurpose(const std::string &function, int code, int times)
{
    const std::lock_guard guard(m_mutex);
    m_failures[function] = {code, times};
}

Answer Dispatcher::refusal(int httpStatus, Code code, const std::string &message)
{
    return {httpStatus, code, failure(code, message, nullptr)};
}

bool Dispatcher::isSlow(const std::string &function, const std::string &body)
{
    const Route *route = findRoute(function);
    if (!route || !route->hashes)
        return false;
    try {
        return route->hashes(Parameters::parse(body));
    } catch (const ApiError &) {
        return false; // refused at once
    }
}

Answer Dispatcher::answer(const Request &request)
{
    if (request.version != currentVersion) {
        Answer refused = refusal(404, Code::VersionRefused, "this service speaks v1");
        refused.body["data"] = {{"supported", json::array({currentVersion})}};
        return refused;
    }
    const Route *route = findRoute(request.function);
    if (!route)
        return refusal(404, Code::NoSuchFunction, "no such function");
    Answer answer;
    try {
        answer.httpStatus = 400; // until the body is known to be a JSON object
        const Parameters parameters = Parameters::parse(request.body);
        answer.httpStatus = 200;
        const auto work = [&] { return call(*route, request, parameters, &answer.account); };
        // Done twice, it does no more than once.
        const bool isRepeatable = route->repetition == Repetition::Again ||
                                  (route->repetition != Repetition::Remembered && !request.key.empty());
        answer.body = isRepeatable ? repeatedWhenLost(m_service.store, work) : work();
        answer.code = static_cast<Code>(answer.body.at("code").get<int>());
    } catch (const ApiError &error) {
        answer.code = error.code();
        answer.body = failure(error.code(), error.what(), error.data());
    } catch (const StoreError &error) {
        logs::warn(std::string(route->name) + ": " + error.what(), request.id);
        answer.code = Code::Internal;
        answer.body = failure(Code::Internal, "internal error", nullptr);
        if (error.isUnavailable()) // another process may have a connection, and this one has one again soon
            answer.httpStatus = 503;
    } catch (const std::exception &error) {
        // The text comes from the database or the system, never from the request.
        logs::warn(std::string(route->name) + ": " + error.what(), request.id);
        answer.code = Code::Internal;
        answer.body = failure(Code::Internal, "internal error", nullptr);
    }
    return answer;
}

json Dispatcher::call(const Route &route, const Request &request, const Parameters &parameters, AccountId *account)
{
    throwFailureOnPurpose(route.name);
    std::optional<Listening> listening;
    const Session session = checkedSession(route, request.authorization, parameters, &listening);
    *account = session.accountId;
    if (route.writes && m_service.isUnderMaintenance)
        throw ApiError(Code::Maintenance, "maintenance");
    const auto work = [&] { // once
        Call call{m_service,
                  m_limits,
                  parameters,
                  session,
                  request.address,
                  http::networkOf(request.address),
                  request.mediaBase.empty() ? m_service.addresses.base() : request.mediaBase,
                  std::move(listening)};
        return json{{"code", 0}, {"data", route.handler(call)}};
    };
    if (request.key.empty() || route.repetition == Repetition::Again)
        return work();
    if (!RequestKeys::isKey(request.key))
        throw ApiError(Code::Malformed, "a request key is 32 hexadecimal digits");
    const std::string owner = session.keyHash + ' ' + std::to_string(session.accountId);
    const bool isQuick = route.repetition != Repetition::Remembered;
    const Durability durability =
        route.repetition == Repetition::RememberedLater ? Durability::Later : Durability::AtOnce;
    return m_requestKeys.once({owner, request.key, request.function + '\n' + request.body, isQuick, durability}, [&] {
        try {
            return work();
        } catch (const ApiError &error) {
            return failure(error.code(), error.what(), error.data()); // an answer like any other
        }
    });
}

Session Dispatcher::checkedSession(const Route &route, const std::string &authorization, const Parameters &parameters,
                                   std::optional<Listening> *listening)
{
    if (route.access == Access::Nobody)
        return {};
    constexpr std::string_view scheme = "Bearer ";
    std::optional<Session> session;
    const std::string token = authorization.starts_with(scheme) ? authorization.substr(scheme.size()) : std::string();
    if (route.readsListening) {
        *listening = Listening::ofSession(m_service.store, token, parameters.optionalText("stationToken").value_or(""),
                                          m_service.clock());
        session = (*listening)->session();
    } else if (!token.empty()) {
        session = m_service.sessions.find(token);
    }
    if (!session || !accepts(route.access, session->kind))
        throw ApiError(Code::BadToken, "the token is unknown or has expired");
    if (session->isRevoked)
        throw ApiError(Code::Inactive, "the device was unlinked from the account");
    if (*listening && !(*listening)->isAccountActive())
        throw ApiError(Code::Inactive, "the account is no longer active");
    if (session->kind == TokenKind::User && !*listening) {
        const std::optional<Account> account = m_service.accounts.find(session->accountId);
        if (!account || !account->isActive)
            throw ApiError(Code::Inactive, "the account is no longer active");
    }
    return *session;
}

void Dispatcher::throwFailureOnPurpose(const std::string &function)
{
    const std::lock_guard guard(m_mutex);
    const auto found = m_failures.find(function);
    if (found == m_failures.end())
        return;
    const int code = found->second.code;
    if (found->second.left > 0 && --found->second.left == 0)
        m_failures.erase(found);
    throw ApiError(static_cast<Code>(code), "failing on purpose");
}

} // namespace velmora::server
