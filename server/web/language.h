#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The languages of the pages and mails. Texts in the sources are English; catalogues of GNU gettext, compiled into the
// service, have them in other languages. The API always answers in English.
namespace velmora::server {

struct Language {
    std::string code; // as "de"
    std::string name; // in the language itself
    bool isRightToLeft = false;
};
const std::vector<Language> &languages(); // English first
// Null for a code that there are no texts for.
const Language *findLanguage(std::string_view code);

// The best language for what a browser sends as Accept-Language (RFC 9110): the one with the highest quality, of equal
// ones the first; "de-CH" counts as "de". English if there is none.
const Language &acceptedLanguage(std::string_view header);

// What this thread writes, as long as this lives, is in this language; English outside. Not for coroutines.
class InLanguage {
public:
    explicit InLanguage(const Language &language);
    ~InLanguage();
    InLanguage(const InLanguage &) = delete;

    static const Language &current();

private:
    const Language *const m_before;
};

// The text in the thread's language; `text` is a literal, so that the catalogues' tools find it.
std::string say(const char *text);
// With values for "{1}" to "{3}", which are put in as they are.
std::string say(const char *text, const std::string &first, const std::string &second = {},
                const std::string &third = {});
// Marks a text for those tools where the language is not known yet; say() comes later.
constexpr const char *mark(const char *text)
{
    return text;
}
// For a number: `one` is the text for 1, `many` that for others; "{1}" is the number.
std::string sayMany(const char *one, const char *many, int64_t number);

// As the thread's language writes them. Moments are Unix seconds, in the service's time zone; a day is in UTC.
std::string sayNumber(int64_t number);
std::string sayTime(int64_t seconds);
std::string sayDay(int64_t seconds);

} // namespace velmora::server
