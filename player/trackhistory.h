#pragma once

// The thumbs of the history's rows, at most thirty, in the order in which the rows were added: row 0 of the list, the
// newest, is the last of them.
namespace trackhistory {

inline constexpr int capacity = 30;
enum class Thumb { None, Up, Down };

// Place of list row `row` of `count` rows; -1 outside.
int indexOfRow(int row, int count);
// Makes room for one more row in front of `count` rows. True: the oldest row falls out.
bool makeRoom(Thumb (&thumbs)[capacity], int count);
Thumb thumbOfRow(const Thumb (&thumbs)[capacity], int row, int count);
void setThumbOfRow(Thumb (&thumbs)[capacity], int row, int count, Thumb thumb);

} // namespace trackhistory
