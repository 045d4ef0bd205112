#pragma once

#include "velmora_ws.h"

class VelmoraParentWidget;

// How Create and Rename station end: back on the player screen. GUI thread.
namespace stationhandover {

// Shows the player screen (made now if there is none) and restarts its idle timer.
void showPlayer();
// The account is no longer active: closes the dialog, forgets the history, signs out. Once.
void signOut(VelmoraParentWidget *dialog);
// A fresh station list: closes the dialog, forgets the history, shows the player and fills it. Takes the handle over.
void enterPlayer(VelmoraParentWidget *dialog, HANDLE_T h_handle);

} // namespace stationhandover
