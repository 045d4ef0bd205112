// The functions, called through a Dispatcher: tokens, malformed requests, error codes, devices, stations, repeated
// requests.

#include "serverfixture.h"

#include "server/catalogue/textfolding.h"

#include <thread>

namespace velmora::server {
namespace {

class ApiTest : public ServerTest {};

TEST_F(ApiTest, AnotherVersionAndAnUnknownFunctionAreRefused)
{
    const Answer version = m_dispatcher->answer({"v2", "partnerLogin", "{}", "", "", ""});
    EXPECT_EQ(version.httpStatus, 404);
    EXPECT_EQ(version.body,
              (json{{"code", 5003}, {"message", version.body["message"]}, {"data", {{"supported", {"v1"}}}}}));
    const Answer function = m_dispatcher->answer({"v1", "secret\nname", "{}", "", "", ""});
    EXPECT_EQ(function.httpStatus, 404);
    EXPECT_EQ(static_cast<int>(function.code), 5005);
}

TEST_F(ApiTest, BodiesThatAreNoJsonObjectAre5001)
{
    std::string deep;
    for (int i = 0; i < 17; ++i)
        deep += R"({"a":)";
    const std::string tooDeep = deep + "1" + std::string(17, '}');
    const std::string deepEnough = deep.substr(5) + "1" + std::string(16, '}');
    const std::string brackets = R"({"deviceKey":")" + std::string(50, '[') + "\"}";
    std::string members = "{";
    for (int i = 0; i < 65; ++i)
        members += "\"" + std::to_string(i) + "\":1,";
    const std::pair<std::string, int> cases[] = {{"", 400},
                                                 {"[]", 400},
                                                 {"\"text\"", 400},
                                                 {"{", 400},
                                                 {"{} trailing", 400},
                                                 {"{\"a\":\"\xff\"}", 400},
                                                 {tooDeep, 400},
                                                 {deepEnough, 200},
                                                 {brackets, 200},
                                                 {members + R"("a":1})", 400},
                                                 {members.substr(0, members.size() - 7) + R"("64":[1,2]})", 200},
                                                 {"{\"a\":\"" + std::string(70000, 'x') + "\"}", 400}};
    for (const auto &[body, httpStatus] : cases) {
        const Answer answer = m_dispatcher->answer({"v1", "partnerLogin", body, "", "", ""});
        EXPECT_EQ(static_cast<int>(answer.code), 5001) << body.substr(0, 40);
        EXPECT_EQ(answer.httpStatus, httpStatus) << body.substr(0, 40);
    }
}

TEST_F(ApiTest, MissingAndWronglyTypedParametersAre5001AndUnknownOnesIgnored)
{
    const std::string user = newListener();
    const std::string partner = addDevice().partnerToken;
    struct Case {
        const char *function;
        json parameters;
        bool needsUser;
    };
    const Case cases[] = {
        {"partnerLogin", {{"deviceKey", 7}}, false},
        {"partnerLogin", {{"deviceKey", "too short"}}, false},
        {"userLogin", {{"loginType", "guess"}}, false},
        {"userLogin", {{"loginType", "user"}, {"userName", miraName}}, false},
        {"userLogin", {{"loginType", "deviceId"}}, false},
        {"generateDeviceActivationCode", {{"deviceId", "001A2B3C4D5E-3"}}, false},
        {"getUserInfo", json::object(), false},
        {"getStation", {{"stationToken", nullptr}}, true},
        {"getPlaylist", json::object(), true},
        {"addFeedback", {{"isPositive", "yes"}, {"trackToken", "x"}}, true},
        {"search", {{"text", {{"a", 1}}}}, true},
        {"createStation", json::object(), true},
        {"createStation", {{"trackToken", "x"}, {"musicType", "album"}}, true},
        {"renameStation", {{"newName", ""}, {"stationToken", "x"}}, true},
        {"trackEvent", {{"trackToken", "x"}, {"eventType", "dance"}}, true},
        {"setExplicitContentFilter", {{"isEnabled", 1}}, true},
    };
    for (const Case &c : cases)
        EXPECT_EQ(call(c.function, c.parameters, c.needsUser ? user : partner).code, 5001)
            << c.function << c.parameters;
    EXPECT_EQ(call("getStationList", {{"sortField", 12}, {"what", "ever"}, {"sortOrder", nullptr}}, user).code, 0);
}

TEST_F(ApiTest, EveryFunctionWantsItsOwnKindOfToken)
{
    const std::string user = newListener();
    const std::string partner = addDevice().partnerToken;
    for (const Route &route : routes()) {
        if (route.access == Access::Nobody)
            continue;
        for (const std::string &token : {std::string(), std::string("made up"), randomToken()})
            EXPECT_EQ(call(route.name, json::object(), token).code, 5097) << route.name;
        EXPECT_EQ(call(route.name, json::object(), user).code == 5097, route.access == Access::Partner) << route.name;
        EXPECT_EQ(call(route.name, json::object(), partner).code == 5097, route.access == Access::User) << route.name;
    }
    const Answer noScheme = m_dispatcher->answer({"v1", "getStationList", "{}", user, "", ""});
    EXPECT_EQ(static_cast<int>(noScheme.code), 5097);
}

TEST_F(ApiTest, ARefusedLoginDoesNotTellWhetherTheAccountExists)
{
    const AccountId mira = addAccount();
    const TestDevice device = addDevice();
    const Reply wrong = tryLogIn(miraName, "wrong one", device), nobody = tryLogIn("nobody@example.org", "x", device);
    EXPECT_EQ(wrong.code, 5098);
    EXPECT_TRUE(nobody.code == 5098 && wrong.httpStatus == nobody.httpStatus && wrong.data == nobody.data);
    const std::string user = logIn(miraName, device);
    EXPECT_EQ(tryLogIn("Mira@Example.ORG", password, device).code, 0);
    m_service->accounts.setActive(mira, false);
    EXPECT_EQ(tryLogIn(miraName, password, device).code, 5099);
    EXPECT_EQ(tryLogIn(miraName, "wrong one", device).code, 5098) << "only the right person learns of it";
    EXPECT_EQ(call("getStationList", json::object(), user).code, 5099);
}

TEST_F(ApiTest, ADeviceIsAssociatedLogsInAndIsDisassociated)
{
    addAccount();
    const TestDevice device = addDevice();
    const TestDevice thief = addDevice();
    const std::string slot = device.slot(3);
    const json deviceLogin = {{"loginType", "deviceId"}, {"deviceId", slot}};
    EXPECT_EQ(call("userLogin", deviceLogin, device.partnerToken).code, 5105);
    const std::string byName = logIn(miraName, device);
    data("associateDevice", {{"deviceId", slot}}, byName);
    EXPECT_EQ(call("userLogin", deviceLogin, thief.partnerToken).code, 5105) << "the same identity with another key";
    for (const char *function : {"getDeviceInfo", "disassociateDevice"})
        EXPECT_EQ(call(function, {{"deviceId", slot}}, thief.partnerToken).code, 5105) << function;
    const std::string elsewhere = logIn(miraName, thief);
    const std::string otherSlot = m_service->sessions.openUser(idOf(), tokenHash(device.key), device.slot(4));
    EXPECT_EQ(data("getDeviceInfo", {{"deviceId", slot}}, device.partnerToken).at("userName"), "mira@example.org");
    const std::string byDevice = data("userLogin", deviceLogin, device.partnerToken).at("userToken");
    EXPECT_EQ(call("getStationList", json::object(), byDevice).code, 0);
    data("disassociateDevice", {{"deviceId", slot}}, device.partnerToken);
    for (const auto &[token, code] : {std::pair(byDevice, 5097), {byName, 5097}, {elsewhere, 0}, {otherSlot, 0}})
        EXPECT_EQ(call("getStationList", json::object(), token).code, code);
    EXPECT_EQ(call("userLogin", deviceLogin, device.partnerToken).code, 5105);
}

TEST_F(ApiTest, WhatCostsTheServiceSomethingIsLimited)
{
    const std::string user = newListener();
    const TestDevice device = addDevice();
    struct Case {
        const char *function;
        json parameters;
        std::string token;
        int allowed;
        int code; // within the limit
    };
    const Case cases[] = {
        {"partnerLogin", {{"deviceKey", randomToken()}}, {}, 300 - 2, 0},
        {"generateDeviceActivationCode", {{"deviceId", device.digits}}, device.partnerToken, 20, 0},
        {"getPlaylist", {{"stationToken", "made up"}}, user, 6000, 5102},
    };
    for (const Case &c : cases) {
        int answered = 0;
        Reply reply = call(c.function, c.parameters, c.token);
        for (; reply.code == c.code && answered < 7000; ++answered)
            reply = call(c.function, c.parameters, c.token);
        EXPECT_EQ(answered, c.allowed) << c.function;
        EXPECT_EQ(reply.code, 5004);
        *m_now += reply.data.value("retryAfter", 1000);
        EXPECT_EQ(call(c.function, c.parameters, c.token).code, c.code) << c.function;
    }
}

TEST_F(ApiTest, LoginsWaitForEachOtherAndNobodyElseWaitsForThem)
{
    addAccount();
    const TestDevice device = addDevice();
    const std::string user = logIn(miraName, device);
    ListenSettings settings;
    settings.limits.passwordWorkers = 0; // no hash ever ends
    settings.limits.passwordsOfAddress = 1;
    settings.limits.endTime = std::chrono::milliseconds(10);
    const int port = listen(settings).port();
    const auto request = [&](const char *function, const std::string &body, const std::string &token) {
        return "POST /v1/" + std::string(function) + " HTTP/1.1\r\nHost: radio\r\nAuthorization: Bearer " + token +
               "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
    };
    const json byName = {{"loginType", "user"}, {"userName", miraName}, {"password", password}};
    const std::string login = request("userLogin", byName.dump(), device.partnerToken);
    HttpClient first(port);
    HttpClient second(port);
    first.send(login);
    second.send(login);
    while (!first.isOver() && !second.isOver())
        std::this_thread::yield();
    const HttpAnswer refused = (first.isOver() ? first : second).receive(); // the one that came later
    EXPECT_EQ(refused.status, 503);
    EXPECT_EQ(json::parse(refused.body).at("code"), 5004);
    HttpClient other(port);
    other.send(request("getStationList", "{}", user));
    EXPECT_EQ(other.receive().status, 200);
    other.send(request("userLogin", R"({"loginType":"deviceId","deviceId":"001A2B3C4D5E-0"})", device.partnerToken));
    EXPECT_EQ(json::parse(other.receive().body).at("code"), 5105);
}

TEST_F(ApiTest, CreateUserMakesAnAccountWhenTheMailsLinkIsOpenedAndTellsNothingBefore)
{
    const TestDevice device = addDevice();
    const auto create = [&](const std::string &userName, const std::string &secret) {
        return call("createUser", {{"userName", userName}, {"password", secret}, {"deviceId", device.slot(0)}},
                    device.partnerToken);
    };
    EXPECT_EQ(create("no address", "12345678").code, 5107);
    EXPECT_EQ(create("ines@example.org", "short").code, 5108);
    const Reply made = create("ines@example.org", "two tin trumpets");
    ASSERT_EQ(made.code, 0);
    EXPECT_EQ(call("getStationList", json::object(), made.data.at("userToken")).code, 5097) << "not yet";
    ASSERT_EQ(m_mailer.sent.size(), 1u);
    EXPECT_EQ(m_mailer.sent[0].address, "ines@example.org");
    EXPECT_FALSE(m_service->finishSignUp("made up"));
    const std::optional<AccountId> id = m_service->finishSignUp(m_mailer.sent[0].token);
    EXPECT_EQ(id, idOf("ines@example.org"));
    EXPECT_FALSE(m_service->finishSignUp(m_mailer.sent[0].token)) << "it opens once";
    Reply known = create("INES@example.org", "two tin trumpets");
    EXPECT_EQ(m_mailer.sent.at(1).kind, "has account");
    EXPECT_EQ(call("getStationList", json::object(), known.data.at("userToken")).code, 5097) << "never";
    known.data.at("userToken") = made.data.at("userToken");
    known.data.at("userName") = made.data.at("userName");
    EXPECT_TRUE(known.code == made.code && known.data == made.data) << "the answer does not tell who has an account";
    for (int i = 0; i < 9; ++i)
        create("ines@example.org", "two tin trumpets");
    EXPECT_EQ(m_mailer.sent.size(), 3u) << "nobody's mailbox is flooded";
    create("late@example.org", "two tin trumpets");
    *m_now += SignUps::linkSeconds;
    EXPECT_FALSE(m_service->finishSignUp(m_mailer.sent.back().token)) << "too late";
    std::vector<std::string> names;
    for (const json &station : list("getStationList", json::object(), made.data.at("userToken"), "stations"))
        names.push_back(station.at("stationName"));
    EXPECT_EQ(names, (std::vector<std::string>{"Tapestry", "Ambient", "Folk", "Rock", "Swing"}));
    EXPECT_EQ(call("userLogin", {{"loginType", "deviceId"}, {"deviceId", device.slot(0)}}, device.partnerToken).code,
              0);
}

TEST_F(ApiTest, TheStationListComesTapestryFirstAndInTheOrderAskedFor)
{
    const std::string user = newListener();
    for (const char *style : {"rock", "ambient", "swing"}) {
        addStation(user, style);
        *m_now += 60;
    }
    const auto names = [&](const json &parameters) {
        std::string all;
        for (const json &station : list("getStationList", parameters, user, "stations"))
            all += station.at("stationName").get<std::string>().substr(0, 1);
        return all;
    };
    EXPECT_EQ(names({{"sortField", "dateCreated"}, {"sortOrder", "desc"}}), "TSAR");
    EXPECT_EQ(names({{"sortField", "dateCreated"}, {"sortOrder", "asc"}}), "TRAS");
    EXPECT_EQ(names({{"sortField", "name"}, {"sortOrder", "asc"}}), "TARS");
    EXPECT_EQ(names({{"sortField", "name"}, {"sortOrder", "desc"}}), "TSRA");
}

TEST_F(ApiTest, TheChecksumChangesWhenAStationIsCreatedRenamedOrDeleted)
{
    const std::string user = newListener();
    const auto checksum = [&] { return data("getStationListChecksum", json::object(), user).at("checksum"); };
    const json before = checksum();
    const std::string station = addStation(user, "folk");
    EXPECT_EQ(addStation(user, "folk"), station) << "the same seed gives the same station";
    const json withIt = checksum();
    EXPECT_NE(before, withIt);
    const std::string longest = "Für Élise " + std::string(54, 'x');
    ASSERT_EQ(characterCount(longest), 64u);
    EXPECT_EQ(call("renameStation", {{"newName", longest + "x"}, {"stationToken", station}}, user).code, 5001);
    EXPECT_EQ(call("renameStation", {{"newName", "two\nlines"}, {"stationToken", station}}, user).code, 5001);
    EXPECT_EQ(data("renameStation", {{"newName", longest}, {"stationToken", station}}, user)["station"]["stationName"],
              longest);
    EXPECT_NE(checksum(), withIt);
    EXPECT_EQ(data("renameStation", {{"newName", "   "}, {"stationToken", station}}, user)["station"]["stationName"],
              "   ");
    data("deleteStation", {{"stationToken", station}}, user);
    EXPECT_EQ(checksum(), before);
    for (const char *function : {"deleteStation", "getStation", "getPlaylist", "transformSharedStation"})
        EXPECT_EQ(call(function, {{"stationToken", station}}, user).code, 5102) << function;
    EXPECT_EQ(call("renameStation", {{"newName", "x"}, {"stationToken", station}}, user).code, 5102);
}

TEST_F(ApiTest, TheTapestryStationKeepsItsNameAndPlace)
{
    const std::string user = newListener();
    for (const char *function : {"renameStation", "deleteStation", "transformSharedStation"})
        EXPECT_EQ(call(function, {{"newName", "Mine"}, {"stationToken", tapestryToken(user)}}, user).code, 5100)
            << function;
}

TEST_F(ApiTest, AGenreStationNeedsTwentyTracksByThreeArtistsWhereAnyStyleHasThem)
{
    const std::string user = newListener();
    EXPECT_EQ(m_service->catalogue.styles(), (std::vector<std::string>{"ambient", "folk", "rock", "swing"}));
    std::vector<Track> tracks;
    for (const auto &[style, count, artists] : {std::tuple("Large", 20, 3), {"Short", 19, 3}, {"Lonely", 30, 2}}) {
        for (int i = 0; i < count; ++i) {
            Track track = smallCatalogue(m_directory.path() / "media").front();
            track.publicId = track.song = style + std::to_string(i);
            track.artist = style + std::to_string(i % artists);
            track.style = style;
            tracks.push_back(track);
        }
    }
    m_service->catalogue.put(tracks);
    EXPECT_EQ(m_service->catalogue.styles(), std::vector<std::string>{"Large"});
    m_service->catalogue.expectStyles({"To Come", "short"});
    EXPECT_EQ(m_service->catalogue.styles(), (std::vector<std::string>{"Large", "Short", "To Come"}));
}

TEST_F(ApiTest, TheHundredAndFirstStationIsRefused)
{
    const std::string user = newListener();
    const AccountId mira = idOf();
    std::vector<Track> many;
    for (int i = 0; i < 100; ++i) {
        Track track;
        track.publicId = "m" + std::to_string(i);
        track.song = track.artist = track.album = "M" + std::to_string(i);
        track.style = "ambient";
        many.push_back(track);
    }
    m_service->catalogue.put(many);
    int made = 1; // Tapestry
    StationResult result = StationResult::Done;
    for (size_t i = 0; i < many.size() && result == StationResult::Done; ++i) {
        Station station;
        const int64_t id = m_service->catalogue.track(many[i].publicId)->id;
        result = m_service->stations.create(mira, {MusicKind::Track, std::to_string(id)}, &station);
        made += result == StationResult::Done;
    }
    EXPECT_EQ(made, 100);
    EXPECT_EQ(result, StationResult::TooMany);
    const json found = data("search", {{"text", "M99"}}, user).at("artists").at(0);
    EXPECT_EQ(call("createStation", {{"musicToken", found.at("musicToken")}}, user).code, 5101);
    EXPECT_EQ(data("getUserInfo", json::object(), user).at("stationCount"), 100);
}

TEST_F(ApiTest, ASharedStationTakesNoFeedbackUntilItIsTheListenersOwn)
{
    const std::string user = newListener();
    const AccountId mira = idOf();
    Station shared;
    ASSERT_EQ(m_service->stations.createShared(mira, {MusicKind::Style, "rock"}, "Next door", &shared),
              StationResult::Done);
    const json track = firstTrack(user, shared.token);
    EXPECT_EQ(track.at("allowFeedback"), false);
    const json thumb = {{"isPositive", true}, {"trackToken", track.at("trackToken")}};
    EXPECT_EQ(call("addFeedback", thumb, user).code, 5100);
    EXPECT_EQ(call("renameStation", {{"newName", "Mine"}, {"stationToken", shared.token}}, user).code, 5100);
    EXPECT_EQ(call("addMusic", {{"stationToken", shared.token}, {"musicToken", track.at("songToken")}}, user).code,
              5100);
    const json own = data("transformSharedStation", {{"stationToken", shared.token}}, user).at("station");
    EXPECT_EQ(own.at("isShared"), false);
    EXPECT_EQ(call("addFeedback", thumb, user).code, 0);
    EXPECT_EQ(call("addMusic", {{"stationToken", shared.token}, {"musicToken", track.at("albumToken")}}, user).code,
              5002);
}

TEST_F(ApiTest, AStationIsMadeFromThePlayingTrackOrItsArtist)
{
    const std::string user = newListener();
    const json track = firstTrack(user, tapestryToken(user));
    const auto nameOf = [&](const char *type) {
        return data("createStation", {{"trackToken", track["trackToken"]}, {"musicType", type}},
                    user)["station"]["stationName"];
    };
    EXPECT_EQ(nameOf("artist"), track["artistName"]);
    EXPECT_EQ(nameOf("song"), track["songName"]);
}

TEST_F(ApiTest, MaintenanceStopsWritingAndNotListening)
{
    const TestDevice device = addDevice();
    addAccount();
    const std::string user = logIn(miraName, device);
    data("associateDevice", {{"deviceId", device.slot(0)}}, user);
    const std::string station = addStation(user, "folk");
    m_service->activationCodes.grant(m_service->activationCodes.issueForDevice(device.digits, tokenHash(device.key)),
                                     idOf());
    const auto logInAs = [&](int slot) {
        return call("userLogin", {{"loginType", "deviceId"}, {"deviceId", device.slot(slot)}}, device.partnerToken)
            .code;
    };
    m_service->isUnderMaintenance = true;
    const json track = firstTrack(user, station);
    data("associateDevice", {{"deviceId", device.slot(0)}}, user);
    EXPECT_EQ(call("associateDevice", {{"deviceId", device.slot(1)}}, user).code, 5096);
    EXPECT_EQ(std::pair(logInAs(0), logInAs(1)), std::pair(0, 5105));
    EXPECT_EQ(call("addFeedback", {{"isPositive", true}, {"trackToken", track.at("trackToken")}}, user).code, 5096);
    EXPECT_EQ(call("deleteStation", {{"stationToken", station}}, user).code, 5096);
    EXPECT_EQ(call("getStationList", json::object(), user).code, 0);
    EXPECT_FALSE(logIn(miraName, addDevice()).empty());
    m_service->isUnderMaintenance = false;
    EXPECT_EQ(logInAs(1), 0) << "what the page allowed is kept";
}

TEST_F(ApiTest, ARepetitionWithItsRequestKeyChangesNothingAndGetsTheFirstAnswer)
{
    const TestDevice device = addDevice();
    const std::string user = newListener();
    const std::string other = newListener("tomas@example.org");
    const std::string station = addStation(user, "folk");
    const json deletion = {{"stationToken", station}};
    const json account = {{"userName", "nora@example.org"}, {"password", "a long enough one"}};
    m_requestKey = "00112233445566778899aabbccddeeff";
    const Reply made = call("createUser", account, device.partnerToken);
    ASSERT_EQ(made.code, 0);
    EXPECT_EQ(call("deleteStation", deletion, user).code, 0);
    EXPECT_EQ(call("deleteStation", deletion, other).code, 5102) << "another account may use the same key";
    EXPECT_EQ(call("deleteStation", {{"stationToken", "x"}}, user).code, 5001) << "the key belongs to another request";
    start();
    EXPECT_EQ(call("createUser", account, device.partnerToken).data, made.data);
    EXPECT_EQ(m_mailer.sent.size(), 1u);
    EXPECT_EQ(call("deleteStation", deletion, user).code, 0);
    m_requestKey = "00112233445566778899aabbccddeef0";
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(call("deleteStation", deletion, user).code, 5102) << "a refusal is an answer too";
    for (const char *odd : {"00112233445566778899aabbccddeeffa", "00112233445566778899aabbccddeefg", "0"}) {
        m_requestKey = odd;
        EXPECT_EQ(call("deleteStation", deletion, user).code, 5001) << odd;
    }
    m_requestKey = "00112233445566778899aabbccddeeff";
    *m_now += RequestKeys::keptSeconds;
    EXPECT_EQ(call("createUser", account, addDevice().partnerToken).code, 0);
    EXPECT_EQ(m_mailer.sent.size(), 2u) << "it is carried out again";
}

TEST_F(ApiTest, RepetitionsWaitForTheFirstRequestAndTheirNumberIsBounded)
{
    RequestKeys keys(m_service->store, [this] { return m_now->load(); });
    constexpr int callers = 6;
    std::atomic<int> called{0};
    std::atomic<int> worked{0};
    const auto request = [](int number) {
        const std::string digits = std::to_string(number);
        return RequestKeys::Request{"owner", std::string(32 - digits.size(), '0') + digits, "f\n{}", number % 2 == 1};
    };
    for (const int number : {0, 1}) {
        std::vector<std::jthread> threads;
        for (int i = 0; i < callers; ++i) {
            threads.emplace_back([&] {
                ++called;
                const json answer = keys.once(request(number), [&] {
                    while (called < callers * (number + 1))
                        std::this_thread::yield();
                    return json{{"code", 0}, {"data", ++worked}};
                });
                EXPECT_EQ(answer["data"], number + 1);
            });
        }
    }
    EXPECT_EQ(worked, 2);
    for (int number = 2; number < RequestKeys::mostOfOwner + 2; ++number)
        keys.once(request(number), [&] { return json{{"code", 0}, {"data", ++worked}}; });
    EXPECT_EQ(keys.once(request(2), [] { return json(); })["data"], 3);
    EXPECT_EQ(keys.once(request(1), [] { return json{{"code", 0}, {"data", "anew"}}; })["data"], "anew");
}

TEST_F(ApiTest, ManyListenersAtOnceEachGetTheirOwn)
{
    std::vector<std::thread> listeners;
    std::atomic<int> failures{0};
    for (int i = 0; i < 6; ++i) {
        const std::string name = "listener" + std::to_string(i) + "@example.org";
        listeners.emplace_back([this, name, &failures, user = newListener(name)] {
            for (int round = 0; round < 15; ++round) {
                const Reply found = call("search", {{"text", "folk"}}, user);
                const Reply made =
                    call("createStation", {{"musicToken", found.data["artists"][0]["musicToken"]}}, user);
                const Reply list = call("getPlaylist", {{"stationToken", made.data["station"]["stationToken"]}}, user);
                const Reply rated =
                    call("addFeedback",
                         {{"isPositive", true}, {"trackToken", list.data["entries"][0]["track"]["trackToken"]}}, user);
                const Reply info = call("getUserInfo", json::object(), user);
                failures += rated.code != 0 || info.data["userName"] != name || info.data["stationCount"] != 2;
            }
        });
    }
    for (std::thread &listener : listeners)
        listener.join();
    EXPECT_EQ(failures, 0);
}

TEST_F(ApiTest, TheExplicitFilterIsGuardedByItsPinAndKeepsSuchTracksAway)
{
    const std::string user = newListener();
    const std::string station = addStation(user, "folk");
    std::vector<Track> tracks = smallCatalogue(m_directory.path() / "media");
    for (Track &track : tracks)
        track.isExplicit = track.style == "folk" && track.artist.ends_with("0");
    m_service->catalogue.put(tracks);
    EXPECT_EQ(call("setExplicitPIN", {{"newPin", "12"}}, user).code, 5108);
    data("setExplicitPIN", {{"newPin", "4071"}}, user);
    EXPECT_EQ(data("isExplicitContentFilterPINProtected", json::object(), user).at("isProtected"), true);
    EXPECT_EQ(call("setExplicitContentFilter", {{"isEnabled", true}, {"pin", "0000"}}, user).code, 5100);
    EXPECT_EQ(call("setExplicitPIN", {{"newPin", "8812"}, {"oldPin", "0000"}}, user).code, 5100);
    data("setExplicitContentFilter", {{"isEnabled", true}, {"pin", "4071"}}, user);
    EXPECT_EQ(data("getExplicitContentFilter", json::object(), user).at("isEnabled"), true);
    for (int i = 0; i < 20; ++i)
        EXPECT_NE(firstTrack(user, station).at("artistName"), "Artist folk 0");
}

} // namespace
} // namespace velmora::server
