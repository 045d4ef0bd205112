#pragma once

#if defined(__GNUC__)
#define NETCOMMON_EXPORT __attribute__((visibility("default")))
#else
#define NETCOMMON_EXPORT
#endif

#include <cstdint>

// The misspelling is deliberate: signal signatures are compared by this text.
typedef enum _NETWORK_EVENT_T { NETWORK_EVENT_CONNECTED = 0, NETWORK_EVENT_DISCONNECTED = 1 } NETWORk_EVENT_T;

// One message to or from the device's menu system.
typedef struct _NETWORK_MSG_T {
    std::uint32_t type; // 4: the application has ended
    char data[64];
} _NETWORK_MSG_T;

static_assert(sizeof(_NETWORK_MSG_T) == 68, "the menu system reads 68 bytes");

// Commands of the playback thread.
typedef enum _PLAYBACK_TYPE_E {
    PLAYBACK_TYPE_RESUME = 0,
    PLAYBACK_TYPE_START = 1, // arms the thread for the address that setAudioUrl passes next
    PLAYBACK_TYPE_PAUSE = 2,
    PLAYBACK_TYPE_STOP = 3,
    PLAYBACK_TYPE_END = 4 // the thread ends
} PLAYBACK_TYPE_E;

// Values of netcommon::Playback::getPbcState().
typedef enum _PLAYBACK_STATE_E {
    PLAYBACK_STATE_STOPPED = 4,
    PLAYBACK_STATE_PLAYING = 5,
    PLAYBACK_STATE_PAUSED = 6
} PLAYBACK_STATE_E;

// What lies in the buffer, all in milliseconds of the track.
typedef struct _IMTK_PB_CTRL_BUFFER_STATUS_T {
    std::uint32_t ui4_start;  // position that is heard now
    std::uint32_t ui4_end;    // end of what has been received
    std::uint32_t ui4_amount; // ui4_end - ui4_start
} IMTK_PB_CTRL_BUFFER_STATUS_T;

namespace netcommon {

// The water line: how the player screen watches what is buffered. It looks once a tick, pauses a track below the low
// line and resumes it above the high one. Milliseconds.
inline constexpr std::uint32_t waterTickMs = 500;
inline constexpr std::uint32_t lowWaterMs = 3000;
inline constexpr std::uint32_t highWaterMs = 7000;

} // namespace netcommon
