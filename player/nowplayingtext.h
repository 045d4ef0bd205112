#pragma once

#include <QString>

// How texts and times are written on the player screen.
namespace nowplayingtext {

inline constexpr int labelLength = 30;    // characters of a label; a longer text is cut
inline constexpr int questionLength = 40; // of a name in a question

QString time(int hours, int mins, int secs); // 03:07, 1:02:05

} // namespace nowplayingtext
