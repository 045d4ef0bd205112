#pragma once

#include "server/accounts/ratelimit.h"
#include "server/api/stationservice.h"
#include "server/http/router.h"
#include "server/web/websessions.h"

#include <string>

namespace velmora::server {

// The pages for people: /activate (a radio shows a code), /account (devices, password), /library (the owner's music),
// /forgot (a new password), /reset, /confirm and /pin (links of mails). Plain HTML without scripts; a strict content
// security policy; every post carries the session's token; cookies are same-site, and secure where the service is
// encrypted. Called from the server's threads.
class WebPages {
public:
    // `isEncrypted`: browsers reach the pages through TLS.
    WebPages(StationService &service, bool isEncrypted, Clock clock = systemClock());

    void addTo(http::Router &router);
    // For a browser that asks for an address that nobody answers.
    http::Response notFound() const;

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
    void setCookie(http::Response &response, const std::string &cookie) const;
    void show(Visit &visit, const std::string &title, const std::string &body, int status = 200) const;
    void put(http::Response &response, const std::string &title, const std::string &body, int status) const;
    static void redirect(Visit &visit, const std::string &address);
    void signIn(Visit &visit, AccountId account);
    // Checks name and password as the radio's login does. Sets `problem`, the text to show, when it failed.
    bool checkLogin(Visit &visit, const std::string &userName, AccountId *account, std::string *problem);

    // webactivation.cpp
    void addActivation(http::Router &router);
    void showCodeForm(Visit &visit);
    void takeCode(Visit &visit);
    void takeAccount(Visit &visit);
    void allow(Visit &visit);
    // `note` is markup.
    void codePage(Visit &visit, const std::string &note, int status = 200);
    void signUp(Visit &visit);
    // What was typed, and what is wrong with it: of who has an account, and of who is new.
    struct AccountForms {
        std::string problem{};
        std::string known{}; // addresses
        std::string fresh{};
        std::string addressProblem{};
        std::string passwordProblem{};
    };
    void accountPage(Visit &visit, const AccountForms &forms, int status = 200);
    void allowPage(Visit &visit);

    // webaccount.cpp
    void addAccount(http::Router &router);
    void showAccount(Visit &visit);
    void takeSignIn(Visit &visit);
    void takeSignOut(Visit &visit);
    // The account of the session, if the form has its password; otherwise it has answered with `refused` or the page to
    // sign in.
    using ProblemPage = void (WebPages::*)(Visit &, const std::string &problem, int status);
    std::optional<Account> withPassword(Visit &visit, ProblemPage refused);
    void takeRadio(Visit &visit);
    void takeRevoke(Visit &visit);
    void takeData(Visit &visit);
    void showLeave(Visit &visit);
    void takeLeave(Visit &visit);
    void leavePage(Visit &visit, const std::string &problem, int status = 200);
    void takePassword(Visit &visit);
    void signInPage(Visit &visit, const std::string &problem, const std::string &userName, int status = 200);
    void devicesPage(Visit &visit, const std::string &problem, int status = 200);

    // weblibrary.cpp: for the owner, whose account is the oldest.
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
    void showPin(Visit &visit);
    void takePin(Visit &visit);

    StationService &m_service;
    const bool m_isEncrypted;
    const Clock m_clock;
    WebSessions m_sessions;
    RateLimit m_codeTries{10, std::chrono::minutes(10)};   // of one network
    RateLimit m_newAccounts{10, std::chrono::minutes(60)}; // of one network
    RateLimit m_reminders{10, std::chrono::minutes(60)};   // of one network
};

} // namespace velmora::server
