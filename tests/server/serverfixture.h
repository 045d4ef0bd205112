#pragma once

#include "httpclient.h"
#include "server/api/apiserver.h"
#include "temporarydirectory.h"
#include "testdatabase.h"

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

// Keeps the mails instead of sending them.
class TestMailer : public Mailer {
public:
    struct Mail {
        std::string kind; // "sign-up", "has account", "new address", "address changed", "password", "pin"
        std::string address;
        std::string token;
    };
    bool later(std::function<void()> job) override
    {
        job();
        return true;
    }
    void sendSignUp(const std::string &to, const std::string &token) override
    {
        sent.push_back({"sign-up", to, token});
    }
    void sendHasAccount(const std::string &to) override { sent.push_back({"has account", to, {}}); }
    void sendNewAddress(const std::string &to, const std::string &token) override
    {
        sent.push_back({"new address", to, token});
    }
    void sendAddressChanged(const std::string &to) override { sent.push_back({"address changed", to, {}}); }
    void sendPasswordReset(const std::string &to, const std::string &token) override
    {
        sent.push_back({"password", to, token});
    }
    void sendPinRescue(const std::string &to, const std::string &token) override { sent.push_back({"pin", to, token}); }

    std::vector<Mail> sent;
};

// A service with a small catalogue: four styles with three artists each, two tracks by each artist, two ads. Its clock
// stands still until the test sets it; its password hashes are cheap.
class ServerTest : public testing::Test {
protected:
    static constexpr const char *miraName = "mira@example.org";
    static constexpr const char *password = "seven small lamps"; // of every account

    ServerTest();
    ~ServerTest() override;

    // Starts the service on its data directory, or restarts it.
    void start();
    // Calls a function without a network.
    Reply call(const std::string &function, const json &parameters, const std::string &token = {});
    // The same, returning the data; the test fails unless the code is 0.
    json data(const std::string &function, const json &parameters, const std::string &token = {});

    // A list inside the data, by value, because the answer is a temporary.
    json list(const std::string &function, const json &parameters, const std::string &token, const char *name)
    {
        return data(function, parameters, token).value(name, json::array());
    }

    // An account with its Tapestry station only; each test makes the stations that it needs.
    AccountId addAccount(const std::string &userName = miraName);
    AccountId idOf(const std::string &userName = miraName) { return m_service->accounts.find(userName)->id; }
    TestDevice addDevice(const std::string &digits = "001A2B3C4D5E");
    Reply tryLogIn(const std::string &userName, const std::string &secret, const TestDevice &device);
    // A user token of the account, logged in by name on this device.
    std::string logIn(const std::string &userName, const TestDevice &device);
    // Creates the account and logs in.
    std::string newListener(const std::string &userName = miraName);
    // A station of the style, by its token.
    std::string addStation(const std::string &token, const std::string &style);
    // The first track entry of a new list of the station.
    json firstTrack(const std::string &userToken, const std::string &stationToken);
    std::string tapestryToken(const std::string &userToken);

    void fillCatalogue();
    void clearCatalogue();
    // Simulates that the track's file goes or comes back.
    void setPlayable(const std::string &publicId, bool isPlayable);
    static std::vector<Track> smallCatalogue(const std::filesystem::path &mediaDirectory);

    // Starts answering over HTTP, on a free port.
    ApiServer &listen(ListenSettings settings = {});

    TemporaryDirectory m_directory;
    TestDatabase m_database;
    std::string m_requestKey; // sent with every call unless empty
    std::shared_ptr<std::atomic<int64_t>> m_now = std::make_shared<std::atomic<int64_t>>(1'800'000'000);
    TestMailer m_mailer;
    std::unique_ptr<StationService> m_service;
    std::unique_ptr<Dispatcher> m_dispatcher;
    std::unique_ptr<ApiServer> m_server;
};

} // namespace velmora::server
