// The pages as a browser sees them.

#include "webfixture.h"

#include "server/library/library.h"
#include "server/store/store.h"
#include "server/web/html.h"

#include <future>
#include <regex>

namespace velmora::server {

TEST_F(WebTest, aNewAccountLetsTheRadioLogInOnce)
{
    Browser browser(m_port);
    m_device.partnerToken = data("partnerLogin", {{"deviceKey", m_device.key}, {"deviceModel", "kitchen <radio>"}})
                                .value("partnerToken", "");
    std::string code = newCode();
    *m_now += 180;
    std::transform(code.begin(), code.end(), code.begin(), [](unsigned char c) { return char(std::tolower(c)); });
    enter(browser, " " + code.substr(0, 4) + "-" + code.substr(4), "create", "nora@example.org", "a long enough one");
    for (const char *said : {"00:1A:2B:3C:4D:5E", "&quot;kitchen &lt;radio&gt;&quot;", "3 minutes ago", "192.168.2.7"})
        EXPECT_TRUE(browser.shows(said)) << said;
    EXPECT_EQ(deviceLogin().code, 5105); // not allowed yet
    EXPECT_EQ(browser.post("/activate/allow", allowed), 200);
    EXPECT_TRUE(browser.shows("Continue"));
    const Reply login = deviceLogin();
    EXPECT_EQ(login.code, 0);
    EXPECT_EQ(login.data.value("userName", ""), "nora@example.org");
    EXPECT_EQ(deviceLogin(1).code, 5105); // one code, one slot
    EXPECT_EQ(browser.post("/activate/allow", allowed), 200) << "a second tap";
    EXPECT_TRUE(browser.shows("Continue"));
    EXPECT_EQ(browser.post("/activate", {{"code", code}}), 422) << "single use";
    EXPECT_EQ(browser.post("/activate/allow", allowed), 200);
    EXPECT_EQ(deviceLogin(1).code, 5105) << "which allows nothing more";
}

TEST_F(WebTest, OneCodeLinksOneAccountAlsoWhenTwoPeopleAllowItAtOnce)
{
    addAccount();
    addAccount("other@example.org");
    Browser one(m_port);
    Browser two(m_port);
    const std::string code = newCode();
    enter(one, code, "signin", miraName, password);
    enter(two, code, "signin", "other@example.org", password);
    auto late = std::async(std::launch::async, [&] { return two.post("/activate/allow", allowed); });
    const bool isFirst = one.post("/activate/allow", allowed) == 200;
    EXPECT_EQ(late.get() == 200, !isFirst);
    Browser &loser = isFirst ? two : one;
    EXPECT_TRUE(loser.shows("This code is not valid, or no longer.")) << loser.body;
    EXPECT_EQ(loser.post("/activate/allow", allowed), 422);
    EXPECT_EQ(deviceLogin().data.value("userName", ""), isFirst ? miraName : "other@example.org");
}

TEST_F(WebTest, anExistingAccountSignsInAndAMistakeKeepsWhatWasTyped)
{
    addAccount();
    Browser browser(m_port);
    browser.get("/activate");
    EXPECT_EQ(browser.post("/activate", {{"code", newCode()}}), 200);
    const auto signsIn = [&](const std::string &secret) {
        return browser.post("/activate/account", {{"action", "signin"}, {"email", miraName}, {"password", secret}});
    };
    EXPECT_EQ(signsIn("wrong one"), 422);
    EXPECT_TRUE(browser.shows(miraName)); // the address stays
    EXPECT_FALSE(browser.shows("wrong one"));
    EXPECT_EQ(signsIn(password), 200);
    EXPECT_EQ(browser.post("/activate/allow", allowed), 200);
    EXPECT_EQ(deviceLogin().code, 0);
}

TEST_F(WebTest, aRadioThatIsDeniedGetsNothing)
{
    addAccount();
    Browser browser(m_port);
    enter(browser, newCode(), "signin", miraName, password);
    EXPECT_EQ(browser.post("/activate/allow", {{"answer", "deny"}}), 200);
    EXPECT_TRUE(browser.shows("Denied"));
    EXPECT_EQ(browser.post("/activate/allow", allowed), 422);
    EXPECT_EQ(deviceLogin().code, 5105);
}

TEST_F(WebTest, aCodeOfTheAccountLinksARadioAndOpensNothingElse)
{
    addAccount();
    const std::string token = logIn(miraName, m_device);
    const std::string own = data("generateUserActivationCode", json::object(), token).value("activationCode", "");
    Browser browser(m_port);
    browser.get("/activate");
    EXPECT_EQ(browser.post("/activate", {{"code", own}}), 200);
    EXPECT_TRUE(browser.shows("stands for your account"));
    browser.get("/account");
    EXPECT_FALSE(browser.shows("Radios with access"));
    EXPECT_EQ(browser.post("/activate", {{"code", newCode()}}), 200);
    EXPECT_TRUE(browser.shows(miraName));
    EXPECT_EQ(browser.post("/activate/allow", allowed), 200);
    EXPECT_EQ(deviceLogin().data.value("userName", ""), miraName);
    EXPECT_EQ(browser.post("/activate", {{"code", own}}), 422) << "single use";
}

TEST_F(WebTest, aRefusedNewAccountGetsTheReason)
{
    addAccount();
    const std::tuple<const char *, const char *, int, const char *> cases[] = {
        {"not an address", "a long enough one", 422, "not an e-mail address"},
        {"nora@example.org", "short", 422, "at least eight characters"},
        {"nora@example.org", "a long enough one", 200, "A mail to nora@example.org says how to go on"},
        {"mira@example.org", "a long enough one", 200, "A mail to mira@example.org says how to go on"}};
    std::vector<std::string> pages;
    for (const auto &[email, secret, status, words] : cases) {
        Browser browser(m_port);
        browser.get("/activate");
        browser.post("/activate", {{"code", newCode()}});
        EXPECT_EQ(browser.post("/activate/account", {{"action", "create"}, {"email", email}, {"password", secret}}),
                  status);
        EXPECT_TRUE(browser.shows(words)) << browser.body;
        pages.push_back(std::regex_replace(browser.body, std::regex("mira|nora"), "x"));
    }
    EXPECT_EQ(pages[2], pages[3]) << "only the mail tells who has an account";
    ASSERT_EQ(m_mailer.sent.size(), 2u);
    EXPECT_EQ(m_mailer.sent[0].kind + ", " + m_mailer.sent[1].kind, "sign-up, has account");
}

TEST_F(WebTest, aFormWithoutItsTokenChangesNothing)
{
    addAccount();
    Browser browser(m_port);
    enter(browser, newCode(), "signin", "mira@example.org", password);
    const std::string right = browser.csrf;
    EXPECT_EQ(browser.post("/activate/allow", allowed, false), 403);
    browser.csrf = "guessed";
    EXPECT_EQ(browser.post("/activate/allow", allowed), 403);
    EXPECT_EQ(deviceLogin().code, 5105);
    Browser other(m_port); // another browser's cookie with this one's token
    other.get("/activate");
    other.csrf = right;
    EXPECT_EQ(other.post("/activate/allow", allowed), 403);
    browser.csrf = right;
    EXPECT_EQ(browser.post("/activate/allow", allowed), 200);
}

TEST_F(WebTest, guessedCodesAreLimitedAndExpiredOnesRefused)
{
    const std::string old = newCode();
    *m_now += ActivationCodes::codeSeconds + 1;
    Browser browser(m_port);
    browser.get("/activate");
    EXPECT_EQ(browser.post("/activate", {{"code", old}}), 422);
    for (int tries = 2; tries <= 10; ++tries)
        EXPECT_EQ(browser.post("/activate", {{"code", "AAAAAAA" + std::string(1, char('A' + tries))}}), 422);
    const std::string right = newCode();
    EXPECT_EQ(browser.post("/activate", {{"code", right}}), 429) << "refused before the code is looked at";
    *m_now += 60;
    EXPECT_EQ(browser.post("/activate", {{"code", right}}), 200);
}

TEST_F(WebTest, browsersThatAreSignedInStayHoweverManyOthersCome)
{
    WebSessions sessions([now = m_now] { return now->load(); });
    const auto of = [](AccountId account, const std::string &code = {}) {
        WebSession session;
        session.account = account;
        session.code = code;
        return session;
    };
    sessions.keep("mine", of(1));
    for (size_t i = 0; i < WebSessions::mostOthers; ++i)
        sessions.keep("other" + std::to_string(i), of(0, "AAAAAAAA"));
    for (size_t i = 0; i < WebSessions::mostOfAccount; ++i)
        sessions.keep("tomas" + std::to_string(i), of(2));
    EXPECT_EQ(sessions.find("mine").account, 1);
    EXPECT_EQ(sessions.find("other0").code, "AAAAAAAA");
    sessions.keep("one more", of(0, "AAAAAAAA"));
    EXPECT_EQ(sessions.find("other1").code, "") << "the table is bounded";
    sessions.keep("one more", of(2));
    EXPECT_EQ(sessions.find("tomas0").account, 0) << "so is what one account has";
    EXPECT_EQ(sessions.find("tomas1").account, 2);
}

TEST_F(WebTest, theAccountPageListsRadiosAndRevokesThemAtOnce)
{
    addAccount();
    const std::string token = logIn(miraName, m_device);
    data("associateDevice", {{"deviceId", m_device.slot(2)}}, token);
    const std::string deviceToken = deviceLogin(2).data.value("userToken", "");
    Browser browser(m_port);
    EXPECT_EQ(signIn(browser, miraName, "wrong one"), 422);
    const std::string before = browser.cookie;
    EXPECT_EQ(signIn(browser), 303);
    EXPECT_NE(browser.cookie, before); // an earlier cookie becomes invalid
    browser.get("/account");
    EXPECT_TRUE(browser.shows(m_device.slot(2)));
    EXPECT_EQ(browser.post("/account/revoke", {{"device", "AAAAAAAAAAAA-0"}}), 422);
    EXPECT_EQ(browser.post("/account/revoke", {{"device", m_device.slot(2)}}), 200);
    EXPECT_FALSE(browser.shows(m_device.slot(2)));
    EXPECT_EQ(call("getStationList", json::object(), deviceToken).code, 5099);
    EXPECT_EQ(deviceLogin(2).code, 5105);
}

TEST_F(WebTest, aNewPasswordNeedsTheOldOneAndSignsOthersOut)
{
    addAccount();
    Browser mine(m_port);
    Browser other(m_port);
    for (Browser *browser : {&mine, &other}) {
        signIn(*browser);
        browser->get("/account");
    }
    EXPECT_EQ(mine.post("/account/password", {{"password", "wrong one"}, {"new", "another long one"}}), 422);
    EXPECT_EQ(mine.post("/account/password", {{"password", password}, {"new", "short"}}), 422);
    const std::string token = logIn(miraName, m_device);
    data("associateDevice", {{"deviceId", m_device.slot(0)}}, token);
    const auto change = [&](const std::string &from, const std::string &to, bool isKept) {
        mine.get("/account");
        std::map<std::string, std::string> form = {{"password", from}, {"new", to}};
        if (isKept)
            form["keep"] = "1";
        EXPECT_EQ(mine.post("/account/password", form), 200);
    };
    change(password, "a longer one", true);
    EXPECT_TRUE(mine.shows("The radios were kept"));
    EXPECT_EQ(std::pair(call("getStationList", json::object(), token).code, deviceLogin().code), std::pair(0, 0));
    change("a longer one", "another long one", false);
    EXPECT_TRUE(mine.shows("all radios were signed out"));
    EXPECT_EQ(std::pair(call("getStationList", json::object(), token).code, deviceLogin().code), std::pair(5099, 5105));
    other.get("/account");
    EXPECT_FALSE(other.shows("Radios with access"));
    for (const auto &[seconds, isSignedIn] :
         {std::pair(int64_t(0), true), {WebSessions::idleSeconds, true}, {WebSessions::idleSeconds + 1, false}}) {
        *m_now += seconds;
        mine.get("/account");
        EXPECT_EQ(mine.shows("Radios with access"), isSignedIn) << seconds << " seconds after the last page";
    }
    EXPECT_EQ(tryLogIn(miraName, "another long one", m_device).code, 0);
    m_service->isUnderMaintenance = true;
    EXPECT_EQ(signIn(mine, miraName, "another long one"), 303);
    mine.get("/account");
    EXPECT_EQ(mine.post("/account/password", {{"password", "another long one"}, {"new", password}}), 503);
    EXPECT_TRUE(mine.shows("under maintenance"));
    EXPECT_EQ(tryLogIn(miraName, "another long one", m_device).code, 0);
}

TEST_F(WebTest, aResetLinkOpensOnceAndAShortPasswordDoesNotCostIt)
{
    const AccountId id = addAccount();
    const std::string token = m_service->accounts.issueReset(id, passwordPurpose, 3600);
    Browser browser(m_port);
    EXPECT_EQ(browser.get("/reset?token=guessed"), 410);
    EXPECT_EQ(browser.get("/reset?token=" + token), 200);
    const std::string radio = logIn(miraName, m_device);
    EXPECT_EQ(browser.post("/reset", {{"token", token}, {"new", "short"}}), 422);
    EXPECT_EQ(browser.post("/reset", {{"token", token}, {"new", "another long one"}}), 200);
    EXPECT_EQ(call("getStationList", json::object(), radio).code, 5099);
    EXPECT_EQ(browser.get("/reset?token=" + token), 410);
    const std::string late = m_service->accounts.issueReset(id, passwordPurpose, 3600);
    *m_now += 3601;
    EXPECT_EQ(browser.get("/reset?token=" + late), 410);
}

TEST_F(WebTest, everyPageForbidsScriptsFramesAndStoring)
{
    Browser browser(m_port);
    for (const char *path : {"/", "/activate", "/account", "/sign-up", "/house", "/reset?token=x", "/pin?token=x",
                             "/address?token=x", "/forgot", "/help", "/mistyped"}) {
        browser.get(path);
        const auto header = [&](const char *name) { return browser.last.header(name); };
        EXPECT_NE(header("Content-Security-Policy").find("default-src 'none'"), std::string::npos) << path;
        EXPECT_NE(header("Content-Security-Policy").find("frame-ancestors 'none'"), std::string::npos) << path;
        EXPECT_EQ(header("Referrer-Policy"), "no-referrer") << path;
        EXPECT_EQ(header("Cache-Control"), "no-store") << path;
        EXPECT_TRUE(browser.shows("not encrypted")) << path;
        EXPECT_FALSE(browser.shows("<script")) << path;
    }
}

TEST_F(WebTest, cookiesAreSecureOnlyWhereTheServiceIsEncrypted)
{
    WebPages encrypted(*m_service, true);
    ListenSettings settings;
    settings.port = 0;
    settings.addPages = [&](http::Router &router) { encrypted.addTo(router); };
    ApiServer server(*m_service, settings);
    server.start();
    for (const auto &[port, isSecure] : {std::pair(m_port, false), std::pair(server.port(), true)}) {
        const std::string cookie = httpGet(port, "/account").header("Set-Cookie");
        EXPECT_EQ(cookie.find("Secure") != std::string::npos, isSecure) << cookie;
        EXPECT_NE(cookie.find("HttpOnly"), std::string::npos);
        EXPECT_NE(cookie.find("SameSite=Strict"), std::string::npos);
    }
    server.stop();
}

TEST_F(WebTest, PagesAreInTheChosenLanguageElseInTheBrowsers)
{
    const auto page = [&](const std::string &path, const http::Headers &headers) {
        return httpGet(m_port, path, headers);
    };
    const auto has = [](const HttpAnswer &answer, const std::string &text) {
        return answer.body.find(text) != std::string::npos;
    };
    const http::Headers german{{"Accept-Language", "de-CH, de;q=0.9, en;q=0.8"}};
    HttpAnswer answer = page("/activate?code=%22%3E%3Cb%3E&x=1", german);
    EXPECT_TRUE(has(answer, "<html lang=\"de\">") && has(answer, "<h1>Radio aktivieren</h1>")) << answer.body;
    // The choice of a language leads to the same page with the same code.
    EXPECT_TRUE(has(answer, "name=\"code\" value=\"&quot;&gt;&lt;b&gt;\"") && has(answer, "name=\"x\" value=\"1\""));
    EXPECT_FALSE(has(answer, "<b>"));

    EXPECT_TRUE(has(page("/mistyped", german), "<h1>Diese Seite gibt es nicht</h1>"));
    answer = page("/help?language=ar", german);
    EXPECT_TRUE(has(answer, "<html lang=\"ar\" dir=\"rtl\">"));
    const bool isKept = std::any_of(answer.headers.begin(), answer.headers.end(), [](const auto &header) {
        return header.second.starts_with("language=ar; Path=/; Max-Age=") && header.second.ends_with("SameSite=Lax");
    });
    EXPECT_TRUE(isKept);
    answer = page("/help", {german.front(), {"Cookie", "a=b; language=ar"}});
    EXPECT_TRUE(has(answer, "dir=\"rtl\""));
    answer = page("/help?language=%22xx", {{"Cookie", "language=../de"}, {"Accept-Language", "sv"}});
    EXPECT_TRUE(has(answer, "<html lang=\"en\">") && !has(answer, "xx"));
}

TEST_F(WebTest, typedTextIsNeverMarkup)
{
    Browser browser(m_port);
    signIn(browser, "'\"><script>alert(1)&</script>", "x");
    EXPECT_TRUE(browser.shows("value=\"&#39;&quot;&gt;&lt;script&gt;alert(1)&amp;&lt;/script&gt;\"")) << browser.body;
    EXPECT_FALSE(browser.shows("<script"));
}

TEST_F(WebTest, OnlyTheOwnerSeesTheMusicPageWithEachFileThatDoesNotPlay)
{
    addAccount();
    addAccount("second@example.org");
    LibrarySettings settings;
    settings.config.folders = {m_directory.path() / "away <b>"};
    settings.dataDirectory = m_service->dataDirectory();
    settings.tick = std::chrono::milliseconds(20);
    Library library(
        m_service->store, m_service->catalogue, [now = m_now] { return now->load(); }, settings);
    library.start();
    ASSERT_TRUE(library.waitUntilDone(std::chrono::minutes(2), 1)); // otherwise the second scan would be the first one
    {
        const Store::Lock db = m_service->store.lock();
        for (int i = 0; i < 60; ++i)
            db->run(
                "INSERT INTO files (root_id, path, size, mtime_ns, inode, left_out, problem) SELECT id, ?1, 1, 1, 1, "
                "'damaged', 'broken' FROM roots",
                Blob{"<script>\xff" + std::to_string(i)});
    }
    library.rescan();
    ASSERT_TRUE(library.waitUntilDone(std::chrono::minutes(2), 2));
    m_service->library = &library;
    Browser owner(m_port);
    Browser other(m_port);
    EXPECT_EQ(owner.get("/library"), 403);
    signIn(owner);
    signIn(other, "second@example.org");
    EXPECT_EQ(other.get("/library"), 403);
    EXPECT_EQ(other.get("/library/left-out?reason=damaged"), 403);
    EXPECT_EQ(other.post("/library/pause", {{"paused", "1"}}), 403);
    EXPECT_FALSE(library.status().isPaused);
    other.get("/account");
    EXPECT_FALSE(other.shows("/library"));

    owner.get("/account");
    EXPECT_TRUE(owner.shows("/library"));
    EXPECT_EQ(owner.get("/library"), 200);
    EXPECT_TRUE(owner.shows("away &lt;b&gt; is away")) << owner.body;
    EXPECT_TRUE(owner.shows("Cannot be read: 60 files")) << owner.body;
    const auto files = [&] {
        int count = 0;
        for (size_t at = owner.body.find("&lt;script&gt;?"); at != std::string::npos;
             at = owner.body.find("&lt;script&gt;?", at + 1))
            ++count;
        return count;
    };
    EXPECT_EQ(owner.get("/library/left-out?reason=damaged"), 200);
    EXPECT_EQ(files(), 50);
    EXPECT_FALSE(owner.shows("<script"));
    owner.get("/library/left-out?reason=damaged&from=50");
    EXPECT_EQ(files(), 10);
    EXPECT_EQ(owner.get("/library/left-out?reason=nonsense"), 404);
    owner.get("/library");
    EXPECT_EQ(owner.post("/library/pause", {{"paused", "1"}}, false), 403);
    EXPECT_EQ(owner.post("/library/pause", {{"paused", "1"}}), 303);
    EXPECT_TRUE(library.status().isPaused);
    m_service->library = nullptr;
}

} // namespace velmora::server
