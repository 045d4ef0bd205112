#include "server/api/apiserver.h"

#include "server/api/health.h"
#include "server/api/houseaddress.h"
#include "server/api/mediafiles.h"
#include "server/logging/log.h"

#include <charconv>

namespace velmora::server {

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr const char *mediaPath = "/media/*/*";
constexpr const char *functionPath = "/*/*";

http::Response jsonResponse(const Answer &answer)
{
    http::Response response;
    response.status = answer.httpStatus;
    response.record = {static_cast<int>(answer.code), answer.account};
    response.setContent(answer.body.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace),
                        "application/json; charset=utf-8");
    return response;
}

http::Response refused(int status, Code code, const char *why)
{
    return jsonResponse(Dispatcher::refusal(status, code, why));
}

std::string decimal(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value);
    return text;
}

bool isVersion(std::string_view text)
{
    return text.size() > 1 && text.front() == 'v' && text.find_first_not_of("0123456789", 1) == std::string_view::npos;
}

} // namespace

ApiServer::ApiServer(StationService &service, ListenSettings settings)
    : m_service(service)
    , m_settings(std::move(settings))
    , m_dispatcher(service)
    , m_logKey(service.keptKey("log key"))
    , m_storeProbe(service.store)
{
}

ApiServer::~ApiServer()
{
    stop();
}

bool ApiServer::isLoopback(const std::string &host)
{
    return host == "localhost" || host == "::1" || host.starts_with("127.");
}

void ApiServer::start()
{
    http::ServerSettings settings;
    settings.host = m_settings.host;
    settings.port = m_settings.port;
    settings.tlsCertificate = m_settings.tlsCertificate;
    settings.tlsKey = m_settings.tlsKey;
    settings.trustedProxies = m_settings.trustedProxies;
    settings.sendsHsts = (!m_settings.tlsCertificate.empty() && !m_settings.isCertificateOwn) ||
                         m_settings.publicUrl.starts_with("https://");
    if (m_settings.isCertificateOwn)
        settings.unencrypted = {"127.0.0.1", "::1"}; // nobody has told the programs of this machine to trust it
    settings.limits = m_settings.limits;
    settings.answered = [this](const http::Request &request, http::Response &response) { answered(request, response); };
    settings.refusal = [this](int status, const http::Request &request) { return refusal(status, request); };
    m_server = std::make_unique<http::Server>(std::move(settings), router());
    m_port = m_server->bind();
    m_service.addresses.setBase(m_settings.publicUrl.empty() ? url() : m_settings.publicUrl);
    m_server->start();
}

void ApiServer::drain()
{
    m_isDraining = true;
    m_server->drain();
}

void ApiServer::stop()
{
    m_server.reset();
}

std::string ApiServer::url() const
{
    std::string host = m_settings.host;
    if (host == "0.0.0.0" || host == "::")
        host = houseAddress();
    if (host.find(':') != std::string::npos)
        host = "[" + host + "]";
    return (m_settings.tlsCertificate.empty() ? "http://" : "https://") + host + ":" + std::to_string(m_port);
}

http::Router ApiServer::router()
{
    http::Router router;
    router.get(
        mediaPath, [this](const http::Request &request) { return answerMedia(request); }, http::Lane::Files);
    // Many requests that wait, or a folder that does not react, are no reason to be called dead, and must be seen.
    router.get(
        "/health", [this](const http::Request &) { return health(); }, http::Lane::Probes);
    router.get(
        "/ready", [this](const http::Request &) { return ready(); }, http::Lane::Probes);
    router.get(
        "/metrics", [this](const http::Request &request) { return metrics(request); }, http::Lane::Probes);
    if (m_settings.addPages)
        m_settings.addPages(router);
    router.post(functionPath, Parameters::mostBytes,
                [this](const http::Request &request) { return answerFunction(request); });
    return router;
}

http::Response ApiServer::answerFunction(const http::Request &request)
{
    if (!isVersion(request.pieces[0]))
        return refusal(404, request);
    if (request.lane != http::Lane::Passwords && Dispatcher::isSlow(request.pieces[1], request.body))
        return http::Response::handledIn(http::Lane::Passwords);
    const Answer answer = m_dispatcher.answer(
        {request.pieces[0], request.pieces[1], request.body, std::string(request.header("Authorization")),
         std::string(request.header("Velmora-Request-Key")), request.address, request.id, mediaBaseFor(request)});
    http::Response response = jsonResponse(answer);
    if (answer.httpStatus == 503)
        response.setHeader("Retry-After", std::to_string(ReturnTimes::shortest.count()));
    return response;
}

