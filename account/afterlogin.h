#pragma once

#include "velmora_ws.h"

class VelmoraLogin;
class VelmoraParentWidget;

// How every account screen ends: it is retired, and the next screen is made and shown in the same slot. GUI thread.
namespace afterlogin {

// A login has delivered its station list: hands over to the player screen, or to Create station where the account has
// none (Back from there leads to account selection). Takes the handle over.
void enterPlayer(VelmoraParentWidget *screen, VelmoraLogin *login, HANDLE_T h_handle);

} // namespace afterlogin
