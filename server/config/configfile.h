#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::server {

// A line `key = value` with the section above it.
struct ConfigEntry {
    int line = 0; // from 1
    std::string section;
    std::string key;
    std::string value; // never empty
};

// What is wrong in a line, for the person who wrote it. Line 0: with the file as a whole.
struct ConfigProblem {
    int line = 0;
    std::string text;
};

// The configuration file of the service, before anybody knows what its keys mean.
struct ConfigFile {
    std::vector<ConfigEntry> entries;
    std::vector<ConfigProblem> problems; // of the syntax; the lines in them are not among the entries
};

// The sections: [service] is read at the start, [house] too, [library] whenever the file changes.
inline constexpr std::string_view serviceSection = "service";
inline constexpr std::string_view houseSection = "house";
inline constexpr std::string_view librarySection = "library";

// '#' begins a comment line.
ConfigFile parseConfigFile(const std::string &text);
// A file that cannot be read, or that is larger than 1 MiB, is a problem of line 0.
ConfigFile readConfigFile(const std::filesystem::path &file);
// "/etc/velmora/server.conf, line 7: what is wrong"
std::string describe(const std::filesystem::path &file, const ConfigProblem &problem);

// Bytes that are no UTF-8 as '?', for logs and pages.
std::string printable(std::string_view bytes);

} // namespace velmora::server
