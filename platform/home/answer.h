#pragma once

namespace home {

// The exit status of velmora-home: what the menu system does next. Every other status counts as a fault.
enum class Answer { StartRadio = 0, Quit = 20, Restart = 21, SwitchOff = 22 };

} // namespace home
