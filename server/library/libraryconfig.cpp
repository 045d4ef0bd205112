#include "server/library/libraryconfig.h"

#include "server/catalogue/textfolding.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <sstream>

namespace velmora::server {

namespace {

constexpr size_t mostBytes = 1024 * 1024;

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

std::string printable(std::string_view bytes)
{
    std::string text;
    for (size_t i = 0; i < bytes.size();) {
        size_t length = 1;
        while (length <= 4 && i + length <= bytes.size() && !isUtf8(bytes.substr(i, length)))
            ++length;
        const bool isCharacter = length <= 4 && i + length <= bytes.size() &&
                                 static_cast<unsigned char>(bytes[i]) >= ' ' && bytes[i] != 0x7f;
        text.append(isCharacter ? bytes.substr(i, length) : "?");
        i += isCharacter ? length : 1;
    }
    return text;
}

std::variant<LibraryConfig, std::string> parseLibraryConfig(const std::string &text)
{
    LibraryConfig config;
    std::istringstream lines(text);
    std::string line;
    std::string section;
    for (int number = 1; std::getline(lines, line); ++number) {
        const auto wrong = [&](const std::string &what) { return "line " + std::to_string(number) + ": " + what; };
        const std::string content = trimmed(line);
        if (content.empty() || content[0] == '#')
            continue;
        if (content[0] == '[') {
            if (content != "[library]" && content != "[house]")
                return wrong("there is no section " + printable(content));
            section = content;
            continue;
        }
        const size_t equals = content.find('=');
        if (equals == std::string::npos)
            return wrong("a line is key = value");
        if (section.empty())
            return wrong("this belongs under [library] or [house]");
        const std::string value = trimmed(content.substr(equals + 1));
        const std::string key = trimmed(content.substr(0, equals));
        if (value.empty())
            return wrong(printable(key) + " has no value");
        const std::string what = section == "[house]" ? takeHouse(config, key, value) : take(config, key, value);
        if (!what.empty())
            return wrong(what);
    }
    return config;
}

std::variant<LibraryConfig, std::string> readLibraryConfig(const std::filesystem::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    std::string text(mostBytes + 1, '\0');
    if (!stream)
        return "cannot read " + printable(file.string());
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<size_t>(stream.gcount()));
    if (text.size() > mostBytes)
        return printable(file.string()) + " is larger than 1 MiB";
    auto parsed = parseLibraryConfig(text);
    if (const auto *problem = std::get_if<std::string>(&parsed))
        return printable(file.string()) + ", " + *problem;
    return parsed;
}

} // namespace velmora::server
