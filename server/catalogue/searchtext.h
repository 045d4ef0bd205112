#pragma once

#include "server/catalogue/textfolding.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velmora::server {

// How a text stands in the search index: folded, two blanks before every word. The index knows pieces of three
// characters, so a word of three letters or more is found anywhere inside, and a shorter one by its beginning.
std::string indexedText(std::string_view text);

// The expressions for the index: every word must occur, and (for tracks) one of them in the song's own name.
// The words come from foldedWords(); they are always quoted, never read as a query language.
enum class Match { WordBeginnings, Anywhere };
std::string artistExpression(const std::vector<std::string> &words, Match match);
std::string trackExpression(const std::vector<std::string> &words, Match match);

} // namespace velmora::server
