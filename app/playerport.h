#pragma once

#include "velmora_ws.h"

class VelmoraParentWidget;

// What the root widget and the account and station screens know of the player screen: the existing one, never a way to
// make it (that is ScreenFactory::player()).
class PlayerPort {
public:
    virtual ~PlayerPort() = default;

    static PlayerPort *existing(); // null while there is no player screen

    virtual VelmoraParentWidget *screen() = 0;
    virtual void stopCurrentSong() = 0;
    virtual void playCurrentSong() = 0;
    // Takes the handle of a station list over and fills the list, playing the last station.
    virtual void fillFromStationList(HANDLE_T h_handle) = 0;
    virtual void restartIdleTimer() = 0;
    // Signs out because an error wants it: also while a track is starting.
    virtual void signOutAfterError() = 0;

protected:
    static void setExisting(PlayerPort *port); // the player screen, in its constructor and destructor
};
