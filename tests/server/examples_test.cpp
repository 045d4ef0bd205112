// Replays the examples that the client library's tests also replay: same requests, answers of the same shape.

#include "serverfixture.h"

#include <fstream>

namespace velmora::server {
namespace {

std::vector<std::string> exampleNames()
{
    std::vector<std::string> names;
    for (const auto &entry : std::filesystem::directory_iterator(VELMORA_SOURCE_DIR "/tests/data/api")) {
        if (entry.path().extension() == ".json" && findRoute(entry.path().stem().string()))
            names.push_back(entry.path().stem());
    }
    std::sort(names.begin(), names.end());
    return names;
}

bool isOneKind(const json &a, const json &b)
{
    return a.type() == b.type() || (a.is_number_integer() && b.is_number_integer());
}

// The record of an example's list that a record of the answer is compared with: one of the same type.
const json &counterpart(const json &examples, const json &actual)
{
    for (const json &example : examples) {
        if (!actual.is_object() || actual.value("type", "") == example.value("type", ""))
            return example;
    }
    return examples.at(0);
}

// Whether both have the same keys, and values of the same types.
void expectSameShape(const json &example, const json &actual, const std::string &where)
{
    if (where.ends_with("audioUrl") && (example.is_null() || actual.is_null()))
        return;
    ASSERT_TRUE(isOneKind(example, actual))
        << where << ": " << example.type_name() << " against " << actual.type_name();
    if (example.is_object()) {
        for (const auto &[key, value] : example.items()) {
            ASSERT_TRUE(actual.contains(key)) << where << " lacks " << key;
            expectSameShape(value, actual.at(key), where + "/" + key);
        }
        for (const auto &[key, value] : actual.items())
            EXPECT_TRUE(example.contains(key)) << where << " has the unknown " << key;
    } else if (example.is_array() && !example.empty()) {
        for (const json &value : actual)
            expectSameShape(counterpart(example, value), value, where + "[]");
    }
}

class ExamplesTest : public ServerTest, public testing::WithParamInterface<std::string> {
protected:
    // The example's request with tokens that are valid here, from a device in the state that the example assumes.
    json request(const std::string &function, json parameters, const std::string &user, const TestDevice &device);
};

json ExamplesTest::request(const std::string &function, json parameters, const std::string &user,
                           const TestDevice &device)
{
    const std::string station = addStation(user, "folk");
    if (parameters.contains("stationToken"))
        parameters["stationToken"] = station;
    if (function == "transformSharedStation") {
        const AccountId mira = idOf();
        Station shared;
        m_service->stations.createShared(mira, {MusicKind::Style, "rock"}, "Harbour Lights", &shared);
        parameters["stationToken"] = shared.token;
    }
    const json track = firstTrack(user, station);
    if (parameters.contains("trackToken"))
        parameters["trackToken"] = track.at("trackToken");
    if (parameters.contains("musicToken"))
        parameters["musicToken"] = track.at("songToken");
    if (parameters.contains("adToken")) {
        for (const json &entry : list("getPlaylist", {{"stationToken", station}}, user, "entries")) {
            if (entry.at("type") == "ad")
                parameters["adToken"] = entry.at("ad").at("adToken");
        }
    }
    const std::string deviceId = parameters.value("deviceId", "");
    if (Devices::isDeviceId(deviceId) && function != "createUser" && function != "associateDevice")
        m_service->devices.associate(deviceId, tokenHash(device.key), idOf());
    const std::string pin = function == "setExplicitPIN" ? parameters.value("oldPin", "") : parameters.value("pin", "");
    m_service->accounts.setExplicitPin(idOf(), pin);
    return parameters;
}

TEST_P(ExamplesTest, TheAnswerHasTheExamplesShape)
{
    addAccount();
    std::ifstream file(std::string(VELMORA_SOURCE_DIR "/tests/data/api/") + GetParam() + ".json");
    const json examples = json::parse(file);
    ASSERT_FALSE(examples.empty());
    for (const json &example : examples) {
        SCOPED_TRACE(example.at("name").get<std::string>());
        const TestDevice device = addDevice();
        const std::string user = logIn(miraName, device);
        const json parameters = request(GetParam(), example.at("request"), user, device);
        const std::string kind = example.at("token");
        const Reply reply = call(GetParam(), parameters,
                                 kind == "user"      ? user
                                 : kind == "partner" ? device.partnerToken
                                                     : "");
        EXPECT_EQ(reply.code, example.at("response").at("code").get<int>());
        if (reply.code == 0)
            expectSameShape(example.at("response").value("data", json::object()), reply.data, GetParam());
        for (const Device &slot : m_service->devices.ofAccount(idOf()))
            m_service->devices.revoke(slot.accountId, slot.deviceId);
    }
    EXPECT_EQ(m_mailer.sent.empty(), !GetParam().starts_with("email") && GetParam() != "createUser");
}

INSTANTIATE_TEST_SUITE_P(Functions, ExamplesTest, testing::ValuesIn(exampleNames()),
                         [](const auto &test) { return test.param; });

TEST(ExamplesCoverageTest, EveryFunctionHasAnExample)
{
    const std::vector<std::string> names = exampleNames();
    for (const Route &route : routes())
        EXPECT_TRUE(std::find(names.begin(), names.end(), route.name) != names.end()) << route.name;
}

} // namespace
} // namespace velmora::server
