#pragma once

// What the indexes that the track menu reports stand for.
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
