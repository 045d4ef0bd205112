#include "server/serveroptions.h"

#include "server/store/postgres/postgresconnection.h"

#include "server/accounts/mailaddress.h"
#include "server/http/peers.h"
#include "server/library/libraryconfig.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>

namespace velmora::server {

namespace {

std::filesystem::path defaultDataDirectory()
{
    const char *base = std::getenv("XDG_DATA_HOME");
    if (base && base[0] == '/')
        return std::filesystem::path(base) / "velmora-server";
    const char *home = std::getenv("HOME");
    return std::filesystem::path(home ? home : "/") / ".local/share/velmora-server";
}

template <typename Number>
bool readNumber(std::string_view text, Number lowest, Number highest, Number *value)
{
    Number number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size() || number < lowest || number > highest)
        return false;
    *value = number;
    return true;
}

// "HOST:PORT", "[IPv6]:PORT"
bool readListen(const std::string &text, ListenSettings *listen)
{
    const size_t colon = text.rfind(':');
    if (colon == std::string::npos || colon == 0 ||
        !readNumber(std::string_view(text).substr(colon + 1), 0, 65535, &listen->port))
        return false;
    std::string host = text.substr(0, colon);
    if (host.size() > 2 && host.front() == '[' && host.back() == ']')
        host = host.substr(1, host.size() - 2);
    else if (host.find(':') != std::string::npos)
        return false;
    listen->host = host;
    return true;
}

bool readUrl(std::string text, std::string *url)
{
    while (!text.empty() && text.back() == '/')
        text.pop_back();
    if (!(text.starts_with("http://") || text.starts_with("https://")) ||
        text.find_first_of(" \"?#@") != std::string::npos)
        return false;
    *url = text;
    return true;
}

// A password does not belong here: every process can read a command line.
bool readMailServer(const std::string &text, std::string *server)
{
    *server = text;
    return (text.starts_with("smtp://") || text.starts_with("smtps://")) && text.find('@') == std::string::npos;
}

bool readMailAddress(const std::string &text, std::string *address)
{
    *address = text;
    return isMailAddress(text);
}

bool readProxy(const std::string &text, std::vector<std::string> *proxies)
{
    const std::optional<std::string> address = http::normalAddress(text);
    if (address)
        proxies->push_back(*address);
    return address.has_value();
}

// "PARTNER,USER", seconds
bool readLifetimes(const std::string &text, TokenLifetimes *lifetimes)
{
    const size_t comma = text.find(',');
    constexpr int64_t most = 365 * 24 * 3600;
    return comma != std::string::npos &&
           readNumber<int64_t>(std::string_view(text).substr(0, comma), 1, most, &lifetimes->partnerSeconds) &&
           readNumber<int64_t>(std::string_view(text).substr(comma + 1), 1, most, &lifetimes->userSeconds);
}

// "FUNCTION=CODE[,TIMES]"
bool readFailure(const std::string &text, std::vector<ServerOptions::Failure> *failures)
{
    const size_t equals = text.find('=');
    if (equals == std::string::npos)
        return false;
    ServerOptions::Failure failure;
    failure.function = text.substr(0, equals);
    const std::string_view rest = std::string_view(text).substr(equals + 1);
    const size_t comma = rest.find(',');
    if (!findRoute(failure.function) || !readNumber(rest.substr(0, comma), 1, 99999, &failure.code))
        return false;
    if (comma != std::string_view::npos && !readNumber(rest.substr(comma + 1), 1, 1000000, &failure.times))
        return false;
    failures->push_back(failure);
    return true;
}

bool readSwitch(const std::string &text, std::optional<bool> *value)
{
    *value = text == "on";
    return text == "on" || text == "off";
}

// LUFS, or "off"
bool readLoudness(const std::string &text, std::optional<double> *loudness)
{
    double value = 0;
    if (text != "off" && !readNumber(text, -30.0, -5.0, &value))
        return false;
    *loudness = text == "off" ? std::nullopt : std::optional(value);
    return true;
}

// "TARGET=/FOLDER"
bool readRoad(const std::string &text, MediaRoad::Kind kind, MediaRoads *roads)
{
    const size_t equals = text.find('=');
    MediaRoad road{kind, text.substr(0, equals), {}};
    if (equals == std::string::npos || text.compare(equals, 2, "=/") != 0)
        return false;
    road.folder = plainPath(text.substr(equals + 1));
    const bool isTarget = kind == MediaRoad::Kind::Accelerated
                              ? road.target.starts_with('/') && road.target.size() > 1
                              : readUrl(road.target, &road.target) &&
                                    road.target.find('/', road.target.find("://") + 3) != std::string::npos;
    while (!road.target.empty() && road.target.back() == '/')
        road.target.pop_back();
    roads->roads.push_back(std::move(road));
    return isTarget && text.find('%') == std::string::npos;
}

// "sqlite:FILE" or only the file.
std::filesystem::path fileOf(const std::string &text)
{
    constexpr std::string_view scheme = "sqlite:";
    return text.starts_with(scheme) ? text.substr(scheme.size()) : text;
}

bool readDatabase(const std::string &text, std::string *address)
{
    *address = text;
    return PostgresAddress::isOne(text);
}

using Take = bool (*)(ServerOptions &options, const std::string &value);

template <auto member>
bool takePath(ServerOptions &options, const std::string &value)
{
    options.*member = value;
    return !value.empty();
}

template <auto member>
bool takeListenPath(ServerOptions &options, const std::string &value)
{
    options.listen.*member = value;
    return !value.empty();
}

enum class Place { Anywhere, CommandLine };

// An option that takes a value: on the command line "--name VALUE", in the configuration file "name = VALUE".
struct Option {
    const char *name;
    const char *needs; // the value, in words; null: a file or a folder
    Take take;
    Place place = Place::Anywhere;
};

const Option withValue[] = {
    {"listen", "HOST:PORT, an IPv6 address in brackets",
     [](ServerOptions &o, const std::string &v) { return readListen(v, &o.listen); }},
    {"public-url", "http://HOST or https://HOST, without parameters",
     [](ServerOptions &o, const std::string &v) { return readUrl(v, &o.listen.publicUrl); }},
    {"trusted-proxy", "an IP address",
     [](ServerOptions &o, const std::string &v) { return readProxy(v, &o.listen.trustedProxies); }},
    {"token-lifetime", "two numbers of seconds with a comma",
     [](ServerOptions &o, const std::string &v) { return readLifetimes(v, &o.lifetimes); }},
    {"throttle", "bytes",
     [](ServerOptions &o, const std::string &v) {
         return readNumber<int64_t>(v, 1, int64_t(1) << 40, &o.listen.throttleBytesPerSecond);
     },
     Place::CommandLine},
    {"demo-tracks", "a number from 1 to 1000",
     [](ServerOptions &o, const std::string &v) { return readNumber(v, 1, 1000, &o.demoTracksOfStyle); }},
    {"smtp", "smtp[s]://HOST[:PORT]; the password is named by smtp-login",
     [](ServerOptions &o, const std::string &v) { return readMailServer(v, &o.smtp); }},
    {"mail-from", "an e-mail address",
     [](ServerOptions &o, const std::string &v) { return readMailAddress(v, &o.mailFrom); }},
    {"fail", "FUNCTION=CODE", [](ServerOptions &o, const std::string &v) { return readFailure(v, &o.failures); },
     Place::CommandLine},
    {"smtp-tls", "require or offered",
     [](ServerOptions &o, const std::string &v) {
         o.isSmtpTlsRequired = v == "require";
         return v == "require" || v == "offered";
     }},
    {"analysis", "on or off", [](ServerOptions &o, const std::string &v) { return readSwitch(v, &o.isAnalysed); },
     Place::CommandLine},
    {"loudness", "a number of LUFS from -30 to -5, or off",
     [](ServerOptions &o, const std::string &v) { return readLoudness(v, &o.loudness); }},
    {"music-exclude", "a pattern",
     [](ServerOptions &o, const std::string &v) {
         o.musicExcluded.push_back(v);
         return !v.empty();
     },
     Place::CommandLine},
    {"music", nullptr,
     [](ServerOptions &o, const std::string &v) {
         o.music.push_back(plainPath(std::filesystem::absolute(v)));
         return !v.empty();
     },
     Place::CommandLine},
    {"log-format", "text or json",
     [](ServerOptions &o, const std::string &v) {
         o.logFormat = v == "json" ? logs::Format::Json : logs::Format::Text;
         return v == "json" || v == "text";
     }},
    {"drain-seconds", "a number from 0 to 600",
     [](ServerOptions &o, const std::string &v) { return readNumber(v, 0, 600, &o.drainSeconds); }},
    {"config", nullptr, takePath<&ServerOptions::config>, Place::CommandLine},
    {"media-accel", "/PATH=/FOLDER, the path as the proxy's configuration has it",
     [](ServerOptions &o, const std::string &v) { return readRoad(v, MediaRoad::Kind::Accelerated, &o.listen.roads); }},
    {"media-store", "http[s]://HOST/BUCKET=/FOLDER",
     [](ServerOptions &o, const std::string &v) { return readRoad(v, MediaRoad::Kind::Store, &o.listen.roads); }},
    {"media-store-key", nullptr, takePath<&ServerOptions::mediaStoreKey>},
    {"media-store-region", "a name",
     [](ServerOptions &o, const std::string &v) {
         o.listen.roads.storeRegion = v;
         return !v.empty() && v.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-") == std::string::npos;
     }},
    {"database", "postgresql://[user@][host]/database, without a password",
     [](ServerOptions &o, const std::string &v) { return readDatabase(v, &o.database); }},
    {"data", nullptr, takePath<&ServerOptions::dataDirectory>},
    {"tls-cert", nullptr, takeListenPath<&ListenSettings::tlsCertificate>},
    {"tls-key", nullptr, takeListenPath<&ListenSettings::tlsKey>},
    {"smtp-login", nullptr, takePath<&ServerOptions::smtpLogin>},
    {"smtp-ca", nullptr, takePath<&ServerOptions::smtpCa>},
    {"outbox", nullptr, takePath<&ServerOptions::outbox>},
};

const Option *findOption(std::string_view name)
{
    const auto *found = std::find_if(std::begin(withValue), std::end(withValue),
                                     [&](const Option &option) { return name == option.name; });
    return found == std::end(withValue) ? nullptr : found;
}

// What is wrong with a line under [service]; empty when nothing is. The text never repeats the value, which may hold a
// password by mistake. What is a switch on the command line is on or off here.
std::string takeLine(ServerOptions &options, const ConfigEntry &entry, bool *isInsecureLan)
{
    const std::pair<const char *, bool *> switches[] = {{"demo", nullptr},
                                                        {"demo-account", &options.hasDemoAccount},
                                                        {"maintenance", &options.isUnderMaintenance},
                                                        {"insecure-lan", isInsecureLan}};
    const auto *found = std::find_if(std::begin(switches), std::end(switches),
                                     [&](const auto &known) { return entry.key == known.first; });
    if (found != std::end(switches)) {
        std::optional<bool> isOn;
        if (!readSwitch(entry.value, &isOn))
            return entry.key + " is on or off";
        if (found->second)
            *found->second = *isOn;
        else
            options.hasDemo = isOn;
        return {};
    }
    const Option *option = findOption(entry.key);
    if (!option)
        return "there is no key " + printable(entry.key) + " under [service]";
    if (option->place == Place::CommandLine)
        return entry.key + " is an option of the command line; what concerns the music stands under [library]";
    // A program that systemd starts is in the folder "/": a relative path would mean something else than it seems to.
    if (!option->needs && !entry.value.starts_with('/'))
        return entry.key + " needs a whole path, beginning with /";
    if (!option->take(options, entry.value))
        return entry.key + " needs " + option->needs;
    options.configLines[entry.key] = entry.line;
    return {};
}

// What is wrong with a variable VELMORA_SERVER_*, each of which is a line under [service]; empty when nothing is.
std::string takeVariables(ServerOptions &options, const std::vector<std::string> &environment, bool *isInsecureLan)
{
    constexpr std::string_view prefix = "VELMORA_SERVER_";
    for (const std::string &variable : environment) {
        if (!variable.starts_with(prefix))
            continue;
        const size_t end = std::min(variable.find('='), variable.size());
        ConfigEntry entry;
        for (const char c : variable.substr(prefix.size(), end - prefix.size()))
            entry.key += c == '_' ? '-' : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        entry.value = variable.substr(std::min(end + 1, variable.size()));
        if (const std::string wrong = takeLine(options, entry, isInsecureLan); !wrong.empty())
            return variable.substr(0, end) + ": " + wrong;
        options.configLines.erase(entry.key);
    }
    return {};
}

// The file that --config names, before the other options are looked at.
std::filesystem::path configFile(const std::vector<std::string> &arguments, const std::filesystem::path &systemConfig)
{
    const auto named = std::find(arguments.begin(), arguments.end(), "--config");
    if (named != arguments.end() && named + 1 != arguments.end())
        return *(named + 1);
    std::error_code error;
    return std::filesystem::exists(systemConfig, error) ? systemConfig : std::filesystem::path();
}

} // namespace

