#pragma once

#include <QList>
#include <QRect>
#include <QString>

// The keys of the on-screen keyboard: two pages of four rows, and where an arrow leads. A plain value; no widget.
class KeyLayout {
public:
    enum class Action { Type, Clear, Delete, Done };

    struct Key {
        QString label;
        QString text; // what it types
        Action action = Action::Type;
        QRect rect; // pixels of the keyboard
        int row = 0;
    };

    enum class Direction { Left, Right, Up, Down };

    static constexpr int letterPage = 1;
    static constexpr int symbolPage = 2;
    static constexpr int width = 640;
    static constexpr int height = 296;

    // Keys in reading order. `isCapital` counts on the letter page only.
    static QList<Key> keys(int page, bool isCapital);
    // Where an arrow leads from `index`. Up, Down and Left wrap around; Right on a right-most key stays: the dialog may
    // take the highlight there; if it does not, wrapRight() is called.
    static int next(int index, Direction direction);
    static int wrapRight(int index);
    static bool isRightMost(int index);
    static int doneIndex();
};
