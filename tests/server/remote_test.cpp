// The telephone as remote control: who may press, what arrives at the radio, what telephones are told, when it ends.

#include "server/remote/remote.h"
#include "webfixture.h"

#include <atomic>
#include <future>

namespace velmora::server {
namespace {

using namespace std::chrono_literals;

class RemoteTest : public WebTest {
protected:
    RemoteTest()
        : m_remote(*m_service, m_pages, [] { return RemoteHub::Clock::time_point(1h); })
    {
        ListenSettings settings;
        settings.addPages = [this](http::Router &router) {
            m_pages.addTo(router);
            m_remote.addTo(router);
        };
        m_port = listen(settings).port();
        addAccount();
        m_user = logIn(miraName, m_device);
        data("associateDevice", {{"deviceId", m_device.slot(0)}}, m_user);
    }
    ~RemoteTest() override { m_server->stop(); }

    // What the radio's program asks next; waits as that does.
    json ask(bool knowsWatched = false)
    {
        const json question = {
            {"channel", m_channel}, {"epoch", m_epoch}, {"after", m_last}, {"isWatched", knowsWatched}};
        const HttpAnswer answer = httpPost(m_port, "/v1/remoteOrders", question.dump(), authorization());
        const json data = json::parse(answer.body).value("data", json::object());
        m_epoch = data.value("epoch", m_epoch);
        m_last = data.value("last", m_last);
        return data;
    }
    std::future<json> asking(bool knowsWatched = false)
    {
        return std::async(std::launch::async, [this, knowsWatched] { return ask(knowsWatched); });
    }
    json report(const json &state)
    {
        return json::parse(httpPost(m_port, "/v1/remoteReport", state.dump(), authorization()).body);
    }
    http::Headers authorization() const { return {{"Authorization", "Bearer " + m_device.partnerToken}}; }

    Browser signedIn(const std::string &email = miraName)
    {
        Browser browser(m_port);
        signIn(browser, email);
        browser.get("/account");
        return browser;
    }
    std::string state(const std::string &after = {}) const { return "/remote/state?after=" + after; }
    static std::string revisionOf(const Browser &browser) { return json::parse(browser.body).value("revision", ""); }
    // Begins to wait, on a browser of its own thread.
    static std::future<int> waiting(Browser &browser, const std::string &path)
    {
        return std::async(std::launch::async, [&browser, path] { return browser.get(path); });
    }
    // Two clients that wait cannot be told apart from outside: what they wait for has to come until it arrives.
    template <typename Value>
    static void until(std::future<Value> &future, const std::function<void()> &act)
    {
        do
            act();
        while (future.wait_for(20ms) != std::future_status::ready);
    }

