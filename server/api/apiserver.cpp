#include "server/api/apiserver.h"

#include "server/api/health.h"
#include "server/api/houseaddress.h"
#include "server/api/mediafiles.h"
#include "server/http/conditions.h"

#include <charconv>

namespace velmora::server {

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr int retryAfterSeconds = 2;

http::Response json(const Answer &answer)
{
    http::Response response;
    response.status = answer.httpStatus;
    response.setContent(answer.body.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace),
                        "application/json; charset=utf-8");
    return response;
}

http::Response refused(int status, Code code, const char *why)
{
    return json(Dispatcher::refusal(status, code, why));
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
    settings.limits = m_settings.limits;
    settings.refusal = [this](int status, const http::Request &request) { return refusal(status, request); };
    m_server = std::make_unique<http::Server>(std::move(settings), router());
    m_port = m_server->bind();
    m_service.addresses.setBase(m_settings.publicUrl.empty() ? url() : m_settings.publicUrl);
    m_server->start();
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
        "/media/*/*", [this](const http::Request &request) { return answerMedia(request); }, http::Lane::Files);
    router.get("/health", [this](const http::Request &) { return health(); });
    router.get("/ready", [this](const http::Request &) { return ready(); });
    router.get("/metrics", [this](const http::Request &request) { return metrics(request); });
    if (m_settings.addPages)
        m_settings.addPages(router);
    router.post("/*/*", Parameters::mostBytes,
                [this](const http::Request &request) { return answerFunction(request); });
    return router;
}

http::Response ApiServer::answerFunction(const http::Request &request)
{
    if (!isVersion(request.pieces[0]))
        return refusal(404, request);
    if (request.lane != http::Lane::Passwords && Dispatcher::isSlow(request.pieces[1], request.body))
        return http::Response::handledIn(http::Lane::Passwords);
    const Answer answer = m_dispatcher.answer({request.pieces[0], request.pieces[1], request.body,
                                               std::string(request.header("Authorization")),
                                               std::string(request.header("Velmora-Request-Key")), request.address});
    log(answer.function, static_cast<int>(answer.code), request.arrivedAt);
    return json(answer);
}

http::Response ApiServer::health() const
{
    Answer answer;
    answer.body = healthOf(m_service);
    return json(answer);
}

http::Response ApiServer::ready() const
{
    if (m_service.isUnderMaintenance)
        return refused(503, Code::Maintenance, "maintenance");
    try {
        m_service.store.setting("ready"); // a database that cannot be read throws
    } catch (const StoreError &) {
        return refused(503, Code::Internal, "the store does not answer");
    }
    return json({});
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

http::Response ApiServer::refusal(int status, const http::Request &request) const
{
    Answer answer = Dispatcher::refusal(status, Code::Malformed, "refused");
    const bool isOfRadio = request.path.starts_with("/v") || request.path.starts_with("/media/");
    if (status == 404 && request.method != "POST" && !isOfRadio && m_settings.pageNotFound)
        return m_settings.pageNotFound();
    if (status == 404)
        answer.code = Code::NoSuchFunction;
    else if (status == 413)
        answer.body["message"] = "the body is larger than 64 KiB";
    else if (status == 500)
        answer = Dispatcher::refusal(status, Code::Internal, "internal error");
    else if (status == 503)
        answer = Dispatcher::refusal(status, Code::TooMany, "too many requests wait");
    answer.body["code"] = static_cast<int>(answer.code);
    if (status == 503)
        answer.body["data"] = {{"retryAfter", retryAfterSeconds}};
    http::Response response = json(answer);
    if (status == 503)
        response.setHeader("Retry-After", std::to_string(retryAfterSeconds));
    if (status == 503 && !isOfRadio)
        response.setContent("Too many requests wait. Please try again in a few seconds.\n",
                            "text/plain; charset=utf-8");
    if (request.method == "POST" && status != 404 && request.path.starts_with("/v"))
        log("unknown", static_cast<int>(answer.code), request.arrivedAt);
    return response;
}

http::Response ApiServer::answerMedia(const http::Request &request)
{
    http::Response response = mediaResponse(request);
    http::applyConditions(request, response); // the log has 206, 304 or 416
    log("media", response.status, request.arrivedAt);
    return response;
}

http::Response ApiServer::mediaResponse(const http::Request &request)
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
        return fileResponse(picture, picture.extension() == ".jpg" ? "image/jpeg" : "image/png");
    }
    // Its folder may be a network share that does not answer: nobody shall wait for that.
    if (track && !track->isPlayable)
        return refuse(503, "its folder is away");
    const std::optional<std::filesystem::path> audio = track ? audioFileFor(m_service, *track) : ad->audioFile;
    if (!audio)
        return refuse(503, "it is being transcoded");
    noteStart(request);
    http::Response response = fileResponse(*audio, track ? track->audioType : ad->audioType);
    if (track && track->gainDb)
        response.setHeader("Velmora-Gain", decimal(*track->gainDb));
    if (track && track->peak)
        response.setHeader("Velmora-Peak", decimal(*track->peak));
    return response;
}

void ApiServer::noteStart(const http::Request &request)
{
    const std::string text = request.parameter("i");
    int64_t issue = 0;
    std::from_chars(text.data(), text.data() + text.size(), issue);
    if (issue == 0 || request.method != "GET")
        return;
    try {
        m_service.plays.started(issue);
    } catch (const StoreError &error) { // music that plays unnoticed is better than none
        std::fprintf(stderr, "velmora-server: a play was not noted: %s\n", error.what());
    }
}

http::Response ApiServer::fileResponse(const std::filesystem::path &path, const std::string &mediaType) const
{
    const auto file = http::File::open(path);
    if (!file || file->size() == 0)
        return refused(404, Code::NoSuchMusic, "no such file");
    http::Response response;
    response.setFile(file, mediaType);
    response.setHeader("Cache-Control", "private, max-age=43200");
    response.bytesPerSecond = m_settings.throttleBytesPerSecond;
    return response;
}

void ApiServer::log(const std::string &function, int code, SteadyClock::time_point since) const
{
    const auto whole = SteadyClock::now() - since;
    m_metrics.note(function, code, whole);
    if (!m_settings.logsRequests)
        return;
    const auto taken = std::chrono::duration_cast<std::chrono::milliseconds>(whole);
    std::fprintf(stderr, "%s %d %lld ms\n", function.c_str(), code, static_cast<long long>(taken.count()));
}

} // namespace velmora::server