std::variant<ServerOptions, std::string> parseOptions(const std::vector<std::string> &arguments,
                                                      const std::filesystem::path &systemConfig,
                                                      const std::vector<std::string> &environment)
{
    ServerOptions options;
    options.dataDirectory = defaultDataDirectory();
    bool isInsecureLan = false;
    bool isInHouse = false;
    options.config = configFile(arguments, systemConfig);
    if (!options.config.empty()) {
        const ConfigFile file = readConfigFile(options.config);
        options.configProblems = file.problems;
        for (const ConfigEntry &entry : file.entries) {
            const std::string wrong =
                entry.section == serviceSection ? takeLine(options, entry, &isInsecureLan) : std::string();
            if (!wrong.empty())
                options.configProblems.push_back({entry.line, wrong});
        }
    }
    if (const std::string wrong = takeVariables(options, environment, &isInsecureLan); !wrong.empty())
        return wrong;
    for (size_t i = 0; i < arguments.size(); ++i) {
        const std::string &argument = arguments[i];
        if (i == 0 && argument == "make-owner") {
            if (arguments.size() < 2 || !isMailAddress(arguments[1]))
                return argument + " needs the e-mail address of an account";
            options.task = Task::MakeOwner;
            options.owner = arguments[++i];
        } else if (i == 0 && (argument == "backup" || argument == "restore")) {
            if (arguments.size() < 2 || arguments[1].empty() || arguments[1].starts_with("-"))
                return argument + " needs a file";
            options.task = argument == "backup" ? Task::Backup : Task::Restore;
            options.backup = arguments[++i];
        } else if (i == 0 && argument == "copy") {
            if (arguments.size() < 5 || arguments[1] != "--from" || arguments[3] != "--to" ||
                !readDatabase(arguments[4], &options.database))
                return argument + " needs --from sqlite:FILE --to postgresql://...";
            options.task = Task::Copy;
            options.copyFrom = fileOf(arguments[2]);
            i = 4;
        } else if (argument == "--help") {
            options.showsHelp = true;
        } else if (argument == "--check-config") {
            options.task = Task::CheckConfig;
        } else if (argument == "--demo" || argument == "--no-demo") {
            options.hasDemo = argument == "--demo";
        } else if (argument == "--demo-account") {
            options.hasDemoAccount = true;
        } else if (argument == "--music-report") {
            options.showsMusicReport = true;
        } else if (argument == "--forget-missing") {
            options.forgetsMissing = true;
        } else if (argument == "--house") {
            isInHouse = true;
        } else if (argument == "--insecure-lan") {
            isInsecureLan = true;
        } else if (argument == "--die-with-parent") {
            options.diesWithParent = true;
        } else if (argument == "--maintenance") {
            options.isUnderMaintenance = true;
        } else if (const Option *option =
                       argument.starts_with("--") ? findOption(std::string_view(argument).substr(2)) : nullptr) {
            if (i + 1 == arguments.size())
                return argument + " needs a value";
            if (!option->take(options, arguments[++i]))
                return argument + " cannot be \"" + arguments[i] + "\"";
            options.configLines.erase(option->name);
        } else {
            return "unknown option " + argument;
        }
    }
    if (isInHouse)
        options.reach = isInsecureLan ? Reach::HouseUnencrypted : Reach::House;
    // What fits together is asked of both places; a line of the file is named if one of them is in it.
    const auto lineOf = [&](const char *name) {
        const auto found = options.configLines.find(name);
        return found == options.configLines.end() ? 0 : found->second;
    };
    std::string problem;
    int line = 0;
    if (options.listen.tlsCertificate.empty() != options.listen.tlsKey.empty()) {
        problem = "--tls-cert and --tls-key go together";
        line = std::max(lineOf("tls-cert"), lineOf("tls-key"));
    } else if (const auto &roads = options.listen.roads.roads;
               options.mediaStoreKey.empty() && std::any_of(roads.begin(), roads.end(), [](const MediaRoad &road) {
                   return road.kind == MediaRoad::Kind::Store;
               })) {
        problem = "--media-store needs --media-store-key";
        line = lineOf("media-store");
    } else if (!ApiServer::isLoopback(options.listen.host) && options.listen.tlsCertificate.empty() && !isInsecureLan &&
               !isInHouse && !options.showsHelp) {
        problem = "listening on " + options.listen.host +
                  " lets other machines in: give a certificate (--tls-cert, --tls-key), or say --house or "
                  "--insecure-lan";
        line = lineOf("listen");
    }
    if (!problem.empty() && line == 0)
        return problem;
    if (!problem.empty())
        options.configProblems.push_back({line, problem});
    std::stable_sort(options.configProblems.begin(), options.configProblems.end(),
                     [](const auto &a, const auto &b) { return a.line < b.line; });
    return options;
}

