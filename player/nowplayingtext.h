#pragma once

#include <QString>

// How texts and times are written on the player screen.
namespace nowplayingtext {

inline constexpr int labelLength = 30;
inline constexpr int questionLength = 40;

QString cut(const QString &text, int length); // "..." behind the first `length` characters of a longer text
QString time(int hours, int mins, int secs);  // 03:07, 1:02:05

} // namespace nowplayingtext
