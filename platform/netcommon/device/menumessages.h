#pragma once

#include "netcommon/netcommon_global.h"

#include <cstring>

// What the radio's process and the device's menu system say to each other, and what the menu's own command line says
// to the running menu. The socket preserves message boundaries: a packet is one 68-byte record, followed by a text
// where the table says so. All numbers are in the machine's byte order, because both ends run on one machine.
//
// | type | from -> to         | value                    | flag               | text             | answered |
// |------|--------------------|--------------------------|--------------------|------------------|----------|
// |  1   | radio -> menu      | 1: the network is lost   | 1: a person's wish |                  | by 2     |
// |  2   | menu -> radio      |                          |                    |                  | by 3     |
// |  2   | command -> menu    |                          |                    |                  | by 11    |
// |  3   | radio -> menu      | as responseParent(int)   |                    |                  | no       |
// |  4   | radio -> menu      | all zero: it has ended   |                    |                  | no       |
// |  5   | command -> radio   | 1 begins, 0 ends         |                    |                  | by 11    |
// |  6   | command -> radio   | 1 lost, 0 back           |                    |                  | by 11    |
// |  7   | command -> radio   | Qt key code              | as below           |                  | by 11    |
// |  8   | command -> radio   |                          |                    | what is typed    | by 11    |
// |  9   | command -> radio   |                          |                    |                  | by 11    |
// | 10   | command -> radio   |                          |                    | absolute path    | by 11    |
// | 11   | answer             | 0 done, 1 failed         | to 12: see below   | reply, or reason | no       |
// | 12   | menu -> radio      |                          |                    |                  | by 11    |
// | 13   | radio -> menu      | process id: first words  |                    |                  | no       |
// | 14   | radio -> menu      | the house key            |                    |                  | no       |
// | 15   | command -> radio   | percent                  | VolumeOrder        |                  | by 11    |
// | 16   | command -> radio   | minutes                  | SleepOrder         |                  | by 11    |
// | 17   | command -> radio   | row                      |                    | station's name   | by 11    |
// | 18   | command -> radio   | number of the field      | 1: it is done      | what it holds    | by 11    |
// | 19   | command -> radio   |                          |                    |                  | by 11    |
//
// "command -> radio" passes through the menu, which replaces the command's id with one of its own.
namespace netcommon::menu {

enum class MessageType : std::uint32_t {
    ExitRequest = 1,
    Exit = 2,
    ExitResponse = 3,
    Exited = 4,
    ScreenSaver = 5,
    Network = 6,
    Key = 7,
    Text = 8,
    Status = 9,
    Screenshot = 10,
    Answer = 11,
    Ping = 12,
    Hello = 13,
    HouseKey = 14,
    Volume = 15,
    Sleep = 16,
    Station = 17, // plays the station of that row, if it has that name
    Field = 18,   // the whole text of the field that is being typed in
    Shown = 19    // answered with what a telephone shows of the radio
};

// What a command asks of the volume; each is answered with its new state.
enum class VolumeOrder : std::uint32_t { Set = 0, Up = 1, Down = 2, ToggleMute = 3, Tell = 4 };
// The same for the sleep timer.
enum class SleepOrder : std::uint32_t { Minutes = 0, Track = 1, Off = 2, Tell = 3 };
inline constexpr std::uint32_t leastSleepMinutes = 15;
inline constexpr std::uint32_t mostSleepMinutes = 120;
inline constexpr std::int64_t minuteMs = 60'000;

// Flags of a key.
inline constexpr std::uint32_t typedKey = 1; // of a PC's keyboard, translated
inline constexpr std::uint32_t phoneKey = 2; // of a telephone: also acts where it lifts the idle picture
// Of a field: its text is complete.
inline constexpr std::uint32_t fieldDone = 1;

enum class AnswerValue : std::uint32_t { Done = 0, Failed = 1 };

// Offsets in the record's data: id of the request (returned with the answer), value, flag.
inline constexpr int idOffset = 0;
inline constexpr int valueOffset = 4;
inline constexpr int flagOffset = 8;

// Flags of the answer to a ping, which comes from the GUI thread.
inline constexpr std::uint32_t playsFlag = 1;   // music has reached the sink, and playback goes on
inline constexpr std::uint32_t lastBoxFlag = 2; // see lastBoxProperty in netcommon/ipc.h
inline constexpr std::uint32_t noticeFlag = 4;  // playback has ended, and a box with one button is open

// The radio finds its menu system's socket in this variable; without it there is no menu system.
inline constexpr char socketVariable[] = "VELMORA_MENU_SOCKET";

inline std::uint32_t field(const _NETWORK_MSG_T &message, int offset)
{
    std::uint32_t value = 0;
    std::memcpy(&value, message.data + offset, sizeof value);
    return value;
}

inline void setField(_NETWORK_MSG_T &message, int offset, std::uint32_t value)
{
    std::memcpy(message.data + offset, &value, sizeof value);
}

// Any number that arrived: a switch over it needs a default.
inline MessageType typeOf(const _NETWORK_MSG_T &message)
{
    return MessageType(message.type);
}

inline _NETWORK_MSG_T makeMessage(MessageType type, std::uint32_t id = 0, std::uint32_t value = 0,
                                  std::uint32_t flag = 0)
{
    _NETWORK_MSG_T message{};
    message.type = std::uint32_t(type);
    setField(message, idOffset, id);
    setField(message, valueOffset, value);
    setField(message, flagOffset, flag);
    return message;
}

} // namespace netcommon::menu
