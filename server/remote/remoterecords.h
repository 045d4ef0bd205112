#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What a telephone asks of a radio, and what a radio says it shows. Both come from outside: they are read into these
// values, whose texts are valid UTF-8 of bounded length, and written anew.
namespace velmora::server {

// A field of the posted form; empty when there is none.
using FormValue = std::function<std::string(const char *name)>;
// The order that the form holds, as the radio gets it: one JSON object. Nothing when it holds none that is known:
//   key       a name of the table below
//   volume    0 to 100
//   sleep     "off", "track" or minutes, 15 to 120
//   station   the row, a colon, the station's name
//   done      "1", with `field`: the text is complete
//   text      what the field on the radio is to hold, with `field`, the radio's number of that field.
std::optional<std::string> orderOf(const FormValue &value);
bool isRemoteKey(std::string_view name);

struct RadioState {
    static constexpr size_t mostBytes = 64 * 1024; // of the report
    static constexpr size_t mostStations = 101;
    static constexpr size_t mostText = 256; // characters

    std::string screen;   // "player", "home" or "other"
    std::string playback; // "playing", "paused" or "stopped"
    std::string title;
    std::string artist;
    std::string album;
    std::string station;
    std::string cover;    // name of the picture's file at this service; empty: none
    int64_t position = 0; // seconds
    int64_t length = 0;   // seconds; 0: not known
    int64_t volume = 0;   // percent
    bool isMuted = false;
    std::string sleep; // "off", "track" or minutes
    std::string box;   // the text of a message that waits for an answer
    std::string focus; // what a key would act on, in words
    std::vector<std::string> stations;
    int64_t stationRow = -1; // the one that plays
    // The field that is being typed in.
    bool isTyping = false;
    int64_t field = 0; // the radio's number of it: what is typed for another one is dropped
    bool isSecret = false;
    std::string typed; // never of a secret field
    std::string label;
};

// Nothing when the text is no JSON object of at most `mostBytes`. What is missing or of another type is left out.
std::optional<RadioState> radioStateOf(std::string_view text);
// For the page's script. `coverAddress` replaces the name of the file.
std::string jsonOf(const RadioState &state, const std::string &coverAddress);
// The same as the radio reported it.
std::string jsonOf(const RadioState &state);

} // namespace velmora::server
