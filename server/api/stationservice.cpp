#include "server/api/stationservice.h"

#include "server/logging/log.h"
#include "server/store/datafolder.h"

#include <sys/stat.h>

namespace velmora::server {

StationService::Ground::Ground(const ServiceSettings &settings)
    : directory(std::filesystem::absolute(settings.dataDirectory))
{
    initialiseSecrets();
    std::error_code error;
    std::filesystem::create_directories(directory.parent_path(), error);
    if (::mkdir(directory.c_str(), 0700) != 0 && !std::filesystem::is_directory(directory, error))
        throw std::runtime_error("cannot make the data directory " + directory.string());
}

StationService::StationService(const ServiceSettings &settings)
    : m_ground(settings)
    , store(settings.database, databaseFile())
    , m_catalogueFile(settings.database.empty() ? std::nullopt : std::optional<Store>(std::in_place, databaseFile()))
    , catalogueStore(m_catalogueFile ? *m_catalogueFile : store)
    , hasher(settings.passwordCost)
    , accounts(store, hasher, settings.clock)
    , sessions(store, settings.lifetimes, settings.clock)
    , signUps(store, settings.clock)
    , house(store, settings.clock)
    , devices(store, settings.clock)
    , activationCodes(store, keptKey("codes key"), settings.clock)
    , catalogue(catalogueStore)
    , search(catalogueStore)
    , tokens(store, settings.clock)
    , musicTokens(tokens, catalogue)
    , stations(store, catalogue, settings.clock)
    , playlists(store, catalogue, tokens, settings.clock, settings.random)
    , feedback(store, settings.clock)
    , plays(store, catalogue, settings.clock)
    , addresses(keptKey("media key"), settings.clock)
    , clock(settings.clock)
    , patience(settings.patience)
{
    keepDays();
    m_upkeep.emplace(std::chrono::minutes(1), [this] { keepDays(); });
    m_signUpsToAddress.share(store, "sign-ups to address");
    m_remindersToAccount.share(store, "reminders to account");
}

void StationService::keepDays()
{
    try {
        store.keepDays(clock());
    } catch (const StoreError &error) { // there are days ahead, and the next minute will do
        logs::warn(std::string("days were not made or dropped: ") + error.what());
    }
}

std::filesystem::path StationService::databaseFile() const
{
    return m_ground.directory / DataFolder::databaseName;
}

std::string StationService::keptKey(const std::string &name)
{
    return store.settingOnce(name, [] { return randomToken(); });
}

CreateResult StationService::createAccount(const std::string &userName, const std::string &password,
                                           const Profile &profile, AccountId *id)
{
    const CreateResult result = Accounts::checkNew(userName, password);
    if (result != CreateResult::Done)
        return result;
    SignUp signUp;
    signUp.userName = userName;
    signUp.passwordHash = hasher.hash(password);
    signUp.profile = profile;
    return create(signUp, id);
}

CreateResult StationService::create(const SignUp &signUp, AccountId *id)
{
    return accounts.create(signUp.userName, signUp.passwordHash, signUp.profile, id, [&](AccountId made) {
        stations.createTapestry(made);
        stations.createStarters(made);
        if (!signUp.deviceId.empty())
            devices.associate(signUp.deviceId, signUp.keyHash, made);
        if (!signUp.sessionHash.empty())
            sessions.adoptUser(signUp.sessionHash, made, signUp.keyHash, signUp.deviceId);
    });
}

bool StationService::signUp(SignUp signUp, const std::string &password)
{
    signUp.passwordHash = hasher.hash(password);
    return mailer && mailer->later([this, signUp = std::move(signUp)] { mailSignUp(signUp); });
}

void StationService::mailSignUp(const SignUp &signUp)
{
    try {
        // Nobody's mailbox is to be flooded.
        if (m_signUpsToAddress.refuse(Accounts::foldedName(signUp.userName), clock()))
            return;
        if (const std::optional<Account> account = accounts.find(signUp.userName))
            mailer->sendHasAccount(account->userName);
        else
            mailer->sendSignUp(signUp.userName, signUps.add(signUp));
    } catch (const std::exception &error) {
        logs::warn(std::string("a sign-up was not mailed: ") + error.what());
    }
}

std::optional<AccountId> StationService::finishSignUp(const std::string &token)
{
    const Store::Lock db = store.lock();
    Transaction change(*db);
    const std::optional<SignUp> signUp = signUps.take(token);
    const bool isAllowed =
        signUp && (signUp->invitationHash.empty() ? house.isOpen() : house.takeInvitation(signUp->invitationHash));
    if (!isAllowed)
        return std::nullopt;
    AccountId id = 0;
    create(*signUp, &id);
    change.commit();
    return id;
}

bool StationService::remind(const std::string &userName)
{
    return mailer && mailer->later([this, userName] { mailReminder(userName); });
}

void StationService::mailReminder(const std::string &userName)
{
    try {
        const std::optional<Account> account = accounts.find(userName);
        if (account && account->isActive && !m_remindersToAccount.refuse(std::to_string(account->id), clock()))
            mailer->sendPasswordReset(account->userName,
                                      accounts.issueReset(account->id, passwordPurpose, resetSeconds));
    } catch (const std::exception &error) {
        logs::warn(std::string("a reminder was not mailed: ") + error.what());
    }
}

bool StationService::changeAddress(AccountId account, const std::string &address)
{
    return mailer && mailer->later([this, account, address] { mailNewAddress(account, address); });
}

void StationService::mailNewAddress(AccountId account, const std::string &address)
{
    try {
        if (m_signUpsToAddress.refuse(Accounts::foldedName(address), clock()))
            return;
        const std::optional<Account> other = accounts.find(address);
        if (other && other->id != account)
            mailer->sendHasAccount(other->userName);
        else
            mailer->sendNewAddress(address, accounts.issueReset(account, addressPurpose, resetSeconds, address));
    } catch (const std::exception &error) {
        logs::warn(std::string("a new address was not mailed: ") + error.what());
    }
}

} // namespace velmora::server
