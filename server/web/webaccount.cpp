// The account page: who is signed in, which radios have access, one's data and the end of the account.
#include "server/accounts/personaldata.h"
#include "server/accounts/secrets.h"
#include "server/web/html.h"
#include "server/web/webpages.h"

#include <algorithm>
#include <array>
#include <ctime>

namespace velmora::server {

namespace {

// Where a form or a page leads after a new sign-in.
struct Return {
    const char *path;
    const char *page;
    bool isSentAgain; // the person may send it again: it has no password
};
constexpr std::array returns = {Return{"/account/radio", "/account", true},
                                Return{"/account/revoke", "/account", true},
                                Return{"/account/session", "/account/access", false},
                                Return{"/account/address", "/account/access", false},
                                Return{"/account/password", "/account/access", false},
                                Return{"/account/access", "/account/access", false},
                                Return{"/account/filter", "/account/children", false},
                                Return{"/account/pin", "/account/children", false},
                                Return{"/account/pin-rescue", "/account/children", false},
                                Return{"/account/children", "/account/children", false},
                                Return{"/account/data", "/account/data", false},
                                Return{"/account/delete", "/account/delete", false},
                                Return{"/house", "/house", false},
                                Return{"/house/sign-ups", "/house", true},
                                Return{"/house/invite", "/house", true},
                                Return{"/house/invitation", "/house", true},
                                Return{"/house/ads", "/house", true},
                                Return{"/library", "/library", false},
                                Return{"/library/pause", "/library", true},
                                Return{"/library/rescan", "/library", true},
                                Return{"/library/mails", "/library/mails", false},
                                Return{"/library/mails/forget", "/library/mails", true},
                                Return{"/remote", "/remote", false}};

const Return *findReturn(const std::string &path)
{
    const auto *found = std::find_if(returns.begin(), returns.end(), [&](const Return &r) { return path == r.path; });
    return found == returns.end() ? nullptr : found;
}

// Fields that survive a sign-in; none of them is a secret.
constexpr std::array keptFields = {"device", "name",       "action",  "rule",   "lists",
                                   "guest",  "invitation", "address", "paused", "mail"};

std::string keptName(const std::string &field)
{
    return "kept-" + field;
}

} // namespace

void WebPages::addAccount(http::Router &router)
{
    const auto page = [this](Handler handler) {
        return [this, handler](const http::Request &request) { return visit(request, handler); };
    };
    router.get("/account", page(&WebPages::showAccount));
    router.post("/account/signin", mostFormBytes, page(&WebPages::takeSignIn), http::Lane::Passwords);
    router.post("/account/signout", mostFormBytes, page(&WebPages::takeSignOut));
    router.post("/account/radio", mostFormBytes, page(&WebPages::takeRadio));
    router.get("/account/data", page(&WebPages::showData));
    router.post("/account/data", mostFormBytes, page(&WebPages::takeData), http::Lane::Passwords);
    router.get("/account/delete", page(&WebPages::showLeave));
    router.post("/account/delete", mostFormBytes, page(&WebPages::takeLeave), http::Lane::Passwords);
    router.post("/account/revoke", mostFormBytes, page(&WebPages::takeRevoke));
}

void WebPages::signInPage(Visit &visit, const std::string &problem, const std::string &userName, int status)
{
    const bool isSignIn = visit.request.path == "/account/signin";
    const bool isExpired = visit.request.method == "POST" && !isSignIn;
    const std::string returnTo = isSignIn ? visit.value("to") : visit.request.path;
    std::string kept; // what was sent comes along
    if (findReturn(returnTo)) {
        kept = html::hidden("to", returnTo);
        for (const char *name : keptFields) {
            const std::string value = visit.value(isSignIn ? keptName(name) : name);
            if (!value.empty() && visit.request.method == "POST")
                kept += html::hidden(keptName(name), value);
        }
    }
    show(visit, say("Sign in"),
         html::heading(say("Your account")) +
             (isExpired
                  ? html::warning(say("You were signed out, because this page was not used for half an hour. Nothing "
                                      "was changed, and nothing that you typed is lost, but for passwords. Please "
                                      "sign in to go on."))
                  : std::string()) +
             html::form("/account/signin", visit.csrf,
                        kept +
                            html::field({.name = "email",
                                         .label = say("E-mail address"),
                                         .type = "email",
                                         .value = userName,
                                         .autocomplete = "username",
                                         .hint = {},
                                         .isFirst = problem.empty(),
                                         .inputMode = "email",
                                         .problem = {},
                                         .form = {}}) +
                            html::passwordField(say("Password"), problem) + html::button(say("Sign in"))) +
             html::link("/forgot", say("Forgotten your password?")) +
             (maySignUp(visit) ? html::link("/sign-up", say("Make an account")) : std::string()) +
             html::link("/activate", say("Activate a radio")),
         status);
}

void WebPages::devicesPage(Visit &visit, const std::string &problem, int status)
{
    const auto account = signedIn(visit);
    if (!account)
        return;
    std::string body = html::heading(say("Your account")) + html::paragraph(account->userName) + html::error(problem) +
                       html::subheading(say("Radios with access"));
    const auto devices = m_service.devices.ofAccount(account->id);
    if (devices.empty())
        body += html::paragraph(say("None."));
    for (const Device &device : devices)
        body += html::form("/account/radio", visit.csrf,
                           html::hidden("device", device.deviceId) +
                               html::field({.name = "name",
                                            .label = say("Name"),
                                            .type = "text",
                                            .value = device.name,
                                            .autocomplete = "off",
                                            .hint = say("{1}, since {2}", device.deviceId, sayDay(device.associatedAt)),
                                            .isOptional = true,
                                            .inputMode = {},
                                            .problem = {},
                                            .form = device.deviceId}) +
                               html::plainButton(say("Rename"), "action", "rename") +
                               html::plainButton(say("Remove"), "action", "remove"));
    std::vector<html::Option> links;
    if (!devices.empty())
        links.push_back({"/remote", say("Remote control")});
    links.insert(links.end(), {{"/activate", say("Activate a radio")},
                               {"/account/access", say("E-mail address, password and browsers")},
                               {"/account/children", say("Children")},
                               {"/account/data", say("Your data")}});
    if (account->id == m_service.house.owner()) {
        links.push_back({"/house", say("This service")});
        links.push_back({"/library", say("The music")});
    }
    body += html::menu(say("Your account"), links) +
            html::form("/account/signout", visit.csrf, html::plainButton(say("Sign out"), {}, {}));
    show(visit, say("Your account"), body, status);
}

void WebPages::showAccount(Visit &visit)
{
    devicesPage(visit, {});
}

void WebPages::takeSignIn(Visit &visit)
{
    AccountId id = 0;
    std::string problem;
    if (!checkLogin(visit, visit.value("email"), &id, &problem)) {
        signInPage(visit, problem, visit.value("email"), 422);
        return;
    }
    signIn(visit, id);
    returnFromSignIn(visit);
}

void WebPages::returnFromSignIn(Visit &visit)
{
    const Return *back = findReturn(visit.value("to"));
    if (!back) {
        redirect(visit, "/account");
        return;
    }
    if (std::string_view(back->path) == "/account/address") {
        accessPage(visit, {.address = visit.value(keptName("address"))});
        return;
    }
    if (!back->isSentAgain) {
        redirect(visit, back->page);
        return;
    }
    std::string fields;
    for (const char *name : keptFields) {
        const std::string value = visit.value(keptName(name));
        if (value.empty())
            continue;
        fields += html::hidden(name, value);
        const bool isForReading = std::string_view(name) == "name" || std::string_view(name) == "guest";
        if (isForReading)
            fields += html::paragraph(value);
    }
    show(visit, say("You are signed in"),
         html::heading(say("You are signed in again")) + html::paragraph(say("Your change was not made yet.")) +
             html::form(back->path, visit.csrf, fields + html::button(say("Change it now"))) +
             html::link(back->page, say("Leave it as it is")));
}

void WebPages::takeSignOut(Visit &visit)
{
    m_sessions.end(visit.cookie);
    redirect(visit, "/account");
}

std::optional<Account> WebPages::withPassword(Visit &visit, ProblemPage refused)
{
    auto account = signedIn(visit);
    if (!account)
        return {};
    AccountId checked = 0;
    std::string problem;
    if (checkLogin(visit, account->userName, &checked, &problem))
        return account;
    (this->*refused)(visit, problem, 422);
    return {};
}

void WebPages::takeRadio(Visit &visit)
{
    const auto account = signedIn(visit);
    if (!account)
        return;
    const std::string device = visit.value("device");
    if (visit.value("action") != "remove") {
        const bool isDone = m_service.devices.rename(account->id, device, visit.value("name"));
        devicesPage(visit, isDone ? "" : say("A name has 40 letters at most, and the radio must be yours."),
                    isDone ? 200 : 422);
        return;
    }
    const auto devices = m_service.devices.ofAccount(account->id);
    const auto found =
        std::find_if(devices.begin(), devices.end(), [&](const Device &d) { return d.deviceId == device; });
    if (found == devices.end()) {
        devicesPage(visit, say("There is no such radio."), 422);
        return;
    }
    show(visit, say("Remove this radio?"),
         html::heading(say("Remove this radio?")) +
             html::fact(say("Radio"), found->name.empty() ? device : found->name) +
             html::paragraph(say("It no longer plays your stations. Your stations and thumbs stay.")) +
             html::form("/account/revoke", visit.csrf,
                        html::hidden("device", device) + html::dangerButton(say("Remove"))) +
             html::link("/account", say("Keep it")));
}

void WebPages::dataPage(Visit &visit, const std::string &problem, int status)
{
    if (!signedIn(visit))
        return;
    show(visit, say("Your data"),
         html::heading(say("Your data")) + html::error(problem) +
             html::paragraph(say("Everything that is stored about you, in one file.")) +
             html::form("/account/data", visit.csrf, html::button(say("Download"), "format", "json")) +
             html::link("/account/delete", say("Delete the account")) + html::link("/account", say("Your account")),
         status);
}

void WebPages::showData(Visit &visit)
{
    dataPage(visit, {});
}

void WebPages::takeData(Visit &visit)
{
    if (!signedIn(visit))
        return;
    const std::filesystem::path path = m_service.dataDirectory() / ("personal-" + randomToken(12) + ".json");
    const bool isWritten = PersonalData(m_service.store, m_service.catalogueStore).write(visit.session.account, path);
    const auto file = isWritten ? http::File::open(path) : nullptr;
    std::error_code ignored;
    std::filesystem::remove(path, ignored); // it lives as long as it is sent
    if (!file) {
        dataPage(visit, say("The file could not be made. Please try again later."), 503);
        return;
    }
    visit.response.setFile(file, "application/json");
    visit.response.setHeader("Content-Disposition", "attachment; filename=\"velmora-data.json\"");
    visit.response.setHeader("Cache-Control", "no-store");
    visit.response.setHeader("X-Content-Type-Options", "nosniff");
}

void WebPages::leavePage(Visit &visit, const std::string &problem, int status)
{
    show(visit, say("Delete the account?"),
         html::heading(say("Delete the account?")) +
             html::warning(say("Stations, thumbs, bookmarks and all that was played are gone at once and for good. The "
                               "radios of the account stop playing.")) +
             (isOwner(visit) ? html::warning(say("This account owns the service: the next oldest one will own it."))
                             : std::string()) +
             html::form("/account/delete", visit.csrf,
                        html::passwordField(say("Password"), problem) + html::dangerButton(say("Delete everything"))) +
             html::link("/account", say("Keep it")),
         status);
}

void WebPages::showLeave(Visit &visit)
{
    if (signedIn(visit))
        leavePage(visit, {});
}

void WebPages::takeLeave(Visit &visit)
{
    const auto account = withPassword(visit, &WebPages::leavePage);
    if (!account)
        return;
    PersonalData(m_service.store, m_service.catalogueStore).remove(account->id);
    for (const KeptMail &mail : m_service.mailer ? m_service.mailer->kept() : std::vector<KeptMail>()) {
        if (mail.recipient == account->userName)
            m_service.mailer->forget(mail.name);
    }
    m_sessions.endOfAccount(account->id, {});
    show(visit, say("Gone"),
         html::heading(say("The account is gone")) + html::paragraph(say("Nothing of it is left.")) +
             html::link("/activate", say("Activate a radio")));
}

void WebPages::takeRevoke(Visit &visit)
{
    if (!signedIn(visit))
        return;
    // This also ends the radio's tokens and its key.
    const bool isDone = m_service.devices.revoke(visit.session.account, visit.value("device"));
    m_accessEnded();
    devicesPage(visit, isDone ? "" : say("There is no such radio."), isDone ? 200 : 422);
}

} // namespace velmora::server
