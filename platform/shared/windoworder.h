#pragma once

#include <QList>

// Which of the application's windows lies above which: in the order of their showing, except that a dialog never lies
// under the window it belongs to, and a modal one never under one that is not.
namespace platform {

struct WindowRank {
    int parent = -1; // index of the window it belongs to, -1 for none
    bool isModal = false;
};

// `windows` in the order of their showing; the result lists their indices from the lowest to the highest.
QList<int> windowOrder(const QList<WindowRank> &windows);

} // namespace platform
