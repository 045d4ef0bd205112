#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velmora::server {

// The words of a text as they are compared: lower case, without diacritics, letters such as "ø" and "ß" as people type
// them without a special keyboard ("o", "ss"). Punctuation divides words, but for apostrophes, which vanish ("don't" is
// "dont"). Letters of any script, digits and symbols (emoji) are kept. Bytes that are no UTF-8 divide words.
std::vector<std::string> foldedWords(std::string_view text);

// The words with one blank between them.
std::string foldedText(std::string_view text);

// The first so many characters (code points) of a UTF-8 text.
std::string_view firstCharacters(std::string_view text, size_t count);
// How many characters a UTF-8 text has.
size_t characterCount(std::string_view text);
bool isUtf8(std::string_view text);

} // namespace velmora::server
