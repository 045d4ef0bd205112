#include "player/menuactions.h"

#include <iterator>

namespace menuactions {

Action ofIndex(int index)
{
    static constexpr Action actions[] = {
        Action::BookmarkArtist, Action::BookmarkSong, Action::Sleep, Action::CreateStation, Action::DeleteStation,
        Action::RenameStation,  Action::SignOut,      Action::Exit,  Action::IdlePrompt,    Action::Explain};
    return index >= 0 && index < static_cast<int>(std::size(actions)) ? actions[index] : Action::None;
}

} // namespace menuactions
