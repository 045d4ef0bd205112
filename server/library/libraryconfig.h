#pragma once

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

// Lines of `key = value` under `[library]` and `[house]`; '#' begins a comment line; `music` and `exclude` may come
// several times. What is wrong, with its line number, for the person who wrote it.
std::variant<LibraryConfig, std::string> parseLibraryConfig(const std::string &text);
// The same of a file; one that is not there is an error too.
std::variant<LibraryConfig, std::string> readLibraryConfig(const std::filesystem::path &file);

// One spelling of a folder's path: "/a//b/" as "/a/b".
std::filesystem::path plainPath(const std::filesystem::path &path);

// Bytes that are no UTF-8 as '?', for logs and pages.
std::string printable(std::string_view bytes);
// "1,234,567"
std::string withCommas(int64_t number);

} // namespace velmora::server
