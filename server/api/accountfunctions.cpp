// The functions of the interface that concern accounts, sessions and devices.

#include "server/accounts/mailaddress.h"
#include "server/api/houseaddress.h"
#include "server/api/routes.h"
#include "server/catalogue/textfolding.h"

namespace velmora::server::functions {

namespace {

constexpr int keyBytes = 32;
constexpr size_t longestModel = 64; // characters
constexpr int mailPause = 10;       // seconds, when too many mails wait

[[noreturn]] void noSuchDevice()
{
    throw ApiError(Code::NoSuchDevice, "no such device, or not with this device key");
}

// The parameter `deviceId`. A text that is not written like an identity is an unknown device.
std::string deviceIdOf(const Call &call)
{
    std::string id = call.parameters.text("deviceId");
    if (!Devices::isDeviceId(id))
        noSuchDevice();
    return id;
}

Account checkedLogin(Call &call, const std::string &userName, const std::string &password)
{
    Login login = call.service.accounts.login(userName, password, call.network);
    switch (login.result) {
    case LoginResult::Done:
        break;
    case LoginResult::Wrong:
        throw ApiError(Code::BadLogin, "wrong user name or password");
    case LoginResult::Inactive:
        throw ApiError(Code::Inactive, "the account is no longer active");
    case LoginResult::TooMany:
        refuseForNow(login.retryAfter);
    }
    return std::move(login.account);
}

json openUserSession(Call &call, const Account &account, const std::string &deviceId)
{
    const Store::Lock db = call.service.store.lock();
    Transaction change(*db, AccountLock{account.id}, Durability::Later);
    if (!call.service.accounts.hasSamePassword(account))
        throw ApiError(Code::BadLogin, "the password was changed a moment ago");
    const std::string token = call.service.sessions.openUser(account.id, call.session.keyHash, deviceId);
    change.commit();
    return {{"userToken", token},
            {"userName", account.userName},
            {"userId", std::to_string(account.id)},
            {"expiresIn", call.service.sessions.lifetimes().userSeconds}};
}

// For what maintenance refuses in functions that are otherwise allowed.
void refuseUnderMaintenance(const Call &call)
{
    if (call.service.isUnderMaintenance)
        throw ApiError(Code::Maintenance, "maintenance");
}

json deviceLogin(Call &call)
{
    const std::string id = deviceIdOf(call);
    const Store::Lock db = call.service.store.lock();
    std::optional<Device> device = call.service.devices.find(id, call.session.keyHash);
    if (!device && !call.service.isUnderMaintenance) // a grant stays for later
        device = call.service.devices.takeGrant(id, call.session.keyHash);
    if (!device)
        noSuchDevice();
    // Nobody unlinks the radio before its session is there.
    Transaction change(*db, AccountLock{device->accountId}, Durability::Later);
    device = call.service.devices.find(id, call.session.keyHash);
    if (!device)
        noSuchDevice();
    const std::optional<Account> account = call.service.accounts.find(device->accountId);
    if (!account || !account->isActive)
        throw ApiError(Code::Inactive, "the account is no longer active");
    json answer = openUserSession(call, *account, id);
    change.commit();
    return answer;
}

json codeAnswer(const Call &call, const std::string &code)
{
    return {{"activationCode", code},
            {"activationUrl", call.service.addresses.base() + "/activate"},
            {"expiresIn", ActivationCodes::codeSeconds}};
}

void requireMailer(const Call &call)
{
    if (!call.service.mailer)
        throw ApiError(Code::Internal, "no mail is set up");
}

std::string shortText(const Call &call, const char *name, size_t characters)
{
    return std::string(firstCharacters(call.parameters.optionalText(name).value_or(""), characters));
}

// Throws unless the PIN is right or none is set.
void checkPin(Call &call, const std::string &pin)
{
    const Login login = call.service.accounts.checkExplicitPin(call.account(), pin, call.network);
    if (login.result == LoginResult::TooMany)
        refuseForNow(login.retryAfter);
    if (login.result != LoginResult::Done)
        throw ApiError(Code::NotAuthorised, "not the PIN");
}

} // namespace

json partnerLogin(Call &call)
{
    const std::string key = call.parameters.text("deviceKey");
    if (!isToken(key, keyBytes))
        throw ApiError(Code::Malformed, "not a device key");
    call.count(call.limits.partnerLoginsOfNetwork, call.network);
    const std::string model = shortText(call, "deviceModel", longestModel);
    return {{"partnerToken", call.service.sessions.openPartner(key, model)},
            {"expiresIn", call.service.sessions.lifetimes().partnerSeconds}};
}

json userLogin(Call &call)
{
    const std::string type = call.parameters.text("loginType");
    if (type == "deviceId")
        return deviceLogin(call);
    if (type != "user")
        throw ApiError(Code::Malformed, "no such login type");
    const std::string userName = call.parameters.text("userName");
    return openUserSession(call, checkedLogin(call, userName, call.parameters.text("password")), {});
}

json associateDevice(Call &call)
{
    const std::string id = deviceIdOf(call);
    const Store::Lock db = call.service.store.lock();
    Transaction change(*db, AccountLock{call.account()});
    if (!call.service.sessions.isOpen(call.session)) // it ended while this request waited: it links nothing any more
        throw ApiError(Code::BadToken, "the session has ended");
    const std::optional<Device> device = call.service.devices.find(id, call.session.keyHash);
    if (!device || device->accountId != call.account())
        refuseUnderMaintenance(call);
    call.service.devices.associate(id, call.session.keyHash, call.account());
    call.service.sessions.bindToDevice(call.session, id);
    change.commit();
    return json::object();
}

json disassociateDevice(Call &call)
{
    if (!call.service.devices.disassociate(deviceIdOf(call), call.session.keyHash))
        noSuchDevice();
    return json::object();
}

json getDeviceInfo(Call &call)
{
    const std::optional<Device> device = call.service.devices.find(deviceIdOf(call), call.session.keyHash);
    if (!device)
        noSuchDevice();
    const std::optional<Account> account = call.service.accounts.find(device->accountId);
    return {{"deviceId", device->deviceId},
            {"userName", account ? account->userName : std::string()},
            {"associatedAt", isoTime(device->associatedAt)}};
}

json generateDeviceActivationCode(Call &call)
{
    const std::string digits = call.parameters.text("deviceId");
    if (!Devices::isDigits(digits))
        throw ApiError(Code::Malformed, "not the twelve digits of a device");
    call.count(call.limits.codesOfNetwork, call.network);
    call.count(call.limits.codesOfDevice, call.session.keyHash);
    return codeAnswer(call, call.service.activationCodes.issueForDevice(digits, call.session.keyHash,
                                                                        call.session.deviceModel, call.address));
}

json generateUserActivationCode(Call &call)
{
    call.count(call.limits.codesOfNetwork, call.network);
    return codeAnswer(call, call.service.activationCodes.issueForAccount(call.account()));
}

json createUser(Call &call)
{
    const std::string userName = call.parameters.text("userName");
    const std::string password = call.parameters.text("password");
    const std::string deviceId = call.parameters.optionalText("deviceId").value_or("");
    if (!deviceId.empty() && !Devices::isDeviceId(deviceId))
        noSuchDevice();
    Profile profile;
    if (const std::optional<int64_t> year = call.parameters.optionalInteger("birthYear");
        year && *year > 1800 && *year < 3000)
        profile.birthYear = static_cast<int>(*year);
    profile.gender = shortText(call, "gender", 32);
    profile.zipCode = shortText(call, "zipCode", 32);
    profile.countryCode = shortText(call, "countryCode", 8);
    profile.emailOptIn = call.parameters.optionalFlag("emailOptIn").value_or(false);
    call.count(call.limits.accountsOfNetwork, call.network);

    switch (Accounts::checkNew(userName, password)) {
    case CreateResult::Done:
        break;
    case CreateResult::BadPassword:
        throw ApiError(Code::BadPassword, "not a password");
    default:
        throw ApiError(Code::BadUserName, "not a user name");
    }
    requireMailer(call);
    if (!call.service.house.maySignUp(isInHouse(call.address)))
        throw ApiError(Code::NotAuthorised, "the owner of the service lets nobody sign up here");
    // The answer does not tell whether there is such an account: the token opens something when the link of the mail
    // has made the account, and for an address with an account it never does.
    const std::string token = randomToken();
    if (!call.service.signUp({userName, {}, profile, tokenHash(token), call.session.keyHash, deviceId}, password))
        refuseForNow(mailPause);
    return {{"userToken", token},
            {"userName", userName},
            {"userId", "0"},
            {"expiresIn", call.service.sessions.lifetimes().userSeconds}};
}

json emailPassword(Call &call)
{
    const std::string userName = call.parameters.text("userName");
    if (!isMailAddress(userName))
        throw ApiError(Code::BadUserName, "not a user name");
    call.count(call.limits.mailsOfNetwork, call.network);
    requireMailer(call);
    // The answer does not tell whether there is such an account.
    if (!call.service.remind(userName))
        refuseForNow(mailPause);
    return json::object();
}

json getUserInfo(Call &call)
{
    Account account;
    if (call.session.kind == TokenKind::Partner) {
        const std::string userName = call.parameters.text("userName");
        account = checkedLogin(call, userName, call.parameters.text("password"));
    } else {
        account = *call.service.accounts.find(call.account());
    }
    return {{"userName", account.userName},
            {"userId", std::to_string(account.id)},
            {"stationCount", call.service.stations.count(account.id)},
            {"isActive", account.isActive}};
}

json getExplicitContentFilter(Call &call)
{
    return {{"isEnabled", call.service.accounts.find(call.account())->isExplicitFilterOn}};
}

json isExplicitContentFilterPINProtected(Call &call)
{
    return {{"isProtected", call.service.accounts.find(call.account())->hasExplicitPin}};
}

json setExplicitContentFilter(Call &call)
{
    const bool isEnabled = call.parameters.flag("isEnabled");
    checkPin(call, call.parameters.optionalText("pin").value_or(""));
    call.service.accounts.setExplicitFilter(call.account(), isEnabled);
    return {{"isEnabled", isEnabled}};
}

json setExplicitPIN(Call &call)
{
    const std::string newPin = call.parameters.text("newPin");
    if (!Accounts::isPin(newPin))
        throw ApiError(Code::BadPassword, "not a PIN: four to eight digits");
    checkPin(call, call.parameters.optionalText("oldPin").value_or(""));
    call.service.accounts.setExplicitPin(call.account(), newPin);
    return json::object();
}

json emailExplicitPINRescue(Call &call)
{
    requireMailer(call);
    call.count(call.limits.mailsToAccount, std::to_string(call.account()));
    const std::optional<Account> account = call.service.accounts.find(call.account());
    call.service.mailer->sendPinRescue(account->userName,
                                       call.service.accounts.issueReset(account->id, pinPurpose, resetSeconds));
    return json::object();
}

} // namespace velmora::server::functions
