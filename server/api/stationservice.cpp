#include "server/api/stationservice.h"

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
    , store(m_ground.directory / "velmora.db")
    , hasher(settings.passwordCost)
    , accounts(store, hasher, settings.clock)
    , sessions(store, settings.lifetimes, settings.clock)
    , devices(store, settings.clock)
    , activationCodes(store, keptKey("codes key"), settings.clock)
    , catalogue(store)
    , search(store)
    , musicTokens(store)
    , stations(store, catalogue, settings.clock)
    , playlists(store, catalogue, stations, settings.clock, settings.random)
    , feedback(store, settings.clock)
    , plays(store, settings.clock)
    , addresses(keptKey("media key"), settings.clock)
    , clock(settings.clock)
    , patience(settings.patience)
{
}

std::string StationService::keptKey(const std::string &name)
{
    const Store::Lock db = store.lock();
    std::string key = store.setting(name);
    if (key.empty()) {
        key = randomToken();
        store.setSetting(name, key);
    }
    return key;
}

CreateResult StationService::createAccount(const std::string &userName, const std::string &password,
                                           const Profile &profile, AccountId *id)
{
    return accounts.create(userName, password, profile, id, [this](AccountId made) {
        stations.createTapestry(made);
        stations.createStarters(made);
    });
}

} // namespace velmora::server
