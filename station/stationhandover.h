#pragma once

#include "velmora_ws.h"

class VelmoraParentWidget;

// How Create and Rename station end: back on the player screen. GUI thread.
namespace stationhandover {

// Shows the player screen, making it if there is none, and restarts its idle timer.
void showPlayer();
// The account is no longer active: closes the dialog, clears the history, signs out.
void signOut(VelmoraParentWidget *dialog);
// A new station list: closes the dialog, clears the history, shows the player and fills it. Takes over the handle.
void enterPlayer(VelmoraParentWidget *dialog, HANDLE_T h_handle);

} // namespace stationhandover
