#pragma once

#include <optional>
#include <string>
#include <vector>

// Texts that a file calls Latin-1 though they are something else: many programs wrote tags in the character set of
// their users. One thread.
namespace velmora::media {

// Opens the conversions, which needs files; before the process is shut in.
void openCharsets();

// The character set of texts that belong together, the more the better, when it is UTF-8 or one of another script.
// Nothing when they may be Latin-1 indeed, or in doubt: a wrong guess would spoil good names. Sets of the Latin script
// are always in doubt, as a few names do not tell them apart.
std::optional<std::string> charsetOf(const std::vector<std::string> &texts);

// As UTF-8. Nothing when it is not of this set.
std::optional<std::string> toUtf8(const std::string &charset, const std::string &text);

} // namespace velmora::media
