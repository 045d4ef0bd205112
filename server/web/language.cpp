#include "server/web/language.h"

#include "server/web/catalogues.h"

#include <boost/locale.hpp>

#include <algorithm>
#include <charconv>
#include <ctime>
#include <locale>
#include <map>
#include <mutex>
#include <sstream>

namespace velmora::server {

namespace {

thread_local const Language *now = nullptr;

// Made once for each language, and then only read. This one knows texts only.
std::locale textsOf(const Language &language)
{
    static std::mutex mutex;
    static std::map<std::string, std::locale> made;
    const std::lock_guard guard(mutex);
    const auto found = made.find(language.code);
    if (found != made.end())
        return found->second;
    std::locale locale = std::locale::classic();
    if (const std::string_view content = catalogueOf(language.code); !content.empty()) {
        boost::locale::gnu_gettext::messages_info info;
        info.language = language.code;
        info.encoding = "UTF-8";
        info.domains.push_back({"pages"});
        info.paths.emplace_back("/");
        info.callback = [content](const std::string &, const std::string &) {
            return std::vector<char>(content.begin(), content.end());
        };
        locale = std::locale(locale, boost::locale::gnu_gettext::create_messages_facet<char>(info));
    }
    return made.emplace(language.code, locale).first->second;
}

// This one knows numbers and dates only.
std::locale formatsOf(const Language &language)
{
    static std::mutex mutex;
    static std::map<std::string, std::locale> made;
    const std::lock_guard guard(mutex);
    const auto found = made.find(language.code);
    if (found != made.end())
        return found->second;
    boost::locale::generator generator;
    generator.categories(boost::locale::category_t::formatting);
    // With the digits that the texts are written with.
    const std::string name = language.code == "ar" ? "ar_TN" : language.code == "en" ? "en_GB" : language.code;
    return made.emplace(language.code, generator(name + ".UTF-8")).first->second;
}

// English has the ISO form.
std::string isoMoment(int64_t seconds, bool isDay)
{
    const std::time_t time = seconds;
    std::tm parts{};
    if (isDay)
        ::gmtime_r(&time, &parts);
    else
        ::localtime_r(&time, &parts);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M", &parts);
    return {text, isDay ? 10u : 16u};
}

std::string put(const std::string &text, const std::vector<std::string> &values)
{
    std::string all;
    for (size_t at = 0; at < text.size(); ++at) {
        const bool isPlace = text[at] == '{' && at + 2 < text.size() && text[at + 2] == '}' && text[at + 1] >= '1' &&
                             static_cast<size_t>(text[at + 1] - '1') < values.size();
        if (isPlace) {
            all += values[static_cast<size_t>(text[at + 1] - '1')];
            at += 2;
        } else {
            all += text[at];
        }
    }
    return all;
}

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t'))
        text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t'))
        text.remove_suffix(1);
    return text;
}

} // namespace

const std::vector<Language> &languages()
{
    static const std::vector<Language> all = {
        {"en", "English"},  {"ar", "العربية", true}, {"de", "Deutsch"},    {"es", "Español"}, {"fr", "Français"},
        {"it", "Italiano"}, {"ja", "日本語"},        {"nl", "Nederlands"}, {"pl", "Polski"},
    };
    return all;
}

const Language *findLanguage(std::string_view code)
{
    const auto &all = languages();
    const auto found = std::find_if(all.begin(), all.end(), [&](const Language &one) { return one.code == code; });
    return found == all.end() ? nullptr : &*found;
}

const Language &acceptedLanguage(std::string_view header)
{
    const Language *best = nullptr;
    double bestQuality = 0;
    while (!header.empty()) {
        const size_t end = std::min(header.find(','), header.size());
        std::string_view range = header.substr(0, end);
        header.remove_prefix(std::min(end + 1, header.size()));
        double quality = 1;
        if (const size_t semicolon = range.find(';'); semicolon != std::string_view::npos) {
            const std::string_view parameter = trimmed(range.substr(semicolon + 1));
            range = range.substr(0, semicolon);
            quality = 0; // of a parameter that cannot be read
            if (parameter.starts_with("q=") || parameter.starts_with("Q="))
                std::from_chars(parameter.data() + 2, parameter.data() + parameter.size(), quality);
        }
        range = trimmed(range);
        std::string code(range.substr(0, range.find('-')));
        for (char &letter : code)
            letter = letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
        const Language *language = findLanguage(code);
        if (language && quality > bestQuality && quality <= 1) {
            best = language;
            bestQuality = quality;
        }
    }
    return best ? *best : languages().front();
}

InLanguage::InLanguage(const Language &language)
    : m_before(now)
{
    now = &language;
}

InLanguage::~InLanguage()
{
    now = m_before;
}

const Language &InLanguage::current()
{
    return now ? *now : languages().front();
}

std::string say(const char *text)
{
    return boost::locale::translate(text).str(textsOf(InLanguage::current()));
}

std::string say(const char *text, const std::string &first, const std::string &second, const std::string &third)
{
    return put(say(text), {first, second, third});
}

std::string sayMany(const char *one, const char *many, int64_t number)
{
    const int form = static_cast<int>(std::min<int64_t>(number, 1'000'000'000)); // plural rules look at the last digits
    return put(boost::locale::translate(one, many, form).str(textsOf(InLanguage::current())), {sayNumber(number)});
}

std::string sayNumber(int64_t number)
{
    std::ostringstream text;
    text.imbue(formatsOf(InLanguage::current()));
    text << boost::locale::as::number << number;
    return text.str();
}

std::string sayTime(int64_t seconds)
{
    if (InLanguage::current().code == "en")
        return isoMoment(seconds, false);
    std::ostringstream text;
    text.imbue(formatsOf(InLanguage::current()));
    text << boost::locale::as::datetime << boost::locale::as::date_medium << boost::locale::as::time_short
         << boost::locale::as::local_time << seconds;
    return text.str();
}

std::string sayDay(int64_t seconds)
{
    if (InLanguage::current().code == "en")
        return isoMoment(seconds, true);
    std::ostringstream text;
    text.imbue(formatsOf(InLanguage::current()));
    text << boost::locale::as::date << boost::locale::as::date_medium << boost::locale::as::gmt << seconds;
    return text.str();
}

} // namespace velmora::server
