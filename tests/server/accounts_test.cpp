// Accounts and devices: passwords, login throttling, sessions, device keys, activation codes and grants, reset tokens.

#include "serverfixture.h"

#include "server/accounts/mailaddress.h"

#include <algorithm>
#include <fstream>
#include <set>

namespace velmora::server {
namespace {

using namespace std::chrono_literals;

class AccountsTest : public ServerTest {
protected:
    const std::string m_keyHash = tokenHash("a key");
    const std::string m_otherKeyHash = tokenHash("another key");
    const std::string m_slot = "001A2B3C4D5E-3";
};

TEST_F(AccountsTest, TheServicesOwnHashesCostAtLeast64MebibytesAndTwoPasses)
{
    const std::string hash = PasswordHasher().hash(password);
    EXPECT_NE(hash.find("m=65536,t=2"), std::string::npos) << hash;
}

TEST_F(AccountsTest, UserNamesAndPasswordsAreCheckedBeforeAnAccountIsMade)
{
    struct Case {
        std::string userName;
        std::string password;
        CreateResult result;
    };
    const Case cases[] = {
        {miraName, "12345678", CreateResult::Done},
        {"MIRA@example.org", "12345678", CreateResult::Taken},
        {"mira", "12345678", CreateResult::BadUserName},
        {"a<b@c.d", "12345678", CreateResult::BadUserName},
        {"tomas@example.org", "1234567", CreateResult::BadPassword},
        {"tomas@example.org", std::string(1025, 'x'), CreateResult::BadPassword},
    };
    for (const Case &c : cases) {
        AccountId id = 0;
        EXPECT_EQ(m_service->createAccount(c.userName, c.password, {}, &id), c.result) << c.userName;
    }
}

TEST(MailAddressTest, AnAddressIsOneThatMailServersTake)
{
    const std::string label(63, 'a');
    const std::string host = label + "." + label + "." + label;
    for (const std::string &good :
         {std::string("mira@example.org"), std::string("m.i+r'a@sub.example-1.org"), std::string("root@localhost"),
          std::string("a@") + host, std::string(61, 'a') + "@" + host})
        EXPECT_TRUE(isMailAddress(good)) << good;
    for (const std::string &bad :
         {std::string("mira"), std::string("@example.org"), std::string("mira@"), std::string("a@b@c"),
          std::string("mi ra@example.org"), std::string("mira@example.org\nBcc: x@y"), std::string("a<b@c.d"),
          std::string("a>b@c.d"), std::string("\"a\"@c.d"), std::string("a..b@c.d"), std::string(".a@c.d"),
          std::string("a@c.d."), std::string("a@-c.d"), std::string("a@[127.0.0.1]"), std::string("m\xc3\xac@c.d"),
          std::string("a@c\0.d", 7), std::string(65, 'a') + "@c.d", "a@a" + host, std::string(63, 'a') + "@" + host})
        EXPECT_FALSE(isMailAddress(bad)) << bad;
}

TEST_F(AccountsTest, AnUnknownAccountTakesTheTimeOfAKnownOne)
{
    addAccount();
    // Expensive enough that the hash dominates the time.
    PasswordHasher hasher({2, 16 * 1024 * 1024});
    Accounts accounts(m_service->store, hasher, [] { return int64_t(0); });
    accounts.changePassword(idOf(), "another password");
    const auto timeOf = [&](const std::string &userName, int number) {
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(accounts.login(userName, "wrong password", std::to_string(number)).result, LoginResult::Wrong);
        return std::chrono::steady_clock::now() - start;
    };
    std::vector<std::chrono::nanoseconds> known;
    std::vector<std::chrono::nanoseconds> unknown;
    for (int i = 0; i < 7; ++i) {
        known.push_back(timeOf(miraName, i));
        unknown.push_back(timeOf("nobody@example.org", i));
    }
    // The minimum of each: other load on the machine only adds time.
    const auto k = static_cast<double>(std::min_element(known.begin(), known.end())->count());
    const auto u = static_cast<double>(std::min_element(unknown.begin(), unknown.end())->count());
    EXPECT_GT(u, 0.5 * k);
    EXPECT_LT(u, 2.0 * k);
}

TEST(LoginThrottleTest, ThePauseGrowsWithTheFailuresAndASuccessEndsIt)
{
    LoginThrottle throttle;
    int64_t now = 1000;
    std::vector<int> pauses;
    for (int i = 0; i < 12; ++i) {
        const int pause = throttle.refuse("mira", "1.2.3.4", now).value_or(0);
        pauses.push_back(pause);
        now += pause;
        EXPECT_TRUE(pause == 0 || !throttle.refuse("mira", "1.2.3.4", now)) << "the pause is over";
        throttle.failed("mira", "1.2.3.4", now);
    }
    EXPECT_EQ(pauses, (std::vector<int>{0, 0, 0, 0, 0, 1, 2, 4, 8, 16, 16, 16}));
    EXPECT_FALSE(throttle.refuse("mira", "5.6.7.8", now)) << "the right person elsewhere";
    EXPECT_FALSE(throttle.refuse("tomas", "1.2.3.4", now));
    now += 16;
    EXPECT_FALSE(throttle.refuse("mira", "1.2.3.4", now));
    EXPECT_EQ(throttle.refuse("mira", "1.2.3.4", now), 16) << "side by side with the one before";
    throttle.succeeded("mira", "1.2.3.4");
    EXPECT_FALSE(throttle.refuse("mira", "1.2.3.4", now));
}

TEST(LoginThrottleTest, OneAddressIsSlowedWhateverItTriesAndOneAccountWherever)
{
    LoginThrottle throttle;
    for (int i = 0; i < LoginThrottle::guessedFailures + 1; ++i)
        throttle.failed("mira", std::to_string(i), 1000);
    for (int i = 0; i < LoginThrottle::freeFailuresOfGuessed + 1; ++i) {
        EXPECT_FALSE(throttle.refuse("mira", "fresh address", 1000)) << "never locked out";
        throttle.failed("mira", "fresh address", 1000);
    }
    EXPECT_EQ(throttle.refuse("mira", "fresh address", 1000), 1) << "an account that is guessed has fewer free tries";
    EXPECT_FALSE(throttle.refuse("mira", "fresh address", 1000 + LoginThrottle::memorySeconds + 1));

    for (int i = 0; i < LoginThrottle::freeFailuresOfAddress + 1; ++i)
        throttle.failed("made up " + std::to_string(i), "1.2.3.4", 1000);
    EXPECT_EQ(throttle.refuse("tomas", "1.2.3.4", 1000), 1);
    int checks = 0;
    while (!throttle.refuse("mira", "5.6.7.8", 1000))
        ++checks;
    EXPECT_EQ(checks, LoginThrottle::checksOfAddress) << "right passwords cost a hash too";
}

TEST_F(AccountsTest, ARightPasswordWaitsForItsOwnAddressOnly)
{
    const AccountId mira = addAccount();
    const TestDevice device = addDevice();
    Accounts &accounts = m_service->accounts;
    accounts.setExplicitPin(mira, "4071");
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(tryLogIn(miraName, "wrong one", device).code, 5098);
    const Reply refused = tryLogIn(miraName, password, device);
    EXPECT_EQ(refused.code, 5004);
    EXPECT_EQ(refused.data.at("retryAfter"), 1);
    EXPECT_EQ(accounts.login(miraName, password, "198.51.100.1").result, LoginResult::Done);
    EXPECT_EQ(accounts.checkExplicitPin(mira, "4071", "192.0.2.7").result, LoginResult::Done) << "passwords alone";
    *m_now += 1;
    EXPECT_FALSE(logIn(miraName, device).empty());
}

TEST(RateLimitTest, AnAllowanceIsUsedAtOnceAndGrowsAgainEvenly)
{
    RateLimit limit(2, 60s);
    EXPECT_FALSE(limit.refuse("a", 1000));
    EXPECT_FALSE(limit.refuse("a", 1010));
    EXPECT_EQ(limit.refuse("a", 1020), 10);
    EXPECT_FALSE(limit.refuse("b", 1020));
    EXPECT_FALSE(limit.refuse("a", 1030));
    EXPECT_EQ(limit.refuse("a", 1030), 30);
    EXPECT_EQ(limit.refuse("a", 0), 30) << "a clock that was set back keeps nobody waiting for longer";
}

TEST(LruTableTest, TheEntryThatWasNotUsedForTheLongestTimeMakesRoom)
{
    LruTable<std::string, int> table(2);
    table.at("a") = 1;
    table.at("b") = 2;
    EXPECT_EQ(*table.find("a"), 1);
    table.at("c") = 3;
    EXPECT_EQ(table.find("b"), nullptr);
    EXPECT_EQ(*table.find("a"), 1);
    table.eraseIf([](const std::string &, int value) { return value == 1; });
    table.erase("b");
    EXPECT_EQ(table.size(), 1u);
    EXPECT_EQ(*table.find("c"), 3);
}

TEST_F(AccountsTest, TokensCodesAndPasswordsAreNotInTheDatabase)
{
    const AccountId mira = addAccount();
    const std::string secrets[] = {password,
                                   m_service->sessions.openPartner("key"),
                                   m_service->sessions.openUser(mira, m_keyHash),
                                   m_service->accounts.issueReset(mira, passwordPurpose, 100),
                                   m_service->activationCodes.issueForDevice("001A2B3C4D5E", m_keyHash),
                                   m_service->activationCodes.issueForAccount(mira),
                                   "00112233445566778899aabbccddeeff"};
    RequestKeys(m_service->store, systemClock()).once({"owner", secrets[6], secrets[0], false}, [&] {
        return json{{"code", 0}, {"data", secrets[2]}}; // a stored answer may contain a token
    });
    EXPECT_EQ(m_service->sessions.find(secrets[2])->keyHash, m_keyHash);
    const std::string stored = m_database.content(m_service->dataDirectory());
    ASSERT_NE(stored.find(miraName), std::string::npos);
    for (const std::string &secret : secrets)
        EXPECT_EQ(stored.find(secret), std::string::npos) << secret;
}

TEST_F(AccountsTest, AnIdentityWithAnotherKeyIsAnotherDevice)
{
    const AccountId mira = addAccount();
    const AccountId tomas = addAccount("tomas@example.org");
    Devices &devices = m_service->devices;
    devices.associate(m_slot, m_keyHash, mira);
    EXPECT_FALSE(devices.find(m_slot, m_otherKeyHash));
    EXPECT_FALSE(devices.disassociate(m_slot, m_otherKeyHash));
    devices.associate(m_slot, m_otherKeyHash, tomas);
    const std::string session = m_service->sessions.openUser(mira, m_keyHash, m_slot);
    EXPECT_EQ(devices.find(m_slot, m_keyHash)->accountId, mira) << "the first device keeps its account";
    EXPECT_EQ(devices.find(m_slot, m_otherKeyHash)->accountId, tomas);
    EXPECT_TRUE(devices.disassociate(m_slot, m_otherKeyHash));
    EXPECT_TRUE(m_service->sessions.find(session));
    devices.associate(m_slot, m_keyHash, tomas);
    EXPECT_EQ(devices.find(m_slot, m_keyHash)->accountId, tomas) << "the device itself may give its slot away";
    EXPECT_FALSE(m_service->sessions.find(session));
}

TEST_F(AccountsTest, AnAccountSeesAndRevokesItsOwnDevicesOnly)
{
    const AccountId mira = addAccount();
    const AccountId tomas = addAccount("tomas@example.org");
    m_service->devices.associate(m_slot, m_keyHash, mira);
    m_service->devices.associate(m_slot, m_otherKeyHash, mira); // the same radio after it has lost its state
    const std::string session = m_service->sessions.openUser(mira, m_keyHash, m_slot);
    EXPECT_EQ(m_service->devices.ofAccount(tomas).size(), 0u);
    EXPECT_FALSE(m_service->devices.revoke(tomas, m_slot));
    ASSERT_EQ(m_service->devices.ofAccount(mira).size(), 1u);
    EXPECT_TRUE(m_service->devices.revoke(mira, m_slot));
    EXPECT_TRUE(m_service->sessions.find(session)->isRevoked) << "the session is kept, so that the radio learns of it";
    EXPECT_EQ(m_service->devices.ofAccount(mira).size(), 0u);
}

TEST_F(AccountsTest, DeviceIdentitiesAreTwelveDigitsAndASlot)
{
    EXPECT_TRUE(Devices::isDeviceId("001A2B3C4D5E-0"));
    for (const char *wrong : {"", "001A2B3C4D5E", "001a2b3c4d5e-0", "001A2B3C4D5E-", "001A2B3C4D5E-12",
                              "001A2B3C4D5G-1", "001A2B3C4D5E_1", " 001A2B3C4D5E-1"})
        EXPECT_FALSE(Devices::isDeviceId(wrong)) << wrong;
}

class ActivationTest : public AccountsTest {
protected:
    ActivationCodes &codes() { return m_service->activationCodes; }
    const std::string m_digits = "001A2B3C4D5E";
};

TEST_F(ActivationTest, CodesAreEightLettersWithoutLookAlikes)
{
    std::set<std::string> seen;
    for (int i = 0; i < 50; ++i) {
        const std::string code = codes().issueForDevice(m_digits, m_keyHash);
        EXPECT_EQ(code.size(), 8u);
        EXPECT_EQ(code.find_first_of("01IOL"), std::string::npos) << code;
        seen.insert(code);
    }
    EXPECT_EQ(seen.size(), 50u);
}

TEST_F(ActivationTest, OnlyTheLatestThreeCodesOfADeviceAreValid)
{
    std::vector<std::string> issued;
    for (int i = 0; i < 4; ++i)
        issued.push_back(codes().issueForDevice(m_digits, m_keyHash));
    const std::string otherDevice = codes().issueForDevice("AAAAAAAAAAAA", m_otherKeyHash);
    EXPECT_FALSE(codes().find(issued[0]));
    for (int i = 1; i < 4; ++i)
        EXPECT_TRUE(codes().find(issued[static_cast<size_t>(i)])) << i;
    EXPECT_TRUE(codes().find(otherDevice));
}

TEST_F(ActivationTest, AFinishedPageGivesTheDevicesFirstLoginToTheAccountOnce)
{
    const AccountId mira = addAccount();
    const std::string older = codes().issueForDevice(m_digits, m_keyHash);
    const std::string code = codes().issueForDevice(m_digits, m_keyHash);
    EXPECT_FALSE(m_service->devices.takeGrant(m_slot, m_keyHash)) << "nothing before the page is finished";
    ASSERT_TRUE(codes().grant(code, mira));
    EXPECT_FALSE(codes().grant(code, mira)) << "single use";
    EXPECT_FALSE(codes().find(older)) << "the device's other codes end too";
    EXPECT_FALSE(m_service->devices.takeGrant(m_slot, m_otherKeyHash)) << "another key";
    EXPECT_FALSE(m_service->devices.takeGrant("AAAAAAAAAAAA-3", m_keyHash)) << "other digits";
    const std::optional<Device> device = m_service->devices.takeGrant(m_slot, m_keyHash);
    ASSERT_TRUE(device);
    EXPECT_EQ(device->accountId, mira);
    EXPECT_TRUE(m_service->devices.find(m_slot, m_keyHash));
    EXPECT_FALSE(m_service->devices.takeGrant("001A2B3C4D5E-4", m_keyHash)) << "used up";
}

TEST_F(ActivationTest, AGrantDoesNotTouchAnAssociatedIdentityAndExpires)
{
    const AccountId mira = addAccount();
    const AccountId tomas = addAccount("tomas@example.org");
    m_service->devices.associate(m_slot, m_keyHash, mira);
    codes().grant(codes().issueForDevice(m_digits, m_keyHash), tomas);
    EXPECT_FALSE(m_service->devices.takeGrant(m_slot, m_keyHash));
    EXPECT_EQ(m_service->devices.find(m_slot, m_keyHash)->accountId, mira);
    *m_now += ActivationCodes::grantSeconds;
    EXPECT_FALSE(m_service->devices.takeGrant("001A2B3C4D5E-4", m_keyHash));
}

TEST_F(ActivationTest, AListenersOwnCodeNamesTheAccountAndGrantsNoDevice)
{
    const AccountId mira = addAccount();
    const std::string code = codes().issueForAccount(mira);
    EXPECT_FALSE(codes().grant(code, mira));
    EXPECT_EQ(codes().redeemForAccount(code), mira);
    EXPECT_FALSE(codes().redeemForAccount(code));
    const std::string ofDevice = codes().issueForDevice(m_digits, m_keyHash);
    EXPECT_FALSE(codes().redeemForAccount(ofDevice));
    EXPECT_TRUE(codes().find(ofDevice));
    codes().deny(codes().issueForDevice(m_digits, m_keyHash));
    EXPECT_FALSE(codes().find(ofDevice)) << "who denies a radio denies its other codes too";
}

TEST_F(AccountsTest, AResetTokenIsForItsPurposeAndEndsWithANewerOne)
{
    const AccountId mira = addAccount();
    Accounts &accounts = m_service->accounts;
    const std::string first = accounts.issueReset(mira, passwordPurpose, 100);
    const std::string second = accounts.issueReset(mira, passwordPurpose, 100);
    EXPECT_FALSE(accounts.peekReset(first, passwordPurpose));
    EXPECT_FALSE(accounts.redeemReset(second, pinPurpose));
    EXPECT_EQ(accounts.redeemReset(second, passwordPurpose), mira);
    EXPECT_FALSE(accounts.redeemReset(second, passwordPurpose)) << "it opens once";
}

TEST_F(AccountsTest, ANewPasswordEndsAllThatTheOldOneLetIn)
{
    const AccountId mira = addAccount();
    const AccountId tomas = addAccount("tomas@example.org");
    m_service->devices.associate("AAAAAAAAAAAA-0", m_otherKeyHash, tomas);
    for (const Radios radios : {Radios::Keep, Radios::End}) {
        const bool isKept = radios == Radios::Keep;
        SCOPED_TRACE(isKept);
        m_service->devices.associate(m_slot, m_keyHash, mira);
        const std::string radio = m_service->sessions.openUser(mira, m_keyHash, m_slot);
        const std::string unlinked = m_service->sessions.openUser(mira, m_otherKeyHash);
        const std::string others = m_service->sessions.openUser(tomas, m_otherKeyHash, "AAAAAAAAAAAA-0");
        const std::string code = m_service->activationCodes.issueForAccount(mira);
        const std::string reset = m_service->accounts.issueReset(mira, passwordPurpose, 100);
        const std::string rescue = m_service->accounts.issueReset(mira, pinPurpose, 100);
        m_service->activationCodes.grant(m_service->activationCodes.issueForDevice("BBBBBBBBBBBB", m_keyHash), mira);
        EXPECT_EQ(m_service->accounts.changePassword(mira, "short", radios), CreateResult::BadPassword);
        const Session open = *m_service->sessions.find(radio);
        const Account before = *m_service->accounts.find(mira);
        EXPECT_FALSE(open.isRevoked);
        const std::string secret = isKept ? "nine brown kites" : "ten blue kites";
        EXPECT_EQ(m_service->accounts.changePassword(mira, secret, radios), CreateResult::Done);
        EXPECT_EQ(m_service->sessions.find(radio)->isRevoked, !isKept) << "a revoked radio is told so";
        EXPECT_EQ(m_service->sessions.isOpen(open), isKept) << "a request that is under way links nothing";
        EXPECT_FALSE(m_service->accounts.hasSamePassword(before)) << "a login that is under way opens nothing";
        EXPECT_TRUE(m_service->accounts.hasSamePassword(*m_service->accounts.find(mira)));
        EXPECT_EQ(m_service->devices.find(m_slot, m_keyHash).has_value(), isKept);
        EXPECT_EQ(m_service->devices.takeGrant("BBBBBBBBBBBB-1", m_keyHash).has_value(), isKept);
        EXPECT_TRUE(m_service->sessions.find(unlinked)->isRevoked);
        EXPECT_FALSE(m_service->sessions.find(others)->isRevoked);
        EXPECT_FALSE(m_service->activationCodes.redeemForAccount(code));
        EXPECT_FALSE(m_service->accounts.peekReset(reset, passwordPurpose));
        EXPECT_FALSE(m_service->accounts.peekReset(rescue, pinPurpose));
        EXPECT_EQ(m_service->accounts.login(miraName, password, "x").result, LoginResult::Wrong);
        EXPECT_EQ(m_service->accounts.login(miraName, secret, "x").result, LoginResult::Done);
    }
}

} // namespace
} // namespace velmora::server
