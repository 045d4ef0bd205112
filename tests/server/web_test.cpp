// The pages as a browser sees them.

#include "webfixture.h"

#include "server/api/houseaddress.h"
#include "server/library/library.h"
#include "server/store/store.h"
#include "server/web/html.h"

#include <fstream>
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
    EXPECT_EQ(deviceLogin(1).code, 5105);                     // one code, one slot
    EXPECT_EQ(browser.post("/activate/allow", allowed), 422); // single-use
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

TEST_F(WebTest, APersonNamesARadioTakesTheirDataAlongAndLeavesNothingBehind)
{
    newListener("stays@example.org");
    addAccount();
    const std::string token = logIn(miraName, m_device);
    data("associateDevice", {{"deviceId", m_device.slot(2)}}, token);
    m_requestKey = std::string(32, 'a');
    const std::string station = addStation(token, "ambient");
    m_requestKey.clear();
    const json track = firstTrack(token, station);
    const std::string trackToken = track.at("trackToken");
    data("addFeedback", {{"isPositive", true}, {"trackToken", trackToken}}, token);
    m_service->accounts.issueReset(idOf(), passwordPurpose, 3600);

    Browser browser(m_port);
    signIn(browser);
    browser.get("/account");
    EXPECT_EQ(browser.post("/account/radio", {{"device", m_device.slot(2)}, {"name", "Bad\nname"}}), 422);
    EXPECT_EQ(browser.post("/account/radio", {{"device", "AAAAAAAAAAAA-0"}, {"name", "Not mine"}}), 422);
    EXPECT_EQ(browser.post("/account/radio", {{"device", m_device.slot(2)}, {"name", "K\u00fcche <b>"}}), 200);
    EXPECT_TRUE(browser.shows("K\u00fcche &lt;b&gt;"));
    EXPECT_EQ(browser.post("/account/radio", {{"device", m_device.slot(2)}, {"action", "remove"}}), 200);
    EXPECT_TRUE(browser.shows("Remove this radio?"));
    EXPECT_EQ(m_service->devices.ofAccount(idOf()).size(), 1U) << "a question first";

    EXPECT_EQ(browser.post("/account/data", {}, false), 403);
    browser.get("/account");
    EXPECT_EQ(browser.post("/account/data", {}), 200);
    const json mine = json::parse(browser.body, nullptr, false);
    ASSERT_TRUE(mine.is_object()) << browser.body;
    EXPECT_EQ(mine["account"]["email"], miraName);
    EXPECT_EQ(mine["radios"].at(0)["name"], "K\u00fcche <b>");
    EXPECT_EQ(mine["stations"].size(), 2U);
    EXPECT_EQ(mine["thumbs"].at(0)["song"], track.at("songName"));
    EXPECT_EQ(mine["thumbs"].at(0)["up"], true);
    for (const char *list : {"sessions", "handedOut"})
        EXPECT_FALSE(mine[list].empty()) << list;
    EXPECT_EQ(mine.size(), 11U);
    EXPECT_EQ(browser.body.find("hash"), std::string::npos);
    for (const auto &entry : std::filesystem::directory_iterator(m_service->dataDirectory()))
        EXPECT_FALSE(entry.path().filename().native().starts_with("personal-"));

    const AccountId id = idOf();
    browser.get("/account/delete");
    EXPECT_EQ(browser.post("/account/delete", {{"password", "wrong one"}}), 422);
    EXPECT_TRUE(m_service->accounts.find(id));
    EXPECT_EQ(browser.post("/account/delete", {{"password", password}}), 200);
    EXPECT_EQ(call("getStationList", json::object(), token).code, 5097);
    browser.get("/account");
    EXPECT_FALSE(browser.shows(miraName));
    {
        const Store::Lock db = m_service->store.lock();
        std::vector<std::string> tables;
        Statement found = db->prepare("SELECT m.name FROM sqlite_schema m JOIN pragma_table_info(m.name) c WHERE "
                                      "m.type = 'table' AND c.name = 'account_id'");
        while (found.step())
            tables.push_back(found.text(0));
        EXPECT_GT(tables.size(), 10U);
        tables.emplace_back("request_answers");
        tables.emplace_back("sign_ups");
        for (const std::string &table : tables) {
            Statement left =
                db->prepare("SELECT COUNT(*) FROM " + table + " WHERE " +
                            (table == "request_answers" || table == "sign_ups" ? "?1 = ?1" : "account_id = ?1"));
            left.with(id);
            left.step();
            EXPECT_EQ(left.integer(0), 0) << table;
        }
    }
    // Nor in what the file keeps of deleted rows.
    std::string files;
    for (const auto &entry : std::filesystem::directory_iterator(m_service->dataDirectory())) {
        std::ifstream file(entry.path(), std::ios::binary);
        files.append(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    EXPECT_NE(files.find("stays@example.org"), std::string::npos);
    EXPECT_EQ(files.find(miraName), std::string::npos);
    EXPECT_EQ(files.find(m_device.slot(2)), std::string::npos);
    EXPECT_EQ(files.find(trackToken), std::string::npos);
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

TEST_F(WebTest, TheOwnerDecidesWhoSignsUpAndAnInvitationMakesOneAccount)
{
    for (const auto &[address, isOurs] : {std::pair("127.0.0.1", true),
                                          {"10.0.0.9", true},
                                          {"172.31.0.1", true},
                                          {"172.32.0.1", false},
                                          {"192.168.1.2", true},
                                          {"198.51.100.1", false},
                                          {"::1", true},
                                          {"fe80::1", true},
                                          {"fd12::1", true},
                                          {"2001:db8::1", false},
                                          {"", false},
                                          {"kitchen", false}})
        EXPECT_EQ(isInHouse(address), isOurs) << address;
    HouseRules &house = m_service->house;
    EXPECT_TRUE(house.maySignUp(false)) << "the first account may come from anywhere";
    const AccountId mira = addAccount();
    const AccountId tomas = addAccount("tomas@example.org");
    EXPECT_EQ(house.owner(), mira);
    EXPECT_FALSE(house.maySignUp(false));
    Browser owner(m_port);
    Browser guest(m_port);
    signIn(owner);
    signIn(guest, "tomas@example.org");
    EXPECT_EQ(guest.get("/house"), 403);
    guest.get("/account");
    for (const char *form : {"/house/sign-ups", "/house/invite", "/house/invitation", "/house/ads"})
        EXPECT_EQ(guest.post(form, {{"rule", "nobody"}, {"lists", "1"}}), 403) << form;
    EXPECT_EQ(owner.get("/house"), 200);

    const auto signsUp = [&](const std::string &invitation) {
        guest.get("/sign-up");
        return guest.post(
            "/sign-up", {{"invitation", invitation}, {"email", "nora@example.org"}, {"password", "a long enough one"}});
    };
    const auto invites = [&] {
        EXPECT_EQ(owner.post("/house/invite", {{"guest", "Nora <b>"}}), 200);
        std::smatch link;
        EXPECT_TRUE(std::regex_search(owner.body, link, std::regex("/sign-up\\?invitation=([A-Za-z0-9_-]+)")));
        EXPECT_TRUE(owner.shows("Nora &lt;b&gt;"));
        return link[1].str();
    };
    EXPECT_EQ(owner.post("/house/sign-ups", {{"rule", "nonsense"}}), 422);
    EXPECT_EQ(owner.post("/house/sign-ups", {{"rule", "invited"}}), 200);
    EXPECT_EQ(signsUp({}), 403);
    EXPECT_EQ(signsUp("made up"), 410);
    EXPECT_EQ(
        call("createUser", {{"userName", "nora@example.org"}, {"password", "a long enough one"}}, m_device.partnerToken)
            .code,
        5100);
    EXPECT_TRUE(m_mailer.sent.empty());
    const std::string invitation = invites();
    owner.get("/house");
    EXPECT_FALSE(owner.shows(invitation)) << "it is shown once";
    EXPECT_EQ(guest.get("/sign-up?invitation=" + invitation), 200);
    EXPECT_EQ(signsUp(invitation), 200);
    EXPECT_EQ(signsUp(invitation), 200) << "used up by the account, not by the mail";
    ASSERT_EQ(m_mailer.sent.size(), 2u);
    EXPECT_TRUE(m_service->finishSignUp(m_mailer.sent[0].token));
    EXPECT_FALSE(m_service->finishSignUp(m_mailer.sent[1].token));
    EXPECT_EQ(signsUp(invitation), 410);
    const std::string ended = invites();
    const std::string late = invites();
    house.endInvitation(tokenHash(ended));
    EXPECT_EQ(signsUp(ended), 410);
    *m_now += HouseRules::invitationSeconds;
    EXPECT_EQ(signsUp(late), 410);
    signIn(owner);
    owner.get("/house");
    EXPECT_EQ(owner.post("/house/invite", {{"guest", std::string(41, 'x')}}), 422);

    const std::string unused = invites();
    house.setSignUpRule(SignUpRule::House);
    guest.get("/sign-up");
    EXPECT_EQ(guest.post("/sign-up", {{"email", "ines@example.org"}, {"password", "a long enough one"}}), 200);
    house.setSignUpRule(SignUpRule::Nobody);
    EXPECT_FALSE(m_service->finishSignUp(m_mailer.sent.back().token)) << "nobody is nobody, whatever was mailed";
    EXPECT_EQ(signsUp(unused), 410);
    house.setOwner(tomas);
    EXPECT_EQ(owner.get("/house"), 403);
    m_service->accounts.setActive(tomas, false);
    EXPECT_EQ(house.owner(), mira) << "an owner who is gone owns nothing";
}

TEST_F(WebTest, APersonSeesWhereTheyAreSignedInAndEndsIt)
{
    EXPECT_EQ(browserName("Mozilla/5.0 (Linux; Android 14; x) AppleWebKit/537.36 Chrome/126.0 Mobile Safari/537.36"),
              "Chrome, Android");
    EXPECT_EQ(browserName("Mozilla/5.0 (X11; Linux x86_64; rv:128.0) Gecko/20100101 Firefox/128.0"), "Firefox, Linux");
    EXPECT_EQ(browserName("curl/8"), "");
    addAccount();
    addAccount("tomas@example.org");
    Browser mine(m_port);
    Browser phone(m_port);
    Browser foreign(m_port);
    signIn(mine);
    signIn(phone);
    signIn(foreign, "tomas@example.org");
    const auto idIn = [](const Browser &browser) {
        std::smatch id;
        std::regex_search(browser.body, id, std::regex("name=\"session\" value=\"([0-9a-zA-Z_-]+)\""));
        return id[1].str();
    };
    mine.get("/account/access");
    EXPECT_TRUE(mine.shows("This is the browser that you use now."));
    const std::string id = idIn(mine);
    EXPECT_EQ(phone.cookie.find(id), std::string::npos);
    foreign.get("/account/access");
    EXPECT_EQ(foreign.post("/account/session", {{"session", id}}), 422) << "another account's";
    EXPECT_EQ(mine.post("/account/session", {{"session", id}}), 200);
    EXPECT_EQ(mine.post("/account/session", {{"session", id}}), 422);
    phone.get("/account");
    EXPECT_FALSE(phone.shows("Radios with access"));
    signIn(phone);
    EXPECT_EQ(mine.post("/account/session", {{"session", "*"}}), 200);
    phone.get("/account");
    EXPECT_FALSE(phone.shows("Radios with access"));
    for (Browser *browser : {&mine, &foreign}) {
        browser->get("/account");
        EXPECT_TRUE(browser->shows("Radios with access"));
    }
}

TEST_F(WebTest, ANewAddressCountsWhenItsMailIsOpened)
{
    addAccount();
    addAccount("tomas@example.org");
    Browser browser(m_port);
    signIn(browser);
    browser.get("/account/access");
    const auto asks = [&](const std::string &address, const std::string &secret) {
        return browser.post("/account/address", {{"address", address}, {"password", secret}});
    };
    EXPECT_EQ(asks("nowhere", password), 422);
    EXPECT_TRUE(browser.shows("This is not an e-mail address."));
    EXPECT_EQ(asks("mira@new.example", "wrong one"), 422);
    EXPECT_TRUE(browser.shows("mira@new.example")) << "what was typed stays";
    EXPECT_TRUE(m_mailer.sent.empty());
    EXPECT_EQ(asks("tomas@example.org", password), 200);
    const std::string known = std::regex_replace(browser.body, std::regex("tomas@example.org"), "x");
    EXPECT_EQ(asks("mira@new.example", password), 200);
    EXPECT_EQ(std::regex_replace(browser.body, std::regex("mira@new.example"), "x"), known)
        << "only the mail tells who has an account";
    ASSERT_EQ(m_mailer.sent.size(), 2u);
    EXPECT_EQ(m_mailer.sent[0].kind + ", " + m_mailer.sent[1].kind, "has account, new address");
    const std::string token = m_mailer.sent[1].token;
    Browser telephone(m_port);
    EXPECT_EQ(telephone.get("/address?token=" + token), 200);
    EXPECT_TRUE(m_service->accounts.find(miraName)) << "looking changes nothing";
    EXPECT_EQ(telephone.post("/address", {{"token", token}}), 200);
    EXPECT_EQ(telephone.post("/address", {{"token", token}}), 410);
    EXPECT_FALSE(m_service->accounts.find(miraName));
    EXPECT_EQ(m_mailer.sent.back().kind + " " + m_mailer.sent.back().address,
              std::string("address changed ") + miraName);
    EXPECT_EQ(signIn(telephone, "MIRA@new.example"), 303);
}

TEST_F(WebTest, TheChildrensFilterObeysItsPin)
{
    const AccountId id = addAccount();
    Browser browser(m_port);
    signIn(browser);
    browser.get("/account/children");
    const auto isOn = [&] { return m_service->accounts.find(id)->isExplicitFilterOn; };
    EXPECT_EQ(browser.post("/account/filter", {{"on", "1"}}), 200);
    EXPECT_TRUE(isOn());
    for (const char *bad : {"123", "123456789", "12a4"})
        EXPECT_EQ(browser.post("/account/pin", {{"new", bad}}), 422) << bad;
    EXPECT_EQ(browser.post("/account/pin", {{"new", "4071"}}), 200);
    EXPECT_EQ(browser.post("/account/filter", {{"pin", "1111"}}), 422);
    EXPECT_TRUE(browser.shows("The PIN is not right."));
    EXPECT_TRUE(isOn());
    EXPECT_EQ(browser.post("/account/pin", {{"pin", "1111"}, {"action", "remove"}}), 422);
    EXPECT_EQ(browser.post("/account/filter", {{"pin", "4071"}}), 200);
    EXPECT_FALSE(isOn());
    EXPECT_EQ(browser.post("/account/pin-rescue", {}), 200);
    EXPECT_EQ(m_mailer.sent.back().kind, "pin");
    EXPECT_EQ(browser.post("/account/pin", {{"pin", "4071"}, {"action", "remove"}}), 200);
    EXPECT_FALSE(m_service->accounts.find(id)->hasExplicitPin);
}

TEST_F(WebTest, WhatIsSentAfterTheSessionHasExpiredIsNotLost)
{
    addAccount();
    const std::string token = logIn(miraName, m_device);
    data("associateDevice", {{"deviceId", m_device.slot(0)}}, token);
    Browser browser(m_port);
    signIn(browser);
    browser.get("/account");
    const auto hiddenFields = [&] {
        std::map<std::string, std::string> form;
        const std::regex field("type=\"hidden\" name=\"([^\"]+)\" value=\"([^\"]*)\"");
        for (std::sregex_iterator match(browser.body.begin(), browser.body.end(), field), end; match != end; ++match)
            form[(*match)[1]] = (*match)[2];
        return form;
    };
    const auto signsInAgain = [&](const std::string &secret) {
        std::map<std::string, std::string> form = hiddenFields();
        form["email"] = miraName;
        form["password"] = secret;
        return browser.post("/account/signin", form);
    };
    *m_now += 7 * 24 * 3600; // the page was open for a week
    EXPECT_EQ(browser.post("/account/radio", {{"device", m_device.slot(0)}, {"name", "Kitchen"}, {"action", "rename"}}),
              200);
    EXPECT_TRUE(browser.shows("You were signed out"));
    EXPECT_EQ(signsInAgain("wrong one"), 422);
    EXPECT_EQ(signsInAgain(password), 200);
    EXPECT_TRUE(browser.shows("Kitchen"));
    EXPECT_EQ(m_service->devices.ofAccount(idOf()).at(0).name, "") << "a person sends it again, or not";
    EXPECT_EQ(browser.post("/account/radio", hiddenFields()), 200);
    EXPECT_EQ(m_service->devices.ofAccount(idOf()).at(0).name, "Kitchen");
    *m_now += WebSessions::idleSeconds + 1;
    EXPECT_EQ(browser.post("/account/address", {{"address", "mira@new.example"}, {"password", password}}), 200);
    EXPECT_FALSE(browser.shows(password)) << "a password is typed again";
    EXPECT_EQ(signsInAgain(password), 200);
    EXPECT_TRUE(browser.shows("mira@new.example"));
    *m_now += WebSessions::idleSeconds + 1;
    browser.get("/house");
    EXPECT_EQ(signsInAgain(password), 303);
    EXPECT_EQ(browser.last.header("Location"), "/house");
    for (const char *elsewhere : {"https://elsewhere.example", "//elsewhere.example", "/account/signout"}) {
        browser.get("/account");
        EXPECT_EQ(browser.post("/account/signin", {{"email", miraName}, {"password", password}, {"to", elsewhere}}),
                  303);
        EXPECT_EQ(browser.last.header("Location"), "/account") << elsewhere;
    }
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
