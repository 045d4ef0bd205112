// velmora-server: the station service as a program.

#include "server/announcement.h"
#include "server/api/apiserver.h"
#include "server/api/houseaddress.h"
#include "server/cataloguewatch.h"
#include "server/configcheck.h"
#include "server/demoaccount.h"
#include "server/demolibrary.h"
#include "server/http/owncertificate.h"
#include "server/library/library.h"
#include "server/logging/log.h"
#include "server/musicreport.h"
#include "server/remote/remote.h"
#include "server/serveroptions.h"
#include "server/store/backup.h"
#include "server/store/copy.h"
#include "server/store/database.h"
#include "server/store/datafolder.h"
#include "server/store/migrations.h"
#include "server/web/mailbox.h"
#include "server/web/webpages.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <climits>
#include <csignal>
#include <cstdio>
#include <deque>
#include <fcntl.h>
#include <functional>
#include <mutex>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace {

using namespace velmora::server;

constexpr int exitUsage = 2;
constexpr int exitFailure = 1;

// What the owner sees of the log in a browser: the latest lines. Any thread.
constexpr size_t keptLines = 50;
std::mutex linesMutex;
std::deque<std::string> lines; // guarded by linesMutex

void say(const std::string &line)
{
    logs::say(line);
    const std::lock_guard guard(linesMutex);
    lines.push_back(line);
    if (lines.size() > keptLines)
        lines.pop_front();
}

std::vector<std::string> latestLines()
{
    const std::lock_guard guard(linesMutex);
    return {lines.begin(), lines.end()};
}

// The signals that end the program: blocked in every thread, accepted by waitForEnd().
sigset_t endSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGHUP);
    return signals;
}

// A load balancer notices meanwhile that the service is not ready. A second signal ends the wait.
void drain(ApiServer &server, int seconds)
{
    if (seconds == 0)
        return;
    say("velmora-server ends in " + std::to_string(seconds) + " seconds");
    server.drain();
    const sigset_t signals = endSignals();
    const timespec time{seconds, 0};
    ::sigtimedwait(&signals, nullptr, &time);
}

