#include "app/playerport.h"

namespace {
PlayerPort *thePlayer = nullptr;
}

PlayerPort *PlayerPort::existing()
{
    return thePlayer;
}

void PlayerPort::setExisting(PlayerPort *port)
{
    thePlayer = port;
}
