#include "scenarios.h"

namespace faults {

namespace {
using Kind = Fault::Kind;
}

const std::vector<Scenario> &scenarios()
{
    static const std::vector<Scenario> table = {
        {.name = "a service that comes up eight seconds after the radio is waited for",
         .faults = {{.kind = Kind::Down, .lasts = 8}},
         .silence = 20,
         .isFromLaunch = true,
         .isQuick = true},
        {.name = "the service restarts for eight seconds where a track ends",
         .faults = {{.kind = Kind::Down, .lasts = 8, .since = "getPlaylist"}},
         .silence = 17, // the pauses between attempts double: the one that ends last may be 8 s
         .isLastTrack = true,
         .isQuick = true},
        {.name = "a playlist is answered by a gateway's page, twice",
         .faults = {{.kind = Kind::Status, .path = "getPlaylist", .amount = 502, .times = 2}},
         .silence = 3,
         .isLastTrack = true,
         .isQuick = true},
        {.name = "audio is cut by a reset, three times",
         .faults = {{.kind = Kind::Reset, .path = "/media/audio", .amount = 100000, .times = 3}},
         .silence = 1,
         .rate = 200000,
         .isQuick = true},
        {.name = "audio is a page of HTML",
         .faults = {{.kind = Kind::Html, .path = "/media/audio", .times = 1}},
         .silence = 2,
         .isQuick = true},
    };
    return table;
}

} // namespace faults
