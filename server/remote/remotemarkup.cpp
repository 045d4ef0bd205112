#include "server/remote/remotemarkup.h"

#include "server/web/html.h"

namespace velmora::server::remotepage {

namespace {

using html::escape;

// A picture of 24 by 24 in the button's own colour.
std::string icon(const char *path)
{
    return std::string("<svg viewBox=\"0 0 24 24\" width=\"28\" height=\"28\" aria-hidden=\"true\" fill=\"none\" "
                       "stroke=\"currentColor\" stroke-width=\"2\" stroke-linecap=\"round\" "
                       "stroke-linejoin=\"round\"><path d=\"") +
           path + "\"/></svg>";
}

// `label` is in the page's language.
std::string keyButton(const char *key, const std::string &label, const char *path, const char *kind = "plain")
{
    return std::string("<button type=\"submit\" name=\"key\" value=\"") + key + "\" class=\"" + kind + " " + key +
           "\" aria-label=\"" + escape(label) + "\">" + icon(path) + "</button>\n";
}

constexpr char thumbUp[] = "M7 11v9H4v-9zM7 11l4-8c2 0 3 1 3 3l-1 4h6l1 2-2 7-2 1H7";
constexpr char thumbDown[] = "M17 13V4h3v9zM17 13l-4 8c-2 0-3-1-3-3l1-4H5l-1-2 2-7 2-1h9";
constexpr char pauseBars[] = "M8 5v14M16 5v14";
constexpr char nextMark[] = "M6 5l10 7-10 7zM19 5v14";
constexpr char minus[] = "M5 12h14";
constexpr char plus[] = "M5 12h14M12 5v14";
constexpr char mute[] = "M4 9v6h4l5 4V5L8 9zM17 9l5 6M22 9l-5 6";
constexpr char house[] = "M4 11l8-7 8 7M6 10v10h12V10";
constexpr char back[] = "M10 6l-6 6 6 6M4 12h16";
constexpr char up[] = "M5 15l7-7 7 7";
constexpr char down[] = "M5 9l7 7 7-7";
constexpr char left[] = "M15 5l-7 7 7 7";
constexpr char right[] = "M9 5l7 7-7 7";

std::string clockText(int64_t seconds)
{
    const int64_t rest = seconds % 60;
    return std::to_string(seconds / 60) + (rest < 10 ? ":0" : ":") + std::to_string(rest);
}

std::string form(const Content &content, const char *kind, const std::string &fields)
{
    return std::string("<form method=\"post\" action=\"/remote/press\" class=\"") + kind + "\">\n" +
           html::hidden("csrf", content.csrf) + html::hidden("radio", content.deviceId) + fields + "</form>\n";
}

std::string hiddenUnless(bool isShown)
{
    return isShown ? "" : " hidden";
}

std::string nowPlaying(const Content &content)
{
    const RadioState &state = content.state;
    return "<section class=\"now\" aria-label=\"" + escape(say("Playing")) +
           "\">\n<img id=\"cover\" alt=\"\" width=\"112\" height=\"112\"" +
           (content.cover.empty() ? std::string(" hidden") : " src=\"" + escape(content.cover) + "\"") +
           "><div><p id=\"station\" dir=\"auto\">" + escape(state.station) + "</p><p id=\"title\" dir=\"auto\">" +
           escape(state.title) + "</p><p id=\"artist\" dir=\"auto\">" + escape(state.artist) +
           "</p><p id=\"album\" dir=\"auto\">" + escape(state.album) + "</p></div>\n<div class=\"time\"" +
           hiddenUnless(state.length > 0) + " id=\"time\"><progress id=\"progress\" aria-label=\"" +
           escape(say("Progress")) + "\" max=\"" + std::to_string(state.length) + "\" value=\"" +
           std::to_string(state.position) + "\"></progress><span id=\"clock\">" + clockText(state.position) + " / " +
           clockText(state.length) + "</span></div>\n</section>\n";
}

std::string typing(const Content &content)
{
    const RadioState &state = content.state;
    return "<section id=\"typing\"" + hiddenUnless(state.isTyping) + ">\n" +
           form(content, "typing",
                html::hidden("field", std::to_string(state.field)) + "<label><span id=\"label\" dir=\"auto\">" +
                    escape(state.label.empty() ? say("Type on the radio") : state.label) +
                    "</span><input id=\"text\" dir=\"auto\" name=\"text\" autocomplete=\"off\" autocapitalize=\"off\" "
                    "autocorrect=\"off\" spellcheck=\"false\" maxlength=\"250\" type=\"" +
                    (state.isSecret ? "password" : "text") + "\" value=\"" + escape(state.typed) +
                    "\"></label><button type=\"submit\">" + escape(say("Send")) + "</button>\n") +
           form(content, "row two",
                html::hidden("field", std::to_string(state.field)) +
                    "<button type=\"submit\" class=\"plain\" name=\"key\" value=\"backspace\">" +
                    escape(say("Delete")) +
                    "</button>\n"
                    "<button type=\"submit\" name=\"done\" value=\"1\">" +
                    escape(say("Done")) + "</button>\n") +
           "</section>\n";
}

std::string sleepForm(const Content &content)
{
    std::vector<html::Option> choices = {{"off", say("Sleep timer off")}, {"track", say("After this track")}};
    for (const int minutes : {15, 30, 60, 90, 120})
        choices.push_back({std::to_string(minutes), sayMany("{1} minute", "{1} minutes", minutes)});
    std::string options;
    for (const auto &[value, label] : choices)
        options += std::string("<option value=\"") + value + "\"" + (content.state.sleep == value ? " selected" : "") +
                   ">" + escape(label) + "</option>\n";
    return form(content, "row sleep",
                "<select name=\"sleep\" id=\"sleep\" aria-label=\"" + escape(say("Sleep timer")) + "\">\n" + options +
                    "</select><button type=\"submit\" class=\"plain set\">" + escape(say("Set")) + "</button>\n");
}

std::string stations(const Content &content)
{
    std::string buttons;
    for (size_t row = 0; row < content.state.stations.size(); ++row) {
        const std::string &name = content.state.stations[row];
        const bool isCurrent = content.state.stationRow == static_cast<int64_t>(row);
        buttons += "<button type=\"submit\" class=\"plain\" dir=\"auto\" name=\"station\" value=\"" +
                   std::to_string(row) + ":" + escape(name) + "\"" + (isCurrent ? " aria-current=\"true\"" : "") + ">" +
                   escape(name) + "</button>\n";
    }
    return "<section id=\"stations\"" + hiddenUnless(!buttons.empty()) + ">\n<h2>" + escape(say("Stations")) +
           "</h2>\n" + form(content, "stations", "<div id=\"stationlist\">" + buttons + "</div>") + "</section>\n";
}

std::string others(const Content &content)
{
    if (content.others.size() < 2)
        return {};
    std::string links = "<nav aria-label=\"" + escape(say("Radios")) + "\">\n";
    for (const auto &[device, name] : content.others)
        links += "<a href=\"/remote?radio=" + escape(device) + "\"" +
                 (device == content.deviceId ? " aria-current=\"page\"" : "") + ">" + escape(name) + "</a>\n";
    return links + "</nav>\n";
}

// What the script says itself.
std::string textsOfScript()
{
    const std::pair<const char *, std::string> texts[] = {
        {"away", say("The radio is not connected. It may be switched off.")},
        {"missed", say("The radio did not get that: it is not connected at the moment.")},
        {"fast", say("That was too fast. Please wait a moment.")},
        {"unreachable", say("The service cannot be reached.")},
        {"unlinked", say("This radio is no longer linked with your account.")},
        {"over", say("You are signed out.")},
        {"signin", say("Sign in")},
        {"type", say("Type on the radio")},
        {"muted", say("{1} muted")}};
    std::string attributes;
    for (const auto &[name, text] : texts)
        attributes += std::string(" data-") + name + "=\"" + escape(text) + "\"";
    return attributes;
}

} // namespace

std::string body(const Content &content)
{
    const RadioState &state = content.state;
    return "<link rel=\"stylesheet\" href=\"/remote.css\">\n<div id=\"remote\" data-radio=\"" +
           escape(content.deviceId) + "\" data-revision=\"" + escape(content.revision) + "\"" + textsOfScript() +
           ">\n" + html::heading(content.name) + others(content) + "<p id=\"note\" role=\"status\" class=\"warning\"" +
           hiddenUnless(!content.isConnected || !content.problem.empty()) + ">" +
           escape(!content.problem.empty() ? content.problem
                                           : say("The radio is not connected. It may be switched off.")) +
           "</p>\n" + "<p id=\"box\" dir=\"auto\" role=\"status\" class=\"fact\"" + hiddenUnless(!state.box.empty()) +
           ">" + escape(state.box) + "</p>\n" + nowPlaying(content) + typing(content) +
           form(content, "row four",
                keyButton("red", say("Thumb down"), thumbDown) +
                    keyButton("pause", say("Pause or play"), pauseBars, "main") +
                    keyButton("next", say("Next track"), nextMark) + keyButton("green", say("Thumb up"), thumbUp)) +
           form(content, "row four",
                keyButton("volumedown", say("Quieter"), minus) + "<output id=\"volume\" aria-label=\"" +
                    escape(say("Volume")) + "\">" + std::to_string(state.volume) + "</output>" +
                    keyButton("volumeup", say("Louder"), plus) + keyButton("mute", say("Mute"), mute)) +
           "<p id=\"focus\" dir=\"auto\" class=\"note\">" + escape(state.focus) + "</p>\n" +
           form(content, "pad",
                keyButton("home", say("House"), house) + keyButton("up", say("Up"), up) +
                    keyButton("back", say("Back"), back) + keyButton("left", say("Left"), left) +
                    "<button type=\"submit\" name=\"key\" value=\"select\" class=\"main select\">" + escape(say("OK")) +
                    "</button>\n" + keyButton("right", say("Right"), right) +
                    "<button type=\"submit\" name=\"key\" value=\"blue\" class=\"plain blue\" aria-label=\"" +
                    escape(say("Blue")) +
                    "\">"
                    "<span class=\"dot bluedot\"></span></button>\n" +
                    keyButton("down", say("Down"), down) +
                    "<button type=\"submit\" name=\"key\" value=\"yellow\" class=\"plain yellow\" aria-label=\"" +
                    escape(say("Yellow")) + "\"><span class=\"dot yellowdot\"></span></button>\n") +
           sleepForm(content) + stations(content) + html::link("/account", say("Your account")) +
           "</div>\n<script src=\"/remote.js\" defer></script>\n";
}

const char *styleSheet()
{
    return R"(#remote form { background: none; border: 0; padding: 0; margin: .6rem 0; }
#remote [hidden] { display: none !important; }
#remote .pad, #remote .four, #remote .time { direction: ltr; }
#remote h1 { margin: .6rem 0; font-size: 1.4rem; overflow-wrap: anywhere; }
#remote nav { display: flex; flex-wrap: wrap; gap: .5rem; }
#remote nav a { padding: .4rem .8rem; border: 2px solid var(--edge); border-radius: 999px; text-decoration: none; }
#remote nav a[aria-current] { border-color: #ffb400; }
#remote .now { display: grid; grid-template-columns: auto minmax(0, 1fr); gap: .4rem 1rem; background: var(--card);
  border: 2px solid var(--edge); border-radius: 16px; padding: 1rem; min-height: 8rem; }
#remote [dir=auto] { text-align: -webkit-match-parent; text-align: match-parent; }
#remote .now p { margin: 0; overflow: hidden; display: -webkit-box; -webkit-box-orient: vertical;
  -webkit-line-clamp: 2; }