// A radio of this machine that does without the service's own certificate gets its media in the same way.
std::string ApiServer::mediaBaseFor(const http::Request &request) const
{
    const bool isExcused = m_settings.isCertificateOwn && !request.isEncrypted && !request.isFromProxy;
    if (!isExcused)
        return m_service.addresses.base();
    const bool isIpv6 = request.address.find(':') != std::string::npos;
    return std::string("http://") + (isIpv6 ? "[::1]" : "127.0.0.1") + ":" + std::to_string(m_port);
}

http::Response ApiServer::health() const
{
    Answer answer;
    answer.body = healthOf(m_service);
    return jsonResponse(answer);
}

http::Response ApiServer::ready()
{
    if (m_isDraining)
        return refused(503, Code::TooMany, "the service ends");
    if (m_service.isUnderMaintenance)
        return refused(503, Code::Maintenance, "maintenance");
    if (!m_storeProbe.isAnswering())
        return refused(503, Code::Internal, "the store does not answer");
    return jsonResponse({});
}

http::Response ApiServer::metrics(const http::Request &request)
{
    // How busy the service is concerns its owner alone. A proxy on this machine asks for somebody else.
    if (!isLoopback(request.address) || !request.header("X-Forwarded-For").empty())
        return refusal(404, request);
    http::Response response;
    response.setContent(m_metrics.text(m_service, m_server->load()), "text/plain; version=0.0.4; charset=utf-8");
    return response;
}

http::Response ApiServer::refusal(int status, const http::Request &request)
{
    Answer answer = Dispatcher::refusal(status, Code::Malformed, "refused");
    const bool isOfRadio = request.path.starts_with("/v") || request.path.starts_with("/media/");
    if (status == 404 && request.method != "POST" && !isOfRadio && m_settings.pageNotFound)
        return m_settings.pageNotFound(request);
    if (status == 404)
        answer.code = Code::NoSuchFunction;
    else if (status == 413)
        answer.body["message"] = "the body is larger than 64 KiB";
    else if (status == 500)
        answer = Dispatcher::refusal(status, Code::Internal, "internal error");
    else if (status == 503)
        answer = Dispatcher::refusal(status, Code::TooMany, "too many requests wait");
    answer.body["code"] = static_cast<int>(answer.code);
    const int64_t pause = status == 503 ? pauseFor(request).count() : 0;
    if (status == 503)
        answer.body["data"] = {{"retryAfter", pause}};
    http::Response response = jsonResponse(answer);
    if (status == 503)
        response.setHeader("Retry-After", std::to_string(pause));
    if (status == 503 && !isOfRadio)
        response.setContent("Too many requests wait. Please try again in a few seconds.\n",
                            "text/plain; charset=utf-8");
    if (!request.path.starts_with("/v"))
        response.record.code.reset();
    return response;
}

// A caller that has too many requests of its own waits for these, and keeps nobody else away.
std::chrono::seconds ApiServer::pauseFor(const http::Request &refused)
{
    if (!refused.isLaneFull || refused.lane != http::Lane::Functions)
        return ReturnTimes::shortest;
    constexpr uint32_t steps = 1000;
    return m_returnTimes.afterRefusal(SteadyClock::now(), double(randomBelow(steps)) / steps);
}

