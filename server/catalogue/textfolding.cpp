#include "server/catalogue/textfolding.h"

#include <array>
#include <utf8proc.h>

namespace velmora::server {

namespace {

const utf8proc_uint8_t *bytesOf(std::string_view text)
{
    return reinterpret_cast<const utf8proc_uint8_t *>(text.data());
}

void append(std::string &text, utf8proc_int32_t character)
{
    std::array<utf8proc_uint8_t, 4> bytes{};
    const utf8proc_ssize_t count = utf8proc_encode_char(character, bytes.data());
    text.append(reinterpret_cast<const char *>(bytes.data()), static_cast<size_t>(count));
}

// Letters with a stroke and the like, which Unicode does not take apart.
const char *typedAs(utf8proc_int32_t character)
{
    switch (character) {
    case 0x00e6:
        return "ae";
    case 0x00f0:
    case 0x0111:
        return "d";
    case 0x00f8:
        return "o";
    case 0x00fe:
        return "th";
    case 0x0127:
        return "h";
    case 0x0131:
        return "i";
    case 0x0142:
        return "l";
    case 0x0153:
        return "oe";
    case 0x0167:
        return "t";
    default:
        return nullptr;
    }
}

enum class Role { PartOfWord, Divides, Vanishes };

Role roleOf(utf8proc_int32_t character)
{
    if (character == '\'' || character == 0x2019 || character == 0x02bc)
        return Role::Vanishes;
    // Modifiers and joiners of emoji are not searched for.
    if (character == 0x200d || (character >= 0xfe00 && character <= 0xfe0f) ||
        (character >= 0x1f3fb && character <= 0x1f3ff))
        return Role::Vanishes;
    switch (utf8proc_category(character)) {
    case UTF8PROC_CATEGORY_MN:
    case UTF8PROC_CATEGORY_ME:
        return Role::Vanishes;
    case UTF8PROC_CATEGORY_LU:
    case UTF8PROC_CATEGORY_LL:
    case UTF8PROC_CATEGORY_LT:
    case UTF8PROC_CATEGORY_LM:
    case UTF8PROC_CATEGORY_LO:
    case UTF8PROC_CATEGORY_MC:
    case UTF8PROC_CATEGORY_ND:
    case UTF8PROC_CATEGORY_NL:
    case UTF8PROC_CATEGORY_NO:
    case UTF8PROC_CATEGORY_SO:
        return Role::PartOfWord;
    default:
        return Role::Divides;
    }
}

// One character taken apart and lower-cased, its marks removed.
void appendFolded(std::string &word, utf8proc_int32_t character)
{
    std::array<utf8proc_int32_t, 32> parts{};
    int boundary = 0;
    const utf8proc_ssize_t count = utf8proc_decompose_char(
        character, parts.data(), static_cast<utf8proc_ssize_t>(parts.size()),
        static_cast<utf8proc_option_t>(UTF8PROC_COMPAT | UTF8PROC_CASEFOLD | UTF8PROC_DECOMPOSE), &boundary);
    for (utf8proc_ssize_t i = 0; i < count && i < static_cast<utf8proc_ssize_t>(parts.size()); ++i) {
        const utf8proc_int32_t part = parts[static_cast<size_t>(i)];
        if (roleOf(part) != Role::PartOfWord)
            continue;
        if (const char *letters = typedAs(part))
            word += letters;
        else
            append(word, part);
    }
}

} // namespace

std::vector<std::string> foldedWords(std::string_view text)
{
    std::vector<std::string> words;
    std::string word;
    const auto finish = [&] {
        if (!word.empty())
            words.push_back(std::move(word));
        word.clear();
    };
    while (!text.empty()) {
        utf8proc_int32_t character = 0;
        const utf8proc_ssize_t length =
            utf8proc_iterate(bytesOf(text), static_cast<utf8proc_ssize_t>(text.size()), &character);
        if (length <= 0) {
            finish();
            text.remove_prefix(1);
            continue;
        }
        text.remove_prefix(static_cast<size_t>(length));
        const Role role = roleOf(character);
        if (role == Role::PartOfWord)
            appendFolded(word, character);
        else if (role == Role::Divides)
            finish();
    }
    finish();
    return words;
}

std::string foldedText(std::string_view text)
{
    std::string result;
    for (const std::string &word : foldedWords(text)) {
        if (!result.empty())
            result += ' ';
        result += word;
    }
    return result;
}

std::string_view firstCharacters(std::string_view text, size_t count)
{
    size_t end = 0;
    for (size_t seen = 0; end < text.size(); ++end) {
        const bool isFirstByte = (static_cast<unsigned char>(text[end]) & 0xc0) != 0x80;
        if (isFirstByte && ++seen > count)
            break;
    }
    return text.substr(0, end);
}

size_t characterCount(std::string_view text)
{
    size_t count = 0;
    for (const char c : text)
        count += (static_cast<unsigned char>(c) & 0xc0) != 0x80;
    return count;
}

bool isUtf8(std::string_view text)
{
    while (!text.empty()) {
        utf8proc_int32_t character = 0;
        const utf8proc_ssize_t length =
            utf8proc_iterate(bytesOf(text), static_cast<utf8proc_ssize_t>(text.size()), &character);
        if (length <= 0)
            return false;
        text.remove_prefix(static_cast<size_t>(length));
    }
    return true;
}

} // namespace velmora::server
