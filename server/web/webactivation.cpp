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

void WebPages::codePage(Visit &visit, const std::string &note, const std::string &problem, int status)
{
    html::Field code;
    code.name = "code";
    code.label = "Code";
    code.hint = "Eight letters and digits, as the television shows them.";
    code.isCode = true;
    // What was mistyped, or what the opened address says.
    if (!problem.empty() || visit.request.method != "POST")
        code.value = ActivationCodes::normalised(visit.value("code"));
    code.problem = problem;
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
        codePage(visit, {}, "Too many tries. Please wait a minute.", 429);
        return;
    }
    const std::string code = ActivationCodes::normalised(visit.value("code"));
    const auto subject = m_service.activationCodes.find(code);
    if (!subject) {
        codePage(visit, {}, codeGone, 422);
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
    const std::string fresh =
        maySignUp(visit) ? html::form("/activate/account", visit.csrf,
                                      signUpFields(forms) + html::button("Create an account", "action", "create"))
                         : html::paragraph(signUpRuleText());
    show(visit, "Your account",
         html::heading("Whose radio is it?") + html::subheading("I have an account") +
             html::form("/activate/account", visit.csrf,
                        html::emailField(forms.known) + html::passwordField("Password", forms.problem) +
                            html::button("Sign in", "action", "signin")) +
             html::link("/forgot", "Forgotten your password?") + html::subheading("I am new here") + fresh,
         status);
}

void WebPages::takeAccount(Visit &visit)
{
    const std::string userName = visit.value("email");
    if (visit.session.code.empty()) {
        codePage(visit, {}, codeGone, 422);
        return;
    }
    if (visit.value("action") == "create") {
        AccountForms forms;
        if (const std::optional<int> status = signUp(visit, {}, &forms))
            accountPage(visit, forms, *status);
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

void WebPages::allowPage(Visit &visit)
{
    const auto subject = m_service.activationCodes.find(visit.session.code);
    const auto account = m_service.accounts.find(visit.linkingAccount());
    if (!subject || subject->digits.empty() || !account) {
        codePage(visit, {}, codeGone, 422);
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
        codePage(visit, {}, codeGone, 422);
        return;
    }
    show(visit, "Done",
         html::heading("Done") + html::paragraph("Go back to the television and choose \"Continue\".") +
             html::link("/remote", "Press it on this telephone") +
             html::link("/account", "Your account"));
}

} // namespace velmora::server
