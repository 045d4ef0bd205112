// The account page: who is signed in, which radios have access, a new password.
#include "server/web/html.h"
#include "server/web/webpages.h"

#include <ctime>

namespace velmora::server {

namespace {

std::string day(int64_t seconds)
{
    const std::time_t time = seconds;
    std::tm parts{};
    ::gmtime_r(&time, &parts);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d", &parts);
    return text;
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
    router.post("/account/revoke", mostFormBytes, page(&WebPages::takeRevoke));
    router.post("/account/password", mostFormBytes, page(&WebPages::takePassword), http::Lane::Passwords);
}

void WebPages::signInPage(Visit &visit, const std::string &problem, const std::string &userName, int status)
{
    show(visit, "Sign in",
         html::heading("Your account") + html::error(problem) +
             html::form("/account/signin", visit.csrf,
                        html::emailField(userName) + html::passwordField("Password") + html::button("Sign in")) +
             html::link("/forgot", "Forgotten your password?") + html::link("/activate", "Activate a radio"),
         status);
}

void WebPages::devicesPage(Visit &visit, const std::string &problem, int status)
{
    const auto account = m_service.accounts.find(visit.session.account);
    if (!account) {
        visit.session.account = 0;
        m_sessions.keep(visit.cookie, visit.session);
        signInPage(visit, {}, {});
        return;
    }
    std::string body = html::heading("Your account") + html::paragraph(account->userName) + html::error(problem) +
                       "<h2>Radios with access</h2>\n";
    const auto devices = m_service.devices.ofAccount(account->id);
    if (devices.empty())
        body += html::paragraph("None.");
    for (const Device &device : devices) {
        body += html::form("/account/revoke", visit.csrf,
                           "<div class=\"device\">" +
                               html::paragraph(device.deviceId + ", since " + day(device.associatedAt)) +
                               html::plainButton("Remove", "device", device.deviceId) + "</div>");
    }
    if (isOwner(visit))
        body += html::link("/library", "The music") + html::link("/library/mails", "Waiting mails");
    body += html::link("/activate", "Activate a radio") + "<h2>A new password</h2>\n" +
            html::form("/account/password", visit.csrf,
                       html::passwordField("Password now") + html::newPasswordField("new", "New password") +
                           html::checkBox("keep", "Keep my radios signed in") + html::button("Change")) +
            html::form("/account/signout", visit.csrf, html::button("Sign out"));
    show(visit, "Your account", body, status);
}

void WebPages::showAccount(Visit &visit)
{
    if (visit.session.account == 0)
        signInPage(visit, {}, {});
    else
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
    redirect(visit, "/account");
}

void WebPages::takeSignOut(Visit &visit)
{
    m_sessions.end(visit.cookie);
    redirect(visit, "/account");
}

void WebPages::takeRevoke(Visit &visit)
{
    if (visit.session.account == 0) {
        signInPage(visit, {}, {});
        return;
    }
    // This also ends the radio's tokens and its key.
    const bool isDone = m_service.devices.revoke(visit.session.account, visit.value("device"));
    devicesPage(visit, isDone ? "" : "There is no such radio.", isDone ? 200 : 422);
}

void WebPages::takePassword(Visit &visit)
{
    const auto account = m_service.accounts.find(visit.session.account);
    if (!account) {
        signInPage(visit, {}, {});
        return;
    }
    AccountId checked = 0;
    std::string problem;
    if (!checkLogin(visit, account->userName, &checked, &problem)) {
        devicesPage(visit, problem, 422);
        return;
    }
    const Radios radios = visit.value("keep") == "1" ? Radios::Keep : Radios::End;
    if (m_service.accounts.changePassword(account->id, visit.value("new"), radios) != CreateResult::Done) {
        devicesPage(visit, "The new password needs at least eight characters.", 422);
        return;
    }
    m_sessions.endOfAccount(account->id, visit.cookie);
    show(visit, "Done",
         html::heading("The password was changed") +
             html::paragraph(radios == Radios::Keep
                                 ? "Other browsers were signed out. The radios were kept."
                                 : "Other browsers and all radios were signed out. Activate each radio again.") +
             html::link("/account", "Your account"));
}

} // namespace velmora::server
