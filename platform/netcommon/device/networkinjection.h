#pragma once

#include "netcommon/netcommon_global.h"

namespace netcommon {

// The menu system's word on the network: "lost" holds against what the kernel says until "back". GUI thread.
// Without a NetworkNotify nothing happens.
void injectNetworkEvent(NETWORk_EVENT_T event);

} // namespace netcommon
