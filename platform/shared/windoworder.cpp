#include "platform/shared/windoworder.h"

#include <algorithm>

namespace platform {

QList<int> windowOrder(const QList<WindowRank> &windows)
{
    QList<int> order;
    const auto place = [&](int index, const auto &self) -> void {
        if (order.contains(index))
            return;
        const int parent = windows[index].parent;
        // The owner first. It was found among the windows that show, so a circle cannot be.
        if (parent >= 0 && parent < windows.size() && parent != index)
            self(parent, self);
        order += index;
    };
    for (int index = 0; index < windows.size(); ++index)
        place(index, place);
    // A box's own dialogs are modal with it.
    const auto isModal = [&](int index) {
        for (int steps = 0; index >= 0 && steps <= windows.size(); ++steps, index = windows[index].parent)
            if (windows[index].isModal)
                return true;
        return false;
    };
    std::stable_partition(order.begin(), order.end(), [&](int index) { return !isModal(index); });
    return order;
}

} // namespace platform
