#pragma once

#include "velmora_ws.h"

class VelmoraParentWidget;

// The end of Create and Rename station: back to the player screen. GUI thread.
namespace stationhandover {

// Shows the player screen, creating it if needed, and restarts its idle timer.
void showPlayer();
// The account is no longer active: closes the dialog, clears the history, signs out.
void signOut(VelmoraParentWidget *dialog);
// A new station list: closes the dialog, clears the history, shows the player and fills it. Takes ownership of
// the handle.
void enterPlayer(VelmoraParentWidget *dialog, HANDLE_T h_handle);

} // namespace stationhandover
