// The page on which a radio is linked with an account: code, account, permission, done.
#include "server/http/peers.h"
#include "server/web/html.h"
#include "server/web/webpages.h"

namespace velmora::server {

namespace {

// "00:1A:2B:3C:4D:5E", as printed on the device.
std::string deviceName(const std::string &digits)
{
    std::string text;
    for (size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && i % 2 == 0)
            text += ':';
        text += digits[i];
    }
    return text;
}

std::string timeAgo(int64_t seconds)
{
    const int64_t minutes = seconds / 60;
    if (minutes < 1)
        return "less than a minute ago";
    return minutes == 1 ? "a minute ago" : std::to_string(minutes) + " minutes ago";
}

constexpr char codeGone[] = "This code is not valid, or no longer. The radio shows a new one after \"Continue\".";

} // namespace

void WebPages::addActivation(http::Router &router)
{
    const auto page = [this](Handler handler) {
        return [this, handler](const http::Request &request) { return visit(request, handler); };
    };
    router.get("/activate", page(&WebPages::showCodeForm));
    router.post("/activate", mostFormBytes, page(&WebPages::takeCode));
    router.post("/activate/account", mostFormBytes, page(&WebPages::takeAccount), http::Lane::Passwords);
    router.post("/activate/allow", mostFormBytes, page(&WebPages::allow));
}

void WebPages::codePage(Visit &visit, const std::string &note, int status)
{
    html::Field code;
    code.name = "code";
    code.label = "Code";
    code.hint = "Eight letters and digits, as the television shows them.";
    code.isCode = true;
    show(visit, "Activate a radio",
         html::heading("Activate a radio") + note +
             html::form("/activate", visit.csrf, html::field(code) + html::button("Next")),
         status);
}

void WebPages::showCodeForm(Visit &visit)
{
    codePage(visit, {});
}

void WebPages::takeCode(Visit &visit)
{
    if (m_codeTries.refuse(visit.request.network, m_clock())) {
        codePage(visit, html::error("Too many tries. Please wait a minute."), 429);
        return;
    }
    const std::string code = ActivationCodes::normalised(visit.value("code"));
    const auto subject = m_service.activationCodes.find(code);
    if (!subject) {
        codePage(visit, html::error(codeGone), 422);
        return;
    }
    if (subject->accountId != 0)
        visit.session.byCode = m_service.activationCodes.redeemForAccount(code).value_or(0);
    else
        visit.session.code = code;
    m_sessions.keep(visit.cookie, visit.session);
    if (visit.session.code.empty())
        codePage(visit,
                 html::paragraph("This code stands for your account. Now type the code that the new radio shows."));
    else if (visit.linkingAccount() != 0)
        allowPage(visit);
    else
        accountPage(visit, {});
}

void WebPages::accountPage(Visit &visit, const AccountForms &forms, int status)
{
    show(visit, "Your account",
         html::heading("Whose radio is it?") + html::error(forms.problem) + "<h2>I have an account</h2>\n" +
             html::form("/activate/account", visit.csrf,
                        html::emailField(forms.known) + html::passwordField("Password") +
                            html::button("Sign in", "action", "signin")) +
             html::link("/forgot", "Forgotten your password?") + "<h2>I am new here</h2>\n" +
             html::form("/activate/account", visit.csrf,
                        html::emailField(forms.fresh, forms.addressProblem, "new") +
                            html::newPasswordField("password", "Password", forms.passwordProblem) +
                            html::button("Create an account", "action", "create")),
         status);
}

void WebPages::takeAccount(Visit &visit)
{
    const std::string userName = visit.value("email");
    if (visit.session.code.empty()) {
        codePage(visit, html::error(codeGone), 422);
        return;
    }
    if (visit.value("action") == "create") {
        signUp(visit);
        return;
    }
    AccountId id = 0;
    std::string problem;
    if (!checkLogin(visit, userName, &id, &problem)) {
        accountPage(visit, {.problem = problem, .known = userName}, 422); // the address stays, a password does not
        return;
    }
    signIn(visit, id);
    allowPage(visit);
}

void WebPages::signUp(Visit &visit)
{
    const std::string userName = visit.value("email");
    const std::string password = visit.value("password");
    if (m_newAccounts.refuse(visit.request.network, m_clock())) {
        accountPage(
            visit,
            {.problem = "Too many new accounts from here. Please try again in a few minutes.", .fresh = userName}, 429);
        return;
    }
    switch (Accounts::checkNew(userName, password)) {
    case CreateResult::BadUserName:
        accountPage(visit, {.fresh = userName, .addressProblem = "This is not an e-mail address."}, 422);
        return;
    case CreateResult::BadPassword:
        accountPage(visit, {.fresh = userName, .passwordProblem = "The password needs at least eight characters."},
                    422);
        return;
    default:
        break;
    }
    if (!m_service.signUp({userName, {}, {}, {}, {}, {}}, password)) {
        accountPage(visit, {.problem = "No mail can be sent at the moment. Please try again later.", .fresh = userName},
                    503);
        return;
    }
    // Whether there is an account with this address is for the mail alone to say.
    show(visit, "Look into your mail",
         html::heading("Look into your mail") +
             html::paragraph("A mail to " + userName + " says how to go on. Its link opens once, within one hour.") +
             noMailHint() + html::link("/activate", "Activate a radio"));
}

void WebPages::allowPage(Visit &visit)
{
    const auto subject = m_service.activationCodes.find(visit.session.code);
    const auto account = m_service.accounts.find(visit.linkingAccount());
    if (!subject || subject->digits.empty() || !account) {
        codePage(visit, html::error(codeGone), 422);
        return;
    }
    std::string from = subject->address.empty() ? "an unknown address" : subject->address;
    if (http::networkOf(subject->address) == visit.request.network)
        from += " (your browser is in the same network)";
    show(visit, "Allow this radio?",
         html::heading("Allow this radio?") + html::fact("Radio", deviceName(subject->digits)) +
             html::fact("Model", subject->model.empty() ? "it does not say" : "\"" + subject->model + "\", it says") +
             html::fact("Asked", timeAgo(m_clock() - subject->issuedAt)) + html::fact("From", from) +
             html::fact("Code", visit.session.code) +
             html::paragraph("It will play the stations of " + account->userName + ", and may change them.") +
             html::warning("Allow it only if this code is on the television in front of you. "
                           "Did somebody send you the code? Then choose \"Deny\".") +
             html::form("/activate/allow", visit.csrf,
                        html::button("Allow", "answer", "allow") + html::plainButton("Deny", "answer", "deny")));
}

void WebPages::allow(Visit &visit)
{
    const AccountId account = visit.linkingAccount();
    const std::string code = std::exchange(visit.session.code, {});
    visit.session.byCode = 0;
    m_sessions.keep(visit.cookie, visit.session);
    if (visit.value("answer") != "allow") {
        m_service.activationCodes.deny(code);
        show(visit, "Denied",
             html::heading("Denied") + html::paragraph("The radio has no access, and its code is no longer valid.") +
                 html::link("/account", "Your account"));
        return;
    }
    if (account == 0 || !m_service.activationCodes.grant(code, account)) {
        codePage(visit, html::error(codeGone), 422);
        return;
    }
    show(visit, "Done",
         html::heading("Done") + html::paragraph("Go back to the television and choose \"Continue\".") +
             html::link("/account", "Your account"));
}

} // namespace velmora::server
