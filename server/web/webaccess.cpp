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
    std::string body = html::heading(say("E-mail address, password and browsers")) + html::done(forms.said) +
                       html::error(forms.problem) + html::subheading(say("Browsers that are signed in"));
    const std::vector<OpenSession> sessions = m_sessions.ofAccount(account->id, visit.cookie);
    for (const OpenSession &open : sessions) {
        const std::string name = open.session.browser.empty() ? say("A browser") : open.session.browser;
        body += html::form("/account/session", visit.csrf,
                           html::fact(say("Browser"), name) + html::fact(say("Address"), open.session.address) +
                               html::fact(say("Signed in"), sayTime(open.session.since)) +
                               html::fact(say("Last used"), sayTime(open.session.lastUsed)) +
                               (open.isThisBrowser ? html::paragraph(say("This is the browser that you use now."))
                                                   : html::hidden("session", open.id) +
                                                         html::plainButton(say("Sign it out"), {}, {})));
    }
    if (sessions.size() > 1)
        body +=
            html::form("/account/session", visit.csrf, html::plainButton(say("Sign all others out"), "session", "*"));
    body += html::subheading(say("Your e-mail address")) + html::paragraph(account->userName) +
            html::form("/account/address", visit.csrf,
                       html::field({.name = "address",
                                    .label = say("New e-mail address"),
                                    .type = "email",
                                    .value = forms.address,
                                    .autocomplete = "section-address email",
                                    .hint = say("A mail to it has a link, which makes the change."),
                                    .inputMode = "email",
                                    .problem = forms.addressWrong,
                                    .form = "address"}) +
                           html::passwordField(say("Password"), forms.addressSecretWrong, "address") +
                           html::button(say("Send the mail"))) +
            html::subheading(say("A new password")) +
            html::form("/account/password", visit.csrf,
                       html::passwordField(say("Password now"), forms.secretWrong, "now") +
                           html::newPasswordField("new", say("New password"), forms.freshWrong) +
                           html::checkBox("keep", say("Keep my radios signed in")) + html::button(say("Change"))) +
            html::link("/account", say("Your account"));
    show(visit, say("E-mail address, password and browsers"), body, status);
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
        accessPage(visit, {.freshWrong = say("The new password needs at least eight characters.")}, 422);
        return;
    }
    m_sessions.endOfAccount(account->id, visit.cookie);
    show(visit, say("Done"),
         html::heading(say("The password was changed")) +
             html::paragraph(radios == Radios::Keep
                                 ? say("Other browsers were signed out. The radios were kept.")
                                 : say("Other browsers and all radios were signed out. Activate each radio again.")) +
             html::link("/account", say("Your account")));
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
        accessPage(visit, {.address = address, .addressWrong = say("This is not an e-mail address.")}, 422);
        return;
    }
    if (!checkLogin(visit, account->userName, &checked, &problem)) {
        accessPage(visit, {.address = address, .addressSecretWrong = problem}, 422);
        return;
    }
    const bool isTooMany = m_reminders.refuse(visit.request.network, m_clock()).has_value();
    if (isTooMany || !m_service.changeAddress(account->id, address)) {
        accessPage(
            visit,
            {.address = address, .addressWrong = say("No mail can be sent at the moment. Please try again later.")},
            503);
        return;
    }
    // Whether there is an account with this address is for the mail alone to say.
    show(visit, say("Look into your mail"),
         html::heading(say("Look into your mail")) +
             html::paragraph(say("A mail to {1} says how to go on. Its link opens once, within one hour.", address)) +
             noMailHint() + html::link("/account", say("Your account")));
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
        accessPage(visit, {.problem = say("This browser is signed out already.")}, 422);
        return;
    }
    accessPage(visit, {.said = id == "*" ? say("All others were signed out.") : say("The browser was signed out.")});
}

void WebPages::childrenPage(Visit &visit, const ChildrenForms &forms, int status)
{
    const auto account = signedIn(visit);
    if (!account)
        return;
    const bool hasPin = account->hasExplicitPin;
    std::string body =
        html::heading(say("Children")) + html::done(forms.said) +
        html::paragraph(say("Songs that are marked as explicit do not play on the radios of this account "
                            "when they are left out. A PIN keeps that from being changed.")) +
        html::form("/account/filter", visit.csrf,
                   html::checkBox("on", say("Leave out explicit songs"), account->isExplicitFilterOn) +
                       (hasPin ? html::pinField("pin", say("PIN"), forms.filterWrong, "filter")
                               : html::error(forms.filterWrong)) +
                       html::button(say("Save"))) +
        html::subheading(hasPin ? say("Another PIN") : say("A PIN")) +
        html::form("/account/pin", visit.csrf,
                   (hasPin ? html::pinField("pin", say("PIN now"), forms.oldWrong, "old") : std::string()) +
                       html::pinField("new", say("New PIN"), forms.newWrong, "new") +
                       html::button(say("Set the PIN"), "action", "set"));
    if (hasPin)
        body += html::subheading(say("No PIN")) +
                html::form("/account/pin", visit.csrf,
                           html::pinField("pin", say("PIN"), forms.removeWrong, "remove") +
                               html::plainButton(say("Remove the PIN"), "action", "remove")) +
                html::subheading(say("Forgotten the PIN?")) +
                html::form("/account/pin-rescue", visit.csrf,
                           html::paragraph(say("A mail to {1} has a link that sets a new one.", account->userName)) +
                               html::plainButton(say("Send the mail"), {}, {}));
    show(visit, say("Children"), body + html::link("/account", say("Your account")), status);
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
        return say("The PIN is not right.");
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
    childrenPage(visit, {.said = isOn ? say("Explicit songs are left out from now on.") : say("Every song may play.")});
}

void WebPages::takeNewPin(Visit &visit)
{
    const auto account = signedIn(visit);
    if (!account)
        return;
    const bool isRemoved = visit.value("action") == "remove";
    if (!isRemoved && !Accounts::isPin(visit.value("new"))) {
        childrenPage(visit, {.newWrong = say("A PIN has four to eight digits.")}, 422);
        return;
    }
    if (const std::string problem = pinProblem(visit, *account); !problem.empty()) {
        childrenPage(visit, {.oldWrong = isRemoved ? "" : problem, .removeWrong = isRemoved ? problem : ""}, 422);
        return;
    }
    m_service.accounts.setExplicitPin(account->id, isRemoved ? std::string() : visit.value("new"));
    childrenPage(visit, {.said = isRemoved ? say("There is no PIN any more.") : say("The PIN was set.")});
}

void WebPages::takePinRescue(Visit &visit)
{
    const auto account = signedIn(visit);
    if (!account)
        return;
    if (!m_service.mailer || m_reminders.refuse(visit.request.network, m_clock())) {
        childrenPage(visit, {.said = say("No mail can be sent at the moment. Please try again later.")}, 503);
        return;
    }
    m_service.mailer->sendPinRescue(account->userName,
                                    m_service.accounts.issueReset(account->id, pinPurpose, resetSeconds));
    show(visit, say("Look into your mail"),
         html::heading(say("Look into your mail")) +
             html::paragraph(say("A mail to {1} has a link. It opens once, within one hour.", account->userName)) +
             noMailHint() + html::link("/account/children", say("Children")));
}

} // namespace velmora::server
