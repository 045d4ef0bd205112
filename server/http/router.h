#pragma once

#include "server/http/message.h"

#include <functional>

namespace velmora::server::http {

// Called on a worker's thread. What it throws is answered with 500.
using Handler = std::function<Response(const Request &)>;

struct Route {
    std::string method; // GET answers HEAD too
    std::string path;   // "/media/*/*": an asterisk ends a piece and matches what follows in it
    Handler handler;
    size_t mostBody = 0; // bytes; more is refused before it is read
    Lane lane = Lane::Functions;
};

// Filled before the server starts, unchanged afterwards.
class Router {
public:
    void get(std::string path, Handler handler, Lane lane = Lane::Functions);
    void post(std::string path, size_t mostBody, Handler handler, Lane lane = Lane::Functions);
    // The first route that matches, or null. Sets the request's pieces.
    const Route *find(Request &request) const;

private:
    std::vector<Route> m_routes;
};

} // namespace velmora::server::http
