#include "server/http/router.h"

namespace velmora::server::http {

namespace {

bool matches(std::string_view pattern, std::string_view path, std::vector<std::string> *pieces)
{
    pieces->clear();
    while (!pattern.empty()) {
        const size_t star = std::min(pattern.find('*'), pattern.size());
        if (path.substr(0, star) != pattern.substr(0, star))
            return false;
        path.remove_prefix(star);
        pattern.remove_prefix(star);
        if (pattern.empty())
            break;
        const std::string_view piece = path.substr(0, path.find('/'));
        if (piece.empty())
            return false;
        pieces->emplace_back(piece);
        path.remove_prefix(piece.size());
        pattern.remove_prefix(1);
    }
    return path.empty();
}

} // namespace

void Router::get(std::string path, Handler handler, Lane lane)
{
    m_routes.push_back({"GET", std::move(path), std::move(handler), 0, lane});
}

void Router::post(std::string path, size_t mostBody, Handler handler, Lane lane)
{
    m_routes.push_back({"POST", std::move(path), std::move(handler), mostBody, lane});
}

const Route *Router::find(Request &request) const
{
    const std::string_view method = request.method == "HEAD" ? "GET" : std::string_view(request.method);
    for (const Route &route : m_routes) {
        if (route.method == method && matches(route.path, request.path, &request.pieces))
            return &route;
    }
    request.pieces.clear();
    return nullptr;
}

} // namespace velmora::server::http
