#pragma once

#include "server/web/language.h"

#include <cstdint>
#include <string>
#include <vector>

// The pieces that every page is made of. Whatever comes from outside goes through escape().
namespace velmora::server::html {

std::string escape(const std::string &text);

struct Page {
    std::string title;
    std::string body;        // made of the pieces below
    bool isEncrypted = true; // otherwise the page says that it is not
    // Where the choice of another language leads: the same page.
    std::string path = "/";
    std::string query = {}; // as it arrived
};
// In the thread's language, as all texts here.
std::string render(const Page &page);

std::string heading(const std::string &text);
std::string subheading(const std::string &text);
std::string paragraph(const std::string &text);
std::string error(const std::string &text); // empty for an empty text
std::string warning(const std::string &text);
// A fact with its name, for example "Model: kitchen radio".
std::string fact(const std::string &name, const std::string &value);

// A form that posts to `action`; `csrf` comes along in it. `fields` are made of the pieces below.
std::string form(const std::string &action, const std::string &csrf, const std::string &fields);
struct Field {
    std::string name;
    std::string label;
    std::string type = "text"; // or "email", "password"
    std::string value;         // what was typed before; never a password
    std::string autocomplete = "off";
    std::string hint;
    bool isCode = false;  // an activation code: large, capitals, no corrections, the first one to type into
    bool isFirst = false; // has the focus when the page opens
    bool isOptional = false;
    int leastLength = 0;
    std::string inputMode; // the keyboard of a telephone: "numeric"
    std::string problem;   // what is wrong with what was typed
    std::string form;      // tells fields of one name on one page apart
};
std::string field(const Field &field);
// `problem` stands beside the field; `form` tells fields of one name on one page apart.
std::string emailField(const std::string &value, const std::string &problem = {}, const std::string &form = {});
// The present one, named "password".
std::string passwordField(const std::string &label, const std::string &problem = {}, const std::string &form = {});
std::string newPasswordField(const std::string &name, const std::string &label, const std::string &problem = {});
// Four to eight digits; `form` as above.
std::string pinField(const std::string &name, const std::string &label, const std::string &problem = {},
                     const std::string &form = {});
std::string checkBox(const std::string &name, const std::string &label, bool isTicked = false); // its value is "1"
// One of several answers to a question.
struct Option {
    std::string value;
    std::string label;
};
std::string choice(const std::string &name, const std::string &question, const std::vector<Option> &options,
                   const std::string &chosen);
std::string hidden(const std::string &name, const std::string &value);
std::string button(const std::string &label, const std::string &name = {}, const std::string &value = {});
std::string plainButton(const std::string &label, const std::string &name, const std::string &value); // less prominent
std::string dangerButton(const std::string &label); // for what cannot be undone
// A row of its own; an address that is its own label is shown as text.
std::string link(const std::string &address, const std::string &label);
// The step that most readers take next, as prominent as a button.
std::string nextStep(const std::string &address, const std::string &label);
// Links as large rows, one below the other. `name` says what they lead to.
std::string menu(const std::string &name, const std::vector<Option> &links);
std::string code(const std::string &text);                // a command to be copied
std::string list(const std::vector<std::string> &points); // plain texts
std::string done(const std::string &text);                // what has just been done; empty for an empty text

// A text's paragraphs, which an empty line divides; one that is an address becomes a link.
std::string paragraphs(const std::string &text);
// The HTML part of a mail, without style sheet or picture.
std::string mail(const std::string &title, const std::string &text);

// The style sheet, served as /style.css: dark or light as the reader's system is, one column, large enough for a thumb.
const char *styleSheet();
// The symbol on its tile, served as /symbol.svg: seven bars in the shape of a V.
std::string symbol();
// Symbol and word mark, served as /logo.svg, in the colours of the reader's scheme.
std::string logo();

} // namespace velmora::server::html
