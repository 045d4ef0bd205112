// The radio's side: it asks for its orders and waits until there are some, and says what it shows while somebody looks.
#include "server/remote/remote.h"

#include "server/api/apierror.h"
#include "server/api/parameters.h"

namespace velmora::server {

namespace {

using nlohmann::json;

constexpr int replacedSeconds = 30;

http::Response answer(const json &body)
{
    http::Response response;
    response.record.code = body.at("code").get<int>();
    response.setHeader("Cache-Control", "no-store");
    response.setContent(body.dump(-1, ' ', false, json::error_handler_t::replace), "application/json; charset=utf-8");
    return response;
}

http::Response refused(Code code, const char *message, const json &data = json::object())
{
    return answer({{"code", static_cast<int>(code)}, {"message", message}, {"data", data}});
}

// The hash of the radio's key; empty for a token that is none of a radio.
std::string keyHashOf(StationService &service, const http::Request &request)
{
    constexpr std::string_view scheme = "Bearer ";
    const std::string authorization(request.header("Authorization"));
    if (!authorization.starts_with(scheme))
        return {};
    const auto session = service.sessions.find(authorization.substr(scheme.size()));
    return session && session->kind == TokenKind::Partner ? session->keyHash : std::string();
}

} // namespace

http::Response Remote::takeOrders(const http::Request &request)
{
    RemoteHub::Ask ask;
    ask.radio = keyHashOf(m_service, request);
    if (ask.radio.empty())
        return refused(Code::BadToken, "the token is unknown or has expired");
    try {
        const Parameters parameters = Parameters::parse(request.body);
        ask.channel = parameters.text("channel");
        ask.epoch = parameters.optionalText("epoch").value_or("");
        ask.after = static_cast<uint64_t>(std::max<int64_t>(0, parameters.optionalInteger("after").value_or(0)));
        ask.knowsWatched = parameters.optionalFlag("isWatched").value_or(false);
    } catch (const ApiError &error) {
        return refused(Code::Malformed, error.what());
    }
    if (!isToken(ask.channel, 16))
        return refused(Code::Malformed, "channel is 16 random bytes in base64url");
    std::optional<RemoteHub::Orders> orders;
    if (request.isWaitOver) {
        orders = m_hub.noOrders(ask);
    } else {
        const auto wait = std::make_shared<http::Wait>();
        orders = m_hub.ordersFor(ask, wait);
        if (!orders)
            return http::Response::answeredAfter(wait, m_hub.ordersWait(ask.radio));
    }
    if (orders->isReplaced)
        return refused(Code::TooMany, "another program with this device key asks", {{"retryAfter", replacedSeconds}});
    json list = json::array();
    for (const std::string &order : orders->orders)
        list.push_back(json::parse(order));
    return answer({{"code", 0},
                   {"data",
                    {{"epoch", orders->epoch},
                     {"last", orders->last},
                     {"isWatched", orders->isWatched},
                     {"wantsReport", orders->isReportWanted},
                     {"orders", std::move(list)}}}});
}

http::Response Remote::takeReport(const http::Request &request)
{
    const std::string radio = keyHashOf(m_service, request);
    if (radio.empty())
        return refused(Code::BadToken, "the token is unknown or has expired");
    const auto state = radioStateOf(request.body);
    if (!state)
        return refused(Code::Malformed, "a report is a JSON object");
    return answer({{"code", 0}, {"data", {{"isWatched", m_hub.report(radio, jsonOf(*state))}}}});
}

} // namespace velmora::server
