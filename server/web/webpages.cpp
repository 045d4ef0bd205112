// The pages: sessions, tokens of forms, headers, and what several pages share.
#include "server/web/webpages.h"

#include "server/web/html.h"

namespace velmora::server {

namespace {

constexpr char cookieName[] = "velmora";

} // namespace

WebPages::WebPages(StationService &service, bool isEncrypted, Clock clock)
    : m_service(service)
    , m_isEncrypted(isEncrypted)
    , m_clock(clock)
    , m_sessions(std::move(clock), service.keptKey("forms key"))
{
}

void WebPages::addTo(http::Router &router)
{
    router.get("/style.css", [](const http::Request &) {
        http::Response response;
        response.setHeader("Cache-Control", "max-age=3600");
        response.setHeader("ETag", "\"" + std::to_string(std::hash<std::string_view>{}(html::styleSheet())) + "\"");
        response.setHeader("X-Content-Type-Options", "nosniff");
        response.setContent(html::styleSheet(), "text/css; charset=utf-8");
        return response;
    });
    router.get("/symbol.svg", [](const http::Request &) {
        http::Response response;
        response.setHeader("Cache-Control", "max-age=86400");
        response.setHeader("X-Content-Type-Options", "nosniff");
        response.setContent(html::symbol(), "image/svg+xml");
        return response;
    });
    addFront(router);
    addActivation(router);
    addSignUp(router);
    addAccount(router);
    addAccess(router);
    addHouse(router);
    addLibrary(router);
    addMails(router);
    addReset(router);
}

std::string WebPages::Visit::value(const std::string &name) const
{
    return request.parameter(name);
}

http::Handler WebPages::addedPage(std::function<void(Visitor &)> page)
{
    return [this, page = std::move(page)](const http::Request &request) {
        return visit(request, [&page](Visit &visit) {
            Visitor visitor{visit.request, visit.response, visit.session.account, tokenHash(visit.cookie), visit.csrf};
            page(visitor);
        });
    };
}

void WebPages::whenAccessEnds(std::function<void()> ended)
{
    m_accessEnded = ended;
    m_sessions.whenEnded(std::move(ended));
}

http::Response WebPages::visit(const http::Request &request, Handler handler)
{
    return visit(request, [this, handler](Visit &visit) { (this->*handler)(visit); });
}

http::Response WebPages::visit(const http::Request &request, const std::function<void(Visit &)> &handler)
{
    http::Response response;
    Visit visit{request, response, request.cookie(cookieName), {}, {}, {}};
    const bool isKnown = WebSessions::isCookie(visit.cookie);
    if (isKnown) {
        visit.session = m_sessions.find(visit.cookie);
    } else {
        visit.cookie = WebSessions::newCookie();
        setCookie(response, visit.cookie);
    }
    visit.csrf = m_sessions.formToken(visit.cookie);
    if (request.method == "POST" && (!isKnown || !equalSecrets(visit.value("csrf"), visit.csrf))) {
        show(visit, "Once more",
             html::heading("This form is too old") +
                 html::paragraph(
                     "Nothing was changed. You signed in or out in another window meanwhile, or this browser "
                     "keeps no cookies. Please open the page once more.") +
                 html::link(request.path.starts_with("/account")  ? "/account"
                            : request.path.starts_with("/remote") ? "/remote"
                                                                  : "/activate",
                            "Begin again"),
             403);
        return response;
    }
    const bool isChange = request.method == "POST" && request.path != "/account/signin" &&
                          request.path != "/account/signout" && // a browser's session is not kept
                          !request.path.starts_with("/remote");  // nor is a key that is pressed
    if (isChange && m_service.isUnderMaintenance) {
        response.setHeader("Retry-After", "600");
        show(visit, "Later",
             html::heading("Velmora is under maintenance") +
                 html::paragraph("Music plays, but nothing can be changed. Please try again later."),
             503);
        return response;
    }
    handler(visit);
    return response;
}

void WebPages::setCookie(http::Response &response, const std::string &cookie) const
{
    response.setHeader("Set-Cookie", std::string(cookieName) + "=" + cookie + "; Path=/; HttpOnly; SameSite=Strict" +
                                         (m_isEncrypted ? "; Secure" : ""));
}

void WebPages::show(Visit &visit, const std::string &title, const std::string &body, int status) const
{
    // A screen reader reads the title first.
    put(visit.response, status == 422 ? "Please check: " + title : title, body, status);
}

void WebPages::put(http::Response &response, const std::string &title, const std::string &body, int status) const
{
    response.status = status;
    response.setHeader("Content-Security-Policy",
                       "default-src 'none'; style-src 'self'; img-src 'self'; form-action 'self'; base-uri 'none'; "
                       "frame-ancestors 'none'");
    response.setHeader("X-Content-Type-Options", "nosniff");
    response.setHeader("Referrer-Policy", "no-referrer"); // a link of a mail carries its token in the address
    response.setHeader("Cache-Control", "no-store");
    response.setContent(html::render({title, body, m_isEncrypted}), "text/html; charset=utf-8");
}

http::Response WebPages::notFound() const
{
    http::Response response;
    put(response, "No such page",
        html::heading("There is no such page") + html::paragraph("The address may be mistyped, or the page has gone.") +
            html::link("/", "Home"),
        404);
    return response;
}

void WebPages::redirect(Visit &visit, const std::string &address)
{
    visit.response.status = 303;
    visit.response.setHeader("Location", address);
}

void WebPages::signIn(Visit &visit, AccountId account)
{
    visit.session.account = account;
    visit.session.since = m_clock();
    visit.session.browser = browserName(visit.request.header("User-Agent"));
    visit.session.address = visit.request.address;
    visit.cookie = m_sessions.renew(visit.cookie, visit.session);
    visit.csrf = m_sessions.formToken(visit.cookie);
    setCookie(visit.response, visit.cookie);
    // A change of the password ends the sessions that are there; this one may have come just after that.
    if (visit.checked && !m_service.accounts.hasSamePassword(*visit.checked)) {
        m_sessions.end(visit.cookie);
        visit.session.account = 0;
    }
}

std::optional<Account> WebPages::signedIn(Visit &visit)
{
    std::optional<Account> account;
    if (visit.session.account != 0)
        account = m_service.accounts.find(visit.session.account);
    if (account)
        return account;
    visit.session.account = 0;
    m_sessions.keep(visit.cookie, visit.session);
    signInPage(visit, {}, {});
    return {};
}

std::string WebPages::waitText(int seconds)
{
    return seconds == 1 ? "Too many tries. Please wait a second."
                        : "Too many tries. Please wait " + std::to_string(seconds) + " seconds.";
}

bool WebPages::checkLogin(Visit &visit, const std::string &userName, AccountId *id, std::string *problem)
{
    const Login login = m_service.accounts.login(userName, visit.value("password"), visit.request.network);
    switch (login.result) {
    case LoginResult::Done:
        *id = login.account.id;
        visit.checked = login.account;
        return true;
    case LoginResult::Wrong:
        *problem = "The e-mail address or the password is not right.";
        break;
    case LoginResult::Inactive:
        *problem = "This account is no longer active.";
        break;
    case LoginResult::TooMany:
        *problem = waitText(login.retryAfter);
        break;
    }
    return false;
}

} // namespace velmora::server
