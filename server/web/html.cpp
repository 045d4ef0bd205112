#include "server/web/html.h"

#include <algorithm>
#include <ctime>

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

std::string render(const Page &page)
{
    std::string text = "<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                       "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>" +
                       escape(page.title) +
                       " - Velmora</title>\n<link rel=\"stylesheet\" href=\"/style.css\">\n</head>\n<body>\n" +
                       "<header><a href=\"/account\">velmora</a></header>\n<main>\n" + page.body;
    if (!page.isEncrypted)
        text += "<p class=\"note\">This page is not encrypted: everybody in this network could read along. "
                "Do not use a password that opens anything else.</p>\n";
    return text + "</main>\n</body>\n</html>\n";
}

std::string paragraphs(const std::string &text)
{
    std::string all;
    for (size_t at = 0; at < text.size();) {
        const size_t end = std::min(text.find("\n\n", at), text.size());
        const std::string piece = text.substr(at, end - at);
        const bool isAddress = (piece.starts_with("https://") || piece.starts_with("http://")) &&
                               piece.find_first_of(" \n") == std::string::npos;
        all += isAddress ? link(piece, piece) : paragraph(piece);
        at = std::min(end + 2, text.size());
    }
    return all;
}

std::string mail(const std::string &title, const std::string &text)
{
    return "<!doctype html>\n<html lang=\"en\">\n<head><meta charset=\"utf-8\"><title>" + escape(title) +
           "</title></head>\n<body>\n" + paragraphs(text) + "</body>\n</html>\n";
}

std::string heading(const std::string &text)
{
    return "<h1>" + escape(text) + "</h1>\n";
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
    return "<p class=\"fact\"><span>" + escape(name) + "</span> " + escape(value) + "</p>\n";
}

std::string timeText(int64_t seconds)
{
    const std::time_t time = seconds;
    std::tm parts{};
    ::localtime_r(&time, &parts);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M", &parts);
    return text;
}

std::string form(const std::string &action, const std::string &csrf, const std::string &fields)
{
    return "<form method=\"post\" action=\"" + escape(action) + "\">\n" + hidden("csrf", csrf) + fields + "</form>\n";
}

std::string emailField(const std::string &value)
{
    return field({"email", "E-mail address", "email", value, "username", {}});
}

std::string passwordField(const std::string &label)
{
    return field({"password", label, "password", {}, "current-password", {}});
}

std::string newPasswordField(const std::string &name, const std::string &label)
{
    return field({name, label, "password", {}, "new-password", "At least eight characters."});
}

std::string field(const Field &field)
{
    std::string text = "<label>" + escape(field.label) + "<input name=\"" + escape(field.name) + "\" type=\"" +
                       escape(field.type) + "\" value=\"" + escape(field.value) + "\" autocomplete=\"" +
                       escape(field.autocomplete) + "\" maxlength=\"254\"" + (field.isOptional ? "" : " required");
    if (field.isCode)
        text += " class=\"code\" autocapitalize=\"characters\" autocorrect=\"off\" spellcheck=\"false\"";
    text += "></label>\n";
    if (!field.hint.empty())
        text += "<p class=\"hint\">" + escape(field.hint) + "</p>\n";
    return text;
}

std::string checkBox(const std::string &name, const std::string &label)
{
    return "<label class=\"check\"><input type=\"checkbox\" name=\"" + escape(name) + "\" value=\"1\">" +
           escape(label) + "</label>\n";
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

std::string link(const std::string &address, const std::string &label)
{
    return "<p><a href=\"" + escape(address) + "\">" + escape(label) + "</a></p>\n";
}

const char *styleSheet()
{
    return R"(:root { color-scheme: dark; }
* { box-sizing: border-box; }
body { margin: 0; min-height: 100vh; background: linear-gradient(#1c0f29, #0d0615) fixed; color: #fff;
  font: 18px/1.5 Arial, "Liberation Sans", sans-serif; }
header { max-width: 34rem; margin: 0 auto; padding: 1.5rem 1.25rem 0; font-size: 1.5rem; letter-spacing: .04em; }
header a { color: #fff8ea; text-decoration: none; }
main { max-width: 34rem; margin: 0 auto; padding: 0 1.25rem 3rem; }
h1 { font-size: 1.7rem; line-height: 1.2; margin: 1.2rem 0 .8rem; }
p { overflow-wrap: anywhere; }
h2 { font-size: 1.2rem; margin: 2rem 0 .5rem; }
form { background: #2b1839; border: 2px solid #5b4472; border-radius: 16px; padding: 1.1rem; margin: 1rem 0; }
label { display: block; margin: 0 0 1rem; color: #c5c5c5; }
input { display: block; width: 100%; margin-top: .3rem; padding: .7rem .9rem; font: inherit; color: #fff;
  background: #170b22; border: 2px solid #7d6298; border-radius: 12px; }
label.check { display: flex; gap: .8rem; align-items: center; min-height: 2.5rem; color: #fff; }
.check input { width: 1.4rem; height: 1.4rem; margin: 0; accent-color: #ffb400; }
input:focus { outline: none; border-color: #ffb400; }
input.code { font-size: 1.6rem; letter-spacing: .25em; text-transform: uppercase; }
button { display: block; width: 100%; min-height: 3rem; font: inherit; font-weight: bold; color: #000; cursor: pointer;
  background: linear-gradient(#ffcb52, #ffac12); border: 2px solid #ffe3a6; border-radius: 10px; }
button + button, label + button, p + button { margin-top: .6rem; }
button:focus-visible, a:focus-visible, .check input:focus-visible { outline: 3px solid #fff; outline-offset: 2px; }
a { color: #ffcb52; }
.error { background: #3a0f1d; border: 2px solid #ff6178; border-radius: 12px; padding: .7rem 1rem; }
.note, .hint { color: #c5c5c5; font-size: .95rem; }
.hint { margin: -.6rem 0 1rem; }
.warning { background: #3a2a08; border: 2px solid #ffb400; border-radius: 12px; padding: .7rem 1rem; }
.fact { margin: .3rem 0; }
.fact span { display: inline-block; min-width: 6.5rem; color: #c5c5c5; }
.plain { color: #fff; background: #43295a; border-color: #7d6298; }
)";
}

} // namespace velmora::server::html
