#pragma once

#include "arguments.h"

namespace menusystem {

// Sends the requests to the running menu system, one after the other, each when the one before was answered, and
// prints what there is to print. Returns the process's exit code: 0 done, 1 a request failed or nobody is there.
int runCommand(const std::vector<Request> &requests, const QString &socket);

} // namespace menusystem