// A terminal that is closed ends what runs in it. Without a terminal SIGHUP says: read again.
bool hasTerminal()
{
    const int terminal = ::open("/dev/tty", O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (terminal >= 0)
        ::close(terminal);
    return terminal >= 0;
}

// Returns at a signal that ends the program; SIGHUP is none. Calls the function every second.
void waitForEnd(ApiServer &server, const std::function<void()> &everySecond)
{
    const sigset_t signals = endSignals();
    constexpr timespec second{1, 0};
    while (true) {
        const int signal = ::sigtimedwait(&signals, nullptr, &second);
        if (signal < 0) {
            everySecond();
            continue;
        }
        if (signal != SIGHUP || hasTerminal())
            return;
        try {
            say(server.readCertificateAgain() ? "SIGHUP: the certificate was read again"
                                              : "SIGHUP: there is no certificate to read again");
        } catch (const std::exception &error) {
            say(std::string("SIGHUP: the old certificate stays: ") + error.what());
        }
    }
}

// A thread that reads from a network share that does not answer cannot be joined. What is stored is whole at any
// moment.
void endAtTheLatest()
{
    std::thread([] {
        std::this_thread::sleep_for(std::chrono::seconds(15));
        say("velmora-server ends without waiting for a music folder that does not answer");
        ::_exit(0);
    }).detach();
}

// False also when the parent has ended before the kernel was told.
bool dieWithParent(pid_t parent)
{
    return ::prctl(PR_SET_PDEATHSIG, SIGTERM) == 0 && ::getppid() == parent;
}

constexpr const char *systemConfig = "/etc/velmora/server.conf";

// What the options and the configuration file say about the music; what is wrong otherwise.
std::variant<LibrarySettings, std::string> librarySettings(const ServerOptions &options)
{
    LibrarySettings settings;
    settings.say = say;
    settings.config.folders = options.music;
    settings.config.excluded = options.musicExcluded;
    settings.isAnalysed = options.isAnalysed;
    settings.configFile = options.config;
    std::error_code error;
    if (!settings.configFile.empty()) {
        const auto read = readLibraryConfig(settings.configFile);
        if (const auto *problem = std::get_if<std::string>(&read))
            return *problem;
    }
    for (const std::filesystem::path &folder : options.music) {
        const std::filesystem::directory_iterator listed(folder, error);
        if (error)
            return "cannot read the music folder " + folder.string();
    }
    return settings;
}

bool hasMusic(const LibrarySettings &settings)
{
    if (!settings.config.folders.empty() || settings.configFile.empty())
        return !settings.config.folders.empty();
    const auto read = readLibraryConfig(settings.configFile);
    const auto *config = std::get_if<LibraryConfig>(&read);
    return config && !config->folders.empty();
}

// Who reaches the service: as the command line says it, else as the configuration file does.
Reach reachOf(const ServerOptions &options, const LibrarySettings &settings)
{
    if (options.reach || settings.configFile.empty())
        return options.reach.value_or(Reach::Machine);
    const auto read = readLibraryConfig(settings.configFile);
    const auto *config = std::get_if<LibraryConfig>(&read);
    return config ? config->reach : Reach::Machine;
}

// This machine's names, as far as a certificate may have them.
std::vector<std::string> machineNames()
{
    std::array<char, HOST_NAME_MAX + 1> host{};
    std::vector<std::string> names = {"localhost"};
    if (::gethostname(host.data(), host.size() - 1) != 0)
        return names;
    const std::string name = host.data();
    const bool isName = !name.empty() && std::all_of(name.begin(), name.end(), [](unsigned char c) {
        return std::isalnum(c) != 0 || c == '-' || c == '.';
    });
    if (isName) {
        names.push_back(name);
        names.push_back(name.substr(0, name.find('.')) + ".local");
    }
    return names;
}

struct OpenDoor {
    std::vector<std::string> said; // for the log: what the house must know
    std::string fingerprint;       // of the service's own certificate
};

// Opens the service to the house.
OpenDoor openToHouse(Reach reach, const std::filesystem::path &dataDirectory, ListenSettings *listen)
{
    if (ApiServer::isLoopback(listen->host))
        listen->host = hasIpv6() ? "::" : "0.0.0.0"; // the first one takes IPv4, too
    if (reach == Reach::HouseUnencrypted) {
        return {{"NOT ENCRYPTED: everybody in this network can read passwords and listen along; --house without "
                 "--insecure-lan encrypts"},
                {}};
    }
    if (!listen->tlsCertificate.empty())
        return {};
    std::vector<std::string> addresses = houseAddresses();
    addresses.insert(addresses.end(), {"127.0.0.1", "::1"});
    const http::OwnCertificate own = http::ownCertificate(dataDirectory / "tls", machineNames(), addresses);
    listen->tlsCertificate = own.chain;
    listen->tlsKey = own.key;
    listen->isCertificateOwn = true;
    return {{"certificate: SHA-256 " + own.fingerprint,
             "certificate: browsers warn of it; compare the fingerprint, or let them trust " + own.authority.string(),
             "certificate: radios trust it with ca_file=" + own.authority.string()},
            own.fingerprint};
}

// Why a file that the options name must not be used; empty: all is well.
std::string secretsProblem(const ServerOptions &options)
{
    for (const std::filesystem::path &file : {options.listen.tlsKey, options.smtpLogin, options.mediaStoreKey}) {
        if (!file.empty()) {
            if (const std::optional<std::string> problem = secretFileProblem(file))
                return *problem;
        }
    }
    if (!options.smtpLogin.empty() && !readSmtpLogin(options.smtpLogin))
        return options.smtpLogin.string() + " does not hold a user name and a password, a line each";
    if (!options.mediaStoreKey.empty() && !readStoreKey(options.mediaStoreKey))
        return options.mediaStoreKey.string() + " does not hold the id of a key and its secret, a line each";
    return {};
}

// The data folder for this program alone. Null where it is not needed: a report only reads, and a new owner is one row,
// so both may be done beside the service, unless that is of another version.
std::unique_ptr<DataFolder> openDataFolder(const ServerOptions &options)
{
    try {
        auto folder = std::make_unique<DataFolder>(options.dataDirectory);
        for (const std::string &line : folder->mended())
            say(line);
        return folder;
    } catch (const FolderInUse &) {
        Database db(options.dataDirectory / DataFolder::databaseName);
        // Services with one database share a folder: the first looks after its music, the others only play it.
        const bool isPlaying = options.task == Task::Serve && !options.database.empty();
        const bool mayShare =
            options.task == Task::MakeOwner || isPlaying || (options.showsMusicReport && !options.forgetsMissing);
        if (!mayShare || schemaVersion(db) != newestSchemaVersion())
            throw;
    }
    return nullptr;
}

// The data folder, once the process that had it has ended; null until then.
std::unique_ptr<DataFolder> takeOver(const std::filesystem::path &directory)
{
    try {
        return std::make_unique<DataFolder>(directory);
    } catch (const std::exception &) {
        return nullptr;
    }
}

int lookAfterMusic(StationService &service, const ServerOptions &options)
{
    if (options.forgetsMissing) {
        LibraryStore library(service.catalogueStore, service.catalogue, service.clock);
        say("forgotten: " + std::to_string(library.dropAllMissing()) + " files that are missing");
    }
    if (options.showsMusicReport)
        say(musicReport(service));
    return 0;
}

int backUp(const ServerOptions &options)
{
    writeBackup(options.dataDirectory, options.backup);
    say("backed up to " + options.backup.string());
    return 0;
}

int restore(const ServerOptions &options)
{
    const std::unique_ptr<const DataFolder> folder = openDataFolder(options);
    const std::filesystem::path aside = restoreBackup(options.backup, options.dataDirectory);
    say("restored from " + options.backup.string());
    if (!aside.empty())
        say("what was there before lies in " + aside.string());
    return 0;
}

int makeOwner(const ServerOptions &options)
{
    std::error_code error;
    if (options.database.empty() && !std::filesystem::exists(options.dataDirectory / DataFolder::databaseName, error))
        throw std::runtime_error("there is no service's data in " + options.dataDirectory.string());
    const std::unique_ptr<const DataFolder> folder = openDataFolder(options);
    ServiceSettings settings;
    settings.dataDirectory = options.dataDirectory;
    settings.database = options.database;
    StationService service(settings);
    const std::optional<Account> account = service.accounts.find(options.owner);
    if (!account || !account->isActive)
        throw std::runtime_error("there is no account " + options.owner);
    service.house.setOwner(account->id);
    say(account->userName + " owns the service now");
    return 0;
}

int sayWhatIsWrong(const ServerOptions &options)
{
    const std::vector<std::string> problems = checkConfig(options);
    for (const std::string &problem : problems)
        std::printf("%s\n", problem.c_str());
    if (problems.empty())
        std::printf("%s\n", options.config.empty() ? "there is no configuration file, and the options are good"
                                                   : (options.config.string() + " is good").c_str());
    return problems.empty() ? 0 : exitFailure;
}

int copy(const ServerOptions &options)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(options.copyFrom, error))
        throw std::runtime_error("there is no file " + options.copyFrom.string());
    const DataFolder folder(std::filesystem::absolute(options.copyFrom).parent_path()); // no service writes
    Store from(options.copyFrom);
    Store to(options.database, {});
    const Store::Lock file = from.lock();
    const Store::Lock postgres = to.lock();
    for (const CopiedTable &table : copyAccounts(*file, *postgres))
        say(table.name + ": " + std::to_string(table.rows) + " rows");
    say("copied, and the same row by row");
    return 0;
}

