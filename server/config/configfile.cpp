#include "server/config/configfile.h"

#include "server/catalogue/textfolding.h"

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

} // namespace

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

ConfigFile parseConfigFile(const std::string &text)
{
    ConfigFile file;
    std::istringstream lines(text);
    std::string line;
    std::string section;
    bool isKnown = true; // the section; what stands in an unknown one is not complained about again
    for (int number = 1; std::getline(lines, line); ++number) {
        const auto wrong = [&](std::string what) { file.problems.push_back({number, std::move(what)}); };
        const std::string content = trimmed(line);
        if (content.empty() || content[0] == '#')
            continue;
        if (content[0] == '[') {
            section = content.back() == ']' ? content.substr(1, content.size() - 2) : std::string();
            isKnown = section == serviceSection || section == houseSection || section == librarySection;
            if (!isKnown)
                wrong("there is no section " + printable(content));
            continue;
        }
        if (!isKnown)
            continue;
        const size_t equals = content.find('=');
        if (equals == std::string::npos) {
            wrong("a line is key = value");
            continue;
        }
        if (section.empty()) {
            wrong("this belongs under [service], [house] or [library]");
            continue;
        }
        ConfigEntry entry{number, section, trimmed(content.substr(0, equals)), trimmed(content.substr(equals + 1))};
        if (entry.value.empty())
            wrong(printable(entry.key) + " has no value");
        else
            file.entries.push_back(std::move(entry));
    }
    return file;
}

ConfigFile readConfigFile(const std::filesystem::path &path)
{
    std::ifstream stream(path, std::ios::binary);
    if (!stream)
        return {{}, {{0, "cannot be read"}}};
    std::string text(mostBytes + 1, '\0');
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (stream.bad())
        return {{}, {{0, "cannot be read"}}};
    text.resize(static_cast<size_t>(stream.gcount()));
    if (text.size() > mostBytes)
        return {{}, {{0, "is larger than 1 MiB"}}};
    return parseConfigFile(text);
}

std::string describe(const std::filesystem::path &file, const ConfigProblem &problem)
{
    const std::string name = printable(file.string());
    return problem.line == 0 ? name + " " + problem.text
                             : name + ", line " + std::to_string(problem.line) + ": " + problem.text;
}

} // namespace velmora::server
