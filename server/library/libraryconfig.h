#pragma once

#include "server/config/configfile.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <variant>
#include <vector>

namespace velmora::server {

// Who reaches the service: this machine alone, or everybody in the house's network.
enum class Reach { Machine, House, HouseUnencrypted };

// What the owner says in the configuration file: about the own music under [library], and under [house] who reaches the
// service, which counts from the next start.
struct LibraryConfig {
    Reach reach = Reach::Machine;
    std::vector<std::filesystem::path> folders; // absolute
    std::vector<std::string> excluded;          // patterns of names or of paths in a folder, as a shell has them
    int rescanMinutes = 15;
    std::map<std::filesystem::path, int> rescanMinutesOf; // of folders with an interval of their own
    int workers = 0; // that listen to music at the same time; 0: one less than the machine has cores
    bool isAnalysed = true;
    int transcodeMegabytes = 4096; // what transcodes may take, of 2^20 bytes

    int rescanMinutesFor(const std::filesystem::path &folder) const;
    bool operator==(const LibraryConfig &) const = default;
};

// What stands under [library] and [house]; `music` and `exclude` may come several times. Sets the problems of the file
// and of these two sections, in the order of the lines; a line with a problem counts for nothing.
LibraryConfig takeLibraryConfig(const ConfigFile &file, std::vector<ConfigProblem> *problems);
// The same of a file that must be without problems; else the first one, for the person who wrote it.
std::variant<LibraryConfig, std::string> readLibraryConfig(const std::filesystem::path &file);

// One spelling of a folder's path: "/a//b/" as "/a/b".
std::filesystem::path plainPath(const std::filesystem::path &path);

// "1,234,567"
std::string withCommas(int64_t number);

} // namespace velmora::server
