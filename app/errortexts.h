#pragma once

// Maps a result code of the station service to its message and to the reaction of the screen. Codes are the values of
// VLM_WS_EXT_ERRCODE_T. Plain values; any thread.
namespace errortexts {

struct ErrorText {
    const char *source;   // looked up in the context VelmoraParentWidget; "NULL" when the code has no words of its own
    bool endsWithContact; // the support contact follows the translated text
};
ErrorText textOf(int code);
bool hasText(int code);

// The screen that asks: the same code ends one screen and leaves another usable.
enum class Place {
    Player,  // player screen, create station, rename station
    Loading, // automatic login
    Account  // account selection, activation, sign-in, password reminder
};

enum class Reaction {
    Stay,         // show the words, the screen goes on
    SignOut,      // show the words, then sign out
    Leave,        // show the words, then leave the application
    SelectAccount // no message: on to the account selection
};
Reaction reactionTo(int code, Place place); // code other than 0

} // namespace errortexts
