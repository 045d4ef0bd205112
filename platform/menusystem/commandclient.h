#pragma once

#include "arguments.h"

namespace menusystem {

// Sends the requests to the running menu system, one after another, and prints the replies.
// Returns the process's exit code: 0 done, 1 a request failed or no menu system runs.
int runCommand(const std::vector<Request> &requests, const QString &socket);

} // namespace menusystem
