#include "server/catalogue/searchtext.h"

namespace velmora::server {

namespace {

std::string quoted(const std::string &word, Match match)
{
    const size_t length = characterCount(word);
    std::string text = "\"";
    if (length == 1)
        text += "  ";
    else if (length == 2 || match == Match::WordBeginnings)
        text += " ";
    // foldedWords() leaves no quotation marks. They are doubled all the same: the word must never end its quotation.
    for (const char c : word) {
        if (c == '"')
            text += c;
        text += c;
    }
    return text + "\"";
}

std::string joined(const std::vector<std::string> &words, Match match, const char *between, const char *column)
{
    std::string text;
    for (const std::string &word : words) {
        if (!text.empty())
            text += between;
        text += column + quoted(word, match);
    }
    return text;
}

} // namespace

std::string indexedText(std::string_view text)
{
    std::string result;
    for (const std::string &word : foldedWords(text))
        result.append("  ").append(word);
    return result;
}

std::string artistExpression(const std::vector<std::string> &words, Match match)
{
    return joined(words, match, " AND ", "");
}

std::string trackExpression(const std::vector<std::string> &words, Match match)
{
    if (words.size() == 1)
        return joined(words, match, "", "song : ");
    std::string text("(");
    text.append(joined(words, match, " AND ", "")).append(") AND (").append(joined(words, match, " OR ", "song : "));
    return text.append(")");
}

} // namespace velmora::server
