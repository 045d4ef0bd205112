#include "player/trackhistory.h"

#include <algorithm>
#include <iterator>

namespace trackhistory {

int indexOfRow(int row, int count)
{
    return row >= 0 && row < count && count <= capacity ? count - 1 - row : -1;
}

bool makeRoom(Thumb (&thumbs)[capacity], int count)
{
    if (count < capacity) {
        thumbs[std::max(count, 0)] = Thumb::None;
        return false;
    }
    std::move(std::next(std::begin(thumbs)), std::end(thumbs), std::begin(thumbs));
    thumbs[capacity - 1] = Thumb::None;
    return true;
}

Thumb thumbOfRow(const Thumb (&thumbs)[capacity], int row, int count)
{
    const int index = indexOfRow(row, count);
    return index < 0 ? Thumb::None : thumbs[index];
}

void setThumbOfRow(Thumb (&thumbs)[capacity], int row, int count, Thumb thumb)
{
    const int index = indexOfRow(row, count);
    if (index >= 0)
        thumbs[index] = thumb;
}

} // namespace trackhistory
