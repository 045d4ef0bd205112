#pragma once

#include "httpclient.h"
#include "server/api/apiserver.h"
#include "temporarydirectory.h"

#include <gtest/gtest.h>

namespace velmora::server {

using nlohmann::json;

// The code and data of an answer.
struct Reply {
    int httpStatus = 0;
    int code = -1;
    json data;
};

// A device with its key; logs in as the radio does.
struct TestDevice {
    std::string digits = "001A2B3C4D5E";
    std::string key = randomToken();
    std::string partnerToken;
    std::string slot(int number) const { return digits + "-" + std::to_string(number); }
};

// A service with a small catalogue: four styles, three artists each, two tracks of each artist; two ads. Its clock
// stands until the test turns it; its passwords cost next to nothing.
class ServerTest : public testing::Test {
protected:
    static constexpr const char *miraName = "mira@example.org";
    static constexpr const char *password = "seven small lamps"; // of every account

    ServerTest();
    ~ServerTest() override;

    // The service from its data directory; when it runs already, anew.
    void start();
    // A function called without a network.
    Reply call(const std::string &function, const json &parameters, const std::string &token = {});
    // Its data; the test fails unless the code is 0.
    json data(const std::string &function, const json &parameters, const std::string &token = {});

    // A list inside it, by value: nothing is kept of an answer that has gone.
    json list(const std::string &function, const json &parameters, const std::string &token, const char *name)
    {
        return data(function, parameters, token).value(name, json::array());
    }

    // An account with its Tapestry station alone: each test makes the stations that it needs.
    AccountId addAccount(const std::string &userName = miraName);
    AccountId idOf(const std::string &userName = miraName) { return m_service->accounts.find(userName)->id; }
    TestDevice addDevice(const std::string &digits = "001A2B3C4D5E");
    Reply tryLogIn(const std::string &userName, const std::string &secret, const TestDevice &device);
    // A user token of the account, logged in by name on this device.
    std::string logIn(const std::string &userName, const TestDevice &device);
    // Both at once, for tests of what comes after.
    std::string newListener(const std::string &userName = miraName);
    // A station of the style, by its token.
    std::string addStation(const std::string &token, const std::string &style);
    // The first track entry of a new list of the station.
    json firstTrack(const std::string &userToken, const std::string &stationToken);
    std::string tapestryToken(const std::string &userToken);

    void fillCatalogue();
    void clearCatalogue();
    // As when the track's file goes or comes back.
    void setPlayable(const std::string &publicId, bool isPlayable);
    static std::vector<Track> smallCatalogue(const std::filesystem::path &mediaDirectory);

    // Answers over HTTP from now on, on a port of its own.
    ApiServer &listen(ListenSettings settings = {});

    TemporaryDirectory m_directory;
    std::string m_requestKey; // goes with every call; empty: none
    std::shared_ptr<std::atomic<int64_t>> m_now = std::make_shared<std::atomic<int64_t>>(1'800'000'000);
    std::unique_ptr<StationService> m_service;
    std::unique_ptr<Dispatcher> m_dispatcher;
    std::unique_ptr<ApiServer> m_server;
};

} // namespace velmora::server
