#include "keylayout.h"

#include <QCoreApplication>
#include <QStringList>

#include <cstdlib>

namespace {

constexpr int columns = 10;
constexpr int wordKeys = 5;
constexpr int letterRows = 3;
constexpr int letterCount = letterRows * columns;
constexpr int keyWidth = 56;
constexpr int keyHeight = 63;
constexpr int step = 62; // a key and the gap beside it
constexpr int margin = 13;
constexpr int rowTops[] = {13, 82, 151, 220};
constexpr int wordWidths[] = {87, 87, 180, 118, 118};
constexpr int gap = 6;

const char *const letterPageRows[] = {"qwertyuiop", "asdfghjkl@", "zxcvbnm._-"};
const char *const symbolPageRows[] = {"1234567890", "!#$%&*+=/?", "()'\":;,~^\\"};

int rowStart(int row)
{
    return row < letterRows ? row * columns : letterCount;
}

int rowSize(int row)
{
    return row < letterRows ? columns : wordKeys;
}

int rowOf(int index)
{
    return index < letterCount ? index / columns : letterRows;
}

} // namespace

QList<KeyLayout::Key> KeyLayout::keys(int page, bool isCapital)
{
    QList<Key> result;
    const auto &rows = page == symbolPage ? symbolPageRows : letterPageRows;
    for (int row = 0; row < letterRows; ++row) {
        for (int column = 0; column < columns; ++column) {
            QString text{QLatin1Char(rows[row][column])};
            if (page == letterPage && isCapital)
                text = text.toUpper();
            result.append(
                {text, text, Action::Type, QRect(margin + column * step, rowTops[row], keyWidth, keyHeight), row});
        }
    }
    const Key words[wordKeys] = {
        {QCoreApplication::translate("KeyLayout", "Clear"), QString(), Action::Clear, QRect(), letterRows},
        {QStringLiteral(".com"), QStringLiteral(".com"), Action::Type, QRect(), letterRows},
        {QCoreApplication::translate("KeyLayout", "Space"), QStringLiteral(" "), Action::Type, QRect(), letterRows},
        {QCoreApplication::translate("KeyLayout", "Delete"), QString(), Action::Delete, QRect(), letterRows},
        {QCoreApplication::translate("KeyLayout", "Done"), QString(), Action::Done, QRect(), letterRows}};
    int x = margin;
    for (int i = 0; i < wordKeys; ++i) {
        Key key = words[i];
        key.rect = QRect(x, rowTops[letterRows], wordWidths[i], keyHeight);
        x += wordWidths[i] + gap;
        result.append(key);
    }
    return result;
}

int KeyLayout::next(int index, Direction direction)
{
    const int row = rowOf(index);
    const int start = rowStart(row);
    const int size = rowSize(row);
    switch (direction) {
    case Direction::Left:
        return index == start ? start + size - 1 : index - 1;
    case Direction::Right:
        return index == start + size - 1 ? index : index + 1;
    case Direction::Up:
    case Direction::Down:
        break;
    }
    const int rows = letterRows + 1;
    const int target = (row + (direction == Direction::Down ? 1 : rows - 1)) % rows;
    // The key of that row with the nearest centre; both pages have the same geometry.
    static const QList<Key> places = keys(letterPage, false);
    const int middle = places.at(index).rect.center().x();
    int best = rowStart(target);
    for (int i = best; i < rowStart(target) + rowSize(target); ++i) {
        if (std::abs(places.at(i).rect.center().x() - middle) < std::abs(places.at(best).rect.center().x() - middle))
            best = i;
    }
    return best;
}

int KeyLayout::wrapRight(int index)
{
    return isRightMost(index) ? rowStart(rowOf(index)) : index;
}

bool KeyLayout::isRightMost(int index)
{
    const int row = rowOf(index);
    return index == rowStart(row) + rowSize(row) - 1;
}

int KeyLayout::doneIndex()
{
    return letterCount + wordKeys - 1;
}
