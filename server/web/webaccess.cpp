// How a person signs in and from where: e-mail address, password, browsers. What children hear: the filter and its PIN.
#include "server/accounts/mailaddress.h"
#include "server/web/html.h"
#include "server/web/webpages.h"

namespace velmora::server {

void WebPages::addAccess(http::Router &router)
{
    const auto page = [this](Handler handler) {
        return [this, handler](const http::Request &request) { return visit(request, handler); };
    };
    router.get("/account/access", page(&WebPages::showAccess));
    router.post("/account/password", mostFormBytes, page(&WebPages::takePassword), http::Lane::Passwords);
    router.post("/account/address", mostFormBytes, page(&WebPages::takeAddress), http::Lane::Passwords);
    router.post("/account/session", mostFormBytes, page(&WebPages::takeSession));
    router.get("/account/children", page(&WebPages::showChildren));
    router.post("/account/filter", mostFormBytes, page(&WebPages::takeFilter), http::Lane::Passwords);
    router.post("/account/pin", mostFormBytes, page(&WebPages::takeNewPin), http::Lane::Passwords);
    router.post("/account/pin-rescue", mostFormBytes, page(&WebPages::takePinRescue));
}

void WebPages::accessPage(Visit &visit, const AccessForms &forms, int status)
{
    const auto account = signedIn(visit);
    if (!account)
        return;
    std::string body = html::heading("E-mail address, password and browsers") + html::done(forms.said) +
                       html::error(forms.problem) + html::subheading("Browsers that are signed in");
    const std::vector<OpenSession> sessions = m_sessions.ofAccount(account->id, visit.cookie);
    for (const OpenSession &open : sessions) {
        const std::string name = open.session.browser.empty() ? "A browser" : open.session.browser;
        body += html::form("/account/session", visit.csrf,
                           html::fact("Browser", name) + html::fact("Address", open.session.address) +
                               html::fact("Signed in", html::timeText(open.session.since)) +
                               html::fact("Last used", html::timeText(open.session.lastUsed)) +
                               (open.isThisBrowser
                                    ? html::paragraph("This is the browser that you use now.")
                                    : html::hidden("session", open.id) + html::plainButton("Sign it out", {}, {})));
    }
    if (sessions.size() > 1)
        body += html::form("/account/session", visit.csrf, html::plainButton("Sign all others out", "session", "*"));
    body += html::subheading("Your e-mail address") + html::paragraph(account->userName) +
            html::form("/account/address", visit.csrf,
                       html::field({.name = "address",
                                    .label = "New e-mail address",
                                    .type = "email",
                                    .value = forms.address,
                                    .autocomplete = "section-address email",
                                    .hint = "A mail to it has a link, which makes the change.",
                                    .inputMode = "email",
                                    .problem = forms.addressWrong,
                                    .form = "address"}) +
                           html::passwordField("Password", forms.addressSecretWrong, "address") +
                           html::button("Send the mail")) +
            html::subheading("A new password") +
            html::form("/account/password", visit.csrf,
                       html::passwordField("Password now", forms.secretWrong, "now") +
                           html::newPasswordField("new", "New password", forms.freshWrong) +
                           html::checkBox("keep", "Keep my radios signed in") + html::button("Change")) +
            html::link("/account", "Your account");
    show(visit, "E-mail address, password and browsers", body, status);
}

void WebPages::showAccess(Visit &visit)
{
    accessPage(visit, {});
}

void WebPages::takePassword(Visit &visit)
{
    const auto account = signedIn(visit);
    if (!account)
        return;
    AccountId checked = 0;
    std::string problem;
    if (!checkLogin(visit, account->userName, &checked, &problem)) {
        accessPage(visit, {.secretWrong = problem}, 422);
        return;
    }
    const Radios radios = visit.value("keep") == "1" ? Radios::Keep : Radios::End;
    if (m_service.accounts.changePassword(account->id, visit.value("new"), radios) != CreateResult::Done) {
        accessPage(visit, {.freshWrong = "The new password needs at least eight characters."}, 422);
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

void WebPages::takeAddress(Visit &visit)
{
    const auto account = signedIn(visit);
    if (!account)
        return;
    const std::string address = visit.value("address");
    AccountId checked = 0;
    std::string problem;
    if (!isMailAddress(address)) {
        accessPage(visit, {.address = address, .addressWrong = "This is not an e-mail address."}, 422);
        return;
    }
    if (!checkLogin(visit, account->userName, &checked, &problem)) {
        accessPage(visit, {.address = address, .addressSecretWrong = problem}, 422);
        return;
    }
    const bool isTooMany = m_reminders.refuse(visit.request.network, m_clock()).has_value();
    if (isTooMany || !m_service.changeAddress(account->id, address)) {
        accessPage(visit,
                   {.address = address, .addressWrong = "No mail can be sent at the moment. Please try again later."},
                   503);
        return;
    }
    // Whether there is an account with this address is for the mail alone to say.
    show(visit, "Look into your mail",
         html::heading("Look into your mail") +
             html::paragraph("A mail to " + address + " says how to go on. Its link opens once, within one hour.") +
             noMailHint() + html::link("/account", "Your account"));
}

void WebPages::takeSession(Visit &visit)
{
    const auto account = signedIn(visit);
    if (!account)
        return;
    const std::string id = visit.value("session");
    if (id == "*")
        m_sessions.endOfAccount(account->id, visit.cookie);
    else if (!m_sessions.endOne(account->id, id)) {
        accessPage(visit, {.problem = "This browser is signed out already."}, 422);
        return;
    }
    accessPage(visit, {.said = id == "*" ? "All others were signed out." : "The browser was signed out."});
}

void WebPages::childrenPage(Visit &visit, const ChildrenForms &forms, int status)
{
    const auto account = signedIn(visit);
    if (!account)
        return;
    const bool hasPin = account->hasExplicitPin;
    std::string body = html::heading("Children") + html::done(forms.said) +
                       html::paragraph("Songs that are marked as explicit do not play on the radios of this account "
                                       "when they are left out. A PIN keeps that from being changed.") +
                       html::form("/account/filter", visit.csrf,
                                  html::checkBox("on", "Leave out explicit songs", account->isExplicitFilterOn) +
                                      (hasPin ? html::pinField("pin", "PIN", forms.filterWrong, "filter")
                                              : html::error(forms.filterWrong)) +
                                      html::button("Save")) +
                       html::subheading(hasPin ? "Another PIN" : "A PIN") +
                       html::form("/account/pin", visit.csrf,
                                  (hasPin ? html::pinField("pin", "PIN now", forms.oldWrong, "old") : std::string()) +
                                      html::pinField("new", "New PIN", forms.newWrong, "new") +
                                      html::button("Set the PIN", "action", "set"));
    if (hasPin)
        body += html::subheading("No PIN") +
                html::form("/account/pin", visit.csrf,
                           html::pinField("pin", "PIN", forms.removeWrong, "remove") +
                               html::plainButton("Remove the PIN", "action", "remove")) +
                html::subheading("Forgotten the PIN?") +
                html::form("/account/pin-rescue", visit.csrf,
                           html::paragraph("A mail to " + account->userName + " has a link that sets a new one.") +
                               html::plainButton("Send the mail", {}, {}));
    show(visit, "Children", body + html::link("/account", "Your account"), status);
}

void WebPages::showChildren(Visit &visit)
{
    childrenPage(visit, {});
}

std::string WebPages::pinProblem(Visit &visit, const Account &account)
{
    const Login login = m_service.accounts.checkExplicitPin(account.id, visit.value("pin"), visit.request.network);
    switch (login.result) {
    case LoginResult::Done:
        return {};
    case LoginResult::TooMany:
        return waitText(login.retryAfter);
    default:
        return "The PIN is not right.";
    }
}

void WebPages::takeFilter(Visit &visit)
{
    const auto account = signedIn(visit);
    if (!account)
        return;
    if (const std::string problem = pinProblem(visit, *account); !problem.empty()) {
        childrenPage(visit, {.filterWrong = problem}, 422);
        return;
    }
    const bool isOn = visit.value("on") == "1";
    m_service.accounts.setExplicitFilter(account->id, isOn);
    childrenPage(visit, {.said = isOn ? "Explicit songs are left out from now on." : "Every song may play."});
}

void WebPages::takeNewPin(Visit &visit)
{
    const auto account = signedIn(visit);
    if (!account)
        return;
    const bool isRemoved = visit.value("action") == "remove";
    if (!isRemoved && !Accounts::isPin(visit.value("new"))) {
        childrenPage(visit, {.newWrong = "A PIN has four to eight digits."}, 422);
        return;
    }
    if (const std::string problem = pinProblem(visit, *account); !problem.empty()) {
        childrenPage(visit, {.oldWrong = isRemoved ? "" : problem, .removeWrong = isRemoved ? problem : ""}, 422);
        return;
    }
    m_service.accounts.setExplicitPin(account->id, isRemoved ? std::string() : visit.value("new"));
    childrenPage(visit, {.said = isRemoved ? "There is no PIN any more." : "The PIN was set."});
}

void WebPages::takePinRescue(Visit &visit)
{
    const auto account = signedIn(visit);
    if (!account)
        return;
    if (!m_service.mailer || m_reminders.refuse(visit.request.network, m_clock())) {
        childrenPage(visit, {.said = "No mail can be sent at the moment. Please try again later."}, 503);
        return;
    }
    m_service.mailer->sendPinRescue(account->userName,
                                    m_service.accounts.issueReset(account->id, pinPurpose, resetSeconds));
    show(visit, "Look into your mail",
         html::heading("Look into your mail") +
             html::paragraph("A mail to " + account->userName + " has a link. It opens once, within one hour.") +
             noMailHint() + html::link("/account/children", "Children"));
}

} // namespace velmora::server
