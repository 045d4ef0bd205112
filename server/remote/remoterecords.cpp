#include "server/remote/remoterecords.h"

#include "server/catalogue/textfolding.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <nlohmann/json.hpp>

namespace velmora::server {

namespace {

using Json = nlohmann::json;

constexpr std::array keys = {"up",     "down",     "left", "right", "select",    "back",     "red",        "green",
                             "yellow", "blue",     "home", "menu",  "play",      "pause",    "stop",       "next",
                             "pageup", "pagedown", "top",  "end",   "backspace", "volumeup", "volumedown", "mute"};
constexpr size_t mostTyped = 1024; // bytes
constexpr int mostRow = 10'000;
constexpr int leastSleep = 15;
constexpr int mostSleep = 120;

// The whole text as a number from `least` to `most`.
std::optional<int> numberOf(std::string_view text, int least, int most)
{
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isWhole = error == std::errc() && end == text.data() + text.size();
    return isWhole && number >= least && number <= most ? std::optional(number) : std::nullopt;
}

bool isLine(const std::string &text, size_t mostBytes)
{
    const auto isControl = [](unsigned char c) { return c < ' ' || c == 0x7f; };
    return text.size() <= mostBytes && isUtf8(text) && std::none_of(text.begin(), text.end(), isControl);
}

std::optional<Json> stationOrder(const std::string &text)
{
    const size_t colon = text.find(':');
    if (colon == std::string::npos)
        return std::nullopt;
    const auto row = numberOf(std::string_view(text).substr(0, colon), 0, mostRow);
    const std::string name = text.substr(colon + 1);
    if (!row || !isLine(name, mostTyped))
        return std::nullopt;
    return Json{{"station", *row}, {"name", name}};
}

std::optional<Json> jsonOrder(const FormValue &value)
{
    if (const std::string key = value("key"); !key.empty())
        return isRemoteKey(key) ? std::optional(Json{{"key", key}}) : std::nullopt;
    if (const std::string volume = value("volume"); !volume.empty()) {
        const auto percent = numberOf(volume, 0, 100);
        return percent ? std::optional(Json{{"volume", *percent}}) : std::nullopt;
    }
    if (const std::string sleep = value("sleep"); !sleep.empty()) {
        if (sleep == "off" || sleep == "track")
            return Json{{"sleep", sleep}};
        return numberOf(sleep, leastSleep, mostSleep) ? std::optional(Json{{"sleep", sleep}}) : std::nullopt;
    }
    if (const std::string station = value("station"); !station.empty())
        return stationOrder(station);
    const auto field = numberOf(value("field"), 1, INT32_MAX);
    const std::string text = value("text");
    if (!field || !isLine(text, mostTyped))
        return std::nullopt;
    if (value("done") == "1")
        return Json{{"done", true}, {"field", *field}};
    return Json{{"text", text}, {"field", *field}};
}

// The first characters of the text, with spaces for control characters.
std::string shortened(const std::string &text, size_t most)
{
    std::string line;
    size_t characters = 0;
    for (const char c : text) {
        const bool isContinued = (static_cast<unsigned char>(c) & 0xC0) == 0x80;
        if (!isContinued && ++characters > most)
            break;
        line += static_cast<unsigned char>(c) < ' ' || c == 0x7f ? ' ' : c;
    }
    return line;
}

class Members {
public:
    explicit Members(const Json &object)
        : m_object(object)
    {
    }
    std::string text(const char *name) const
    {
        const Json *member = find(name);
        return member && member->is_string() ? shortened(member->get_ref<const std::string &>(), RadioState::mostText)
                                             : std::string();
    }
    int64_t number(const char *name, int64_t least, int64_t most, int64_t otherwise = 0) const
    {
        const Json *member = find(name);
        if (!member || !member->is_number_integer() ||
            (member->is_number_unsigned() && member->get<uint64_t>() > static_cast<uint64_t>(INT32_MAX)))
            return otherwise;
        return std::clamp(member->get<int64_t>(), least, most);
    }
    bool flag(const char *name) const
    {
        const Json *member = find(name);
        return member && member->is_boolean() && member->get<bool>();
    }
    const Json *find(const char *name) const
    {
        const auto found = m_object.find(name);
        return found == m_object.end() ? nullptr : &*found;
    }

private:
    const Json &m_object;
};

std::string oneOf(const std::string &text, std::initializer_list<const char *> words)
{
    const auto found = std::find_if(words.begin(), words.end(), [&](const char *word) { return text == word; });
    return found == words.end() ? *(words.end() - 1) : *found;
}

} // namespace

bool isRemoteKey(std::string_view name)
{
    return std::any_of(keys.begin(), keys.end(), [&](const char *key) { return name == key; });
}

std::optional<std::string> orderOf(const FormValue &value)
{
    const std::optional<Json> order = jsonOrder(value);
    return order ? std::optional(order->dump()) : std::nullopt;
}

std::optional<RadioState> radioStateOf(std::string_view text)
{
    if (text.size() > RadioState::mostBytes)
        return std::nullopt;
    // Lists in lists are not kept: 64 KB of small ones would take some megabytes.
    constexpr int mostDepth = 2; // a list in the report
    const auto isKept = [](int depth, Json::parse_event_t event, const Json &) {
        const bool isBegin = event == Json::parse_event_t::array_start || event == Json::parse_event_t::object_start;
        return !isBegin || depth < mostDepth;
    };
    const Json parsed = Json::parse(text, isKept, false);
    if (!parsed.is_object())
        return std::nullopt;
    const Members members(parsed);
    constexpr int64_t mostSeconds = 24 * 3600;
    RadioState state;
    state.screen = oneOf(members.text("screen"), {"player", "home", "other"});
    state.playback = oneOf(members.text("playback"), {"playing", "paused", "stopped"});
    state.title = members.text("title");
    state.artist = members.text("artist");
    state.album = members.text("album");
    state.station = members.text("station");
    state.cover = members.text("cover");
    state.position = members.number("position", 0, mostSeconds);
    state.length = members.number("length", 0, mostSeconds);
    state.volume = members.number("volume", 0, 100);
    state.isMuted = members.flag("muted");
    state.sleep = members.text("sleep");
    state.box = members.text("box");
    state.focus = members.text("focus");
    if (const Json *stations = members.find("stations"); stations && stations->is_array()) {
        for (const Json &name : *stations) {
            if (name.is_string() && state.stations.size() < RadioState::mostStations)
                state.stations.push_back(shortened(name.get_ref<const std::string &>(), RadioState::mostText));
        }
    }
    state.stationRow = members.number("stationRow", -1, static_cast<int64_t>(state.stations.size()) - 1, -1);
    state.field = members.number("field", 0, INT32_MAX);
    state.isTyping = state.field > 0;
    state.isSecret = members.flag("secret");
    state.typed = state.isSecret ? std::string() : members.text("typed");
    state.label = members.text("label");
    return state;
}

std::string jsonOf(const RadioState &state, const std::string &coverAddress)
{
    Json json = {{"screen", state.screen},     {"playback", state.playback},
                 {"title", state.title},       {"artist", state.artist},
                 {"album", state.album},       {"station", state.station},
                 {"cover", coverAddress},      {"position", state.position},
                 {"length", state.length},     {"volume", state.volume},
                 {"muted", state.isMuted},     {"sleep", state.sleep},
                 {"box", state.box},           {"focus", state.focus},
                 {"stations", state.stations}, {"stationRow", state.stationRow},
                 {"field", state.field},       {"secret", state.isSecret},
                 {"typed", state.typed},       {"label", state.label}};
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string jsonOf(const RadioState &state)
{
    return jsonOf(state, state.cover);
}

} // namespace velmora::server
