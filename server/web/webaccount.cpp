// The account page: who is signed in, which radios have access, a new password, one's data and the end of the account.
#include "server/accounts/personaldata.h"
#include "server/accounts/secrets.h"
#include "server/web/html.h"
#include "server/web/webpages.h"

#include <algorithm>
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
    router.post("/account/radio", mostFormBytes, page(&WebPages::takeRadio));
    router.post("/account/data", mostFormBytes, page(&WebPages::takeData), http::Lane::Passwords);
    router.get("/account/delete", page(&WebPages::showLeave));
    router.post("/account/delete", mostFormBytes, page(&WebPages::takeLeave), http::Lane::Passwords);
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
    for (const Device &device : devices)
        body += html::form("/account/radio", visit.csrf,
                           html::hidden("device", device.deviceId) +
                               html::field({.name = "name",
                                            .label = "Name",
                                            .type = "text",
                                            .value = device.name,
                                            .autocomplete = "off",
                                            .hint = device.deviceId + ", since " + day(device.associatedAt),
                                            .isOptional = true,
                                            .inputMode = {},
                                            .problem = {},
                                            .form = device.deviceId}) +
                               html::plainButton("Rename", "action", "rename") +
                               html::plainButton("Remove", "action", "remove"));
    if (isOwner(visit))
        body += html::link("/library", "The music") + html::link("/library/mails", "Waiting mails");
    body += html::link("/activate", "Activate a radio") + "<h2>A new password</h2>\n" +
            html::form("/account/password", visit.csrf,
                       html::passwordField("Password now") + html::newPasswordField("new", "New password") +
                           html::checkBox("keep", "Keep my radios signed in") + html::button("Change")) +
            html::form("/account/signout", visit.csrf, html::button("Sign out")) + "<h2>Your data</h2>\n" +
            html::form("/account/data", visit.csrf,
                       html::paragraph("Everything that is stored about you, in one file.") +
                           html::plainButton("Download", "format", "json")) +
            html::link("/account/delete", "Delete the account");
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

std::optional<Account> WebPages::withPassword(Visit &visit, ProblemPage refused)
{
    auto account = m_service.accounts.find(visit.session.account);
    if (!account) {
        signInPage(visit, {}, {});
        return {};
    }
    AccountId checked = 0;
    std::string problem;
    if (checkLogin(visit, account->userName, &checked, &problem))
        return account;
    (this->*refused)(visit, problem, 422);
    return {};
}

void WebPages::takeRadio(Visit &visit)
{
    const auto account = m_service.accounts.find(visit.session.account);
    if (!account) {
        signInPage(visit, {}, {});
        return;
    }
    const std::string device = visit.value("device");
    if (visit.value("action") != "remove") {
        const bool isDone = m_service.devices.rename(account->id, device, visit.value("name"));
        devicesPage(visit, isDone ? "" : "A name has 40 letters at most, and the radio must be yours.",
                    isDone ? 200 : 422);
        return;
    }
    const auto devices = m_service.devices.ofAccount(account->id);
    const auto found =
        std::find_if(devices.begin(), devices.end(), [&](const Device &d) { return d.deviceId == device; });
    if (found == devices.end()) {
        devicesPage(visit, "There is no such radio.", 422);
        return;
    }
    show(visit, "Remove this radio?",
         html::heading("Remove this radio?") + html::fact("Radio", found->name.empty() ? device : found->name) +
             html::paragraph("It no longer plays your stations. Your stations and thumbs stay.") +
             html::form("/account/revoke", visit.csrf, html::hidden("device", device) + html::button("Remove")) +
             html::link("/account", "Keep it"));
}

void WebPages::takeData(Visit &visit)
{
    if (visit.session.account == 0) {
        signInPage(visit, {}, {});
        return;
    }
    const std::filesystem::path path = m_service.dataDirectory() / ("personal-" + randomToken(12) + ".json");
    const bool isWritten = PersonalData(m_service.store).write(visit.session.account, path);
    const auto file = isWritten ? http::File::open(path) : nullptr;
    std::error_code ignored;
    std::filesystem::remove(path, ignored); // it lives as long as it is sent
    if (!file) {
        devicesPage(visit, "The file could not be made. Please try again later.", 503);
        return;
    }
    visit.response.setFile(file, "application/json");
    visit.response.setHeader("Content-Disposition", "attachment; filename=\"velmora-data.json\"");
    visit.response.setHeader("Cache-Control", "no-store");
    visit.response.setHeader("X-Content-Type-Options", "nosniff");
}

void WebPages::leavePage(Visit &visit, const std::string &problem, int status)
{
    show(visit, "Delete the account?",
         html::heading("Delete the account?") + html::error(problem) +
             html::warning("Stations, thumbs, bookmarks and all that was played are gone at once and for good. The "
                           "radios of the account stop playing.") +
             (isOwner(visit) ? html::warning("This account owns the service: the next oldest one will own it.")
                             : std::string()) +
             html::form("/account/delete", visit.csrf,
                        html::passwordField("Password") + html::button("Delete everything")) +
             html::link("/account", "Keep it"),
         status);
}

void WebPages::showLeave(Visit &visit)
{
    if (visit.session.account == 0)
        signInPage(visit, {}, {});
    else
        leavePage(visit, {});
}

void WebPages::takeLeave(Visit &visit)
{
    const auto account = withPassword(visit, &WebPages::leavePage);
    if (!account)
        return;
    PersonalData(m_service.store).remove(account->id);
    for (const KeptMail &mail : m_service.mailer ? m_service.mailer->kept() : std::vector<KeptMail>()) {
        if (mail.recipient == account->userName)
            m_service.mailer->forget(mail.name);
    }
    m_sessions.endOfAccount(account->id, {});
    show(visit, "Gone",
         html::heading("The account is gone") + html::paragraph("Nothing of it is left.") +
             html::link("/activate", "Activate a radio"));
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
    const auto account = withPassword(visit, &WebPages::devicesPage);
    if (!account)
        return;
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
