// The pages: sessions, tokens of forms, headers, and what several pages share.
#include "server/web/webpages.h"

#include "server/web/html.h"

#include <httplib.h>

namespace velmora::server {

namespace {

constexpr char cookieName[] = "velmora";

std::string cookieOf(const httplib::Request &request)
{
    const std::string all = request.get_header_value("Cookie");
    const std::string wanted = std::string(cookieName) + "=";
    size_t at = 0;
    while (at < all.size()) {
        const size_t end = std::min(all.find(';', at), all.size());
        size_t begin = at;
        while (begin < end && all[begin] == ' ')
            ++begin;
        if (all.compare(begin, wanted.size(), wanted) == 0)
            return all.substr(begin + wanted.size(), end - begin - wanted.size());
        at = end + 1;
    }
    return {};
}

} // namespace

WebPages::WebPages(StationService &service, bool isEncrypted, Clock clock)
    : m_service(service)
    , m_isEncrypted(isEncrypted)
    , m_sessions(std::move(clock))
{
}

void WebPages::addTo(httplib::Server &server)
{
    server.Get("/style.css", [](const httplib::Request &, httplib::Response &response) {
        response.set_header("Cache-Control", "max-age=3600");
        response.set_header("X-Content-Type-Options", "nosniff");
        response.set_content(html::styleSheet(), "text/css; charset=utf-8");
    });
    server.Get("/",
               [](const httplib::Request &, httplib::Response &response) { response.set_redirect("/account", 303); });
    addActivation(server);
    addAccount(server);
    addLibrary(server);
    addReset(server);
}

std::string WebPages::Visit::value(const std::string &name) const
{
    return request.has_param(name) ? request.get_param_value(name) : std::string();
}

void WebPages::visit(const httplib::Request &request, httplib::Response &response, Handler handler)
{
    Visit visit{request, response, cookieOf(request), {}};
    const auto found = m_sessions.find(visit.cookie);
    if (found) {
        visit.session = *found;
    } else {
        visit.session = m_sessions.make(&visit.cookie);
        setCookie(response, visit.cookie);
    }
    if (request.method == "POST" && (!found || !equalSecrets(visit.value("csrf"), visit.session.csrf))) {
        show(visit, "Once more",
             html::heading("This form is too old") +
                 html::paragraph("Nothing was changed. Please fill it in once more.") +
                 html::link(request.path.rfind("/account", 0) == 0 ? "/account" : "/activate", "Begin again"),
             403);
        return;
    }
    (this->*handler)(visit);
}

void WebPages::setCookie(httplib::Response &response, const std::string &cookie) const
{
    response.headers.erase("Set-Cookie");
    response.set_header("Set-Cookie", std::string(cookieName) + "=" + cookie + "; Path=/; HttpOnly; SameSite=Strict" +
                                          (m_isEncrypted ? "; Secure" : ""));
}

void WebPages::show(Visit &visit, const std::string &title, const std::string &body, int status) const
{
    visit.response.status = status;
    visit.response.set_header("Content-Security-Policy",
                              "default-src 'none'; style-src 'self'; form-action 'self'; base-uri 'none'; "
                              "frame-ancestors 'none'");
    visit.response.set_header("X-Content-Type-Options", "nosniff");
    visit.response.set_header("Referrer-Policy", "no-referrer"); // a link of a mail carries its token in the address
    visit.response.set_header("Cache-Control", "no-store");
    visit.response.set_content(html::render({title, body, m_isEncrypted}), "text/html; charset=utf-8");
}

void WebPages::redirect(Visit &visit, const std::string &address)
{
    visit.response.set_redirect(address, 303);
}

void WebPages::signIn(Visit &visit, AccountId account)
{
    visit.session.account = account;
    visit.cookie = m_sessions.renew(visit.cookie, visit.session);
    setCookie(visit.response, visit.cookie);
    visit.session = m_sessions.find(visit.cookie).value_or(visit.session);
}

bool WebPages::checkLogin(Visit &visit, AccountId *id, std::string *problem)
{
    Account account;
    switch (
        m_service.accounts.login(visit.value("email"), visit.value("password"), visit.request.remote_addr, &account)) {
    case LoginResult::Done:
        *id = account.id;
        return true;
    case LoginResult::Wrong:
        *problem = "The e-mail address or the password is not right.";
        break;
    case LoginResult::Inactive:
        *problem = "This account is no longer active.";
        break;
    case LoginResult::TooMany:
        *problem = "Too many tries. Please wait a little.";
        break;
    }
    return false;
}

} // namespace velmora::server
