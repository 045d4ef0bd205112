// What people decide on the pages: about their account, and the owner about the service.

#include "webfixture.h"

#include "server/api/houseaddress.h"
#include "server/store/store.h"

#include <fstream>
#include <regex>

namespace velmora::server {

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
    data("trackEvent", {{"eventType", "end"}, {"seconds", 90}, {"trackToken", trackToken}}, token);
    data("trackEvent", {{"eventType", "start"}, {"trackToken", firstTrack(token, station)["trackToken"]}}, token);
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
    for (const char *list : {"plays", "remembered"}) {
        EXPECT_EQ(mine[list].at(0)["song"], track.at("songName")) << list;
        EXPECT_EQ(mine[list].at(0)["ended"], "ended") << list;
    }
    for (const char *list : {"sessions", "handedOut", "underWay"})
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
        EXPECT_GT(tables.size(), 11U);
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

} // namespace velmora::server
