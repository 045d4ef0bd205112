#pragma once

#include <QString>

// The controls that Left and Right move along, and how each looks with and without the focus.
namespace focusring {

// The values appear in the player screen's log.
enum class Position {
    None = -1,
    StationList = 2,
    History = 3,
    Menu = 4,
    Play = 5,
    Next = 6,
    ThumbDown = 7,
    ThumbUp = 8
};

// The neighbour of `position`; `position` itself when it is not on the ring.
Position neighbour(Position position, bool isLeftToRight);
bool isOnRing(Position position);
bool isList(Position position);
// The style sheet of a button; empty for a position without one. `isPaused` matters for the play button only: it shows
// the play picture then, and keeps its white text even when focused.
QString buttonStyle(Position position, bool isFocused, bool isPaused);

} // namespace focusring
