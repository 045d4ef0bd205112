#pragma once

#include "velmora_ws.h"

class VelmoraLogin;
class VelmoraParentWidget;

// The end of an account screen after a login: it is retired, and the next screen is created and shown at once. GUI
// thread.
namespace afterlogin {

// The login has delivered the station list: hands over to the player screen, or to Create station when the account has
// no station (Back from there leads to account selection). Takes ownership of the handle.
void enterPlayer(VelmoraParentWidget *screen, VelmoraLogin *login, HANDLE_T h_handle);

} // namespace afterlogin
