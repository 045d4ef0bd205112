#include "server/library/libraryconfig.h"

#include <algorithm>
#include <charconv>

namespace velmora::server {

namespace {

std::string trimmed(const std::string &text)
{
    const size_t begin = text.find_first_not_of(" \t\r");
    const size_t end = text.find_last_not_of(" \t\r");
    return begin == std::string::npos ? std::string() : text.substr(begin, end - begin + 1);
}

bool readNumber(const std::string &text, int lowest, int highest, int *value)
{
    int number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size() || number < lowest || number > highest)
        return false;
    *value = number;
    return true;
}

// What is wrong; empty when nothing is.
std::string takeHouse(LibraryConfig &config, const std::string &key, const std::string &value)
{
    if (key != "listen")
        return "there is no key " + printable(key);
    if (value == "machine")
        config.reach = Reach::Machine;
    else if (value == "house")
        config.reach = Reach::House;
    else if (value == "house-unencrypted")
        config.reach = Reach::HouseUnencrypted;
    else
        return "listen is machine, house or house-unencrypted";
    return {};
}

std::string take(LibraryConfig &config, const std::string &key, const std::string &value)
{
    if (key == "music") {
        if (!value.starts_with('/'))
            return "music needs a folder's whole path, beginning with /";
        config.folders.push_back(plainPath(value));
    } else if (key == "exclude") {
        config.excluded.push_back(value);
    } else if (key == "rescan-minutes") {
        const size_t blank = std::min(value.find(' '), value.size());
        const std::string folder = trimmed(value.substr(blank));
        int minutes = 0;
        if (!readNumber(value.substr(0, blank), 1, 7 * 24 * 60, &minutes))
            return "rescan-minutes is a number from 1 to 10080";
        if (folder.empty())
            config.rescanMinutes = minutes;
        else if (folder.starts_with('/'))
            config.rescanMinutesOf[plainPath(folder)] = minutes;
        else
            return "after the minutes comes a folder's whole path, beginning with /";
    } else if (key == "workers") {
        if (!readNumber(value, 0, 64, &config.workers))
            return "workers is a number from 0 (as many as fit) to 64";
    } else if (key == "analysis") {
        if (value != "on" && value != "off")
            return "analysis is on or off";
        config.isAnalysed = value == "on";
    } else if (key == "transcode-megabytes") {
        if (!readNumber(value, 256, 1024 * 1024, &config.transcodeMegabytes))
            return "transcode-megabytes is a number from 256 to 1048576";
    } else {
        return "there is no key " + printable(key);
    }
    return {};
}

} // namespace

int LibraryConfig::rescanMinutesFor(const std::filesystem::path &folder) const
{
    const auto own = rescanMinutesOf.find(folder);
    return own == rescanMinutesOf.end() ? rescanMinutes : own->second;
}

std::filesystem::path plainPath(const std::filesystem::path &path)
{
    const std::filesystem::path plain = path.lexically_normal();
    return plain.has_filename() || plain == plain.root_path() ? plain : plain.parent_path();
}

std::string withCommas(int64_t number)
{
    std::string text = std::to_string(number);
    for (auto at = static_cast<std::ptrdiff_t>(text.size()) - 3; at > 0; at -= 3)
        text.insert(static_cast<size_t>(at), ",");
    return text;
}

LibraryConfig takeLibraryConfig(const ConfigFile &file, std::vector<ConfigProblem> *problems)
{
    LibraryConfig config;
    *problems = file.problems;
    for (const ConfigEntry &entry : file.entries) {
        std::string what;
        if (entry.section == houseSection)
            what = takeHouse(config, entry.key, entry.value);
        else if (entry.section == librarySection)
            what = take(config, entry.key, entry.value);
        if (!what.empty())
            problems->push_back({entry.line, what});
    }
    std::stable_sort(problems->begin(), problems->end(), [](const auto &a, const auto &b) { return a.line < b.line; });
    return config;
}

std::variant<LibraryConfig, std::string> readLibraryConfig(const std::filesystem::path &file)
{
    std::vector<ConfigProblem> problems;
    const LibraryConfig config = takeLibraryConfig(readConfigFile(file), &problems);
    if (!problems.empty())
        return describe(file, problems.front());
    return config;
}

} // namespace velmora::server