#remote #cover { border-radius: 10px; }
#remote #station, #remote #album { color: var(--soft); font-size: .95rem; }
#remote #title { font-weight: bold; font-size: 1.15rem; }
#remote .time { grid-column: 1 / -1; display: flex; gap: .8rem; align-items: center; }
#remote progress { flex: 1; min-width: 0; height: .5rem; accent-color: #ffb400; }
#remote #clock { color: var(--soft); font-size: .9rem; font-variant-numeric: tabular-nums; }
#remote .row { display: grid; gap: .6rem; align-items: center; }
#remote .four { grid-template-columns: repeat(4, minmax(0, 1fr)); }
#remote .two { grid-template-columns: 1fr 1fr; }
#remote .sleep { grid-template-columns: minmax(0, 1fr) auto; }
#remote .pad { display: grid; grid-template-columns: repeat(3, minmax(0, 1fr)); gap: .6rem; }
#remote .four button, #remote .pad button { padding: 0; }
#remote button { margin: 0; min-height: 3.4rem; touch-action: manipulation; }
#remote.scripted .set, #remote.scripted .typing button { display: none; }
#remote.scripted .sleep { grid-template-columns: minmax(0, 1fr); }
#remote .set { width: auto; padding: 0 1.2rem; }
#remote button svg { display: block; margin: 0 auto; }
#remote .pressed { outline: 3px solid #ffb400; }
#remote output { text-align: center; font-weight: bold; font-size: 1.3rem; }
#remote select { font: inherit; min-height: 3.4rem; padding: 0 .8rem; color: var(--text); background: var(--input);
  border: 2px solid var(--frame); border-radius: 10px; width: 100%; }
#remote .dot { display: block; width: 1.3rem; height: 1.3rem; margin: 0 auto; border-radius: 50%;
  border: 2px solid var(--text); }
#remote .bluedot { background: #2a6fdb; }
#remote .yellowdot { background: #f2c014; }
#remote #typing { background: var(--card); border: 2px solid #ffb400; border-radius: 16px; padding: .6rem 1rem;
  margin: .6rem 0; }
#remote #stationlist { display: grid; gap: .5rem; }
#remote #stationlist button { padding: 0 1rem; min-height: 3rem; overflow-wrap: anywhere; }
#remote #stationlist [aria-current] { border-color: #ffb400; }
@media (max-width: 18rem) { #remote .now { grid-template-columns: minmax(0, 1fr); }
  #remote .row { gap: .3rem; } #remote .two { grid-template-columns: minmax(0, 1fr); } }
)";
}

} // namespace velmora::server::remotepage
