#pragma once

#include <QList>

// The arithmetic of a text that scrolls through a window too narrow for it: an endless band of copies that pauses after
// each turn. All lengths are in pixels.
namespace marquee {

inline constexpr int pauseMs = 1000;
inline constexpr int stepMs = 30;
inline constexpr int gapBlanks = 18;    // between two copies
inline constexpr int widestStill = 250; // a fixed limit, not the window's width (deliberate)

enum class Step { Shift, ShiftAndPause };

bool runs(int textWidth);
// Advances `offset` by one pixel. A full turn of `bandWidth` pixels ends at 0 and asks for a pause.
Step advance(int &offset, int bandWidth);
// Left edges of the copies that are visible in a window of `windowWidth`. Empty for a band of width 0.
QList<int> copies(int offset, int bandWidth, int windowWidth);

} // namespace marquee
