#pragma once

// The meaning of the indexes that the track menu reports.
namespace menuactions {

enum class Action {
    None,
    BookmarkArtist,
    BookmarkSong,
    Sleep,
    CreateStation,
    DeleteStation,
    RenameStation,
    SignOut,
    Exit,
    IdlePrompt,
    Explain
};

Action ofIndex(int index);

} // namespace menuactions
