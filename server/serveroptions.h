#pragma once

#include "server/api/apiserver.h"
#include "server/library/libraryconfig.h"
#include "server/logging/log.h"

#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace velmora::server {

// What the program is asked to do; all but Serve end by themselves.
enum class Task { Serve, Backup, Restore, MakeOwner, CheckConfig, Copy };

// The command line of velmora-server, over what stands under [service] in the configuration file.
struct ServerOptions {
    Task task = Task::Serve;
    std::filesystem::path backup; // the file of Backup and Restore
    std::string owner;            // the e-mail address of MakeOwner
    ListenSettings listen;
    std::optional<Reach> reach; // as it was said; else the configuration decides
    std::filesystem::path dataDirectory;
    std::string database;           // of accounts: a PostgreSQL's address; empty: a file in the folder
    std::filesystem::path copyFrom; // the file of Copy; it copies to `database`
    TokenLifetimes lifetimes;
    std::vector<std::filesystem::path> music;                   // folders, absolute
    std::vector<std::string> musicExcluded;                     // patterns
    std::optional<bool> isAnalysed;                             // as it was said; else the configuration decides
    std::optional<double> loudness = Catalogue::storedLoudness; // LUFS; nothing: tracks are played as they are
    std::filesystem::path config;                               // empty: there is none
    std::vector<ConfigProblem> configProblems;                  // under [service]; the service does not start with any
    std::map<std::string, int> configLines;                     // where the file sets an option: its name, the line
    std::optional<bool> hasDemo;   // as it was said; else there is a demo where there is no music
    bool hasDemoAccount = false;   // also without the demo catalogue
    int demoTracksOfStyle = 1000;  // at most so many
    bool showsMusicReport = false; // and then ends
    bool forgetsMissing = false;   // and then ends
    bool diesWithParent = false;
    logs::Format logFormat = logs::Format::Text;
    int drainSeconds = 0; // between SIGTERM and the end; not ready meanwhile
    bool isUnderMaintenance = false;
    bool showsHelp = false;
    std::string smtp;                    // for the mails: smtp[s]://host[:port]; empty: none
    std::filesystem::path smtpLogin;     // a file: the user name in its first line, the password in its second
    bool isSmtpTlsRequired = false;      // also without a login
    std::filesystem::path smtpCa;        // PEM: the certificates to trust; empty: the system's
    std::string mailFrom;                // their sender; empty: the default
    std::filesystem::path mediaStoreKey; // a file: the id of the key to the media store, its secret in the second line
    std::filesystem::path outbox;        // folder of the mails that no SMTP server accepts
    struct Failure {
        std::string function;
        int code = 0;
        int times = 0; // 0: always
    };
    std::vector<Failure> failures;
};

// The options, or what is wrong with the command line or the environment, for the person who wrote it. Without
// --config, `systemConfig` is read if it exists. The command line wins over the environment ("NAME=value"), and that
// over the file; options that may be given several times add up.
std::variant<ServerOptions, std::string> parseOptions(const std::vector<std::string> &arguments,
                                                      const std::filesystem::path &systemConfig = {},
                                                      const std::vector<std::string> &environment = {});
std::string usage();

} // namespace velmora::server
