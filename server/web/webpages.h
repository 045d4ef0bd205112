#pragma once

#include "server/accounts/ratelimit.h"
#include "server/api/stationservice.h"
#include "server/http/router.h"
#include "server/web/websessions.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace velmora::server {

// The pages for people: / and /help, /activate (a radio shows a code), /sign-up, /account (radios, browsers, password,
// children, data), /house and /library (for the owner), /forgot (a new password), /reset, /confirm, /address and /pin
// (links of mails). Plain HTML without scripts; a strict content
// security policy; every post carries the session's token; cookies are same-site, and secure where the service is
// encrypted. Called from the server's threads.
class WebPages {
public:
    // `isEncrypted`: browsers reach the pages through TLS.
    WebPages(StationService &service, bool isEncrypted, Clock clock = systemClock());

    // What the owner's page says of the program and its surroundings. Set before the server answers.
    struct About {
        std::string version;
        std::string fingerprint;                       // of the service's own certificate
        std::function<std::vector<std::string>()> log; // the latest lines of the log, the oldest first
    };
    void setAbout(About about) { m_about = std::move(about); }

    void addTo(http::Router &router);
    // For a browser that asks for an address that nobody answers.
    http::Response notFound(const http::Request &request) const;

    // --- for pages that another part of the service adds
    struct Visitor {
        const http::Request &request;
        http::Response &response;
        AccountId account = 0; // signed in as; 0: nobody
        std::string session;   // the same for all requests of one browser; no secret
        std::string csrf;      // the token of its forms
    };
    // Finds the browser's session first, and refuses a post without its token, as for the pages here.
    http::Handler addedPage(std::function<void(Visitor &)> page);
    // The page with what every page has; `body` is markup. `request`: whose page it is; null when it has none to go
    // back to.
    void put(http::Response &response, const std::string &title, const std::string &body, int status = 200,
             const http::Request *request = nullptr) const;
    // Called whenever a browser's session or the link of a radio has ended. Set before the server answers; any thread.
    void whenAccessEnds(std::function<void()> ended);

private:
    // One request with its browser's session.
    struct Visit {
        const http::Request &request;
        http::Response &response;
        std::string cookie;
        std::string csrf; // the token of this browser's forms
        WebSession session;
        std::optional<Account> checked;                   // whose password was checked for this request
        std::string value(const std::string &name) const; // of the posted form
        // Whose stations a radio is to play; 0: not known yet.
        AccountId linkingAccount() const { return session.byCode != 0 ? session.byCode : session.account; }
    };
    using Handler = void (WebPages::*)(Visit &);
    static constexpr size_t mostFormBytes = 16 * 1024;

    // Finds the session, gives a new browser its cookie; a post without the session's token is refused with a page that
    // says so.
    http::Response visit(const http::Request &request, Handler handler);
    http::Response visit(const http::Request &request, const std::function<void(Visit &)> &handler);
    void setCookie(http::Response &response, const std::string &cookie) const;
    void show(Visit &visit, const std::string &title, const std::string &body, int status = 200) const;
    static void redirect(Visit &visit, const std::string &address);
    // The account of the session; without one it has answered with the page to sign in.
    std::optional<Account> signedIn(Visit &visit);
    void signIn(Visit &visit, AccountId account);
    static std::string waitText(int seconds); // after too many tries
    // Checks name and password as the radio's login does. Sets `problem`, the text to show, when it failed.
    bool checkLogin(Visit &visit, const std::string &userName, AccountId *account, std::string *problem);

    // webactivation.cpp
    void addActivation(http::Router &router);
    void showCodeForm(Visit &visit);
    void takeCode(Visit &visit);
    void takeAccount(Visit &visit);
    void allow(Visit &visit);
    // `note` is markup.
    void codePage(Visit &visit, const std::string &note, const std::string &problem = {}, int status = 200);
    // What was typed, and what is wrong with it: of who has an account, and of who is new.
    struct AccountForms {
        std::string problem{}; // of who has an account
        std::string known{};   // addresses
        std::string fresh{};
        std::string addressProblem{};
        std::string passwordProblem{};
    };
    void accountPage(Visit &visit, const AccountForms &forms, int status = 200);
    void allowPage(Visit &visit);

    // webfront.cpp
    void addFront(http::Router &router);
    void showFront(Visit &visit);
    void showHelp(Visit &visit);

    // websignup.cpp
    void addSignUp(http::Router &router);
    // Whether this visitor may sign up without an invitation, and what a page says if not.
    bool maySignUp(const Visit &visit);
    std::string signUpRuleText();
    void showSignUp(Visit &visit);
    void takeSignUp(Visit &visit);
    // Mails a link and says so, or gives the status of the page that shows what is wrong with the forms.
    std::optional<int> signUp(Visit &visit, const std::string &invitation, AccountForms *forms);
    void signUpPage(Visit &visit, const AccountForms &forms, int status = 200);
    static std::string signUpFields(const AccountForms &forms);

