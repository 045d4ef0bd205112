// The pages as a browser sees them, and the mails.

#include "serverfixture.h"

#include "server/library/library.h"
#include "server/store/store.h"
#include "server/web/html.h"
#include "server/web/mailbox.h"
#include "server/web/webpages.h"

#include <fstream>
#include <netinet/in.h>
#include <openssl/ssl.h>
#include <regex>
#include <sys/socket.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace velmora::server {

namespace {

// A browser with its one cookie and the form token of the page it shows.
class Browser {
public:
    explicit Browser(int port)
        : m_port(port)
    {
    }

    int get(const std::string &path) { return take(httpGet(m_port, path, headers())); }

    int post(const std::string &path, std::map<std::string, std::string> form, bool withToken = true)
    {
        if (withToken)
            form.emplace("csrf", csrf);
        std::string fields;
        for (const auto &[name, value] : form) {
            fields += (fields.empty() ? "" : "&") + name + "=";
            for (const unsigned char c : value) {
                char escaped[4];
                std::snprintf(escaped, sizeof escaped, "%%%02X", c);
                fields += c == ' ' ? "+" : escaped;
            }
        }
        return take(httpPost(m_port, path, fields, headers()));
    }

    bool shows(const std::string &text) const { return body.find(text) != std::string::npos; }

    std::string body;
    std::string csrf;
    std::string cookie;
    HttpAnswer last;

private:
    http::Headers headers() const
    {
        return cookie.empty() ? http::Headers{} : http::Headers{{"Cookie", "other=1; " + cookie}};
    }

    int take(const HttpAnswer &answer)
    {
        body = answer.body;
        last = answer;
        const std::string set = answer.header("Set-Cookie");
        if (!set.empty())
            cookie = set.substr(0, set.find(';'));
        std::smatch match;
        if (std::regex_search(body, match, std::regex("name=\"csrf\" value=\"([^\"]+)\"")))
            csrf = match[1];
        return answer.status;
    }

    const int m_port;
};

} // namespace

class WebTest : public ServerTest {
protected:
    WebTest()
        : m_pages(*m_service, false, [now = m_now] { return now->load(); })
    {
        ListenSettings settings;
        settings.addPages = [this](http::Router &router) { m_pages.addTo(router); };
        settings.pageNotFound = [this] { return m_pages.notFound(); };
        m_port = listen(settings).port();
        m_device = addDevice();
    }

    // The server must stop before the pages are deleted.
    ~WebTest() override { m_server->stop(); }

    std::string newCode()
    {
        return data("generateDeviceActivationCode", {{"deviceId", m_device.digits}}, m_device.partnerToken)
            .value("activationCode", "");
    }
    Reply deviceLogin(int slot = 0)
    {
        return call("userLogin", {{"loginType", "deviceId"}, {"deviceId", m_device.slot(slot)}}, m_device.partnerToken);
    }
    // Signed in on the account page.
    int signIn(Browser &browser, const std::string &email = miraName, const std::string &secret = password)
    {
        browser.get("/account");
        return browser.post("/account/signin", {{"email", email}, {"password", secret}});
    }
    MailSettings mailSettings() const
    {
        MailSettings settings;
        settings.outbox = m_outbox;
        settings.address = [] { return std::string("https://radio.example"); };
        return settings;
    }
    // Enters a code and reaches the permission page.
    void enter(Browser &browser, const std::string &code, const std::string &action, const std::string &email,
               const std::string &secret)
    {
        browser.get("/activate");
        ASSERT_EQ(browser.post("/activate", {{"code", code}}), 200) << browser.body;
        ASSERT_EQ(browser.post("/activate/account", {{"action", action}, {"email", email}, {"password", secret}}), 200)
            << browser.body;
        if (action == "create") {
            EXPECT_TRUE(browser.shows("Look into your mail"));
            const std::string token = m_mailer.sent.back().token;
            EXPECT_EQ(browser.get("/confirm?token=" + token), 200);
            EXPECT_EQ(browser.get("/confirm?token=" + token), 200) << "looking at it makes nothing";
            EXPECT_EQ(browser.post("/confirm", {{"token", token}}), 200);
            EXPECT_EQ(httpGet(m_port, "/confirm?token=" + token).status, 410);
        }
        ASSERT_TRUE(browser.shows("Allow this radio?"));
    }

    inline static const std::map<std::string, std::string> allowed{{"answer", "allow"}};
    const std::filesystem::path m_outbox = m_directory.path() / "outbox";
    WebPages m_pages;
    int m_port = 0;
    TestDevice m_device;
};

