#include "server/web/html.h"

#include "server/http/message.h"

#include <algorithm>

namespace velmora::server::html {

std::string escape(const std::string &text)
{
    std::string safe;
    safe.reserve(text.size());
    for (const char c : text) {
        switch (c) {
        case '&':
            safe += "&amp;";
            break;
        case '<':
            safe += "&lt;";
            break;
        case '>':
            safe += "&gt;";
            break;
        case '"':
            safe += "&quot;";
            break;
        case '\'':
            safe += "&#39;";
            break;
        default:
            safe += c;
        }
    }
    return safe;
}

namespace {

// What the root element says of the language.
std::string languageAttributes()
{
    const Language &language = InLanguage::current();
    return "lang=\"" + language.code + (language.isRightToLeft ? "\" dir=\"rtl\"" : "\"");
}

// Leads to the same page with all that its address says.
std::string languageChoice(const Page &page)
{
    std::string text = "<form method=\"get\" action=\"" + escape(page.path) + "\">\n";
    for (size_t at = 0; at < page.query.size();) {
        const size_t end = std::min(page.query.find('&', at), page.query.size());
        const std::string part = page.query.substr(at, end - at);
        const size_t equals = std::min(part.find('='), part.size());
        const std::string name = http::decoded(part.substr(0, equals), false);
        if (!name.empty() && name != "language")
            text +=
                hidden(name, http::decoded(std::string_view(part).substr(std::min(equals + 1, part.size())), false));
        at = end + 1;
    }
    text +=
        "<label for=\"language\">" + escape(say("Language")) + "</label> <select id=\"language\" name=\"language\">";
    for (const Language &language : languages())
        text += "<option value=\"" + language.code + "\" lang=\"" + language.code +
                (&language == &InLanguage::current() ? "\" selected>" : "\">") + escape(language.name) + "</option>";
    return text + "</select> <button type=\"submit\" class=\"plain\">" + escape(say("Use it")) + "</button>\n</form>\n";
}

} // namespace

std::string render(const Page &page)
{
    std::string text = "<!doctype html>\n<html " + languageAttributes() +
                       ">\n<head>\n<meta charset=\"utf-8\">\n"
                       "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>" +
                       escape(page.title) +
                       " - Velmora</title>\n<link rel=\"stylesheet\" href=\"/style.css\">\n"
                       "<link rel=\"icon\" type=\"image/svg+xml\" href=\"/symbol.svg\">\n"
                       "<meta name=\"color-scheme\" content=\"dark light\">\n</head>\n<body>\n"
                       "<header><a href=\"/\"><img src=\"/logo.svg\" alt=\"velmora\" width=\"194\" height=\"50\">"
                       "</a></header>\n<main>\n" +
                       page.body;
    if (!page.isEncrypted)
        text += "<p class=\"note\">" +
                escape(say("This page is not encrypted: everybody in this network could read along. Do not use a "
                           "password that opens anything else.")) +
                "</p>\n";
    return text + "</main>\n<footer><nav aria-label=\"" + escape(say("Pages")) + "\"><a href=\"/activate\">" +
           escape(say("Activate a radio")) + "</a> <a href=\"/account\">" + escape(say("Your account")) +
           "</a> <a href=\"/help\">" + escape(say("Help")) + "</a></nav>\n" + languageChoice(page) +
           "</footer>\n</body>\n</html>\n";
}

std::string paragraphs(const std::string &text)
{
    std::string all;
    for (size_t at = 0; at < text.size();) {
        const size_t end = std::min(text.find("\n\n", at), text.size());
        const std::string piece = text.substr(at, end - at);
        const bool isAddress = (piece.starts_with("https://") || piece.starts_with("http://")) &&
                               piece.find_first_of(" \n") == std::string::npos;
        // A mail keeps the language in which it was written.
        all += isAddress ? link(piece, piece) : "<p dir=\"auto\">" + escape(piece) + "</p>\n";
        at = std::min(end + 2, text.size());
    }
    return all;
}

std::string mail(const std::string &title, const std::string &text)
{
    return "<!doctype html>\n<html " + languageAttributes() + ">\n<head><meta charset=\"utf-8\"><title>" +
           escape(title) + "</title></head>\n<body>\n" + paragraphs(text) + "</body>\n</html>\n";
}

std::string heading(const std::string &text)
{
    return "<h1>" + escape(text) + "</h1>\n";
}

std::string subheading(const std::string &text)
{
    return "<h2>" + escape(text) + "</h2>\n";
}

std::string done(const std::string &text)
{
    return text.empty() ? std::string() : "<p class=\"done\" role=\"status\">" + escape(text) + "</p>\n";
}

std::string paragraph(const std::string &text)
{
    return "<p>" + escape(text) + "</p>\n";
}

std::string error(const std::string &text)
{
    return text.empty() ? std::string() : "<p class=\"error\" role=\"alert\">" + escape(text) + "</p>\n";
}

std::string warning(const std::string &text)
{
    return "<p class=\"warning\">" + escape(text) + "</p>\n";
}

std::string fact(const std::string &name, const std::string &value)
{
    return "<p class=\"fact\"><span>" + escape(name) + "</span> <bdi>" + escape(value) + "</bdi></p>\n";
}

std::string form(const std::string &action, const std::string &csrf, const std::string &fields)
{
    return "<form method=\"post\" action=\"" + escape(action) + "\">\n" + hidden("csrf", csrf) + fields + "</form>\n";
}

std::string emailField(const std::string &value, const std::string &problem, const std::string &form)
{
    return field({.name = "email",
                  .label = say("E-mail address"),
                  .type = "email",
                  .value = value,
                  .autocomplete = "username",
                  .hint = {},
                  .inputMode = "email",
                  .problem = problem,
                  .form = form});
}

std::string passwordField(const std::string &label, const std::string &problem, const std::string &form)
{
    return field({.name = "password",
                  .label = label,
                  .type = "password",
                  .value = {},
                  .autocomplete = "current-password",
                  .hint = {},
                  .inputMode = {},
                  .problem = problem,
                  .form = form});
}

std::string newPasswordField(const std::string &name, const std::string &label, const std::string &problem)
{
    return field({.name = name,
                  .label = label,
                  .type = "password",
                  .value = {},
                  .autocomplete = "new-password",
                  .hint = say("At least eight characters."),
                  .leastLength = 8,
                  .inputMode = {},
                  .problem = problem,
                  .form = "new"});
}

std::string pinField(const std::string &name, const std::string &label, const std::string &problem,
                     const std::string &form)
{
    return field({.name = name,
                  .label = label,
                  .type = "password",
                  .value = {},
                  .autocomplete = "off",
                  .hint = say("Four to eight digits."),
                  .leastLength = 4,
                  .inputMode = "numeric",
                  .problem = problem,
                  .form = form});
}

std::string field(const Field &field)
{
    const std::string id = field.form + "-" + field.name;
    std::string described; // what a screen reader says after the field's name
    std::string text = "<label>" + escape(field.label) + "<input name=\"" + escape(field.name) + "\" type=\"" +
                       escape(field.type) + "\" value=\"" + escape(field.value) + "\" autocomplete=\"" +
                       escape(field.autocomplete) + "\" maxlength=\"254\"" + (field.isOptional ? "" : " required");
    if (field.leastLength > 0)
        text += " minlength=\"" + std::to_string(field.leastLength) + "\"";
    if (!field.inputMode.empty())
        text += " inputmode=\"" + escape(field.inputMode) + "\"";
    if (field.isCode)
        text += " class=\"code\" autocapitalize=\"characters\" autocorrect=\"off\" spellcheck=\"false\"";
    // A browser takes the first field with this mark, so a screen reader reads the first problem with its field.
    if (field.isCode || field.isFirst || !field.problem.empty())
        text += " autofocus";
    std::string after;
    if (!field.problem.empty()) {
        described = "problem" + id;
        text += " aria-invalid=\"true\"";
        after =
            "<p class=\"error\" role=\"alert\" id=\"" + escape(described) + "\">" + escape(field.problem) + "</p>\n";
    }
    if (!field.hint.empty()) {
        described += (described.empty() ? "hint" : " hint") + id;
        after += "<p class=\"hint\" id=\"hint" + escape(id) + "\">" + escape(field.hint) + "</p>\n";
    }
    if (!described.empty())
        text += " aria-describedby=\"" + escape(described) + "\"";
    return text + "></label>\n" + after;
}

std::string checkBox(const std::string &name, const std::string &label, bool isTicked)
{
    return "<label class=\"check\"><input type=\"checkbox\" name=\"" + escape(name) + "\" value=\"1\"" +
           (isTicked ? " checked>" : ">") + escape(label) + "</label>\n";
}

std::string choice(const std::string &name, const std::string &question, const std::vector<Option> &options,
                   const std::string &chosen)
{
    std::string text = "<fieldset><legend>" + escape(question) + "</legend>\n";
    for (const Option &option : options)
        text += "<label class=\"check\"><input type=\"radio\" name=\"" + escape(name) + "\" value=\"" +
                escape(option.value) + "\"" + (option.value == chosen ? " checked>" : ">") + escape(option.label) +
                "</label>\n";
    return text + "</fieldset>\n";
}

std::string hidden(const std::string &name, const std::string &value)
{
    return "<input type=\"hidden\" name=\"" + escape(name) + "\" value=\"" + escape(value) + "\">\n";
}

namespace {

std::string buttonOf(const std::string &attributes, const std::string &label, const std::string &name,
                     const std::string &value)
{
    std::string text = "<button type=\"submit\"" + attributes;
    if (!name.empty())
        text += " name=\"" + escape(name) + "\" value=\"" + escape(value) + "\"";
    return text + ">" + escape(label) + "</button>\n";
}

} // namespace

std::string button(const std::string &label, const std::string &name, const std::string &value)
{
    return buttonOf({}, label, name, value);
}

std::string plainButton(const std::string &label, const std::string &name, const std::string &value)
{
    return buttonOf(" class=\"plain\"", label, name, value);
}

std::string dangerButton(const std::string &label)
{
    return buttonOf(" class=\"danger\"", label, {}, {});
}

std::string link(const std::string &address, const std::string &label)
{
    return (address == label ? "<p><a href=\"" : "<p class=\"go\"><a href=\"") + escape(address) + "\">" +
           escape(label) + "</a></p>\n";
}

std::string nextStep(const std::string &address, const std::string &label)
{
    return "<p class=\"next\"><a href=\"" + escape(address) + "\">" + escape(label) + "</a></p>\n";
}

std::string menu(const std::string &name, const std::vector<Option> &links)
{
    std::string text = "<nav class=\"menu\" aria-label=\"" + escape(name) + "\">\n";
    for (const Option &link : links)
        text += "<a href=\"" + escape(link.value) + "\">" + escape(link.label) + "</a>\n";
    return text + "</nav>\n";
}

std::string code(const std::string &text)
{
    return "<p><code dir=\"ltr\">" + escape(text) + "</code></p>\n";
}

std::string list(const std::vector<std::string> &points)
{
    std::string text = "<ul>\n";
    for (const std::string &point : points)
        text += "<li><bdi>" + escape(point) + "</bdi></li>\n";
    return text + "</ul>\n";
}

namespace {

constexpr char tile[] = "<rect class=\"tile\" fill=\"#2b1839\" x=\"-21\" y=\"-24\" width=\"148\" height=\"148\" "
                        "rx=\"32\"/>";

// On a field of 106 by 100.
std::string bars()
{
    struct Bar {
        int top;
        int bottom;
    };
    constexpr Bar bars[] = {{0, 40}, {12, 64}, {29, 86}, {48, 100}, {29, 86}, {12, 64}, {0, 40}};
    std::string text =
        "<linearGradient id=\"g\" gradientUnits=\"userSpaceOnUse\" x1=\"0\" y1=\"0\" x2=\"0\" y2=\"100\">"
        "<stop offset=\"0\" stop-color=\"#ffe3a6\"/><stop offset=\".55\" stop-color=\"#ffbe3a\"/>"
        "<stop offset=\"1\" stop-color=\"#ff9a1f\"/></linearGradient>";
    int x = 0;
    for (const Bar &bar : bars) {
        text += "<rect fill=\"url(#g)\" x=\"" + std::to_string(x) + "\" y=\"" + std::to_string(bar.top) +
                "\" width=\"10\" height=\"" + std::to_string(bar.bottom - bar.top) + "\" rx=\"5\"/>";
        x += 16;
    }
    return text;
}

} // namespace

std::string symbol()
{
    return std::string("<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"-21 -24 148 148\">") + tile + bars() +
           "</svg>\n";
}

std::string logo()
{
    // The tile only where the bars alone would be too pale.
    return std::string(
               "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"-9 -7 248 64\"><style>.tile { display: none }"
               " .word { stroke: #fff8ea } @media (prefers-color-scheme: light) { .tile { display: inline }"
               " .word { stroke: #2b1839 } }</style><g transform=\"translate(2 5) scale(.42)\">") +
           tile + bars() +
           "</g><path class=\"word\" transform=\"translate(66 41) scale(.345)\" d=\"M0,-60 L25,-2 L50,-60 M68,-30 H127 "
           "A30,30 0 1,0 119,-9.6 M153,-92 V0 M181,-60 V0 M181,-36 A21,24 0 0 1 223,-36 V0 M223,-36 A21,24 0 0 1 "
           "265,-36 V0 M290,-30 A30,30 0 1 1 350,-30 A30,30 0 1 1 290,-30 Z M376,-60 V0 M376,-34 A26,26 0 0 1 "
           "403,-60 M424,-30 A30,30 0 1 1 484,-30 A30,30 0 1 1 424,-30 Z M484,-60 V0\" fill=\"none\" "
           "stroke-width=\"12\" stroke-linecap=\"round\" stroke-linejoin=\"round\"/></svg>\n";
}

const char *styleSheet()
{
    return R"(:root { color-scheme: dark light; --text: #fff; --soft: #c5c5c5; --link: #ffcb52;
  --top: #1c0f29; --bottom: #0d0615; --card: #2b1839; --edge: #5b4472; --input: #170b22; --frame: #7d6298;
  --second: #43295a; --focus: #fff; --bad: #3a0f1d; --bad-edge: #ff6178; --mind: #3a2a08; --mind-edge: #ffb400;
  --good: #12301c; --good-edge: #5fcf86; --glow: #7a24688c; --glow-2: #1f4e5680; --logo: -.4rem; }
@media (prefers-color-scheme: light) { :root { --text: #1c0f29; --soft: #57466a; --link: #6b2f9e;
  --top: #fdfaff; --bottom: #f0e7f6; --card: #fff; --edge: #cdbadb; --input: #fff; --frame: #86709c;
  --second: #e7daf0; --focus: #1c0f29; --bad: #fde8ec; --bad-edge: #b3203a; --mind: #fff3d6; --mind-edge: #a86a00;
  --good: #e3f6e9; --good-edge: #1f7a41; --glow: #efcfe8; --glow-2: #d3e9ec; --logo: -.1rem; } }
* { box-sizing: border-box; }
body { margin: 0; min-height: 100vh; color: var(--text); background:
  radial-gradient(circle at 100% 0, var(--glow), transparent 55vmax) fixed,
  radial-gradient(circle at 0 100%, var(--glow-2), transparent 50vmax) fixed,
  linear-gradient(var(--top), var(--bottom)) fixed;
  font: 18px/1.5 Arial, "Liberation Sans", sans-serif; }
header { max-width: 34rem; margin: 0 auto; padding: 1.25rem 1.25rem 0; }
header a { display: inline-block; border-radius: 10px; }
header img { display: block; max-width: 100%; height: auto; margin-inline-start: var(--logo); }
main { max-width: 34rem; margin: 0 auto; padding: 0 1.25rem 3rem; }
h1 { font-size: 1.7rem; line-height: 1.2; margin: 1.2rem 0 .8rem; }
p { overflow-wrap: anywhere; }
h2 { font-size: 1.2rem; margin: 2rem 0 .5rem; }
form { background: var(--card); border: 2px solid var(--edge); border-radius: 16px; padding: 1.1rem; margin: 1rem 0; }
form:not(:has(label, fieldset, p)) { padding: 0; border: 0; background: none; }
label { display: block; margin: 0 0 1rem; color: var(--soft); }
input { display: block; width: 100%; margin-top: .3rem; padding: .7rem .9rem; font: inherit; color: var(--text);
  background: var(--input); border: 2px solid var(--frame); border-radius: 12px; }
label.check { display: flex; gap: .8rem; align-items: center; min-height: 2.5rem; color: var(--text); }
.check input { flex: none; width: 1.4rem; height: 1.4rem; margin: 0; accent-color: #ffb400; }
input:focus { outline: 3px solid #ffb400; border-color: var(--focus); }
input.code { font-size: 1.6rem; letter-spacing: .25em; text-transform: uppercase; }
button, .next a { display: block; width: 100%; min-height: 3rem; font: inherit; font-weight: bold; color: #000;
  cursor: pointer; background: linear-gradient(#ffcb52, #ffac12); border: 2px solid #ffe3a6; border-radius: 10px; }
.next a { padding: .55rem 1rem; text-align: center; text-decoration: none; }
button + button, label + button, p + button, p + input + button { margin-top: .6rem; }
button:focus-visible, a:focus-visible, select:focus-visible, .check input:focus-visible { outline: 3px solid
  var(--focus);
  outline-offset: 2px; }
a { color: var(--link); }
.error { background: var(--bad); border: 2px solid var(--bad-edge); border-radius: 12px; padding: .7rem 1rem; }
.note, .hint { color: var(--soft); font-size: .95rem; }
.hint { margin: -.6rem 0 1rem; }
.warning { background: var(--mind); border: 2px solid var(--mind-edge); border-radius: 12px; padding: .7rem 1rem; }
.done { background: var(--good); border: 2px solid var(--good-edge); border-radius: 12px; padding: .7rem 1rem; }
fieldset { border: 0; margin: 0 0 1rem; padding: 0; }
legend { padding: 0; margin-bottom: .3rem; color: var(--soft); }
fieldset .check { margin-bottom: .2rem; }
.menu { display: grid; gap: .7rem; margin: 1rem 0; }
.go { margin: .7rem 0; }
.menu a, .go a { display: flex; justify-content: space-between; align-items: center; gap: .8rem; padding: .8rem 1.1rem;
  color: var(--text); background: var(--card); border: 2px solid var(--edge); border-radius: 12px; font-weight: bold;
  text-decoration: none; }
.menu a::after, .go a::after { content: "\203A" / ""; color: var(--link); font-size: 1.4rem; line-height: 1; }
footer { max-width: 34rem; margin: 0 auto; padding: 0 1.25rem 2rem; }
footer nav { display: flex; flex-wrap: wrap; gap: .3rem 1.5rem; border-top: 2px solid var(--edge); padding-top: 1rem; }
footer a { padding: .4rem 0; }
footer form { display: flex; flex-wrap: wrap; gap: .6rem; align-items: center; padding: 0; background: none;
  border: 0; }
footer label { margin: 0; }
footer button { width: auto; margin: 0; padding: 0 1.2rem; }
select { max-width: 100%; min-height: 3rem; padding: .3rem .7rem; font: inherit; color: var(--text);
  background: var(--input); border: 2px solid var(--frame); border-radius: 12px; }
code { font: .95rem/1.5 "Liberation Mono", monospace; }
li { margin: .3rem 0; overflow-wrap: anywhere; }
ul { padding-inline-start: 1.3rem; }
.fact { display: grid; grid-template-columns: 6.5rem 1fr; gap: .6rem; margin: .3rem 0; }
.fact span { color: var(--soft); }
.fact bdi { justify-self: start; overflow-wrap: anywhere; }
.plain { color: var(--text); background: var(--second); border-color: var(--frame); }
.danger { color: #fff; background: #b3203a; border-color: #ff6178; }
)";
}

} // namespace velmora::server::html