    // webaccount.cpp
    void addAccount(http::Router &router);
    void showAccount(Visit &visit);
    void takeSignIn(Visit &visit);
    void takeSignOut(Visit &visit);
    // After a new sign-in: what was sent when the session had expired is shown, to be sent again.
    void returnFromSignIn(Visit &visit);
    // The account of the session, if the form has its password; otherwise it has answered with `refused` or the page to
    // sign in.
    using ProblemPage = void (WebPages::*)(Visit &, const std::string &problem, int status);
    std::optional<Account> withPassword(Visit &visit, ProblemPage refused);
    void takeRadio(Visit &visit);
    void takeRevoke(Visit &visit);
    void dataPage(Visit &visit, const std::string &problem, int status = 200);
    void showData(Visit &visit);
    void takeData(Visit &visit);
    void showLeave(Visit &visit);
    void takeLeave(Visit &visit);
    void leavePage(Visit &visit, const std::string &problem, int status = 200);
    void signInPage(Visit &visit, const std::string &problem, const std::string &userName, int status = 200);
    void devicesPage(Visit &visit, const std::string &problem, int status = 200);

    // webaccess.cpp: how a person signs in, from where, and what children hear.
    void addAccess(http::Router &router);
    struct AccessForms {
        std::string said{};    // what has been done
        std::string problem{}; // of the whole page
        std::string address{}; // as it was typed
        std::string addressWrong{};
        std::string addressSecretWrong{}; // the password of that form
        std::string secretWrong{};        // the present password of the other form
        std::string freshWrong{};         // the new one
    };
    void accessPage(Visit &visit, const AccessForms &forms, int status = 200);
    void showAccess(Visit &visit);
    void takePassword(Visit &visit);
    void takeAddress(Visit &visit);
    void takeSession(Visit &visit);
    struct ChildrenForms {
        std::string said{};
        std::string filterWrong{};
        std::string oldWrong{};
        std::string newWrong{};
        std::string removeWrong{};
    };
    void childrenPage(Visit &visit, const ChildrenForms &forms, int status = 200);
    void showChildren(Visit &visit);
    void takeFilter(Visit &visit);
    void takeNewPin(Visit &visit);
    void takePinRescue(Visit &visit);
    // What is wrong with the account's PIN in this form; empty when it is right or there is none.
    std::string pinProblem(Visit &visit, const Account &account);

    // webhouse.cpp: for the owner, who signs up and what plays.
    void addHouse(http::Router &router);
    struct HouseForms {
        std::string said{};
        std::string link{}; // of a new invitation
        std::string guestWrong{};
        std::string guest{};
    };
    void housePage(Visit &visit, const HouseForms &forms, int status = 200);
    std::string storageText();
    void showHouse(Visit &visit);
    void takeSignUpRule(Visit &visit);
    void takeInvite(Visit &visit);
    void takeInvitation(Visit &visit);
    void takeAds(Visit &visit);

    // weblibrary.cpp: for the owner, the music.
    void addLibrary(http::Router &router);
    bool isOwner(const Visit &visit);
    bool refuseOthers(Visit &visit, bool needsMusic = true); // true when it has answered instead
    void showLibrary(Visit &visit);
    void showLeftOut(Visit &visit);
    void takePause(Visit &visit);
    void takeRescan(Visit &visit);

    // webmails.cpp: for the owner, what no mail server has taken.
    void addMails(http::Router &router);
    void showMails(Visit &visit);
    void takeForgetMail(Visit &visit);

    // webreset.cpp
    void addReset(http::Router &router);
    void showForgot(Visit &visit);
    void takeForgot(Visit &visit);
    std::string noMailHint() const;
    void showReset(Visit &visit);
    void takeReset(Visit &visit);
    void showConfirm(Visit &visit);
    void takeConfirm(Visit &visit);
    void showAddress(Visit &visit);
    void takeNewAddress(Visit &visit);
    void showPin(Visit &visit);
    void takePin(Visit &visit);

    StationService &m_service;
    const bool m_isEncrypted;
    const Clock m_clock;
    About m_about;
    WebSessions m_sessions;
    std::function<void()> m_accessEnded = [] {};
    RateLimit m_codeTries{10, std::chrono::minutes(10)};   // of one network
    RateLimit m_newAccounts{10, std::chrono::minutes(60)}; // of one network
    RateLimit m_reminders{10, std::chrono::minutes(60)};   // of one network
};

} // namespace velmora::server
