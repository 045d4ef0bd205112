#include "server/demoaccount.h"

#include "server/api/mediafiles.h"
#include "server/library/library.h"
#include "server/store/datafolder.h"

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>

namespace velmora::server {

namespace {

// Letters that are easily told apart and typed with a remote control; 14 of them are 69 bits.
std::string randomPassword()
{
    constexpr std::string_view letters = "abcdefghjkmnpqrstuvwxyz23456789";
    std::string password;
    for (int i = 0; i < 14; ++i)
        password += letters[randomBelow(static_cast<uint32_t>(letters.size()))];
    return password;
}

bool writePrivately(const std::filesystem::path &file, const std::string &text)
{
    const std::filesystem::path beside = file.string() + ".new";
    ::unlink(beside.c_str());
    const int fd = ::open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (fd < 0)
        return false;
    const bool isWritten =
        ::write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size()) && ::fsync(fd) == 0;
    ::close(fd);
    if (isWritten && ::rename(beside.c_str(), file.c_str()) == 0)
        return syncFolder(file.parent_path());
    ::unlink(beside.c_str());
    return false;
}

constexpr const char *stationsSetting = "demo stations"; // "incomplete" until the music is there

// False when there is no music to make them from yet.
bool makeStations(StationService &service, AccountId account)
{
    Station station;
    const std::vector<std::string> styles = service.catalogue.styles();
    for (const std::string &style : styles)
        service.stations.create(account, {MusicKind::Style, style}, &station);
    if (styles.empty())
        return false;
    const std::vector<Station> stations = service.stations.list(account);
    if (std::none_of(stations.begin(), stations.end(), [](const Station &made) { return made.isShared; }))
        service.stations.createShared(account, {MusicKind::Style, styles.back()}, "Next Door", &station);
    const std::optional<std::string> picture = service.catalogue.pictureOfStyle(styles.front());
    const std::optional<std::string> id = picture ? publicIdOf(*picture) : std::nullopt;
    const std::optional<Track> track = id ? service.catalogue.track(*id) : std::nullopt;
    if (track)
        service.stations.create(account, {MusicKind::Artist, std::to_string(track->artistId)}, &station);
    return true;
}

} // namespace

std::filesystem::path demoAccountFile(const StationService &service)
{
    return service.dataDirectory() / "demo-account.txt";
}

void ensureDemoAccount(StationService &service)
{
    if (service.accounts.find(demoUserName))
        return;
    const std::string password = randomPassword();
    const std::filesystem::path file = demoAccountFile(service);
    if (!writePrivately(file, std::string(demoUserName) + "\n" + password + "\n"))
        throw std::runtime_error("cannot write " + file.string());
    AccountId account = 0;
    if (service.createAccount(demoUserName, password, {}, &account) == CreateResult::Done)
        service.store.setSetting(stationsSetting, makeStations(service, account) ? "complete" : "incomplete");
}

bool isDemoAccountIncomplete(StationService &service)
{
    return service.store.setting(stationsSetting) == "incomplete";
}

bool completeDemoAccount(StationService &service)
{
    if (!isDemoAccountIncomplete(service) || !service.library || service.library->status().scans == 0)
        return false;
    const std::optional<Account> account = service.accounts.find(demoUserName);
    if (account && !makeStations(service, account->id))
        return false;
    service.store.setSetting(stationsSetting, "complete");
    return true;
}

} // namespace velmora::server
