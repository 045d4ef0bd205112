#pragma once

#include "velmora_ws.h"

class VelmoraLogin;
class VelmoraParentWidget;

// How every account screen ends. At most one living receiver may hear a completion, so a screen that hands over is
// first cut off from the web service, together with its login sequence; then it is closed, and the next screen is made
// and shown in the same slot. GUI thread.
namespace afterlogin {

// Cuts `screen` and `login` (may be null) off, takes its message box away and closes it (deleted later).
void retire(VelmoraParentWidget *screen, VelmoraLogin *login);

// A login has delivered its station list: hands over to the player screen, or to Create station where the account has
// none (Back from there leads to account selection). Takes the handle over.
void enterPlayer(VelmoraParentWidget *screen, VelmoraLogin *login, HANDLE_T h_handle);

} // namespace afterlogin
