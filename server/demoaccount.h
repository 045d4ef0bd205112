#pragma once

#include "server/api/stationservice.h"

namespace velmora::server {

inline constexpr const char *demoUserName = "listener@velmora.invalid";

// The file that holds the demo account's user name and password, one a line; only its owner can read it.
std::filesystem::path demoAccountFile(const StationService &service);

// Makes the demo account with a random password and some stations, once: an account that is there is left as it is. The
// catalogue has been entered before. Throws std::runtime_error when the file cannot be written; there is no account
// then.
void ensureDemoAccount(StationService &service);

// Whether there was no music for the account's stations yet. Any thread.
bool isDemoAccountIncomplete(StationService &service);
// Makes the stations that were missing, once the music has been scanned; call it now and then. True when it made them.
// Any thread.
bool completeDemoAccount(StationService &service);

} // namespace velmora::server
