// The pages: sessions, tokens of forms, headers, and what several pages share.
#include "server/web/webpages.h"

#include "server/logging/log.h"
#include "server/web/html.h"

namespace velmora::server {

namespace {

constexpr char cookieName[] = "velmora";
constexpr char languageName[] = "language"; // of a parameter and of a cookie

// The one that was chosen, just now or earlier, else what the browser asks for.
const Language &languageFor(const http::Request &request)
{
    const Language *chosen = request.method == "GET" ? findLanguage(request.parameter(languageName)) : nullptr;
    if (!chosen)
        chosen = findLanguage(request.cookie(languageName));
    return chosen ? *chosen : acceptedLanguage(request.header("Accept-Language"));
}

// The page of a service without its database. It needs none, and sets no cookie: the browser's may still be good.
http::Response away(const WebPages &pages, const http::Request &request)
{
    http::Response response;
    response.setHeader("Retry-After", "10");
    std::string text = html::heading(say("Something is missing")) +
                       html::paragraph(say("Velmora cannot reach its database. That is usually over within a minute: "
                                           "please open the page once more then."));
    if (request.method == "POST")
        text += html::paragraph(say("What you have just sent may not be kept."));
    pages.put(response, say("Later"), text, 503, &request);
    return response;
}

} // namespace

WebPages::WebPages(StationService &service, bool isEncrypted, Clock clock)
    : m_service(service)
    , m_isEncrypted(isEncrypted)
    , m_clock(clock)
    , m_sessions(std::move(clock), service.keptKey("forms key"), &service.store)
{
    m_codeTries.share(service.store, "tries of codes");
    m_newAccounts.share(service.store, "new accounts");
    m_reminders.share(service.store, "reminders of network");
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
    for (const auto &[path, picture] : {std::pair("/symbol.svg", html::symbol()), std::pair("/logo.svg", html::logo())})
        router.get(path, [picture = picture](const http::Request &) {
            http::Response response;
            response.setHeader("Cache-Control", "max-age=86400");
            response.setHeader("X-Content-Type-Options", "nosniff");
            response.setContent(picture, "image/svg+xml");
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
    const InLanguage texts(languageFor(request));
    try {
        http::Response response;
        Visit visit{request, response, request.cookie(cookieName), {}, {}, {}};
        const bool isKnown = WebSessions::isCookie(visit.cookie);
        if (isKnown) {
            visit.session = m_sessions.find(visit.cookie);
        } else {
            visit.cookie = WebSessions::newCookie();
            setCookie(response, visit.cookie);
        }
        if (const Language *chosen = findLanguage(request.parameter(languageName)); chosen && request.method == "GET")
            response.headers.emplace_back("Set-Cookie", std::string(languageName) + "=" + chosen->code +
                                                            "; Path=/; Max-Age=31536000; HttpOnly; SameSite=Lax" +
                                                            (m_isEncrypted ? "; Secure" : ""));
        visit.csrf = m_sessions.formToken(visit.cookie);
        if (request.method == "POST" && (!isKnown || !equalSecrets(visit.value("csrf"), visit.csrf))) {
            show(visit, say("Once more"),
                 html::heading(say("This form is too old")) +
                     html::paragraph(
                         say("Nothing was changed. You signed in or out in another window meanwhile, or this browser "
                             "keeps no cookies. Please open the page once more.")) +
                     html::link(request.path.starts_with("/account")  ? "/account"
                                : request.path.starts_with("/remote") ? "/remote"
                                                                      : "/activate",
                                say("Begin again")),
                 403);
            return response;
        }
        const bool isChange = request.method == "POST" && request.path != "/account/signin" &&
                              request.path != "/account/signout" && // a browser's session is not kept
                              !request.path.starts_with("/remote"); // nor is a key that is pressed
        if (isChange && m_service.isUnderMaintenance) {
            response.setHeader("Retry-After", "600");
            show(visit, say("Later"),
                 html::heading(say("Velmora is under maintenance")) +
                     html::paragraph(say("Music plays, but nothing can be changed. Please try again later.")),
                 503);
            return response;
        }
        handler(visit);
        response.record.account = visit.session.account;
        return response;
    } catch (const StoreError &error) {
        if (!error.isUnavailable())
            throw;
        logs::warn("a page: " + std::string(error.what()), request.id);
        return away(*this, request);
    }
}

void WebPages::setCookie(http::Response &response, const std::string &cookie) const
{
    response.setHeader("Set-Cookie", std::string(cookieName) + "=" + cookie + "; Path=/; HttpOnly; SameSite=Strict" +
                                         (m_isEncrypted ? "; Secure" : ""));
}

void WebPages::show(Visit &visit, const std::string &title, const std::string &body, int status) const
{
    // A screen reader reads the title first.
    put(visit.response, status == 422 ? say("Please check: {1}", title) : title, body, status, &visit.request);
}

void WebPages::put(http::Response &response, const std::string &title, const std::string &body, int status,
                   const http::Request *request) const
{
    html::Page page{title, body, m_isEncrypted};
    if (request && request->method == "GET") {
        page.path = request->path;
        page.query = request->query;
    }
    response.status = status;
    response.setHeader("Content-Security-Policy",
                       "default-src 'none'; style-src 'self'; img-src 'self'; form-action 'self'; base-uri 'none'; "
                       "frame-ancestors 'none'");
    response.setHeader("X-Content-Type-Options", "nosniff");
    response.setHeader("Referrer-Policy", "no-referrer"); // a link of a mail carries its token in the address
    response.setHeader("Cache-Control", "no-store");
    response.setContent(html::render(page), "text/html; charset=utf-8");
}

http::Response WebPages::notFound(const http::Request &request) const
{
    const InLanguage texts(languageFor(request));
    http::Response response;
    put(response, say("No such page"),
        html::heading(say("There is no such page")) +
            html::paragraph(say("The address may be mistyped, or the page has gone.")) +
            html::nextStep("/", say("Home")),
        404, &request);
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
    return sayMany("Too many tries. Please wait a second.", "Too many tries. Please wait {1} seconds.", seconds);
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
        *problem = say("The e-mail address or the password is not right.");
        break;
    case LoginResult::Inactive:
        *problem = say("This account is no longer active.");
        break;
    case LoginResult::TooMany:
        *problem = waitText(login.retryAfter);
        break;
    }
    return false;
}

} // namespace velmora::server
