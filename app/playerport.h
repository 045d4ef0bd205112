#pragma once

#include "velmora_ws.h"

class VelmoraParentWidget;

// What the root widget and the account and station screens know about the player screen. It gives access to an existing
// player; ScreenFactory::player() makes one.
class PlayerPort {
public:
    virtual ~PlayerPort() = default;

    static PlayerPort *existing(); // null while there is no player screen

    virtual VelmoraParentWidget *screen() = 0;
    virtual void stopCurrentSong() = 0;
    virtual void playCurrentSong() = 0;
    // Fills the station list from the reply and plays the last station. Takes ownership of the handle.
    virtual void fillFromStationList(HANDLE_T h_handle) = 0;
    virtual void restartIdleTimer() = 0;
    // Signs out because of an error, also while a track is starting.
    virtual void signOutAfterError() = 0;

protected:
    static void setExisting(PlayerPort *port); // called by the player screen's constructor and destructor
};
