#include "server/remote/remote.h"

#include "server/remote/remotemarkup.h"

namespace velmora::server {

Remote::Remote(StationService &service, WebPages &pages, RemoteHub::Now now)
    : m_service(service)
    , m_pages(pages)
    , m_hub(std::move(now), &service.store)
{
    m_pages.whenAccessEnds([this] { m_hub.askEverybody(); });
}

void Remote::addTo(http::Router &router)
{
    constexpr size_t mostOrderBytes = 4 * 1024;
    constexpr size_t mostFormBytes = 16 * 1024;
    router.post("/v1/remoteOrders", mostOrderBytes,
                [this](const http::Request &request) { return takeOrders(request); });
    router.post("/v1/remoteReport", RadioState::mostBytes,
                [this](const http::Request &request) { return takeReport(request); });
    router.get("/remote", m_pages.addedPage([this](Visitor &visitor) { showPage(visitor); }));
    router.get("/remote/state", m_pages.addedPage([this](Visitor &visitor) { tellState(visitor); }));
    router.post("/remote/press", mostFormBytes, m_pages.addedPage([this](Visitor &visitor) { press(visitor); }));
    const auto file = [&router](const char *path, const char *content, const char *type) {
        router.get(path, [content, type](const http::Request &) {
            http::Response response;
            response.setHeader("Cache-Control", "no-cache");
            response.setHeader("ETag", "\"" + std::to_string(std::hash<std::string_view>{}(content)) + "\"");
            response.setHeader("X-Content-Type-Options", "nosniff");
            response.setContent(content, type);
            return response;
        });
    };
    file("/remote.css", remotepage::styleSheet(), "text/css; charset=utf-8");
    file("/remote.js", remotepage::script(), "text/javascript; charset=utf-8");
}

} // namespace velmora::server