    Remote m_remote;
    std::string m_user;
    const std::string m_channel = randomToken(16);
    std::string m_epoch;
    uint64_t m_last = 0;
};

TEST_F(RemoteTest, WhatIsPressedArrivesOnceAndInOrder)
{
    EXPECT_EQ(ask().value("orders", json()), json::array());
    auto radio = asking();
    Browser phone = signedIn();
    const auto press = [&](std::map<std::string, std::string> form) { return phone.post("/remote/press", form); };
    EXPECT_EQ(press({{"key", "up"}, {"page", "p"}, {"count", "1"}}), 303) << phone.body;
    EXPECT_EQ(radio.get().value("orders", json()), json::parse(R"([{"key":"up"}])"));
    EXPECT_EQ(press({{"key", "up"}, {"page", "p"}, {"count", "1"}}), 303) << "a browser may send it again";
    EXPECT_EQ(press({{"volume", "40"}, {"page", "p"}, {"count", "2"}}), 303);
    EXPECT_EQ(press({{"text", "Käthe & Söhne"}, {"field", "3"}}), 303);
    EXPECT_EQ(press({{"station", "2:Old: Waltzes"}}), 303);
    EXPECT_EQ(press({{"done", "1"}, {"field", "3"}}), 303);
    EXPECT_EQ(ask().value("orders", json()),
              json::parse(R"([{"volume":40},{"field":3,"text":"Käthe & Söhne"},{"name":"Old: Waltzes","station":2},
                              {"done":true,"field":3}])"));
    // An answer that was lost on its way is asked for again.
    const uint64_t last = std::exchange(m_last, m_last - 1);
    EXPECT_EQ(ask().value("orders", json()).size(), 1U);
    EXPECT_EQ(m_last, last);
    const std::map<std::string, std::string> unknown[] = {{{"key", "power"}},
                                                          {{"key", "up; reboot"}},
                                                          {{"volume", "101"}},
                                                          {{"volume", "4x"}},
                                                          {{"sleep", "14"}},
                                                          {{"sleep", "soon"}},
                                                          {{"station", "-1:x"}},
                                                          {{"station", "x"}},
                                                          {{"text", "a"}},
                                                          {{"text", "a\nb"}, {"field", "1"}},
                                                          {{"text", "\xff"}, {"field", "1"}},
                                                          {}};
    for (const auto &form : unknown) {
        EXPECT_EQ(press(form), 303);
        EXPECT_NE(phone.last.header("Location").find("problem=unknown"), std::string::npos) << json(form);
    }
    Browser script = signedIn();
    EXPECT_EQ(httpPost(m_port, "/remote/press", "csrf=" + script.csrf + "&key=power",
                       {{"Cookie", script.cookie}, {"Accept", "application/json"}})
                  .status,
              422);
}

TEST_F(RemoteTest, NobodyElsePresses)
{
    ask();
    addAccount("other@example.org");
    Browser phone = signedIn();
    Browser other = signedIn("other@example.org");
    Browser stranger(m_port);
    stranger.get("/account");
    const auto press = [&](const Browser &browser, const http::Headers &more = {}, const std::string &csrf = {}) {
        http::Headers headers = {{"Cookie", browser.cookie}, {"Accept", "application/json"}};
        headers.insert(headers.end(), more.begin(), more.end());
        return httpPost(m_port, "/remote/press",
                        "key=up&radio=" + m_device.slot(0) + "&csrf=" + (csrf.empty() ? browser.csrf : csrf), headers)
            .status;
    };
    EXPECT_EQ(press(stranger), 401);
    EXPECT_EQ(press(other), 404);
    EXPECT_EQ(press(phone, {}, other.csrf), 403);
    EXPECT_EQ(press(phone, {{"Origin", "https://evil.example"}}), 403);
    EXPECT_EQ(press(phone, {{"Origin", "null"}}), 403);
    EXPECT_EQ(press(phone, {{"Sec-Fetch-Site", "cross-site"}}), 403);
    EXPECT_EQ(httpPost(m_port, "/v1/remoteOrders", "{}", {{"Authorization", "Bearer " + m_user}}).body.find("5097"),
              std::string("{\"code\":").size());
    *m_now += WebSessions::idleSeconds + 1;
    EXPECT_EQ(press(phone), 401) << "expired";
    Browser again = signedIn();
    EXPECT_EQ(press(again, {{"Origin", "http://127.0.0.1:" + std::to_string(m_port)}}), 200);
    EXPECT_EQ(ask().value("orders", json()).size(), 1U) << "nothing of the others";
    // Another phone unlinks the radio: neither key nor look any more.
    Browser owner = signedIn();
    EXPECT_EQ(owner.post("/account/revoke", {{"device", m_device.slot(0)}}), 200);
    EXPECT_EQ(press(again), 404);
    EXPECT_EQ(again.get(state() + "&radio=" + m_device.slot(0)), 404);
}

TEST_F(RemoteTest, TenTelephonesSeeTheSameAndAnEndedSessionSeesNothingMore)
{
    ask();
    std::vector<Browser> phones;
    for (int i = 0; i < 10; ++i)
        phones.push_back(signedIn());
    EXPECT_EQ(report({{"title", "unseen"}}).at("data").value("isWatched", true), false) << "nobody looks";
    EXPECT_EQ(phones[0].get(state()), 200);
    EXPECT_EQ(json::parse(phones[0].body).value("state", json(1)), json()) << "nothing was kept";
    EXPECT_TRUE(ask().value("wantsReport", false));
    std::vector<std::future<int>> waits;
    for (Browser &phone : phones)
        waits.push_back(waiting(phone, state(revisionOf(phones[0]))));
    int number = 0;
    until(waits[9], [&] {
        EXPECT_TRUE(report({{"title", "Lamps"}, {"volume", ++number % 100}}).at("data").value("isWatched", false));
    });
    for (auto &wait : waits)
        EXPECT_EQ(wait.get(), 200);
    for (Browser &phone : phones) { // whoever asked a moment later sees the newest
        EXPECT_EQ(phone.get(state()), 200);
        EXPECT_EQ(json::parse(phone.body).value("/state/title"_json_pointer, ""), "Lamps");
        EXPECT_EQ(revisionOf(phone), revisionOf(phones[0]));
    }
    // The lost telephone waits; its session is ended from another one.
    Browser &lost = phones[1];
    auto wait = waiting(lost, state(revisionOf(lost)));
    EXPECT_EQ(wait.wait_for(100ms), std::future_status::timeout);
    EXPECT_EQ(phones[0].post("/account/session", {{"session", "*"}}), 200);
    EXPECT_EQ(wait.wait_for(20s), std::future_status::ready) << "before its time is up";
    EXPECT_EQ(wait.get(), 401);
}

TEST_F(RemoteTest, ThePageWorksWithoutScriptAndTellsNoSecret)
{
    Browser phone = signedIn();
    EXPECT_EQ(phone.get("/remote"), 200);
    EXPECT_TRUE(phone.shows("The radio is not connected"));
    phone.language = "de";
    EXPECT_EQ(phone.get("/remote?radio=" + m_device.slot(0)), 200);
    EXPECT_TRUE(phone.shows("<h2>Sender</h2>") && phone.shows("data-unreachable=\"Der Dienst") &&
                phone.shows(">15 Minuten<") && phone.shows("name=\"radio\" value=\"" + m_device.slot(0)));
    EXPECT_FALSE(phone.shows("radio is not"));
    phone.language.clear();
    EXPECT_EQ(phone.post("/remote/press", {{"key", "up"}}), 303);
    EXPECT_NE(phone.last.header("Location").find("problem=away"), std::string::npos);
    ask();
    auto radio = asking();
    auto page = waiting(phone, "/remote");
    EXPECT_TRUE(radio.get().value("isWatched", false)) << "a page that opens asks for what is shown";
    const json shown = {{"screen", "player"},
                        {"playback", "playing"},
                        {"title", "<b>Lamps</b>"},
                        {"position", 61},
                        {"length", 185},
                        {"volume", 40},
                        {"field", 7},
                        {"secret", true},
                        {"typed", "open sesame"},
                        {"stations", {"Tapestry", "Old: \"Waltzes\""}},
                        {"stationRow", 1}};
    until(page, [&] { report(shown); });
    EXPECT_EQ(page.get(), 200);
    EXPECT_EQ(phone.get("/remote"), 200); // a busy machine may have kept the first one waiting too long
    EXPECT_TRUE(phone.shows("&lt;b&gt;Lamps") && phone.shows("1:01 / 3:05") && phone.shows("type=\"password\""));
    EXPECT_TRUE(phone.shows("value=\"1:Old: &quot;Waltzes&quot;\" aria-current"));
    EXPECT_FALSE(phone.shows("open sesame"));
    const std::string policy = phone.last.header("Content-Security-Policy");
    EXPECT_NE(policy.find("script-src 'self'"), std::string::npos);
    EXPECT_EQ(policy.find("unsafe"), std::string::npos);
    EXPECT_EQ(phone.get(state()), 200);
    EXPECT_FALSE(phone.shows("open sesame"));
    // After a press the page shows what that has changed.
    ASSERT_EQ(phone.post("/remote/press", {{"volume", "70"}}), 303);
    auto after = waiting(phone, phone.last.header("Location"));
    json louder = shown;
    louder["volume"] = 70;
    until(after, [&] { report(louder); });
    EXPECT_EQ(after.get(), 200);
    EXPECT_EQ(phone.get("/remote"), 200);
    EXPECT_TRUE(phone.shows(">70</output>"));
}

TEST_F(RemoteTest, ATelephoneReachesARadioThatWaitsAtAnotherProcess)
{
    if (!m_service->store.isShared())
        GTEST_SKIP() << "a file is of one process";
    WebPages pages(*m_service, false, [now = m_now] { return now->load(); });
    Remote remote(*m_service, pages);
    ListenSettings settings;
    settings.port = 0;
    settings.logsRequests = false;
    settings.addPages = [&](http::Router &router) { remote.addTo(router); };
    ApiServer other(*m_service, settings);
    other.start();
    Browser phone = signedIn();
    const int port = std::exchange(m_port, other.port()); // the radio's from now on
    ask();
    auto radio = asking();
    // The radio's answer, and what it shows then, come to the process that the telephone asks.
    auto page = waiting(phone, "/remote");
    EXPECT_TRUE(radio.get().value("isWatched", false));
    until(page, [&] { report({{"title", "Lamps"}}); });
    EXPECT_EQ(phone.get(state()), 200);
    EXPECT_EQ(json::parse(phone.body).value("/state/title"_json_pointer, ""), "Lamps") << phone.body;
    auto change = waiting(phone, state(revisionOf(phone)));
    until(change, [&] { report({{"title", "Kites"}}); });
    EXPECT_EQ(phone.get(state()), 200);
    EXPECT_EQ(json::parse(phone.body).value("/state/title"_json_pointer, ""), "Kites") << phone.body;
    // A press reaches it, and its text is not readable in the store.
    auto orders = std::async(std::launch::async, [this] {
        json arrived = json::array();
        while (arrived.empty())
            arrived = ask(true).value("orders", json::array());
        return arrived;
    });
    until(orders, [&] { phone.post("/remote/press", {{"text", "open sesame"}, {"field", "3"}}); });
    EXPECT_EQ(m_database.content({}).find("open sesame"), std::string::npos);
    EXPECT_EQ(orders.get().at(0), json::parse(R"({"field":3,"text":"open sesame"})"));
    m_port = port; // the numbers of orders are the same at each process
    const std::string epoch = m_epoch;
    ask(false);
    EXPECT_EQ(m_epoch, epoch);
    other.stop();
}

TEST_F(RemoteTest, AReportDoesNotHideWhatAnotherProcessHasWritten)
{
    if (!m_service->store.isShared())
        GTEST_SKIP() << "a file is of one process";
    std::atomic<int> news = 0;
    RemoteBoard here(m_service->store, [&](const std::string &) { ++news; });
    RemoteBoard there(m_service->store, [](const std::string &) {});
    const RemoteBoard::Work change = [](RadioRecord &record, RadioRecord::Time) {
        ++record.revision;
        return RemoteBoard::After::News;
    };
    here.use("radio", true, change);
    there.use("radio", false, change);
    here.use("radio", false, change); // most often before the board has looked by itself
    EXPECT_GE(news, 1);
}

TEST(RemoteHub, KeepsOrdersForSecondsAndForOneProgram)
{
    auto now = RemoteHub::Clock::time_point(1h);
    RemoteHub hub([&now] { return now; });
    const auto ask = [&](const std::string &channel, const std::string &epoch, uint64_t after = 0) {
        return hub.ordersFor({"radio", channel, epoch, after, false}, std::make_shared<http::Wait>());
    };
    EXPECT_EQ(hub.give("radio", "a"), RemoteHub::Given::Away);
    const auto first = ask("one", "");
    ASSERT_TRUE(first);
    for (size_t i = 0; i < RemoteHub::mostOrders; ++i)
        EXPECT_EQ(hub.give("radio", "early"), RemoteHub::Given::Done);
    EXPECT_EQ(hub.give("radio", "more"), RemoteHub::Given::TooMany);
    now += RemoteHub::orderLife + 100ms;
    EXPECT_EQ(hub.give("radio", "late"), RemoteHub::Given::Done);
    EXPECT_EQ(ask("one", first->epoch)->orders, std::vector<std::string>{"late"});
    EXPECT_TRUE(ask("two", first->epoch)->isReplaced) << "an unknown program";
    EXPECT_FALSE(ask("two", "")->isReplaced) << "the newest one counts";
    auto wait = std::make_shared<http::Wait>();
    EXPECT_FALSE(hub.ordersFor({"radio", "two", first->epoch, UINT64_MAX, false}, wait));
    EXPECT_TRUE(ask("one", first->epoch)->isReplaced);
    EXPECT_TRUE(hub.noOrders({"radio", "one", first->epoch, 0, false}).isReplaced);
    now += RemoteHub::grace;
    EXPECT_EQ(hub.give("radio", "b"), RemoteHub::Given::Done) << "the newest one still waits";
    wait.reset();
    EXPECT_EQ(hub.give("radio", "c"), RemoteHub::Given::Away);
}

TEST(RemoteRecords, ReportsAreReadIntoBounds)
{
    for (const char *text : {"", "[]", "1", "{", "{\"title\":\"\xff\"}", "nulL"})
        EXPECT_FALSE(radioStateOf(text)) << text;
    EXPECT_FALSE(radioStateOf(json{{"title", std::string(RadioState::mostBytes, 'a')}}.dump()));
    const auto state = radioStateOf(json{
        {"screen", "bank"},
        {"playback", 5},
        {"title", "line\nline" + std::string(400, 'x')},
        {"volume", 4000},
        {"position", -7},
        {"length", 1e300},
        {"field", UINT64_MAX},
        {"stationRow", 9},
        {"stations", {"a", 5, "b"}}}.dump());
    ASSERT_TRUE(state);
    EXPECT_EQ(state->screen, "other");
    EXPECT_EQ(state->playback, "stopped");
    EXPECT_EQ(state->title.substr(0, 9), "line line");
    EXPECT_EQ(state->title.size(), RadioState::mostText);
    EXPECT_EQ(state->volume, 100);
    EXPECT_EQ(state->position, 0);
    EXPECT_EQ(state->length, 0);
    EXPECT_FALSE(state->isTyping);
    EXPECT_EQ(state->stations, (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(state->stationRow, 1);
    EXPECT_EQ(jsonOf(*radioStateOf(jsonOf(*state))), jsonOf(*state));
}

} // namespace
} // namespace velmora::server