TEST_F(WebTest, aNewAccountLetsTheRadioLogInOnce)
{
    Browser browser(m_port);
    m_device.partnerToken = data("partnerLogin", {{"deviceKey", m_device.key}, {"deviceModel", "kitchen <radio>"}})
                                .value("partnerToken", "");
    std::string code = newCode();
    *m_now += 180;
    std::transform(code.begin(), code.end(), code.begin(), [](unsigned char c) { return char(std::tolower(c)); });
    enter(browser, " " + code.substr(0, 4) + "-" + code.substr(4), "create", "nora@example.org", "a long enough one");
    for (const char *said : {"00:1A:2B:3C:4D:5E", "&quot;kitchen &lt;radio&gt;&quot;", "3 minutes ago", "192.0.2.7"})
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
    for (const char *path : {"/activate", "/account", "/reset?token=x", "/pin?token=x", "/forgot", "/mistyped"}) {
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

TEST_F(WebTest, typedTextIsNeverMarkup)
{
    Browser browser(m_port);
    signIn(browser, "'\"><script>alert(1)&</script>", "x");
    EXPECT_TRUE(browser.shows("value=\"&#39;&quot;&gt;&lt;script&gt;alert(1)&amp;&lt;/script&gt;\"")) << browser.body;
    EXPECT_FALSE(browser.shows("<script"));
}

TEST_F(WebTest, aReminderIsALinkOfTheConfiguredAddressInAnOwnerOnlyFile)
{
    addAccount();
    const auto remind = [&](const char *userName) {
        return call("emailPassword", {{"userName", userName}}, m_device.partnerToken).code;
    };
    m_service->mailer = nullptr;
    EXPECT_EQ(remind(miraName), 5000) << "no mail is set up";
    {
        Mailbox mailbox(mailSettings());
        m_service->mailer = &mailbox;
        EXPECT_EQ(remind(miraName), 0);
        EXPECT_EQ(remind("nobody@example.org"), 0) << "the answer does not tell who has an account";
        EXPECT_EQ(remind("mira"), 5107);
    }
    m_service->mailer = &m_mailer;
    std::vector<std::filesystem::path> mails;
    for (const auto &entry : std::filesystem::directory_iterator(m_outbox))
        mails.push_back(entry.path());
    ASSERT_EQ(mails.size(), 1U);
    struct stat info {};
    ASSERT_EQ(::stat(mails.front().c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600U);
    ASSERT_EQ(::stat(m_outbox.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0700U);
    std::ifstream file(mails.front());
    const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    std::smatch match;
    ASSERT_TRUE(
        std::regex_search(text, match, std::regex("https://radio\\.example(/reset\\?token=[A-Za-z0-9_-]+)\r\n")));
    EXPECT_NE(text.find("To: <mira@example.org>\r\n"), std::string::npos);
    EXPECT_EQ(text.find(password), std::string::npos);
    Browser browser(m_port);
    EXPECT_EQ(browser.get(match[1]), 200);
}

// A mail server that records what it receives.
class MailServer {
public:
    // Whether it offers STARTTLS, and whether that works.
    enum class Tls { Absent, Refused, Works };

    // One conversation for each element: its answer to the recipient. `identity` is a certificate with its key.
    explicit MailServer(std::vector<std::string_view> answers, Tls tls = Tls::Absent,
                        const std::filesystem::path &identity = {})
        : m_answers(std::move(answers))
        , m_tls(tls)
        , m_context(SSL_CTX_new(TLS_server_method()), &SSL_CTX_free)
        , m_listening(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        if (::bind(m_listening, reinterpret_cast<sockaddr *>(&address), size) != 0 || ::listen(m_listening, 1) != 0 ||
            ::getsockname(m_listening, reinterpret_cast<sockaddr *>(&address), &size) != 0)
            throw std::runtime_error("no port for the mail server");
        port = ntohs(address.sin_port);
        if (tls == Tls::Works &&
            (SSL_CTX_use_certificate_file(m_context.get(), identity.c_str(), SSL_FILETYPE_PEM) != 1 ||
             SSL_CTX_use_PrivateKey_file(m_context.get(), identity.c_str(), SSL_FILETYPE_PEM) != 1))
            throw std::runtime_error("no certificate for the mail server");
        m_thread = std::thread([this] {
            for (const std::string_view answer : m_answers)
                talk(answer);
        });
    }
    ~MailServer()
    {
        finish();
        ::close(m_listening);
    }
    // Waits for the end of the conversations.
    void finish()
    {
        ::shutdown(m_listening, SHUT_RD);
        if (m_thread.joinable())
            m_thread.join();
    }

    int port = 0;
    std::string heard;      // valid after finish()
    std::string heardByAll; // what of it was not encrypted

private:
    void talk(std::string_view answer)
    {
        const int peer = ::accept(m_listening, nullptr, nullptr);
        if (peer < 0)
            return;
        std::unique_ptr<SSL, decltype(&SSL_free)> ssl(nullptr, &SSL_free);
        const auto say = [&](std::string_view text) {
            return ssl ? SSL_write(ssl.get(), text.data(), static_cast<int>(text.size())) > 0
                       : ::send(peer, text.data(), text.size(), MSG_NOSIGNAL) > 0;
        };
        const auto nextLine = [&] {
            std::string line;
            char letter = 0;
            while (!line.ends_with('\n') && (ssl ? SSL_read(ssl.get(), &letter, 1) : ::read(peer, &letter, 1)) == 1)
                line += letter;
            return line;
        };
        bool isText = false;
        bool isTalking = say("220 here\r\n");
        for (std::string said = nextLine(); isTalking && !said.empty(); said = nextLine()) {
            heard += said;
            heardByAll += ssl ? "" : said;
            if (isText && said != ".\r\n")
                continue;
            isText = said.starts_with("DATA");
            if (said.starts_with("EHLO")) {
                isTalking = say(ssl                    ? "250-here\r\n250 AUTH PLAIN\r\n"
                                : m_tls != Tls::Absent ? "250-here\r\n250-AUTH PLAIN\r\n250 STARTTLS\r\n"
                                                       : "250-here\r\n250 AUTH PLAIN\r\n");
            } else if (said.starts_with("STARTTLS") && m_tls == Tls::Works) {
                isTalking = say("220 go on\r\n");
                ssl.reset(SSL_new(m_context.get()));
                SSL_set_fd(ssl.get(), peer);
                isTalking = isTalking && SSL_accept(ssl.get()) == 1;
            } else if (said.starts_with("STARTTLS")) {
                isTalking = say("454 not now\r\n");
            } else if (said.starts_with("AUTH")) {
                isTalking = say("334 \r\n");
                heard += nextLine();
                isTalking = isTalking && say("235 welcome\r\n");
            } else {
                isTalking = say(isText ? "354 go on\r\n" : said.starts_with("RCPT") ? answer : "250 fine\r\n");
            }
        }
        ssl.reset();
        ::close(peer);
    }

    const std::vector<std::string_view> m_answers;
    const Tls m_tls;
    const std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> m_context;
    int m_listening;
    std::thread m_thread;
};

TEST_F(WebTest, aTemporaryMailErrorIsRetriedAndAPermanentOneIsNot)
{
    const std::tuple<std::vector<std::string_view>, bool> cases[] = {
        {{"250 fine\r\n"}, true}, {{"451 later\r\n", "250 fine\r\n"}, true}, {{"550 nobody here\r\n"}, false}};
    for (const auto &[answers, isDelivered] : cases) {
        SCOPED_TRACE(answers.front());
        MailServer server(answers);
        MailSettings settings = mailSettings();
        settings.smtp = "smtp://127.0.0.1:" + std::to_string(server.port);
        settings.sender = "radio@radio.example";
        settings.retries = {std::chrono::seconds(0)};
        Mailbox mailbox(settings);
        mailbox.sendPasswordReset("mira@example.org", "token-of-the-mail");
        // `heard` is valid only after all conversations have ended.
        for (int i = 0; i < 1000 && !mailbox.isIdle(); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        server.finish();
        EXPECT_NE(server.heard.find("MAIL FROM:<radio@radio.example>"), std::string::npos) << server.heard;
        EXPECT_NE(server.heard.find("RCPT TO:<mira@example.org>"), std::string::npos) << server.heard;
        const std::string link = "https://radio.example/reset?token=token-of-the-mail\r\n";
        EXPECT_EQ(server.heard.find(link) != std::string::npos, isDelivered) << server.heard;
        EXPECT_EQ(std::filesystem::exists(m_outbox), !isDelivered);
    }
}

TEST_F(WebTest, WhereTlsIsRequiredAServerWithoutItGetsNeitherAPasswordNorAMail)
{
    const std::filesystem::path identity = m_directory.path() / "mail.pem";
    const std::string file = identity.string();
    const std::string command = "openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj /CN=mail -addext "
                                "subjectAltName=IP:127.0.0.1 -keyout " +
                                file + " -out " + file + ".crt 2>/dev/null && cat " + file + ".crt >>" + file;
    ASSERT_EQ(std::system(command.c_str()), 0);
    const std::filesystem::path login = m_directory.path() / "login";
    std::ofstream(login) << "mira\nsecret\n";
    using Tls = MailServer::Tls;
    const struct {
        const char *what;
        Tls tls;
        bool hasLogin, isRequired, isTrusted, isDelivered;
    } cases[] = {{"a login", Tls::Absent, true, false, true, false},
                 {"required", Tls::Absent, false, true, true, false},
                 {"neither", Tls::Absent, false, false, true, true},
                 {"refused", Tls::Refused, true, true, true, false},
                 {"another's certificate", Tls::Works, true, true, false, false},
                 {"all well", Tls::Works, true, false, true, true}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        MailServer server({"250 fine\r\n"}, c.tls, identity);
        MailSettings settings = mailSettings();
        settings.smtp = "smtp://127.0.0.1:" + std::to_string(server.port);
        settings.smtpLogin = c.hasLogin ? login : std::filesystem::path();
        settings.isTlsRequired = c.isRequired;
        settings.smtpCa = c.isTrusted ? std::filesystem::path(file + ".crt") : std::filesystem::path();
        settings.retries = {};
        Mailbox mailbox(settings);
        mailbox.sendPasswordReset("mira@example.org", "token-of-the-mail");
        for (int i = 0; i < 1000 && !mailbox.isIdle(); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        server.finish();
        EXPECT_EQ(server.heard.find("token-of-the-mail") != std::string::npos, c.isDelivered) << server.heard;
        EXPECT_EQ(server.heard.find("AUTH PLAIN") != std::string::npos, c.hasLogin && c.isDelivered) << server.heard;
        EXPECT_EQ(std::filesystem::exists(m_outbox), !c.isDelivered);
        if (c.hasLogin || c.isRequired) {
            EXPECT_EQ(server.heardByAll.find("AUTH"), std::string::npos) << server.heardByAll;
            EXPECT_EQ(server.heardByAll.find("MAIL"), std::string::npos) << server.heardByAll;
        }
        std::filesystem::remove_all(m_outbox);
    }
}

TEST_F(WebTest, AForgottenPasswordAnswersEverybodyAlikeAndTheOwnerFindsMailsThatWereNotDelivered)
{
    *m_now = std::time(nullptr); // as the mails are dated
    addAccount();
    addAccount("second@example.org");
    MailSettings settings = mailSettings();
    settings.smtp = "smtp://127.0.0.1:1";
    settings.retries = {};
    Mailbox mailbox(settings);
    m_service->mailer = &mailbox;
    Browser owner(m_port);
    Browser other(m_port);
    other.get("/account");
    EXPECT_TRUE(other.shows("href=\"/forgot\""));
    EXPECT_EQ(other.get("/forgot"), 200);
    EXPECT_EQ(other.post("/forgot", {{"email", "a<b@example.org"}}), 422);
    EXPECT_EQ(other.post("/forgot", {{"email", "nobody@example.org"}}), 200);
    const std::string unknown = std::regex_replace(other.body, std::regex("nobody@"), "second@");
    other.get("/forgot");
    EXPECT_EQ(other.post("/forgot", {{"email", "second@example.org"}}), 200);
    EXPECT_EQ(other.body, unknown);
    for (int i = 0; i < 1000 && !mailbox.isIdle(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));

    EXPECT_EQ(owner.get("/library/mails"), 403);
    signIn(owner);
    signIn(other, "second@example.org");
    EXPECT_EQ(other.get("/library/mails"), 403);
    EXPECT_EQ(owner.get("/library/mails"), 200);
    EXPECT_TRUE(owner.shows("second@example.org"));
    EXPECT_FALSE(owner.shows("nobody@example.org"));
    EXPECT_FALSE(owner.shows("DOCTYPE") || owner.shows("&lt;p&gt;")) << "the text, not the part of markup";
    std::smatch match;
    ASSERT_TRUE(std::regex_search(owner.body, match, std::regex("href=\"https://radio\\.example(/reset[^\"]*)\"")));
    EXPECT_EQ(other.get(match[1]), 200);
    *m_now += 3700; // the mail is dated by the real clock, some seconds later
    signIn(owner);
    signIn(other, "second@example.org");
    owner.get("/library/mails");
    EXPECT_FALSE(owner.shows("/reset")) << "its link is no longer valid";

    std::ofstream(m_directory.path() / "1.eml") << "beside the outbox";
    EXPECT_EQ(owner.post("/library/mails/forget", {{"mail", "../1.eml"}}), 303);
    EXPECT_TRUE(std::filesystem::exists(m_directory.path() / "1.eml"));
    owner.get("/library/mails");
    ASSERT_TRUE(std::regex_search(owner.body, match, std::regex("name=\"mail\" value=\"([^\"]*)\"")));
    EXPECT_EQ(other.post("/library/mails/forget", {{"mail", match[1]}}), 403);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_outbox), {}), 1);
    EXPECT_EQ(owner.post("/library/mails/forget", {{"mail", match[1]}}), 303);
    EXPECT_TRUE(std::filesystem::is_empty(m_outbox));
    m_service->mailer = &m_mailer;
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
