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
        return say("less than a minute ago");
    return sayMany("a minute ago", "{1} minutes ago", minutes);
}

std::string codeGone()
{
    return say("This code is not valid, or no longer. The radio shows a new one after \"Continue\".");
}

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
    code.label = say("Code");
    code.hint = say("Eight letters and digits, as the television shows them.");
    code.isCode = true;
    // What was mistyped, or what the opened address says.
    if (!problem.empty() || visit.request.method != "POST")
        code.value = ActivationCodes::normalised(visit.value("code"));
    code.problem = problem;
    show(visit, say("Activate a radio"),
         html::heading(say("Activate a radio")) + note +
             html::form("/activate", visit.csrf, html::field(code) + html::button(say("Next"))),
         status);
}

void WebPages::showCodeForm(Visit &visit)
{
    codePage(visit, {});
}

void WebPages::takeCode(Visit &visit)
{
    if (m_codeTries.refuse(visit.request.network, m_clock())) {
        codePage(visit, {}, say("Too many tries. Please wait a minute."), 429);
        return;
    }
    const std::string code = ActivationCodes::normalised(visit.value("code"));
    const auto subject = m_service.activationCodes.find(code);
    if (!subject) {
        codePage(visit, {}, codeGone(), 422);
        return;
    }
    visit.session.isAllowed = false;
    if (subject->accountId != 0)
        visit.session.byCode = m_service.activationCodes.redeemForAccount(code).value_or(0);
    else
        visit.session.code = code;
    m_sessions.keep(visit.cookie, visit.session);
    if (visit.session.code.empty())
        codePage(visit, html::paragraph(
                            say("This code stands for your account. Now type the code that the new radio shows.")));
    else if (visit.linkingAccount() != 0)
        allowPage(visit);
    else
        accountPage(visit, {});
}

void WebPages::accountPage(Visit &visit, const AccountForms &forms, int status)
{
    const std::string fresh =
        maySignUp(visit) ? html::form("/activate/account", visit.csrf,
                                      signUpFields(forms) + html::button(say("Create an account"), "action", "create"))
                         : html::paragraph(signUpRuleText());
    show(visit, say("Your account"),
         html::heading(say("Whose radio is it?")) + html::subheading(say("I have an account")) +
             html::form("/activate/account", visit.csrf,
                        html::emailField(forms.known) + html::passwordField(say("Password"), forms.problem) +
                            html::button(say("Sign in"), "action", "signin")) +
             html::link("/forgot", say("Forgotten your password?")) + html::subheading(say("I am new here")) + fresh,
         status);
}

void WebPages::takeAccount(Visit &visit)
{
    const std::string userName = visit.value("email");
    if (visit.session.code.empty()) {
        codePage(visit, {}, codeGone(), 422);
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
        codePage(visit, {}, codeGone(), 422);
        return;
    }
    std::string from = subject->address.empty() ? say("an unknown address") : subject->address;
    if (http::networkOf(subject->address) == visit.request.network)
        from = say("{1} (your browser is in the same network)", from);
    show(visit, say("Allow this radio?"),
         html::heading(say("Allow this radio?")) + html::fact(say("Radio"), deviceName(subject->digits)) +
             html::fact(say("Model"),
                        subject->model.empty() ? say("it does not say") : say("\"{1}\", it says", subject->model)) +
             html::fact(say("Asked"), timeAgo(m_clock() - subject->issuedAt)) + html::fact(say("From"), from) +
             html::fact(say("Code"), visit.session.code) +
             html::paragraph(say("It will play the stations of {1}, and may change them.", account->userName)) +
             html::warning(say("Allow it only if this code is on the television in front of you. "
                               "Did somebody send you the code? Then choose \"Deny\".")) +
             html::form("/activate/allow", visit.csrf,
                        html::button(say("Allow"), "answer", "allow") +
                            html::plainButton(say("Deny"), "answer", "deny")));
}

void WebPages::allow(Visit &visit)
{
    const AccountId account = visit.linkingAccount();
    const std::string code = std::exchange(visit.session.code, {});
    visit.session.byCode = 0;
    m_sessions.keep(visit.cookie, visit.session);
    if (visit.value("answer") != "allow") {
        m_service.activationCodes.deny(code);
        show(visit, say("Denied"),
             html::heading(say("Denied")) +
                 html::paragraph(say("The radio has no access, and its code is no longer valid.")) +
                 html::link("/account", say("Your account")));
        return;
    }
    const bool isRepeated = code.empty() && visit.session.isAllowed;
    if (!isRepeated && (account == 0 || !m_service.activationCodes.grant(code, account))) {
        codePage(visit, {}, codeGone(), 422);
        return;
    }
    visit.session.isAllowed = true;
    m_sessions.keep(visit.cookie, visit.session);
    show(visit, say("Done"),
         html::heading(say("Done")) + html::paragraph(say("Go back to the television and choose \"Continue\".")) +
             html::nextStep("/remote", say("Press it on this telephone")) +
             html::link("/account", say("Your account")));
}

} // namespace velmora::server