std::string usage()
{
    return R"(usage: velmora-server [OPTION]...
       velmora-server backup FILE [--data DIR]    copy what is stored into a file, also while the service runs
       velmora-server restore FILE [--data DIR]   go back to such a copy; what is there is put aside
       velmora-server make-owner E-MAIL [--data DIR]
                                                  make this account the owner's, also while the service runs
       velmora-server copy --from sqlite:FILE --to postgresql://...
                                                  take the accounts of such a file over into an empty PostgreSQL

  --listen HOST:PORT        where to listen (127.0.0.1:7480); port 0 picks one
  --data DIR                where everything is kept ($XDG_DATA_HOME/velmora-server)
  --database ADDRESS        keep accounts in a PostgreSQL, postgresql://[user@][host]/database; its password only in a
                            file, named with ?passfile=FILE; several services may use one
  --public-url URL          what radios and browsers reach, when that is not where it listens
  --trusted-proxy ADDRESS   a reverse proxy whose X-Forwarded-For names the caller; may be given several times
  --tls-cert FILE --tls-key FILE
                            HTTPS with this certificate chain and key (PEM)
  --house                   let the house in: listen on every interface, with a certificate that is made at the first
                            start, or with that of --tls-cert
  --insecure-lan            listen beyond this machine without a certificate
  --music DIR               play the music in this folder; may be given several times
  --music-exclude PATTERN   leave out files and folders with such names; may be given several times
  --analysis on|off         whether tracks are listened to (on); off: stations go by tags alone
  --loudness LUFS|off       what all tracks sound as loud as (-18); off: as they are
  --config FILE             the configuration file (/etc/velmora/server.conf): these options, and the music
  --check-config            say everything that is wrong in it, with the line, and end: 0, or 1 if something is
  --music-report            say what the last scan found, what does not play and why, and end
  --forget-missing          forget files that are gone, with their thumbs, and end
  --demo, --no-demo         play the demo catalogue and make the demo account (on, unless there is music)
  --demo-account            make the demo account, whatever is played
  --demo-tracks N           of the demo catalogue at most so many tracks of each style (all)
  --token-lifetime P,U      seconds that partner and user sessions live (86400,14400)
  --smtp URL                mail server, smtp[s]://host[:port]
  --smtp-login FILE         its user name and password, one a line; mails are then sent through TLS only
  --smtp-tls require|offered
                            whether mails may go unencrypted where TLS is not offered (offered)
  --smtp-ca FILE            certificates to trust for it (the system's)
  --mail-from ADDRESS       the sender of its mails (velmora@localhost)
  --outbox DIR              where mails are written that no mail server takes
  --media-accel PATH=FOLDER the reverse proxy sends the files in this folder (X-Accel-Redirect to PATH); may be given
                            several times
  --media-store URL=FOLDER  radios get the files in this folder from an S3-compatible store, URL is http[s]://host/bucket;
                            may be given several times
  --media-store-key FILE    the id of the key to the store and its secret, one a line
  --media-store-region NAME the store's region (us-east-1)
  --log-format text|json    how the lines of the log look (text)
  --drain-seconds N         after SIGTERM, /ready says 503 for so long before the service ends (0)
  --maintenance             refuse everything that changes something (5096)
  --die-with-parent         end when the program that started this one ends
  --help                    this text

What the configuration file has under [service] may also stand in the environment: VELMORA_SERVER_LOG_FORMAT=json. It wins
over the file, and the command line over both.

For trying out how a radio behaves:
  --throttle BYTES          no media stream gets more bytes a second
  --fail FUNCTION=CODE[,N]  the function answers this code, N times or always
)";
}

} // namespace velmora::server
