#pragma once

// What lies over the player screen, and what follows from it: whether a control may have the focus and look focused,
// and which screen gets the keys. Plain values.
namespace screencover {

struct Cover {
    int boxes = 0;             // message boxes of the player, one inside another; each until its call returns
    bool isDialogOpen = false; // the track menu, About or Why; until its destruction is reported
    bool isHidden = false;     // another screen has taken the place of the player
    bool isAnimated = false;   // the buffering animation holds the keyboard
    bool isFatal = false;      // a message that ends the session has been shown
    bool isLeaving = false;    // closed; the deletion is on its way
};

// The focus may go back to the player's control. False while a message box or a dialog covers the screen: an answer of
// the service that arrives meanwhile takes no keys from it.
bool mayRestoreFocus(const Cover &cover);
// A control of the player may look focused.
bool mayLookFocused(const Cover &cover);

enum class KeyOwner {
    Unchanged, // a message box, which holds the keys by itself, or nobody any more
    Dialog,    // the dialog over the player
    Player,
    OtherScreen // the screen that has taken the place of the player
};
KeyOwner keyOwner(const Cover &cover);

} // namespace screencover
