#include "player/screencover.h"

namespace screencover {

bool mayRestoreFocus(const Cover &cover)
{
    return cover.boxes == 0 && !cover.isDialogOpen && !cover.isFatal && !cover.isLeaving;
}

bool mayLookFocused(const Cover &cover)
{
    return mayRestoreFocus(cover) && !cover.isAnimated;
}

KeyOwner keyOwner(const Cover &cover)
{
    if (cover.boxes > 0 || cover.isLeaving)
        return KeyOwner::Unchanged;
    if (cover.isDialogOpen)
        return KeyOwner::Dialog;
    return cover.isHidden ? KeyOwner::OtherScreen : KeyOwner::Player;
}

} // namespace screencover
