#include "server/serveroptions.h"

#include "server/accounts/mailaddress.h"
#include "server/http/peers.h"
#include "server/library/libraryconfig.h"

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

bool take(ServerOptions &options, const std::string &name, const std::string &value)
{
    if (name == "--listen")
        return readListen(value, &options.listen);
    if (name == "--public-url")
        return readUrl(value, &options.listen.publicUrl);
    if (name == "--trusted-proxy")
        return readProxy(value, &options.listen.trustedProxies);
    if (name == "--token-lifetime")
        return readLifetimes(value, &options.lifetimes);
    if (name == "--throttle")
        return readNumber<int64_t>(value, 1, int64_t(1) << 40, &options.listen.throttleBytesPerSecond);
    if (name == "--demo-tracks")
        return readNumber(value, 1, 1000, &options.demoTracksOfStyle);
    if (name == "--smtp")
        return readMailServer(value, &options.smtp);
    if (name == "--mail-from")
        return readMailAddress(value, &options.mailFrom);
    if (name == "--fail")
        return readFailure(value, &options.failures);
    if (name == "--smtp-tls") {
        options.isSmtpTlsRequired = value == "require";
        return value == "require" || value == "offered";
    }
    if (name == "--analysis")
        return readSwitch(value, &options.isAnalysed);
    if (name == "--loudness")
        return readLoudness(value, &options.loudness);
    if (name == "--music-exclude")
        options.musicExcluded.push_back(value);
    else if (name == "--music")
        options.music.push_back(plainPath(std::filesystem::absolute(value)));
    else if (name == "--config")
        options.config = value;
    else if (name == "--data")
        options.dataDirectory = value;
    else if (name == "--tls-cert")
        options.listen.tlsCertificate = value;
    else if (name == "--tls-key")
        options.listen.tlsKey = value;
    else if (name == "--smtp-login")
        options.smtpLogin = value;
    else if (name == "--smtp-ca")
        options.smtpCa = value;
    else if (name == "--outbox")
        options.outbox = value;
    return !value.empty();
}

constexpr const char *namesWithValue[] = {
    "--listen",    "--data",   "--public-url",  "--trusted-proxy", "--tls-cert",      "--tls-key",  "--token-lifetime",
    "--throttle",  "--fail",   "--demo-tracks", "--smtp",          "--smtp-login",    "--smtp-tls", "--smtp-ca",
    "--mail-from", "--outbox", "--music",       "--config",        "--music-exclude", "--analysis", "--loudness"};

bool takesValue(const std::string &name)
{
    for (const char *known : namesWithValue) {
        if (name == known)
            return true;
    }
    return false;
}

} // namespace

std::variant<ServerOptions, std::string> parseOptions(const std::vector<std::string> &arguments)
{
    ServerOptions options;
    options.dataDirectory = defaultDataDirectory();
    bool isInsecureLan = false;
    bool isInHouse = false;
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
        } else if (argument == "--help") {
            options.showsHelp = true;
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
        } else if (takesValue(argument)) {
            if (i + 1 == arguments.size())
                return argument + " needs a value";
            if (!take(options, argument, arguments[++i]))
                return argument + " cannot be \"" + arguments[i] + "\"";
        } else {
            return "unknown option " + argument;
        }
    }
    if (options.listen.tlsCertificate.empty() != options.listen.tlsKey.empty())
        return std::string("--tls-cert and --tls-key go together");
    if (isInHouse)
        options.reach = isInsecureLan ? Reach::HouseUnencrypted : Reach::House;
    if (!ApiServer::isLoopback(options.listen.host) && options.listen.tlsCertificate.empty() && !isInsecureLan &&
        !isInHouse && !options.showsHelp)
        return "listening on " + options.listen.host +
               " lets other machines in: give a certificate (--tls-cert, --tls-key), or say --house or --insecure-lan";
    return options;
}

std::string usage()
{
    return R"(usage: velmora-server [OPTION]...
       velmora-server backup FILE [--data DIR]    copy what is stored into a file, also while the service runs
       velmora-server restore FILE [--data DIR]   go back to such a copy; what is there is put aside
       velmora-server make-owner E-MAIL [--data DIR]
                                                  make this account the owner's, also while the service runs

  --listen HOST:PORT        where to listen (127.0.0.1:7480); port 0 picks one
  --data DIR                where everything is kept ($XDG_DATA_HOME/velmora-server)
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
  --config FILE             what the owner says about the music (/etc/velmora/server.conf)
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
  --maintenance             refuse everything that changes something (5096)
  --die-with-parent         end when the program that started this one ends
  --help                    this text

For trying out how a radio behaves:
  --throttle BYTES          no media stream gets more bytes a second
  --fail FUNCTION=CODE[,N]  the function answers this code, N times or always
)";
}

} // namespace velmora::server
