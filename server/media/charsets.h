#pragma once

#include <cstdint>
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

// The texts of a folder's files, which mostly are of one set: a file by itself often says too little.
class FolderCharset {
public:
    // What was noted is forgotten when the folder is another one, and with 0.
    void enter(uint64_t folder);
    // The set of a file's texts, as charsetOf. Where that is a guess, the file is noted, and the set that all noted
    // files together seem to have is preferred if more than half of them say the same by themselves.
    std::optional<std::string> of(const std::vector<std::string> &texts);
    // Whether the answer may become better when more of the folder was read.
    bool isGuess() const { return m_isGuess; }

private:
    uint64_t m_folder = 0;
    std::vector<std::string> m_noted; // a file's texts, joined
    std::vector<std::string> m_sets;  // what each of them says by itself, empty for doubt
    bool m_isGuess = false;
};

// As UTF-8. Nothing when it is not of this set.
std::optional<std::string> toUtf8(const std::string &charset, const std::string &text);

} // namespace velmora::media
