#include "server/configcheck.h"

#include "server/http/transport.h"
#include "server/store/datafolder.h"
#include "server/web/mailbox.h"

#include <algorithm>
#include <fstream>
#include <unistd.h>

namespace velmora::server {

namespace {

namespace fs = std::filesystem;

// What is wrong with a folder that the service writes to, or makes; empty when nothing is.
std::string folderProblem(const fs::path &folder)
{
    std::error_code error;
    fs::path existing = fs::absolute(folder);
    while (!fs::exists(existing, error) && existing.has_relative_path())
        existing = existing.parent_path();
    if (!fs::is_directory(existing, error))
        return existing.string() + " is no folder";
    return ::access(existing.c_str(), W_OK | X_OK) == 0 ? std::string()
                                                        : existing.string() + " cannot be written to by this user";
}

bool isListable(const fs::path &folder)
{
    std::error_code error;
    const fs::directory_iterator listed(folder, error);
    return !error;
}

} // namespace

std::optional<StoreKey> readStoreKey(const fs::path &file)
{
    std::ifstream stream(file);
    StoreKey key;
    std::getline(stream, key.id);
    std::getline(stream, key.secret);
    return key.id.empty() || key.secret.empty() ? std::nullopt : std::optional(key);
}

std::vector<std::string> checkConfig(const ServerOptions &options)
{
    std::vector<ConfigProblem> problems;
    if (!options.config.empty()) {
        const ConfigFile file = readConfigFile(options.config);
        // The problems of the syntax are in both lists.
        takeLibraryConfig(file, &problems);
        for (const ConfigEntry &entry : file.entries) {
            const bool isFolder = entry.section == librarySection && entry.key == "music";
            if (isFolder && entry.value.starts_with('/') && !isListable(entry.value))
                problems.push_back({entry.line, "music: " + printable(entry.value) + " cannot be read"});
        }
        for (const ConfigProblem &problem : options.configProblems) {
            if (std::none_of(problems.begin(), problems.end(), [&](const ConfigProblem &known) {
                    return known.line == problem.line && known.text == problem.text;
                }))
                problems.push_back(problem);
        }
    }
    std::vector<std::string> others; // that stand in no line
    const auto add = [&](const char *option, const std::string &text) {
        const auto line = options.configLines.find(option);
        if (text.empty())
            return;
        if (line != options.configLines.end())
            problems.push_back({line->second, std::string(option) + ": " + text});
        else
            others.push_back(std::string("--") + option + ": " + text);
    };
    const ListenSettings &listen = options.listen;
    if (!listen.tlsKey.empty())
        add("tls-key", secretFileProblem(listen.tlsKey).value_or(""));
    if (!listen.tlsKey.empty() && !listen.tlsCertificate.empty()) {
        try {
            http::tlsContext(listen.tlsCertificate, listen.tlsKey);
        } catch (const std::exception &error) {
            add("tls-cert", error.what());
        }
    }
    if (!options.smtpLogin.empty()) {
        std::string problem = secretFileProblem(options.smtpLogin).value_or("");
        if (problem.empty() && !readSmtpLogin(options.smtpLogin))
            problem = options.smtpLogin.string() + " does not hold a user name and a password, a line each";
        add("smtp-login", problem);
    }
    if (!options.mediaStoreKey.empty()) {
        std::string problem = secretFileProblem(options.mediaStoreKey).value_or("");
        if (problem.empty() && !readStoreKey(options.mediaStoreKey))
            problem = options.mediaStoreKey.string() + " does not hold the id of a key and its secret, a line each";
        add("media-store-key", problem);
    }
    if (!options.smtpCa.empty() && !std::ifstream(options.smtpCa))
        add("smtp-ca", options.smtpCa.string() + " cannot be read");
    add("data", folderProblem(options.dataDirectory));
    if (!options.outbox.empty())
        add("outbox", folderProblem(options.outbox));
    for (const fs::path &folder : options.music) {
        if (!isListable(folder))
            add("music", printable(folder.string()) + " cannot be read");
    }
    std::stable_sort(problems.begin(), problems.end(), [](const auto &a, const auto &b) { return a.line < b.line; });
    std::vector<std::string> all;
    all.reserve(problems.size() + others.size());
    for (const ConfigProblem &problem : problems)
        all.push_back(describe(options.config, problem));
    all.insert(all.end(), others.begin(), others.end());
    return all;
}

} // namespace velmora::server
