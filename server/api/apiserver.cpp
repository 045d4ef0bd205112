#include "server/api/apiserver.h"

#include "server/api/health.h"
#include "server/api/houseaddress.h"
#include "server/api/mediafiles.h"

#include <arpa/inet.h>
#include <array>
#include <charconv>
#include <httplib.h>
#include <sys/socket.h>

namespace velmora::server {

namespace {

using SteadyClock = std::chrono::steady_clock;

// A paused radio stops reading its stream, which occupies a thread. Therefore there are many threads, and a stream from
// which nothing was read for so long is ended; the radio continues it with a range request.
constexpr size_t threadCount = 64;
constexpr std::chrono::seconds standingStream{600};
constexpr std::chrono::seconds slowRequest{10};
// A body that is too large is read to its end, so that the caller gets an answer, but only up to this limit.
constexpr size_t mostDrained = 4 * 1024 * 1024;
constexpr size_t longestPath = 512;
constexpr size_t chunkBytes = 64 * 1024;

void send(httplib::Response &response, const Answer &answer)
{
    response.status = answer.httpStatus;
    response.set_content(answer.body.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace),
                         "application/json; charset=utf-8");
}

std::string decimal(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value);
    return text;
}

// The local port of a connected TCP socket; nothing for any other descriptor.
std::optional<int> localPortOfConnection(int fd)
{
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    if (::getpeername(fd, reinterpret_cast<sockaddr *>(&address), &length) != 0)
        return std::nullopt;
    length = sizeof address;
    if (::getsockname(fd, reinterpret_cast<sockaddr *>(&address), &length) != 0)
        return std::nullopt;
    if (address.ss_family == AF_INET)
        return ntohs(reinterpret_cast<sockaddr_in *>(&address)->sin_port);
    if (address.ss_family == AF_INET6)
        return ntohs(reinterpret_cast<sockaddr_in6 *>(&address)->sin6_port);
    return std::nullopt;
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
    if (m_settings.tlsCertificate.empty()) {
        m_server = std::make_unique<httplib::Server>();
    } else {
        m_server = std::make_unique<httplib::SSLServer>(m_settings.tlsCertificate.c_str(), m_settings.tlsKey.c_str());
        if (!m_server->is_valid())
            throw std::runtime_error("cannot use the certificate " + m_settings.tlsCertificate.string() +
                                     " with the key " + m_settings.tlsKey.string());
    }
    m_server->new_task_queue = [] { return new httplib::ThreadPool(threadCount); };
    m_server->set_read_timeout(slowRequest);
    m_server->set_write_timeout(standingStream);
    m_server->set_payload_max_length(mostDrained);
    m_server->set_tcp_nodelay(true);
    // The library's default also sets SO_REUSEPORT: a second server would then share the port silently.
    m_server->set_socket_options([](int fd) {
        const int yes = 1;
        ::setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    });
    addRoutes();
    if (m_settings.addPages)
        m_settings.addPages(*m_server);

    if (m_settings.port == 0)
        m_port = m_server->bind_to_any_port(m_settings.host);
    else if (m_server->bind_to_port(m_settings.host, m_settings.port))
        m_port = m_settings.port;
    if (m_port <= 0)
        throw std::runtime_error("cannot listen on " + m_settings.host + " port " + std::to_string(m_settings.port) +
                                 "; is another velmora-server running?");
    m_service.addresses.setBase(m_settings.publicUrl.empty() ? url() : m_settings.publicUrl);
    m_thread = std::thread([this] {
        m_server->listen_after_bind();
        m_hasEnded = true;
    });
    while (!m_server->is_running() && !m_hasEnded)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

void ApiServer::stop()
{
    if (!m_thread.joinable())
        return;
    m_isStopping = true;
    m_server->stop();
    while (!m_hasEnded) {
        endConnections();
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    m_thread.join();
}

void ApiServer::endConnections() const
{
    // cpp-httplib 0.11 keeps its accepted sockets to itself and waits for each to end: a paused stream would hold it
    // for minutes. They are the connected sockets of this process whose own port is ours.
    std::error_code error;
    for (const auto &entry : std::filesystem::directory_iterator("/proc/self/fd", error)) {
        const std::string name = entry.path().filename();
        int fd = -1;
        std::from_chars(name.data(), name.data() + name.size(), fd);
        if (fd >= 0 && localPortOfConnection(fd) == m_port)
            ::shutdown(fd, SHUT_RDWR);
    }
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

void ApiServer::addRoutes()
{
    m_server->set_pre_routing_handler([](const httplib::Request &request, httplib::Response &response) {
        // Paths are matched by a regular expression whose depth grows with the path.
        if (request.path.size() <= longestPath)
            return httplib::Server::HandlerResponse::Unhandled;
        send(response, Dispatcher::refusal(404, Code::NoSuchFunction, "no such path"));
        return httplib::Server::HandlerResponse::Handled;
    });
    m_server->Post(R"(/(v\d+)/([^/]+))", [this](const httplib::Request &request, httplib::Response &response,
                                                const httplib::ContentReader &reader) {
        const auto since = SteadyClock::now();
        std::string body;
        size_t received = 0;
        const bool isWhole = reader([&](const char *data, size_t length) {
            received += length;
            if (received <= Parameters::mostBytes)
                body.append(data, length);
            return received <= mostDrained;
        });
        Answer answer;
        if (received > Parameters::mostBytes || response.status == 413)
            answer = Dispatcher::refusal(413, Code::Malformed, "the body is larger than 64 KiB");
        else if (!isWhole)
            answer = Dispatcher::refusal(400, Code::Malformed, "the body is cut off");
        else
            answer = m_dispatcher.answer({request.matches[1], request.matches[2], body,
                                          request.get_header_value("Authorization"),
                                          request.get_header_value("Velmora-Request-Key"), request.remote_addr});
        send(response, answer);
        log(answer.function, static_cast<int>(answer.code), since);
    });
    m_server->Get(R"(/media/([a-z]+)/([^/]+))", [this](const httplib::Request &request, httplib::Response &response) {
        const auto since = SteadyClock::now();
        answerMedia(request, response);
        log("media", response.status, since);
    });
    m_server->Get("/health", [this](const httplib::Request &, httplib::Response &response) {
        Answer answer;
        answer.body = healthOf(m_service);
        send(response, answer);
    });
    m_server->set_error_handler([](const httplib::Request &, httplib::Response &response) {
        if (!response.body.empty() || response.status == 416)
            return;
        const Code code = response.status == 404 ? Code::NoSuchFunction : Code::Malformed;
        send(response, Dispatcher::refusal(response.status, code, "refused"));
    });
    m_server->set_exception_handler([](const httplib::Request &, httplib::Response &response, std::exception_ptr) {
        send(response, Dispatcher::refusal(500, Code::Internal, "internal error"));
    });
}

void ApiServer::answerMedia(const httplib::Request &request, httplib::Response &response)
{
    const std::optional<MediaKind> kind = mediaKindOf(request.matches[1]);
    const std::string file = request.matches[2];
    const auto refuse = [&](int status, const char *why) {
        send(response, Dispatcher::refusal(status, Code::NotAuthorised, why));
    };
    if (!kind)
        return refuse(404, "no such kind");
    switch (m_service.addresses.check(*kind, file, request.get_param_value("a"), request.get_param_value("e"),
                                      request.get_param_value("s"), request.get_param_value("i"))) {
    case MediaCheck::BadSignature:
        return refuse(403, "wrong signature");
    case MediaCheck::Expired:
        return refuse(410, "the address has expired");
    case MediaCheck::Valid:
        break;
    }
    const std::optional<std::string> id = publicIdOf(file);
    const std::optional<Track> track = id ? m_service.catalogue.track(*id) : std::nullopt;
    const std::optional<Ad> ad = id && !track ? m_service.catalogue.ad(*id) : std::nullopt;
    if (!track && !ad)
        return refuse(404, "no such file");
    if (*kind == MediaKind::Picture) {
        const std::filesystem::path &picture = track ? track->pictureFile : ad->pictureFile;
        return streamMedia(request, response, picture, picture.extension() == ".jpg" ? "image/jpeg" : "image/png");
    }
    // Its folder may be a network share that does not answer: nobody shall wait for that.
    if (track && !track->isPlayable)
        return refuse(503, "its folder is away");
    const std::optional<std::filesystem::path> audio = track ? audioFileFor(m_service, *track) : ad->audioFile;
    if (!audio)
        return refuse(503, "it is being transcoded");
    noteStart(request);
    if (track && track->gainDb)
        response.set_header("Velmora-Gain", decimal(*track->gainDb));
    if (track && track->peak)
        response.set_header("Velmora-Peak", decimal(*track->peak));
    streamMedia(request, response, *audio, track ? track->audioType : ad->audioType);
}

void ApiServer::noteStart(const httplib::Request &request)
{
    const std::string text = request.get_param_value("i");
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

void ApiServer::streamMedia(const httplib::Request &request, httplib::Response &response,
                            const std::filesystem::path &path, const std::string &mediaType)
{
    std::optional<MediaFile> opened = MediaFile::open(path);
    if (!opened || opened->size() == 0)
        return send(response, Dispatcher::refusal(404, Code::NoSuchMusic, "no such file"));
    const auto file = std::make_shared<MediaFile>(std::move(*opened));
    response.set_header("Accept-Ranges", "bytes");
    response.set_header("ETag", file->etag());
    response.set_header("Cache-Control", "private, max-age=43200");

    ByteRange range{0, file->size() - 1};
    RangeResult result = RangeResult::Whole;
    const bool isSameFile = !request.has_header("If-Range") || request.get_header_value("If-Range") == file->etag();
    if (request.has_header("Range") && isSameFile)
        result = parseRange(request.get_header_value("Range"), file->size(), &range);
    // cpp-httplib 0.11 applies ranges itself but does not cut them at the file's end; so it must not see any.
    const_cast<httplib::Request &>(request).ranges.clear();
    const std::string size = std::to_string(file->size());
    if (result == RangeResult::Unsatisfiable) {
        response.status = 416;
        response.set_header("Content-Range", "bytes */" + size);
        return;
    }
    if (result == RangeResult::Whole && request.get_header_value("If-None-Match") == file->etag()) {
        response.status = 304;
        return;
    }
    response.status = result == RangeResult::Part ? 206 : 200;
    if (result == RangeResult::Part)
        response.set_header("Content-Range",
                            "bytes " + std::to_string(range.first) + "-" + std::to_string(range.last) + "/" + size);

    const int64_t throttle = m_settings.throttleBytesPerSecond;
    const size_t piece = throttle > 0 ? static_cast<size_t>(std::max<int64_t>(throttle / 10, 1)) : chunkBytes;
    response.set_content_provider(
        range.last - range.first + 1, mediaType,
        [this, file, first = range.first, piece, throttle](size_t offset, size_t length, httplib::DataSink &sink) {
            std::array<char, chunkBytes> buffer;
            const size_t count = file->read(first + offset, buffer.data(), std::min({length, piece, buffer.size()}));
            if (count == 0 || m_isStopping || !sink.write(buffer.data(), count))
                return false; // the connection is cut, so that nobody takes it for the whole
            if (throttle > 0)
                std::this_thread::sleep_for(std::chrono::milliseconds(100));
            return true;
        });
}

void ApiServer::log(const std::string &function, int code, SteadyClock::time_point since) const
{
    if (!m_settings.logsRequests)
        return;
    const auto taken = std::chrono::duration_cast<std::chrono::milliseconds>(SteadyClock::now() - since);
    std::fprintf(stderr, "%s %d %lld ms\n", function.c_str(), code, static_cast<long long>(taken.count()));
}

} // namespace velmora::server
