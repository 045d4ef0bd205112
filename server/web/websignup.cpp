// A new account: who may make one, and the form for it. The link of a mail makes the account.
#include "server/api/houseaddress.h"
#include "server/web/html.h"
#include "server/web/webpages.h"

namespace velmora::server {

namespace {

std::string hashOf(const std::string &invitation)
{
    return invitation.empty() ? std::string() : tokenHash(invitation);
}

} // namespace

void WebPages::addSignUp(http::Router &router)
{
    const auto page = [this](Handler handler) {
        return [this, handler](const http::Request &request) { return visit(request, handler); };
    };
    router.get("/sign-up", page(&WebPages::showSignUp));
    router.post("/sign-up", mostFormBytes, page(&WebPages::takeSignUp), http::Lane::Passwords);
}

bool WebPages::maySignUp(const Visit &visit)
{
    return m_service.house.maySignUp(isInHouse(visit.request.address));
}

std::string WebPages::signUpRuleText()
{
    switch (m_service.house.signUpRule()) {
    case SignUpRule::Nobody:
        return say("The owner of this service takes no new accounts at present.");
    case SignUpRule::Invited:
        return say("A new account needs an invitation: ask the owner of this service for a link, and open it.");
    default:
        return say("New accounts are made in the house's own network, or with an invitation of this service's owner.");
    }
}

std::string WebPages::signUpFields(const AccountForms &forms)
{
    return html::field({.name = "email",
                        .label = say("E-mail address"),
                        .type = "email",
                        .value = forms.fresh,
                        .autocomplete = "section-new username",
                        .hint = {},
                        .inputMode = "email",
                        .problem = forms.addressProblem,
                        .form = "new"}) +
           html::newPasswordField("password", say("Password"), forms.passwordProblem);
}

void WebPages::signUpPage(Visit &visit, const AccountForms &forms, int status)
{
    const std::string invitation = visit.value("invitation");
    if (!maySignUp(visit) && !m_service.house.isInvited(hashOf(invitation))) {
        show(visit, say("A new account"),
             html::heading(say("A new account")) +
                 (invitation.empty() ? std::string()
                                     : html::error(say("This invitation is not valid, or no longer. Each makes one "
                                                       "account."))) +
                 html::paragraph(signUpRuleText()) + html::link("/account", say("Your account")),
             invitation.empty() ? 403 : 410);
        return;
    }
    show(visit, say("A new account"),
         html::heading(say("A new account")) +
             html::paragraph(say("With an account you have stations of your own, on every radio of this service.")) +
             html::form("/sign-up", visit.csrf,
                        html::hidden("invitation", invitation) + signUpFields(forms) +
                            html::button(say("Create an account"))) +
             html::link("/account", say("I have an account")),
         status);
}

void WebPages::showSignUp(Visit &visit)
{
    signUpPage(visit, {});
}

void WebPages::takeSignUp(Visit &visit)
{
    AccountForms forms;
    if (const std::optional<int> status = signUp(visit, visit.value("invitation"), &forms))
        signUpPage(visit, forms, *status);
}

std::optional<int> WebPages::signUp(Visit &visit, const std::string &invitation, AccountForms *forms)
{
    const std::string userName = visit.value("email");
    const std::string password = visit.value("password");
    const std::string invitationHash = hashOf(invitation);
    const bool isInvited = m_service.house.isInvited(invitationHash);
    forms->fresh = userName;
    if (!isInvited && !maySignUp(visit))
        return 403;
    if (m_newAccounts.refuse(visit.request.network, m_clock())) {
        forms->addressProblem = say("Too many new accounts from here. Please try again in a few minutes.");
        return 429;
    }
    switch (Accounts::checkNew(userName, password)) {
    case CreateResult::BadUserName:
        forms->addressProblem = say("This is not an e-mail address.");
        return 422;
    case CreateResult::BadPassword:
        forms->passwordProblem = say("The password needs at least eight characters.");
        return 422;
    default:
        break;
    }
    SignUp wanted;
    wanted.userName = userName;
    if (isInvited)
        wanted.invitationHash = invitationHash;
    if (!m_service.signUp(wanted, password)) {
        forms->addressProblem = say("No mail can be sent at the moment. Please try again later.");
        return 503;
    }
    // Whether there is an account with this address is for the mail alone to say.
    show(visit, say("Look into your mail"),
         html::heading(say("Look into your mail")) +
             html::paragraph(say("A mail to {1} says how to go on. Its link opens once, within one hour.", userName)) +
             noMailHint() + html::link("/activate", say("Activate a radio")));
    return {};
}

} // namespace velmora::server