http::Response ApiServer::answerMedia(const http::Request &request)
{
    const std::optional<MediaKind> kind = mediaKindOf(request.pieces[0]);
    const std::string &file = request.pieces[1];
    const auto refuse = [](int status, const char *why) { return refused(status, Code::NotAuthorised, why); };
    if (!kind)
        return refuse(404, "no such kind");
    const MediaQuery query{*kind,
                           file,
                           request.parameter("a"),
                           request.parameter("e"),
                           request.parameter("i"),
                           request.parameter("r"),
                           request.parameter("s")};
    switch (m_service.addresses.check(query)) {
    case MediaCheck::BadSignature:
        return refuse(403, "wrong signature");
    case MediaCheck::Expired:
        return refuse(410, "the address has expired");
    case MediaCheck::Valid:
        break;
    }
    AccountId account = 0;
    std::from_chars(query.account.data(), query.account.data() + query.account.size(), account);
    if (!m_service.devices.mayListen(account, query.radio))
        return refuse(410, "the account or the radio has gone");
    const std::optional<std::string> id = publicIdOf(file);
    const std::optional<Track> track = id ? m_service.catalogue.track(*id) : std::nullopt;
    const std::optional<Ad> ad = id && !track ? m_service.catalogue.ad(*id) : std::nullopt;
    if (!track && !ad)
        return refuse(404, "no such file");
    if (*kind == MediaKind::Picture) {
        const std::filesystem::path &picture = track ? track->pictureFile : ad->pictureFile;
        http::Response response =
            fileResponse(request, picture, picture.extension() == ".jpg" ? "image/jpeg" : "image/png");
        response.record.account = account;
        return response;
    }
    // Its folder may be a network share that does not answer: nobody shall wait for that.
    if (track && !track->isPlayable)
        return refuse(503, "its folder is away");
    const std::optional<std::filesystem::path> audio = track ? audioFileFor(m_service, *track) : ad->audioFile;
    if (!audio)
        return refuse(503, "it is being transcoded");
    if (track)
        noteStart(request, account, track->id);
    http::Response response = fileResponse(request, *audio, track ? track->audioType : ad->audioType);
    response.record.account = account;
    if (track && track->gainDb)
        response.setHeader("Velmora-Gain", decimal(*track->gainDb));
    if (track && track->peak)
        response.setHeader("Velmora-Peak", decimal(*track->peak));
    return response;
}

void ApiServer::noteStart(const http::Request &request, AccountId account, int64_t track)
{
    Issue issue;
    if (!issue.read(request.parameter("i")) || request.method != "GET")
        return;
    issue.account = account;
    issue.track = track;
    try {
        m_service.plays.started(issue, request.parameter("r"));
    } catch (const StoreError &error) { // music that plays unnoticed is better than none
        logs::warn(std::string("a play was not noted: ") + error.what(), request.id);
    }
}

http::Response ApiServer::fileResponse(const http::Request &request, const std::filesystem::path &path,
                                       const std::string &mediaType) const
{
    if (std::optional<http::Response> elsewhere = m_settings.roads.answer(request, path, mediaType, m_service.clock()))
        return *std::move(elsewhere);
    const auto file = http::File::open(path);
    if (!file || file->size() == 0)
        return refused(404, Code::NoSuchMusic, "no such file");
    http::Response response;
    response.setFile(file, mediaType);
    response.setHeader("Cache-Control", "private, max-age=43200");
    response.bytesPerSecond = m_settings.throttleBytesPerSecond;
    return response;
}

void ApiServer::answered(const http::Request &request, http::Response &response)
{
    // Names of a fixed set only: what a caller made up is neither counted nor logged.
    std::string function = request.route.empty() ? "unknown" : request.route;
    if (function == functionPath) {
        const Route *route = findRoute(request.pieces[1]);
        function = route ? route->name : "unknown";
    } else if (function == mediaPath) {
        function = "media";
        response.record.code.reset();
    } else if (function.starts_with("/v1/")) {
        function.erase(0, 4);
    }
    // A monitoring system asks every few seconds.
    const bool isProbe = function == "/health" || function == "/ready" || function == "/metrics";
    if (isProbe)
        response.record.code.reset();
    const bool isFault = response.status >= 500 || response.record.code == static_cast<int>(Code::Internal);
    const bool isThrottled =
        response.status == 429 || (response.status == 200 && response.record.code == static_cast<int>(Code::TooMany));
    const int code = response.record.code.value_or(response.status);
    const bool isArrived = request.arrivedAt != SteadyClock::time_point();
    const auto taken = isArrived ? SteadyClock::now() - request.arrivedAt : SteadyClock::duration(0);
    m_metrics.note(function, code, taken);
    if (request.lane == http::Lane::Functions && isArrived && !isProbe && response.status != 503)
        m_returnTimes.answered(SteadyClock::now());
    if (isThrottled)
        m_metrics.noteThrottled(function);
    const std::string id = request.id.empty() ? http::requestIdOf({}) : request.id;
    response.setHeader("X-Request-Id", id);
    if (m_settings.logsRequests && !(isProbe && response.status == 200))
        logs::request({id, function, code, isFault, taken, accountMark(response.record.account)});
}

std::string ApiServer::accountMark(AccountId account) const
{
    constexpr size_t length = 16;
    return account == 0 ? std::string() : keyedHash(m_logKey, std::to_string(account)).substr(0, length);
}

} // namespace velmora::server
