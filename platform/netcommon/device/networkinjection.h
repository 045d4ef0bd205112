#pragma once

#include "netcommon/netcommon_global.h"

namespace netcommon {

// The menu system's report on the network: after "lost" the kernel's reports are ignored until "back". GUI thread.
// Without a NetworkNotify nothing happens.
void injectNetworkEvent(NETWORk_EVENT_T event);

} // namespace netcommon
