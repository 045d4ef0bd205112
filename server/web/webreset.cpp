// A forgotten password, and the links of mails: a new account, a new password, a new PIN. Each opens once and expires.
#include "server/accounts/mailaddress.h"
#include "server/web/html.h"
#include "server/web/webpages.h"

namespace velmora::server {

namespace {

std::string linkGone()
{
    return say("This link is not valid, or no longer.");
}

std::string gone()
{
    return html::heading(say("Too late")) + html::error(linkGone()) +
           html::nextStep("/forgot", say("Ask for a new one")) + html::link("/account", say("Your account"));
}

std::string signUpGone()
{
    return html::heading(say("Too late")) +
           html::error(say("This link is not valid, or no longer. If you have no account yet, begin again.")) +
           html::link("/activate", say("Activate a radio")) + html::link("/account", say("Your account"));
}

std::string passwordForm(const std::string &csrf, const std::string &token, const std::string &problem)
{
    return html::heading(say("A new password")) +
           html::form("/reset", csrf,
                      html::hidden("token", token) + html::newPasswordField("new", say("New password"), problem) +
                          html::checkBox("keep", say("Keep my radios signed in")) + html::button(say("Set it")));
}

std::string forgotForm(const std::string &csrf, const std::string &problem, const std::string &userName)
{
    return html::heading(say("Forgotten your password?")) +
           html::form("/forgot", csrf, html::emailField(userName, problem) + html::button(say("Send me a link"))) +
           html::paragraph(say("The link sets a new password. It opens once, within one hour.")) +
           html::link("/account", say("Your account"));
}

std::string pinForm(const std::string &csrf, const std::string &token, const std::string &problem)
{
    return html::heading(say("A new PIN")) +
           html::form("/pin", csrf,
                      html::hidden("token", token) + html::pinField("new", say("New PIN"), problem, "pin") +
                          html::button(say("Set it")));
}

} // namespace

void WebPages::addReset(http::Router &router)
{
    const auto page = [this](Handler handler) {
        return [this, handler](const http::Request &request) { return visit(request, handler); };
    };
    router.get("/forgot", page(&WebPages::showForgot));
    router.post("/forgot", mostFormBytes, page(&WebPages::takeForgot));
    router.get("/reset", page(&WebPages::showReset));
    router.post("/reset", mostFormBytes, page(&WebPages::takeReset), http::Lane::Passwords);
    router.get("/confirm", page(&WebPages::showConfirm));
    router.post("/confirm", mostFormBytes, page(&WebPages::takeConfirm));
    router.get("/address", page(&WebPages::showAddress));
    router.post("/address", mostFormBytes, page(&WebPages::takeNewAddress));
    router.get("/pin", page(&WebPages::showPin));
    router.post("/pin", mostFormBytes, page(&WebPages::takePin), http::Lane::Passwords);
}

void WebPages::showForgot(Visit &visit)
{
    show(visit, say("A forgotten password"), forgotForm(visit.csrf, {}, {}));
}

void WebPages::takeForgot(Visit &visit)
{
    const std::string userName = visit.value("email");
    const auto again = [&](const std::string &problem, int status) {
        show(visit, say("A forgotten password"), forgotForm(visit.csrf, problem, userName), status);
    };
    if (!isMailAddress(userName)) {
        again(say("This is not an e-mail address."), 422);
        return;
    }
    if (m_reminders.refuse(visit.request.network, m_clock())) {
        again(say("Too many mails from here. Please try again in a few minutes."), 429);
        return;
    }
    if (!m_service.remind(userName)) {
        again(say("No mail can be sent at the moment. Please try again later."), 503);
        return;
    }
    // Whether there is such an account is for the mail alone to say.
    show(visit, say("Look into your mail"),
         html::heading(say("Look into your mail")) +
             html::paragraph(say("If {1} has an account, a mail with a link is on its way.", userName)) + noMailHint() +
             html::link("/account", say("Your account")));
}

// For everybody who waits for a mail.
std::string WebPages::noMailHint() const
{
    if (m_service.mailer && m_service.mailer->hasServer())
        return html::paragraph(say("No mail? Look among the unwanted ones too."));
    return html::paragraph(
        say("This service has no mail server: its owner finds the mail on the page \"Waiting mails\" and "
            "can pass the link on."));
}

void WebPages::showReset(Visit &visit)
{
    const std::string token = visit.value("token");
    if (m_service.accounts.peekReset(token, passwordPurpose))
        show(visit, say("A new password"), passwordForm(visit.csrf, token, {}));
    else
        show(visit, say("Too late"), gone(), 410);
}

void WebPages::takeReset(Visit &visit)
{
    const std::string token = visit.value("token");
    if (!m_service.accounts.peekReset(token, passwordPurpose)) {
        show(visit, say("Too late"), gone(), 410);
        return;
    }
    // Checked first, so that the link stays valid after a password that is too short.
    if (!Accounts::isPassword(visit.value("new"))) {
        show(visit, say("A new password"),
             passwordForm(visit.csrf, token, say("The password needs at least eight characters.")), 422);
        return;
    }
    const auto account = m_service.accounts.redeemReset(token, passwordPurpose);
    const Radios radios = visit.value("keep") == "1" ? Radios::Keep : Radios::End;
    if (!account || m_service.accounts.changePassword(*account, visit.value("new"), radios) != CreateResult::Done) {
        show(visit, say("Too late"), gone(), 410);
        return;
    }
    m_sessions.endOfAccount(*account, {});
    show(visit, say("Done"),
         html::heading(say("The password was changed")) +
             html::paragraph(radios == Radios::Keep ? say("The radios were kept.")
                                                    : say("Sign in on the radio with the new one.")) +
             html::link("/account", say("Your account")));
}

// A link that is only looked at, as mail programs do, makes nothing.
void WebPages::showConfirm(Visit &visit)
{
    const std::string token = visit.value("token");
    const auto signUp = m_service.signUps.find(token);
    if (!signUp) {
        show(visit, say("Too late"), signUpGone(), 410);
        return;
    }
    show(visit, say("Your new account"),
         html::heading(say("Your new account")) + html::paragraph(signUp->userName) +
             html::form("/confirm", visit.csrf, html::hidden("token", token) + html::button(say("Make the account"))));
}

void WebPages::takeConfirm(Visit &visit)
{
    const auto account = m_service.finishSignUp(visit.value("token"));
    if (!account || *account == 0) {
        show(visit, say("Too late"), signUpGone(), 410);
        return;
    }
    signIn(visit, *account);
    if (!visit.session.code.empty()) {
        allowPage(visit);
        return;
    }
    show(visit, say("Done"),
         html::heading(say("The account is made")) +
             html::paragraph(say("Sign in on the radio, or type the code that it shows.")) +
             html::nextStep("/activate", say("Activate a radio")) + html::link("/account", say("Your account")));
}

void WebPages::showAddress(Visit &visit)
{
    const std::string token = visit.value("token");
    const std::string address = m_service.accounts.resetValue(token, addressPurpose);
    if (address.empty()) {
        show(visit, say("Too late"),
             html::heading(say("Too late")) + html::error(linkGone()) + html::link("/account", say("Your account")),
             410);
        return;
    }
    show(visit, say("Your new e-mail address"),
         html::heading(say("Your new e-mail address")) + html::paragraph(address) +
             html::paragraph(say("You sign in with it from now on. The password stays as it is.")) +
             html::form("/address", visit.csrf, html::hidden("token", token) + html::button(say("Change it"))));
}

void WebPages::takeNewAddress(Visit &visit)
{
    const std::string token = visit.value("token");
    const std::string address = m_service.accounts.resetValue(token, addressPurpose);
    const auto id = m_service.accounts.redeemReset(token, addressPurpose);
    const auto before = id ? m_service.accounts.find(*id) : std::nullopt;
    if (!before || m_service.accounts.changeUserName(*id, address) != CreateResult::Done) {
        show(visit, say("Too late"),
             html::heading(say("Too late")) + html::error(linkGone()) + html::link("/account", say("Your account")),
             410);
        return;
    }
    if (m_service.mailer)
        m_service.mailer->sendAddressChanged(before->userName);
    show(visit, say("Done"),
         html::heading(say("The e-mail address was changed")) + html::paragraph(address) +
             html::link("/account", say("Your account")));
}

void WebPages::showPin(Visit &visit)
{
    const std::string token = visit.value("token");
    if (m_service.accounts.peekReset(token, pinPurpose))
        show(visit, say("A new PIN"), pinForm(visit.csrf, token, {}));
    else
        show(visit, say("Too late"), gone(), 410);
}

void WebPages::takePin(Visit &visit)
{
    const std::string token = visit.value("token");
    if (!m_service.accounts.peekReset(token, pinPurpose)) {
        show(visit, say("Too late"), gone(), 410);
        return;
    }
    if (!Accounts::isPin(visit.value("new"))) {
        show(visit, say("A new PIN"), pinForm(visit.csrf, token, say("A PIN has four to eight digits.")), 422);
        return;
    }
    const auto account = m_service.accounts.redeemReset(token, pinPurpose);
    if (!account) {
        show(visit, say("Too late"), gone(), 410);
        return;
    }
    m_service.accounts.setExplicitPin(*account, visit.value("new"));
    show(visit, say("Done"), html::heading(say("The PIN was changed")));
}

} // namespace velmora::server