int run(const ServerOptions &options)
{
    auto parsedLibrary = librarySettings(options);
    if (const auto *problem = std::get_if<std::string>(&parsedLibrary)) {
        logs::warn(*problem);
        return exitUsage;
    }
    if (const std::string problem = secretsProblem(options); !problem.empty()) {
        logs::warn(problem);
        return exitUsage;
    }
    // Null: another process has it, and looks after the music until it ends.
    std::unique_ptr<const DataFolder> folder = openDataFolder(options);
    auto &music = std::get<LibrarySettings>(parsedLibrary);
    // Maintenance adds no music and no account: what is there plays.
    const bool mayChange = !options.isUnderMaintenance;
    const bool hasDemo = mayChange && options.hasDemo.value_or(!hasMusic(music));
    const bool hasDemoAccount = mayChange && (hasDemo || options.hasDemoAccount);
    ServiceSettings settings;
    settings.dataDirectory = options.dataDirectory;
    settings.database = options.database;
    settings.lifetimes = options.lifetimes;
    StationService service(settings);
    if (options.showsMusicReport || options.forgetsMissing)
        return lookAfterMusic(service, options);
    service.isUnderMaintenance = options.isUnderMaintenance;
    service.catalogue.setLoudness(options.loudness);

    DemoLibrary demo(service.catalogue,
                     {.program = velmora::media::MediaWorker::besideThisProgram("velmora-demomusic"),
                      .folder = service.dataDirectory() / "demo",
                      .tracksOfStyle = options.demoTracksOfStyle},
                     say);
    bool isDemoBegun = false;
    const auto beginToChange = [&] {
        if (!hasDemo)
            service.catalogue.replaceAds({});
        else if (!std::exchange(isDemoBegun, true))
            demo.start();
        if (!hasDemoAccount)
            return;
        ensureDemoAccount(service);
        if (isDemoAccountIncomplete(service))
            say("demo account: its stations follow the first scan");
    };
    if (mayChange && folder)
        beginToChange();
    if (hasDemo)
        music.demoFolders = {DemoLibrary::musicIn(service.dataDirectory() / "demo")};
    music.dataDirectory = service.dataDirectory();
    music.isAtRest = !mayChange || !folder;
    if (hasDemoAccount)
        music.looked = [&service] {
            if (completeDemoAccount(service))
                say("demo account: its stations are there");
        };
    Library library(service.catalogueStore, service.catalogue, settings.clock, music);
    service.library = &library;
    service.playlists.setTranscodes(&library.transcodes());

    MailSettings mail;
    mail.smtp = options.smtp;
    mail.smtpLogin = options.smtpLogin;
    mail.isTlsRequired = options.isSmtpTlsRequired;
    mail.smtpCa = options.smtpCa;
    if (!options.mailFrom.empty())
        mail.sender = options.mailFrom;
    mail.outbox = options.outbox.empty() ? service.dataDirectory() / "outbox" : options.outbox;
    // The service's own address, never a host name from a request.
    mail.address = [&service] { return service.addresses.base(); };
    const std::filesystem::path outbox = mail.outbox;
    Mailbox mailbox(service.store, std::move(mail));
    service.mailer = &mailbox;

    ListenSettings listen = options.listen;
    if (!options.mediaStoreKey.empty())
        listen.roads.storeKey = readStoreKey(options.mediaStoreKey).value_or(StoreKey());
    OpenDoor door;
    if (const Reach reach = reachOf(options, music); reach != Reach::Machine)
        door = openToHouse(reach, service.dataDirectory(), &listen);
    const bool isEncrypted = !listen.tlsCertificate.empty() || listen.publicUrl.starts_with("https://");
    WebPages pages(service, isEncrypted);
    pages.setAbout({VELMORA_VERSION, door.fingerprint, latestLines});
    Remote remote(service, pages);
    listen.addPages = [&pages, &remote](http::Router &router) {
        pages.addTo(router);
        remote.addTo(router);
    };
    listen.pageNotFound = [&pages](const http::Request &request) { return pages.notFound(request); };

    ApiServer server(service, listen);
    for (const ServerOptions::Failure &failure : options.failures)
        server.dispatcher().failOnPurpose(failure.function, failure.code, failure.times);
    try {
        server.start();
    } catch (const std::exception &error) {
        logs::warn(error.what());
        return exitFailure;
    }
    say("velmora-server listening on " + server.url());
    for (const std::string &line : door.said)
        say(line);
    std::optional<Announcement> announcement;
    if (!ApiServer::isLoopback(listen.host))
        announcement.emplace(static_cast<uint16_t>(server.port()), !listen.tlsCertificate.empty());
    library.start(); // after the address is known to be free: a second server must not touch the music
    if (options.smtp.empty())
        say("mails are written to " + outbox.string());
    if (hasDemoAccount)
        say("demo account: " + demoAccountFile(service).string());
    std::optional<CatalogueWatch> watch;
    if (!folder)
        watch.emplace(service.catalogue);
    waitForEnd(server, [&] {
        if (folder || !mayChange)
            return;
        folder = takeOver(options.dataDirectory);
        if (!folder)
            return;
        say("the process that looked after the music has ended; this one does from now on");
        try {
            beginToChange();
            library.endRest();
            watch.reset();
            service.catalogue.noteChange(); // what that process did last
        } catch (const std::exception &error) {
            logs::warn(std::string("the music waits: ") + error.what());
            folder.reset(); // the next second, this process or another one tries again
        }
    });
    drain(server, options.drainSeconds);
    endAtTheLatest();
    server.stop();
    library.stop();
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const pid_t parent = ::getppid();
    std::vector<std::string> environment;
    for (char **variable = environ; *variable; ++variable)
        environment.emplace_back(*variable);
    const auto parsed = parseOptions({argv + 1, argv + argc}, systemConfig, environment);
    if (const auto *problem = std::get_if<std::string>(&parsed)) {
        std::fprintf(stderr, "velmora-server: %s\n%s", problem->c_str(), usage().c_str());
        return exitUsage;
    }
    const auto &options = std::get<ServerOptions>(parsed);
    if (options.showsHelp) {
        std::fputs(usage().c_str(), stdout);
        return 0;
    }
    if (options.task == Task::CheckConfig)
        return sayWhatIsWrong(options);
    for (const ConfigProblem &problem : options.configProblems)
        std::fprintf(stderr, "velmora-server: %s\n", describe(options.config, problem).c_str());
    if (!options.configProblems.empty())
        return exitUsage;
    logs::setFormat(options.logFormat);
    ::umask(077);
    std::signal(SIGPIPE, SIG_IGN);
    const sigset_t signals = endSignals();
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    if (options.diesWithParent && !dieWithParent(parent))
        return 0;
    try {
        switch (options.task) {
        case Task::Backup:
            return backUp(options);
        case Task::Restore:
            return restore(options);
        case Task::MakeOwner:
            return makeOwner(options);
        case Task::Copy:
            return copy(options);
        case Task::CheckConfig: // done above
        case Task::Serve:
            break;
        }
        return run(options);
    } catch (const std::exception &error) {
        logs::warn(error.what());
        return exitFailure;
    }
}
